#pragma once

#include "core/literais.h"

#include <QString>

// The few places where the engines' SQL differs.
namespace dialecto {

// A condition met by one row at most: the first stored of those that meet <onde>.
inline QString soUmaLinha(QStringView tabela, const QString &onde) {
    return u"rowid = (SELECT rowid FROM "_s + tabela + u" WHERE " + onde + u" ORDER BY rowid LIMIT 1)";
}

// Removes at most <quantas> of the rows that meet <onde>; run it until it changes none.
inline QString apagarAlgumas(QStringView tabela, const QString &onde, int quantas) {
    return u"DELETE FROM "_s + tabela + u" WHERE rowid IN (SELECT rowid FROM " + tabela + u" WHERE " + onde +
           u" LIMIT " + QString::number(quantas) + u')';
}

} // namespace dialecto
