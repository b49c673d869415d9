#include "views/estados.h"

#include "core/literais.h"
#include "data/ligacao.h"
#include "data/recordset.h"

#include <cmath>

namespace {

enum Coluna { colData, colValor, colFlag };

// The rows of a second come out of the index by their values: the row's number puts them back in order.
Recordset consultar(const PedidoLeituras &pedido) {
    const TabelaLeituras &t = pedido.tabela;
    const QString sql = u"SELECT "_s + t.data + u", " + t.valor + u", flag FROM " + t.nome + u" WHERE " + t.data +
                        u" BETWEEN ? AND ? AND " + escolhas::condicao(t.chave) + u" ORDER BY " + t.data + u", rowid";
    return cnBD().consultar(sql, QVariantList{pedido.intervalo.inicio, pedido.intervalo.fim} +
                                     escolhas::valores(pedido.chave));
}

} // namespace

namespace estados {

bool ligado(QByteArrayView guardado) {
    const QByteArrayView aparado = guardado.trimmed();
    if (aparado.compare("true", Qt::CaseInsensitive) == 0)
        return true;
    bool numero = false;
    return aparado.toDouble(&numero) != 0 && numero;
}

double lerMudancas(const PedidoLeituras &pedido, const AoLer &aoLer) {
    Recordset rs = consultar(pedido);
    while (rs.avancar()) {
        const double data = rs.segundos(colData);
        if (!std::isnan(data))
            aoLer({data, ligado(rs.utf8(colValor)) ? 1.0 : 0.0, {}, temNota(rs, colFlag)});
    }
    return 0;
}

double lerPeriodos(const PedidoLeituras &pedido, const AoLer &aoLer) {
    Recordset rs = consultar(pedido);
    while (rs.avancar()) {
        const bool nota = temNota(rs, colFlag);
        if (const double inicio = rs.segundos(colData); !std::isnan(inicio))
            aoLer({inicio, 1, {}, nota});
        if (const double fim = rs.segundos(colValor); !std::isnan(fim))
            aoLer({fim, 0, {}, nota});
    }
    return 0;
}

} // namespace estados
