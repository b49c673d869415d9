#include "platform/onewire/memoria1921.h"

#include "core/falha.h"
#include "platform/onewire/barramento.h"
#include "platform/onewire/causas.h"
#include "platform/onewire/crc.h"

#include <QString>
#include <QStringBuilder>

#include <algorithm>

namespace onewire {

namespace {

enum Comando : quint8 {
    EscolherRom = 0x55,
    EscreverRascunho = 0x0F,
    LerRascunho = 0xAA,
    CopiarRascunho = 0x55,
    LerComCrc = 0xA5,
};
constexpr int tentativas = 5;
constexpr int maximoDeDados = 29;

std::span<const quint8> comoBytes(const QByteArray &a) {
    return {reinterpret_cast<const quint8 *>(a.constData()), size_t(a.size())};
}

QByteArray comEndereco(quint8 comando, int endereco) {
    return QByteArray(1, char(comando)).append(char(endereco)).append(char(endereco >> 8));
}

QByteArray comoTexto(std::span<const quint8> bytes) {
    return {reinterpret_cast<const char *>(bytes.data()), qsizetype(bytes.size())};
}

} // namespace

std::optional<BytesDaPagina> paginaComCrc(std::span<const quint8> resposta, int endereco) {
    if (resposta.size() != bytesDaPagina + 2)
        return std::nullopt;
    if (crc16(resposta, crc16(comoBytes(comEndereco(LerComCrc, endereco)))) != restoCrc16)
        return std::nullopt;
    BytesDaPagina pagina;
    std::copy_n(resposta.begin(), bytesDaPagina, pagina.begin());
    return pagina;
}

int lerPacote(std::span<const quint8> pagina, int numero, std::span<quint8> dados) {
    if (pagina.empty() || pagina[0] > maximoDeDados || pagina.size() < size_t(pagina[0]) + 3)
        return -1;
    const size_t tamanho = pagina[0];
    if (crc16(pagina.first(tamanho + 3), quint16(numero)) != restoCrc16)
        return -1;
    std::copy_n(pagina.begin() + 1, std::min(tamanho, dados.size()), dados.begin());
    return int(tamanho);
}

QByteArray fazerPacote(std::span<const quint8> dados, int numero) {
    QByteArray pacote = QByteArray(1, char(dados.size())) + comoTexto(dados);
    const quint16 crc = quint16(~crc16(comoBytes(pacote), quint16(numero)));
    return pacote.append(char(crc)).append(char(crc >> 8));
}

std::optional<QByteArray> Memoria1921::transaccao(const QByteArray &enviar, int ler) try {
    if (m_semAdaptador || !m_transporte.reset())
        return std::nullopt;
    const QByteArray escolha = QByteArray(1, char(EscolherRom)) + comoTexto(m_rom);
    const QByteArray tudo = escolha + enviar + QByteArray(ler, char(0xFF));
    const QByteArray visto = m_transporte.bloco(tudo);
    // What was sent comes back as it is, or something pulls at the line.
    const qsizetype enviados = escolha.size() + enviar.size();
    if (visto.size() != tudo.size() || visto.first(enviados) != tudo.first(enviados))
        return std::nullopt;
    return visto.mid(enviados);
} catch (const Falha &) {
    m_semAdaptador = true;
    anotar(Causa::AdaptadorFora);
    return std::nullopt;
}

void Memoria1921::diagnosticar() const {
    if (!m_semAdaptador)
        anotar(onewire::diagnosticar(m_transporte, m_rom));
}

std::optional<BytesDaPagina> Memoria1921::lerPagina(int pagina) {
    const int endereco = pagina * bytesDaPagina;
    for (int i = 0; i < tentativas; ++i) {
        const auto resposta = transaccao(comEndereco(LerComCrc, endereco), bytesDaPagina + 2);
        if (resposta)
            if (const auto lida = paginaComCrc(comoBytes(*resposta), endereco))
                return lida;
        passar();
    }
    diagnosticar();
    return std::nullopt;
}

bool Memoria1921::escrever(int endereco, std::span<const quint8> bytes) {
    if (bytes.empty() || endereco % bytesDaPagina + int(bytes.size()) > bytesDaPagina)
        return false;
    const quint8 fim = quint8(endereco % bytesDaPagina + int(bytes.size()) - 1);
    const QByteArray dados = comoTexto(bytes);
    const QByteArray esperado = comEndereco(0, endereco).mid(1).append(char(fim)) + dados;
    bool recusada = false;
    for (int i = 0; i < tentativas; ++i, passar()) {
        recusada = false;
        if (!transaccao(comEndereco(EscreverRascunho, endereco) + dados, 0))
            continue;
        // Address, ending offset and data; read to the end of the scratchpad for the CRC over them.
        const int resto = bytesDaPagina - endereco % bytesDaPagina;
        const auto lido = transaccao(QByteArray(1, char(LerRascunho)), 3 + resto + 2);
        if (!lido || !lido->startsWith(esperado) ||
            crc16(comoBytes(QByteArray(1, char(LerRascunho)) + *lido)) != restoCrc16)
            continue;
        const auto copia = transaccao(comEndereco(CopiarRascunho, endereco).append(char(fim)), 2);
        // The copy takes 10 ms at most; while it lasts, and when it was refused, the line reads ones.
        if (copia && (quint8(copia->at(1)) == 0xAA || quint8(copia->at(1)) == 0x55))
            return true;
        recusada = copia.has_value();
    }
    if (!recusada) // what the button itself refuses is no fault of the line
        diagnosticar();
    return false;
}

bool Memoria1921::comandar(quint8 comando) {
    return transaccao(QByteArray(1, char(comando)), 0).has_value();
}

} // namespace onewire
