#pragma once

#include "simulator/botao/adaptador2480.h"

#include <QString>

namespace simulador {

// A pseudo terminal with the adapter at its other end. It shows neither breaks nor speeds; an opening is noticed when
// the port was closed before.
class Pty {
public:
    explicit Pty(Adaptador2480 &adaptador) : m_adaptador(adaptador) {}
    ~Pty();
    Pty(const Pty &) = delete;
    Pty &operator=(const Pty &) = delete;
    bool abrir();
    QString caminho() const { return m_caminho; }
    void servir(int ms); // waits so long for bytes at most, and answers them
    void desligar();     // the adapter is pulled out

private:
    Adaptador2480 &m_adaptador;
    int m_fd = -1;
    bool m_aberto = false; // somebody has the other end
    QString m_caminho;
};

} // namespace simulador
