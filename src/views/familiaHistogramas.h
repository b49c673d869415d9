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
    // What stands in brackets behind a name on paper; none: the key.
    QString (*parenteses)(const TabelaLeituras &, const Escolha &, const Intervalo &) = nullptr;
    bool extremosSemDatas = false; // the buckets span all values of what is chosen, whatever the range
};

std::span<const MembroHistograma> familiaHistogramas();
