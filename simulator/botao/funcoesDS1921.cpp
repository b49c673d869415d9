#include "core/literais.h"
#include "platform/onewire/crc.h"
#include "simulator/botao/dispositivo.h"

namespace simulador {

namespace {

enum Comando : quint8 {
    EscreverRascunho = 0x0F,
    LerRascunho = 0xAA,
    CopiarRascunho = 0x55,
    LerMemoria = 0xF0,
    LerComCrc = 0xA5,
    LimparMemoria = 0x3C,
    Converter = 0x44,
};
constexpr quint8 aceite = 0x80;  // AA of the ending offset
constexpr quint8 parcial = 0x20; // PF
constexpr int fimDoLog = 0x1800;
constexpr int inicioDoLog = 0x1000;
constexpr int registoDeEstado = 0x214;
constexpr int tentativasDaPagina = 5; // of a host, before it gives one up

std::span<const quint8> bytes(const QByteArray &a) {
    return {reinterpret_cast<const quint8 *>(a.constData()), size_t(a.size())};
}

} // namespace

bool FuncoesDS1921::falhar(int DefeitosBotao::*campo) {
    int &resta = m_defeitos.*campo;
    return resta > 0 && resta-- > 0;
}

void FuncoesDS1921::comecar() {
    m_comando = 0;
    m_recebido.clear();
    m_fila.clear();
    m_coberto.clear();
    m_aguarda = true;
    m_escreve = m_le = m_comCrc = false;
    m_fim = 0xFF;
}

quint8 FuncoesDS1921::aEnviar() {
    if (m_fila.isEmpty() && m_le)
        return lerMemoria();
    return m_fila.isEmpty() ? m_fim : quint8(m_fila.at(0));
}

void FuncoesDS1921::naLinha(quint8 byte) {
    if (!m_fila.isEmpty()) {
        m_fila.remove(0, 1);
    } else if (m_le) {
        proximoLido();
    } else if (m_escreve) {
        escreverNoRascunho(byte);
    } else if (m_aguarda || m_recebido.size() < 4) {
        argumento(byte);
    }
}

// The command, its address and, for a copy, the ending offset.
void FuncoesDS1921::argumento(quint8 byte) {
    if (m_aguarda) {
        m_aguarda = false;
        m_comando = byte;
        const bool armada = m_chip.desarmarLimpeza();
        m_recebido = QByteArray(1, char(byte));
        const bool semArgumentos = byte != EscreverRascunho && byte != LerRascunho && byte != CopiarRascunho &&
                                   byte != LerMemoria && byte != LerComCrc;
        if (byte == LimparMemoria && armada)
            m_chip.limpar();
        else if (byte == Converter)
            m_chip.converter();
        if (byte == LerRascunho) { // answers at once, takes no address
            m_recebido.append(char(m_alvo)).append(char(m_alvo >> 8));
            comandoCompleto();
        } else if (semArgumentos) {
            m_recebido.append(3, '\0');
        }
        return;
    }
    m_recebido.append(char(byte));
    if (m_recebido.size() == (m_comando == CopiarRascunho ? 4 : 3))
        comandoCompleto();
}

void FuncoesDS1921::comandoCompleto() {
    const auto a = bytes(m_recebido);
    const int endereco = a[1] | a[2] << 8;
    switch (m_comando) {
    case EscreverRascunho:
        m_alvo = quint16(endereco);
        m_es = quint8(endereco & 0x1F) | parcial;
        m_endereco = endereco & 0x1F;
        m_escreve = true;
        break;
    case LerRascunho: {
        m_fila.append(char(m_alvo)).append(char(m_alvo >> 8));
        m_fila.append(char(falhar(&DefeitosBotao::esErrado) ? m_es ^ 1 : m_es));
        for (int i = m_alvo & 0x1F; i < 32; ++i)
            m_fila.append(char(m_rascunho[size_t(i)]));
        m_coberto = QByteArray(1, char(LerRascunho)) + m_fila;
        juntarCrc();
        m_recebido.append('\0');
        break;
    }
    case CopiarRascunho: {
        const bool certo = endereco == m_alvo && a[3] == m_es && !(m_es & parcial) && !(m_es & aceite);
        if (certo && !falhar(&DefeitosBotao::copiaRecusada)) {
            const int inicio = m_alvo & 0x1F;
            const size_t quantos = size_t((m_es & 0x1F) - inicio + 1);
            if (m_chip.copiar(m_alvo, {m_rascunho.data() + inicio, quantos})) {
                m_es |= aceite;
                m_fim = 0xAA;
            }
        }
        break;
    }
    case LerMemoria:
    case LerComCrc:
        m_comCrc = m_comando == LerComCrc;
        if (m_comCrc && falhar(&DefeitosBotao::contacto) && m_defeitos.contacto == 0)
            m_defeitos.semPresenca = tentativasDaPagina;
        m_coberto = m_recebido;
        m_endereco = endereco;
        m_le = true;
        m_recebido.append('\0');
        break;
    default:
        break;
    }
}

void FuncoesDS1921::escreverNoRascunho(quint8 byte) {
    if (m_endereco > 0x1F)
        return;
    m_rascunho[size_t(m_endereco)] = byte;
    m_es = quint8(m_endereco);
    m_recebido.append(char(byte));
    if (++m_endereco > 0x1F) {
        m_coberto = m_recebido;
        juntarCrc();
    }
}

quint8 FuncoesDS1921::lerMemoria() {
    if (m_endereco == registoDeEstado && m_defeitos.sip > 0)
        return m_chip.ler(m_endereco) | 0x10;
    return m_endereco < fimDoLog ? m_chip.ler(m_endereco) : 0;
}

quint8 FuncoesDS1921::proximoLido() {
    const quint8 byte = lerMemoria();
    if (m_endereco == registoDeEstado)
        falhar(&DefeitosBotao::sip);
    if (m_endereco == inicioDoLog && m_chip.missao() && falhar(&DefeitosBotao::saltoNoLog)) {
        for (const quint32 antes = m_chip.contador(); m_chip.contador() == antes;)
            m_chip.andar(60'000);
        m_chip.sujo = true;
    }
    m_coberto.append(char(byte));
    ++m_endereco;
    if (m_comCrc && (m_endereco & 0x1F) == 0)
        juntarCrc();
    return byte;
}

void FuncoesDS1921::juntarCrc() {
    quint16 crc = quint16(~onewire::crc16(bytes(m_coberto)));
    if (falhar(&DefeitosBotao::crcErrado))
        crc ^= 0x0101;
    m_fila.append(char(crc)).append(char(crc >> 8));
    m_coberto.clear();
}

} // namespace simulador
