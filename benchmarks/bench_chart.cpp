// Redraws of the chart against a plain graph of the plotting library with the same points in the same window. Prints
// medians of paired runs, and ends with 1 when a bound is not kept.
#include "benchmarks/medidas.h"
#include "core/datas.h"
#include "core/estado.h"
#include "platform/chart/TChart.h"
#include "platform/chart/plotBase.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <ctime>

namespace {

constexpr QSize janela(1050, 506);
constexpr quint32 verde = 65280;
const double inicio = datas::segundosDe(u"2015-01-01 00:00:00"_s);

double valor(qsizetype i) {
    const double t = double(i);
    return 5 + 3 * std::sin(t / 20000) + 0.6 * std::sin(t / 90) + 0.3 * std::sin(t * 0.7);
}

// Of the processor: what else the machine does does not count.
double agora() {
    timespec t{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return double(t.tv_sec) * 1e3 + double(t.tv_nsec) / 1e6;
}

template <typename Accao>
double milissegundos(const Accao &accao) {
    const double antes = agora();
    accao();
    return agora() - antes;
}

double mediana(std::vector<double> v) {
    std::nth_element(v.begin(), v.begin() + qsizetype(v.size() / 2), v.end());
    return v[v.size() / 2];
}

enum class Coloracao { Uma, Alarmes, CadaUm };

void juntar(TSerie &s, qsizetype n, Coloracao coloracao) {
    for (qsizetype i = 0; i < n; ++i) {
        const double y = valor(i);
        const bool alarme = coloracao == Coloracao::CadaUm ? i % 2 != 0 : coloracao == Coloracao::Alarmes && y > 8;
        s.AddXY(inicio + double(i) * 60, y, i % 100000 == 7 ? u"!"_s : u" "_s,
                alarme ? EstadoDoPonto::Acima : EstadoDoPonto::Normal);
    }
}

void encher(TChart &chart, qsizetype n, Coloracao coloracao) {
    TSerie &s = chart.AddSeries();
    s.Title = u"Sensor"_s;
    s.Color = verde;
    juntar(s, n, coloracao);
    chart.Bottom().Increment = 60;
}

struct Vista {
    const char *nome;
    double de, ate; // parts of the whole
};
constexpr Vista vistas[] = {{"whole", 0, 1}, {"tenth", 0.45, 0.55}, {"thousandth", 0.5, 0.501}};

// A frame: a new range, the layout, the drawing, the picture on the widget.
double quadroDoChart(TChart &chart, const Vista &v) {
    const double total = chart.Series(0).maiorX() - chart.Series(0).menorX();
    chart.Bottom().Automatic = false;
    chart.Bottom().Minimum = chart.Series(0).menorX() + v.de * total;
    chart.Bottom().Maximum = chart.Series(0).menorX() + v.ate * total;
    chart.actualizar();
    return milissegundos([&] { chart.grab(); });
}

bool comparar(qsizetype n, Coloracao coloracao, const char *nome) {
    TChart chart;
    chart.resize(janela);
    encher(chart, n, coloracao);
    QCustomPlot simples;
    simples.resize(janela);
    QCPGraph *grafico = simples.addGraph();
    QVector<double> x(n), y(n);
    for (qsizetype i = 0; i < n; ++i) {
        x[i] = inicio + double(i) * 60;
        y[i] = valor(i);
    }
    grafico->setData(x, y, true);
    simples.rescaleAxes();
    std::printf("%s: %lld points, take-over %.1f ms\n", nome, static_cast<long long>(n),
                milissegundos([&] { chart.actualizar(); }));
    bool bem = true;
    for (const Vista &v : vistas) {
        const double total = double(n - 1) * 60;
        std::vector<double> nosso, deles, razoes;
        for (int volta = 0; volta < 15; ++volta) {
            nosso.push_back(quadroDoChart(chart, v));
            deles.push_back(milissegundos([&] {
                simples.xAxis->setRange(inicio + v.de * total, inicio + v.ate * total);
                simples.replot(QCustomPlot::rpQueuedRefresh);
                simples.grab();
            }));
            razoes.push_back(nosso.back() / deles.back());
        }
        const double razao = mediana(razoes);
        std::printf("  %-10s chart %6.2f ms   plain graph %6.2f ms   ratio %.2f\n", v.nome, mediana(nosso),
                    mediana(deles), razao);
        // A plain graph has no colours that could change.
        const bool comparavel = n >= 1000000 && coloracao != Coloracao::CadaUm;
        bem = bem && (comparavel ? razao <= 1.5 : mediana(nosso) < 50);
    }
    return bem;
}

bool tamanho(qsizetype n) {
    const double antes = medidas::memoria();
    TSerie serie;
    const double ms = milissegundos([&] { juntar(serie, n, Coloracao::CadaUm); });
    const double porPonto = (medidas::memoria() - antes) / double(n);
    std::printf("series of %lld points: %.2f bytes a point, %.0f ns to add one\n", static_cast<long long>(n), porPonto,
                ms * 1e6 / double(n));
    return porPonto <= 18.5;
}

// What follows the hand: the pointer over five million points, and a notch of the wheel.
bool interaccao(qsizetype n) {
    TChart chart;
    chart.resize(janela);
    encher(chart, n, Coloracao::Alarmes);
    chart.actualizar();
    chart.show();
    QCoreApplication::processEvents();
    std::vector<double> passos, entalhes;
    for (int k = 0; k < 60; ++k) {
        const QPointF p(100 + k * 14, 120 + (k * 37) % 250);
        passos.push_back(milissegundos([&] {
            QMouseEvent e(QEvent::MouseMove, p, chart.mapToGlobal(p), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
            QCoreApplication::sendEvent(&chart, &e);
        }));
        entalhes.push_back(milissegundos([&] {
            QWheelEvent e(p, chart.mapToGlobal(p), {}, {0, k < 30 ? 120 : -120}, Qt::NoButton, Qt::NoModifier,
                          Qt::NoScrollPhase, false);
            QCoreApplication::sendEvent(&chart, &e);
            chart.grab();
        }));
    }
    std::printf("pointer over %lld points: %.2f ms; zoom step: %.2f ms\n", static_cast<long long>(n), mediana(passos),
                mediana(entalhes));
    return mediana(passos) < 10 && mediana(entalhes) < 50;
}

} // namespace

int main(int argc, char **argv) {
    QApplication programa(argc, argv);
    estado().ambiente.locale = QLocale(u"pt_PT"_s);
    const qsizetype muitos = argc > 1 ? QByteArray(argv[1]).toLongLong() : 5000000;
    bool bem = tamanho(muitos);
    bem = comparar(100000, Coloracao::CadaUm, "colour changes at every point") && bem;
    bem = comparar(100000, Coloracao::Alarmes, "alarms") && bem;
    bem = comparar(muitos, Coloracao::Uma, "one colour") && bem;
    bem = comparar(muitos, Coloracao::Alarmes, "alarms") && bem;
    bem = comparar(muitos, Coloracao::CadaUm, "colour changes at every point") && bem;
    bem = interaccao(muitos) && bem;
    std::printf("%s\n", bem ? "within bounds" : "OUT OF BOUNDS");
    return bem ? 0 : 1;
}
