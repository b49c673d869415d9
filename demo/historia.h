#pragma once

#include "demo/catalogo.h"

#include <functional>
#include <map>
#include <vector>

class Ligacao;

namespace demonstracao {

// How far back the readings go, so that about as many rows as asked for come out.
struct Prazos {
    double diasPrincipais = 395;
    double diasOutros = 30;
};
Prazos prazosPara(qint64 linhas, const std::vector<Sensor> &sensores);

// A value beyond its limit, and a whole stretch of them.
struct Alarme {
    const Sensor *sensor;
    qint64 t;
    double valor;
    double maximo; // in force then
};
struct Episodio {
    const Sensor *sensor;
    qint64 inicio;
    qint64 fim; // 0: still going on
};

// Everything the makers of tables share.
struct Historia {
    Ligacao &bd;
    Clima clima;
    std::vector<Sensor> sensores;
    qint64 fim; // wall-clock seconds, a multiple of 300
    Prazos prazos;
    std::function<void(const QString &)> aoAvancar;

    std::map<const Medida *, std::vector<Alarme>> alarmes{};
    std::vector<Episodio> episodios{};
    std::vector<double> ultimos{}; // by sensor; NaN: no reading

    qint64 inicio() const { return fim - qint64(prazos.diasPrincipais * 86400) / 300 * 300; }
};

void gravarCadastro(Historia &h); // units, groups, sensors, rules, scales, users
void gravarLeituras(Historia &h); // all tables of readings
void gravarAlarmes(Historia &h);
void gravarRegistos(Historia &h);
void gravarMissoes(Historia &h);

// The state of an input's contact; what hangs nowhere rests.
bool ligado(const Clima &clima, QStringView endereco, int numero, qint64 t);

// "YYYY-MM-DD HH:MM:SS"
QByteArray textoData(qint64 t);
// A number as the program of that separator writes it, with so many places at most.
QByteArray textoNumero(double valor, int casas, QChar separador);

} // namespace demonstracao
