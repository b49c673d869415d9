#include "views/limites.h"

#include "core/modDoubleTratamento.h"

#include <cstring>

namespace {

double lerLimite(QStringView parte, bool &ilegivel) {
    const QStringView texto = parte.trimmed();
    if (texto.isEmpty() || texto == u"NA")
        return std::numeric_limits<double>::quiet_NaN();
    const std::optional<double> limite = modDoubleTratamento::LerDouble(texto.toString());
    ilegivel = ilegivel || !limite;
    return limite.value_or(std::numeric_limits<double>::quiet_NaN());
}

} // namespace

Limites lerLimites(QStringView observacoes) {
    constexpr QStringView separador = u"XXX";
    const qsizetype primeiro = observacoes.indexOf(separador);
    if (primeiro < 0)
        return {};
    QStringView resto = observacoes.mid(primeiro + separador.size());
    if (const qsizetype segundo = resto.indexOf(separador); segundo >= 0)
        resto = resto.left(segundo);
    Limites limites;
    limites.maximo = lerLimite(observacoes.left(primeiro), limites.ilegivel);
    limites.minimo = lerLimite(resto, limites.ilegivel);
    return limites;
}

const Limites &CacheLimites::de(const char *bytes, int tamanho) {
    if (tamanho != m_ultimo.size() || (tamanho > 0 && std::memcmp(bytes, m_ultimo.constData(), size_t(tamanho)) != 0)) {
        m_limites = lerLimites(QString::fromUtf8(bytes, tamanho));
        m_ultimo = QByteArray(bytes, tamanho);
    }
    return m_limites;
}
