#include "views/estados.h"

#include "core/literais.h"
#include "data/recordset.h"
#include "views/passagem.h"

#include <cmath>
#include <utility>

namespace {

enum Coluna { colData, colValor, colFlag };

QString colunas(const TabelaLeituras &t) {
    return t.data + u", "_s + t.valor + u", flag";
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
    const auto ler = [](const Recordset &rs, const auto &deFora) -> std::optional<Leitura> {
        const double data = rs.segundos(colData);
        if (!std::isnan(data))
            return Leitura{data, ligado(rs.utf8(colValor)) ? 1.0 : 0.0, {}, temNota(rs, colFlag)};
        deFora(rs.texto(colValor));
        return {};
    };
    Passagem(pedido, colunas(pedido.tabela)).percorrer(ler, aoLer);
    return 0;
}

bool mudancaNaAltura(const Recordset &rs, int coluna, double y) {
    return ligado(rs.utf8(coluna)) == (y != 0);
}

double lerPeriodos(const PedidoLeituras &pedido, const AoLer &aoLer) {
    Recordset rs = linhasPorData(pedido, colunas(pedido.tabela));
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
