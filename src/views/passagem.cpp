#include "views/passagem.h"

#include "core/literais.h"
#include "data/ligacao.h"

Recordset linhasPorData(const PedidoLeituras &pedido, const QString &colunas) {
    const TabelaLeituras &t = pedido.tabela;
    return cnBD().consultar(u"SELECT "_s + colunas + u" FROM " + t.nome + u" WHERE " + t.data +
                                u" BETWEEN ? AND ? AND " + escolhas::condicao(t.chave) + u" ORDER BY " + t.data,
                            QVariantList{pedido.intervalo.inicio, pedido.intervalo.fim} +
                                escolhas::valores(pedido.chave));
}

void Passagem::relatarAntesDe(const QString &data) {
    std::erase_if(m_deFora, [&](const auto &caso) {
        if (!data.isEmpty() && caso.first >= data)
            return false;
        m_pedido.deFora(caso.first, caso.second);
        return true;
    });
}

void Passagem::dar(std::vector<Numerada> &doSegundo, const AoLer &aoLer) {
    if (doSegundo.size() > 1)
        std::ranges::sort(doSegundo, {}, &Numerada::first);
    for (const auto &[numero, leitura] : doSegundo)
        aoLer(leitura);
    doSegundo.clear();
}
