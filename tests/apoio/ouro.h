#pragma once

#include <QByteArray>
#include <QString>

// Compares with a golden file of tests/ouro. Empty when they are equal; otherwise what to print: a diff, and where the
// present bytes were left, to take the golden file's place when the change is meant.
QByteArray diferencaDoOuro(const QString &nome, const QByteArray &bytes);
