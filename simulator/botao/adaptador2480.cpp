#include "simulator/botao/adaptador2480.h"

namespace simulador {

namespace {

constexpr quint8 modoDados = 0xE1;
constexpr quint8 modoComandos = 0xE3;

} // namespace

void Adaptador2480::ligar() {
    m_novo = true;
    m_dados = m_escape = m_acelerador = false;
    m_parametros = {};
}

QByteArray Adaptador2480::receber(const QByteArray &bytes) {
    QByteArray resposta;
    if (mudo) {
        tudoRecebido += bytes;
        return resposta;
    }
    for (char c : bytes) {
        const quint8 byte = quint8(c);
        if (!m_dados) {
            comando(byte, resposta);
        } else if (m_escape) {
            m_escape = false;
            if (byte == modoComandos) {
                dado(byte, resposta);
            } else {
                m_dados = false;
                comando(byte, resposta);
            }
        } else if (byte == modoComandos) {
            m_escape = true;
        } else {
            dado(byte, resposta);
        }
    }
    return resposta;
}

void Adaptador2480::comando(quint8 byte, QByteArray &resposta) {
    if (!(byte & 0x80)) { // a parameter: asked for with number 0, set otherwise
        const size_t qual = byte >> 4 & 7;
        const quint8 valor = byte >> 1 & 7;
        if (qual == 0) {
            resposta.append(char(m_parametros[valor] << 1));
        } else {
            m_parametros[qual] = valor;
            resposta.append(char(byte & 0xFE));
        }
        return;
    }
    switch (byte >> 5 & 3) {
    case 0: { // one slot
        const bool visto = m_linha.slot(byte & 0x10);
        resposta.append(char((byte & 0xFC) | (visto ? 3 : 0)));
        break;
    }
    case 1:
        m_acelerador = byte & 0x10;
        break;
    case 2: // reset
        if (!std::exchange(m_novo, false)) {
            const bool presenca = m_linha.reset();
            resposta.append(char(0xCC | (!presenca ? 3 : m_linha.emAlarme() ? 2 : 1)));
        }
        break;
    default:
        if (byte == modoDados)
            m_dados = true;
        else if (byte != modoComandos)
            resposta.append(char(byte & 0xFC)); // a pulse of more current, which nothing here needs
        break;
    }
}

void Adaptador2480::dado(quint8 byte, QByteArray &resposta) {
    resposta.append(char(m_acelerador ? acelerar(byte) : m_linha.byte(byte)));
}

// Four steps of a search: the odd bits say which way to go, and come back as the way gone.
quint8 Adaptador2480::acelerar(quint8 percurso) {
    quint8 resposta = 0;
    for (int i = 0; i < 4; ++i) {
        const bool bit = m_linha.slot(true);
        const bool complemento = m_linha.slot(true);
        const bool ambos = bit == complemento; // disagreement, or nobody there
        const bool ir = ambos ? bit || (percurso >> (2 * i + 1) & 1) : bit;
        m_linha.slot(ir);
        resposta = quint8(resposta | (ambos ? 1 : 0) << (2 * i) | (ir ? 2 : 0) << (2 * i));
    }
    return resposta;
}

} // namespace simulador
