#pragma once

#include <QList>
#include <QMap>
#include <QString>

// The texts of the interface as they stand in the sources: beside their key, and mostly with a section that the file
// itself names.
namespace textosDasFontes {

struct Texto {
    QString chave, omissao;
};
using Textos = QMap<QPair<QString, QString>, QString>; // section and key -> default

struct Fonte {
    QList<Texto> textos;
    QString seccao; // of the file's own lookup; empty: that of the form which uses the file's class
};
Fonte analisar(const QString &codigo);

// Calls and rows that name their section themselves, or whose kind has one.
void juntarDirectos(const QString &codigo, Textos &usados);

} // namespace textosDasFontes
