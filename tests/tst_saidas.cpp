// Histograms, listings, export and printing, worked as a user works them.
#include "core/datas.h"
#include "tests/apoio/cenaVista.h"
#include "tests/apoio/discoCheio.h"
#include "tests/apoio/ouro.h"
#include "views/familiaHistogramas.h"
#include "views/familiaListagens.h"
#include "views/forms/desenhosDeRelatorios.h"
#include "views/forms/formVista.h"
#include "views/forms/registar.h"
#include "views/impressao.h"

#include <QPrintDialog>
#include <QPrinter>
#include <QScrollArea>

namespace {

QString id(int n) {
    return u"28A00000000000%1"_s.arg(n, 2, 10, QChar(u'0'));
}

// An installation with sensors and a view on it.
struct Cena : CenaVista {
    explicit Cena(const QString &nome, const QString &tipo = u"P 1250C"_s) : CenaVista(registarVistas), m_nome(nome) {
        sensor({id(1), u"Câmara \"1\"; fria"_s, tipo});
        sensor({id(2), u"Arca 2"_s, tipo});
        executar(u"INSERT INTO Poseidons (PoseidonIP, Nome, Mac) VALUES ('127.0.0.2', 'Unidade', '00:0A')"_s);
    }
    void abrir(int sensores) {
        Vista::abrir(m_nome);
        for (int i = 0; i < sensores; ++i)
            clicar(form, u"cmdAdicionar"_s);
    }
    // The sensors of the one unit.
    void filtrarUnidade() {
        clicar(form, u"cmdGrupos"_s);
        auto *grupos = controlo<Grelha>(form, u"grdGrupos"_s);
        QCOMPARE(grupos->celula(1, 0), u"#P#127.0.0.2"_s);
        grupos->setLinhaActual(1);
        QTest::keyClick(grupos, Qt::Key_Return);
    }
    // The text of the printed pages, as a reader of PDF files finds it.
    QString textoImpresso(const QString &relatorio) {
        QPointer<JanelaRelatorio> janela = previsao(relatorio);
        if (!janela)
            return u"no preview"_s;
        const QString pdf = ficheiro(relatorio + u".pdf");
        janela->gravarPDF(pdf);
        janela->close();
        QProcess leitor;
        leitor.start(u"pdftotext"_s, {u"-layout"_s, pdf, u"-"_s});
        leitor.waitForFinished();
        // A reader gives "fi" back as the one letter that was drawn. Page numbers come out with or without blanks round
        // the stroke, as the letters happen to lie.
        return QString::fromUtf8(leitor.readAllStandardOutput())
            .replace(u"\ufb01"_s, u"fi"_s)
            .replace(QRegularExpression(u" */ *"_s), u" / "_s);
    }
    // Against the report's golden file. Blanks between columns count as one gap: their number follows the fonts.
    QByteArray diferencaImpressa(const QString &relatorio) {
        QString texto = textoImpresso(relatorio);
        texto.replace(QRegularExpression(u" {2,}"_s), u"  "_s).replace(QRegularExpression(u"\\n{2,}"_s), u"\n"_s);
        return diferencaDoOuro(relatorio + u".txt", texto.toUtf8());
    }

private:
    QString m_nome;
};

const QString temperaturas = u"Temperaturas"_s;

} // namespace

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
        const QByteArray diferenca = c.diferencaImpressa(u"DataReportHistogramaPrincipal"_s);
        QVERIFY2(diferenca.isEmpty(), diferenca.constData());
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
        const QByteArray diferenca = c.diferencaImpressa(u"DataReportListagemMedias"_s);
        QVERIFY2(diferenca.isEmpty(), diferenca.constData());
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
        const QByteArray diferenca = c.diferencaImpressa(relatorio);
        QVERIFY2(diferenca.isEmpty(), diferenca.constData());
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
        const QByteArray diferenca = c.diferencaImpressa(u"DataReportListagemAlarmesMask"_s);
        QVERIFY2(diferenca.isEmpty(), diferenca.constData());
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
        const QByteArray diferenca = c.diferencaImpressa(u"DataReportGraficoPrincipal"_s);
        QVERIFY2(diferenca.isEmpty(), diferenca.constData());
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

    void listaDeSensoresCortada() {
        const QList<impressao::Nomeado> poucos{{QString(700, u'a'), u"1"_s}};
        QCOMPARE(impressao::listaDeSensores(u"Sensores: "_s, poucos).size(), 714);
        const QList<impressao::Nomeado> muitos{{QString(712, u'a'), u"1"_s}};
        const QString cortada = impressao::listaDeSensores(u"Sensores: "_s, muitos);
        QCOMPARE(cortada.size(), 725);
        QVERIFY(cortada.endsWith(u"a ..."));
    }
};

QTEST_MAIN(TesteSaidas)
#include "tst_saidas.moc"
