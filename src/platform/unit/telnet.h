#pragma once

#include <QByteArray>

// The text of a telnet stream: option negotiations and other commands are dropped, wherever the network cuts them.
class Telnet {
public:
    QByteArray limpar(const QByteArray &bytes);
    static QByteArray paraEnviar(const QByteArray &bytes); // a byte 255 of the text is doubled

private:
    enum class Ponto { Texto, Comando, Opcao, Sub, SubComando };
    Ponto m_ponto = Ponto::Texto;
};
