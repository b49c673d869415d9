#pragma once

#include "core/estadoDoPonto.h"

#include <span>
#include <vector>

// Readings of one sensor as the figures see them: by instant (seconds since 1970, wall clock; several may share one),
// each with a value. What has none ("ND", a number that is not finite) never enters.
namespace estatistica {

struct Amostra {
    double instante;
    double valor;
    EstadoDoPonto estado = EstadoDoPonto::Normal; // by the limits stored with it
};

// What the values are decides which of them can be: nothing is colder than absolute zero.
enum class Genero { Qualquer, Temperatura }; // degrees Celsius

constexpr double zeroAbsoluto = -273.15;

// Those that enter, in their order, which has to be by instant.
std::vector<Amostra> validas(std::span<const Amostra> amostras, Genero genero);

// The usual spacing: the median interval from reading to reading, in seconds; 0 where there are not two.
double espacamentoUsual(std::span<const Amostra> amostras);

// An interval without readings is a gap when it is longer than three times the usual spacing and than half an hour.
bool eLacuna(double intervalo, double espacamento);

struct Lacuna {
    double inicio, fim; // the last reading before it, the first one behind it
    double duracao() const { return fim - inicio; }
};
std::vector<Lacuna> lacunas(std::span<const Amostra> amostras, double espacamento);

// How much each reading stands for in a mean, in seconds: half the interval to each neighbour; at either end and at a
// gap half the usual spacing takes its place, so that even spacing gives the plain count. Where that is nothing for all
// of them (one reading, or one instant) all weigh alike.
std::vector<double> pesos(std::span<const Amostra> amostras, double espacamento);

// The value below which that part of the values lies (0 to 1), linear between the order statistics. Puts the values
// in another order; NaN without any.
double percentil(std::vector<double> &valores, double parte);

} // namespace estatistica
