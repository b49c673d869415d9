#include "platform/onewire/barramento.h"
#include "tests/apoio/tabela.h"
#include "tests/bancada1921.h"

#include <QElapsedTimer>
#include <QTimer>

using simulador::DefeitosBotao;
using Campo = int DefeitosBotao::*;

namespace {

// A fault that strikes at any byte: whatever it makes the form say is in order.
void comDefeito(Bancada &b, Campo defeito, int quando, const char *botao) {
    b.instalacao.dialogos.tolerante = b.instalacao.erros.tolerante = true;
    b.leitor.defeitos().*defeito = quando;
    b.clicar(botao);
    b.instalacao.dialogos.tolerante = b.instalacao.erros.tolerante = false;
    b.leitor.defeitos() = {};
    b.leitor.por({u"A"_s});
    b.leitor.linha->reset();
}

// Ready to be programmed.
void nomear(const Bancada &b) {
    utilizador::controlo<QLineEdit>(b.form, u"txtDescricaoRegistador"_s)->setText(u"r"_s);
    utilizador::controlo<QLineEdit>(b.form, u"txtDescricaoMissao"_s)->setText(u"m"_s);
}

} // namespace

// What goes wrong with a button, its reader and the window.
class tst_logger_falhas : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void semBotao_data() {
        const Tabela<bool, QString> caso("semAdaptador", "noLeitor");
        caso("no adapter", true, u"A"_s);
        caso("nothing on the reader", false, {});
        caso("another family", false, u"T"_s);
    }
    void semBotao() {
        QFETCH(bool, semAdaptador);
        QFETCH(QString, noLeitor);
        Bancada b;
        b.descarregar();
        b.leitor.fazer(u"T"_s, simulador::fazerRom(0x28, 77, 0));
        b.leitor.por({noLeitor});
        b.leitor.semAdaptador = semAdaptador;
        for (const char *botao : {"cmdLer", "cmdLerDados"}) {
            b.instalacao.dialogos.esperarMensagem(u"DS1921 não encontrado"_s);
            b.clicar(botao);
            b.instalacao.verificar();
            for (const char *caixa : {"txtEstadoMissao", "txtAcertoTemp", "lblDescricaoRegistador"})
                QCOMPARE(b.texto(caixa), QString());
            for (const char *fechado : {"lblAssistente", "lblResultados", "lblGrafico", "cmdPararMissao"})
                QVERIFY2(!b.permitido(fechado), fechado);
            QVERIFY(b.permitido("lblEstado") && b.visivel("FrameEstado") && b.permitido("cmdLer"));
        }
        QCOMPARE(b.linhas(), 11);
    }

    void retirado() {
        for (const int bytes : {1, 200, 900, 1800, 3000}) {
            Bancada b;
            b.descarregar();
            b.andar(300);
            comDefeito(b, &DefeitosBotao::retirar, bytes, "cmdLerDados");
            QVERIFY2(b.linhas() == 11 || b.linhas() == 41, qPrintable(QString::number(b.linhas())));
            b.clicar("lblEstado");
            b.clicar("cmdLerDados");
            QCOMPARE(b.linhas(), 41);
            QCOMPARE(b.um(u"SELECT COUNT(DISTINCT Data) FROM DS1921"_s).toInt(), 41);
        }
    }

    // A mission past its end is only to be stopped once its samples were fetched.
    void depoisDoFim() {
        Bancada b;
        b.programar({.intervalo = u"1"_s});
        b.andar(2060);
        b.leitor.defeitos().retirar = 2000; // within the log
        b.instalacao.dialogos.esperarMensagem(u"DS1921 não encontrado"_s);
        b.clicar("cmdLerDados");
        b.instalacao.verificar();
        QCOMPARE(b.linhas(), 0);
        QVERIFY(!b.permitido("lblResultados") && !b.permitido("lblGrafico") && b.permitido("cmdLerDados"));
        b.leitor.por({u"A"_s});
        // The window goes on working while all of it is fetched and stored.
        QElapsedTimer desde;
        desde.start();
        qint64 maior = 0;
        QTimer relogio;
        connect(&relogio, &QTimer::timeout, this, [&] { maior = std::max(maior, desde.restart()); });
        relogio.start(1);
        b.instalacao.dialogos.responderPergunta(true, u"Deseja parar"_s);
        b.clicar("cmdLerDados");
        maior = std::max(maior, desde.elapsed());
        QVERIFY2(maior < 400, qPrintable(QString::number(maior))); // a shared machine; alone it is a tenth of this
        QCOMPARE(b.linhas(), 2048);
        QVERIFY(!b.leitor.chip().missao());
        b.descarregar(10, {.intervalo = u"1"_s}); // the next mission is not asked for
        QCOMPARE(b.texto("txtEstadoMissao"), u"Activa"_s);
    }

    void botaoTrocado() {
        Bancada b;
        b.clicar("cmdLer");
        nomear(b);
        b.leitor.fazer(u"B"_s, simulador::Variante::G, 0x777777);
        b.instalacao.dialogos.esperarMensagem(u"erro ao tentar escrever no Registador"_s);
        b.clicar("cmdConcluir");
        QVERIFY(!b.leitor.chip().missao());
        QCOMPARE(int(b.leitor.chip().ler(32)), 0); // nor its record
    }

    void escritaRecusada_data() {
        const Tabela<Campo, int> caso("defeito", "quando");
        caso("copies are refused", &DefeitosBotao::copiaRecusada, 1000);
        caso("scratchpads differ", &DefeitosBotao::esErrado, 1000);
        for (const int bytes : {20, 400, 1000, 1700})
            caso(qPrintable(u"taken off after %1 bytes"_s.arg(bytes)), &DefeitosBotao::retirar, bytes);
        for (const int operacoes : {1, 40, 130})
            caso(qPrintable(u"no adapter after %1"_s.arg(operacoes)), &DefeitosBotao::adaptadorFora, operacoes);
    }
    void escritaRecusada() {
        QFETCH(Campo, defeito);
        QFETCH(int, quando);
        Bancada b;
        b.clicar("cmdLer");
        nomear(b);
        comDefeito(b, defeito, quando, "cmdConcluir");
        const QStringList ditos = b.instalacao.dialogos.textos + b.instalacao.erros.mensagens;
        QVERIFY(b.leitor.chip().missao() || !ditos.isEmpty());
        if (defeito == &DefeitosBotao::copiaRecusada)
            QVERIFY(!b.leitor.chip().missao() && ditos.filter(u"erro ao tentar escrever"_s).size() == 1);
        if (b.leitor.chip().missao())
            return;
        b.clicar("lblEstado");
        // Half a record may be left behind: it is no text that can be read.
        b.instalacao.dialogos.responderPergunta(true, u"Deseja formatar"_s);
        b.clicar("cmdLer");
        b.instalacao.dialogos.esquecer();
        nomear(b);
        b.clicar("lblAssistente");
        b.clicar("cmdConcluir");
        QVERIFY(b.leitor.chip().missao());
        QCOMPARE(b.texto("lblMissao"), u"m"_s);
    }

    // The wait for an adapter that another program holds: given up by the user, then ended by that program.
    void esperaPeloAdaptador() {
        Bancada b;
        b.clicar("cmdLer");
        nomear(b);
        b.leitor.semAdaptador = true;
        QTimer::singleShot(700, b.form, [] { utilizador::clicar(nullptr, u"cmdCancelar"_s); });
        b.clicar("cmdConcluir");
        bool mostrada = false;
        QTimer::singleShot(700, b.form, [&] {
            mostrada = utilizador::form(u"frmEsperaLogger"_s)->isVisible();
            b.leitor.semAdaptador = false;
            QVERIFY(!b.leitor.chip().missao());
        });
        b.clicar("cmdConcluir");
        QVERIFY(mostrada);
        QVERIFY(b.leitor.chip().missao());
        QCOMPARE(b.texto("txtEstadoMissao"), u"Atraso Activo"_s);
    }

    void fechadaNoMeio_data() {
        const Tabela<QString, int> caso("botao", "volta");
        // How often each opens the bus.
        for (const auto &[botao, voltas] : {std::pair(u"cmdLer"_s, 2), {u"cmdLerDados"_s, 4}, {u"cmdPararMissao"_s, 6}})
            for (int volta = 1; volta <= voltas; ++volta)
                caso(qPrintable(botao + u", opening " + QString::number(volta)), botao, volta);
    }
    void fechadaNoMeio() {
        QFETCH(QString, botao);
        QFETCH(int, volta);
        Bancada b;
        b.descarregar();
        b.andar(300);
        if (botao == u"cmdPararMissao")
            b.instalacao.dialogos.responderPergunta(true, u"Deseja parar"_s);
        b.leitor.aoAbrir = [&, aberturas = 0](qint16, qint16) mutable {
            if (++aberturas != volta)
                return;
            b.form->close();
            QCoreApplication::sendPostedEvents(b.form, QEvent::DeferredDelete);
        };
        utilizador::clicar(b.form, botao);
        QVERIFY(!b.form);
        QCOMPARE(onewire::barramento().sessao, 0);
        QVERIFY(!onewire::barramento().passar);
        QVERIFY(b.linhas() == 11 || b.linhas() == 41);
        b.instalacao.dialogos.esquecer();
        b.abrir();
        b.clicar("cmdLer"); // a new one can work at once
        QVERIFY(!b.texto("txtEstadoMissao").isEmpty());
    }

    void principalDesactivada() {
        QWidget principal;
        principal.show();
        Bancada b;
        b.programar();
        b.andar(101);
        registoForms().dono = &principal;
        int menus = 0;
        registoForms().alterarEstadosMenus = [&] { ++menus; };
        bool aberta = false;
        b.leitor.aoAbrir = [&](qint16, qint16) { aberta |= principal.isEnabled(); };
        b.clicar("cmdLerDados");
        QVERIFY(!aberta && principal.isEnabled());
        QCOMPARE(menus, 1);
        // A failure on the way leaves nothing disabled.
        b.instalacao.executar(u"DROP TABLE DS1921"_s);
        b.andar(20);
        b.instalacao.erros.esperar(u"frmDS1921.DownloadLog"_s);
        b.clicar("cmdLerDados");
        QVERIFY(principal.isEnabled() && b.permitido("cmdLer") && b.permitido("cmdLerDados"));
        QVERIFY(!b.visivel("ProgressBar1"));
        registoForms().dono = nullptr;
        registoForms().alterarEstadosMenus = nullptr;
    }
};

QTEST_MAIN(tst_logger_falhas)
#include "tst_logger_falhas.moc"
