#include "platform/chart/graduacao.h"

#include "core/datas.h"
#include "core/estado.h"
#include "core/modTraducoes.h"

#include <QRegularExpression>

#include <cmath>

namespace {

constexpr double folga = 10; // pixels between two labels
constexpr qint64 umDia = 86400;

enum class Unidade { Segundo, Dia, Semana, Mes };
struct Passo {
    Unidade unidade;
    int quantos;
    int segundos; // about
    int fino;     // which step the small marks have
};

constexpr int mes = 2629746;
constexpr Passo passos[] = {
    {Unidade::Segundo, 1, 1, -1},
    {Unidade::Segundo, 5, 5, 0},
    {Unidade::Segundo, 15, 15, 1},
    {Unidade::Segundo, 30, 30, 1},
    {Unidade::Segundo, 60, 60, 2},
    {Unidade::Segundo, 300, 300, 4},
    {Unidade::Segundo, 900, 900, 5},
    {Unidade::Segundo, 1800, 1800, 5},
    {Unidade::Segundo, 3600, 3600, 6},
    {Unidade::Segundo, 3 * 3600, 3 * 3600, 8},
    {Unidade::Segundo, 6 * 3600, 6 * 3600, 8},
    {Unidade::Segundo, 12 * 3600, 12 * 3600, 9},
    {Unidade::Dia, 1, umDia, 10},
    {Unidade::Dia, 2, 2 * umDia, 12},
    {Unidade::Semana, 1, 7 * umDia, 12},
    {Unidade::Mes, 1, mes, 14},
    {Unidade::Mes, 3, 3 * mes, 15},
    {Unidade::Mes, 12, 12 * mes, 16},
    {Unidade::Mes, 24, 24 * mes, 17},
    {Unidade::Mes, 60, 60 * mes, 17},
    {Unidade::Mes, 120, 120 * mes, 18},
    {Unidade::Mes, 240, 240 * mes, 20},
    {Unidade::Mes, 600, 600 * mes, 20},
};
constexpr int ultimoPasso = int(std::size(passos)) - 1;

qint64 divisaoPorBaixo(qint64 a, qint64 b) {
    return a >= 0 ? a / b : -((-a + b - 1) / b);
}

QVector<double> marcasDeMeses(const Passo &passo, double minimo, double maximo) {
    QVector<double> marcas;
    const QDate dia = datas::instanteDe(minimo).date();
    if (!dia.isValid())
        return marcas;
    qint64 m = divisaoPorBaixo(qint64(dia.year()) * 12 + dia.month() - 1, passo.quantos) * passo.quantos;
    for (;; m += passo.quantos) {
        const QDate primeiro(int(divisaoPorBaixo(m, 12)), int(m - divisaoPorBaixo(m, 12) * 12) + 1, 1);
        if (!primeiro.isValid())
            return marcas;
        const double t = datas::segundosDe(primeiro.startOfDay(Qt::UTC));
        if (t > maximo)
            return marcas;
        if (t >= minimo)
            marcas.append(t);
    }
}

QVector<double> marcasDeTempo(const Passo &passo, double minimo, double maximo) {
    if (passo.unidade == Unidade::Mes)
        return marcasDeMeses(passo, minimo, maximo);
    // Weeks begin on Mondays; the day 0 was a Thursday.
    const qint64 origem = passo.unidade == Unidade::Semana ? 4 * umDia : 0;
    const qint64 cada = passo.segundos;
    QVector<double> marcas;
    for (qint64 t = divisaoPorBaixo(qint64(std::floor(minimo)) - origem, cada) * cada + origem; double(t) <= maximo;
         t += cada)
        if (double(t) >= minimo)
            marcas.append(double(t));
    return marcas;
}

// The locale's way of writing hours and minutes, and a day of a month.
QString formatoSemSegundos() {
    static const QRegularExpression segundos(u"[:. \u202f]?s{1,2}"_s);
    return datas::formatoHora().remove(segundos);
}

QString formatoDiaMes() {
    const QString data = datas::formatoData();
    const qsizetype dia = data.indexOf(u'd');
    return dia > data.indexOf(u'M') ? u"MMM d"_s : u"d MMM"_s;
}

QVector<QString> rotulosDeTempo(const Passo &passo, const QVector<double> &marcas) {
    const QLocale &locale = estado().ambiente.locale;
    const QString hora = passo.segundos < 60 ? datas::formatoHora() : formatoSemSegundos();
    const QString diaMes = formatoDiaMes();
    QVector<QString> rotulos;
    QDate anterior;
    for (double t : marcas) {
        const QDateTime instante = datas::instanteDe(t);
        const QDate dia = instante.date();
        QString rotulo;
        if (passo.unidade == Unidade::Segundo) {
            rotulo = locale.toString(instante.time(), hora);
            if (dia != anterior)
                rotulo += u'\n' + datas::textoData(dia);
        } else if (passo.unidade == Unidade::Mes && passo.quantos >= 12) {
            rotulo = QString::number(dia.year());
        } else {
            rotulo = modTraducoes::localeDosNomes().toString(dia, passo.unidade == Unidade::Mes ? u"MMM"_s : diaMes);
            if (dia.year() != anterior.year() || !anterior.isValid())
                rotulo += u'\n' + QString::number(dia.year());
        }
        anterior = dia;
        rotulos.append(rotulo);
    }
    return rotulos;
}

double larguraDe(const QString &rotulo, const QFontMetricsF &letra) {
    double largura = 0;
    const auto linhas = QStringView(rotulo).split(u'\n');
    for (QStringView linha : linhas)
        largura = std::max(largura, letra.horizontalAdvance(linha.toString()));
    return largura;
}

bool cabem(const Graduacao &g, double pixeisPorUnidade, const QFontMetricsF &letra) {
    double fim = -1e300;
    for (qsizetype i = 0; i < g.marcas.size(); ++i) {
        const double meia = larguraDe(g.rotulos[i], letra) / 2;
        const double centro = g.marcas[i] * pixeisPorUnidade;
        if (centro - meia < fim + folga)
            return false;
        fim = centro + meia;
    }
    return true;
}

} // namespace

Graduacao graduarTempo(double minimo, double maximo, double largura, const QFontMetricsF &letra, double incremento) {
    Graduacao g;
    const double extensao = maximo - minimo;
    if (!(extensao > 0) || !(largura > 0) || extensao > 1e12)
        return g;
    const double pixeis = largura / extensao;
    const double menor = extensao < 120 ? 1 : std::max(1.0, incremento);
    const double estreito = letra.horizontalAdvance(u"00"_s) + folga;
    for (int i = 0; i <= ultimoPasso; ++i) {
        const Passo &passo = passos[i];
        const bool ultimo = i == ultimoPasso;
        if (!ultimo && (passo.segundos < menor || passo.segundos * pixeis < estreito))
            continue;
        g.marcas = marcasDeTempo(passo, minimo, maximo);
        g.rotulos = rotulosDeTempo(passo, g.marcas);
        if (!ultimo && !cabem(g, pixeis, letra))
            continue;
        if (passo.fino >= 0 && passos[passo.fino].segundos * pixeis >= 5 && passos[passo.fino].segundos >= menor)
            g.finas = marcasDeTempo(passos[passo.fino], minimo, maximo);
        return g;
    }
    return g;
}

Graduacao graduarValores(double minimo, double maximo, double altura, const QFontMetricsF &letra, double incremento,
                         bool soInteiros) {
    Graduacao g;
    const double extensao = maximo - minimo;
    if (!(extensao > 0) || !(altura > 0) || !std::isfinite(extensao))
        return g;
    const double procurado = extensao * letra.height() * 2.2 / altura;
    const double potencia = std::pow(10, std::floor(std::log10(procurado)));
    const double mantissa = procurado / potencia;
    double factor = mantissa <= 1 ? 1 : mantissa <= 2 ? 2 : mantissa <= 5 ? 5 : 10;
    double passo = factor * potencia;
    if (incremento > passo && extensao >= 2 * incremento) {
        passo = incremento;
        factor = 1;
    }
    if (soInteiros && passo < 1) {
        passo = 1;
        factor = 1;
    }
    int casas = 0; // as many as the step needs
    for (double p = passo; casas < 12 && std::fabs(p - std::round(p)) > 1e-6 * passo * std::pow(10, casas); p *= 10)
        ++casas;
    const double primeiro = std::ceil(minimo / passo - 1e-9);
    QLocale locale = estado().ambiente.locale;
    locale.setNumberOptions(QLocale::OmitGroupSeparator);
    for (int i = 0; i < 500; ++i) {
        double v = (primeiro + i) * passo;
        if (v > maximo + passo * 1e-9)
            break;
        if (std::fabs(v) < passo * 1e-9)
            v = 0;
        g.marcas.append(v);
        g.rotulos.append(locale.toString(v, 'f', casas));
    }
    const int partes = factor == 2 ? 4 : 5;
    if (!soInteiros && passo / extensao * altura / partes >= 6)
        for (int i = -partes; i <= g.marcas.size() * partes; ++i)
            if (const double v = (primeiro + double(i) / partes) * passo; v >= minimo && v <= maximo)
                g.finas.append(v);
    return g;
}

Graduacao graduarBarras(double minimo, double maximo, double largura, const QFontMetricsF &letra,
                        const QVector<QString> &textos) {
    Graduacao g;
    const double extensao = maximo - minimo;
    const auto primeiro = qsizetype(std::max(0.0, std::ceil(minimo)));
    const auto ultimo = std::min(textos.size() - 1, qsizetype(std::floor(maximo)));
    if (!(extensao > 0) || !(largura > 0))
        return g;
    double maisLargo = 0;
    for (qsizetype i = primeiro; i <= ultimo; ++i)
        maisLargo = std::max(maisLargo, larguraDe(textos[i], letra));
    const double cada = largura / extensao;
    g.deitados = maisLargo + folga > cada;
    const double precisa = g.deitados ? letra.height() : maisLargo + folga;
    const auto salto = qsizetype(std::max(1.0, std::ceil(precisa / cada)));
    for (qsizetype i = (primeiro + salto - 1) / salto * salto; i <= ultimo; i += salto) {
        g.marcas.append(double(i));
        g.rotulos.append(textos[i]);
    }
    return g;
}
