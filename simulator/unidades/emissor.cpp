#include "simulator/unidades/emissor.h"

#include <QTcpSocket>
#include <QTimer>

#include <sys/socket.h>

namespace simulador {

Emissor::Emissor(QTcpSocket *socket, Fonte fonte, std::function<void()> aoAcabar, int pausaMs)
    : QObject(socket), m_socket(socket), m_fonte(std::move(fonte)), m_aoAcabar(std::move(aoAcabar)), m_pausa(pausaMs) {
    connect(socket, &QTcpSocket::bytesWritten, this, [this] {
        if (m_pausa == 0)
            bombear();
    });
    bombear();
}

void Emissor::bombear() {
    constexpr qint64 porEnviar = 128 * 1024;
    while (m_fonte && m_socket->state() == QAbstractSocket::ConnectedState && m_socket->bytesToWrite() < porEnviar) {
        const QByteArray pedaco = m_fonte();
        if (pedaco.isEmpty()) {
            m_fonte = nullptr;
            deleteLater();
            m_aoAcabar();
            return;
        }
        m_socket->write(pedaco);
        if (m_pausa > 0) {
            QTimer::singleShot(m_pausa, this, [this] { bombear(); });
            return;
        }
    }
}

void cortar(QTcpSocket *socket) {
    socket->flush();
    const linger semDespedida{1, 0};
    setsockopt(int(socket->socketDescriptor()), SOL_SOCKET, SO_LINGER, &semDespedida, sizeof semDespedida);
    socket->abort();
}

} // namespace simulador
