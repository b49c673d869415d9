#include "views/leituras.h"

#include "core/datas.h"
#include "core/literais.h"
#include "core/modDoubleTratamento.h"
#include "data/recordset.h"
#include "views/ilegiveis.h"
#include "views/passagem.h"

#include <algorithm>
#include <cstring>

namespace {

enum Coluna { colData, colValor, colFlag, colObservacoes };

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

double lerLeituras(const PedidoLeituras &pedido, const AoLer &aoLer) {
    const TabelaLeituras &t = pedido.tabela;
    CacheLimites limites;
    double soma = 0;
    qint64 comValor = 0;
    const auto ler = [&](const Recordset &rs, const auto &deFora) -> std::optional<Leitura> {
        const std::optional<double> valor = valorDe(rs, colValor);
        Leitura leitura{rs.segundos(colData), valor.value_or(0), {}, temNota(rs, colFlag)};
        if (std::isnan(leitura.data) || !valor) { // has no place in the chart
            deFora(rs.texto(colValor));
            return {};
        }
        if (pedido.comLimites) {
            const char *observacoes = rs.utf8(colObservacoes);
            leitura.limites = limites.de(observacoes, int(std::strlen(observacoes)));
            if (leitura.limites.ilegivel)
                deFora(rs.texto(colObservacoes));
        }
        return leitura;
    };
    const auto somar = [&](const Leitura &leitura) {
        if (!std::isnan(leitura.valor)) {
            soma += leitura.valor;
            ++comValor;
        }
        aoLer(leitura);
    };
    Passagem(pedido, t.data + u", "_s + t.valor + u", flag" + (pedido.comLimites ? u", "_s + t.limites : QString()))
        .percorrer(ler, somar);
    return comValor > 0 ? soma / double(comValor) : 0;
}
