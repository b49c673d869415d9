#include "platform/chart/cores.h"
#include "tests/cenaGrafico.h"

#include <cmath>

namespace {

QList<EstadoDoPonto> estadosDe(const TSerie &serie) {
    QList<EstadoDoPonto> lista;
    for (qsizetype i = 0; i < serie.Count(); ++i)
        lista.append(serie.estado(i));
    return lista;
}

// So many readings that events run in between.
constexpr int quantasLeituras = 2000;

// Once some of the readings have been read, and not all.
void aMeio(const Grafico &g, const std::function<void()> &feito) {
    auto *relogio = new QTimer(g.form);
    QObject::connect(relogio, &QTimer::timeout, g.form, [&g, feito, relogio] {
        const qsizetype lidas = g.chart().Series(0).Count();
        if (lidas == 0)
            return;
        QVERIFY(lidas < quantasLeituras);
        relogio->stop();
        feito();
    });
    relogio->start(0);
}

void encher(const Instalacao &inst) {
    QList<double> valores(quantasLeituras, 20.0);
    estado().linhasPorFatia = quantasLeituras / 10;
    inst.leituras(u"Temperaturas"_s, id(1), dia + u"00:00:00"_s, 0, valores, u"30XXX5"_s);
}

} // namespace

class tst_grafico : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void emBranco() {
        const Instalada inst;
        const Grafico g;
        QCOMPARE(g.chart().SeriesCount(), 3);
        QCOMPARE(g.chart().Series(0).Name, u"A1"_s);
        QVERIFY(!g.chart().Series(0).Active);
        QCOMPARE(g.chart().Left().Minimum, 1.0); // not the settings' 0
        QCOMPARE(g.chart().Left().Maximum, 40.0);
        QVERIFY(!g.chart().Bottom().Visible);
        QVERIFY(!g.permitido(u"cmdImprimir"_s));
    }

    void umSensor() {
        const Instalada inst;
        inst.leituras(u"Temperaturas"_s, id(1),
                      {{dia + u"10:00:00"_s, 30.0, u"30XXX5"_s, u"porta"_s},
                       {dia + u"10:05:00"_s, 5.0, u"30XXX5"_s},
                       {dia + u"10:10:00"_s, u"5,1"_s, u"30XXX5"_s},
                       {dia + u"10:15:00"_s, 90.0, u"NAXXXNA"_s},
                       {dia + u"10:20:00"_s, 4.0, u" NA XXX4,5"_s, u" "_s},
                       {dia + u"10:25:00"_s, 80.0, QVariant(), QVariant()}});
        const Grafico g;
        g.carregar({1});
        TChart &c = g.chart();
        QCOMPARE(c.SeriesCount(), 3);
        const TSerie &s = c.Series(0);
        QCOMPARE(s.Title, u"Sensor 1"_s);
        QVERIFY(s.Active);
        using enum EstadoDoPonto;
        QCOMPARE(estadosDe(s), QList({Acima, Abaixo, Normal, Normal, Abaixo, Normal}));
        QCOMPARE(rotulosDe(s), QStringList({u"!"_s, u" "_s, u" "_s, u" "_s, u" "_s, u" "_s}));
        QCOMPARE(c.Series(1).y(), (std::vector<double>{30, 30, 30}));
        QCOMPARE(c.Series(2).y(), (std::vector<double>{5, 5, 5, 4.5}));
        QVERIFY(c.Series(1).Color == cores::maximo && c.Series(2).Color == cores::minimo);
        for (int i = 0; i < 3; ++i)
            QCOMPARE(c.Series(i).Name.right(16), id(1));
        QCOMPARE(g.media(), u"Média = 35,68 °C"_s);
        QVERIFY(!g.visivel(u"PictOpccoes"_s));
        QVERIFY(c.isVisible());
        QVERIFY(!g.visivel(u"TChartBackGround"_s));
        QVERIFY(g.principal.isEnabled());
        QVERIFY(g.permitido(u"cmdImprimir"_s));
        QVERIFY(!registoForms().form(u"frmEsperaPraCriarGrafico"_s));
    }

    void variosSensores() {
        const Instalada inst;
        inst.leituras(u"Temperaturas"_s, id(1), {{dia + u"10:00:00"_s, 10.0, u"30XXXcinco"_s, u"x"_s}});
        inst.leituras(u"Temperaturas"_s, id(3), {{dia + u"10:00:00"_s, 40.0, u"30XXX5"_s}});
        const Grafico g;
        g.carregar({1, 2, 3}); // the second one has no readings: no weight, but its colour is used up
        TChart &c = g.chart();
        QCOMPARE(c.SeriesCount(), 6);
        for (int i = 0; i < 3; ++i) {
            QVERIFY(!c.Series(i).Active);
            QCOMPARE(c.Series(i).Count(), 0);
            QCOMPARE(c.Series(3 + i).Name, QString(u'A' + id(i + 1)));
            QVERIFY(c.Series(3 + i).Active);
        }
        QCOMPARE(c.Series(3).Color, quint32(255));
        QCOMPARE(c.Series(3).PointLabel(0), u"!"_s);
        QCOMPARE(c.Series(4).Count(), 0);
        QCOMPARE(c.Series(5).Color, quint32(65535));
        QCOMPARE(estadosDe(c.Series(5)), QList{EstadoDoPonto::Normal}); // no alarms here
        QCOMPARE(g.media(), u"Média = 25 °C"_s);
        inst.executar(u"UPDATE Temperaturas SET Temperatura = -10 WHERE Temperatura = 40"_s);
        g.carregar({1, 2, 3}); // what they come to together is shown also when it is 0
        QCOMPARE(g.media(), u"Média = 0 °C"_s);
    }

    void dezasseteSensores() {
        const Instalada inst(17);
        QList<int> todos;
        for (int n = 1; n <= 17; ++n)
            todos.append(n);
        const Grafico g;
        g.carregar(todos);
        QCOMPARE(g.chart().Series(3 + 15).Color, quint32(9408399));
        QCOMPARE(g.chart().Series(3 + 16).Color, quint32(255));
    }

    void nadaADesenhar_data() {
        const Tabela<int, QString> caso("pontos", "aviso"); // all of them "ND"
        caso("no readings", 0, u"Não há leituras neste intervalo."_s);
        caso("readings without a value", 2, u"As leituras deste intervalo não têm valor."_s);
    }

    // The axes stay, and the one of time shows the day that was asked for. What is in no file and on no paper cannot be
    // handed on.
    void nadaADesenhar() {
        QFETCH(int, pontos);
        const Instalada inst;
        for (int i = 0; i < pontos; ++i)
            inst.leituras(u"Temperaturas"_s, id(1), {{dia + u"10:00:0%1"_s.arg(i), u"ND"_s, u"30XXX5"_s}});
        const Grafico g;
        g.carregar({1});
        QCOMPARE(g.media(), QString());
        QCOMPARE(g.chart().Series(0).Count(), pontos);
        QCOMPARE(g.chart().MaxXValue(), 0.0);
        QCOMPARE(g.chart().Left().Minimum, 1.0);
        QCOMPARE(g.chart().Left().Maximum, 40.0);
        QVERIFY(g.chart().Bottom().Minimum > 0);
        QCOMPARE(g.chart().Bottom().Maximum - g.chart().Bottom().Minimum, 86399.0);
        QVERIFY(g.principal.isEnabled());
        QTEST(g.chart().aviso(), "aviso");
        QTEST(g.chart().accessibleDescription(), "aviso");
        for (const QString &botao : {u"cmdImprimir"_s, u"cmdExport"_s})
            QCOMPARE(g.permitido(botao), pontos > 0);
        inst.leituras(u"Temperaturas"_s, id(2), {{dia + u"10:00:00"_s, 4}});
        g.carregar({2});
        QCOMPARE(g.chart().aviso(), QString());
        QVERIFY(g.permitido(u"cmdExport"_s));
    }

    void eixos_data() {
        const Tabela<QString, QString, double, double> caso("form", "tipo", "minimo", "maximo");
        caso("limits included", graficoTemp, u"P 1250C"_s, 5.0 - 4, 30.0 + 4);
        caso("humidity", u"frmGraficoPrincipalHumidade"_s, u"P 1250%"_s, 0.0, 100.0);
        caso("humidity pulled", u"frmGraficoPrincipalHumidadePull"_s, u"P 1250%"_s, 0.0, 100.0);
        caso("pressure", u"frmGraficoPrincipalPressao"_s, u"K"_s, 1.0, 34.0);
    }

    void eixos() {
        QFETCH(QString, form);
        QFETCH(QString, tipo);
        const Instalada inst(1, tipo);
        const MembroGrafico &membro = *membroGrafico(form);
        inst.leituras(membro.tabela.nome.toString(), id(1), dia + u"10:00:00"_s, 60, {20, 22}, u"30XXX5"_s);
        const Grafico g(form);
        g.carregar({1});
        QTEST(g.chart().Left().Minimum, "minimo");
        QTEST(g.chart().Left().Maximum, "maximo");
        QVERIFY(g.chart().Bottom().Visible);
        QCOMPARE(g.chart().Bottom().Maximum - g.chart().Bottom().Minimum, 60.0);
        QCOMPARE(g.chart().Bottom().Increment, 60.0);
        QCOMPARE(g.media(), u"Média = 21"_s + membro.unidade);
    }

    // Times before the origin of the axis are like any other.
    void antesDe1970() {
        const Instalada inst;
        inst.leituras(u"Temperaturas"_s, id(1),
                      {{u"1969-12-31 23:00:00"_s, 20.0, u"30XXX5"_s}, {u"1970-01-01 00:00:00"_s, 22.0, u"30XXX5"_s}});
        const Grafico g;
        controlo<QDateEdit>(g.form, u"DTPdataInicio"_s)->setDate(QDate(1969, 12, 1));
        g.carregar({1});
        QCOMPARE(g.chart().Bottom().Minimum, -3600.0);
        QCOMPARE(g.chart().Bottom().Maximum, 0.0);
        QCOMPARE(g.chart().Left().Maximum, 34.0);
        QCOMPARE(g.chart().aviso(), QString());
    }

    void actualizarGrafico() {
        const Instalada inst;
        const Grafico g;
        qobject_cast<FormGrafico *>(g.form)->ActualizarGrafico();
        QCOMPARE(g.chart().Left().Minimum, 0.0);
        modINI::SaveSetting(u"Vistrel"_s, u"GRAFICOPRINCIPAL"_s, u"LimitesTemperaturasMin"_s, u"-20,5"_s);
        qobject_cast<FormGrafico *>(g.form)->ActualizarGrafico();
        QCOMPARE(g.chart().Left().Minimum, -20.5);
        QCOMPARE(g.chart().Left().Increment, 1.0);
    }

    void recarregar() {
        const Instalada inst;
        inst.leituras(u"Temperaturas"_s, id(1), {{dia + u"10:00:00"_s, 10.0, u"30XXX5"_s}});
        const Grafico g;
        g.carregar({1});
        inst.leituras(u"Temperaturas"_s, id(1), {{dia + u"10:05:00"_s, 20.0, u"30XXX5"_s}});
        g.carregar({1}); // read afresh
        QCOMPARE(g.chart().Series(0).Count(), 2);
        g.carregar({1, 2});
        QCOMPARE(g.chart().Series(0).Count(), 0);
        QCOMPARE(g.chart().Series(0).Name, u"A1"_s);
        QCOMPARE(g.chart().Series(3).Count(), 2);
        g.carregar({1}); // and back to the three that stand
        QCOMPARE(g.chart().SeriesCount(), 3);
        inst.executar(u"UPDATE Temperaturas SET Temperatura = -20 WHERE Temperatura = 10"_s);
        g.carregar({1});
        QCOMPARE(g.media(), QString()); // of one sensor, exactly nought is not shown
    }

    void fecharDuranteCarga() {
        const Instalada inst;
        encher(inst);
        const Grafico g;
        bool espera = false;
        bool desactivada = false;
        aMeio(g, [&] {
            espera = registoForms().form(u"frmEsperaPraCriarGrafico"_s) != nullptr;
            desactivada = !g.principal.isEnabled();
            delete g.form;
        });
        g.carregar({1});
        QVERIFY(g.form.isNull());
        QVERIFY(espera && desactivada);
        QVERIFY(g.principal.isEnabled());
        QVERIFY(!registoForms().form(u"frmEsperaPraCriarGrafico"_s));
    }

    void cancelarCarga() {
        const Instalada inst;
        encher(inst);
        const Grafico g;
        bool chegou = false;
        aMeio(g, [&] {
            chegou = true;
            QTest::keyClick(registoForms().form(u"frmEsperaPraCriarGrafico"_s), Qt::Key_Escape);
        });
        g.carregar({1});
        QVERIFY(chegou);
        QCOMPARE(g.chart().Series(0).Count(), 0); // no part of a range is shown as the whole
        QCOMPARE(g.media(), QString());
        QVERIFY(!g.permitido(u"cmdImprimir"_s));
        QVERIFY(g.principal.isEnabled());
        QVERIFY(g.visivel(u"PictOpccoes"_s));
        QVERIFY(g.chart().isVisible());
        g.carregar({2}); // and it works again
        QVERIFY(!g.visivel(u"PictOpccoes"_s));
    }

    void falhas_data() {
        const Tabela<QString, QString, int, QString> caso("estrago", "relato", "pontos", "media");
        const QString qual =
            u"de fora: 1. O primeiro: tabela Temperaturas, sensor %1, data 2024-03-15 10:04:00, \"%2\""_s;
        caso("a limit that is none",
             u"UPDATE Temperaturas SET Observacoes = 'trintaXXX5' WHERE %1 = 5"_s.arg(dialecto::ordem),
             qual.arg(id(1), u"trintaXXX5"_s), 5, u"Média = 30 °C"_s);
        caso("a value that is none", u"UPDATE Temperaturas SET Temperatura = 'abc' WHERE %1 = 5"_s.arg(dialecto::ordem),
             qual.arg(id(1), u"abc"_s), 4, u"Média = 25 °C"_s);
        caso("no table", u"DROP TABLE Temperaturas"_s, u"Temperaturas"_s, 0, {});
    }

    // What can be read stays, the failure is told once, everything works again.
    void falhas() {
        QFETCH(QString, estrago);
        QFETCH(QString, relato);
        Instalada inst;
        inst.leituras(u"Temperaturas"_s, id(1), dia + u"10:00:00"_s, 60, {10, 20, 30, 40, 50}, u"60XXX5"_s);
        const Grafico g;
        inst.executar(estrago);
        inst.erros.esperar(relato);
        g.carregar({1});
        QCOMPARE(inst.erros.carregamentos, 1);
        QTEST(int(g.chart().Series(0).Count()), "pontos");
        QCOMPARE(g.chart().aviso(), g.chart().temDados() ? QString() : u"A carga falhou; nada foi desenhado."_s);
        QTEST(g.media(), "media");
        QVERIFY(g.chart().isVisible());
        QVERIFY(g.principal.isEnabled());
        QVERIFY(!registoForms().form(u"frmEsperaPraCriarGrafico"_s));
    }

    void tamanhoMinimo() {
        const Instalada inst;
        const Grafico g;
        QCOMPARE(g.form->size(), QSize(700, 441)); // 10500 by 6615 twips
        g.form->resize(900, 700);
        QCOMPARE(g.form->size(), QSize(900, 700));
        g.form->resize(900, 430);
        QVERIFY(utilizador::esperar([&] { return g.form->size() == QSize(700, 441); }));
    }
};

QTEST_MAIN(tst_grafico)
#include "tst_grafico.moc"
