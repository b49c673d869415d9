#pragma once

#include "core/eventos.h"
#include "views/regras.h"

#include <QList>
#include <QString>

// A row of the lists of sensors.
struct Sensor {
    QString id;
    QString nome;
    bool desactivado = false;
};

// What narrows the list: "0" for all sensors, "#P#" and an address for a unit, else the code of a group.
struct Filtro {
    QString tag;
    QString texto;
};

namespace sensores {

inline constexpr QStringView tagTodos = u"0";
inline constexpr QStringView prefixoUnidade = u"#P#";
inline constexpr qsizetype tamanhoDoId = 16;

// The address in a tag of a unit, else empty.
QString unidadeDaTag(const QString &tag);
// The id at the end of a cell or of the name of a series.
QString idDe(const QString &texto);

QList<Sensor> listar(const RegraTipo &regra, const QString &tag, const Vigia &vigia);
// All sensors, then the units, then the groups.
QList<Filtro> listarFiltros(const QString &textoTodos, const Vigia &vigia);

} // namespace sensores
