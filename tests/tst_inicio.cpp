#include "core/eventos.h"
#include "core/modErros.h"
#include "platform/forms/registoForms.h"
#include "shell/apresentadorQt.h"
#include "shell/arranque.h"
#include "shell/frmMain.h"
#include "shell/textosDoQt.h"
#include "tests/apoio/espera.h"
#include "tests/apoio/instalacao.h"
#include "tests/apoio/widgets.h"

namespace {

const QString nomeErro = u"frmErro"_s;

QWidget *erroVisivel() {
    QWidget *erro = registoForms().form(nomeErro);
    return erro && erro->isVisible() ? erro : nullptr;
}

QString detalhe() {
    QWidget *erro = erroVisivel();
    return erro ? utilizador::controlo<QLabel>(erro, u"lblDetalhe"_s)->text() : QString();
}

} // namespace

// Lets all events of the splash pass before its showing is through, as a busy machine may.
class EventosAMeio : public QObject {
public:
    EventosAMeio() { qApp->installEventFilter(this); }
    bool passou = false, presa = false;

protected:
    bool eventFilter(QObject *alvo, QEvent *evento) override {
        auto *splash = qobject_cast<QDialog *>(alvo);
        if (passou || !splash || evento->type() != QEvent::WindowActivate ||
            splash->objectName() != u"frmIconCompactarErepararBD")
            return false;
        passou = true;
        while (splash->isVisible())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        QTimer::singleShot(0, splash, [this, splash] { // in a loop that waits for it still
            presa = true;
            splash->show();
            splash->accept();
        });
        return false;
    }
};

// The start of the process and its reports, with the real error dialog.
class TesteInicio : public QObject {
    Q_OBJECT
    ApresentadorQt m_apresentador;

private Q_SLOTS:
    void cleanup() {
        if (QWidget *erro = registoForms().form(nomeErro))
            delete erro;
    }

    void base_data() {
        // bytes: Null: no file; relato: what the error dialog says, and goes on saying
        const Tabela<QByteArray, QString, QString> caso("bytes", "mensagem", "relato");
        caso("missing", QByteArray(), u"AVISO: Base de Dados Inexistente.\n\"%1\"\nDeseja escolher"_s, {});
        caso("no database", QByteArray("plain text"), {}, u"modMain.carregaGlobaisBD"_s);
    }
    // The shell comes up all the same; the first cause stays in sight, also after the splash, its first owner, is gone.
    void base() {
        QFETCH(const QByteArray, bytes);
        QFETCH(const QString, mensagem);
        QFETCH(const QString, relato);
        Instalacao instalacao(Instalacao::Base::Nenhuma);
        estado().ambiente.apresentador = &m_apresentador;
        const QString caminho = instalacao.ficheiro(u"dados.mdb"_s);
        if (!bytes.isNull())
            Instalacao::escreverFicheiro(caminho, bytes);
        QVERIFY(modINI::SaveSetting(u"Vistrel"_s, u"BD"_s, u"MAIN"_s, caminho));
        if (!mensagem.isEmpty())
            instalacao.dialogos.responderPergunta(false, mensagem.arg(caminho));

        const std::unique_ptr<frmMain> principal = modMain::Main();
        QVERIFY(principal && principal->isVisible());
        QVERIFY(!registoForms().activo(u"frmIconCompactarErepararBD"_s));
        const QString legenda = utilizador::controlo<QLabel>(principal.get(), u"lblCaminhoBD"_s)->text();
        QCOMPARE(legenda, u"dados.mdb – sem ligação"_s);
        for (const QAction *ramo : principal->menuBar()->actions()) // what needs no data
            QCOMPARE(ramo->isVisible(),
                     ramo->isSeparator() || ramo->objectName() == u"P2251" || ramo->objectName() == u"Geral");
        QCOMPARE(QFile::exists(caminho), !bytes.isNull());
        if (relato.isEmpty()) { // all was said
            QVERIFY(!erroVisivel());
            return;
        }
        QTRY_VERIFY(erroVisivel());
        QVERIFY2(detalhe().contains(relato), qPrintable(detalhe()));
        QCOMPARE(erroVisivel()->parentWidget(), principal.get());
        QCOMPARE(Instalacao::lerFicheiro(caminho), bytes);
        utilizador::clicar(erroVisivel(), u"cmdContinuar"_s);
        QVERIFY(!erroVisivel());
        QVERIFY(principal->isVisible());
    }

    void splashQueAcabaEnquantoSeMostra() {
        Instalacao instalacao;
        estado().ambiente.apresentador = &m_apresentador;
        const EventosAMeio eventos;
        const std::unique_ptr<frmMain> principal = modMain::Main();
        QVERIFY(eventos.passou && !eventos.presa);
        QVERIFY(principal && principal->isVisible());
    }

    // Chosen at the start, the other file is the one that is opened, then and later.
    void outraEscolhida() {
        Instalacao instalacao;
        estado().ambiente.apresentador = &m_apresentador;
        instalacao.reiniciar();
        estado().ambiente.apresentador = &m_apresentador;
        const QString nenhuma = instalacao.ficheiro(u"nenhuma.mdb"_s), outra = instalacao.ficheiro(u"outra.mdb"_s);
        QVERIFY(modINI::SaveSetting(u"Vistrel"_s, u"BD"_s, u"MAIN"_s, nenhuma));
        for (const QString &escolhida : {outra, instalacao.caminhoBD()}) { // the first is not there either
            instalacao.dialogos.responderPergunta(true, u"Inexistente"_s);
            instalacao.dialogos.responderAbrir(escolhida, u"*.mdb"_s);
        }
        const std::unique_ptr<frmMain> principal = modMain::Main();
        QVERIFY(estado().BDLigada && !erroVisivel());
        QCOMPARE(modINI::GetSetting(u"Vistrel"_s, u"BD"_s, u"MAIN"_s), instalacao.caminhoBD());
    }

    // One message tells of a file that was replaced under the open program.
    void baseSubstituida() {
        Instalacao instalacao;
        estado().ambiente.apresentador = &m_apresentador;
        const std::unique_ptr<frmMain> principal = modMain::Main();
        auto *relogio = principal->findChild<QTimer *>(u"TimerBD"_s);
        QVERIFY(relogio && relogio->isActive());
        relogio->setInterval(1);
        instalacao.dialogos.esperarMensagem(u"foi apagado ou substituído"_s);
        QVERIFY(QFile::rename(instalacao.caminhoBD(), instalacao.ficheiro(u"antiga.mdb"_s)));
        QTRY_COMPARE(instalacao.dialogos.textos.size(), 1);
        int vezes = 0;
        connect(relogio, &QTimer::timeout, this, [&vezes] { ++vezes; });
        QTRY_VERIFY(vezes > 5);
        QCOMPARE(instalacao.dialogos.textos.size(), 1);
    }

    // The configuration dialog changes the language while the click that opened it is still being handled.
    void linguaMudaDentroDeUmaEscolha() {
        Instalacao instalacao;
        estado().ambiente.apresentador = &m_apresentador;
        instalacao.ficheiroLingua(u"EN"_s, {{u"VISTREL_frmMain"_s, u"mnuGeral"_s, u"General"_s},
                                            {u"VISTREL_frmMain"_s, u"mnuListagensConfiguracoes"_s, u"Settings"_s}});
        QVERIFY(modINI::SaveSetting(u"Vistrel"_s, u"Lingua"_s, u"L2"_s, u"EN"_s));
        std::unique_ptr<frmMain> principal = modMain::Main();
        registoForms().registar(
            u"frmConfiguracoes"_s,
            [&](QWidget *dono) {
                auto *dialogo = new QDialog(dono);
                QTimer::singleShot(0, dialogo, [&, dialogo] {
                    modINI::SaveSetting(u"Vistrel"_s, u"Lingua"_s, u"ACT"_s, u"2"_s);
                    principal->AlterarLingua();
                    forcarEventos();
                    dialogo->close();
                });
                return dialogo;
            },
            RegistoForms::Modo::Modal);
        principal->AlterarEstadosMenus();
        auto *geral = utilizador::controlo<QAction>(principal.get(), u"Geral"_s);
        auto *configuracoes = utilizador::controlo<QAction>(principal.get(), u"Configuracoes"_s);
        QCOMPARE(configuracoes->text().remove(u'&'), u"Configurações"_s);
        const QPointer<QMenu> menu = geral->menu();
        menu->popup(principal->mapToGlobal(QPoint(20, 40)));
        QVERIFY(QTest::qWaitForWindowExposed(menu));
        QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(configuracoes).center());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(utilizador::controlo<QAction>(principal.get(), u"Geral"_s)->text().remove(u'&'), u"General"_s);
        QCOMPARE(utilizador::controlo<QAction>(principal.get(), u"Configuracoes"_s)->text().remove(u'&'),
                 u"Settings"_s);
        QVERIFY(!registoForms().activo(u"frmConfiguracoes"_s));
    }

    // The entry for the button works without any adapter; the form itself says what is missing.
    void registadorPeloMenu() {
        Instalacao instalacao;
        const std::unique_ptr<frmMain> principal = modMain::Main();
        utilizador::accao(principal.get(), u"DLoggerDownload"_s);
        QWidget *form = utilizador::form(u"frmDS1921"_s);
        QVERIFY(form && form->isVisible());
        instalacao.dialogos.esperarMensagem(u"DS1921 não encontrado"_s);
        utilizador::clicar(form, u"cmdLer"_s);
        utilizador::accao(principal.get(), u"DLoggerDownload"_s); // comes to the front
        QCOMPARE(utilizador::form(u"frmDS1921"_s), form);
    }

    // Title and icon of the frame are the form's; the frame goes with it, whoever of the two is closed.
    void molduraSegueOForm_data() {
        const Tabela<bool> caso("peloForm");
        caso("the form closes itself", true);
        caso("the frame is closed", false);
    }
    void molduraSegueOForm() {
        QFETCH(const bool, peloForm);
        const Instalacao instalacao;
        const std::unique_ptr<frmMain> principal = modMain::Main();
        registoForms().registar(u"frmTeste"_s, [](QWidget *dono) { return new QWidget(dono); });
        const QPointer<QWidget> form = registoForms().abrir(u"frmTeste"_s);
        const QPointer<QMdiSubWindow> moldura = qobject_cast<QMdiSubWindow *>(form->parentWidget());
        QVERIFY(moldura);
        QPixmap vermelho(16, 16);
        vermelho.fill(Qt::red);
        form->setWindowTitle(u"Outro título"_s);
        form->setWindowIcon(vermelho);
        QCOMPARE(moldura->windowTitle(), u"Outro título"_s);
        QCOMPARE(moldura->windowIcon().pixmap(16).toImage().pixelColor(8, 8), QColor(Qt::red));
        if (peloForm)
            form->close();
        else
            moldura->close();
        QTRY_VERIFY(form.isNull());
        QTRY_VERIFY(moldura.isNull());
        QVERIFY(!registoForms().activo(u"frmTeste"_s));
        QWidget *novo = registoForms().abrir(u"frmTeste"_s);
        QVERIFY(novo && novo->isVisible());
    }

    // No window lies on another, though charts keep a least size.
    void mosaico_data() {
        const Tabela<int> caso("quantas");
        caso("one", 1);
        caso("as many as fit", 4);
        caso("more", 7);
    }
    void mosaico() {
        QFETCH(const int, quantas);
        const Instalacao instalacao;
        const std::unique_ptr<frmMain> principal = modMain::Main();
        principal->resize(1500, 1000);
        const QStringList forms = {u"frmGraficoPrincipal"_s,
                                   u"frmGraficoPrincipalTemp"_s,
                                   u"frmListagemObservacoesTemp"_s,
                                   u"frmGraficoPrincipalPressao"_s,
                                   u"frmGraficoInputs"_s,
                                   u"frmGraficoREGISTO_C_Inputs"_s,
                                   u"frmGraficoSensUI"_s};
        QList<QWidget *> molduras;
        for (const QString &form : forms.mid(0, quantas))
            molduras.append(registoForms().abrir(form)->parentWidget());
        molduras.constFirst()->showMaximized();
        auto *botao = utilizador::controlo<QPushButton>(principal.get(), u"STATUS:Janelas"_s);
        Q_EMIT botao->menu()->aboutToShow();
        botao->menu()->actions().at(1)->trigger();
        deixarPassar(50);
        for (const QWidget *a : std::as_const(molduras))
            for (const QWidget *b : std::as_const(molduras))
                QVERIFY2(a == b || !a->geometry().intersects(b->geometry()), qPrintable(a->windowTitle()));
    }

    void textosDoQt_data() {
        const Tabela<QString, QString, QString> caso("lingua", "sim", "nome");
        caso("Portuguese, not as in Brazil", u"PT"_s, u"&Sim"_s, u"&Nome do ficheiro:"_s);
        caso("as in Brazil", u"BR"_s, u"&Sim"_s, u"&Nome do arquivo:"_s);
        caso("Czech by its country", u"CZ"_s, u"&Ano"_s, u"Název &souboru:"_s);
        caso("by language", u"de"_s, u"&Ja"_s, u"Datei&name:"_s);
        caso("unknown", u"XX"_s, u"&Yes"_s, u"File &name:"_s);
    }
    // Each after another one: nothing of the language before may stay.
    void textosDoQt() {
        QFETCH(const QString, lingua);
        QFETCH(const QString, sim);
        QFETCH(const QString, nome);
        for (const QString &codigo : {u"FR"_s, lingua})
            ::textosDoQt::aplicar(codigo);
        QCOMPARE(QCoreApplication::translate("QPlatformTheme", "&Yes"), sim);
        QCOMPARE(QCoreApplication::translate("QFileDialog", "File &name:"), nome);
    }
};

QTEST_MAIN(TesteInicio)
#include "tst_inicio.moc"
