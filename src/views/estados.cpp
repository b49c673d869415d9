#include "views/estados.h"

#include "core/literais.h"
#include "data/ligacao.h"
#include "data/recordset.h"

#include <algorithm>
#include <cmath>

namespace {

enum Coluna { colData, colValor, colFlag, colNumero };

Recordset consultar(const PedidoLeituras &pedido) {
    const TabelaLeituras &t = pedido.tabela;
    const QString sql = u"SELECT "_s + t.data + u", " + t.valor + u", flag, rowid FROM " + t.nome + u" WHERE " +
                        t.data + u" BETWEEN ? AND ? AND " + escolhas::condicao(t.chave) + u" ORDER BY " + t.data;
    return cnBD().consultar(sql, QVariantList{pedido.intervalo.inicio, pedido.intervalo.fim} +
                                     escolhas::valores(pedido.chave));
}

// The rows of one second come out of the index by their values: their numbers put them back in order. To have the
// engine do it takes half as long again.
class OrdemDeEscrita {
public:
    explicit OrdemDeEscrita(const AoLer &aoLer) : m_aoLer(aoLer) {}
    void juntar(qint64 numero, const Leitura &leitura) {
        if (!m_doSegundo.empty() && m_doSegundo.back().second.data != leitura.data)
            despejar();
        m_doSegundo.emplace_back(numero, leitura);
    }
    void despejar() {
        std::ranges::sort(m_doSegundo, {}, &std::pair<qint64, Leitura>::first);
        for (const auto &[numero, leitura] : m_doSegundo)
            m_aoLer(leitura);
        m_doSegundo.clear();
    }

private:
    const AoLer &m_aoLer;
    std::vector<std::pair<qint64, Leitura>> m_doSegundo;
};

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
        if (!std::isnan(data))
            ordem.juntar(rs.inteiro(colNumero),
                         {data, ligado(rs.utf8(colValor)) ? 1.0 : 0.0, {}, temNota(rs, colFlag)});
    }
    ordem.despejar();
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
