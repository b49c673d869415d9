#include "manutencao/registar.h"
#include "platform/onewire/barramento.h"
#include "tests/bancada1921.h"

using simulador::DefeitosBotao;
using simulador::Variante;
using Campo = int DefeitosBotao::*;

namespace {

// Without going through the steps.
void digitar(const Bancada &b, const char *caixa, const QString &texto) {
    utilizador::controlo<QLineEdit>(b.form, QString::fromLatin1(caixa))->setText(texto);
}

} // namespace

// What whoever works with buttons is told, asked and spared.
class tst_logger_uso : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void causas_data() {
        const Tabela<Campo, int, QString, QString> caso("defeito", "quando", "noLeitor", "remedio");
        const Campo nenhum = nullptr;
        caso("no button", nenhum, 0, {}, u"Encaixe-o bem"_s);
        caso("another family", nenhum, 0, u"T"_s, u"Encaixe-o bem"_s);
        caso("no adapter", nenhum, 0, u"-"_s, u"Ligue-o outra vez"_s);
        caso("adapter pulled out", &DefeitosBotao::adaptadorFora, 10, u"A"_s, u"Ligue-o outra vez"_s);
        caso("noise", &DefeitosBotao::ruido, 1'000'000, u"A"_s, u"Limpe os contactos"_s);
        caso("answers that do not fit", &DefeitosBotao::crcErrado, 1'000'000, u"A"_s, u"Limpe os contactos"_s);
        caso("taken off while read", &DefeitosBotao::retirar, 350, u"A"_s, u"não lhe toque"_s);
    }
    // Each has its own sentence, in one message and nowhere else.
    void causas() {
        QFETCH(const Campo, defeito);
        QFETCH(const int, quando);
        QFETCH(const QString, noLeitor);
        QFETCH(const QString, remedio);
        Bancada b;
        b.leitor.fazer(u"T"_s, simulador::fazerRom(0x28, 77, 0));
        b.leitor.por({noLeitor});
        b.leitor.semAdaptador = noLeitor == u"-";
        if (defeito)
            b.leitor.defeitos().*defeito = quando;
        b.instalacao.dialogos.tolerante = true;
        b.clicar("cmdLer");
        QCOMPARE(b.instalacao.dialogos.textos.filter(remedio).size(), 1);
        QVERIFY(b.instalacao.erros.mensagens.isEmpty());
        b.leitor.defeitos() = {};
        b.leitor.semAdaptador = false;
        b.leitor.por({u"A"_s});
        b.instalacao.dialogos.tolerante = false;
        b.clicar("cmdLer"); // and nothing of it is left
        QCOMPARE(b.texto("txtEstadoMissao"), u"Sem Missão"_s);
    }

    // Several on the reader: their numbers and names, and none unless the user says which.
    void variosBotoes() {
        Bancada b;
        b.descarregar();
        b.leitor.fazer(u"B"_s, Variante::H, 0x777777);
        b.leitor.por({u"A"_s, u"B"_s});
        auto &dialogos = b.instalacao.dialogos;
        dialogos.responderEscolha(-1, u"vários registadores"_s);
        b.clicar("cmdLer");
        QCOMPARE(b.texto("lblDescricaoRegistador"), u"Registador Vacinas"_s); // what was read before
        const QStringList nomes = dialogos.ultimasOpcoes;
        QCOMPARE(nomes.size(), 2);
        const auto qualE = [&](const QString &trecho) { return int(nomes.indexOf(nomes.filter(trecho).value(0))); };
        const int a = qualE(u"Registador Vacinas, 0001 Transporte Évora"_s);
        const int outro = 1 - a;
        QVERIFY(nomes[a].startsWith(b.um(u"SELECT DISTINCT LoggerID FROM DS1921"_s).toString()));
        for (const int qual : {outro, a, outro}) {
            dialogos.responderEscolha(qual);
            b.clicar("lblEstado");
            b.clicar("cmdLer");
            QVERIFY(b.form->windowTitle().contains(nomes[qual].left(16)));
            QCOMPARE(b.texto("txtEstadoMissao"), qual == a ? u"Activa"_s : u"Sem Missão"_s);
        }
        // All that follows is done with the chosen one.
        digitar(b, "txtDescricaoRegistador", u"Segundo"_s);
        digitar(b, "txtDescricaoMissao", u"m"_s);
        utilizador::controlo<QComboBox>(b.form, u"cboLimMax"_s)->setCurrentText(u"20,0"_s);
        b.clicar("cmdConcluir");
        QVERIFY(b.leitor.chipDe(u"B"_s).missao() && b.leitor.chipDe(u"A"_s).missao());
        QCOMPARE(b.texto("lblDescricaoRegistador"), u"Segundo"_s);
        dialogos.responderEscolha(a);
        b.clicar("cmdLerDados");
        b.parar();
        QVERIFY(b.leitor.chipDe(u"B"_s).missao() && !b.leitor.chipDe(u"A"_s).missao());
        // With the chosen one gone the other is not taken in its stead.
        b.leitor.por({u"B"_s});
        dialogos.tolerante = true;
        b.clicar("lblAssistente");
        utilizador::controlo<QComboBox>(b.form, u"cboIntervaloLeitura"_s)->setCurrentText(u"99"_s);
        b.clicar("cmdConcluir");
        QVERIFY(!dialogos.textos.filter(u"erro ao tentar escrever"_s).isEmpty());
        QVERIFY(b.leitor.chip().missao() && b.leitor.chip().ler(0x20D) != 99);
    }

    void assistenteComecaNoPresente() {
        Bancada b;
        auto *data = utilizador::controlo<QDateEdit>(b.form, u"DTPdataInicio"_s);
        b.clicar("cmdLer");
        data->setDate(data->date().addDays(30));
        b.leitor.fazer(u"B"_s, Variante::G, 0x777777);
        b.andar(24 * 60);
        b.clicar("lblEstado");
        b.clicar("cmdLer");
        QCOMPARE(data->date(), QDate(2026, 3, 3));
        b.clicar("cmdAvancar");
        b.clicar("cmdAvancar");
        QCOMPARE(b.texto("lblLabelMin"), u"0 minutos"_s);
    }

    void tudoEmAlarme_data() {
        const Tabela<int, QString, QString, bool> caso("variante", "minimo", "maximo", "todas");
        caso("as a new fine button has them", int(Variante::H), {}, {}, true);
        caso("equal", int(Variante::G), u"8,0"_s, u"8,0"_s, true);
        caso("at the upper edge", int(Variante::Z), u"26,0"_s, u"26,5"_s, true);
        caso("at the lower edge", int(Variante::G), u"-41,0"_s, u"-40,0"_s, true);
        caso("half a degree", int(Variante::G), u"8,0"_s, u"8,5"_s, false);
    }
    void tudoEmAlarme() {
        QFETCH(const int, variante);
        QFETCH(const QString, minimo);
        QFETCH(const QString, maximo);
        QFETCH(const bool, todas);
        Bancada b{Variante(variante)};
        const quint8 deFabrica[] = {0xFF, 0xFF};
        QVERIFY(b.leitor.chip().copiar(0x20B, deFabrica));
        b.clicar("cmdLer");
        digitar(b, "txtDescricaoRegistador", u"r"_s);
        digitar(b, "txtDescricaoMissao", u"m"_s);
        for (const auto &[lista, valor] : {std::pair(u"cboLimMin"_s, minimo), {u"cboLimMax"_s, maximo}}) {
            auto *cbo = utilizador::controlo<QComboBox>(b.form, lista);
            if (!valor.isEmpty() && cbo->findText(valor) < 0)
                cbo->addItem(valor);
            if (!valor.isEmpty())
                cbo->setCurrentText(valor);
        }
        for (const bool sim : {false, true}) {
            if (todas)
                b.instalacao.dialogos.responderPergunta(sim, u"todas as leituras serão alarmes"_s);
            b.clicar("cmdConcluir");
            b.instalacao.verificar();
            QCOMPARE(b.leitor.chip().missao(), sim || !todas);
            if (!todas)
                return;
            QVERIFY(sim || b.visivel("FrameAssis(4)"));
        }
    }

    // The word is taken with its last letter; an Enter behind it is not for the assistant.
    void enterDaPalavra() {
        Bancada b;
        registarManutencao(registoForms());
        b.descarregar();
        b.instalacao.executar(u"DELETE FROM DS1921"_s);
        b.instalacao.dialogos.responderPergunta(true);
        b.instalacao.dialogos.responderPergunta(true);
        QTimer atento;
        connect(&atento, &QTimer::timeout, b.form, [&] {
            const QWidget *dialogo = utilizador::form(u"frmPassWord"_s);
            if (!dialogo)
                return;
            atento.stop();
            QTest::keyClicks(utilizador::controlo<QLineEdit>(dialogo, u"txtPassWord"_s), u"Vistrel"_s);
        });
        atento.start(1);
        b.clicar("cmdPararMissao");
        QVERIFY(b.visivel("FrameAssis(0)"));
        QTest::keyClick(b.controlo("cmdAvancar"), Qt::Key_Return);
        QVERIFY(b.visivel("FrameAssis(0)"));
        QTest::keyClick(b.controlo("cmdAvancar"), Qt::Key_Return);
        QVERIFY(b.visivel("FrameAssis(1)"));
    }

    // A write that failed leaves all that was typed, until it is done with the same button.
    void digitadoFica() {
        Bancada b;
        b.clicar("cmdLer");
        digitar(b, "txtDescricaoRegistador", u"Arca"_s);
        digitar(b, "txtDescricaoMissao", u"Verão"_s);
        const std::pair<QString, QString> escolhas[] = {{u"cboIntervaloLeitura"_s, u"15"_s},
                                                        {u"cboCalibracao"_s, u"-0,5"_s},
                                                        {u"cboLimMin"_s, u"2,0"_s},
                                                        {u"cboLimMax"_s, u"8,0"_s}};
        for (const auto &[lista, valor] : escolhas)
            utilizador::controlo<QComboBox>(b.form, lista)->setCurrentText(valor);
        auto *data = utilizador::controlo<QDateEdit>(b.form, u"DTPdataInicio"_s);
        data->setDate(data->date().addDays(3));
        const auto conferir = [&] {
            QCOMPARE(b.texto("txtDescricaoRegistador"), u"Arca"_s);
            QCOMPARE(b.texto("txtDescricaoMissao"), u"Verão"_s);
            QCOMPARE(data->date(), QDate(2026, 3, 5));
            for (const auto &[lista, valor] : escolhas)
                QCOMPARE(b.texto(qPrintable(lista)), valor);
            QVERIFY(b.visivel("FrameAssis(5)"));
        };
        b.instalacao.dialogos.tolerante = true;
        b.leitor.defeitos().esErrado = 1000;
        b.clicar("cmdConcluir");
        b.leitor.defeitos() = {};
        conferir();
        b.leitor.tirar();
        b.clicar("cmdConcluir");
        b.leitor.fazer(u"B"_s, Variante::G, 0x777777);
        b.clicar("lblEstado");
        b.clicar("cmdLer"); // another one begins anew
        QCOMPARE(b.texto("txtDescricaoMissao"), QString());
        b.leitor.por({u"A"_s});
        b.clicar("lblEstado");
        b.clicar("cmdLer");
        conferir();
        b.clicar("cmdConcluir");
        QVERIFY(b.leitor.chip().missao());
        QCOMPARE(b.texto("lblMissao"), u"Verão"_s);
    }

    void caracteresRecusados() {
        Bancada b;
        b.clicar("cmdLer");
        b.clicar("cmdAvancar");
        auto *caixa = utilizador::controlo<QLineEdit>(b.form, u"txtDescricaoRegistador"_s);
        caixa->setText(u"Arca"_s);
        for (const auto &[colado, recusado] :
             {std::pair(u" 5 €"_s, u"€"_s), {u"d'Água"_s, u"'"_s}, {u"<b>€"_s, u"€"_s}}) {
            caixa->insert(colado); // all of it or nothing
            QCOMPARE(caixa->text(), u"Arca"_s);
            QVERIFY2(QToolTip::text().contains(u'"' + recusado + u'"'), qUtf8Printable(QToolTip::text()));
        }
        b.escrever("txtDescricaoRegistador", u"€ 5"_s);
        QCOMPARE(caixa->text(), u" 5"_s);
    }
};

QTEST_MAIN(tst_logger_uso)
#include "tst_logger_uso.moc"
