// The figures of a series, against vectors worked out by hand and against a computation in other words.
#include "estatistica/excursoes.h"
#include "estatistica/figuras.h"
#include "tests/apoio/tabela.h"

#include <algorithm>
#include <cmath>
#include <random>

using namespace estatistica;
using Valores = QList<double>;

namespace {

constexpr double nenhum = std::numeric_limits<double>::quiet_NaN();

std::vector<Amostra> serie(const Valores &minutos, const Valores &valores, double maximo = nenhum) {
    std::vector<Amostra> s;
    for (qsizetype i = 0; i < valores.size(); ++i)
        s.push_back({minutos.value(i, double(i) * 10) * 60, valores[i],
                     valores[i] >= maximo ? EstadoDoPonto::Acima : EstadoDoPonto::Normal});
    return s;
}

bool igual(double a, double b) {
    return (std::isnan(a) && std::isnan(b)) || std::fabs(a - b) <= 1e-9 * std::max({1.0, std::fabs(a), std::fabs(b)});
}

// In long double, by sorting, and seen from the intervals instead of the readings.
struct Outra {
    long double media = 0, noTempo = 0, desvio = 0, cinetica = 0;
    double semLeituras = 0, acima = 0;
    std::vector<double> ordenados;
    int excursoes = 0, abertas = 0;

    double parte(double p) const {
        const double lugar = p * double(ordenados.size() - 1);
        const auto i = size_t(lugar);
        return i + 1 < ordenados.size() ? std::lerp(ordenados[i], ordenados[i + 1], lugar - double(i)) : ordenados[i];
    }
};

Outra contarDeOutroModo(const std::vector<Amostra> &s) {
    Outra o;
    const size_t n = s.size();
    std::vector<double> intervalos;
    for (size_t i = 0; i + 1 < n; ++i)
        intervalos.push_back(s[i + 1].instante - s[i].instante);
    std::vector<double> ordem = intervalos;
    std::sort(ordem.begin(), ordem.end());
    const double usual = ordem.empty() ? 0 : (ordem[(ordem.size() - 1) / 2] + ordem[ordem.size() / 2]) / 2;
    const auto lacuna = [&](double d) { return d > 1800 && d > 3 * usual; };
    long double peso = 0;
    const auto pesar = [&](const Amostra &a, double quanto) {
        peso += quanto;
        o.noTempo += (long double)(quanto)*a.valor;
        o.cinetica += quanto * std::exp(-10000.0L / (a.valor + 273.15L));
    };
    pesar(s.front(), usual / 2);
    pesar(s.back(), usual / 2);
    for (size_t i = 0; i + 1 < n; ++i) {
        const double lado = lacuna(intervalos[i]) ? usual / 2 : intervalos[i] / 2;
        pesar(s[i], lado);
        pesar(s[i + 1], lado);
        o.semLeituras += lacuna(intervalos[i]) ? intervalos[i] : 0;
        o.acima += s[i].estado == EstadoDoPonto::Acima && !lacuna(intervalos[i]) ? intervalos[i] : 0;
    }
    if (peso == 0)
        for (const Amostra &a : s)
            pesar(a, 1);
    o.noTempo /= peso;
    o.cinetica = -10000.0L / std::log(o.cinetica / peso) - 273.15L;
    for (size_t i = 0; i < n; ++i) {
        o.media += s[i].valor;
        o.ordenados.push_back(s[i].valor);
        const bool comeca = i == 0 || s[i - 1].estado != s[i].estado || lacuna(intervalos[i - 1]);
        const bool fica = i + 1 == n || lacuna(intervalos[i]);
        o.excursoes += comeca && s[i].estado != EstadoDoPonto::Normal ? 1 : 0;
        o.abertas += fica && s[i].estado != EstadoDoPonto::Normal ? 1 : 0;
    }
    o.media /= n;
    for (const Amostra &a : s)
        o.desvio += (a.valor - o.media) * (a.valor - o.media);
    o.desvio = n > 1 ? std::sqrt(o.desvio / (n - 1)) : nenhum;
    std::sort(o.ordenados.begin(), o.ordenados.end());
    return o;
}

} // namespace

class TesteEstatistica : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void medias_data() {
        const Tabela<Valores, Valores, double, double> caso("minutos", "valores", "cinetica", "noTempo");
        caso("even", {}, {2, 2, 5, 8, 8, 8, 8}, 6.2503, 41.0 / 7);
        caso("one warm reading of five", {}, {4, 4, 4, 4, 16}, 8.1089, 6.4);
        caso("a day of two halves", {}, Valores(10, 23) + Valores(14, 27), 25.5326, 608.0 / 24);
        caso("one gap", {0, 15, 30, 45, 165, 180}, {5, 5, 6, 12, 5, 5}, 6.7940, 6.3333);
        caso("three times the usual is none yet", {0, 10, 20, 50, 60}, {4, 4, 4, 10, 4}, 6.1964, 5.7143);
        caso("one", {}, {5}, 5, 5);
        caso("one instant", {7, 7}, {4, 6}, 5.0609, 5);
        caso("what cannot be is left out", {}, {nenhum, 5, -300, HUGE_VAL, 5}, 5, 5);
        caso("none", {}, {nenhum}, nenhum, nenhum);
    }
    void medias() {
        QFETCH(const Valores, minutos);
        QFETCH(const Valores, valores);
        QFETCH(const double, cinetica);
        QFETCH(const double, noTempo);
        const Figuras f = figuras(serie(minutos, valores), Genero::Temperatura);
        const auto aQuatro = [](double x) { return QByteArray::number(x, 'f', 4); };
        QCOMPARE(aQuatro(f.cineticaMedia), aQuatro(cinetica));
        QCOMPARE(aQuatro(f.mediaNoTempo), aQuatro(noTempo));
        QVERIFY(std::isnan(figuras(serie(minutos, valores), Genero::Qualquer).cineticaMedia));
    }

    void excursoesDeUmaSerie() {
        // Outside at the start, inside, outside until a gap, outside behind it, inside, outside at the end.
        const auto s = serie({0, 10, 20, 30, 100, 110, 120}, {9, 5, 9, 11, 10, 5, 8}, 8);
        const auto e = excursoes(s, espacamentoUsual(s));
        QCOMPARE(e.size(), 4U);
        QVERIFY(!e[0].aberta && e[1].aberta && !e[2].aberta && e[3].aberta);
        QCOMPARE(e[0].duracao(), 600.0);
        QCOMPARE(e[1].instanteDoPico, 1800.0);
        QCOMPARE(e[1].pico, 11.0);
        QCOMPARE(permanencia(e, EstadoDoPonto::Acima).segundos, 600.0 + 600 + 600);
        QCOMPARE(permanencia(e, EstadoDoPonto::Abaixo).vezes, 0);
        using enum EstadoDoPonto;
        const std::vector<Amostra> frio{{0, 1, Abaixo}, {600, -3, Abaixo}, {1200, 0, Abaixo}, {1800, 12, Acima}};
        QCOMPARE(excursoes(frio, 600).at(0).pico, -3.0);
    }

    void contraOutraConta() {
        std::mt19937 acaso(20261123);
        for (int vez = 0; vez < 10'000; ++vez) {
            const auto ate = [&](unsigned n) { return acaso() % n; };
            std::vector<Amostra> s;
            double agora = 1.7e9;
            const unsigned usual = 1 + ate(1200);
            for (unsigned n = 1 + ate(60); n > 0; --n) {
                agora += ate(9) == 0 ? ate(20'000) : ate(7) == 0 ? 0 : usual;
                const unsigned estado = ate(4);
                s.push_back({agora, double(ate(9000)) / 100 - 40,
                             estado == 0   ? EstadoDoPonto::Acima
                             : estado == 1 ? EstadoDoPonto::Abaixo
                                           : EstadoDoPonto::Normal});
            }
            const Figuras f = figuras(s, Genero::Temperatura);
            const Outra o = contarDeOutroModo(s);
            const auto e = excursoes(s, f.espacamento);
            const auto qual = qPrintable(QString::number(vez));
            QVERIFY2(igual(f.media, double(o.media)) && igual(f.mediaNoTempo, double(o.noTempo)), qual);
            QVERIFY2(igual(f.desvio, double(o.desvio)) && igual(f.cineticaMedia, double(o.cinetica)), qual);
            QVERIFY2(igual(f.p5, o.parte(0.05)) && igual(f.mediana, o.parte(0.5)) && igual(f.p95, o.parte(0.95)), qual);
            QVERIFY2(f.minimo == o.ordenados.front() && f.maximo == o.ordenados.back(), qual);
            QVERIFY2(f.semLeituras == o.semLeituras && permanencia(e, EstadoDoPonto::Acima).segundos == o.acima, qual);
            QVERIFY2(int(e.size()) == o.excursoes, qual);
            QVERIFY2(int(std::ranges::count_if(e, &Excursao::aberta)) == o.abertas, qual);
        }
    }
};

QTEST_GUILESS_MAIN(TesteEstatistica)
#include "tst_estatistica.moc"
