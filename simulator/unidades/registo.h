#pragma once

#include "simulator/unidades/definicao.h"

#include <QByteArray>

namespace simulador {

// A unit's memory: its clock and its log. Records are never stored: each is made from its number, and what an erasure
// has removed is one moment, kept in the state file together with the clock.
class Registo {
public:
    explicit Registo(const Definicao &definicao);

    QDateTime relogio() const;
    void acertar(const QDateTime &hora);

    qint64 quantos() const;
    qint64 primeiro() const; // the number of the oldest record
    QByteArray linha(qint64 numero) const;
    void apagar(qint64 quantosMaisAntigos);

    // The last transfer, and the erasure of what is still there of it but the newest <sobram>; false when it was
    // another one.
    void recordar(qint64 primeiro, qint64 quantos, const QByteArray &soma);
    bool apagarTransferidos(qint64 quantos, const QByteArray &soma, qint64 sobram = 0);

    // A channel's present reading as setup.xml writes it.
    QString valorActual(const Canal &canal) const;
    bool entrada(int numero, qint64 registo) const; // inputs 1 to 3
    bool saida(int numero, qint64 registo) const;   // outputs 1 and 2

private:
    qint64 ultimo() const; // number of the newest record
    std::optional<double> valor(const Canal &canal, qint64 numero) const;
    bool ligado(const Canal &canal, qint64 numero) const; // of an input of the extension
    void lerEstado();
    void gravarEstado() const;

    const Definicao &m_definicao;
    qint64 m_apagadoAte = 0; // seconds: records up to this moment are gone
    qint64 m_acerto = 0;     // seconds
    struct {
        qint64 primeiro = -1;
        qint64 quantos = 0;
        QByteArray soma;
    } m_transferido;
};

} // namespace simulador
