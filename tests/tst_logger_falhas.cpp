#include "platform/onewire/barramento.h"
#include "tests/apoio/tabela.h"
#include "tests/bancada1921.h"

#include <QElapsedTimer>
#include <QTimer>

namespace {

// Does something when the bus is opened for the nth time from now on.
struct NoMeio {
    NoMeio(int vezes, std::function<void()> faz) : anterior(onewire::barramento().abrir) {
        onewire::barramento().abrir = [this, vezes, faz = std::move(faz)](qint16 porto, qint16 tipo) {
            if (++aberturas == vezes)
                faz();
            return anterior(porto, tipo);
        };
    }
    ~NoMeio() { onewire::barramento().abrir = anterior; }
    NoMeio(const NoMeio &) = delete;
    NoMeio &operator=(const NoMeio &) = delete;

    onewire::Barramento::Fabrica anterior;
    int aberturas = 0;
};

// For faults that strike at any byte.
void tolerar(Bancada &b, bool tolerante) {
    b.instalacao.dialogos.tolerante = tolerante;
    b.instalacao.erros.tolerante = tolerante;
}

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
        QTest::addColumn<int>("falta"); // 0 the adapter, 1 the button, 2 a device of another family is there
        QTest::newRow("no adapter") << 0;
        QTest::newRow("nothing on the reader") << 1;
        QTest::newRow("another family") << 2;
    }
    void semBotao() {
        QFETCH(int, falta);
        Bancada b;
        b.comMissao();
        b.leitor.semAdaptador = falta == 0;
        if (falta == 1)
            b.leitor.tirar();
        if (falta == 2)
            b.leitor.fazer(u"T"_s, simulador::fazerRom(0x28, 77, 0));
        for (const char *botao : {"cmdLer", "cmdLerDados"}) {
            b.instalacao.dialogos.esperarMensagem(u"DS1921 não encontrado"_s);
            b.clicar(botao);
            QCOMPARE(b.caixa("txtEstadoMissao"), QString());
            QCOMPARE(b.caixa("txtAcertoTemp"), QString());
            QCOMPARE(b.etiqueta("lblDescricaoRegistador"), QString());
            QVERIFY(!b.permitido("lblAssistente") && !b.permitido("lblResultados") && !b.permitido("lblGrafico"));
            QVERIFY(b.permitido("lblEstado") && b.visivel("FrameEstado") && b.permitido("cmdLer"));
            QVERIFY(!b.permitido("cmdPararMissao"));
            b.instalacao.verificar();
        }
        QCOMPARE(b.linhasGuardadas(), 11);
    }

    void retirado_data() {
        QTest::addColumn<int>("bytes");
        for (const int bytes : {1, 200, 900, 1800, 3000})
            QTest::addRow("after %d bytes", bytes) << bytes;
    }
    void retirado() {
        QFETCH(int, bytes);
        Bancada b;
        b.comMissao();
        b.andar(300);
        tolerar(b, true);
        b.leitor.defeitos().retirar = bytes;
        b.clicar("cmdLerDados");
        b.leitor.defeitos().retirar = 0;
        const int guardadas = b.linhasGuardadas();
        QVERIFY2(guardadas == 11 || guardadas == 41, qPrintable(QString::number(guardadas)));
        tolerar(b, false);
        b.leitor.por({u"A"_s});
        b.clicar("lblEstado");
        b.clicar("cmdLerDados");
        QCOMPARE(b.linhasGuardadas(), 41);
        QCOMPARE(b.um(u"SELECT COUNT(DISTINCT Data) FROM DS1921"_s).toInt(), 41);
    }

    // A mission past its end is only to be stopped once its samples were fetched.
    void retiradoDepoisDoFim() {
        Bancada b;
        b.programar({.intervalo = u"1"_s});
        b.andar(2060);
        b.leitor.defeitos().retirar = 2000; // within the log
        b.instalacao.dialogos.esperarMensagem(u"DS1921 não encontrado"_s);
        b.clicar("cmdLerDados");
        b.instalacao.verificar();
        QCOMPARE(b.linhasGuardadas(), 0);
        QVERIFY(!b.permitido("lblResultados") && !b.permitido("lblGrafico") && b.permitido("cmdLerDados"));
        b.leitor.por({u"A"_s});
        b.instalacao.dialogos.responderPergunta(true, u"Deseja parar"_s);
        b.clicar("cmdLerDados");
        QCOMPARE(b.linhasGuardadas(), 2048);
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
        using Campo = int simulador::DefeitosBotao::*;
        const Tabela<Campo, int> caso("defeito", "quando");
        caso("copies are refused", &simulador::DefeitosBotao::copiaRecusada, 1000);
        caso("scratchpads differ", &simulador::DefeitosBotao::esErrado, 1000);
        for (const int bytes : {20, 400, 1000, 1700})
            QTest::addRow("taken off after %d bytes", bytes) << &simulador::DefeitosBotao::retirar << bytes;
        for (const int operacoes : {1, 40, 130})
            QTest::addRow("no adapter after %d", operacoes) << &simulador::DefeitosBotao::adaptadorFora << operacoes;
    }
    void escritaRecusada() {
        using Campo = int simulador::DefeitosBotao::*;
        QFETCH(Campo, defeito);
        QFETCH(int, quando);
        Bancada b;
        b.clicar("cmdLer");
        nomear(b);
        tolerar(b, true);
        b.leitor.defeitos().*defeito = quando;
        b.clicar("cmdConcluir");
        tolerar(b, false);
        b.leitor.defeitos() = {};
        b.leitor.por({u"A"_s});
        b.leitor.linha->reset();
        const QStringList ditos = b.instalacao.dialogos.textos + b.instalacao.erros.mensagens;
        QVERIFY(b.leitor.chip().missao() || !ditos.isEmpty());
        if (defeito == &simulador::DefeitosBotao::copiaRecusada)
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
        QCOMPARE(b.etiqueta("lblMissao"), u"m"_s);
    }

    void esperaPeloAdaptador() {
        Bancada b;
        b.clicar("cmdLer");
        nomear(b);
        b.leitor.semAdaptador = true;
        bool mostrada = false;
        QTimer::singleShot(700, b.form, [&] {
            auto *espera = utilizador::form(u"frmEsperaLogger"_s);
            mostrada = espera && espera->isVisible();
            b.leitor.semAdaptador = false;
        });
        b.clicar("cmdConcluir");
        QVERIFY(mostrada);
        QVERIFY(b.leitor.chip().missao());
        QCOMPARE(b.caixa("txtEstadoMissao"), u"Atraso Activo"_s);
    }

    void cancelaAEspera() {
        Bancada b;
        b.clicar("cmdLer");
        nomear(b);
        b.leitor.semAdaptador = true;
        QTimer::singleShot(700, b.form, [] { utilizador::clicar(nullptr, u"cmdCancelar"_s); });
        b.clicar("cmdConcluir");
        b.leitor.semAdaptador = false;
        QVERIFY(!b.leitor.chip().missao());
        b.clicar("cmdConcluir"); // and once more, now that it is free
        QVERIFY(b.leitor.chip().missao());
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
        b.comMissao();
        b.andar(300);
        if (botao == u"cmdPararMissao")
            b.instalacao.dialogos.responderPergunta(true, u"Deseja parar"_s);
        {
            const NoMeio fecha(volta, [&] {
                b.form->close();
                QCoreApplication::sendPostedEvents(b.form, QEvent::DeferredDelete);
            });
            utilizador::clicar(b.form, botao);
            QVERIFY(!b.form);
        }
        QCOMPARE(onewire::barramento().sessao, 0);
        QVERIFY(!onewire::barramento().passar);
        const int guardadas = b.linhasGuardadas();
        QVERIFY(guardadas == 11 || guardadas == 41);
        b.instalacao.dialogos.esquecer();
        b.abrir();
        b.clicar("cmdLer"); // a new one can work at once
        QVERIFY(!b.caixa("txtEstadoMissao").isEmpty());
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
        bool vista = false;
        const NoMeio olha(2, [&] { vista = !principal.isEnabled(); });
        b.clicar("cmdLerDados");
        QVERIFY(vista);
        QVERIFY(principal.isEnabled());
        QCOMPARE(menus, 1);
        // A failure on the way leaves nothing disabled.
        b.instalacao.executar(u"DROP TABLE DS1921"_s);
        b.andar(20);
        b.instalacao.erros.esperar(u"frmDS1921.DownloadLog"_s);
        b.clicar("cmdLerDados");
        QVERIFY(principal.isEnabled());
        QVERIFY(b.permitido("cmdLer") && b.permitido("cmdLerDados"));
        QVERIFY(!b.visivel("ProgressBar1"));
        registoForms().dono = nullptr;
        registoForms().alterarEstadosMenus = nullptr;
    }

    void janelaRespira() {
        Bancada b;
        b.programar({.intervalo = u"2"_s});
        b.andar(2 * 2040);
        QElapsedTimer desde;
        desde.start();
        qint64 maior = 0;
        QTimer relogio;
        connect(&relogio, &QTimer::timeout, this, [&] { maior = std::max(maior, desde.restart()); });
        relogio.start(1);
        b.clicar("cmdLerDados");
        maior = std::max(maior, desde.elapsed());
        QVERIFY(b.linhasGuardadas() >= 2039);
        qInfo("longest stall %lld ms", maior);
        QVERIFY2(maior < 400, qPrintable(QString::number(maior))); // a shared machine; alone it is a tenth of this
    }
};

QTEST_MAIN(tst_logger_falhas)
#include "tst_logger_falhas.moc"
