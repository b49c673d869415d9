#pragma once

#include <QList>
#include <QStringList>
#include <QStringView>
#include <QVariant>

#include <array>

// One thing chosen in a panel: the values of the columns that say whose the rows are, and how it is called.
struct Escolha {
    QStringList chave;
    QString nome;

    QString textoDaChave() const { return chave.join(QStringLiteral(" - ")); }
};

// Names of those columns; empty ones at the end do not count.
using ColunasChave = std::array<QStringView, 4>;

namespace escolhas {

// "a = ? AND b = ?", with the values to be bound to it.
QString condicao(const ColunasChave &colunas);
QVariantList valores(const QStringList &chave);

} // namespace escolhas
