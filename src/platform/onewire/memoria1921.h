#pragma once

#include "platform/onewire/transporte.h"

#include <optional>
#include <span>

namespace onewire {

constexpr int bytesDaPagina = 32;
using BytesDaPagina = std::array<quint8, bytesDaPagina>;

// The answer to a read with CRC: 32 bytes and their inverted CRC16. The first page of a transaction is covered
// together with its command and address. Empty when they do not fit.
std::optional<BytesDaPagina> paginaComCrc(std::span<const quint8> resposta, int endereco);

// The packet on a page: length, data, CRC. Its length; -1 when there is none.
int lerPacote(std::span<const quint8> pagina, int numeroDaPagina, std::span<quint8> dados);
QByteArray fazerPacote(std::span<const quint8> dados, int numeroDaPagina);

// The memory functions of one button, each transaction checked and repeated. Empty or false: it does not answer
// rightly, as when it was taken off, or the adapter has gone; the cause is noted then.
class Memoria1921 {
public:
    Memoria1921(Transporte &transporte, const Rom &rom) : m_transporte(transporte), m_rom(rom) {}

    std::optional<BytesDaPagina> lerPagina(int pagina);
    // Within one page. Nothing is written unless the scratchpad came back as it was sent.
    bool escrever(int endereco, std::span<const quint8> bytes);
    // A command without arguments or answer.
    bool comandar(quint8 comando);

private:
    // A whole transaction: what was seen behind the selection, or nothing when nobody is there.
    std::optional<QByteArray> transaccao(const QByteArray &enviar, int ler);
    void diagnosticar() const; // after the last try
    Transporte &m_transporte;
    Rom m_rom;
    bool m_semAdaptador = false;
};

} // namespace onewire
