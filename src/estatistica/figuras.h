#pragma once

#include "estatistica/amostras.h"

#include <limits>

namespace estatistica {

inline constexpr double semFigura = std::numeric_limits<double>::quiet_NaN();

// What the readings of one sensor in a range amount to. NaN where a figure cannot be told: all of them without
// readings, the standard deviation of a single one, the mean kinetic temperature of what is no temperature.
struct Figuras {
    qint64 leituras = 0;
    double primeira = semFigura, ultima = semFigura; // instants
    double minimo = semFigura, instanteDoMinimo = semFigura;
    double maximo = semFigura, instanteDoMaximo = semFigura; // the first one, where it was reached more than once
    double media = semFigura;                                // by count
    double mediaNoTempo = semFigura;                         // by pesos()
    double desvio = semFigura;                               // of the sample (n - 1)
    double mediana = semFigura, p5 = semFigura, p95 = semFigura;
    double cineticaMedia = semFigura; // degrees Celsius
    double espacamento = 0;           // seconds
    qint64 lacunas = 0;
    double semLeituras = 0; // seconds in gaps
};

Figuras figuras(std::span<const Amostra> amostras, Genero genero);

// 10000 / -ln(weighted mean of exp(-10000/T)) - 273.15, T in kelvin: 83.14472 kJ/mol over 8.314472 J/(mol K).
double temperaturaCineticaMedia(std::span<const Amostra> amostras, std::span<const double> pesos);

} // namespace estatistica
