#pragma once

#include "core/literais.h"

#include <QString>

// Where the engines' languages differ, as words of the domain; all other statements are the same for every engine.
namespace dialecto {

// The column that says in which order the rows of a table were stored: larger for what was stored later, and what a
// row is found by while it stands. Every table has it, and "*" does not stand for it.
inline constexpr QStringView ordem = u"rowid";

// The value with this number among those of a statement, from 1; it may stand in several places.
inline QString marca(int numero) {
    return u'?' + QString::number(numero);
}

// Of a condition: at most so many of the rows of a table that meet <onde>, whichever.
inline QString algumas(QStringView tabela, const QString &onde, qint64 quantas) {
    return ordem + u" IN (SELECT "_s + ordem + u" FROM " + tabela + u" WHERE " + onde + u" LIMIT " +
           QString::number(quantas) + u')';
}

// Removes at most <quantas> of the rows that meet <onde>; run it until it changes none.
inline QString apagarAlgumas(QStringView tabela, const QString &onde, qint64 quantas) {
    return u"DELETE FROM "_s + tabela + u" WHERE " + algumas(tabela, onde, quantas);
}

// Of a condition: the row that this connection stored last.
inline QString ultimaGuardada() {
    return ordem + u" = last_insert_rowid()"_s;
}

// A column as it is stored: texts of it otherwise compare without case.
inline QString aLetra(QStringView coluna) {
    return coluna + u" COLLATE BINARY"_s;
}

// Equality of which Null is a part.
inline QString mesmo(const QString &a, QStringView b) {
    return a + u" IS "_s + b;
}
inline QString outro(const QString &a, QStringView b) {
    return a + u" IS NOT "_s + b;
}

// Whether a column that holds numbers and texts, such as "ND", holds a text; and a text as a number, 0 where it is
// none.
inline QString eTexto(QStringView coluna) {
    return u"typeof("_s + coluna + u") = 'text'";
}
inline QString comoInteiro(QStringView coluna) {
    return u"CAST("_s + coluna + u" AS INTEGER)";
}

// What the database holds: the names of its tables; names and statements of the indexes that were made by statements.
inline constexpr QStringView tabelas = u"SELECT name FROM sqlite_master WHERE type = 'table'";
inline constexpr QStringView indices = u"SELECT name, sql FROM sqlite_master WHERE type = 'index' AND sql IS NOT NULL";

} // namespace dialecto
