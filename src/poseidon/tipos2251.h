#pragma once

#include <QString>
#include <QStringView>

// Kinds of channels and sentinels of the units' logs.
namespace modTratamentoDados2251 {

constexpr QStringView semLeitura = u"-9999";
constexpr QStringView valorND = u"ND";

constexpr QStringView tipoTemperatura = u"P 1250C";
constexpr QStringView tipoHumidade = u"P 1250%";
constexpr QStringView tipoTensao = u"P 1250V";
constexpr QStringView tipoCorrente = u"P 1250A";

enum class Especie { Nenhuma, Temperatura, Humidade, SensUI };

struct InfoTipo {
    QStringView tipo;
    Especie especie;
    QStringView escala; // of a Sens-UI input without one of its own
    double sensUIMax;   // stored when the sensor is added
    double sensUIMin;
};
constexpr InfoTipo tiposDeCanal[] = {
    {tipoTemperatura, Especie::Temperatura, u"", 20, 4},
    {tipoHumidade, Especie::Humidade, u"", 20, 4},
    {tipoTensao, Especie::SensUI, u"V", 15, 0},
    {tipoCorrente, Especie::SensUI, u"mA", 25, 0},
};

inline InfoTipo infoDoTipo(QStringView tipo) {
    for (const InfoTipo &t : tiposDeCanal)
        if (t.tipo == tipo)
            return t;
    return {tipo, Especie::Nenhuma, u"", 20, 4};
}

inline bool eSensUI(QStringView tipo) {
    return infoDoTipo(tipo).especie == Especie::SensUI;
}

} // namespace modTratamentoDados2251
