#include "core/eventos.h"
#include "core/modErros.h"
#include "core/rotina.h"
#include "platform/forms/registoForms.h"
#include "shell/arranque.h"
#include "shell/frmMain.h"
#include "shell/menu.h"
#include "tests/apoio/instalacao.h"
#include "tests/apoio/widgets.h"

namespace {

const QString semDados = u"P2251 DLoggerDownload Descarregar2251 Geral Sensores Configuracoes Ajuda"_s;

// The keys a user can reach, from the bar down, in order.
void percorrer(const QList<QAction *> &accoes, QStringList &chaves) {
    for (const QAction *accao : accoes) {
        if (!accao->isVisible() || accao->isSeparator())
            continue;
        chaves.append(accao->objectName());
        if (const QMenu *menu = accao->menu<QMenu *>())
            percorrer(menu->actions(), chaves);
    }
}

QStringList oferecidas(const frmMain &shell) {
    QStringList chaves;
    percorrer(shell.menuBar()->actions(), chaves);
    return chaves;
}

QWidget *criarForm(QWidget *) {
    auto *form = new QWidget;
    new QLineEdit(form);
    auto *comeco = new QLineEdit(form);
    comeco->setObjectName(u"comeco"_s);
    comeco->setFocus();
    return form;
}

// Every form of the menu, so that what is offered depends on the data alone.
void registarTodos() {
    for (const EntradaMenu &entrada : menuPrincipal())
        if (!entrada.form.isEmpty())
            registoForms().registar(entrada.form.toString(), criarForm);
}

QList<QMdiSubWindow *> filhos(const frmMain &shell) {
    return utilizador::controlo<QMdiArea>(&shell, u"MDIForm"_s)->subWindowList();
}

// Loads for as long as it lives.
class FormDemorado : public QWidget {
public:
    explicit FormDemorado(bool &fim) {
        QTimer::singleShot(0, this, [this, &fim] {
            const Vigia vigia(this);
            Rotina("FormDemorado.Carregar", [&] {
                const QDeadlineTimer limite(5000);
                while (!limite.hasExpired())
                    vigia.passar();
                fim = true; // only when nobody stopped it
            });
        });
    }
};

} // namespace

class tst_shell : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void initTestCase() { QCoreApplication::setApplicationVersion(u"1.2.3"_s); }

    void menuPorDados_data() {
        QTest::addColumn<QStringList>("comandos");
        QTest::addColumn<QString>("chaves"); // what is added to the entries that need no data
        const auto sensor = [](const QString &tipo) {
            return QStringList{u"INSERT INTO Sensores (SensorID, Tipo) VALUES ('1', '"_s + tipo + u"')"};
        };
        const auto linha = [](const QString &tabela, const QString &coluna) {
            return QStringList{u"INSERT INTO %1 (%2) VALUES ('1')"_s.arg(tabela, coluna)};
        };
        const QString temperaturas =
            u"Graficos Temperaturas TmpLeituras TmpMedias TmpPull TmpHistograma TmpHistogramaTemp TmpHistogramaMedia "
            "TmpHistogramaPull Listagens Temperatura ListagensTemperaturas Medias ListagemTempPull AlarmesMedias"_s;
        QTest::newRow("empty") << QStringList() << QString();
        for (const char *letra : {"C", "T", "0", "5", "E"})
            QTest::addRow("temperature %s", letra) << sensor(u"P 1250"_s + QLatin1String(letra)) << temperaturas;
        QTest::newRow("humidity")
            << sensor(u"P 1250%"_s)
            << u"Graficos Humidade HumLeituras HumPull HumHistograma HumHistogramaLeituras "
               "HumHistogramaPull Listagens Humidades HumHumidades ListagemHumPull HumAlarmesHumidade"_s;
        QTest::newRow("pressure")
            << sensor(u"K"_s)
            << u"Graficos Pressao PressaoLeituras PressaoPull PressaoHistograma "
               "PressaoHistogramaLeituras PressaoHistogramaPull Listagens PressaoL PressaoListagem "
               "PressaoListagemPull PressaoListagemAlarmes"_s;
        QTest::newRow("dew point")
            << sensor(u"x D"_s)
            << u"Graficos DPC DPCLeituras DPCPull DPCHistograma DPCHistogramaLeituras "
               "DPCHistogramaPull Listagens DPCL DPCListagem DPCListagemPull DPCListagemAlarmes"_s;
        for (const char *letra : {"V", "A"})
            QTest::addRow("analogue %s", letra)
                << sensor(u"P 1250"_s + QLatin1String(letra))
                << u"Graficos SensUi SensUiLeituras SensUiPull SensUiHistograma SensUiHistogramaLeituras "
                   "SensUiHistogramaPull Listagens ListagensSensUI ListagensSensUILeituras ListagemSensUIPull "
                   "ListagensSensUIAlarmesLeituras"_s;
        QTest::newRow("other type") << sensor(u"P 1250X"_s) << QString();
        QTest::newRow("lower case is another letter") << sensor(u"P 1250c"_s) << QString();
        QTest::newRow("no type") << QStringList{u"INSERT INTO Sensores (SensorID) VALUES ('1')"_s} << QString();
        QTest::newRow("groups") << linha(u"REGISTO_C_Grupos"_s, u"GrupoID"_s)
                                << u"Graficos mnuCondicoes mnuCondicoesGrupCond"_s;
        QTest::newRow("condition inputs")
            << linha(u"REGISTO_C_Inputs"_s, u"CondicaoID"_s) << u"Graficos mnuCondicoes mnuCondicoesInputs"_s;
        QTest::newRow("condition sensors")
            << linha(u"REGISTO_C_Sensores"_s, u"CondicaoID"_s) << u"Graficos mnuCondicoes mnuCondicoesSensores"_s;
        QTest::newRow("inputs") << linha(u"REGISTO_Inputs"_s, u"DispositivoIP"_s)
                                << u"Graficos mnuInputsOutputs mnuInputsOutputsInputs"_s;
        QTest::newRow("outputs") << linha(u"REGISTO_Outputs"_s, u"DispositivoIP"_s)
                                 << u"Graficos mnuInputsOutputs mnuInputsOutputsOutputs"_s;
        QTest::newRow("one mission") << linha(u"DS1921head"_s, u"LoggerID"_s)
                                     << u"Graficos Registador GrafRegistadores RegistadorHistograma "
                                        "RegistadorHistogramaLeituras Listagens Registadores RegistadoresLeituras "
                                        "RegistadoresAlarmes RegistadorControl RegistadorControlMissoes"_s;
        const QString alarme = u"INSERT INTO MaskListaAlarmes (DataI) VALUES (%1)"_s;
        const QString comAlarmes = u"Listagens Alarmes ListagensAlarmes"_s;
        QTest::newRow("alarms") << QStringList{alarme.arg(u"'2024-01-02 03:04:05'")} << comAlarmes;
        QTest::newRow("alarms without a date") << QStringList{alarme.arg(u"NULL")} << QString();
        // The first row stored counts, not the first by date.
        QTest::newRow("first alarm without a date")
            << QStringList{alarme.arg(u"NULL"), alarme.arg(u"'2024-01-02 03:04:05'")} << QString();
        QTest::newRow("first alarm with a date")
            << QStringList{alarme.arg(u"'2024-01-02 03:04:05'"), alarme.arg(u"NULL")} << comAlarmes;
    }

    void menuPorDados() {
        QFETCH(QStringList, comandos);
        QFETCH(QString, chaves);
        Instalacao instalacao;
        for (const QString &comando : comandos)
            instalacao.executar(comando);
        registarTodos();
        const frmMain shell;
        QStringList esperadas = u"%1 %2"_s.arg(semDados, chaves).split(u' ', Qt::SkipEmptyParts);
        QStringList vistas = oferecidas(shell);
        // Branches keep the order of the tree: data between the download and the general branch.
        QCOMPARE(vistas.first(), u"P2251"_s);
        QCOMPARE(vistas.last(), u"Ajuda"_s);
        esperadas.sort();
        vistas.sort();
        QCOMPARE(vistas, esperadas);
    }

    void estadosSoSobem() {
        Instalacao instalacao;
        registarTodos();
        frmMain shell;
        QVERIFY(!oferecidas(shell).contains(u"Graficos"_s));
        instalacao.sensor({u"1"_s, u"a"_s});
        instalacao.executar(u"INSERT INTO DS1921head (LoggerID) VALUES ('1')"_s);
        instalacao.executar(u"INSERT INTO MaskListaAlarmes (DataI) VALUES ('2024-01-02')"_s);
        QVERIFY(!oferecidas(shell).contains(u"Graficos"_s)); // nothing moves by itself
        registoForms().alterarEstadosMenus();
        const QStringList comTudo = oferecidas(shell);
        for (const QString &chave : {u"TmpLeituras"_s, u"RegistadorControlMissoes"_s, u"ListagensAlarmes"_s})
            QVERIFY2(comTudo.contains(chave), qPrintable(chave));
        for (const QString &tabela : {u"Sensores"_s, u"DS1921head"_s, u"MaskListaAlarmes"_s})
            instalacao.executar(u"DELETE FROM "_s + tabela);
        shell.AlterarEstadosMenus();
        const QStringList semNada = oferecidas(shell);
        for (const QString &chave : {u"TmpLeituras"_s, u"GrafRegistadores"_s, u"Listagens"_s})
            QVERIFY2(semNada.contains(chave), qPrintable(chave));
        QVERIFY(!semNada.contains(u"RegistadorControl"_s));
        QVERIFY(!semNada.contains(u"Alarmes"_s));
    }

    void tabelaDeAlarmesAusente() {
        Instalacao instalacao;
        instalacao.sensor({u"1"_s, u"a"_s});
        instalacao.executar(u"DROP TABLE MaskListaAlarmes"_s);
        registarTodos();
        instalacao.erros.esperar(u"frmMain.VerificaSeTabelaExiste_MaskListaAlarmes"_s);
        frmMain shell;
        QVERIFY(oferecidas(shell).contains(u"TmpLeituras"_s));
        QVERIFY(!oferecidas(shell).contains(u"Alarmes"_s));
        instalacao.erros.verificar();
        instalacao.erros.esperar(u"frmMain.VerificaSeTabelaExiste_MaskListaAlarmes"_s); // at each look, not only once
        shell.AlterarEstadosMenus();
    }

    void abrirUmaVez() {
        Instalacao instalacao;
        instalacao.sensor({u"1"_s, u"a"_s});
        registarTodos();
        frmMain shell;
        utilizador::mostrar(&shell);
        utilizador::accao(&shell, u"TmpMedias"_s);
        utilizador::accao(&shell, u"Descarregar2251"_s);
        QCOMPARE(filhos(shell).size(), 2);
        QPointer<QWidget> medias = utilizador::form(u"frmGraficoPrincipal"_s);
        QVERIFY(medias && medias->isVisible());
        QCOMPARE(shell.focusWidget()->objectName(), u"comeco"_s); // where the form said
        QVERIFY(registoForms().activo(u"frmDescarregar2251"_s));
        auto *janela = qobject_cast<QMdiSubWindow *>(medias->parentWidget());
        QMdiArea *area = janela->mdiArea();
        QVERIFY(area->activeSubWindow() != janela);
        utilizador::accao(&shell, u"TmpMedias"_s);
        QCOMPARE(filhos(shell).size(), 2);
        QCOMPARE(area->activeSubWindow(), janela);

        janela->showMinimized();
        QVERIFY(shell.FormEstaActivo(u"frmGraficoPrincipal"_s));
        utilizador::accao(&shell, u"TmpMedias"_s);
        QCOMPARE(filhos(shell).size(), 2);
        QVERIFY(!janela->isMinimized() && medias->isVisible());

        // Closed, but not destroyed yet: a new one opens.
        janela->close();
        QVERIFY(!shell.FormEstaActivo(u"frmGraficoPrincipal"_s));
        utilizador::accao(&shell, u"TmpMedias"_s);
        QVERIFY(registoForms().form(u"frmGraficoPrincipal"_s) != medias);
        QVERIFY(utilizador::esperar([&] { return medias.isNull(); }));
        QCOMPARE(filhos(shell).size(), 2);
    }

    // The bar names the open windows, whatever hides the work area, and is silent without any.
    void listaDeJanelas() {
        Instalacao instalacao;
        instalacao.sensor({u"1"_s, u"a"_s});
        registarTodos();
        frmMain shell;
        utilizador::mostrar(&shell);
        auto *botao = qobject_cast<QPushButton *>(utilizador::procurar(&shell, u"STATUS:Janelas"_s));
        QVERIFY(botao && !botao->isVisible());
        utilizador::accao(&shell, u"TmpMedias"_s);
        utilizador::accao(&shell, u"Descarregar2251"_s);
        registoForms().form(u"frmGraficoPrincipal"_s)->setWindowTitle(u"A & B"_s);
        QVERIFY(botao->isVisible());
        Q_EMIT botao->menu()->aboutToShow();
        const QList<QAction *> entradas = botao->menu()->actions();
        QCOMPARE(entradas.size(), 6); // three ways to lay them out, a line, two windows
        QCOMPARE(entradas[4]->text(), u"A && B"_s);
        QVERIFY(!entradas[4]->isChecked() && entradas[5]->isChecked());
        entradas[4]->trigger();
        QCOMPARE(filhos(shell).constFirst()->mdiArea()->activeSubWindow(), filhos(shell).constFirst());
        QTest::keyClick(&shell, Qt::Key_F4, Qt::ControlModifier);
        QVERIFY(utilizador::esperar([&] { return filhos(shell).size() == 1; }));
        QVERIFY(!registoForms().activo(u"frmGraficoPrincipal"_s)); // the active one
        Q_EMIT botao->menu()->aboutToShow();
        botao->menu()->actions()[2]->trigger();
        QVERIFY(utilizador::esperar([&] { return !botao->isVisible(); }));
    }

    void configuracoesComFilhos_data() {
        const Tabela<QString, bool> caso("aberto", "avisa");
        caso("nothing open", {}, false);
        caso("a chart", u"frmGraficoPrincipalTemp"_s, true);
        caso("the error dialog does not count", u"frmErro"_s, false);
    }

    void configuracoesComFilhos() {
        QFETCH(QString, aberto);
        QFETCH(bool, avisa);
        Instalacao instalacao;
        registarTodos();
        registoForms().registar(u"frmErro"_s, criarForm);
        int abertas = 0;
        const auto fabrica = [&](QWidget *dono) {
            auto *dialogo = new QDialog(dono);
            QTimer::singleShot(0, dialogo, [&abertas, dialogo] {
                abertas += dialogo->isModal() ? 1 : 0;
                dialogo->close();
            });
            return dialogo;
        };
        registoForms().registar(u"frmConfiguracoes"_s, fabrica, RegistoForms::Modo::Modal);
        frmMain shell;
        utilizador::mostrar(&shell);
        if (!aberto.isEmpty())
            registoForms().abrir(aberto);
        if (avisa)
            instalacao.dialogos.esperarMensagem(u"Por favor, feche todas as janelas primeiro!!!"_s);
        utilizador::accao(&shell, u"Configuracoes"_s);
        QCOMPARE(abertas, avisa ? 0 : 1);
        QVERIFY(!registoForms().activo(u"frmConfiguracoes"_s));
    }

    void logger_data() {
        // biblioteca: -1 missing, 0 fails, 1 works
        const Tabela<int> caso("biblioteca");
        caso("no library", -1);
        caso("the call fails", 0);
        caso("the call works", 1);
    }

    void logger() {
        QFETCH(int, biblioteca);
        Instalacao instalacao;
        registarTodos();
        frmMain shell;
        utilizador::mostrar(&shell);
        if (biblioteca >= 0)
            shell.chamar1Wire = [biblioteca] {
                if (biblioteca == 0)
                    throw Falha(53, u"sem biblioteca"_s);
            };
        if (biblioteca == 0)
            instalacao.erros.esperar(u"frmMain.VerificarDLL1Wire"_s);
        if (biblioteca != 1)
            instalacao.dialogos.esperarMensagem(u"Erro ao Carregar DLL do 1-Wire"_s);
        utilizador::accao(&shell, u"DLoggerDownload"_s);
        QCOMPARE(registoForms().activo(u"frmDS1921"_s), biblioteca == 1);
        utilizador::accao(&shell, u"Descarregar2251"_s);
        QVERIFY(registoForms().activo(u"frmDescarregar2251"_s));
    }

    void sensoresPedemSenha() {
        Instalacao instalacao;
        registarTodos();
        frmMain shell;
        utilizador::mostrar(&shell);
        utilizador::accao(&shell, u"Sensores"_s);
        QVERIFY(registoForms().activo(u"frmPassWord"_s));
        QCOMPARE(estado().ObjectivoPassWord, qint16(2));
    }

    void arranqueComBase() {
        Instalacao instalacao;
        instalacao.sensor({u"1"_s, u"a"_s});
        instalacao.reiniciar();
        modINI::SaveSetting(u"Vistrel"_s, u"Lingua"_s, u"ACT"_s, u"3"_s);
        modINI::SaveSetting(u"Vistrel"_s, u"Lingua"_s, u"L3"_s, u"CZ"_s);
        const std::unique_ptr<frmMain> shell = modMain::Main();
        QVERIFY(shell && shell->isVisible());
        QVERIFY(estado().BDLigada);
        QCOMPARE(estado().CaminhoBD, instalacao.caminhoBD());
        QCOMPARE(estado().Lingua, u"CZ"_s);
        QCOMPARE(shell->windowTitle(), u"Vistrel Português  v1.2.3"_s);
        QVERIFY(oferecidas(*shell).contains(u"TmpLeituras"_s)); // through the forms the program registers itself
        QCOMPARE(utilizador::controlo<QLabel>(shell.get(), u"lblCaminhoBD"_s)->text(), u"Kelvark.mdb"_s);
    }

    void sairDescarregaTudo() {
        Instalacao instalacao;
        instalacao.sensor({u"1"_s, u"a"_s});
        registarTodos();
        frmMain shell;
        utilizador::mostrar(&shell);
        for (const QString &chave : {u"TmpLeituras"_s, u"TmpPull"_s, u"Medias"_s})
            utilizador::accao(&shell, chave);
        QWidget flutuante; // a window that is no child of the work area
        flutuante.show();
        utilizador::clicar(&shell, u"STATUS:SairAplicacao"_s);
        QVERIFY(!shell.isVisible());
        QVERIFY(!flutuante.isVisible());
        QCOMPARE(registoForms().activos(), QStringList());
        QVERIFY(utilizador::esperar([&] { return filhos(shell).isEmpty(); }));
    }

    void fecharAMeioDeUmaCarga() {
        Instalacao instalacao;
        instalacao.sensor({u"1"_s, u"a"_s});
        registarTodos();
        bool ateAoFim = false;
        registoForms().registar(u"frmGraficoPrincipalTemp"_s, [&](QWidget *) { return new FormDemorado(ateAoFim); });
        frmMain shell;
        utilizador::mostrar(&shell);
        utilizador::accao(&shell, u"TmpLeituras"_s);
        const QPointer<QWidget> form = registoForms().form(u"frmGraficoPrincipalTemp"_s);
        shell.setEnabled(false); // as long work leaves it
        QTimer::singleShot(50, &shell, [&] { shell.close(); });
        QVERIFY(utilizador::esperar([&] { return !shell.isVisible() && form.isNull(); }));
        QVERIFY(!ateAoFim);
    }
};

QTEST_MAIN(tst_shell)
#include "tst_shell.moc"
