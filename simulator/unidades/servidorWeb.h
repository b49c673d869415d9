#pragma once

#include "simulator/unidades/documentos.h"
#include "simulator/unidades/emissor.h"

#include <QTcpServer>

namespace simulador {

// The HTTP port: the page, setup.xml, and the door to the log transfer.
class ServidorWeb : public QTcpServer {
public:
    ServidorWeb(const Definicao &definicao, Registo &registo, QObject *pai);
    void definirPortaConsola(quint16 porta) { m_portaConsola = porta; }
    int pedidos() const { return m_pedidos; } // requests of documents

private:
    void receber(QTcpSocket *socket);
    void atender(QTcpSocket *socket, const QByteArray &cabeca);
    void responder(QTcpSocket *socket, const QByteArray &caminho);
    void enviar(QTcpSocket *socket, const QByteArray &estado, const QByteArray &tipo, const QByteArray &corpo);
    bool enviarComDefeito(QTcpSocket *socket, const QByteArray &corpo);

    const Definicao &m_definicao;
    Registo &m_registo;
    quint16 m_portaConsola = 0;
    int m_pedidos = 0;
};

} // namespace simulador
