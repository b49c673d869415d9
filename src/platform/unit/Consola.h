#pragma once

#include <QObject>
#include <QString>

#include <memory>

// TCP client of a unit's text console. Bytes are shown and sent as Latin-1; telnet options are left out.
class Consola : public QObject {
    Q_OBJECT
public:
    enum Estado { fechada = 0, aLigar = 6, ligada = 7 };
    // The numbers that users of the terminal know.
    enum Erro {
        erroDesconhecido = 10050,
        erroInterrompida = 10054,
        erroTempo = 10060,
        erroRecusada = 10061,
        erroNome = 11001,
    };
    static constexpr int tempoPorOmissao = 5000;

    using QObject::QObject;
    virtual void Connect(const QString &RemoteHost, quint16 RemotePort) = 0;
    virtual int State() const = 0; // 0 also once the unit has closed and all its text has been taken
    virtual QString GetData() = 0; // what has arrived since the last call
    virtual bool SendData(const QString &texto) = 0;
    virtual void Close() = 0;
    virtual void definirTempo(int ms) = 0; // to connect, and for the unit to take what is sent

Q_SIGNALS:
    void DataArrival(qint64 bytes);
    void Error(int numero, const QString &descricao);
};

std::unique_ptr<Consola> novaConsola();
