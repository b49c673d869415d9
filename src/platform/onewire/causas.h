#pragma once

#include "platform/onewire/transporte.h"

#include <QString>

#include <functional>

namespace onewire {

// Why the bus did not do what was asked of it.
enum class Causa {
    Nenhuma,
    SemPorto,         // the settings name none
    AdaptadorFora,    // not plugged in, or gone meanwhile
    SemPermissao,     // of the user, on the port
    Ocupado,          // another program holds it
    OutroEquipamento, // something answers there, but not as an adapter does, or not at all
    SemBotao,
    ContactoPerdido, // the button was there before
    LinhaComRuido,   // it is there, and what it says does not fit its checks
};

struct Motivo {
    Causa causa = Causa::Nenhuma;
    QString porto = {}; // path
    QString grupo = {}; // of users that may open it
};

// Keeps the cause of what has just failed; the port is that of the running session. An adapter that has gone stays the
// cause of all that fails after it in the session.
void anotar(Causa causa);

// A whole sentence with the remedy; empty without a cause.
QString frase(const Motivo &motivo);
// The message, and below it the cause of the last failure.
QString comMotivo(const QString &mensagem);

// Keeps the cause of a failure over what is done afterwards.
class ManterMotivo {
public:
    ManterMotivo();
    ~ManterMotivo();
    ManterMotivo(const ManterMotivo &) = delete;
    ManterMotivo &operator=(const ManterMotivo &) = delete;

private:
    Motivo m_motivo;
};

// Looks at the line after a failure: of a search for a family, or of the work with one device.
Causa diagnosticar(Transporte &transporte, quint8 familia);
Causa diagnosticar(Transporte &transporte, const Rom &rom);

// A search for the first device of a family, repeated where the line shows that one is there. The cause is noted when
// none was found.
std::optional<Rom> insistir(Transporte &transporte, quint8 familia,
                            const std::function<std::optional<Rom>()> &procurar);

} // namespace onewire
