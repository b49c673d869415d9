#include "logger/numeros1921.h"

#include "core/literais.h"
#include "core/modDoubleTratamento.h"

#include <QLocale>

#include <array>
#include <cmath>

namespace {

// Any button that is neither of the fine ones counts in half degrees.
constexpr std::array gamas = {
    numeros1921::Gama{u"H", 46, 15, 2, 0.125, 3},
    numeros1921::Gama{u"Z", 26, -5, 2, 0.125, 3},
    numeros1921::Gama{u"", 85, -40, 5, 0.1, 1},
};

constexpr int maximoDeDigitos = 300;

// Counted in steps, so that no error adds up.
QStringList descer(double de, double ate, double passo, int casas) {
    QStringList lista;
    const int passos = int(std::lround((de - ate) / passo));
    for (int i = 0; i <= passos; ++i)
        lista.append(numeros1921::formatar(de - i * passo, casas));
    return lista;
}

} // namespace

namespace numeros1921 {

bool eNumerico(QStringView texto) {
    QStringView resto = texto.trimmed();
    if (resto.startsWith(u'-'))
        resto = resto.mid(1);
    int digitos = 0;
    int separadores = 0;
    for (const QChar c : resto) {
        if (c >= u'0' && c <= u'9')
            ++digitos;
        else if (c == u'.' || c == u',')
            ++separadores;
        else
            return false;
    }
    // So many digits that no value holds them are none.
    return digitos > 0 && separadores <= 1 &&
           (digitos < maximoDeDigitos || std::isfinite(QLocale::c().toDouble(resto.toString().replace(u',', u'.'))));
}

double arredondar(double valor, int casas) {
    const double escala = std::pow(10.0, casas);
    const double escalado = valor * escala;
    // Sums of tenths and eighths come a hair below their halves.
    return std::round(escalado + std::copysign(1e-9 * std::max(1.0, std::fabs(escalado)), escalado)) / escala;
}

QString formatar(double valor, int casas) {
    const double arredondado = arredondar(valor, casas);
    // No minus before a zero.
    return QString::number(arredondado == 0 ? 0.0 : arredondado, 'f', casas)
        .replace(u'.', modDoubleTratamento::SeparadorDecimal());
}

const Gama &gamaDe(const QString &tipoRegistador) {
    for (const Gama &gama : gamas)
        if (!gama.tipo.isEmpty() && tipoRegistador == gama.tipo)
            return gama;
    return gamas.back();
}

bool tudoEmAlarme(const Gama &gama, double minimo, double maximo) {
    return minimo >= maximo || maximo <= gama.limiteAte || minimo >= gama.limiteDe;
}

QStringList limitesDe(const Gama &gama) {
    return descer(gama.limiteDe, gama.limiteAte, passoDosLimites, casasDosLimites);
}

QStringList calibracoesDe(const Gama &gama) {
    return descer(gama.calibracao, -gama.calibracao, gama.passoCalibracao, gama.casasCalibracao);
}

} // namespace numeros1921
