#pragma once

#include "simulator/unidades/definicao.h"

#include <QUdpSocket>

namespace simulador {

// Answers searches that reach the unit's own address.
class ServidorPesquisa : public QObject {
public:
    ServidorPesquisa(const Definicao &definicao, QObject *pai);
    bool ligar(const QHostAddress &endereco, quint16 porta) { return m_socket.bind(endereco, porta); }
    quint16 porta() const { return m_socket.localPort(); }
    void definirPortaWeb(quint16 porta) { m_portaWeb = porta; }
    QString erro() const { return m_socket.errorString(); }
    int perguntas() const { return m_perguntas; }

private:
    void receber();
    QList<QByteArray> respostas(const QByteArray &marca) const;
    void enviar(QList<QByteArray> textos, const QHostAddress &para, quint16 porta);

    const Definicao &m_definicao;
    QUdpSocket m_socket;
    quint16 m_portaWeb = 0;
    int m_perguntas = 0;
};

} // namespace simulador
