#include "views/ilegiveis.h"

#include "core/falha.h"
#include "core/literais.h"
#include "core/modErros.h"
#include "core/modTraducoes.h"

#include <utility>

namespace {

constexpr qsizetype maximoMostrado = 60;

} // namespace

void Ilegiveis::juntar(QStringView tabela, const QString &deQuem, const QString &data, const QString &texto) {
    if (m_quantos++ > 0)
        return;
    m_primeiro = {tabela.toString(), deQuem.left(maximoMostrado), data.left(maximoMostrado),
                  texto.left(maximoMostrado)};
}

void Ilegiveis::relatar(const char *fonte) {
    const Ilegiveis achados = std::exchange(*this, {}); // the owner may go while the report is shown
    if (achados.vazio())
        return;
    const QString descricao =
        modTraducoes::texto(u"KelvarkAUX"_s, u"ValoresIlegiveis"_s,
                            u"Valores que não se podem ler e ficaram de fora: %1. O primeiro: tabela %2, sensor %3, "
                            "data %4, \"%5\"."_s)
            .arg(QString::number(achados.m_quantos), achados.m_primeiro.tabela, achados.m_primeiro.deQuem,
                 achados.m_primeiro.data, achados.m_primeiro.texto);
    modErros::TratarErro(QString::fromUtf8(fonte), descricao, QString::number(erros::tipoIncompativel));
}
