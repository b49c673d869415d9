#pragma once

#include "core/eventos.h"
#include "views/familiaGraficos.h"

// Conditions of the rule engine: when each was true.
namespace condicoes {

// A chart, and the rule table that has its conditions' names.
struct Especie {
    MembroGrafico grafico;
    QStringView tabelaDeNomes;
    QStringView campo;
};
std::span<const Especie> especies();

// Every key of the register with every name of the rule table: the list is the product of the two.
QList<Escolha> listar(const Especie &especie, const Vigia &vigia);

} // namespace condicoes
