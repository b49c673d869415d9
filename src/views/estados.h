#pragma once

#include "views/leituras.h"

#include <QByteArrayView>

// Registers of what is on or off: points at height 1 and 0.
namespace estados {

// A stored truth value: the text "True", however written, or a number other than 0.
bool ligado(QByteArrayView guardado);

// Changes of state, one point a row, in order of time and, within a second, of writing. There is no average: 0.
double lerMudancas(const PedidoLeituras &pedido, const AoLer &aoLer);
// Whether a register's value is drawn at this height.
bool mudancaNaAltura(const Recordset &rs, int coluna, double y);
// Whole periods that begin in the range: a point at 1 where one begins and one at 0 where it ends. The value column of
// the table is that of the end; a period still running has none.
double lerPeriodos(const PedidoLeituras &pedido, const AoLer &aoLer);

} // namespace estados
