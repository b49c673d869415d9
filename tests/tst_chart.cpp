#include "platform/chart/tracos.h"
#include "tests/apoio/tabela.h"
#include "tests/cenaChart.h"

#include <random>

class tst_chart : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        renovarEstado();
        estado().ambiente.locale = QLocale(u"pt_PT"_s);
    }

    void seriesGuardamPontos_data() {
        const Tabela<int, int> caso("estados", "rotulos");
        caso("all alike", 1, 1);
        caso("few", 3, 2);
        caso("as many as have numbers", 3, 256);
        caso("a text each", 2, 2000);
    }
    void seriesGuardamPontos() {
        QFETCH(int, estados);
        QFETCH(int, rotulos);
        TSerie s;
        // The second of each comes late, so that what went before must be filled in.
        const auto k = [](int i, int n) { return i < 300 ? 0 : i % n; };
        for (int i = 0; i < 2000; ++i)
            QCOMPARE(s.AddXY(i, -i, u"r%1"_s.arg(k(i, rotulos)), EstadoDoPonto(k(i, estados))), qsizetype(i));
        s.setPointLabel(5, u"!"_s);
        for (int i = 0; i < 2000; ++i) {
            QCOMPARE(s.estado(i), EstadoDoPonto(k(i, estados)));
            QCOMPARE(s.PointLabel(i), i == 5 ? u"!"_s : u"r%1"_s.arg(k(i, rotulos)));
        }
        s.Title = u"T"_s;
        s.traco = TSerie::Traco::Curto;
        s.Clear();
        QCOMPARE(s.Count(), 0);
        QVERIFY(s.tracejada() && s.Title == u"T");
        s.AddXY(1, 2, {}, EstadoDoPonto::Abaixo);
        QVERIFY(s.estado(0) == EstadoDoPonto::Abaixo && s.PointLabel(0).isEmpty());
    }

    void extremosDasActivas() {
        Cena c;
        QCOMPARE(c.chart.MinXValue(), 0.0);
        QCOMPARE(c.chart.MaxYValue(), 0.0);
        c.serie({3, semValor, 7, semValor});
        c.serie({-100}).Active = false;
        QCOMPARE(c.chart.MinYValue(), 3.0);
        QCOMPARE(c.chart.MaxYValue(), 7.0);
        QCOMPARE(c.chart.MaxXValue(), inicio + 120); // the last has no value
    }

    // What the strokes of a column of pixels cover is what its points cover, however the points are stored.
    void colunasCobremOsSeusPontos_data() {
        // cadaEstado: another state after so many points
        const Tabela<int, int, bool> caso("pontos", "cadaEstado", "baralhado");
        caso("blocks", 300000, 100000, false);
        caso("mixed blocks", 300000, 37, false);
        caso("each its own", 20000, 1, false);
        caso("shuffled", 20000, 7, true);
    }
    void colunasCobremOsSeusPontos() {
        QFETCH(int, pontos);
        QFETCH(int, cadaEstado);
        QFETCH(bool, baralhado);
        std::mt19937 sorte(3);
        std::vector<int> ordem(static_cast<size_t>(pontos));
        for (int i = 0; i < pontos; ++i)
            ordem[size_t(i)] = i;
        if (baralhado)
            std::shuffle(ordem.begin(), ordem.end(), sorte);
        TSerie s;
        constexpr int largura = 100;
        const double escala = double(largura) / pontos;
        std::vector<double> menor(largura + 1, 1e9), maior(largura + 1, -1e9);
        for (int i : ordem) {
            const double y = sorte() % 50 == 0 ? semValor : double(sorte() % 1000000) / 1000;
            s.AddXY(i, y, {}, EstadoDoPonto(i / cadaEstado % 3));
            const auto coluna = size_t(std::floor(i * escala + 0.5));
            if (!std::isnan(y)) {
                menor[coluna] = std::min(menor[coluna], y);
                maior[coluna] = std::max(maior[coluna], y);
            }
        }
        const Escala e{escala, 0, -1, 0, 1, QRectF(-5000, -5000, 20000, 20000)};
        Redutor redutor(s, e, 1e300);
        redutor.reduzir(0, pontos);
        std::vector<double> topo(largura + 1, 1e9), fundo(largura + 1, -1e9);
        size_t total = 0;
        for (const Tracos &t : redutor.tracos()) {
            total += t.pontos.size();
            for (const QPointF &p : t.pontos) {
                const auto coluna = size_t(std::lround(p.x()));
                topo[coluna] = std::min(topo[coluna], -p.y());
                fundo[coluna] = std::max(fundo[coluna], -p.y());
            }
        }
        for (size_t k = 0; k <= largura; ++k) {
            QVERIFY2(std::fabs(topo[k] - menor[k]) < 5, qPrintable(QString::number(k)));
            QVERIFY2(std::fabs(fundo[k] - maior[k]) < 5, qPrintable(QString::number(k)));
        }
        QVERIFY(total < size_t(largura) * 40);
    }

    void umAlarmeNumaMultidao_data() {
        const Tabela<int, double> caso("alarme", "acima");
        caso("none", -1, 0.0);
        caso("far out", 65000, 9.0);
        caso("hidden among the others", 65100, 0.0);
        caso("first", 0, 0.0);
        caso("last", 199999, 0.0);
    }
    void umAlarmeNumaMultidao() {
        QFETCH(int, alarme);
        QFETCH(double, acima);
        Cena c;
        TSerie &s = c.chart.AddSeries();
        s.Color = verde;
        const QList<double> v = onda(200000);
        for (int i = 0; i < v.size(); ++i)
            s.AddXY(inicio + i * 60., v[i] + (i == alarme ? acima : 0), {},
                    i == alarme ? EstadoDoPonto::Acima : EstadoDoPonto::Normal);
        c.chart.actualizar();
        const QImage ecra = c.chart.grab().toImage();
        QVERIFY(pixeis(ecra, 'g') > 1000);
        if (alarme < 0)
            QCOMPARE(pixeis(ecra, 'r'), 0);
        else
            QVERIFY2(pixeis(ecra, 'r') >= 4, qPrintable(QString::number(pixeis(ecra, 'r'))));
    }

    void faltas_data() {
        // comND: NaN, or no points at all
        const Tabela<bool, int> caso("comND", "pontos");
        caso("ND, few", true, 60);
        caso("ND, crowded", true, 60000);
        caso("no readings, few", false, 60);
        caso("no readings, crowded", false, 60000);
    }
    void faltas() {
        QFETCH(bool, comND);
        QFETCH(int, pontos);
        Cena c;
        TSerie &s = c.chart.AddSeries();
        s.Color = verde;
        for (int i = 0; i < pontos; ++i) {
            const bool falta = i > pontos / 3 && i < pontos / 2;
            if (!falta || comND)
                s.AddXY(inicio + i * 60., falta ? semValor : 20 + std::sin(i * 0.3), {});
        }
        c.chart.actualizar();
        const QImage ecra = c.chart.grab().toImage();
        const QRect a = c.area();
        const auto em = [&](double parte) { return a.left() + int(a.width() * parte); };
        QCOMPARE(pixeis(ecra, 'g', em(0.37), em(0.47)), 0);
        QVERIFY(pixeis(ecra, 'g', em(0.1), em(0.2)) > 20);
        QVERIFY(pixeis(ecra, 'g', em(0.6), em(0.7)) > 20);
    }

    // A slower pace is no gap, and a step holds its state however long.
    void nemTudoEFalta() {
        Cena c;
        TSerie &s = c.chart.AddSeries();
        s.Color = verde;
        for (int i = 0; i < 200; ++i)
            s.AddXY(inicio + i * 10., 20, {});
        for (int i = 0; i < 10; ++i)
            s.AddXY(inicio + 2000 + i * 600., 20, {});
        TSerie &d = c.chart.AddSeries(TSerie::Estilo::Degrau);
        d.Color = azul;
        for (int i = 0; i < 20; ++i)
            d.AddXY(inicio + i, i % 2, {});
        d.AddXY(inicio + 7400, 1, {});
        c.chart.actualizar();
        const QImage ecra = c.chart.grab().toImage();
        const QRect a = c.area();
        for (int x = a.left() + a.width() / 2; x < a.right() - 20; ++x) {
            QVERIFY(pixeis(ecra, 'g', x, x + 1) > 0);
            QVERIFY(pixeis(ecra, 'b', x, x + 1) > 0);
        }
    }

    void desordenados() {
        const QList<double> v = onda(40);
        Cena certa, baralhada;
        certa.serie(v);
        TSerie &s = baralhada.chart.AddSeries();
        s.Color = verde;
        for (int k = 0; k < 40; ++k) {
            const int i = k * 17 % 40;
            s.AddXY(inicio + i * 60., v[i], u" "_s);
        }
        for (Cena *c : {&certa, &baralhada})
            c->chart.actualizar();
        QCOMPARE(baralhada.chart.imagem(600, 300), certa.chart.imagem(600, 300));
        baralhada.mostrar();
        QTest::mouseClick(&baralhada.chart, Qt::LeftButton, {}, baralhada.onde(0, 3));
        QCOMPARE(baralhada.cliques.value(0).value(1).toInt(), 3); // by order of adding
    }

    void barras() {
        Cena c;
        TSerie &s = c.chart.AddSeries(TSerie::Estilo::Barra);
        s.Color = verde;
        s.Add(10, u"0 <> 1"_s, EstadoDoPonto::Abaixo);
        s.Add(40, u"1,1 <> 2"_s, EstadoDoPonto::Normal);
        s.Add(20, u"2,1 <> 3"_s, EstadoDoPonto::Acima);
        c.mostrar();
        const QImage ecra = c.chart.grab().toImage();
        QVERIFY(pixeis(ecra, 'r') > pixeis(ecra, 'b') && pixeis(ecra, 'b') > 1000);
        QTest::mouseClick(&c.chart, Qt::LeftButton, {}, c.onde(0, 1) + QPoint(20, 80)); // anywhere in the bar
        QCOMPARE(c.cliques.value(0).value(1).toInt(), 1);
        QVERIFY(c.chart.accessibleDescription().isEmpty());
        c.pairar(c.onde(0, 2) + QPoint(0, 20));
        QCOMPARE(c.chart.accessibleDescription(), u"2,1 <> 3, 20"_s);
    }

    // The picture on paper depends neither on the screen's colours nor on the resolution of the device.
    void noPapel() {
        Cena claro, escuro;
        QPalette noite;
        noite.setColor(QPalette::Base, Qt::black);
        noite.setColor(QPalette::Text, Qt::white);
        escuro.chart.setPalette(noite);
        for (Cena *c : {&claro, &escuro}) {
            c->serie(onda(500)).Title = u"Um"_s;
            c->serie(onda(30), 300, 0).setPointLabel(4, u"!"_s);
            c->mostrar();
        }
        QVERIFY(qGray(escuro.chart.grab().toImage().pixel(2, 50)) < qGray(claro.chart.grab().toImage().pixel(4, 4)));
        const QImage imagem = escuro.chart.imagem(1050, 506);
        QCOMPARE(imagem.size(), QSize(1050, 506));
        QCOMPARE(imagem.devicePixelRatio(), 1.0);
        QCOMPARE(imagem.pixelColor(2, 2), QColor(Qt::white));
        QCOMPARE(imagem, claro.chart.imagem(1050, 506));
        QCOMPARE(escuro.chart.size(), QSize(800, 400));
        QVERIFY(escuro.chart.grab().toImage() == escuro.chart.grab().toImage());

        QImage normal(700, 400, QImage::Format_RGB32), fina = normal;
        fina.setDotsPerMeterX(normal.dotsPerMeterX() * 4);
        fina.setDotsPerMeterY(normal.dotsPerMeterY() * 4);
        for (QImage *folha : {&normal, &fina}) {
            folha->fill(Qt::white);
            QPainter pintor(folha);
            claro.chart.pintar(pintor, QRect(50, 40, 600, 320));
        }
        QVERIFY(pixeis(normal, 'g') > 500);
        QVERIFY(std::abs(pixeis(normal, 'g') - pixeis(fina, 'g')) < 20);
        QCOMPARE(pixeis(normal, 'g', 0, 50) + pixeis(normal, 'g', 650), 0);
    }

    void marcas_data() {
        const Tabela<int, int, bool> caso("pontos", "cada", "sozinhas"); // every so many points a mark
        caso("alone", 20, 5, true);
        caso("close", 400, 3, false);
        caso("crowd", 5000, 1, false);
        caso("blocks in one column", 900000, 1, false);
        caso("some of a crowd", 900000, 700, false);
    }
    // Those that would overlap become one with their number: none is lost, none stands on another, each has the colour
    // of its series, or none where there are several.
    void marcas() {
        QFETCH(const int, pontos);
        QFETCH(const int, cada);
        Cena c;
        qint64 postas = 0;
        for (int s = 0; s < 2; ++s) {
            TSerie &serie = c.chart.AddSeries();
            serie.Color = s == 0 ? azul : vermelho;
            for (int i = 0; i < pontos; ++i) {
                const bool marca = i % cada == 0;
                const double y = i == cada ? semValor : 20 + s * 9 + std::sin(i * 0.37);
                serie.AddXY(inicio + i * 60.0, y, marca ? u"!"_s : u" "_s);
                postas += marca;
            }
            serie.setPointLabel(0, u" "_s);
            serie.setPointLabel(cada == 1 ? 2 : 1, u"!"_s);
            postas -= cada == 1 ? 1 : 0;
        }
        c.chart.Left().Automatic = false;
        c.chart.Left().Minimum = 15;
        c.chart.Left().Maximum = 35;
        c.chart.actualizar();
        const QImage imagem = c.chart.grab().toImage();
        const auto grupos = c.chart.findChild<Marcas *>()->grupos();
        qint64 contadas = 0;
        for (size_t i = 0; i < grupos.size(); ++i) {
            contadas += grupos[i].quantas;
            QVERIFY(QRectF(c.area()).adjusted(-1, -1, 1, 1).contains(grupos[i].lugar));
            for (size_t k = 0; k < i; ++k)
                QVERIFY(!grupos[i].lugar.intersects(grupos[k].lugar));
            // The reading without a value stands at the foot, and both series meet there.
            const bool noPe = grupos[i].lugar.bottom() > c.area().bottom() - 8;
            QCOMPARE(grupos[i].serie == nullptr, noPe);
            if (!noPe)
                QCOMPARE(grupos[i].serie->serie().Color, grupos[i].ponto.y() > c.area().center().y() ? azul : vermelho);
        }
        QCOMPARE(contadas, postas);
        QVERIFY(pixeis(imagem, 'b') > 20 && pixeis(imagem, 'r') > 20);
        QTEST(grupos.size() == size_t(postas) - 1, "sozinhas"); // the two at the foot are one
        QVERIFY(grupos.size() < 200);
    }

    void frases() {
        Cena c;
        c.serie({1, 2, 3});
        c.chart.actualizar();
        const int alto = c.area().height();
        const QImage sem = c.chart.grab().toImage();
        c.chart.setAviso(u"Não há leituras neste intervalo."_s);
        c.chart.actualizar();
        const QRect meio = QRect(QPoint(), QSize(200, 20)).translated(c.area().center() - QPoint(100, 10));
        QVERIFY(c.chart.grab().toImage().copy(meio) != sem.copy(meio));
        c.chart.setRodape(u"palavra "_s.repeated(40)); // wrapped: the picture gives way
        c.chart.actualizar();
        QVERIFY(c.area().height() < alto - 2 * c.chart.fontMetrics().height());
        QVERIFY(c.chart.imagem(1050, 506) != Cena().chart.imagem(1050, 506));
    }
};

QTEST_MAIN(tst_chart)
#include "tst_chart.moc"
