#pragma once

#include "platform/onewire/barramento.h"

namespace onewire {

// While one operation talks to the bus, events may run and reach another; that one is refused instead of cutting
// into the first.
class EmUso {
public:
    EmUso();
    ~EmUso();
    EmUso(const EmUso &) = delete;
    EmUso &operator=(const EmUso &) = delete;
    explicit operator bool() const { return m_meu; }

private:
    bool m_meu;
};

// Opens the one session, ending the one that is open. 0 or less: not possible now.
qint32 abrirSessao(qint16 porto, qint16 tipo);
void fecharSessao();

} // namespace onewire
