#pragma once

#include "simulator/unidades/registo.h"

#include <QObject>

class QTcpSocket;

namespace simulador {

// The unit's side of one log transfer connection. Lives as long as its socket.
class SessaoKlog : public QObject {
public:
    static void iniciar(QTcpSocket *socket, const Definicao &definicao, Registo &registo, const QByteArray &oferecidas);

private:
    SessaoKlog(QTcpSocket *socket, const Definicao &definicao, Registo &registo);
    void receber();
    void tratar(const QByteArray &linha);
    void enviarLog();
    void apagar(const QList<QByteArray> &argumentos);
    void responder(const QByteArray &linha);

    QTcpSocket *m_socket;
    const Definicao &m_definicao;
    Registo &m_registo;
    bool m_aEnviar = false;
};

} // namespace simulador
