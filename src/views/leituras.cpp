#include "views/leituras.h"

#include "core/datas.h"
#include "core/literais.h"
#include "core/modDoubleTratamento.h"
#include "data/dialecto.h"
#include "data/ligacao.h"
#include "data/recordset.h"
#include "views/ilegiveis.h"

#include <algorithm>
#include <cstring>

namespace {

enum Coluna { colData, colValor, colFlag, colNumero, colObservacoes };

} // namespace

std::optional<double> valorDe(const Recordset &rs, int coluna) {
    constexpr double semValor = std::numeric_limits<double>::quiet_NaN();
    if (rs.eNumero(coluna)) {
        const double valor = rs.real(coluna);
        return std::isfinite(valor) ? std::optional(valor) : std::nullopt;
    }
    if (rs.nulo(coluna))
        return semValor;
    const QString texto = rs.texto(coluna);
    return modDoubleTratamento::eND(texto) ? semValor : modDoubleTratamento::LerDouble(texto);
}

bool valorNaAltura(const Recordset &rs, int coluna, double y) {
    return valorDe(rs, coluna) == y;
}

bool temNota(const Recordset &rs, int coluna) {
    const char *bytes = rs.utf8(coluna);
    return bytes[0] != '\0' && (bytes[0] != ' ' || bytes[1] != '\0');
}

Intervalo::Intervalo(const QDateTime &a, const QDateTime &b)
    : inicio(datas::textoBD(std::min(a, b))), fim(datas::textoBD(std::max(a, b))) {}

void PedidoLeituras::deFora(const QString &data, const QString &texto) const {
    if (ilegiveis)
        ilegiveis->juntar(tabela.nome, Escolha{chave, {}}.textoDaChave(), data, texto);
}

void OrdemDeEscrita::juntar(qint64 numero, const Leitura &leitura) {
    if (!m_doSegundo.empty() && m_doSegundo.back().second.data != leitura.data)
        despejar();
    m_doSegundo.emplace_back(numero, leitura);
}

void OrdemDeEscrita::despejar() {
    if (m_doSegundo.size() > 1)
        std::ranges::sort(m_doSegundo, {}, &std::pair<qint64, Leitura>::first);
    for (const auto &[numero, leitura] : m_doSegundo)
        m_aoLer(leitura);
    m_doSegundo.clear();
}

double lerLeituras(const PedidoLeituras &pedido, const AoLer &aoLer) {
    const TabelaLeituras &t = pedido.tabela;
    const QString limitesOuNada = pedido.comLimites ? u", " + t.limites.toString() : QString();
    const QString sql = u"SELECT "_s + t.data + u", " + t.valor + u", flag, " + dialecto::ordem + limitesOuNada +
                        u" FROM " + t.nome + u" WHERE " + t.data + u" BETWEEN ? AND ? AND " +
                        escolhas::condicao(t.chave) + u" ORDER BY " + t.data;
    Recordset rs = cnBD().consultar(sql, QVariantList{pedido.intervalo.inicio, pedido.intervalo.fim} +
                                             escolhas::valores(pedido.chave));
    OrdemDeEscrita ordem(aoLer);
    CacheLimites limites;
    double soma = 0;
    qint64 comValor = 0;
    while (rs.avancar()) {
        const std::optional<double> valor = valorDe(rs, colValor);
        Leitura leitura{rs.segundos(colData), valor.value_or(0), {}, temNota(rs, colFlag)};
        if (std::isnan(leitura.data) || !valor) { // has no place in the chart
            pedido.deFora(rs.texto(colData), rs.texto(colValor));
            continue;
        }
        if (pedido.comLimites) {
            const char *observacoes = rs.utf8(colObservacoes);
            leitura.limites = limites.de(observacoes, int(std::strlen(observacoes)));
            if (leitura.limites.ilegivel)
                pedido.deFora(rs.texto(colData), rs.texto(colObservacoes));
        }
        if (!std::isnan(leitura.valor)) {
            soma += leitura.valor;
            ++comValor;
        }
        ordem.juntar(rs.inteiro(colNumero), leitura);
    }
    ordem.despejar();
    return comValor > 0 ? soma / double(comValor) : 0;
}
