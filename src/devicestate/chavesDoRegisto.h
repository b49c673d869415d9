#pragma once

#include "core/eventos.h"

#include <QStringList>

// The different values of a key column. A register has many rows and few keys: one step of the index for each key
// instead of a run through all rows.
namespace chavesDoRegisto {

QStringList distintas(QStringView tabela, QStringView coluna, const Vigia &vigia, QStringView colunaDe = {},
                      const QString &de = {});

} // namespace chavesDoRegisto
