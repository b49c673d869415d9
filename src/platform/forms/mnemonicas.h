#pragma once

#include <QStringList>

// Captions of one menu with a letter of each marked for the keyboard, no letter twice as far as they go: beginnings
// of words first. A caption that marks one itself keeps it.
namespace mnemonicas {

QStringList distribuir(const QStringList &legendas);
// The marked letter in lower case; null: none.
QChar letraDe(const QString &legenda);

} // namespace mnemonicas
