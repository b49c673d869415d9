#pragma once

#include "platform/onewire/transporte.h"

#include <bitset>

namespace onewire {

// The search algorithm without the line: which way to go at each of the 64 bits, and what the walk found.
class PesquisaRom {
public:
    using Bits = std::bitset<64>;

    void comecar(quint8 familia); // 0: every family
    bool acabou() const { return m_acabou; }
    Bits caminho() const; // the way to go where devices disagree
    // The bits gone and where devices disagreed. Empty: nothing there (any more); the search is over.
    std::optional<Rom> aceitar(const Bits &idos, const Bits &divergencias);
    void falhar() { m_acabou = true; }

private:
    quint8 m_familia = 0;
    Bits m_ultimo;
    int m_divergencia = -1; // the last one where 0 was taken; the next walk takes 1 there
    bool m_acabou = true;
};

Rom romDe(const PesquisaRom::Bits &bits);
bool romValido(const Rom &rom);
// The order in which a search finds devices.
bool antes(const Rom &a, const Rom &b);

} // namespace onewire
