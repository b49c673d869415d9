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
enum class OrdemCSV : quint8 {
    Data,    // those of one second as they were written
    DoFim,   // the latest date first
    Escrita, // as they were written
};
struct FormatoCSV {
    std::span<const ColunaCSV> colunas;
    OrdemCSV ordem = OrdemCSV::Data;
};

struct PedidoCSV {
    QString caminho;
    TabelaLeituras tabela;
    QList<QStringList> chaves;
    Intervalo intervalo;
    const FormatoCSV *formato = nullptr; // null: that of readings (date, sensor, name, value, limits)
    Ilegiveis *ilegiveis = nullptr;      // gets what is left out
};

// Falha when the file cannot be written; what stood under its name then stays, as it does when passar throws. A reading
// whose value cannot be read has no line, and a limit that cannot be read is written as none. passar is called for
// every row and may throw. Gives back how many lines there are; without any, no file is made.
qint64 escreverCSV(const PedidoCSV &pedido, const std::function<void()> &passar);

} // namespace exportacao
