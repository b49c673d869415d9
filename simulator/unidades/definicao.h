#pragma once

#include "simulator/unidades/defeitos.h"

#include <QDateTime>
#include <QList>

#include <functional>
#include <optional>

namespace simulador {

// One channel of a unit: what setup.xml says of it and how its readings move.
struct Canal {
    QString id;
    QString nome;
    QString unidade; // "C", "%RH", "V", "mA" or "s" (an input of the extension)
    double centro = 0;
    double amplitude = 0;
    double minimo = 0;
    double maximo = 0;
    bool ligado = true;
};

struct Definicao {
    QString endereco = QStringLiteral("127.0.0.2");
    QString nome; // empty: made from the address
    QString mac;  // empty: made from the address
    QString firmware = QStringLiteral("3.1.4");
    int modelo = 4;
    quint16 portaWeb = 0; // 0: any free one
    quint16 portaConsola = 0;
    quint16 portaPesquisa = 0;
    qint64 registos = 2000; // the memory's room
    int intervalo = 300;    // seconds between records
    int acertoMinutos = 0;  // how far the unit's clock is off at the start
    int atrasoMs = 2500;    // for those that are late
    Defeitos defeitos;
    QString ficheiroEstado;           // empty: nothing is kept
    QList<Canal> canais;              // empty: the usual ones
    std::function<QDateTime()> agora; // empty: the system's
    // What a channel reads at a moment, seconds since 1970; nothing: no reading. Empty: each channel's own wave, and
    // records of inputs and outputs among the others.
    std::function<std::optional<double>(const QString &endereco, const QString &id, qint64 t)> leitura;
};

// Fills in what was left open.
Definicao completa(Definicao d);
QString nomeDoModelo(int modelo);

} // namespace simulador
