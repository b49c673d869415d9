#include "platform/onewire/pesquisaRom.h"

#include "platform/onewire/crc.h"

#include <algorithm>

namespace onewire {

Rom romDe(const PesquisaRom::Bits &bits) {
    Rom rom{};
    for (size_t i = 0; i < 64; ++i)
        rom[i / 8] = quint8(rom[i / 8] | (bits[i] ? 1U << (i % 8) : 0U));
    return rom;
}

bool romValido(const Rom &rom) {
    // A line held low reads as zeros, and their CRC is right.
    return rom[0] != 0 && crc8(rom) == 0;
}

bool antes(const Rom &a, const Rom &b) {
    for (size_t i = 0; i < 64; ++i) {
        const bool bitA = a[i / 8] >> (i % 8) & 1;
        const bool bitB = b[i / 8] >> (i % 8) & 1;
        if (bitA != bitB)
            return bitB;
    }
    return false;
}

void PesquisaRom::comecar(quint8 familia) {
    m_familia = familia;
    m_ultimo = Bits(familia);
    m_divergencia = familia ? 64 : -1;
    m_acabou = false;
}

PesquisaRom::Bits PesquisaRom::caminho() const {
    Bits bits;
    for (int i = 0; i < 64; ++i)
        bits[size_t(i)] = i < m_divergencia ? m_ultimo[size_t(i)] : i == m_divergencia;
    return bits;
}

std::optional<Rom> PesquisaRom::aceitar(const Bits &idos, const Bits &divergencias) {
    m_acabou = true;
    const Rom rom = romDe(idos);
    if (!romValido(rom) || (m_familia && rom[0] != m_familia))
        return std::nullopt;
    m_ultimo = idos;
    m_divergencia = -1;
    for (int i = m_familia ? 8 : 0; i < 64; ++i)
        if (divergencias[size_t(i)] && !idos[size_t(i)])
            m_divergencia = i;
    m_acabou = m_divergencia < 0;
    return rom;
}

} // namespace onewire
