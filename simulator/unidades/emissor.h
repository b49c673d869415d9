#pragma once

#include <QByteArray>
#include <QObject>

#include <functional>

class QTcpSocket;

namespace simulador {

// Sends what a source makes, piece by piece and no faster than the other side takes it, so that documents without end
// and logs of a million lines cost no memory. Lives as long as its socket.
class Emissor : public QObject {
public:
    using Fonte = std::function<QByteArray()>; // an empty piece is the end
    Emissor(QTcpSocket *socket, Fonte fonte, std::function<void()> aoAcabar, int pausaMs = 0);

private:
    void bombear();
    QTcpSocket *m_socket;
    Fonte m_fonte;
    std::function<void()> m_aoAcabar;
    int m_pausa;
};

// Ends a connection as a unit that loses its power: the other side gets a reset.
void cortar(QTcpSocket *socket);

} // namespace simulador
