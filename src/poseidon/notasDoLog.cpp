#include "poseidon/notasDoLog.h"

#include "core/estado.h"
#include "core/falha.h"
#include "core/modDoubleTratamento.h"
#include "core/modINI.h"

#include <cmath>
#include <limits>

using modTratamentoDados2251::Limites;
using modTratamentoDados2251::Redaccao;

namespace {

constexpr qsizetype maximoDeLimites = 4096;

// Rows are read under another locale than that under which they were written.
QString semLocale(QString texto) {
    return texto.replace(u',', u'.').trimmed();
}

} // namespace

double numeroGuardado(const Celula &valor) {
    if (valor.numero())
        return valor.comoReal();
    try {
        return modDoubleTratamento::TextoParaDouble(QString::fromUtf8(valor.bytes));
    } catch (const Falha &) {
        return std::numeric_limits<double>::quiet_NaN();
    }
}

NotasDoLog::NotasDoLog() {
    QStringList linguas{estado().Lingua, u"PT"_s};
    for (int n = 1;; ++n) {
        const QString codigo = modINI::GetSetting(estado().NomePrograma, u"Lingua"_s, u'L' + QString::number(n));
        if (codigo.isEmpty())
            break;
        linguas.append(codigo);
    }
    linguas.removeDuplicates();
    for (const QString &lingua : std::as_const(linguas))
        if (const Redaccao r = modTratamentoDados2251::redaccaoEm(lingua); !m_redaccoes.contains(r))
            m_redaccoes.append(r);
    if (const Redaccao propria{u"Máximo de "_s, u"Mínimo de "_s}; !m_redaccoes.contains(propria))
        m_redaccoes.append(propria);
}

const Limites &NotasDoLog::lidos(const QByteArray &texto) {
    if (m_limites.size() > maximoDeLimites)
        m_limites.clear();
    auto achado = m_limites.find(texto);
    if (achado == m_limites.end()) {
        const QStringList partes = QString::fromUtf8(texto).trimmed().split(u"XXX"_s);
        achado = m_limites.insert(texto, partes.size() == 2 ? Limites(partes[0], partes[1]) : Limites());
    }
    return *achado;
}

bool NotasDoLog::eNota(const Celula &flag, const Celula &valor, const Celula &limites) {
    if (flag.numero())
        return true;
    if (flag.emBranco())
        return false;
    const Limites &l = lidos(limites.bytes);
    const double lido = numeroGuardado(valor);
    if (std::isnan(lido) || l.dentro(lido))
        return true;
    const QString dito = semLocale(QString::fromUtf8(flag.bytes));
    return std::none_of(m_redaccoes.cbegin(), m_redaccoes.cend(),
                        [&](const Redaccao &r) { return semLocale(l.texto(lido, r)) == dito; });
}
