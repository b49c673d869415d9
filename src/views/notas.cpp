#include "views/notas.h"

#include "core/datas.h"
#include "core/literais.h"
#include "data/dialecto.h"
#include "data/ligacao.h"
#include "data/recordset.h"

namespace {
const QString onde = u"Data = ? AND Sensor = ?"_s;
}

namespace notas {

std::optional<QString> ler(QStringView tabela, const QDateTime &data, const QString &sensor) {
    const QString sql = u"SELECT flag FROM "_s + tabela + u" WHERE " + dialecto::soUmaLinha(tabela, onde);
    Recordset rs = cnBD().consultar(sql, {datas::textoBD(data), sensor});
    if (!rs.avancar())
        return std::nullopt;
    return rs.texto(0);
}

bool gravar(QStringView tabela, const QDateTime &data, const QString &sensor, const QString &nota) {
    const QString sql = u"UPDATE "_s + tabela + u" SET flag = ? WHERE " + dialecto::soUmaLinha(tabela, onde);
    return cnBD().executar(sql, {nota, datas::textoBD(data), sensor}) > 0;
}

QString paraGuardar(const QString &texto) {
    const QString aparado = texto.trimmed();
    return aparado.isEmpty() ? u" "_s : aparado;
}

QString paraMostrar(const QString &flag) {
    return flag == u" " ? QString() : flag;
}

} // namespace notas
