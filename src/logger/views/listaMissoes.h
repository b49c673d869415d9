#pragma once

#include "logger/missoes.h"

#include <QList>
#include <QStringView>

// The list of missions, in progress or concluded.
namespace listaMissoes {

enum class Ordem { ID, Registador, Programacao, FimMissao };

struct Linha {
    ChaveMissao chave;
    QString DataProg, DataFimMissao; // as shown
};
QList<Linha> listar(bool concluidas, Ordem ordem);

// Missions in progress whose end has passed become concluded; nothing else of them changes.
void VerificarMissoesConcluidas();

} // namespace listaMissoes
