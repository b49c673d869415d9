// The terminal as a user works it, with a server that keeps what it receives.
#include "platform/forms/registoForms.h"
#include "poseidon/forms/registar.h"
#include "tests/apoio/espera.h"
#include "tests/apoio/widgets.h"
#include "tests/log2251.h"

#include <QTcpServer>
#include <QTcpSocket>

using utilizador::clicar;
using utilizador::controlo;
using utilizador::tecla;

namespace {

QPointer<QWidget> abrir(const QString &endereco, const QString &porta) {
    estado().EnderecoTerminal = endereco;
    estado().PortaTerminal = porta;
    registarPoseidon(registoForms());
    const QPointer<QWidget> form = registoForms().abrir(u"frmTelnet"_s);
    utilizador::mostrar(form);
    return form;
}

} // namespace

class tst_terminal : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { m_instalacao = std::make_unique<log2251::BaseRapida>(); }
    void cleanup() { m_instalacao.reset(); }

    // What the other side of the terminal receives, byte by byte.
    void conversa() {
        QTcpServer servidor;
        QVERIFY(servidor.listen(QHostAddress(u"127.0.0.2"_s), 0));
        QByteArray recebido;
        QTcpSocket *la = nullptr;
        connect(&servidor, &QTcpServer::newConnection, this, [&] {
            la = servidor.nextPendingConnection();
            connect(la, &QTcpSocket::readyRead, this, [&] { recebido += la->readAll(); });
            la->write("Poseidon\r\n> ");
        });
        const QPointer<QWidget> form = abrir(u"127.0.0.2"_s, QString::number(servidor.serverPort()));
        auto *log = controlo<QPlainTextEdit>(form, u"Text1"_s);
        auto *linha = controlo<QLineEdit>(form, u"txtLinha"_s);
        clicar(form, u"cmdLigar"_s);
        QTRY_COMPARE(log->toPlainText(), u"Poseidon\n> "_s);
        for (const QString &texto : {u"y"_s, u"list é"_s, u" "_s}) {
            utilizador::escrever(form, u"txtLinha"_s, texto);
            tecla(linha, Qt::Key_Return);
            QVERIFY(log->toPlainText().endsWith(u'>' + texto + u'\n'));
            QCOMPARE(linha->text(), QString());
        }
        QTRY_COMPARE(recebido, QByteArray("ylist \xE9\r\n\r\n")); // no line end behind a menu's key

        tecla(linha, Qt::Key_Up);
        tecla(linha, Qt::Key_Up);
        QCOMPARE(linha->text(), u"list é"_s);
        tecla(linha, Qt::Key_Up);
        tecla(linha, Qt::Key_Up);
        QCOMPARE(linha->text(), u"y"_s);
        tecla(linha, Qt::Key_Down);
        QCOMPARE(linha->text(), u"list é"_s);

        clicar(form, u"cmdSyncTime"_s);
        QCOMPARE(linha->text(), u"c15.03.2024/10:20:30"_s);
        deixarPassar(50);
        QCOMPARE(recebido.size(), 11); // nothing went out by itself
        const QSize antes = log->size();
        form->resize(form->size() + QSize(100, 80));
        QTRY_COMPARE(log->size(), antes + QSize(100, 80));

        la->write("fim\r\n");
        QTRY_VERIFY(log->toPlainText().endsWith(u"fim\n"));
        QSignalSpy fechou(la, &QTcpSocket::disconnected);
        form->close();
        QVERIFY(fechou.size() == 1 || fechou.wait(2000));
    }

    void semLigacao() {
        const QPointer<QWidget> form = abrir(u"127.0.0.99"_s, u"9"_s);
        m_instalacao->dialogos.esperarMensagem(u"Erro de ligação"_s);
        utilizador::escrever(form, u"txtLinha"_s, u"x"_s);
        tecla(controlo<QLineEdit>(form, u"txtLinha"_s), Qt::Key_Return);
        QCOMPARE(controlo<QLineEdit>(form, u"txtLinha"_s)->text(), u"x"_s); // not lost
        m_instalacao->dialogos.esperarMensagem(u"Erro n° 10061 :\n"_s);
        clicar(form, u"cmdLigar"_s);
        QTRY_COMPARE(m_instalacao->dialogos.textos.size(), 2);
        QTRY_VERIFY(controlo<QPushButton>(form, u"cmdLigar"_s)->isEnabled());
        delete form.data();
    }

    void enderecoDeComeco() {
        const QString casos[][4] = {{u"10.0.0.5"_s, u"2001"_s, u"10.0.0.5"_s, u"2001"_s},
                                    {u"casa.exemplo:81"_s, u"x"_s, u"192.168.1."_s, u"99"_s}};
        for (const auto &[endereco, porta, caixa, caixaPorta] : casos) {
            const QPointer<QWidget> form = abrir(endereco, porta);
            QCOMPARE(controlo<QLineEdit>(form, u"txtEndereco"_s)->text(), caixa);
            QCOMPARE(controlo<QLineEdit>(form, u"txtPorta"_s)->text(), caixaPorta);
            delete form.data();
        }
    }

private:
    std::unique_ptr<log2251::BaseRapida> m_instalacao;
};

QTEST_MAIN(tst_terminal)
#include "tst_terminal.moc"
