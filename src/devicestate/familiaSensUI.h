#pragma once

#include "views/familiaGraficos.h"
#include "views/familiaHistogramas.h"
#include "views/familiaListagens.h"

// The Sens-UI members of the families: analogue inputs of a unit, each in a scale of its own.
namespace familiaSensUI {

std::span<const MembroGrafico> graficos();
std::span<const MembroHistograma> histogramas();
std::span<const MembroListagem> listagens();

} // namespace familiaSensUI
