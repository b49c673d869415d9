#include "platform/onewire/barramento.h"
#include "tests/bancada1921.h"

#include <QJsonObject>

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
    utilizador::controlo<QComboBox>(b.form, u"cboLimMax"_s)->setCurrentText(u"8,0"_s);
}

// Nothing of a button is shown, and nothing but a read is offered.
void semNada(const Bancada &b) {
    for (const char *caixa : {"txtEstadoMissao", "txtAcertoTemp", "lblDescricaoRegistador"})
        QCOMPARE(b.texto(caixa), QString());
    for (const char *fechado : {"lblAssistente", "lblResultados", "lblGrafico", "cmdPararMissao"})
        QVERIFY2(!b.permitido(fechado), fechado);
    QVERIFY(b.permitido("lblEstado") && b.visivel("FrameEstado") && b.permitido("cmdLer"));
}

void formatar(const Bancada &b) {
    b.clicar("lblNumeroMissoes");
    QTest::keyClicks(utilizador::controlo<QLineEdit>(b.form, u"txtPass"_s), u"QUINTAL"_s);
}

} // namespace

// What goes wrong with a button, its reader and the window.
class tst_logger_falhas : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // Whatever page cannot be read, the mission stays as it is and nothing is stored or asked.
    void leituraPerdida_data() {
        const Tabela<QString, Campo, int> caso("botao", "defeito", "quando");
        for (const QString &botao : {u"cmdLer"_s, u"cmdLerDados"_s}) {
            caso(qPrintable(botao + u", first page"), botao, &DefeitosBotao::crcErrado, 5);
            for (int paginas = 1; paginas <= 7; ++paginas) // the record's, and the registers twice
                caso(qPrintable(botao + u", behind page %1"_s.arg(paginas)), botao, &DefeitosBotao::contacto, paginas);
            caso(qPrintable(botao + u", no adapter"), botao, &DefeitosBotao::adaptadorFora, 4);
        }
    }
    void leituraPerdida() {
        QFETCH(QString, botao);
        QFETCH(Campo, defeito);
        QFETCH(int, quando);
        Bancada b;
        b.descarregar();
        b.instalacao.executar(u"DELETE FROM DS1921head"_s);
        b.andar(300);
        b.leitor.defeitos().*defeito = quando;
        b.instalacao.dialogos.esperarMensagem(u"A leitura do registador ficou a meio"_s);
        utilizador::clicar(b.form, botao);
        b.instalacao.verificar();
        QVERIFY(b.leitor.chip().missao() && b.leitor.chip().contador() > 11);
        QCOMPARE(b.linhas() + b.linhas(u"DS1921head"_s), 11);
        semNada(b);
        b.leitor.defeitos() = {}; // it was only lost for a moment
        b.clicar("cmdLerDados");
        QCOMPARE(b.linhas(), 41);
        QCOMPARE(b.texto("lblResumo"), u"Amostras lidas: 41; guardadas agora: 30"_s);
        QVERIFY(b.permitido("cmdPararMissao"));
    }

    // A page of the record's chain that holds no part of it; the record goes over three.
    void registoIncompleto() {
        for (const int pagina : {1, 2, 3}) {
            Bancada b;
            b.programar();
            b.andar(101);
            const quint8 estrago[] = {0x1C, 0xA5, 0x5A};
            QVERIFY(b.leitor.chip().copiar(32 * pagina, estrago));
            b.instalacao.dialogos.esperarMensagem(u"não está inteiro"_s);
            b.clicar("cmdLerDados");
            b.instalacao.verificar();
            QCOMPARE(b.linhas() + b.linhas(u"DS1921head"_s), 0);
            QVERIFY(b.leitor.chip().missao() && !b.permitido("cmdPararMissao") && !b.permitido("lblResultados"));
            QCOMPARE(b.texto("lblDescricaoRegistador") + b.texto("lblMissao"), QString());
        }
    }

    // Memory, state, and samples are of one button, whenever another one takes its place.
    void trocadoDuranteALeitura() {
        for (int abertura = 0; abertura <= 5; ++abertura) {
            Bancada b;
            b.descarregar();
            b.leitor.fazer(u"B"_s, simulador::Variante::G, 0x777777);
            b.programar({.registador = u"Cais"_s, .missao = u"Outra"_s});
            b.andar(50);
            b.leitor.por({u"A"_s});
            b.instalacao.executar(u"DELETE FROM DS1921head"_s);
            b.instalacao.executar(u"DELETE FROM DS1921"_s);
            if (abertura == 0) { // the adapter is lost for the memory of the second button
                b.clicar("cmdLer");
                b.leitor.por({u"B"_s});
            }
            b.leitor.aoAbrir = [&, n = 0](qint16, qint16) mutable {
                b.leitor.semAdaptador = abertura == 0 && n == 1;
                if (++n == abertura)
                    b.leitor.por({u"B"_s});
            };
            const bool antesDeLer = abertura == 1 || abertura == 2; // the first only sees what there is
            if (!antesDeLer)
                b.instalacao.dialogos.esperarMensagem({});
            b.clicar("cmdLerDados");
            b.leitor.aoAbrir = nullptr;
            b.instalacao.verificar();
            const QString guardado = u"SELECT group_concat(DISTINCT Nomelogger || DescricaoMissao) FROM "_s;
            QCOMPARE(b.um(guardado + u"DS1921").toString(), antesDeLer ? u"CaisOutra"_s : QString());
            QVERIFY(!b.um(guardado + u"DS1921head").toString().contains(u','));
            QCOMPARE(b.permitido("cmdPararMissao"), antesDeLer);
        }
    }

    // Samples without a start have no date: none is stored, and they are not offered to be wiped.
    void semInicio() {
        Bancada b;
        b.programar();
        b.andar(101);
        QJsonObject chip = b.leitor.chip().guardar();
        QByteArray memoria = qUncompress(QByteArray::fromBase64(chip.value(u"memoria").toString().toLatin1()));
        memoria.replace(0x215, 5, QByteArray(5, '\xFF')); // the time stamp of the mission
        chip[u"memoria"_s] = QString::fromLatin1(qCompress(memoria).toBase64());
        QVERIFY(b.leitor.chip().repor(chip));
        b.instalacao.dialogos.esperarMensagem(u"não diz quando a missão começou"_s);
        b.clicar("cmdLerDados");
        b.instalacao.verificar();
        QCOMPARE(b.linhas(), 0);
        QVERIFY(b.leitor.chip().missao() && !b.permitido("cmdPararMissao") && !b.permitido("lblResultados"));
    }

    // What is about to be destroyed is the button that was read, and as it was read.
    void trocadoAntesDeDestruir_data() {
        const Tabela<QString, bool, QString> caso("accao", "lidoEmMissao", "mensagem");
        caso("stop", u"parar"_s, true, u"No leitor está o registador"_s);
        caso("format", u"formatar"_s, true, u"Erro ao formatar Registador!\nNo leitor está"_s);
        caso("program", u"programar"_s, false, u"tentar escrever no Registador\nNo leitor está"_s);
        caso("started meanwhile", u"iniciado"_s, false, u"Registador\nO registador"_s);
    }
    void trocadoAntesDeDestruir() {
        QFETCH(QString, accao);
        QFETCH(bool, lidoEmMissao);
        QFETCH(QString, mensagem);
        Bancada b;
        if (lidoEmMissao)
            b.descarregar();
        else
            b.clicar("cmdLer");
        nomear(b);
        const QVariantList cabeca = b.instalacao.linha(u"SELECT DataFimMissao FROM DS1921head"_s);
        if (accao != u"iniciado")
            b.leitor.fazer(u"B"_s, simulador::Variante::G, 0x777777);
        b.leitor.chip().iniciar(10, 0, false, 20.0, 40.0);
        b.andar(60);
        b.instalacao.dialogos.esperarMensagem(mensagem);
        if (accao == u"parar")
            b.clicar("cmdPararMissao");
        else if (accao == u"formatar")
            formatar(b);
        else
            b.clicar("cmdConcluir");
        b.instalacao.verificar();
        if (accao != u"iniciado")
            QVERIFY(b.instalacao.dialogos.textos.filter(u"e o que foi lido é o EA00000012345621."_s).size() == 1);
        QVERIFY(b.leitor.chip().missao() && b.leitor.chip().contador() > 3);
        QCOMPARE(int(b.leitor.chip().ler(32)), 0); // nor its record
        QCOMPARE(b.instalacao.linha(u"SELECT DataFimMissao FROM DS1921head"_s), cabeca);
        if (lidoEmMissao)
            semNada(b);
    }

    // Given up in whatever operation: no tab shows less than all.
    void cancelado() {
        for (int volta = 2; volta <= 5; ++volta) { // before, nothing is read anew
            Bancada b;
            b.descarregar();
            b.clicar("lblResultados");
            QPointer<QDialog> espera;
            b.leitor.aoAbrir = [&, n = 0](qint16, qint16) mutable {
                if (++n == volta)
                    qobject_cast<QDialog *>(utilizador::form(u"frmEsperaLogger"_s))->reject();
            };
            QTest::keyClick(b.form, Qt::Key_PageDown, Qt::ControlModifier);
            b.clicar("lblEstado");
            b.clicar("cmdLerDados");
            for (const char *fechado : {"lblResultados", "lblGrafico", "lblAssistente", "cmdPararMissao"})
                QVERIFY2(!b.permitido(fechado), fechado);
            QCOMPARE(b.amostras()->linhas(), 0);
            QVERIFY(b.visivel("FrameEstado"));
        }
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
        b.instalacao.dialogos.esperarMensagem(u"nenhuma foi guardada"_s);
        b.clicar("cmdLerDados");
        b.instalacao.verificar();
        QCOMPARE(b.linhas(), 0);
        QVERIFY(!b.permitido("cmdPararMissao") && !b.permitido("lblResultados") && !b.permitido("lblGrafico") &&
                b.permitido("cmdLerDados"));
        b.leitor.por({u"A"_s});
        // The window goes on working while all of it is fetched and stored.
        int voltas = 0;
        QTimer relogio;
        connect(&relogio, &QTimer::timeout, this, [&] { ++voltas; });
        relogio.start(0);
        estado().linhasPorFatia = 1;
        b.instalacao.dialogos.responderPergunta(true, u"Deseja parar"_s);
        b.clicar("cmdLerDados");
        QVERIFY2(voltas > 64, qPrintable(QString::number(voltas))); // at least one for each page of the log
        QCOMPARE(b.linhas(), 2048);
        QVERIFY(!b.leitor.chip().missao());
        b.descarregar(10, {.intervalo = u"1"_s}); // the next mission is not asked for
        QCOMPARE(b.texto("txtEstadoMissao"), u"Activa"_s);
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
        const bool foi = defeito == &DefeitosBotao::retirar || defeito == &DefeitosBotao::adaptadorFora;
        QVERIFY2(!foi || b.leitor.chip().missao() || ditos.size() == 1, qPrintable(ditos.join(u'|')));
        if (defeito == &DefeitosBotao::copiaRecusada)
            QVERIFY(!b.leitor.chip().missao() && ditos.filter(u"erro ao tentar escrever"_s).size() == 1);
        if (b.leitor.chip().missao())
            return;
        b.clicar("lblEstado");
        // Half a record may be left behind: it can be written anew.
        b.instalacao.dialogos.tolerante = true;
        b.clicar("cmdLer");
        b.instalacao.dialogos.tolerante = false;
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
        bool cancelada = false, desistiu = false, devolvido = false;
        QTimer atento;
        connect(&atento, &QTimer::timeout, b.form, [&] {
            const QWidget *espera = utilizador::form(u"frmEsperaLogger"_s);
            if (!espera || !espera->isVisible())
                return;
            QVERIFY(!b.leitor.chip().missao() || devolvido);
            if (!cancelada) {
                cancelada = true;
                utilizador::clicar(espera, u"cmdCancelar"_s);
            } else if (desistiu) {
                devolvido = true;
                b.leitor.semAdaptador = false;
            }
        });
        atento.start(1);
        b.clicar("cmdConcluir");
        desistiu = true;
        QVERIFY(cancelada && !b.leitor.chip().missao());
        b.clicar("cmdConcluir");
        QVERIFY(devolvido);
        QVERIFY(b.leitor.chip().missao());
        QCOMPARE(b.texto("txtEstadoMissao"), u"Atraso Activo"_s);
    }

    void fechadaNoMeio_data() {
        const Tabela<QString, int> caso("botao", "volta");
        // How often each opens the bus.
        for (const auto &[botao, voltas] : {std::pair(u"cmdLer"_s, 2), {u"cmdLerDados"_s, 4}, {u"cmdPararMissao"_s, 7}})
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

    // Nobody has the keyboard while the main window is closed to the user; afterwards the button has it again.
    void tecladoDepoisDeDesactivada() {
        QWidget principal;
        Bancada b;
        b.descarregar();
        b.form->setParent(&principal);
        b.form->show();
        utilizador::mostrar(&principal);
        principal.activateWindow();
        registoForms().dono = &principal;
        b.controlo("cmdLerDados")->setFocus();
        b.clicar("cmdLerDados");
        QCOMPARE(principal.focusWidget(), b.controlo("cmdLerDados"));
        registoForms().dono = nullptr;
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
