#pragma once

#include "views/leituras.h"

#include <QStringList>

#include <functional>

// The readings of a chart as a semicolon-separated file: UTF-8 without a mark, CR LF, no header, no quoting; numbers
// and dates in the locale's form, sensor by sensor.
namespace exportacao {

struct PedidoCSV {
    QString caminho;
    TabelaLeituras tabela;
    QStringList sensores;
    Intervalo intervalo;
};

// Falha when the file cannot be written or a reading cannot be understood; the lines so far stay in the file, and the
// description says how many. passar is called for every row and may throw.
void escreverCSV(const PedidoCSV &pedido, const std::function<void()> &passar);

} // namespace exportacao
