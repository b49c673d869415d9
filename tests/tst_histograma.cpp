#include "tests/apoio/instalacao.h"
#include "tests/apoio/ouro.h"
#include "views/familiaHistogramas.h"
#include "views/histograma.h"

#include <cmath>

using histograma::Balde;

namespace {

constexpr double nenhum = std::numeric_limits<double>::quiet_NaN();

} // namespace

class TesteHistograma : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // Golden values, of one count query an interval with its bounds as texts: what the counting in memory stands for.
    void ouro() {
        std::vector<double> decimas, centesimas;
        for (int i = -30; i < 300; ++i)
            decimas.push_back(i / 10.0);
        for (int i = 0; i < 999; ++i)
            centesimas.push_back((i * 37 % 4001) / 100.0);
        const std::vector<double> dificeis{0.1,   0.2, 0.3, 0.1 + 0.2, 0.7, 0.1 * 3, 1.1, 2.2, 3.3000000000000003,
                                           1e-17, -0.0};
        QByteArray texto;
        for (const double passo : {0.5, 1.0, 0.05, 0.1, 7.5})
            for (const auto &[nome, valores] :
                 {std::pair("one decimal", decimas), {"two decimals", centesimas}, {"no binary fractions", dificeis}}) {
                texto += nome + QByteArray(", ") + QByteArray::number(passo) + ':';
                for (const Balde &b : histograma::contar(valores, passo, {}))
                    texto += ' ' + QByteArray::number(b.total);
                texto += '\n';
            }
        const QByteArray diferenca = diferencaDoOuro(u"histograma.txt"_s, texto);
        QVERIFY2(diferenca.isEmpty(), diferenca.constData());
        QVERIFY(histograma::contar(std::vector<double>{nenhum}, 0.5, {}).empty());
    }

    void intervalosFechadosEDesviados() {
        const Instalacao instalacao(Instalacao::Base::Nenhuma);
        const std::vector<double> valores{10, 10.5, 10.55, 10.6, 11, nenhum};
        const auto baldes = histograma::contar(valores, 0.5, {});
        QCOMPARE(baldes.size(), size_t(2));
        QCOMPARE(baldes[0].total, 2); // 10 and the shared edge 10.5
        QCOMPARE(baldes[1].total, 2); // 10.55 falls between the two and is counted nowhere
        QCOMPARE(baldes[0].rotulo(), u"10 <> 10,5"_s);
        QCOMPARE(baldes[1].rotulo(), u"10,6 <> 11"_s);
    }

    void baldesPerdidosSaemDoTotal() {
        const auto baldes = histograma::contar(std::vector<double>{1, 2, 3, 8}, 1, {.minimo = 2});
        qint64 total = 0;
        for (const Balde &b : baldes)
            total += b.total;
        QCOMPARE(total, 2); // [1, 2] holds two; what lies above the lone minimum is lost
    }

    void combo() {
        const QStringList entradas = histograma::entradasDoCombo();
        QCOMPARE(entradas.size(), 100);
        QCOMPARE(entradas.first(), u"0.5"_s);
        QCOMPARE(entradas.at(98), u"49.5"_s);
        QCOMPARE(entradas.last(), u"50.0"_s);
    }

    void intervaloEscrito_data() {
        // valor: 0: refused
        const Tabela<QString, double> caso("texto", "valor");
        caso("point", u"0.5"_s, 0.5);
        caso("comma", u" 1,5 "_s, 1.5);
        caso("sign dropped", u"-2"_s, 2.0);
        caso("zero would never end", u"0,0"_s, 0.0);
        caso("empty", {}, 0.0);
        caso("word", u"meio"_s, 0.0);
        caso("infinite", u"inf"_s, 0.0);
    }
    void intervaloEscrito() {
        QFETCH(const QString, texto);
        QFETCH(const double, valor);
        if (valor > 0)
            QCOMPARE(histograma::lerIntervalo(texto), valor);
        else
            QVERIFY_THROWS_EXCEPTION(Falha, histograma::lerIntervalo(texto));
    }

    void intervaloMinusculoERecusado() {
        const Instalacao instalacao(Instalacao::Base::Nenhuma);
        QVERIFY_THROWS_EXCEPTION(Falha, histograma::contar(std::vector<double>{0, 1e9}, 1e-3, {}));
    }
};

QTEST_GUILESS_MAIN(TesteHistograma)
#include "tst_histograma.moc"
