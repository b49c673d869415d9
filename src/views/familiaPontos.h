#pragma once

#include "views/escolha.h"
#include "views/grandezas.h"

// The form of a chart's points.
struct MembroPontos {
    QStringView form;
    QStringView grafico;
    QStringView tabela;
    EtiquetaValor valor;
    QStringView seccaoDe{}; // whose texts it uses; empty: its own
    QStringView legendaChave = u"Sensor";
    ColunasChave chave{u"Sensor"};
    QStringView data = u"Data";
    QStringView dataDoZero{}; // column of the end, where a row is a period and its end is drawn at height 0
};

namespace familiaPontos {

inline constexpr EtiquetaValor temperatura{u"lblTemp", u"Temperatura"};

} // namespace familiaPontos
