// Listings and their printed pages, worked as a user works them.
#include "core/datas.h"
#include "tests/apoio/discoCheio.h"
#include "tests/cenaSaidas.h"
#include "views/forms/desenhosDeRelatorios.h"
#include "views/impressao.h"

#include <QPrintDialog>
#include <QPrinter>
#include <QScrollArea>

class TesteImpressao : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() {
        QVERIFY2(!QStandardPaths::findExecutable(u"pdftotext"_s).isEmpty(), "pdftotext (poppler-utils) is missing");
    }

    void listagem() {
        Cena c(u"frmListagemObservacoesMedias"_s);
        c.leituras(
            u"Medias"_s, id(1),
            {{u"2024-03-15 01:00:00"_s, 4.25, QVariant(), u"porta\naberta"_s}, {u"2024-03-15 03:00:00"_s, u"ND"_s}});
        c.leituras(u"Medias"_s, id(2), {{u"2024-03-15 02:00:00"_s, -18.5, QVariant(), u""_s}});
        c.executar(u"UPDATE Medias SET NomeSensor = 'Câmara'"_s);
        c.abrir(2);
        c.confirmar();
        QCOMPARE(c.grelha().model()->rowCount(), 3);
        QVERIFY(c.grelha().isColumnHidden(0));
        QCOMPARE(c.celula(0, 3), u"ND"_s);
        QCOMPARE(c.celula(1, 3), u"-18,50"_s); // averages have two decimals
        QCOMPARE(c.celula(2, 2), u"15/03/2024 01:00:00"_s);
        // A note written in the grid is stored as it is.
        const QModelIndex nota = c.grelha().model()->index(1, 4);
        QVERIFY(c.grelha().model()->setData(nota, u"  d'água "_s, Qt::EditRole));
        QCOMPARE(c.linha(u"SELECT flag FROM Medias WHERE Temperatura = -18.5"_s), QVariantList({u"  d'água "_s}));
        // Copying gives a tabbed table of what is seen.
        c.grelha().setCurrentIndex(c.grelha().model()->index(2, 1));
        c.grelha().selectRow(2);
        utilizador::tecla(&c.grelha(), Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QApplication::clipboard()->text(), u"Câmara\t15/03/2024 01:00:00\t4,25\t\"porta\naberta\"\n"_s);
        clicar(c.form, u"cmdImprimir"_s);
        // An open preview keeps nobody from writing, and goes on showing what it was made of.
        QVERIFY(c.grelha().model()->setData(nota, u"depois"_s, Qt::EditRole));
        QCOMPARE(c.linha(u"SELECT flag FROM Medias WHERE Temperatura = -18.5"_s), QVariantList({u"depois"_s}));
        c.conferirImpresso(u"DataReportListagemMedias"_s);
    }

    // The text that could not be stored stays in its box until the user gives it up; then the row is shown as it is.
    void notaRecusadaNaGrelha() {
        Cena c(u"frmListagemObservacoesMedias"_s);
        c.leituras(u"Medias"_s, id(1), {{u"2024-03-15 01:00:00"_s, 4.25, {}, u"velha"_s}});
        c.abrir(1);
        c.confirmar();
        const QModelIndex nota = c.grelha().model()->index(0, 4);
        c.grelha().setCurrentIndex(nota);
        c.grelha().edit(nota);
        auto *caixa = c.grelha().findChild<QLineEdit *>();
        QVERIFY(caixa);
        QTest::keyClicks(caixa, u"nova"_s);
        c.executar(u"UPDATE Medias SET flag = 'do colega'"_s);
        for (const int tecla : {Qt::Key_Return, Qt::Key_Tab}) {
            c.dialogos.esperarMensagem(u"\"do colega\""_s);
            QTest::keyClick(caixa, Qt::Key(tecla));
            QCoreApplication::processEvents();
            c.verificar();
            QVERIFY(c.grelha().findChild<QLineEdit *>() == caixa && caixa->isVisible());
            QCOMPARE(caixa->text(), u"nova"_s);
        }
        QTest::keyClick(caixa, Qt::Key_Escape);
        QVERIFY(utilizador::esperar([&c] { return !c.grelha().findChild<QLineEdit *>(); }));
        QCOMPARE(c.celula(0, 4), u"do colega"_s);
        QCOMPARE(c.linha(u"SELECT flag FROM Medias"_s), QVariantList({u"do colega"_s}));
    }

    void listagemDaUnidade_data() {
        const Tabela<QString> caso("relatorio");
        caso("frmListagemObservacoesTemp", u"DataReportListagemTemp"_s);
        caso("frmListagemAlarmesMediasTemp", u"DataReportAlarmes"_s);
    }
    // Several sensors under the filter of a unit: its head, not only the dates, and those below where they do not fit.
    void listagemDaUnidade() {
        QFETCH(const QString, relatorio);
        Cena c(QString::fromLatin1(QTest::currentDataTag()));
        for (const auto &[data, leitura] :
             {std::pair{u"2024-03-15 01:00:00"_s, 31.5}, std::pair{u"2024-03-15 02:30:00"_s, 4.0}})
            c.executar(u"INSERT INTO Alarmes VALUES (?, 'Câmara', ?, 30, 5, ?)"_s, {id(1), data, leitura});
        c.leituras(temperaturas, id(1), {{u"2024-03-15 01:00:00"_s, u"ND"_s, {}, u"degelo"_s}});
        c.leituras(temperaturas, id(2), {{u"2024-03-15 02:00:00"_s, -4.25}});
        c.executar(u"UPDATE Temperaturas SET NomeSensor = 'Câmara; \"1\"'"_s);
        c.executar(u"UPDATE Poseidons SET Nome = 'Unidade do armazém do norte'"_s);
        c.abrir(0);
        c.filtrarUnidade();
        clicar(c.form, u"cmdAdicionarAll"_s);
        c.confirmar();
        QCOMPARE(c.grelha().model()->rowCount(), 2);
        clicar(c.form, u"cmdImprimir"_s);
        c.conferirImpresso(relatorio);
    }

    // Several pages: heads on each, every row once, long texts wrapped and whole.
    void paginas() {
        Cena c(u"frmListagemObservacoesTemp"_s);
        constexpr int linhas = 170;
        QList<Instalacao::Leitura> lista;
        const QString longa = u"princípio "_s + u"palavra "_s.repeated(60) + u"fim"_s;
        for (int i = 0; i < linhas; ++i)
            lista.append({datas::textoBD(datas::segundosDe(u"2024-03-15"_s) + i * 60), 1000 + i, QVariant(),
                          i == 50 ? longa : QString()});
        c.leituras(temperaturas, id(1), lista);
        c.abrir(1);
        c.confirmar();
        clicar(c.form, u"cmdImprimir"_s);
        const QString texto = c.textoImpresso(u"DataReportListagemTemp"_s);
        const qsizetype folhas = texto.count(u'\f');
        QVERIFY2(folhas >= 3 && folhas <= 5, qPrintable(QString::number(folhas)));
        QCOMPARE(texto.count(u"Data Hora"_s), folhas);
        QCOMPARE(texto.count(u"Poseidon: 127.0.0.2 - Unidade - 00:0A"_s), folhas);
        for (int i = 0; i < linhas; ++i)
            QCOMPARE(texto.count(QString::number(1000 + i)), 1);
        QCOMPARE(texto.count(u"palavra"_s), 60);
        QVERIFY(texto.contains(u"%1 / %1"_s.arg(folhas)));
    }

    // A record that is higher than a page goes on on the next one: every word once, the others whole. One of 100 KB
    // without a blank comes to an end too.
    void registoDeVariasPaginas() {
        Cena c(u"frmListagemObservacoesTemp"_s);
        QString longa;
        for (int i = 0; i < 3000; ++i)
            longa += u"w%1 "_s.arg(i, 4, 10, QChar(u'0'));
        c.leituras(temperaturas, id(1),
                   {{u"2024-03-15 01:00:00"_s, 7001, {}, u"a"_s},
                    {u"2024-03-15 02:00:00"_s, 7002, {}, longa},
                    {u"2024-03-15 03:00:00"_s, 7003, {}, u"b"_s}});
        c.abrir(1);
        c.confirmar();
        clicar(c.form, u"cmdImprimir"_s);
        const QString texto = c.textoImpresso(u"DataReportListagemTemp"_s);
        const qsizetype folhas = texto.count(u'\f');
        QVERIFY2(folhas >= 3 && folhas <= 9, qPrintable(QString::number(folhas)));
        for (const QString &palavra :
             longa.split(u' ', Qt::SkipEmptyParts) + QStringList{u"7001"_s, u"7002"_s, u"7003"_s})
            QVERIFY2(texto.count(palavra) == 1, qPrintable(palavra));
        QVERIFY(texto.indexOf(u"7003"_s) < texto.indexOf(u"w0000"_s));
        QVERIFY(texto.indexOf(u"w2999"_s) < texto.indexOf(u"7001"_s));

        c.executar(u"UPDATE Temperaturas SET flag = ?"_s, {QString(100'000, u'x')});
        clicar(c.form, u"cmdOpccoes"_s);
        c.confirmar();
        clicar(c.form, u"cmdImprimir"_s);
        QCOMPARE(c.textoImpresso(u"DataReportListagemTemp"_s).count(u'x'), 300'000);
    }

    // Its rows and its filter are those of the listing that was printed, whatever the user does meanwhile.
    void previsaoComConsultaPropria() {
        Cena c(u"frmListagemObservacoesTemp"_s);
        constexpr int linhas = 6000;
        c.leituras(temperaturas, id(1), u"2024-03-15 00:00:00"_s, 1, QList<double>(linhas, 4.5));
        c.executar(u"UPDATE Temperaturas SET flag = CASE WHEN %1 % 100 THEN '' ELSE 'nota' END"_s.arg(dialecto::ordem));
        c.abrir(1);
        c.confirmar();
        bool outra = false;
        QTimer::singleShot(0, &c.principal, [&] {
            clicar(c.form, u"cmdOpccoes"_s);
            controlo<QCheckBox>(c.form, u"chkObservacoesPreenchidas"_s)->setChecked(true);
            clicar(c.form, u"cmdConfirmar"_s);
            outra = c.previsao(u"DataReportListagemTemp"_s) != nullptr;
        });
        clicar(c.form, u"cmdImprimir"_s);
        QVERIFY(outra); // was still laid out
        QVERIFY(utilizador::esperar([&c] { return c.grelha().model()->rowCount() == linhas / 100; }));
        QCOMPARE(c.textoImpresso(u"DataReportListagemTemp"_s).count(u"4,5"_s), linhas);
    }

    void relatorioQueFalha() {
        struct Fonte : FonteDeRelatorio {
            QStringList campos() const override { return {u"Data"_s}; }
            qint64 total() const override { return 9; }
            bool seguinte() override { return ++linha < 3 ? true : throw Falha(5, u"no third line"_s); }
            QString texto(int) const override { return u"x"_s; }
            int linha = 0;
        };
        Instalacao i;
        auto relatorio = criarRelatorio(u"DataReportListagemTemp"_s);
        relatorio->setDataSource(std::make_unique<Fonte>());
        QPointer<JanelaRelatorio> janela = new JanelaRelatorio(std::move(relatorio), u"t"_s);
        i.erros.esperar(u"no third line"_s);
        QVERIFY(!janela->mostrar());
        QVERIFY(!janela || !janela->isVisible());
        QVERIFY(utilizador::esperar([&] { return janela.isNull(); }));
    }

    // The page is made to fit, the paper is the one that was asked for in the dialog.
    void papelDoDialogo() {
        Cena c(u"frmListagemObservacoesTemp"_s);
        c.leituras(temperaturas, id(1), {{u"2024-03-15 01:00:00"_s, 1001}});
        c.abrir(1);
        c.confirmar();
        clicar(c.form, u"cmdImprimir"_s);
        const QString pdf = c.ficheiro(u"a5.pdf"_s);
        QString oferecido;
        QTimer relogio;
        connect(&relogio, &QTimer::timeout, &relogio, [&] {
            auto *dialogo = qobject_cast<QPrintDialog *>(QApplication::activeModalWidget());
            if (!dialogo)
                return;
            relogio.stop();
            oferecido = dialogo->printer()->pageLayout().pageSize().key();
            dialogo->done(QDialog::Accepted);
            dialogo->printer()->setOutputFileName(pdf);
            dialogo->printer()->setPageSize(QPageSize(QPageSize::A5));
        });
        relogio.start(10);
        JanelaRelatorio *janela = c.previsao(u"DataReportListagemTemp"_s);
        c.dialogos.esperarMensagem(pdf);
        janela->findChild<QAction *>(u"cmdImprimir"_s)->trigger();
        QCOMPARE(oferecido, u"A4"_s);
        QProcess leitor;
        leitor.start(u"pdftotext"_s, {u"-bbox"_s, pdf, u"-"_s});
        leitor.waitForFinished();
        const QString caixas = QString::fromUtf8(leitor.readAllStandardOutput());
        QVERIFY2(caixas.contains(u"<page width=\"420"_s) || caixas.contains(u"<page width=\"419"_s),
                 qPrintable(caixas));
        QVERIFY(caixas.contains(u">1001<"_s));
        janela->close();
    }

    // The keys turn pages wherever the keyboard is, the scroll area included, and the usual one closes the window.
    void teclasDaPrevisao() {
        Cena c(u"frmListagemObservacoesTemp"_s);
        c.leituras(temperaturas, id(1), u"2024-03-15 00:00:00"_s, 60, QList<double>(300, 4.5));
        c.abrir(1);
        c.confirmar();
        clicar(c.form, u"cmdImprimir"_s);
        QPointer<JanelaRelatorio> janela = c.previsao(u"DataReportListagemTemp"_s);
        QVERIFY(QTest::qWaitForWindowActive(janela));
        auto *pagina = janela->findChild<QSpinBox *>(u"pagina"_s);
        auto *rolo = janela->findChild<QScrollArea *>();
        janela->findChild<QComboBox *>(u"zoom"_s)->setCurrentIndex(5); // larger than the window
        rolo->setFocus();
        const int ultima = pagina->maximum();
        QVERIFY(ultima > 2);
        for (const auto &[tecla, fica] :
             {std::pair(Qt::Key_PageDown, 2), {Qt::Key_End, ultima}, {Qt::Key_PageUp, ultima - 1}, {Qt::Key_Home, 1}}) {
            QTest::keyClick(rolo, tecla);
            QCOMPARE(pagina->value(), fica);
        }
        QTest::keyClick(rolo, Qt::Key_F4, Qt::ControlModifier);
        QVERIFY(utilizador::esperar([&] { return !janela; }));
    }

    // What a full disk takes of it does not replace the file that stood there.
    void pdfEmDiscoCheio() {
        Cena c(u"frmListagemObservacoesTemp"_s);
        c.leituras(temperaturas, id(1), u"2024-03-15 00:00:00"_s, 60, QList<double>(300, 4.5));
        c.abrir(1);
        c.confirmar();
        clicar(c.form, u"cmdImprimir"_s);
        const QString pdf = c.ficheiro(u"velho.pdf"_s);
        Instalacao::escreverFicheiro(pdf, "velho");
        c.dialogos.responderGravar(pdf, u"2024/3/15/Listagem de Descrições de Temperatura.pdf"_s);
        c.erros.esperar(u"velho.pdf"_s);
        {
            const DiscoCheio cheio(4000);
            c.previsao(u"DataReportListagemTemp"_s)->findChild<QAction *>(u"cmdPDF"_s)->trigger();
        }
        QCOMPARE(Instalacao::lerFicheiro(pdf), QByteArray("velho"));
    }

    void muitasLinhas() {
        Cena c(u"frmListagemObservacoesTemp"_s);
        c.leituras(temperaturas, id(1), u"2024-03-15 00:00:00"_s, 1, QList<double>(60000, 4.5));
        c.abrir(1);
        c.confirmar();
        c.grelha().selectAll();
        utilizador::tecla(&c.grelha(), Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QApplication::clipboard()->text().count(u'\n'), 60000);
        QAbstractItemView::EditTriggers durante = QAbstractItemView::AllEditTriggers;
        std::function<void(QAction *)> aMeio = [&](QAction *parar) {
            durante = c.grelha().editTriggers();
            parar->trigger();
        };
        QTimer atento;
        connect(&atento, &QTimer::timeout, &c.principal, [&] {
            const auto *janela = c.previsao(u"DataReportListagemTemp"_s);
            if (auto *parar = janela ? janela->findChild<QAction *>(u"cmdParar"_s) : nullptr)
                aMeio(parar);
        });
        atento.start(1);
        clicar(c.form, u"cmdImprimir"_s);
        QVERIFY(utilizador::esperar([&c] { return !c.previsao(u"DataReportListagemTemp"_s); }));
        QCOMPARE(durante, QAbstractItemView::NoEditTriggers); // no note under the open cursor
        QVERIFY(c.grelha().editTriggers().testFlag(QAbstractItemView::DoubleClicked));
        // Closed while its pages are made: the listing's end ends them.
        aMeio = [&c](QAction *) { delete c.form; };
        controlo<QPushButton>(c.form, u"cmdImprimir"_s)->click();
        QVERIFY(utilizador::esperar([&c] { return !c.previsao(u"DataReportListagemTemp"_s); }));
    }

    void alarmesVerificados() {
        Cena c(u"frmListagemAlarmesMask"_s);
        c.executar(u"INSERT INTO MaskUtilizadores VALUES (1, 'Ana')"_s);
        for (const QVariantList &v : {QVariantList{u"2024-03-15 01:02:03"_s, 1, u"127.0.0.2"_s, u"Unidade"_s},
                                      QVariantList{u"2024-03-15 02:00:00"_s, 9, u"127.0.0.3"_s, u"Outra"_s}})
            c.executar(u"INSERT INTO MaskListaAlarmes (DataI, VerefPor, IP, IP_Nome, Descricao) "
                       "VALUES (?, ?, ?, ?, 'porta')"_s,
                       v);
        c.abrir(0);
        auto *dispositivos = controlo<Grelha>(c.form, u"grdDispositivos"_s);
        QCOMPARE(dispositivos->celula(0, 0), u"-"_s);
        c.confirmar();
        QCOMPARE(c.grelha().model()->rowCount(), 2);
        QCOMPARE(c.celula(0, 3), QString()); // nobody of that number
        QCOMPARE(c.celula(0, 4), u"[Outra] > porta"_s);
        QCOMPARE(c.celula(1, 0), u"15-03-24 01:02:03"_s);
        QCOMPARE(c.celula(1, 3), u"Ana"_s);
        clicar(c.form, u"cmdOpccoes"_s);
        dispositivos->setLinhaActual(1);
        c.confirmar();
        QCOMPARE(c.grelha().model()->rowCount(), 1);
        QCOMPARE(c.celula(0, 4), u"porta"_s);
        clicar(c.form, u"cmdImprimir"_s);
        c.conferirImpresso(u"DataReportListagemAlarmesMask"_s);
    }

    void listaDeSensoresCortada() {
        const QList<impressao::Nomeado> poucos{{QString(700, u'a'), u"1"_s}};
        QCOMPARE(impressao::listaDeSensores(u"Sensores: "_s, poucos).size(), 714);
        const QList<impressao::Nomeado> muitos{{QString(712, u'a'), u"1"_s}};
        const QString cortada = impressao::listaDeSensores(u"Sensores: "_s, muitos);
        QCOMPARE(cortada.size(), 725);
        QVERIFY(cortada.endsWith(u"a ..."));
    }
};

QTEST_MAIN(TesteImpressao)
#include "tst_impressao.moc"
