#pragma once

#include "core/eventos.h"
#include "logger/missoes.h"
#include "views/familiaGraficos.h"
#include "views/familiaHistogramas.h"
#include "views/familiaListagens.h"

#include <optional>
#include <utility>

// The views of stored missions: members of the families whose rows are those of one mission.
namespace familiaLoggers {

std::span<const MembroGrafico> graficos();
std::span<const MembroHistograma> histogramas();
std::span<const MembroListagem> listagens();

struct Registador {
    QString LoggerID, Nomelogger;
};
QList<Registador> registadores(const Vigia &vigia);

struct Missao {
    QString DescricaoMissao, Nmissao;
};
QList<Missao> missoesDe(const Registador &registador, const Vigia &vigia);

// From the first sample to the last; none without samples.
std::optional<std::pair<QDateTime, QDateTime>> intervaloDe(const ChaveMissao &chave);

} // namespace familiaLoggers
