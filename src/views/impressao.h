#pragma once

#include <QList>
#include <QString>

// Texts at the head of printed views.
namespace impressao {

// Whose readings, from when to when: the unit of the filter, or that of the only sensor (empty: there are several),
// before the range.
QString descricao(const QString &tagDoFiltro, const QString &unicoSensor, const QString &inicio, const QString &fim,
                  bool semMac = false);

// The names in a histogram, each with what stands in brackets behind it; a text longer than 725 characters is cut to
// 721 and " ...".
struct Nomeado {
    QString nome;
    QString parenteses;
};
QString listaDeSensores(const QString &prefixo, const QList<Nomeado> &seleccao);

// The date in the short form, and the time of printing.
QString dataHora();

} // namespace impressao
