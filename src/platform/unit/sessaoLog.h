#pragma once

#include "platform/unit/leitorHttp.h"
#include "platform/unit/motivos.h"

#include <QObject>
#include <QTcpSocket>
#include <QTimer>

#include <functional>

// One connection that speaks the log protocol: the change of protocol, then lines both ways, under the limits of
// time. What is made of the lines is the owner's.
class SessaoLog : public QObject {
public:
    enum class Ponto { Fechada, ALigar, AMudar, Pronta };

    explicit SessaoLog(QObject *pai);
    void ligar(const QString &anfitriao, quint16 porta);
    void cortar(); // nothing is told afterwards
    Ponto ponto() const { return m_ponto; }
    void pedir(const QByteArray &linha);             // sent as soon as the session is ready
    bool pedidoEnviado() const { return m_enviado; } // since ligar(), also after the end
    // From a request to the end of its answer.
    void vigiar(int silencioMs, int totalMs);
    void descansar();

    std::function<void(QByteArrayView)> aoChegarLinha;
    std::function<void(const Motivo &, const QString &pormenor)> aoFalhar; // the session has ended

private:
    void enviar();
    void receber();
    void mudarDeProtocolo();
    void tratarLinhas();
    void falhar(const Motivo &motivo, const QString &pormenor = {});
    void socketFalhou(QAbstractSocket::SocketError erro);

    QTcpSocket m_socket;
    Ponto m_ponto = Ponto::Fechada;
    LeitorHttp m_leitor{0};
    QString m_anfitriao;
    QByteArray m_entrada;
    QByteArray m_porEnviar;
    bool m_enviado = false;
    QTimer m_silencio;
    QTimer m_total;
};
