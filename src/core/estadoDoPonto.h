#pragma once

#include <QtGlobal>

#include <array>

// What a point, a bar or a sample is beside its limits; views/alarme.h has the rules, the chart's theme the looks.
enum class EstadoDoPonto : quint8 { Normal, Acima, Abaixo };

inline constexpr std::array estadosDoPonto{EstadoDoPonto::Normal, EstadoDoPonto::Acima, EstadoDoPonto::Abaixo};
