#include "platform/unit/telnet.h"

namespace {
enum : uchar { SE = 240, SB = 250, WILL = 251, DONT = 254, IAC = 255 };
}

QByteArray Telnet::limpar(const QByteArray &bytes) {
    QByteArray texto;
    texto.reserve(bytes.size());
    for (const char c : bytes) {
        const auto b = uchar(c);
        switch (m_ponto) {
        case Ponto::Texto:
            if (b == IAC)
                m_ponto = Ponto::Comando;
            else
                texto += c;
            break;
        case Ponto::Comando:
            if (b == IAC)
                texto += c;
            m_ponto = b == SB ? Ponto::Sub : (b >= WILL && b <= DONT ? Ponto::Opcao : Ponto::Texto);
            break;
        case Ponto::Opcao:
            m_ponto = Ponto::Texto;
            break;
        case Ponto::Sub:
            if (b == IAC)
                m_ponto = Ponto::SubComando;
            break;
        case Ponto::SubComando:
            m_ponto = b == SE ? Ponto::Texto : Ponto::Sub;
            break;
        }
    }
    return texto;
}

QByteArray Telnet::paraEnviar(const QByteArray &bytes) {
    return QByteArray(bytes).replace("\xFF", "\xFF\xFF");
}
