#pragma once

#include "views/familiaGraficos.h"
#include "views/familiaHistogramas.h"
#include "views/familiaListagens.h"
#include "views/forms/painelVista.h"

class RegistoForms;

// Makes the views known by their names.
void registarVistas(RegistoForms &forms);

// Members of the families whose choice is another: the panel of each comes from its row.
template <typename Membro>
using PainelDe = std::function<FabricaPainel(const Membro &)>;
void registarMembros(RegistoForms &forms, std::span<const MembroGrafico> membros,
                     const PainelDe<MembroGrafico> &painelDe);
void registarMembros(RegistoForms &forms, std::span<const MembroHistograma> membros,
                     const PainelDe<MembroHistograma> &painelDe);
void registarMembros(RegistoForms &forms, std::span<const MembroListagem> membros,
                     const PainelDe<MembroListagem> &painelDe);
