#include "devicestate/chavesDoRegisto.h"

#include "core/literais.h"
#include "data/ligacao.h"
#include "data/recordset.h"
#include "views/ilegiveis.h"

namespace chavesDoRegisto {

// The step is from the key as it is stored: as a text, a blob or bytes that are no UTF-8 would come before themselves.
// Nobody can choose by such a key, so it is left out.
QStringList distintas(QStringView tabela, QStringView coluna, const Vigia &vigia, QStringView colunaDe,
                      const QString &de) {
    const QString doQual = colunaDe.isEmpty() ? QString() : u" AND "_s + colunaDe + u" = ?";
    const QVariantList valores = colunaDe.isEmpty() ? QVariantList() : QVariantList{de};
    const QString seguinte = u"SELECT "_s + coluna + u" FROM " + tabela + u" WHERE " + coluna + u" %1" + doQual +
                             u" ORDER BY " + coluna + u" LIMIT 1";
    QStringList chaves;
    QVariant ultima;
    Ilegiveis ilegiveis;
    for (;;) {
        Recordset rs = ultima.isNull() ? cnBD().consultar(seguinte.arg(u"IS NOT NULL"_s), valores)
                                       : cnBD().consultar(seguinte.arg(u"> ?"_s), QVariantList{ultima} + valores);
        if (!rs.avancar())
            break;
        ultima = rs.guardado(0);
        if (ultima.typeId() == qMetaTypeId<Cru>())
            ilegiveis.juntar(tabela, coluna.toString(), {}, rs.texto(0));
        else
            chaves.append(rs.texto(0));
        vigia.passar();
    }
    ilegiveis.relatar("chavesDoRegisto.distintas");
    vigia.passar(); // the panel may have gone while the report was shown
    return chaves;
}

} // namespace chavesDoRegisto
