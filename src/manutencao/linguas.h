#pragma once

#include <QList>
#include <QString>

// The languages that the settings list, numbers 1 to 15.
namespace linguas {

struct Lingua {
    int numero;
    QString nome;
    QString codigo;
    QString entrada() const; // "name - code"
};
QList<Lingua> listadas();

QString activa(); // key ACT, "1" when it is missing
QString codigo(const QString &numero);

// Czech needs the Central European character set, every other language another one. Without a set the system chooses
// by the text, and nothing has to be changed.
bool pedeOutraPagina(const QString &codigo, int conjuntoDeCaracteres);

} // namespace linguas
