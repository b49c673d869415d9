#pragma once

#include "views/sensores.h"

#include <QList>
#include <QString>

// Texts at the head of printed views.
namespace impressao {

// Whose readings, from when to when: the unit of the filter, or that of the only sensor, before the range.
QString descricao(const QString &tagDoFiltro, const QList<Sensor> &seleccao, const QString &inicio, const QString &fim);

// The sensors of a histogram, in order; a text longer than 725 characters is cut to 721 and " ...".
QString listaDeSensores(const QString &prefixo, const QList<Sensor> &seleccao);

// The date in the short form, and the time of printing.
QString dataHora();

} // namespace impressao
