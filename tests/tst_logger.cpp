#include "core/datas.h"
#include "platform/chart/TChart.h"
#include "tests/bancada1921.h"

using simulador::Variante;

// Reading and programming a button through its form.
class tst_logger : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // The first fault is the one that is told.
    void verificacoes() {
        Bancada b;
        const struct {
            Programa programa;
            QString mensagem;
            const char *frame;
        } casos[] = {
            {{.registador = u"  "_s, .missao = u" "_s, .minimo = u"20,0"_s}, u"nome do registador"_s, "FrameAssis(1)"},
            {{.missao = u"  "_s, .minimo = u"20,0"_s}, u"nome da missão"_s, "FrameAssis(1)"},
            {{.minimo = u"8,5"_s}, u"temperatura minima"_s, "FrameAssis(4)"},
        };
        for (const auto &[programa, mensagem, frame] : casos) {
            b.instalacao.dialogos.esperarMensagem(mensagem);
            b.programar(programa);
            b.instalacao.verificar();
            QVERIFY(b.visivel(frame) && b.permitido("cmdAvancar"));
        }
        QCOMPARE(b.instalacao.dialogos.estilos, QList<Dialogos::Estilo>(3, Dialogos::Estilo::Critico));
        QVERIFY(!b.leitor.chip().missao());
        QCOMPARE(int(b.leitor.chip().ler(0x00)), 0); // no page was touched
    }

    // A new button, step by step.
    void assistente() {
        Bancada b;
        const quint8 deFabrica[] = {0xFF, 0xFF};
        QVERIFY(b.leitor.chip().copiar(0x20B, deFabrica));
        QVERIFY(!b.permitido("lblAssistente") && !b.permitido("cmdConcluir") && b.visivel("FrameEstado"));
        b.clicar("cmdLer");
        QCOMPARE(b.texto("lblDescricaoRegistador"), u"x"_s);
        QCOMPARE(b.texto("lblMissao"), u"> Sem Missão Activa ..."_s);
        QCOMPARE(b.texto("lblNumeroMissoes"), u"0000"_s);
        QCOMPARE(b.texto("txtEstadoMissao"), u"Sem Missão"_s);
        QCOMPARE(b.texto("txtAcertoTemp"), u"0"_s);
        QCOMPARE(b.texto("txtLimiteMinimo"), u"-40"_s);
        QCOMPARE(b.texto("txtLimiteMaximo"), u"87,5"_s);
        QCOMPARE(b.texto("cboIntervaloLeitura"), u"1"_s);
        QVERIFY(b.visivel("FrameAssis(0)") && !b.permitido("cmdRetroceder"));
        QVERIFY(b.controlo("cmdAvancar")->hasFocus()); // not the tab that happens to come next
        for (int passo = 1; passo < 6; ++passo) {
            QTest::keyClick(b.form, Qt::Key_Return); // the keyboard goes on as the button does
            QVERIFY(b.visivel(qPrintable(u"FrameAssis(%1)"_s.arg(passo))) && b.permitido("cmdRetroceder"));
            if (passo == 1) { // only what a record can hold
                b.escrever("txtDescricaoRegistador", u"d'Água €1"_s);
                QCOMPARE(b.texto("txtDescricaoRegistador"), u"dÁgua 1"_s);
                b.escrever("txtDescricaoMissao", u"d'Água €1"_s + QString(80, u'a'));
                QCOMPARE(b.texto("txtDescricaoMissao"), u"d'Água 1"_s + QString(52, u'a'));
            } else if (passo == 2) { // clicked into and typed, one part after the other
                auto *hora = utilizador::controlo<QTimeEdit>(b.form, u"DTPhoraInicio"_s);
                QTest::mouseClick(hora->findChild<QLineEdit *>(), Qt::LeftButton, {}, QPoint(8, hora->height() / 2));
                QTest::keyClicks(hora, u"1130"_s);
                QCOMPARE(b.texto("lblLabelMin"), u"150 minutos"_s);
            } else if (passo == 3) {
                utilizador::escolher(b.form, u"cboIntervaloLeitura"_s, u"15"_s);
                utilizador::escolher(b.form, u"cboCalibracao"_s, u"-0,5"_s);
            } else if (passo == 4) {
                utilizador::escolher(b.form, u"cboLimMin"_s, u"2,0"_s);
                utilizador::escolher(b.form, u"cboLimMax"_s, u"8,0"_s);
            }
        }
        QVERIFY(!b.permitido("cmdAvancar"));
        QCOMPARE(b.texto("lblDataAproximada"),
                 u"segunda-feira, 23 de março de 2026 19:30:00"_s); // 2048 quarters of an hour
        b.clicar("chkCicloContinuo");
        b.clicar("cmdRetroceder");
        QVERIFY(b.permitido("cmdAvancar"));
        for (int passo = 4; passo > 0; --passo)
            b.clicar("cmdRetroceder");
        QVERIFY(!b.permitido("cmdRetroceder"));
        QTest::keyClick(b.form, Qt::Key_PageDown, Qt::ControlModifier); // over the tabs that cannot be used
        QVERIFY(b.visivel("FrameEstado"));

        b.clicar("lblAssistente");
        b.clicar("cmdConcluir");
        QVERIFY(b.controlo("cmdLer")->hasFocus()); // and not a text to read
        // The form has read back what is on the button.
        QVERIFY(b.visivel("FrameEstado"));
        QCOMPARE(b.texto("lblDescricaoRegistador"), u"dÁgua 1"_s);
        QVERIFY(b.texto("lblMissao").startsWith(u"d'Água 1aaa"));
        QCOMPARE(b.texto("lblNumeroMissoes"), u"0001"_s);
        QCOMPARE(b.texto("txtEstadoMissao"), u"Atraso Activo"_s);
        QCOMPARE(b.texto("txtCicloContinuoLigado"), u"Sim"_s);
        QCOMPARE(b.texto("txtRollOverExecuted"), u"Não"_s);
        QCOMPARE(b.texto("txtLimiteMinimo"), u"2"_s);
        QCOMPARE(b.texto("txtLimiteMaximo"), u"8"_s);
        QCOMPARE(b.texto("txtAcertoTemp"), u"-0,5"_s);
        QVERIFY(b.form->windowTitle().startsWith(u"Registador -  "));
        QVERIFY(b.form->windowTitle().endsWith(u"21 ( DS1921G )"));
        QVERIFY(!b.permitido("lblAssistente") && !b.permitido("lblResultados") && !b.permitido("lblGrafico"));
        // The start shown stays the same while the delay runs down.
        const QString mostrado = b.texto("txtInicioMissao");
        b.andar(60);
        b.clicar("cmdLer");
        QCOMPARE(b.texto("txtAtrasoMinutos"), u"90"_s);
        QCOMPARE(b.texto("txtInicioMissao"), mostrado);
        b.andar(90 + 40);
        b.clicar("cmdLer");
        QCOMPARE(b.texto("txtEstadoMissao"), u"Activa"_s);
        QCOMPARE(b.texto("txtInicioMissao"), u"02/03/2026 11:31:00"_s);
        QCOMPARE(b.texto("txtDataPrevistaParaAcabar"), u"23/03/2026 19:31:00"_s);
        QCOMPARE(b.texto("txtNleituras"), u"3"_s);
        QCOMPARE(b.texto("cboIntervaloLeitura"), u"15"_s);
        QCOMPARE(b.texto("cboCalibracao"), u"-0,5"_s);
    }

    // Nothing is stored until samples were asked for once; from then on every read stores the header.
    void lerNaoGuarda() {
        Bancada b;
        b.programar();
        b.clicar("cmdLer");
        QVERIFY(b.controlo("cmdLer")->hasFocus());
        QCOMPARE(b.linhas(u"DS1921head"_s), 0);
        QVERIFY(!b.permitido("cmdPararMissao"));
        b.clicar("cmdLerDados");
        QCOMPARE(b.linhas(u"DS1921head"_s), 1);
        // There is no sample yet: the label says it.
        QCOMPARE(b.linhas(), 0);
        const auto vermelha = [&] {
            return b.controlo("lblNleituras")->palette().color(QPalette::WindowText) == QColor(255, 0, 0);
        };
        QVERIFY(utilizador::esperar(vermelha));
        QVERIFY(utilizador::esperar([&] { return !vermelha(); }));
        b.instalacao.executar(u"DELETE FROM DS1921head"_s);
        delete b.form;
        b.abrir();
        b.clicar("cmdLer");
        QCOMPARE(b.texto("txtDescricaoMissao"), u"Transporte Évora"_s);
        QCOMPARE(b.linhas(u"DS1921head"_s), 1);
    }

    // What the button measured, in the table, the grids and the chart.
    void resultados() {
        Bancada b{Variante::H};
        const QList<double> serie = {20.25, 31, 31.5, 30, 20, 17, 20, 30, 17.25};
        b.leitor.linha->temperatura = [serie, inicio = qint64(0)](qint64 s) mutable {
            inicio = inicio == 0 ? s / 60 : inicio;
            return serie.value((s / 60 - inicio) / 10, 20);
        };
        b.descarregar(82, {.calibracao = u"0,125"_s, .minimo = u"17,5"_s, .maximo = u"30,0"_s});
        QVERIFY(b.permitido("lblResultados") && b.permitido("lblGrafico") && b.permitido("cmdPararMissao"));
        QCOMPARE(b.linhas(), 9);
        QCOMPARE(b.amostras()->linhas(), 9);
        for (int i = 0; i < 9; ++i) {
            const QDateTime data(QDate(2026, 3, 2), QTime(9, 1).addSecs(600 * i), Qt::UTC);
            const double t = serie[i] + 0.125;
            QCOMPARE(b.instalacao.linha(u"SELECT Temperatura, Data, Alarm, Max, Min, flag FROM DS1921 ORDER BY Data "
                                        "LIMIT 1 OFFSET %1"_s.arg(i)),
                     (QVariantList{t, datas::textoBD(data), t >= 30 || t <= 17.5 ? u"TRUE"_s : u"FALSE"_s, 30, 17.5,
                                   u""_s}));
            QCOMPARE(b.amostras()->celula(i, 0).toInt(), i + 1);
            QCOMPARE(b.amostras()->celula(i, 1), datas::textoDataHora(data));
            QCOMPARE(b.amostras()->celula(i, 2), QString::number(t, 'f', 3).replace(u'.', u',') + u"°C");
        }
        QCOMPARE(
            b.instalacao.linha(u"SELECT LoggerID, Nomelogger, DescricaoMissao, NMissao, DataProg, DataFimMissao, Max, "
                               "Min, Flag, Calibracoes FROM DS1921head"_s),
            (QVariantList{b.um(u"SELECT DISTINCT LoggerID FROM DS1921"_s), u"Registador Vacinas"_s,
                          u"Transporte Évora"_s, u"0001"_s, u"2026-03-02 09:01:00"_s, u"2026-03-16 14:21:00"_s, 30,
                          17.5, u"NC"_s, u"0,125"_s}));
        b.clicar("lblResultados");
        const auto cor = [](const Grelha *grelha, int linha) { // as it is painted
            return grelha->model()->index(linha, 0).data(Qt::BackgroundRole).value<QColor>().name();
        };
        auto *alarmes = utilizador::controlo<Grelha>(b.form, u"grdAlarmes"_s);
        QStringList sequencias;
        for (int i = 0; i < alarmes->linhas(); ++i)
            sequencias.append(alarmes->celula(i, 0) + u' ' + cor(alarmes, i));
        const QString alto = u" #ee9d89"_s, baixo = u" #7d8aaf"_s;
        // The low one at the end is still open, and listed all the same.
        QCOMPARE(sequencias, (QStringList{u"02/03/2026 09:11:00 <> 02/03/2026 09:31:00"_s + alto,
                                          u"02/03/2026 09:51:00 <> 02/03/2026 09:51:00"_s + baixo,
                                          u"02/03/2026 10:11:00 <> 02/03/2026 10:11:00"_s + alto,
                                          u"02/03/2026 10:21:00 <> 02/03/2026 10:21:00"_s + baixo}));
        QCOMPARE(cor(b.amostras(), 0), u"#fbf6ce"_s);
        QCOMPARE(cor(b.amostras(), 1), u"#e1ede2"_s);

        b.clicar("cmdGrafico");
        QVERIFY(b.visivel("TChart1"));
        auto *chart = utilizador::controlo<TChart>(b.form, u"TChart1"_s);
        QCOMPARE(chart->Left().Title, u"Temperaturas ºC"_s);
        const TSerie &sensor = chart->Series(0);
        QCOMPARE(sensor.Count(), qsizetype(9));
        // One decimal of what was measured, and then the calibration.
        QCOMPARE(sensor.YValue(0), 20.3 + 0.125);
        QCOMPARE(sensor.estado(0), EstadoDoPonto::Normal);
        QCOMPARE(sensor.estado(1), EstadoDoPonto::Acima);
        QCOMPARE(sensor.estado(5), EstadoDoPonto::Abaixo);
        QCOMPARE(chart->Series(1).YValue(2), 30.0);
        QCOMPARE(chart->Series(2).YValue(0), 17.5);
        b.clicar("lblEstado");
        b.clicar("cmdLer"); // the grids are empty now
        QVERIFY(!b.permitido("lblGrafico") && !b.permitido("cmdGrafico"));
        QCOMPARE(sensor.Count(), qsizetype(0));
    }

    void lugarGuardado() {
        Bancada b;
        b.form->move(45, 30);
        b.form->close();
        QCOMPARE(modINI::GetSetting(u"Kelvark"_s, u"FORMS"_s, u"frmDS1921LEFT"_s), u"675"_s);
        QCOMPARE(modINI::GetSetting(u"Kelvark"_s, u"FORMS"_s, u"frmDS1921TOP"_s), u"450"_s);
        b.abrir();
        QCOMPARE(b.form->pos(), QPoint(45, 30));
    }
};

QTEST_MAIN(tst_logger)
#include "tst_logger.moc"
