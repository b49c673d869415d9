#pragma once

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

// The texts of the interface as they stand in the sources: beside their key, and sometimes beside their section.
namespace textosDasFontes {

struct Texto {
    QString chave, omissao;
};
using Textos = QMap<QPair<QString, QString>, QString>; // section and key -> default

struct Fonte {
    QList<Texto> textos;
    QStringList seccoes; // named by the file itself
    bool seccaoCalculada = false;
};
Fonte analisar(QString codigo);

// Calls that name section, key and text at once.
void juntarDirectos(const QString &codigo, Textos &usados);

} // namespace textosDasFontes
