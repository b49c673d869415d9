#pragma once

#include "platform/onewire/transporte.h"

#include <QString>

#include <memory>

namespace onewire {

// Where a port of the settings lies: the key "Caminho<tipo>.<porto>" of section LIAGACAOHARDWARE, else the usual
// place; empty when the pair stands for nothing here.
QString caminhoDoPorto(qint16 porto, qint16 tipo);

// The adapter at a port, locked against other programs: a folder is a bus master of the kernel or a drawer, anything
// else a serial line. Null when that is not possible; the cause is noted.
std::unique_ptr<Transporte> abrirPorto(qint16 porto, qint16 tipo);
std::unique_ptr<Transporte> abrirNoCaminho(const QString &caminho);

} // namespace onewire
