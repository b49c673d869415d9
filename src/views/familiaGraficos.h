#pragma once

#include "views/exportacao.h"
#include "views/familiaPontos.h"
#include "views/leituras.h"
#include "views/regras.h"

#include <span>

// What becomes of one choice alone: a line with its limits, coloured point by point, or a line like those of several.
enum class LinhaUnica { ComLimites, ComoVarias };

// One line chart.
struct MembroGrafico {
    QStringView form;
    TabelaLeituras tabela;
    const RegraTipo *regra;
    QStringView unidade; // behind values and the average
    int decimais = 2;    // of the average
    QStringView tituloEixo;
    QStringView titulo;
    QStringView tituloImpressao;
    QStringView baseCSV;
    QStringView baseJPG;
    const MembroPontos *pontos;
    EixoEsquerdo eixo = EixoEsquerdo::Folga;
    double (*ler)(const PedidoLeituras &, const AoLer &) = lerLeituras;
    // Whether a row's value is that of a point at this height; null: its second alone finds the row.
    bool (*eDoPonto)(const Recordset &, int coluna, double y) = valorNaAltura;
    QStringView chaveTitulo{};                      // empty: the form's name and ".Caption"
    QStringView formMedia = u"frmGraficoPrincipal"; // whose section holds the text of the average
    LinhaUnica linhaUnica = LinhaUnica::ComLimites;
    bool comCSV = true;
    const exportacao::FormatoCSV *csv = nullptr; // null: that of readings
    QStringView formLimites{};                   // whose section names the limit lines; empty: its own
    int casas = -1;                              // decimals of values that are shown; negative: as many as stored
};

std::span<const MembroGrafico> familiaGraficos();
// Null when there is no such form.
const MembroGrafico *membroGrafico(QStringView form);
