#include "views/notas.h"

#include "core/datas.h"
#include "core/literais.h"
#include "data/dialecto.h"
#include "data/ligacao.h"
#include "data/recordset.h"

namespace {

QString onde(const notas::Lugar &lugar) {
    const QString condicao = lugar.colunaData + u" = ? AND "_s + escolhas::condicao(lugar.colunas);
    return u" WHERE "_s + dialecto::soUmaLinha(lugar.tabela, condicao);
}

QVariantList valores(const notas::Lugar &lugar) {
    return QVariantList{datas::textoBD(lugar.data)} + escolhas::valores(lugar.chave);
}

} // namespace

namespace notas {

std::optional<QString> ler(const Lugar &lugar) {
    Recordset rs = cnBD().consultar(u"SELECT flag FROM "_s + lugar.tabela + onde(lugar), valores(lugar));
    if (!rs.avancar())
        return std::nullopt;
    return rs.texto(0);
}

bool gravar(const Lugar &lugar, const QString &nota) {
    const QString sql = u"UPDATE "_s + lugar.tabela + u" SET flag = ?" + onde(lugar);
    return cnBD().executar(sql, QVariantList{nota} + valores(lugar)) > 0;
}

QString paraGuardar(const QString &texto) {
    const QString aparado = texto.trimmed();
    return aparado.isEmpty() ? u" "_s : aparado;
}

QString paraMostrar(const QString &flag) {
    return flag == u" " ? QString() : flag;
}

} // namespace notas
