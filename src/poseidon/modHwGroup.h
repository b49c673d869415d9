#pragma once

#include <QString>

// What is known of the maker's units.
namespace modHwGroup {

constexpr int modelo2251 = 4;
constexpr int modelo2250 = 34;

// The model's name; empty for an unknown code.
QString BuscaDescricaoDeDispositivoPorCodigo(int codigo);

// Models whose log this system reads.
bool temLog(int codigo);

// The linear map of the input range on the output range. Infinite or NaN for an input range without width.
double ConverterEscalas(double valor, double maximoEntrada, double minimoEntrada, double maximoSaida,
                        double minimoSaida);

} // namespace modHwGroup
