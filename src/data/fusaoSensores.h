#pragma once

#include <QString>

#include <functional>
#include <vector>

class Vigia;

// Merging a sensor into another one and removing a sensor with its data, across all tables that name it. The tables
// of pressure and dew point are not among them: their rows keep the old identifier.
namespace fusaoSensores {

struct AlteracaoSensor {
    QString antigo;
    QString novo;          // blank: no merge. No sensor of this name need exist.
    bool eliminar = false; // after the merge, if there is one
};

// False for a row that names neither another sensor nor a removal.
bool temEfeito(const AlteracaoSensor &alteracao);

struct ContagemTabela {
    QString tabela;
    qint64 movidas = 0;
    qint64 eliminadas = 0;
};

// Rows handled so far, for a progress display. Comes often.
using Progresso = std::function<void(qint64)>;

// What carrying out the list from first to last would do: every table with rows to move or to go. A row that moves
// twice counts twice. Lets events run, throws Interrompido as `vigia` does.
std::vector<ContagemTabela> contarAlteracoes(const std::vector<AlteracaoSensor> &alteracoes, const Vigia &vigia);

// Carries out one row as one transaction; on a failure or an Interrompido nothing of it has happened. Lets events run.
// A merge into itself (also in other letters' case) is no merge: it would only lose the sensor.
void executarAlteracao(const AlteracaoSensor &alteracao, const Vigia &vigia, const Progresso &progresso = {});

} // namespace fusaoSensores
