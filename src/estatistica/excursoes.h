#pragma once

#include "estatistica/amostras.h"

namespace estatistica {

// A stay beyond one limit. It begins with the first reading outside and ends with the first one that is not; where a
// gap or the end of the range comes before that one, it is open, and ends with the last reading that is known.
struct Excursao {
    EstadoDoPonto lado;
    double inicio, fim; // instants
    double pico, instanteDoPico;
    bool aberta;
    double duracao() const { return fim - inicio; }
};

// Each reading is judged by the limits stored with it. The readings have to be validas().
std::vector<Excursao> excursoes(std::span<const Amostra> amostras, double espacamento);

// Seconds in that state, and how many times: a reading stands until the next one, never over a gap.
struct Permanencia {
    double segundos = 0;
    qint64 vezes = 0;
};
Permanencia permanencia(std::span<const Excursao> excursoes, EstadoDoPonto lado);

} // namespace estatistica
