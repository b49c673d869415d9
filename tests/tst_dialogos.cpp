#include "platform/forms/dialogosQt.h"
#include "platform/forms/registoForms.h"
#include "tests/apoio/espera.h"
#include "tests/apoio/filho.h"
#include "tests/apoio/instalacao.h"

#include <QAbstractButton>
#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QTreeView>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr const char *filtroBD = "Kelvark BD (*.mdb)|*.mdb|Kelvark BD (*.mde)|*.mde";

// The body works in the picker once it has come up, and closes it.
void comSelector(const std::function<void(QFileDialog *)> &corpo, const std::function<void()> &abrir) {
    bool feito = false;
    QTimer::singleShot(50, qApp, [&] {
        auto *selector = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
        QVERIFY(selector);
        corpo(selector);
        feito = true;
        if (selector->isVisible())
            selector->reject();
    });
    abrir();
    QVERIFY(feito);
}

// Whether anybody but the asking process holds a lock on that byte.
QByteArray cadeado(const QString &caminho, off_t byte) {
    Filho outro([&]() -> QByteArray {
        const int ficheiro = ::open(QFile::encodeName(caminho).constData(), O_RDWR);
        struct flock pedido {};
        pedido.l_type = F_WRLCK;
        pedido.l_whence = SEEK_SET;
        pedido.l_start = byte;
        pedido.l_len = 1;
        if (ficheiro < 0 || ::fcntl(ficheiro, F_GETLK, &pedido) != 0)
            return "?";
        return pedido.l_type == F_UNLCK ? "free" : "held";
    });
    return outro.esperar();
}

} // namespace

// The real pickers.
class tst_dialogos : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void perguntas_data() {
        const Tabela<int, bool> caso("tecla", "sim");
        caso("Enter", int(Qt::Key_Return), false);
        caso("Space", int(Qt::Key_Space), false);
        caso("Escape", int(Qt::Key_Escape), false);
        caso("over to Yes", int(Qt::Key_Tab), true);
    }
    // Nothing is destroyed by a key that was meant for something else.
    void perguntas() {
        QFETCH(const int, tecla);
        const Instalacao inst(Instalacao::Base::Nenhuma);
        DialogosQt dialogos;
        QTimer::singleShot(0, qApp, [&] {
            auto *caixa = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            QVERIFY(caixa && QTest::qWaitForWindowActive(caixa));
            QTest::keyClick(caixa->focusWidget(), Qt::Key(tecla));
            if (caixa->isVisible())
                QTest::keyClick(caixa->focusWidget(), Qt::Key_Space);
        });
        QTEST(dialogos.pergunta(u"Eliminar?\n<b>tudo</b>"_s), "sim");
    }

    // The one box with a question is that one: no other could have another default.
    void umaSoPergunta() {
        QDirIterator fontes(QStringLiteral(VISTREL_FONTES), {u"*.cpp"_s}, QDir::Files, QDirIterator::Subdirectories);
        static const QRegularExpression caixa(u"QMessageBox\\s+\\w+[({;]|QMessageBox::question|new QMessageBox|"
                                              "QDialogButtonBox|setStandardButtons"_s);
        QStringList outras;
        while (fontes.hasNext()) {
            const QString ficheiro = fontes.next();
            if (QString::fromUtf8(Instalacao::lerFicheiro(ficheiro)).contains(caixa))
                outras.append(QFileInfo(ficheiro).fileName());
        }
        QCOMPARE(outras, QStringList(u"dialogosQt.cpp"_s));
    }

    void cadeadosDaBase_data() {
        const Tabela<bool> caso("pasta");
        caso("file", false);
        caso("folder", true);
    }
    // Looking for a file in the database's folder leaves the database as it is: open, and known to be.
    void cadeadosDaBase() {
        QFETCH(const bool, pasta);
        const Instalacao inst;
        inst.sensor({u"A1"_s, u"Um"_s});
        const QString onde = inst.ficheiro(u"BD"_s);
        constexpr off_t alguemLigado = 128; // of the log's index
        constexpr off_t alguemALer = 1073741826;
        const auto presos = [&]() -> QByteArray {
            return cadeado(inst.caminhoBD() + u"-shm"_s, alguemLigado) + ' ' + cadeado(inst.caminhoBD(), alguemALer);
        };
        QCOMPARE(presos(), "held held");
        comSelector(
            [&](QFileDialog *selector) {
                QCOMPARE(QDir(selector->directory()).canonicalPath(), QDir(onde).canonicalPath());
                auto *lista = selector->findChild<QTreeView *>(u"treeView"_s);
                QVERIFY(lista);
                if (!pasta)
                    QTRY_VERIFY(lista->model()->rowCount(lista->rootIndex()) > 0);
                deixarPassar(300); // the rest of the folder
            },
            [&] {
                DialogosQt dialogos;
                pasta ? dialogos.escolherPasta(onde) : dialogos.abrirFicheiro(QString::fromUtf8(filtroBD), onde);
            });
        QCOMPARE(presos(), "held held");
    }

    // With nothing marked beforehand nothing looks chosen, and the arrow keys begin at the first.
    void escolherSemMarca() {
        const Instalacao inst(Instalacao::Base::Nenhuma);
        DialogosQt dialogos;
        QTimer::singleShot(0, qApp, [&] {
            QWidget *caixa = QApplication::activeModalWidget();
            QVERIFY(caixa && QTest::qWaitForWindowActive(caixa));
            auto *lista = caixa->findChild<QListWidget *>();
            QTRY_VERIFY(lista->hasFocus());
            QCOMPARE(lista->currentRow(), -1);
            QTest::keyClick(lista, Qt::Key_Return);
            QVERIFY(caixa->isVisible());
            QTest::keyClick(lista, Qt::Key_Down);
            QTest::keyClick(lista, Qt::Key_Return);
            caixa->close();
        });
        QCOMPARE(dialogos.escolher(u"Qual?"_s, {u"um"_s, u"dois"_s}, -1), 0);
    }

    void mensagemComBotao_data() {
        const Tabela<bool> caso("premir");
        caso("pressed", true);
        caso("closed", false);
    }
    // The box belongs to the window that is worked with, not to the main one, which would come before it.
    void mensagemComBotao() {
        QFETCH(const bool, premir);
        const Instalacao inst(Instalacao::Base::Nenhuma);
        DialogosQt dialogos;
        QWidget principal;
        registoForms().dono = &principal;
        principal.show();
        QWidget previsao(&principal, Qt::Window);
        auto *campo = new QLineEdit(&previsao);
        previsao.show();
        previsao.activateWindow();
        campo->setFocus();
        QTRY_VERIFY(campo->hasFocus());
        QWidget *dono = nullptr;
        QTimer::singleShot(0, qApp, [&] {
            auto *caixa = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            QVERIFY(caixa);
            dono = caixa->parentWidget();
            if (!premir)
                return QTest::keyClick(caixa, Qt::Key_Escape);
            for (QAbstractButton *botao : caixa->buttons())
                if (botao->text() == u"Abrir pasta")
                    botao->click();
        });
        QCOMPARE(dialogos.mensagemComBotao(u"onde"_s, u"Abrir pasta"_s), premir);
        QCOMPARE(dono, &previsao);
    }

    void nomeSemExtensao_data() {
        const Tabela<QString, QString> caso("digitado", "nome");
        caso("without", u"leituras"_s, u"leituras.csv"_s);
        caso("with", u"leituras.csv"_s, u"leituras.csv"_s);
        caso("with another", u"leituras.txt"_s, u"leituras.txt"_s);
        caso("as proposed", {}, u"proposto.csv"_s);
    }
    void nomeSemExtensao() {
        QFETCH(const QString, digitado);
        QFETCH(const QString, nome);
        const Instalacao inst(Instalacao::Base::Nenhuma);
        QDir().mkpath(inst.ficheiro(u"saida"_s));
        QString escolhido;
        comSelector(
            [&](QFileDialog *selector) {
                auto *campo = selector->findChild<QLineEdit *>(u"fileNameEdit"_s);
                QCOMPARE(campo->text(), u"proposto.csv"_s);
                if (!digitado.isEmpty())
                    campo->setText(digitado);
                QTest::keyClick(campo, Qt::Key_Return);
            },
            [&] {
                // Today's folder is not there: the one above it takes its place.
                escolhido = DialogosQt().gravarFicheiro(u"proposto.csv"_s, inst.ficheiro(u"saida/2026/11/23"_s),
                                                        u"csv (*.csv)|*.csv"_s);
            });
        QCOMPARE(escolhido, inst.ficheiro(u"saida/"_s + nome));
    }
};

QTEST_MAIN(tst_dialogos)
#include "tst_dialogos.moc"
