#include "platform/chart/eixos.h"

#include "core/datas.h"
#include "core/literais.h"
#include "core/modDoubleTratamento.h"

#include <QFontMetricsF>

#include <array>
#include <cmath>

namespace {

constexpr double minuto = 60;
constexpr double hora = 3600;
constexpr double dia = 86400;
constexpr double mes = 30.4375 * dia; // nominal, to compare with
constexpr double ano = 365.25 * dia;
constexpr double folgaDeRotulos = 14; // pixels between labels

enum class Unidade { Segundos, Dias, Meses, Anos };

struct Passo {
    Unidade unidade;
    int quantos;
    double segundos;
};

constexpr std::array passos{Passo{Unidade::Segundos, 1, 1},
                            Passo{Unidade::Segundos, 5, 5},
                            Passo{Unidade::Segundos, 15, 15},
                            Passo{Unidade::Segundos, 30, 30},
                            Passo{Unidade::Segundos, 60, minuto},
                            Passo{Unidade::Segundos, 300, 5 * minuto},
                            Passo{Unidade::Segundos, 900, 15 * minuto},
                            Passo{Unidade::Segundos, 1800, 30 * minuto},
                            Passo{Unidade::Segundos, 3600, hora},
                            Passo{Unidade::Segundos, 10800, 3 * hora},
                            Passo{Unidade::Segundos, 21600, 6 * hora},
                            Passo{Unidade::Segundos, 43200, 12 * hora},
                            Passo{Unidade::Dias, 1, dia},
                            Passo{Unidade::Dias, 2, 2 * dia},
                            Passo{Unidade::Dias, 7, 7 * dia},
                            Passo{Unidade::Meses, 1, mes},
                            Passo{Unidade::Meses, 3, 3 * mes},
                            Passo{Unidade::Meses, 6, 6 * mes},
                            Passo{Unidade::Anos, 1, ano},
                            Passo{Unidade::Anos, 2, 2 * ano},
                            Passo{Unidade::Anos, 5, 5 * ano},
                            Passo{Unidade::Anos, 10, 10 * ano},
                            Passo{Unidade::Anos, 50, 50 * ano}};

// What stands on the two lines of a label.
struct Linhas {
    QString cima;
    QString baixo; // shown where it changes
};

Linhas linhasDe(double instante, const Passo &passo, const QLocale &locale) {
    const QDateTime t = datas::instanteDe(instante);
    switch (passo.unidade) {
    case Unidade::Segundos:
        if (passo.segundos < minuto)
            return {datas::textoHora(t.time()), datas::textoData(t.date())};
        return {locale.toString(t.time(), QLocale::ShortFormat), datas::textoData(t.date())};
    case Unidade::Dias:
        return {locale.toString(t.date(), u"d MMM"_s), locale.toString(t.date(), u"yyyy"_s)};
    case Unidade::Meses:
        return {locale.toString(t.date(), u"MMM"_s), locale.toString(t.date(), u"yyyy"_s)};
    case Unidade::Anos:
        break;
    }
    return {locale.toString(t.date(), u"yyyy"_s), {}};
}

// The widest label of a step, measured on moments with wide names.
double larguraDe(const Passo &passo, const QLocale &locale, const QFontMetricsF &metrica) {
    double maior = 0;
    for (int m = 1; m <= 12; m += passo.unidade == Unidade::Meses || passo.unidade == Unidade::Dias ? 1 : 11)
        for (const QTime &t : {QTime(0, 0), QTime(22, 58, 58)}) {
            const double s = datas::segundosDe(QDateTime(QDate(2028, m, 28), t, Qt::UTC));
            const Linhas linhas = linhasDe(s, passo, locale);
            maior = std::max({maior, metrica.horizontalAdvance(linhas.cima)});
        }
    return maior;
}

double alinhar(double instante, const Passo &passo) {
    if (passo.unidade == Unidade::Segundos)
        return std::floor(instante / passo.segundos) * passo.segundos;
    QDate d = datas::instanteDe(instante).date();
    switch (passo.unidade) {
    case Unidade::Dias:
        if (passo.quantos == 7)
            d = d.addDays(1 - d.dayOfWeek());
        else
            d = QDate(d.year(), d.month(), 1).addDays((d.day() - 1) / passo.quantos * passo.quantos);
        break;
    case Unidade::Meses:
        d = QDate(d.year(), (d.month() - 1) / passo.quantos * passo.quantos + 1, 1);
        break;
    default:
        d = QDate(std::max(1, d.year() / passo.quantos * passo.quantos), 1, 1);
    }
    return datas::segundosDe(QDateTime(d, QTime(0, 0), Qt::UTC));
}

double seguinte(double instante, const Passo &passo) {
    if (passo.unidade == Unidade::Segundos)
        return instante + passo.segundos;
    const QDate d = datas::instanteDe(instante).date();
    QDate proximo = passo.unidade == Unidade::Meses  ? d.addMonths(passo.quantos)
                    : passo.unidade == Unidade::Anos ? d.addYears(passo.quantos)
                                                     : d.addDays(passo.quantos);
    // Every second day starts anew with the month, so that the 1st always has its tick.
    if (passo.unidade == Unidade::Dias && passo.quantos == 2 && proximo.month() != d.month())
        proximo = QDate(proximo.year(), proximo.month(), 1);
    return datas::segundosDe(QDateTime(proximo, QTime(0, 0), Qt::UTC));
}

} // namespace

void EixoTempo::generate(const QCPRange &intervalo, const QLocale &locale, QChar, int, QVector<double> &ticks,
                         QVector<double> *subTicks, QVector<QString> *rotulos) {
    ticks.clear();
    if (subTicks)
        subTicks->clear();
    if (!(intervalo.size() > 0) || !std::isfinite(intervalo.size()))
        return;
    const QFontMetricsF metrica(m_eixo->tickLabelFont());
    const double pixeis = std::max(1, m_eixo->axisRect()->width());
    const double porPixel = intervalo.size() / pixeis;
    const double minimo = intervalo.size() < 2 * minuto ? 0 : passoMinimo;
    const Passo *escolhido = &passos.back();
    for (const Passo &passo : passos)
        if (passo.segundos >= minimo &&
            passo.segundos / porPixel >= larguraDe(passo, locale, metrica) + folgaDeRotulos) {
            escolhido = &passo;
            break;
        }
    for (double t = alinhar(intervalo.lower, *escolhido); t <= intervalo.upper && ticks.size() < 500;) {
        if (t >= intervalo.lower)
            ticks.append(t);
        const double proximo = seguinte(t, *escolhido);
        if (!(proximo > t))
            break;
        t = proximo;
    }
    if (!rotulos)
        return;
    rotulos->clear();
    QList<Linhas> linhas;
    for (const double t : std::as_const(ticks))
        linhas.append(linhasDe(t, *escolhido, locale));
    double livre = -1e9; // pixel from which the lower line is free
    for (qsizetype i = 0; i < ticks.size(); ++i) {
        const bool muda = i == 0 || linhas[i].baixo != linhas[i - 1].baixo;
        QString baixo = muda ? linhas[i].baixo : QString();
        const double meia = metrica.horizontalAdvance(baixo) / 2 + folgaDeRotulos / 2;
        const double centro = (ticks[i] - intervalo.lower) / porPixel;
        if (i == 0 && !baixo.isEmpty()) {
            // The first one gives way to a change that follows at once.
            for (qsizetype j = 1; j < ticks.size(); ++j)
                if (linhas[j].baixo != linhas[0].baixo && (ticks[j] - ticks[0]) / porPixel < 2 * meia)
                    baixo.clear();
        }
        if (!baixo.isEmpty() && centro - meia < livre)
            baixo.clear();
        if (!baixo.isEmpty())
            livre = centro + meia;
        rotulos->append(linhas[i].cima + u'\n' + (baixo.isEmpty() ? u" "_s : baixo));
    }
}

double EixoNumeros::getTickStep(const QCPRange &intervalo) {
    m_passo = std::max(QCPAxisTicker::getTickStep(intervalo), passoMinimo);
    return m_passo;
}

QString EixoNumeros::getTickLabel(double tick, const QLocale &, QChar, int) {
    // Sums of steps carry rounding dust; no label needs more places than its step.
    const int casas = std::max(0, int(std::ceil(-std::log10(m_passo))) + 2);
    return modDoubleTratamento::NumeroParaTexto(modDoubleTratamento::Arredondar(tick, casas));
}

void EixoBarras::generate(const QCPRange &intervalo, const QLocale &, QChar, int, QVector<double> &ticks,
                          QVector<double> *subTicks, QVector<QString> *textos) {
    ticks.clear();
    if (subTicks)
        subTicks->clear();
    if (textos)
        textos->clear();
    const int primeira = std::max(0, int(std::ceil(intervalo.lower)));
    const int ultima = std::min(int(rotulos.size()) - 1, int(std::floor(intervalo.upper)));
    const double porBarra = m_eixo->axisRect()->width() / std::max(1e-9, intervalo.size());
    const double altura = QFontMetricsF(m_eixo->tickLabelFont()).height();
    const int salto = std::max(1, int(std::ceil(altura / porBarra)));
    for (int i = primeira; i <= ultima; i += salto) {
        ticks.append(i);
        if (textos)
            textos->append(rotulos[i]);
    }
}
