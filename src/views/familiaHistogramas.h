#pragma once

#include "views/leituras.h"
#include "views/regras.h"

#include <span>

// One histogram.
struct MembroHistograma {
    QStringView form;
    TabelaLeituras tabela;
    const RegraTipo *regra;
    QStringView titulo;
    QStringView tituloImpressao;
    QStringView baseJPG;
    QStringView tituloEixo{}; // left axis; empty: none
};

std::span<const MembroHistograma> familiaHistogramas();
