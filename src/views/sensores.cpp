#include "views/sensores.h"

#include "core/literais.h"
#include "data/ligacao.h"
#include "data/recordset.h"

namespace {

Recordset consultar(const QString &tag) {
    const QString colunas = u"SELECT SensorID, Descricao, Tipo, Seleccionado FROM Sensores"_s;
    if (tag == sensores::tagTodos)
        return cnBD().consultar(colunas);
    const QString unidade = sensores::unidadeDaTag(tag);
    if (unidade.isEmpty())
        return cnBD().consultar(colunas + u" WHERE Grupo = ?", {tag});
    // The stored address begins with a digit that tells who made the sensor.
    return cnBD().consultar(colunas + u" WHERE PoseidonIP = ? OR PoseidonIP = ?",
                            {QString(u'1' + unidade), QString(u'2' + unidade)});
}

} // namespace

namespace sensores {

QString unidadeDaTag(const QString &tag) {
    return tag.startsWith(prefixoUnidade) ? tag.mid(prefixoUnidade.size()) : QString();
}

QString idDe(const QString &texto) {
    return texto.right(tamanhoDoId);
}

QList<Sensor> listar(const RegraTipo &regra, const QString &tag, const Vigia &vigia) {
    QList<Sensor> lista;
    Recordset rs = consultar(tag);
    while (rs.avancar()) {
        if (regra.aceita(rs.texto(2)))
            lista.append({rs.texto(0), rs.texto(1), rs.texto(3) != u"SIM"});
        vigia.passar();
    }
    return lista;
}

QList<Filtro> listarFiltros(const QString &textoTodos, const Vigia &vigia) {
    QList<Filtro> lista{{tagTodos.toString(), textoTodos}};
    Recordset unidades = cnBD().consultar(u"SELECT PoseidonIP, Nome FROM Poseidons"_s);
    while (unidades.avancar()) {
        lista.append({prefixoUnidade + unidades.texto(0), unidades.texto(1)});
        vigia.passar();
    }
    Recordset grupos = cnBD().consultar(u"SELECT codGrupo, Descricao FROM Grupos"_s);
    while (grupos.avancar()) {
        lista.append({grupos.texto(0), grupos.texto(1)});
        vigia.passar();
    }
    return lista;
}

} // namespace sensores
