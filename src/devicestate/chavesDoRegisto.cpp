#include "devicestate/chavesDoRegisto.h"

#include "core/literais.h"
#include "data/ligacao.h"
#include "data/recordset.h"

namespace chavesDoRegisto {

QStringList distintas(QStringView tabela, QStringView coluna, const Vigia &vigia, QStringView colunaDe,
                      const QString &de) {
    const QString doQual = colunaDe.isEmpty() ? QString() : u" AND "_s + colunaDe + u" = ?";
    const QVariantList valores = colunaDe.isEmpty() ? QVariantList() : QVariantList{de};
    const QString seguinte = u"SELECT "_s + coluna + u" FROM " + tabela + u" WHERE " + coluna + u" %1" + doQual +
                             u" ORDER BY " + coluna + u" LIMIT 1";
    QStringList chaves;
    for (;;) {
        Recordset rs = chaves.isEmpty()
                           ? cnBD().consultar(seguinte.arg(u"IS NOT NULL"_s), valores)
                           : cnBD().consultar(seguinte.arg(u"> ?"_s), QVariantList{chaves.last()} + valores);
        if (!rs.avancar())
            return chaves;
        chaves.append(rs.texto(0));
        vigia.passar();
    }
}

} // namespace chavesDoRegisto
