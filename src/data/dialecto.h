#pragma once

#include "core/literais.h"

#include <QString>

// The few places where the engines' SQL differs.
namespace dialecto {

// Removes at most <quantas> of the rows that meet <onde>; run it until it changes none.
inline QString apagarAlgumas(QStringView tabela, const QString &onde, int quantas) {
    return u"DELETE FROM "_s + tabela + u" WHERE rowid IN (SELECT rowid FROM " + tabela + u" WHERE " + onde +
           u" LIMIT " + QString::number(quantas) + u')';
}

} // namespace dialecto
