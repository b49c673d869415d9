#include "core/modErros.h"
#include "platform/forms/icones.h"
#include "platform/forms/lugar.h"
#include "platform/forms/registoForms.h"
#include "shell/apresentadorQt.h"
#include "shell/frmMain.h"
#include "tests/apoio/instalacao.h"
#include "tests/apoio/widgets.h"

#include <sys/wait.h>
#include <unistd.h>

namespace {

void escreverLugar(const QString &ficheiro, const QString &nome, const QStringList &valores) {
    const QStringList chaves = {u"TOP"_s, u"LEFT"_s, u"WIDTH"_s, u"HEIGHT"_s};
    for (qsizetype i = 0; i < valores.size(); ++i)
        modINI::SaveSetting(ficheiro, u"FORMS"_s, nome + chaves[i], valores[i]);
}

QStringList textoDoErro() {
    return utilizador::controlo<QLabel>(utilizador::form(u"frmErro"_s), u"lblDetalhe"_s)->text().split(u"\r\n"_s);
}

// The main window with the real error dialog.
struct Janelas {
    Janelas() {
        estado().ambiente.apresentador = &apresentador;
        utilizador::mostrar(&shell);
    }
    Instalacao instalacao;
    ApresentadorQt apresentador;
    frmMain shell;
};

} // namespace

// Windows: their remembered places, modal ones, the error dialog, the icons.
class tst_janelas : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { m_paleta = QApplication::palette(); }
    void cleanup() { QApplication::setPalette(m_paleta); }

    void reporLugar_data() {
        // guardado: TOP, LEFT, WIDTH, HEIGHT in twips; largura: of the rule; esperado: on an area of 800 x 600; the
        // form is designed 300 x 200
        const Tabela<QStringList, int, int, QRect> caso("guardado", "largura", "altura", "esperado");
        caso("nothing stored", {}, 0, 0, QRect(0, 0, 300, 200));
        caso("nothing stored, own size", {}, 10500, 6615, QRect(0, 0, 700, 441));
        caso("place only", {u"750"_s, u"1500"_s, u"9000"_s, u"9000"_s}, 0, 0, QRect(100, 50, 300, 200));
        caso("all", {u"750"_s, u"1500"_s, u"6000"_s, u"4500"_s}, 10500, 6615, QRect(100, 50, 400, 300));
        caso("the width of listings is never read", {u"0"_s, u"0"_s, u"6000"_s, u"4500"_s}, 0, 7785,
             QRect(0, 0, 300, 300));
        caso("no numbers", {u"x"_s, u""_s, u"abc"_s, u"9e99"_s}, 6000, 4500, QRect(0, 0, 400, 300));
        caso("beyond the area", {u"90000"_s, u"90000"_s}, 0, 0, QRect(719, 519, 300, 200));
        caso("above and left of it", {u"-90000"_s, u"-90000"_s}, 0, 0, QRect(-220, 0, 300, 200));
        caso("larger than the area", {u"0"_s, u"0"_s, u"90000"_s, u"90000"_s}, 6000, 4500, QRect(0, 0, 800, 600));
    }

    void reporLugar() {
        QFETCH(QStringList, guardado);
        QFETCH(int, largura);
        QFETCH(int, altura);
        QFETCH(QRect, esperado);
        const Instalacao instalacao(Instalacao::Base::Nenhuma);
        escreverLugar(u"Vistrel"_s, u"frmX"_s, guardado);
        QWidget area;
        area.resize(800, 600);
        auto *form = new QWidget(&area);
        form->resize(300, 200);
        auto *alojada = new QMdiSubWindow(&area);
        alojada->setWidget(form);
        alojada->resize(300, 200);
        lugar::repor(form, {u"frmX"_s, {}, largura, altura});
        QCOMPARE(alojada->geometry(), esperado);
    }

    // Through the work area: the place is that of the window around the form.
    void lugarNaAreaDeTrabalho() {
        class FormComLugar : public QWidget {
        protected:
            void showEvent(QShowEvent *) override {
                if (!std::exchange(m_reposto, true))
                    lugar::repor(this, {u"frmX"_s, {}, 6000, 4500});
            }
            void closeEvent(QCloseEvent *) override { lugar::guardar(this, {u"frmX"_s, {}, 6000, 4500}); }

        private:
            bool m_reposto = false;
        };
        Janelas janelas;
        registoForms().registar(u"frmX"_s, [](QWidget *) { return new FormComLugar; });
        escreverLugar(u"Vistrel"_s, u"frmX"_s, {u"900"_s, u"1350"_s});
        QWidget *janela = registoForms().abrir(u"frmX"_s)->parentWidget();
        QCOMPARE(janela->geometry(), QRect(90, 60, 400, 300));
        janela->setGeometry(40, 50, 420, 310);
        janela->close();
        janela = registoForms().abrir(u"frmX"_s)->parentWidget();
        QCOMPARE(janela->geometry(), QRect(40, 50, 420, 310));

        // Beside a maximised one the next comes up maximised; its own place is kept for later.
        registoForms().registar(u"frmY"_s, [](QWidget *) { return new FormComLugar; });
        janela->showMaximized();
        QWidget *outra = registoForms().abrir(u"frmY"_s)->parentWidget();
        QVERIFY(outra->isMaximized() && !janela->isMaximized());
        QCOMPARE(outra->size(), outra->parentWidget()->size());
        outra->showNormal();
        QCOMPARE(outra->geometry(), QRect(40, 50, 420, 310));
    }

    void lugarMaximizadoNaoConta() {
        const Instalacao instalacao(Instalacao::Base::Nenhuma);
        escreverLugar(u"Vistrel"_s, u"frmX"_s, {u"750"_s, u"1500"_s, u"6000"_s, u"4500"_s});
        QWidget form;
        form.setWindowState(Qt::WindowMaximized);
        lugar::guardar(&form, {u"frmX"_s, {}, 6000, 4500});
        QCOMPARE(modINI::GetSetting(u"Vistrel"_s, u"FORMS"_s, u"frmXWIDTH"_s), u"6000"_s);
    }

    // No dialog, yet nothing goes on behind it; a password is asked for in such a one.
    void janelaModal() {
        Janelas janelas;
        bool modal = false;
        const auto fabrica = [&](QWidget *dono) {
            auto *w = new QWidget(dono, Qt::Dialog);
            QTimer::singleShot(0, w, [&modal, w] {
                modal = w->isModal() && registoForms().activo(u"frmX"_s);
                w->close();
            });
            return w;
        };
        registoForms().registar(u"frmX"_s, fabrica, RegistoForms::Modo::Modal);
        registoForms().abrir(u"frmX"_s);
        QVERIFY(modal && !registoForms().activo(u"frmX"_s));
    }

    void erroUmaSoJanela() {
        Janelas janelas;
        QApplication::setOverrideCursor(Qt::WaitCursor); // as a routine that failed left it
        modErros::TratarErro(u"frmX.Primeira"_s, u"a descrição"_s, u"13"_s);
        QWidget *erro = utilizador::form(u"frmErro"_s);
        QVERIFY(erro && erro->isVisible());
        QVERIFY(!erro->isModal());
        QCOMPARE(erro->parentWidget(), &janelas.shell);
        QVERIFY(!QApplication::overrideCursor());
        QCOMPARE(textoDoErro().value(1), u"Fonte.....: frmX.Primeira"_s);

        modErros::TratarErro(u"frmX.Segunda"_s, u"outra"_s, u"5"_s);
        QCOMPARE(textoDoErro().value(1), u"Fonte.....: frmX.Primeira"_s);

        utilizador::clicar(erro, u"cmdContinuar"_s);
        QVERIFY(!registoForms().activo(u"frmErro"_s));
        modErros::TratarErro(u"frmX.Terceira"_s, u"outra"_s, u"5"_s);
        QVERIFY(registoForms().activo(u"frmErro"_s));
        QCOMPARE(utilizador::controlo<QLabel>(registoForms().form(u"frmErro"_s), u"lblDetalhe"_s)
                     ->text()
                     .section(u"\r\n"_s, 1, 1),
                 u"Fonte.....: frmX.Terceira"_s);
    }

    void erroDetalhes() {
        Janelas janelas;
        modErros::TratarErro(u"frmX.Y"_s, u"a descrição"_s, u"13"_s);
        QWidget *erro = utilizador::form(u"frmErro"_s);
        const auto *botao = utilizador::controlo<QPushButton>(erro, u"cmdDetalhe"_s);
        const auto *detalhe = utilizador::controlo<QLabel>(erro, u"lblDetalhe"_s);
        const int fechada = erro->height();
        QVERIFY(fechada >= lugar::pixeis(2310));
        QVERIFY(!detalhe->isVisible());
        const auto *frase = utilizador::controlo<QLabel>(erro, u"lblFrase"_s);
        QVERIFY(frase->isVisible() && frase->visibleRegion().boundingRect() == frase->rect());
        QCOMPARE(frase->text(), u"a descrição"_s);
        QCOMPARE(botao->text(), u"Detalhes >>>"_s);
        utilizador::clicar(erro, u"cmdDetalhe"_s);
        QVERIFY(detalhe->isVisible());
        QCOMPARE(botao->text(), u"<<< Esconder"_s);
        QVERIFY(erro->height() >= lugar::pixeis(4305));
        utilizador::clicar(erro, u"cmdDetalhe"_s);
        QVERIFY(!detalhe->isVisible());
        QCOMPARE(erro->height(), fechada);
    }

    void erroFecha_data() {
        const Tabela<int> caso("tecla");
        caso("Escape", int(Qt::Key_Escape));
        caso("Return, on the button to go on", int(Qt::Key_Return));
    }

    void erroFecha() {
        QFETCH(int, tecla);
        Janelas janelas;
        modErros::TratarErro(u"frmX.Y"_s, u"d"_s, u"1"_s);
        QPointer<QWidget> erro = utilizador::form(u"frmErro"_s);
        utilizador::tecla(erro, tecla);
        QVERIFY(utilizador::esperar([&] { return erro.isNull(); }));
        QVERIFY(janelas.shell.isVisible());
    }

    void erroSobreJanelaModal_data() {
        const Tabela<bool> caso("antes");
        caso("while it is open", false);
        caso("while it loads", true);
    }

    // A failure around a modal window can still be read and answered.
    void erroSobreJanelaModal() {
        QFETCH(const bool, antes);
        Janelas janelas;
        QDialog modal(&janelas.shell);
        modal.setModal(true);
        const auto falhar = [] { modErros::TratarErro(u"frmX.Y"_s, u"d"_s, u"1"_s); };
        if (antes)
            falhar();
        QTimer::singleShot(20, &modal, [&] {
            const auto fechar = qScopeGuard([&] { modal.accept(); });
            if (!antes)
                falhar();
            QWidget *erro = utilizador::form(u"frmErro"_s);
            QVERIFY(utilizador::esperar([&] { return erro->parentWidget() == &modal; }));
            utilizador::clicar(erro, u"cmdContinuar"_s);
            QVERIFY(!registoForms().activo(u"frmErro"_s));
            QVERIFY(modal.isVisible());
        });
        QCOMPARE(modal.exec(), int(QDialog::Accepted));
    }

    void encerrar() {
        Janelas janelas;
        modErros::TratarErro(u"frmX.Y"_s, u"d"_s, u"1"_s);
        QWidget *erro = utilizador::form(u"frmErro"_s);
        constexpr int aindaViva = 77;
        const pid_t pid = ::fork();
        if (pid == 0) {
            utilizador::clicar(erro, u"cmdEncerrar"_s);
            ::_exit(aindaViva);
        }
        int estadoFinal = 0;
        QCOMPARE(::waitpid(pid, &estadoFinal, 0), pid);
        QVERIFY(WIFEXITED(estadoFinal));
        QVERIFY(WEXITSTATUS(estadoFinal) != aindaViva);
        QVERIFY(erro->isVisible()); // here it was only looked at
    }

    void iconesSeguemAPaleta() {
        const auto cores = [](const QIcon &icone, QIcon::Mode modo) {
            const QImage imagem = icone.pixmap(QSize(48, 48), 1, modo).toImage();
            int claros = 0;
            int escuros = 0;
            for (int y = 0; y < imagem.height(); ++y)
                for (int x = 0; x < imagem.width(); ++x)
                    if (qAlpha(imagem.pixel(x, y)) > 200)
                        ++(QColor(imagem.pixel(x, y)).lightness() > 127 ? claros : escuros);
            return claros + escuros == 0 ? u"nothing"_s : claros > escuros ? u"light"_s : u"dark"_s;
        };
        const QIcon botao = icones::icone(u"temperatura"_s);
        const QIcon menu = icones::icone(u"temperatura"_s, icones::Uso::Menu);
        QPalette p = m_paleta;
        p.setColor(QPalette::WindowText, Qt::black);
        p.setColor(QPalette::HighlightedText, Qt::white);
        QApplication::setPalette(p);
        QCOMPARE(cores(botao, QIcon::Normal), u"dark"_s);
        QCOMPARE(cores(botao, QIcon::Active), u"dark"_s);
        QCOMPARE(cores(menu, QIcon::Active), u"light"_s);
        p.setColor(QPalette::WindowText, Qt::white);
        QApplication::setPalette(p);
        QCOMPARE(cores(botao, QIcon::Normal), u"light"_s);
        QVERIFY(icones::icone(u"nenhum"_s).isNull());
    }

private:
    QPalette m_paleta;
};

QTEST_MAIN(tst_janelas)
#include "tst_janelas.moc"
