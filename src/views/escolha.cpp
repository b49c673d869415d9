#include "views/escolha.h"

#include "core/literais.h"

namespace escolhas {

QString condicao(const ColunasChave &colunas) {
    QStringList partes;
    for (const QStringView coluna : colunas)
        if (!coluna.isEmpty())
            partes.append(coluna + u" = ?"_s);
    return partes.join(u" AND "_s);
}

QVariantList valores(const QStringList &chave) {
    return {chave.begin(), chave.end()};
}

} // namespace escolhas
