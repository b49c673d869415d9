#pragma once

#include "logger/memoriaDS1921.h"
#include "platform/onewire/transporte.h"

#include <vector>

// Several buttons on one reader: which are there, and with which of them all work is done.
namespace escolhaDoBotao {

struct Botao {
    onewire::Rom rom{};
    QString ROMID;
    QString descricao; // logger and mission by the record on it, empty when there is none that can be read
};

// Names are read only where there is something to choose between. Empty also when the reader cannot be reached.
std::vector<Botao> noLeitor(SessaoTMEX::Porto porto);

// The chosen one; none: whatever lies on the reader.
std::optional<onewire::Rom> escolhido();
void escolher(const std::optional<onewire::Rom> &rom);

} // namespace escolhaDoBotao
