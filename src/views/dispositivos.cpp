#include "views/dispositivos.h"

#include "core/literais.h"
#include "data/ligacao.h"
#include "data/recordset.h"

namespace dispositivos {

QList<Dispositivo> listar(const Vigia &vigia) {
    QList<Dispositivo> lista;
    for (const QString &sql : {u"SELECT PoseidonIP, Nome FROM Poseidons"_s, u"SELECT DamoclesIP, Nome FROM Damocles"_s,
                               u"SELECT ioip, Descricao FROM IOcontrollers"_s}) {
        Recordset rs = cnBD().consultar(sql);
        while (rs.avancar()) {
            lista.append({rs.texto(0), rs.texto(1)});
            vigia.passar();
        }
    }
    return lista;
}

} // namespace dispositivos
