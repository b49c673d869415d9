#include "poseidon/dataLog.h"

#include <QDate>

#include <array>
#include <limits>

namespace {

constexpr double semData = std::numeric_limits<double>::quiet_NaN();

struct Campo {
    int valor = -1;
    int digitos = 0;
};

// Three groups of digits with one and the same separator between them; how many were found, 0 when malformed.
int lerGrupos(QStringView texto, QStringView separadores, std::array<Campo, 3> &grupos) {
    QChar usado;
    size_t n = 0;
    for (const QChar c : texto) {
        if (c >= u'0' && c <= u'9') {
            Campo &g = grupos[n];
            g.valor = (g.digitos == 0 ? 0 : g.valor * 10) + (c.unicode() - u'0');
            if (++g.digitos > 4)
                return 0;
        } else if (grupos[n].digitos > 0 && n < 2 && (usado.isNull() ? separadores.contains(c) : c == usado)) {
            usado = c;
            ++n;
        } else {
            return 0;
        }
    }
    return grupos[n].digitos > 0 ? int(n) + 1 : 0;
}

int anoDe(const Campo &campo) {
    if (campo.digitos == 2)
        return campo.valor + (campo.valor < 30 ? 2000 : 1900);
    return campo.valor;
}

double dia(QStringView texto) {
    std::array<Campo, 3> g;
    if (lerGrupos(texto, u"-/.", g) != 3)
        return semData;
    const bool anoPrimeiro = g[0].digitos == 4;
    const Campo ano = anoPrimeiro ? g[0] : g[2];
    if (g[1].digitos > 2 || (anoPrimeiro ? g[2] : g[0]).digitos > 2 || ano.digitos == 3 || ano.digitos == 1)
        return semData;
    const QDate data(anoDe(ano), g[1].valor, (anoPrimeiro ? g[2] : g[0]).valor);
    if (!data.isValid() || data.year() < 100)
        return semData;
    return double(data.toJulianDay() - QDate(1970, 1, 1).toJulianDay()) * 86400;
}

double horas(QStringView texto) {
    const qsizetype fraccao = texto.indexOf(u'.');
    std::array<Campo, 3> g;
    const int n = lerGrupos(fraccao < 0 ? texto : texto.left(fraccao), u":", g);
    if (n < 2 || (fraccao >= 0 && n != 3))
        return semData;
    if (n == 2)
        g[2].valor = 0;
    if (g[0].valor > 23 || g[1].valor > 59 || g[2].valor > 59)
        return semData;
    return g[0].valor * 3600 + g[1].valor * 60 + g[2].valor;
}

} // namespace

namespace dataLog {

double segundosDe(QStringView data, QStringView hora) {
    hora = hora.trimmed();
    return dia(data.trimmed()) + (hora.isEmpty() ? 0 : horas(hora));
}

} // namespace dataLog
