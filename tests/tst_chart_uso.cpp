#include "tests/apoio/espera.h"
#include "tests/apoio/tabela.h"
#include "tests/cenaChart.h"

#include <QContextMenuEvent>

class tst_chart_uso : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        renovarEstado();
        estado().ambiente.locale = QLocale(u"pt_PT"_s);
    }

    void cliques() {
        Cena c;
        c.serie(onda(30));
        c.serie({25, 26, 27}).Active = false;
        c.serie(QList<double>(30, 24.0), 60, azul);
        c.mostrar();
        for (const auto &[serie, i] : {std::pair{0, 4}, {2, 17}, {0, 29}}) {
            QTest::mouseClick(&c.chart, Qt::LeftButton, {}, c.onde(serie, i) + QPoint(2, -1));
            const QVariantList sinal = c.cliques.takeLast();
            QCOMPARE(sinal[0].toInt(), serie);
            QCOMPARE(sinal[1].toInt(), i);
        }
        QTest::mouseClick(&c.chart, Qt::RightButton, Qt::ShiftModifier, c.onde(0, 4));
        QCOMPARE(c.cliques.constLast()[2].value<Qt::MouseButton>(), Qt::RightButton);
        QCOMPARE(c.cliques.constLast()[3].value<Qt::KeyboardModifiers>(), Qt::ShiftModifier);
        c.cliques.clear();
        QTest::mouseClick(&c.chart, Qt::LeftButton, {}, c.onde(2, 17) + QPoint(0, 40)); // beside it
        QTest::mouseClick(&c.chart, Qt::LeftButton, {}, c.onde(1, 1));                  // inactive
        c.arrastar(c.onde(0, 4), c.onde(0, 4) + QPoint(40, 40));                        // a drag
        QCOMPARE(c.cliques.size(), 0);
        QCOMPARE(c.chart.pontoMaisProximo(QPointF(5, 5)), std::pair(-1, -1));
    }

    void zoomComORato() {
        Cena c;
        c.serie(onda(3000));
        c.chart.Left() = {false, true, 10, 30, 1, {}};
        c.mostrar();
        const QCPRange todoX = c.x(), todoY = c.y();
        const QPoint de(250, 100), ate(450, 250);
        c.area();
        const auto *q = c.chart.findChild<Quadro *>();
        const QCPRange esperado(q->xAxis->pixelToCoord(de.x()), q->xAxis->pixelToCoord(ate.x()));
        c.arrastar(de, ate);
        QCOMPARE(c.zooms.size(), 1);
        QVERIFY(c.chart.comZoom());
        QVERIFY(std::fabs(c.x().lower - esperado.lower) < todoX.size() / 500);
        QVERIFY(std::fabs(c.x().upper - esperado.upper) < todoX.size() / 500);
        QCOMPARE(c.chart.Left().Maximum, 30.0); // the whole picture's

        c.arrastar({400, 200}, {300, 200}, Qt::RightButton); // to what lies to the right
        QVERIFY(c.x().lower > esperado.lower && std::fabs(c.x().size() - esperado.size()) < todoX.size() / 500);
        c.arrastar({700, 200}, {60, 200}, Qt::MiddleButton);
        c.arrastar({700, 200}, {60, 200}, Qt::MiddleButton);
        c.arrastar({700, 200}, {60, 200}, Qt::MiddleButton);
        c.arrastar({700, 200}, {60, 200}, Qt::MiddleButton);
        QVERIFY(c.x().upper <= todoX.upper + 1e-6); // not out of the data

        c.arrastar(ate, de);
        QVERIFY(!c.chart.comZoom());
        QCOMPARE(c.x().lower, todoX.lower);
        QCOMPARE(c.y().upper, todoY.upper);
        QCOMPARE(c.anulados.size(), 1);

        c.roda({400, 200}, 2);
        QVERIFY(c.x().size() < todoX.size() && c.y() == todoY);
        c.roda({400, 200}, -5);
        QVERIFY(!c.chart.comZoom() && c.x() == todoX);
        c.roda({400, 200}, 2, Qt::ShiftModifier);
        QVERIFY(c.x() == todoX && c.y().size() < todoY.size());
        QTest::mouseDClick(&c.chart, Qt::LeftButton, {}, {400, 200});
        QVERIFY(!c.chart.comZoom());
        QCOMPARE(c.zooms.size(), 3);
        QCOMPARE(c.anulados.size(), 3);

        c.chart.setZoomEnable(false);
        c.arrastar(de, ate);
        c.roda({400, 200}, 2);
        QVERIFY(!c.chart.comZoom());
    }

    // The right button pans: the menu of what lies around the chart stays closed.
    void semMenuAlheio() {
        QWidget area;
        area.setContextMenuPolicy(Qt::CustomContextMenu);
        const QSignalSpy pedidos(&area, &QWidget::customContextMenuRequested);
        TChart chart(&area);
        QContextMenuEvent pedido(QContextMenuEvent::Mouse, QPoint(9, 9), QPoint(9, 9));
        QCoreApplication::sendEvent(&chart, &pedido);
        QCOMPARE(pedidos.size(), 0);
    }

    void teclado() {
        Cena c;
        QList<double> v = onda(100);
        v[3] = semValor;
        c.serie(v).Title = u"Cave"_s;
        c.serie({}, 60, azul);
        c.serie(onda(100), 60, azul).Title = u"Sótão"_s;
        c.chart.setUnidade(u" °C"_s);
        c.mostrar();
        const auto ler = [&] {
            c.tecla(Qt::Key_Return);
            const QVariantList s = c.cliques.takeLast();
            return std::pair(s[0].toInt(), s[1].toInt());
        };
        c.tecla(Qt::Key_Home);
        QCOMPARE(ler(), std::pair(0, 0));
        c.tecla(Qt::Key_Right);
        c.tecla(Qt::Key_Right);
        c.tecla(Qt::Key_Right);
        QCOMPARE(ler(), std::pair(0, 4)); // over the missing one
        c.tecla(Qt::Key_Left);
        QCOMPARE(ler(), std::pair(0, 2));
        c.tecla(Qt::Key_Right, Qt::ShiftModifier);
        QCOMPARE(ler(), std::pair(0, 12));
        QCOMPARE(c.cliques.size(), 0);
        QVERIFY(c.chart.accessibleDescription().startsWith(u"Cave, 05/03/2024 08:12:00, "));
        QVERIFY(c.chart.accessibleDescription().endsWith(u" °C"));
        c.tecla(Qt::Key_Down);
        QCOMPARE(ler(), std::pair(2, 12));
        c.tecla(Qt::Key_End);
        QCOMPARE(ler(), std::pair(2, 99));

        const QCPRange todo = c.x();
        for (int i = 0; i < 4; ++i)
            c.tecla(Qt::Key_Plus);
        QVERIFY(c.chart.comZoom() && c.x().contains(inicio + 99 * 60));
        c.tecla(Qt::Key_Left, Qt::ControlModifier);
        QVERIFY(!c.x().contains(inicio + 99 * 60));
        QCOMPARE(ler(), std::pair(2, 99)); // the view moved, not the point
        c.tecla(Qt::Key_Home);
        QVERIFY(c.x().contains(inicio)); // what is read is seen
        c.tecla(Qt::Key_Escape);
        QVERIFY(!c.chart.comZoom() && c.x() == todo);
        QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QCoreApplication::sendEvent(&c.chart, &escape);
        QVERIFY(!escape.isAccepted()); // left to the window
    }

    void leituraSobOPonteiro() {
        Cena c;
        TSerie &s = c.serie(onda(40));
        s.Title = u"Uma descrição bastante comprida de um sensor"_s;
        s.setPointLabel(20, u"!"_s);
        int perguntas = 0;
        c.chart.setNota([&](int serie, int i) {
            ++perguntas;
            return u"nota %1/%2"_s.arg(serie).arg(i);
        });
        c.mostrar();
        for (int i : {0, 10, 39}) {
            c.pairar(c.onde(0, i));
            QVERIFY(c.sobre()->comLeitura());
            QVERIFY(c.chart.rect().contains(c.sobre()->caixa()));
        }
        QCOMPARE(perguntas, 0);
        const QPoint marcado = c.onde(0, 20);
        c.pairar(marcado);
        c.pairar(marcado + QPoint(1, 1));
        QTRY_COMPARE(perguntas, 1);
        c.pairar(marcado);
        deixarPassar(250);
        QCOMPARE(perguntas, 1);
        QVERIFY(c.chart.accessibleDescription().endsWith(u"nota 0/20"));
        c.pairar({marcado.x(), c.area().top() + 2});
        QVERIFY(!c.sobre()->comLeitura());
    }

    void serieRetiradaEnquantoSeLe() {
        Cena c;
        c.serie(onda(40));
        c.serie(QList<double>(40, 30.0), 60, azul);
        c.mostrar();
        const QPoint p = c.onde(1, 10);
        c.pairar(p);
        QVERIFY(c.sobre()->comLeitura());
        c.chart.RemoveSeries(1);
        c.chart.grab();
        QVERIFY(!c.sobre()->comLeitura());
        c.pairar(c.onde(0, 10));
        QVERIFY(c.sobre()->comLeitura());
        c.chart.Series(0).Clear(); // before anybody tells the chart
        c.tecla(Qt::Key_Return);
        c.pairar(p);
        c.chart.actualizar();
        c.chart.grab();
        QVERIFY(!c.sobre()->comLeitura());
        QCOMPARE(c.cliques.size(), 0);
    }

    void poucosPontos_data() {
        const Tabela<QList<double>> caso("valores");
        caso("none", {});
        caso("one", {4});
        caso("two alike", {4, 4});
        caso("one between ND", {semValor, 4, semValor});
    }
    void poucosPontos() {
        QFETCH(QList<double>, valores);
        Cena c;
        c.serie(valores);
        c.mostrar();
        QCOMPARE(pixeis(c.chart.grab().toImage(), 'g') > 0, !valores.isEmpty());
        for (int t : {Qt::Key_Right, Qt::Key_End, Qt::Key_Up, Qt::Key_Plus, Qt::Key_PageDown, Qt::Key_Return})
            c.tecla(t);
        c.roda({400, 200}, 3);
        c.arrastar({200, 100}, {500, 300});
        QCOMPARE(c.cliques.size(), valores.isEmpty() ? 0 : 1);
    }
};

QTEST_MAIN(tst_chart_uso)
#include "tst_chart_uso.moc"
