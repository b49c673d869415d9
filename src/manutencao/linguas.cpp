#include "manutencao/linguas.h"

#include "core/estado.h"
#include "core/modINI.h"

namespace {

constexpr int maximoDeLinguas = 15;
constexpr int conjuntoCentroEuropeu = 238;

QString ler(const QString &chave, const QString &omissao = {}) {
    return modINI::GetSetting(estado().NomePrograma, u"Lingua"_s, chave, omissao);
}

} // namespace

namespace linguas {

QString Lingua::entrada() const {
    return nome + u" - " + codigo;
}

QString activa() {
    return ler(u"ACT"_s, u"1"_s);
}

QString codigo(const QString &numero) {
    return ler(u'L' + numero);
}

QList<Lingua> listadas() {
    QList<Lingua> lista;
    for (int n = 1; n <= maximoDeLinguas; ++n) {
        const QString numero = QString::number(n);
        if (const QString c = codigo(numero); !c.isEmpty())
            lista.append({n, ler(numero), c});
    }
    return lista;
}

bool pedeOutraPagina(const QString &codigo, int conjuntoDeCaracteres) {
    if (conjuntoDeCaracteres == 0)
        return false;
    return (codigo == u"CZ") != (conjuntoDeCaracteres == conjuntoCentroEuropeu);
}

} // namespace linguas
