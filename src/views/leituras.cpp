#include "views/leituras.h"

#include "core/datas.h"
#include "core/literais.h"
#include "data/ligacao.h"
#include "data/recordset.h"

#include <cstring>

namespace {

enum Coluna { colData, colValor, colFlag, colObservacoes };

double valorDe(const Recordset &rs) {
    if (rs.eNumero(colValor))
        return rs.real(colValor);
    return rs.nulo(colValor) ? std::numeric_limits<double>::quiet_NaN() : rs.numero(colValor);
}

} // namespace

bool temNota(const Recordset &rs, int coluna) {
    const char *bytes = rs.utf8(coluna);
    return bytes[0] != '\0' && (bytes[0] != ' ' || bytes[1] != '\0');
}

Intervalo::Intervalo(const QDateTime &a, const QDateTime &b)
    : inicio(datas::textoBD(std::min(a, b))), fim(datas::textoBD(std::max(a, b))) {}

double lerLeituras(const PedidoLeituras &pedido, const AoLer &aoLer) {
    const TabelaLeituras &t = pedido.tabela;
    const QString limitesOuNada = pedido.comLimites ? u", " + t.limites.toString() : QString();
    const QString sql = u"SELECT "_s + t.data + u", " + t.valor + u", flag" + limitesOuNada + u" FROM " + t.nome +
                        u" WHERE " + t.data + u" BETWEEN ? AND ? AND " + escolhas::condicao(t.chave) + u" ORDER BY " +
                        t.data;
    Recordset rs = cnBD().consultar(sql, QVariantList{pedido.intervalo.inicio, pedido.intervalo.fim} +
                                             escolhas::valores(pedido.chave));
    CacheLimites limites;
    double soma = 0;
    qint64 comValor = 0;
    while (rs.avancar()) {
        Leitura leitura{rs.segundos(colData), valorDe(rs), {}, temNota(rs, colFlag)};
        if (std::isnan(leitura.data))
            continue; // has no place on the time axis
        if (pedido.comLimites) {
            const char *observacoes = rs.utf8(colObservacoes);
            leitura.limites = limites.de(observacoes, int(std::strlen(observacoes)));
        }
        if (!std::isnan(leitura.valor)) {
            soma += leitura.valor;
            ++comValor;
        }
        aoLer(leitura);
    }
    return comValor > 0 ? soma / double(comValor) : 0;
}
