#pragma once

#include "tests/apoio/instalacao.h"

class QWidget;

// An installation that outsiders have written: every name, note, unit, address and mission holds markup, controls,
// changes of direction, halves of pairs, quotes, line ends, or is 64 KB long.
namespace hostil {

QStringList textos();
void estragar(const Instalacao &instalacao);

// What a window and its controls show that may not be shown as it is, tooltips under the pointer included; none: well.
QStringList queixas(QWidget *janela);

} // namespace hostil
