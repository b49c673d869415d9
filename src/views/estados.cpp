#include "views/estados.h"

#include "core/literais.h"
#include "data/dialecto.h"
#include "data/ligacao.h"
#include "data/recordset.h"

#include <cmath>
#include <utility>

namespace {

enum Coluna { colData, colValor, colFlag, colNumero };

Recordset consultar(const PedidoLeituras &pedido) {
    const TabelaLeituras &t = pedido.tabela;
    const QString sql = u"SELECT "_s + t.data + u", " + t.valor + u", flag, " + dialecto::ordem + u" FROM " + t.nome +
                        u" WHERE " + t.data + u" BETWEEN ? AND ? AND " + escolhas::condicao(t.chave) + u" ORDER BY " +
                        t.data;
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
    OrdemDeEscrita ordem(aoLer);
    Recordset rs = consultar(pedido);
    while (rs.avancar()) {
        const double data = rs.segundos(colData);
        if (std::isnan(data))
            pedido.deFora(rs.texto(colData), rs.texto(colValor));
        else
            ordem.juntar(rs.inteiro(colNumero),
                         {data, ligado(rs.utf8(colValor)) ? 1.0 : 0.0, {}, temNota(rs, colFlag)});
    }
    ordem.despejar();
    return 0;
}

bool mudancaNaAltura(const Recordset &rs, int coluna, double y) {
    return ligado(rs.utf8(coluna)) == (y != 0);
}

double lerPeriodos(const PedidoLeituras &pedido, const AoLer &aoLer) {
    Recordset rs = consultar(pedido);
    while (rs.avancar()) {
        const bool nota = temNota(rs, colFlag);
        for (const auto &[coluna, altura] : {std::pair{colData, 1.0}, std::pair{colValor, 0.0}}) {
            const double data = rs.segundos(coluna);
            if (!std::isnan(data))
                aoLer({data, altura, {}, nota});
            else if (!rs.texto(coluna).trimmed().isEmpty()) // one still running has no end
                pedido.deFora(rs.texto(colData), rs.texto(coluna));
        }
    }
    return 0;
}

} // namespace estados
