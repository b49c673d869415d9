#pragma once

#include <QByteArray>
#include <QString>

// Compares with a golden file of tests/ouro. Empty when they are equal; otherwise a diff to print. With VISTREL_OURO
// set the present bytes take the golden file's place; packaging/refazer-ouro.sh does it and shows what changed.
QByteArray diferencaDoOuro(const QString &nome, const QByteArray &bytes);
