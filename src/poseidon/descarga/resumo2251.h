#pragma once

#include "poseidon/modTratamentoDados2251.h"

#include <QStringList>

// What became of a log, in sentences for its row.
namespace resumo2251 {

QStringList dizer(const modTratamentoDados2251::Balanco &balanco);
// The first lines that could not be read, each with its cause.
QStringList ilegiveis(const modTratamentoDados2251::Balanco &balanco);
QString memoriaApagada(qint64 registos, qint64 restam);
QString memoriaIntacta(qint64 registos);

} // namespace resumo2251
