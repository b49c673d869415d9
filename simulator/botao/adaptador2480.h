#pragma once

#include "simulator/botao/linha.h"

namespace simulador {

// The serial line driver in front of the wire: bytes in, bytes out.
class Adaptador2480 {
public:
    explicit Adaptador2480(Linha &linha) : m_linha(linha) {}
    void ligar(); // power, or the port opened anew: the first reset only sets the speed
    QByteArray receber(const QByteArray &bytes);

    bool mudo = false;       // answers nothing, as another kind of equipment
    QByteArray tudoRecebido; // kept while mudo, to see what was sent to it

private:
    void comando(quint8 byte, QByteArray &resposta);
    void dado(quint8 byte, QByteArray &resposta);
    quint8 acelerar(quint8 percurso);

    Linha &m_linha;
    bool m_novo = true;
    bool m_dados = false;
    bool m_escape = false; // E3 seen in data mode
    bool m_acelerador = false;
    std::array<quint8, 8> m_parametros{};
};

} // namespace simulador
