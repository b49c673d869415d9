#include "core/datas.h"
#include "core/modINI.h"
#include "platform/chart/TChart.h"
#include "tests/apoio/tabela.h"
#include "tests/bancada1921.h"

#include <QCheckBox>
#include <QDateEdit>

#include <cmath>

using simulador::Variante;

// Reading and programming a button through its form.
class tst_logger : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void programa() {
        Bancada b;
        b.programar({.intervalo = u"15"_s, .calibracao = u"-0,5"_s, .continuo = true});
        // The chip itself has the mission.
        QVERIFY(b.leitor.chip().missao());
        QCOMPARE(int(b.leitor.chip().ler(0x20D)), 15);
        QCOMPARE(int(b.leitor.chip().ler(0x20B)), 2 * 2 + 80);
        QCOMPARE(int(b.leitor.chip().ler(0x20C)), 2 * 8 + 80);
        QVERIFY(b.leitor.chip().ler(0x20E) & 0x08);
        // And the form has read it back.
        QVERIFY(b.visivel("FrameEstado"));
        QCOMPARE(b.etiqueta("lblDescricaoRegistador"), u"Registador Vacinas"_s);
        QCOMPARE(b.etiqueta("lblMissao"), u"Transporte Évora"_s);
        QCOMPARE(b.etiqueta("lblNumeroMissoes"), u"0001"_s);
        QCOMPARE(b.caixa("txtEstadoMissao"), u"Atraso Activo"_s);
        QCOMPARE(b.caixa("txtIntervalo"), u"15"_s);
        QCOMPARE(b.caixa("txtCicloContinuoLigado"), u"Sim"_s);
        QCOMPARE(b.caixa("txtRollOverExecuted"), u"Não"_s);
        QCOMPARE(b.caixa("txtLimiteMinimo"), u"2"_s);
        QCOMPARE(b.caixa("txtLimiteMaximo"), u"8"_s);
        QCOMPARE(b.caixa("txtAcertoTemp"), u"-0,5"_s);
        QVERIFY(b.form->windowTitle().startsWith(u"Registador -  "));
        QVERIFY(b.form->windowTitle().endsWith(u"21 ( DS1921G )"));
        QVERIFY(!b.permitido("lblAssistente") && !b.permitido("lblResultados") && !b.permitido("lblGrafico"));

        b.andar(40);
        b.clicar("cmdLer");
        QVERIFY(b.controlo("cmdLer")->hasFocus());
        QCOMPARE(b.caixa("txtEstadoMissao"), u"Activa"_s);
        QCOMPARE(b.caixa("txtInicioMissao"), u"02/03/2026 09:01:00"_s);
        QCOMPARE(b.caixa("txtDataPrevistaParaAcabar"), u"23/03/2026 17:01:00"_s); // 2048 quarters of an hour
        QCOMPARE(b.caixa("txtNleituras"), u"3"_s);
        QCOMPARE(b.lista("cboIntervaloLeitura"), u"15"_s);
        QCOMPARE(b.lista("cboCalibracao"), u"-0,5"_s);
    }

    void verificacoes_data() {
        const Tabela<QString, QString, QString, QString, QString> caso("registador", "missao", "minimo", "mensagem",
                                                                       "frame");
        caso("no logger", u"  "_s, u" "_s, u"20,0"_s, u"nome do registador"_s, u"FrameAssis(1)"_s);
        caso("no mission", u"r"_s, u"  "_s, u"20,0"_s, u"nome da missão"_s, u"FrameAssis(1)"_s);
        caso("limits crossed", u"r"_s, u"m"_s, u"8,5"_s, u"temperatura minima"_s, u"FrameAssis(4)"_s);
    }
    void verificacoes() {
        QFETCH(QString, registador);
        QFETCH(QString, missao);
        QFETCH(QString, minimo);
        QFETCH(QString, mensagem);
        QFETCH(QString, frame);
        Bancada b;
        b.instalacao.dialogos.esperarMensagem(mensagem);
        b.programar({.registador = registador, .missao = missao, .minimo = minimo});
        QCOMPARE(b.instalacao.dialogos.estilos.value(0), Dialogos::Estilo::Critico);
        QVERIFY(utilizador::controlo<QWidget>(b.form, frame)->isVisible());
        QVERIFY(b.permitido("cmdAvancar"));
        QVERIFY(!b.leitor.chip().missao());
        QCOMPARE(int(b.leitor.chip().ler(0x00)), 0); // no page was touched
    }

    // Clicked into and typed, one part after the other.
    void horaEscrita() {
        Bancada b;
        b.clicar("cmdLer");
        b.clicar("cmdAvancar");
        b.clicar("cmdAvancar");
        auto *hora = utilizador::controlo<QTimeEdit>(b.form, u"DTPhoraInicio"_s);
        QTest::mouseClick(hora->findChild<QLineEdit *>(), Qt::LeftButton, {}, QPoint(8, hora->height() / 2));
        QTest::keyClicks(hora, u"1130"_s);
        QCOMPARE(hora->time().toString(u"hh:mm"), u"11:30"_s);
        QCOMPARE(b.etiqueta("lblLabelMin"), u"150 minutos"_s);
    }

    void atraso() {
        Bancada b;
        b.clicar("cmdLer");
        const QDateTime inicio = estado().ambiente.agora().addSecs(120 * 60);
        utilizador::controlo<QDateEdit>(b.form, u"DTPdataInicio"_s)->setDate(inicio.date());
        utilizador::controlo<QTimeEdit>(b.form, u"DTPhoraInicio"_s)->setTime(inicio.time());
        QCOMPARE(b.etiqueta("lblLabelMin"), u"120 minutos"_s);
        b.programar();
        QCOMPARE(b.caixa("txtEstadoMissao"), u"Atraso Activo"_s);
        QCOMPARE(b.caixa("txtAtrasoMinutos"), u"120"_s);
        QCOMPARE(int(b.leitor.chip().ler(0x212)) | b.leitor.chip().ler(0x213) << 8, 120);
        // The start shown stays the same while the delay runs down.
        const QString mostrado = b.caixa("txtInicioMissao");
        b.andar(60);
        b.clicar("cmdLer");
        QCOMPARE(b.caixa("txtAtrasoMinutos"), u"60"_s);
        QCOMPARE(b.caixa("txtInicioMissao"), mostrado);
    }

    void navegacao() {
        Bancada b;
        QVERIFY(!b.permitido("lblAssistente") && !b.permitido("cmdConcluir") && b.visivel("FrameEstado"));
        b.clicar("cmdLer");
        QVERIFY(b.visivel("FrameAssis(0)"));
        QVERIFY(b.controlo("cmdAvancar")->hasFocus()); // not the tab that happens to come next
        QVERIFY(!b.permitido("cmdRetroceder"));
        for (int passo = 1; passo < 6; ++passo) {
            QTest::keyClick(b.form, Qt::Key_Return); // the keyboard goes on as the button does
            QVERIFY(utilizador::controlo<QWidget>(b.form, u"FrameAssis(%1)"_s.arg(passo))->isVisible());
            QVERIFY(b.permitido("cmdRetroceder"));
        }
        QVERIFY(!b.permitido("cmdAvancar"));
        QCOMPARE(b.etiqueta("lblDataAproximada"),
                 u"terça-feira, 3 de março de 2026 19:08:00"_s); // an interval of a minute
        b.clicar("cmdRetroceder");
        QVERIFY(b.permitido("cmdAvancar"));
        for (int passo = 4; passo > 0; --passo)
            b.clicar("cmdRetroceder");
        QVERIFY(!b.permitido("cmdRetroceder"));
        QTest::keyClick(b.form, Qt::Key_PageDown, Qt::ControlModifier); // over the tabs that cannot be used
        QVERIFY(b.visivel("FrameEstado"));
    }

    void escreveSoOQueCabe() {
        Bancada b;
        b.clicar("cmdLer");
        b.clicar("cmdAvancar");
        utilizador::escrever(b.form, u"txtDescricaoRegistador"_s, u"d'Água €1"_s);
        utilizador::escrever(b.form, u"txtDescricaoMissao"_s, u"d'Água €1"_s + QString(80, u'a'));
        QCOMPARE(b.caixa("txtDescricaoRegistador"), u"dÁgua 1"_s);
        QVERIFY(b.caixa("txtDescricaoMissao").startsWith(u"d'Água 1aaa"));
        QCOMPARE(b.caixa("txtDescricaoMissao").size(), 60);
    }

    void botaoPorEstrear() {
        Bancada b;
        b.clicar("cmdLer");
        QCOMPARE(b.etiqueta("lblDescricaoRegistador"), u"x"_s);
        QCOMPARE(b.etiqueta("lblMissao"), u"> Sem Missão Activa ..."_s);
        QCOMPARE(b.etiqueta("lblNumeroMissoes"), u"0000"_s);
        QCOMPARE(b.caixa("txtEstadoMissao"), u"Sem Missão"_s);
        QCOMPARE(b.caixa("txtAcertoTemp"), u"0"_s);
        QCOMPARE(b.lista("cboIntervaloLeitura"), u"1"_s);
        QVERIFY(b.visivel("frameAssistente"));
        QCOMPARE(b.linhasGuardadas(), 0);
    }

    // All that the button measured, as the chip's own memory holds it, with the calibration added.
    void descarrega_data() {
        const Tabela<int, QString, double, QString, QString> caso("variante", "calibracao", "acerto", "minimo",
                                                                  "maximo");
        caso("G", int(Variante::G), u"-0,3"_s, -0.3, u"2,0"_s, u"22,5"_s);
        caso("H", int(Variante::H), u"-0,125"_s, -0.125, u"17,0"_s, u"30,5"_s);
        caso("Z", int(Variante::Z), u"1,875"_s, 1.875, u"-2,0"_s, u"20,5"_s);
    }
    void descarrega() {
        QFETCH(int, variante);
        QFETCH(QString, calibracao);
        QFETCH(double, acerto);
        QFETCH(QString, minimo);
        QFETCH(QString, maximo);
        Bancada b{Variante(variante)};
        b.leitor.linha->temperatura = [](qint64 s) { return 18 + 9 * std::sin(double(s) / 3000); };
        b.programar({.intervalo = u"7"_s, .calibracao = calibracao, .minimo = minimo, .maximo = maximo});
        b.andar(7 * 300);
        b.clicar("cmdLerDados");
        const simulador::ChipDS1921 &chip = b.leitor.chip();
        const int quantas = int(chip.contador());
        QVERIFY(quantas >= 299);
        QCOMPARE(b.linhasGuardadas(), quantas);
        QCOMPARE(b.amostras()->linhas(), quantas);
        const QDateTime inicio(QDate(2026, 3, 2), QTime(9, 1), Qt::UTC);
        const double alto = QString(maximo).replace(u',', u'.').toDouble();
        const double baixo = QString(minimo).replace(u',', u'.').toDouble();
        for (int i = 0; i < quantas; ++i) {
            const double medida = simulador::grausDe(Variante(variante), chip.ler(0x1000 + i));
            const double t = std::round((medida + acerto) * 1000) / 1000;
            const QVariantList linha = b.instalacao.linha(
                u"SELECT Temperatura, Data, Alarm, Max, Min, flag FROM DS1921 ORDER BY Data LIMIT 1 OFFSET %1"_s.arg(
                    i));
            QCOMPARE(linha[0].toDouble(), t);
            QCOMPARE(linha[1].toString(), datas::textoBD(inicio.addSecs(420LL * i)));
            QCOMPARE(linha[2].toString(), t >= alto || t <= baixo ? u"TRUE"_s : u"FALSE"_s);
            QCOMPARE(linha.mid(3), (QVariantList{alto, baixo, u""_s}));
            QCOMPARE(b.amostras()->celula(i, 0).toInt(), i + 1);
            QCOMPARE(b.amostras()->celula(i, 1), datas::textoDataHora(inicio.addSecs(420LL * i)));
            QCOMPARE(b.amostras()->celula(i, 2), QString::number(t, 'f', 3).replace(u'.', u',') + u"°C");
        }
        QCOMPARE(
            b.instalacao.linha(u"SELECT LoggerID, Nomelogger, DescricaoMissao, NMissao, DataProg, DataFimMissao, Max, "
                               "Min, Flag, Calibracoes FROM DS1921head"_s),
            (QVariantList{b.um(u"SELECT DISTINCT LoggerID FROM DS1921"_s), u"Registador Vacinas"_s,
                          u"Transporte Évora"_s, u"0001"_s, u"2026-03-02 09:01:00"_s, u"2026-03-12 07:57:00"_s, alto,
                          baixo, u"NC"_s, calibracao}));
        QVERIFY(b.permitido("lblResultados") && b.permitido("lblGrafico") && b.permitido("cmdPararMissao"));
    }

    // Nothing is stored until samples were asked for once; from then on every read stores the header.
    void lerNaoGuarda() {
        Bancada b;
        b.programar();
        b.andar(30);
        b.clicar("cmdLer");
        QCOMPARE(b.um(u"SELECT COUNT(*) FROM DS1921head"_s).toInt(), 0);
        QVERIFY(!b.permitido("cmdPararMissao"));
        b.clicar("cmdLerDados");
        QCOMPARE(b.um(u"SELECT COUNT(*) FROM DS1921head"_s).toInt(), 1);
        b.instalacao.executar(u"DELETE FROM DS1921head"_s);
        delete b.form;
        b.abrir();
        b.clicar("cmdLer");
        QCOMPARE(b.um(u"SELECT COUNT(*) FROM DS1921head"_s).toInt(), 1);
    }

    void semLeituras() {
        Bancada b;
        b.programar();
        b.clicar("cmdLerDados");
        QCOMPARE(b.caixa("txtNleituras"), u"0"_s);
        QCOMPARE(b.linhasGuardadas(), 0);
        auto *etiqueta = utilizador::controlo<QLabel>(b.form, u"lblNleituras"_s);
        const auto vermelha = [&] { return etiqueta->palette().color(QPalette::WindowText) == QColor(255, 0, 0); };
        QVERIFY(utilizador::esperar(vermelha));
        QVERIFY(utilizador::esperar([&] { return !vermelha(); }));
        QVERIFY(b.permitido("cmdLer"));
    }

    void alarmes() {
        Bancada b;
        const QList<double> serie = {5, 9, 9.5, 8, 5, 1, 5, 8, 2};
        b.leitor.linha->temperatura = [serie, inicio = qint64(0)](qint64 s) mutable {
            inicio = inicio == 0 ? s / 60 : inicio;
            return serie.value((s / 60 - inicio) / 10, 5);
        };
        b.programar();
        b.andar(82);
        b.clicar("cmdLerDados");
        b.clicar("lblResultados");
        const auto cor = [](const Grelha *grelha, int linha) { // as it is painted
            return grelha->model()->index(linha, 0).data(Qt::BackgroundRole).value<QColor>().name();
        };
        QStringList sequencias;
        QStringList cores;
        for (int i = 0; i < b.alarmes()->linhas(); ++i) {
            sequencias.append(b.alarmes()->celula(i, 0));
            cores.append(cor(b.alarmes(), i));
        }
        const auto entre = [](const char *de, const char *ate) {
            return u"02/03/2026 %1:00 <> 02/03/2026 %2:00"_s.arg(QString::fromLatin1(de), QString::fromLatin1(ate));
        };
        // The low one at the end is still open, and listed all the same.
        QCOMPARE(sequencias, (QStringList{entre("09:11", "09:31"), entre("09:51", "09:51"), entre("10:11", "10:11"),
                                          entre("10:21", "10:21")}));
        QCOMPARE(cores, (QStringList{u"#ee9d89"_s, u"#7d8aaf"_s, u"#ee9d89"_s, u"#7d8aaf"_s}));
        QCOMPARE(cor(b.amostras(), 0), u"#fbf6ce"_s);
        QCOMPARE(cor(b.amostras(), 1), u"#e1ede2"_s);
        QCOMPARE(b.um(u"SELECT COUNT(*) FROM DS1921 WHERE Alarm = 'TRUE'"_s).toInt(), 6);
    }

    void grafico() {
        Bancada b{Variante::H};
        const QList<double> serie = {20.25, 30, 17};
        b.leitor.linha->temperatura = [serie, inicio = qint64(0)](qint64 s) mutable {
            inicio = inicio == 0 ? s / 60 : inicio;
            return serie.value((s / 60 - inicio) / 10, 20);
        };
        b.programar({.calibracao = u"0,125"_s, .minimo = u"17,5"_s, .maximo = u"30,0"_s});
        QVERIFY(!b.permitido("lblGrafico"));
        b.andar(22);
        b.clicar("cmdLerDados");
        b.clicar("lblResultados");
        b.clicar("cmdGrafico");
        QVERIFY(b.visivel("TChart1"));
        auto *chart = utilizador::controlo<TChart>(b.form, u"TChart1"_s);
        QCOMPARE(chart->Left().Title, u"Temperaturas ºC"_s);
        const TSerie &sensor = chart->Series(0);
        QCOMPARE(sensor.Count(), qsizetype(3));
        // One decimal of what was measured, and then the calibration.
        QCOMPARE(sensor.YValue(0), 20.3 + 0.125);
        QCOMPARE(sensor.YValue(1), 30.125);
        QCOMPARE(sensor.PointColor(0), sensor.Color);
        QCOMPARE(sensor.PointColor(1), 0xFFu);
        QCOMPARE(sensor.PointColor(2), 0xFF0000u);
        QCOMPARE(chart->Series(1).YValue(2), 30.0);
        QCOMPARE(chart->Series(2).YValue(0), 17.5);
        b.clicar("lblEstado");
        b.clicar("cmdLer"); // the grids are empty now
        QVERIFY(!b.permitido("lblGrafico") && !b.permitido("cmdGrafico"));
        QCOMPARE(chart->Series(0).Count(), qsizetype(0));
    }

    void numeracao() {
        Bancada b;
        b.clicar("cmdLer");
        b.programar();
        b.andar(30);
        b.clicar("cmdLerDados");
        const QString id = b.um(u"SELECT LoggerID FROM DS1921head"_s).toString();
        const auto seguinte = [&](const Bancada::Programa &programa) {
            b.instalacao.dialogos.responderPergunta(true, u"parar"_s);
            b.clicar("cmdPararMissao");
            b.programar(programa);
            b.andar(30);
            b.clicar("cmdLerDados");
            return b.etiqueta("lblNumeroMissoes");
        };
        QCOMPARE(seguinte({}), u"0002"_s);
        QCOMPARE(seguinte({.missao = u"Outra"_s}), u"0001"_s);
        b.instalacao.executar(u"INSERT INTO DS1921head (LoggerID, Nomelogger, DescricaoMissao, NMissao) VALUES (?, "
                              "'Registador Vacinas', 'Transporte Évora', '9999')"_s,
                              {id});
        QCOMPARE(seguinte({}), u"0001"_s);
    }

    void linguas() {
        Bancada b;
        delete b.form;
        b.instalacao.ficheiroLingua(u"EN"_s, {{u"DSfrmDS1921"_s, u"lblEstado.Caption"_s, u"State"_s},
                                              {u"DSfrmDS1921"_s, u"Message10"_s, u"Active"_s},
                                              {u"DSfrmDS1921"_s, u"NConf"_s, u"No"_s}});
        b.instalacao.usarLingua(u"EN"_s);
        b.instalacao.locale(u"en_US"_s);
        b.abrir();
        QCOMPARE(utilizador::controlo<QAbstractButton>(b.form, u"lblEstado"_s)->text(), u"State"_s);
        b.programar({.calibracao = u"-0.5"_s, .minimo = u"8.0"_s, .maximo = u"8.0"_s}); // equal limits pass
        b.andar(30);
        b.clicar("cmdLerDados");
        QCOMPARE(b.caixa("txtEstadoMissao"), u"Active"_s);
        QCOMPARE(b.caixa("txtRollOverExecuted"), u"No"_s);
        QCOMPARE(b.caixa("txtAcertoTemp"), u"-0.5"_s);
        QCOMPARE(b.lista("cboLimMax"), u"8.0"_s);
        QCOMPARE(b.um(u"SELECT DISTINCT Max FROM DS1921"_s).toDouble(), 8.0);
        QCOMPARE(b.um(u"SELECT DataProg FROM DS1921head"_s).toString(), u"2026-03-02 09:01:00"_s);
    }

    void lugarGuardado() {
        Bancada b;
        b.form->move(45, 30);
        b.form->close();
        QCOMPARE(modINI::GetSetting(u"Kelvark"_s, u"FORMS"_s, u"frmDS1921LEFT"_s), u"675"_s);
        QCOMPARE(modINI::GetSetting(u"Kelvark"_s, u"FORMS"_s, u"frmDS1921TOP"_s), u"450"_s);
        QCOMPARE(modINI::GetSetting(u"Vistrel"_s, u"FORMS"_s, u"frmDS1921TOP"_s), QString());
        b.abrir();
        QCOMPARE(b.form->pos(), QPoint(45, 30));
    }
};

QTEST_MAIN(tst_logger)
#include "tst_logger.moc"
