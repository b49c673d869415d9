#pragma once

#include "views/leituras.h"

#include <QStringList>

#include <functional>
#include <span>

// The rows of a chart as a semicolon-separated file: UTF-8 without a mark, CR LF, no header, no quoting; numbers and
// dates in the locale's form, choice by choice.
namespace exportacao {

enum class FormaCSV {
    Texto,   // as stored
    Data,    // date and time
    Numero,  // a number; a text that is none, such as "ND", goes as it is
    Limites, // two fields, maximum and minimum
    Estado,  // 1 for true, 0 for all else
};
struct ColunaCSV {
    QStringView coluna; // or expression
    FormaCSV forma;
};
struct FormatoCSV {
    std::span<const ColunaCSV> colunas;
    QStringView ordem = u"Data";
};

struct PedidoCSV {
    QString caminho;
    TabelaLeituras tabela;
    QList<QStringList> chaves;
    Intervalo intervalo;
    const FormatoCSV *formato = nullptr; // null: that of readings (date, sensor, name, value, limits)
};

// Falha when the file cannot be written or a reading cannot be understood; what stood under its name then stays, as it
// does when passar throws. passar is called for every row and may throw.
void escreverCSV(const PedidoCSV &pedido, const std::function<void()> &passar);

} // namespace exportacao
