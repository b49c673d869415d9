// Histograms and charts, their export and their printed pages, worked as a user works them.
#include "tests/cenaSaidas.h"
#include "views/forms/formVista.h"

class TesteSaidas : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() {
        QVERIFY2(!QStandardPaths::findExecutable(u"pdftotext"_s).isEmpty(), "pdftotext (poppler-utils) is missing");
    }

    // The limits are those of the first record stored of the last sensor chosen; later ones count nothing. What cannot
    // be read makes no bar and moves no bound.
    void histograma() {
        Cena c(u"frmGraficoPrincipalHistogramaTemp"_s);
        c.leituras(temperaturas, id(1), {{u"2024-03-15 01:00:00"_s, 4, u"99XXX98"_s}, {u"2024-03-15 02:00:00"_s, 5}});
        c.leituras(temperaturas, id(2),
                   {{u"2023-01-01 00:00:00"_s, 1, u" 7 XXX 4,2 "_s},
                    {u"2024-03-15 03:00:00"_s, u"ND"_s, u"1XXX0"_s},
                    {u"2024-03-15 04:00:00"_s, u"7,5"_s, QVariant()},
                    {u"2024-03-15 05:00:00"_s, u"abc"_s},
                    {u"2024-03-15 06:00:00"_s, HUGE_VAL}});
        c.abrir(2);
        c.erros.esperar(
            u"de fora: 2. O primeiro: tabela Temperaturas, sensor %1, data 2024-03-15 05:00:00, \"abc\""_s.arg(id(2)));
        controlo<QComboBox>(c.form, u"cboIntervaloHistograma"_s)->setCurrentText(u"1,0"_s);
        c.confirmar();
        const TSerie &barras = c.chart().Series(0);
        QCOMPARE(barras.Count(), 2);
        QCOMPARE(barras.PointLabel(0), u"4 <> 5"_s);
        QCOMPARE(barras.YValue(0), 2.0);
        QCOMPARE(barras.estado(0), EstadoDoPonto::Abaixo);
        QCOMPARE(barras.PointLabel(1), u"7,1 <> 8"_s);
        QCOMPARE(barras.estado(1), EstadoDoPonto::Acima);
        QCOMPARE(c.legenda(u"lblTotal"_s), u"N° de Leituras = 3"_s);
        QVERIFY(qAbs(c.chart().Left().Maximum - 2.2) < 1e-9);
        QCOMPARE(modINI::GetSetting(u"Vistrel"_s, u"frmGraficoPrincipalHistogramaTemp"_s, u"Hist"_s), u"1,0"_s);
        clicar(c.form, u"cmdImprimir"_s);
        c.conferirImpresso(u"DataReportHistogramaPrincipal"_s);
    }

    // They make no bar and move no bound.
    void histogramaComIlegiveis() {
        Cena c(u"frmGraficoPrincipalHistogramaTemp"_s);
        c.leituras(temperaturas, id(1),
                   {{u"2024-03-15 01:00:00"_s, 4, u"7XXXdois"_s},
                    {u"2024-03-15 02:00:00"_s, u"abc"_s},
                    {u"2024-03-15 03:00:00"_s, HUGE_VAL},
                    {u"2024-03-15 04:00:00"_s, 5}});
        c.abrir(1);
        controlo<QComboBox>(c.form, u"cboIntervaloHistograma"_s)->setCurrentText(u"1,0"_s);
        c.erros.esperar(
            u"de fora: 3. O primeiro: tabela Temperaturas, sensor %1, data 2024-03-15 01:00:00, \"7XXXdois\""_s.arg(
                id(1)));
        c.confirmar();
        QCOMPARE(c.chart().Series(0).Count(), 1);
        QCOMPARE(c.chart().Series(0).YValue(0), 2.0);
    }

    void histogramaSemBarras_data() {
        const Tabela<QList<Instalacao::Leitura>, QString> caso("leituras", "aviso");
        caso("none", {}, u"Não há leituras neste intervalo."_s);
        caso("above a lone minimum", {{u"2024-03-15 01:00:00"_s, 50, u"NAXXX5"_s}, {u"2024-03-15 02:00:00"_s, u"ND"_s}},
             u"Nenhuma das leituras deste intervalo (2) cabe numa barra."_s);
    }
    // It says why it is empty, and hands nothing on.
    void histogramaSemBarras() {
        QFETCH(const QList<Instalacao::Leitura>, leituras);
        Cena c(u"frmGraficoHumidadeHistograma"_s, u"P 1250%"_s);
        c.leituras(u"Humidade"_s, id(1), leituras);
        c.abrir(1);
        c.confirmar();
        QCOMPARE(c.chart().Series(0).Count(), 0);
        QCOMPARE(c.legenda(u"lblTotal"_s), QString());
        QTEST(c.chart().aviso(), "aviso");
        QCOMPARE(c.chart().rodape(), QString());
        for (const QString &botao : {u"cmdImprimir"_s, u"cmdJPG"_s})
            QVERIFY(!c.permitido(botao));
    }

    void intervaloRecusado_data() {
        const Tabela<QString, QString> caso("intervalo", "relato");
        caso("none", u"0"_s, u"Intervalo do histograma inválido"_s);
        caso("bounds would meet", u"0,1"_s, u"O intervalo 0,1 é demasiado pequeno; o menor que serve é 0,11."_s);
        caso("bounds would pass", u"0.05"_s, u"o menor que serve é 0,11."_s);
    }
    // What is drawn stays, and so does the width of the settings.
    void intervaloRecusado() {
        QFETCH(const QString, intervalo);
        QFETCH(const QString, relato);
        Cena c(u"frmGraficoPrincipalHistogramaTemp"_s);
        c.leituras(temperaturas, id(1), u"2024-03-15 00:00:00"_s, 60, {4, 4.1, 4.25, 5});
        c.abrir(1);
        auto *combo = controlo<QComboBox>(c.form, u"cboIntervaloHistograma"_s);
        combo->setCurrentText(u"0,11"_s); // works
        c.confirmar();
        QCOMPARE(c.chart().Series(0).Count(), 1);
        clicar(c.form, u"cmdOpccoes"_s);
        combo->setCurrentText(intervalo);
        c.erros.esperar(relato);
        c.confirmar();
        QVERIFY(c.principal.isEnabled());
        QCOMPARE(c.chart().Series(0).Count(), 1);
        QVERIFY(c.visivel(u"PictOpccoes"_s));
        QCOMPARE(modINI::GetSetting(u"Vistrel"_s, u"frmGraficoPrincipalHistogramaTemp"_s, u"Hist"_s), u"0,11"_s);
    }

    void limitesDoHistograma_data() {
        const Tabela<QVariant, QString, QString> caso("primeiros", "depois", "frase");
        const QString de = u"Cores pelos limites de Câmara \"1\"; fria: "_s;
        const QString desde = u", desde 01/02/2024 00:00:00."_s;
        const QString mudaram = u" Os limites mudaram dentro do intervalo escolhido."_s;
        caso("as they were", u"30XXX5"_s, u" 30,0 XXX5.0"_s, de + u"máximo 30, mínimo 5"_s + desde);
        caso("others", u"30XXX5"_s, u"30XXX6"_s, de + u"máximo 30, mínimo 5"_s + desde + mudaram);
        caso("none at first", {}, u"30XXXNA"_s, de + u"máximo NA, mínimo NA"_s + desde + mudaram);
        caso("what is none", u"30XXX5"_s, u"trintaXXX5"_s, de + u"máximo 30, mínimo 5"_s + desde);
    }
    // The limits that the colours follow, since when, and whether those of the range are others.
    void limitesDoHistograma() {
        QFETCH(const QVariant, primeiros);
        QFETCH(const QString, depois);
        Cena c(u"frmGraficoPrincipalHistogramaTemp"_s);
        c.leituras(temperaturas, id(1),
                   {{u"2024-02-01 00:00:00"_s, 4, primeiros}, {u"2024-03-15 02:00:00"_s, 7, depois}});
        c.abrir(1);
        c.confirmar();
        QTEST(c.chart().rodape(), "frase");
    }

    void exportarGrafico() {
        Cena c(u"frmGraficoPrincipalPressao"_s, u"K"_s);
        c.leituras(u"Pressao"_s, id(1), {{u"2024-03-15 01:00:00"_s, 101.3, u"105XXXNA"_s}});
        c.abrir(1);
        QVERIFY(!c.permitido(u"cmdExport"_s));
        c.confirmar();
        const QString csv = c.ficheiro(u"p.csv"_s);
        c.dialogos.responderGravar(csv, u"2024/3/15/GraphTemp12-00-00.csv"_s);
        // It says where the file is, and shows the folder.
        c.dialogos.premirBotao(u"Exportação concluida com sucesso\n\n%1 [Abrir pasta]"_s.arg(csv));
        c.form->findChild<QAction *>(u"mnuExportCSV"_s)->trigger();
        QCOMPARE(c.dialogos.pastas, QStringList{QFileInfo(csv).absolutePath()});
        QVERIFY(Instalacao::lerFicheiro(csv).startsWith(QByteArray("15/03/2024 01:00:00;" + id(1).toUtf8() + ';')));
        QVERIFY(Instalacao::lerFicheiro(csv).endsWith(";101,3;105;NA\r\n"));
        QCOMPARE(c.dialogos.ultimoFiltro, u"csv (*.csv)|*.csv"_s);
        // What cannot be written is said, twice as told: the failure and the outcome.
        c.dialogos.responderGravar(c.ficheiro(u"nao/ha.csv"_s));
        c.erros.esperar(u"ha.csv"_s);
        c.dialogos.esperarMensagem(u"Erro ao Exportar..."_s);
        c.form->findChild<QAction *>(u"mnuExportCSV"_s)->trigger();
        c.dialogos.responderGravar({}); // cancelled: nothing is said
        c.form->findChild<QAction *>(u"mnuExportCSV"_s)->trigger();

        const QString jpg = c.ficheiro(u"p.jpg"_s);
        c.dialogos.responderGravar(jpg, u"GraphTemp12-00-00.jpg"_s);
        c.dialogos.semProgramaDePastas = true;
        c.dialogos.premirBotao(jpg);
        c.dialogos.esperarMensagem(u"Não há programa que mostre a pasta"_s);
        c.form->findChild<QAction *>(u"mnuExportJPG"_s)->trigger();
        const QImage imagem(jpg);
        QCOMPARE(imagem.size(), QSize(1050, 506));
        QCOMPARE(imagem.pixelColor(2, 2), QColor(Qt::white));
        // The printed picture is the exported one, and its title tells of the zoom.
        utilizador::tecla(&c.chart(), Qt::Key_Plus);
        clicar(c.form, u"cmdImprimir"_s);
        JanelaRelatorio *janela = c.previsao(u"DataReportGraficoPrincipal"_s);
        QVERIFY(janela);
        const QImage impressa = janela->relatorio().Sections(u"Section2"_s)->controlo(u"imgChart"_s)->picture;
        QCOMPARE(impressa.size(), QSize(1050, 506));
        QCOMPARE(impressa.convertToFormat(QImage::Format_RGB32),
                 c.chart().imagem(1050, 506).convertToFormat(QImage::Format_RGB32));
        QImage trabalho;
        QVERIFY(trabalho.load(estado().PastaPrograma + u"/Teste.cap", "PNG"));
        const QString pdf = c.ficheiro(u"p.pdf"_s);
        c.dialogos.responderGravar(pdf);
        c.dialogos.esperarMensagem(pdf);
        janela->findChild<QAction *>(u"cmdPDF"_s)->trigger();
        QVERIFY(Instalacao::lerFicheiro(pdf).startsWith("%PDF"));
        c.conferirImpresso(u"DataReportGraficoPrincipal"_s);
    }

    void saidaDoQueSeVe_data() {
        const Tabela<QString, QString> caso("tabela", "relatorio");
        caso("frmGraficoPrincipalTemp", temperaturas, u"DataReportGraficoPrincipal"_s);
        caso("frmGraficoPrincipalHistogramaTemp", temperaturas, u"DataReportHistogramaPrincipal"_s);
        caso("frmListagemObservacoesTemp", temperaturas, u"DataReportListagemTemp"_s);
    }
    // Paper and files tell of what is drawn, whatever is chosen in the panel since.
    void saidaDoQueSeVe() {
        QFETCH(const QString, tabela);
        QFETCH(const QString, relatorio);
        const QString form = QString::fromLatin1(QTest::currentDataTag());
        Cena c(form);
        c.executar(u"INSERT INTO Poseidons (PoseidonIP, Nome, Mac) VALUES ('127.0.0.3', 'Outra', '00:0B')"_s);
        c.executar(u"UPDATE Sensores SET PoseidonIP = '2127.0.0.3' WHERE SensorID = ?"_s, {id(2)});
        c.leituras(tabela, id(1), {{u"2024-03-15 01:00:00"_s, 4}});
        c.leituras(tabela, id(2), {{u"2024-03-15 01:00:00"_s, 99}, {u"2024-03-15 02:00:00"_s, 99}});
        c.abrir(1);
        c.confirmar();
        clicar(c.form, u"cmdOpccoes"_s);
        clicar(c.form, u"cmdRemoverAll"_s);
        controlo<Grelha>(c.form, u"grdSensoresAll"_s)->setLinhaActual(0);
        clicar(c.form, u"cmdAdicionar"_s);
        QCOMPARE(controlo<Grelha>(c.form, u"grdSensoresSel"_s)->celula(0, 0), id(2));
        controlo<QDateEdit>(c.form, u"DTPdataInicio"_s)->setDate(QDate(2023, 1, 1));
        clicar(c.form, u"cmdImprimir"_s);
        JanelaRelatorio *janela = c.previsao(relatorio);
        QVERIFY(janela);
        const QString cabeca = janela->relatorio().Sections(u"Section4"_s)->controlo(u"lblDescricao"_s)->Caption;
        janela->close();
        QVERIFY2(cabeca.startsWith(u"Poseidon: 127.0.0.2 - Unidade"), qPrintable(cabeca));
        QVERIFY2(cabeca.endsWith(u" 15/03/2024 00:00:00 <> 15/03/2024 23:59:59"), qPrintable(cabeca));
        auto *exportar = c.form->findChild<QAction *>(u"mnuExportCSV"_s);
        if (!exportar)
            return;
        clicar(c.form, u"cmdRemoverAll"_s); // nothing chosen at all
        const QString csv = c.ficheiro(u"p.csv"_s);
        c.dialogos.responderGravar(csv);
        c.dialogos.esperarMensagem(csv);
        exportar->trigger();
        const QByteArray linhas = Instalacao::lerFicheiro(csv);
        QCOMPARE(linhas.count('\n'), 1);
        QVERIFY(linhas.startsWith(QByteArray("15/03/2024 01:00:00;" + id(1).toUtf8())));
        // Readings that have gone since make no file that is called a success.
        c.executar(u"DELETE FROM Temperaturas"_s);
        c.dialogos.responderGravar(csv);
        c.dialogos.esperarMensagem(u"Não há leituras neste intervalo."_s);
        exportar->trigger();
    }

    void lugarDaListagem_data() {
        const Tabela<QString> caso("lugar");
        const QString partilhado = u"frmListagemAlarmesMediasTemp"_s;
        for (const QString &form : {partilhado, u"frmListagemAlarmesPressao"_s, u"frmListagemAlarmesDPC"_s})
            caso(qPrintable(form), partilhado);
        caso("frmListagemAlarmesHum", u"frmListagemAlarmesHum"_s);
    }
    // The height comes back, the width is the design's; three listings share one place.
    void lugarDaListagem() {
        QFETCH(const QString, lugar);
        const QString form = QString::fromLatin1(QTest::currentDataTag());
        Cena c(form);
        modINI::SaveSetting(u"Vistrel"_s, u"FORMS"_s, lugar + u"HEIGHT", u"9000"_s);
        modINI::SaveSetting(u"Vistrel"_s, u"FORMS"_s, lugar + u"WIDTH", u"1500"_s);
        c.abrir(0);
        QCOMPARE(c.form->height(), 600);
        QVERIFY(c.form->width() >= 700);
        c.confirmar();
        QVERIFY(!c.permitido(u"cmdImprimir"_s)); // there is nothing to print
        c.form->close();
        QVERIFY(modINI::GetSetting(u"Vistrel"_s, u"FORMS"_s, lugar + u"WIDTH") != u"1500"_s);
        QCOMPARE(modINI::GetSetting(u"Vistrel"_s, u"FORMS"_s, form + u"TOP").isEmpty(), form != lugar);
    }
};

QTEST_MAIN(TesteSaidas)
#include "tst_saidas.moc"
