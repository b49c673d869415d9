#pragma once

#include "core/falha.h"
#include "data/ligacao.h"
#include "data/recordset.h"

// What the body failed with; number 0 when it did not.
struct Resultado {
    int numero = 0;
    QString descricao;
};
template <typename Corpo>
Resultado falhaDe(Corpo &&corpo) {
    try {
        corpo();
    } catch (const Falha &f) {
        return {f.numero(), f.descricao()};
    }
    return {};
}

inline int contar(Ligacao &bd, const QString &tabela) {
    Recordset rs = bd.consultar(u"SELECT COUNT(*) FROM "_s + tabela);
    return rs.avancar() ? int(rs.inteiro(0)) : -1;
}
