#include "core/modDoubleTratamento.h"
#include "tests/apoio/instalacao.h"
#include "views/familiaHistogramas.h"
#include "views/histograma.h"

#include <cmath>

using histograma::Balde;

namespace {

constexpr double nenhum = std::numeric_limits<double>::quiet_NaN();

// One count query an interval, bounds as texts: what the counting in memory stands for.
std::vector<qint64> contarPorConsultas(const QString &tabela, double passo) {
    const auto numero = [](const QVariant &v) { return modDoubleTratamento::NumeroComPonto(v.toDouble()).toDouble(); };
    const QString coluna =
        u"CASE typeof(Temperatura) WHEN 'text' THEN CAST(REPLACE(Temperatura, ',', '.') AS REAL) ELSE Temperatura END"_s;
    const QString onde = u" FROM "_s + tabela + u" WHERE Temperatura <> 'ND'";
    Recordset extremos = cnBD().consultar(u"SELECT MIN("_s + coluna + u"), MAX(" + coluna + u")" + onde);
    extremos.avancar();
    std::vector<qint64> totais;
    if (extremos.nulo(0))
        return totais;
    const double minimo = numero(extremos.real(0));
    const double maximo = numero(extremos.real(1));
    bool primeiro = true;
    for (double x = minimo; x <= maximo; x += passo) {
        double baixo = numero(x);
        const double alto = numero(x + passo);
        if (!primeiro)
            baixo = numero(baixo + 0.1);
        primeiro = false;
        Recordset rs = cnBD().consultar(u"SELECT COUNT(*)"_s + onde + u" AND (" + coluna + u") BETWEEN " +
                                        QString::fromLatin1(modDoubleTratamento::NumeroComPonto(baixo)) + u" AND " +
                                        QString::fromLatin1(modDoubleTratamento::NumeroComPonto(alto)));
        rs.avancar();
        if (rs.inteiro(0) > 0)
            totais.push_back(rs.inteiro(0));
    }
    return totais;
}

} // namespace

class TesteHistograma : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void mesmasContagensQueAsConsultas_data() {
        QTest::addColumn<QVariantList>("valores");
        QTest::addColumn<double>("passo");
        QVariantList decimas;
        for (int i = -30; i < 300; ++i)
            decimas.append(i / 10.0);
        QVariantList centesimas;
        for (int i = 0; i < 999; ++i)
            centesimas.append((i * 37 % 4001) / 100.0);
        QVariantList dificeis{0.1, 0.2, 0.3, 0.1 + 0.2, 0.7, 0.1 * 3, 1.1, 2.2, 3.3000000000000003, 1e-17, -0.0};
        QTest::newRow("none") << QVariantList() << 0.5;
        QTest::newRow("one") << QVariantList{21.5} << 0.5;
        QTest::newRow("only ND") << QVariantList{u"ND"_s, u"ND"_s} << 0.5;
        QTest::newRow("commas and ND") << QVariantList{u"21,5"_s, u"ND"_s, 21.5, u"22,04"_s, 20} << 0.5;
        for (const double passo : {0.5, 1.0, 0.05, 0.1, 7.5}) {
            QTest::addRow("one decimal, %g", passo) << decimas << passo;
            QTest::addRow("two decimals, %g", passo) << centesimas << passo;
            QTest::addRow("no binary fractions, %g", passo) << dificeis << passo;
        }
    }
    void mesmasContagensQueAsConsultas() {
        QFETCH(const QVariantList, valores);
        QFETCH(const double, passo);
        Instalacao instalacao;
        QList<Instalacao::Leitura> linhas;
        for (const QVariant &v : valores)
            linhas.append({u"2026-01-01 00:00:00"_s, v});
        instalacao.leituras(u"Temperaturas"_s, u"S"_s, linhas);
        std::vector<double> lidos;
        Recordset rs = cnBD().consultar(u"SELECT Temperatura FROM Temperaturas"_s);
        while (rs.avancar())
            lidos.push_back(rs.numero(0));
        std::vector<qint64> totais;
        for (const Balde &b : histograma::contar(lidos, passo, {}))
            totais.push_back(b.total);
        QCOMPARE(totais, contarPorConsultas(u"Temperaturas"_s, passo));
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
