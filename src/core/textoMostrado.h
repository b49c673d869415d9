#pragma once

#include <QString>

// A text from a file, a unit, a logger or the database as it may stand on the screen or on paper. Characters that are
// no letters but orders to whoever draws them (controls, changes of direction) and halves of a pair become marks; what
// is longer than its place is shortened and ends in "…". What is stored stays what it is.
namespace textoMostrado {

constexpr qsizetype semLimite = -1;

// In one line: line ends are shown as "↵".
QString linha(const QString &texto, qsizetype maximo = 500);

// Keeps its lines, as many as a message box has room for, and breaks words that would make it too wide; without a limit
// (on paper) only the marks are set.
QString paragrafos(const QString &texto, qsizetype maximo = 2000, qsizetype maximoDeLinhas = 40);

} // namespace textoMostrado
