#include "logger/memoriaDS1921.h"
#include "manutencao/registar.h"
#include "tests/bancada1921.h"

#include <QDialog>
#include <QTimer>

namespace {

// The dialog as the form calls it: what it does is up to the test.
struct SenhaFalsa {
    explicit SenhaFalsa(bool certa) {
        registoForms().registar(
            u"frmPassWord"_s,
            [this, certa](QWidget *dono) {
                auto *dialogo = new QDialog(dono);
                ++vezes;
                objectivo = estado().ObjectivoPassWord;
                QTimer::singleShot(0, dialogo, [certa, dialogo] {
                    estado().EliminarConfirmado = certa;
                    dialogo->close();
                });
                return dialogo;
            },
            RegistoForms::Modo::Modal);
    }
    int vezes = 0;
    int objectivo = 0;
};

} // namespace

// How missions end, and how buttons are formatted.
class tst_logger_fim : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void paraEGuarda();
    void naoPara();
    void semAmostras_data();
    void semAmostras();
    void senhaDaInstalacao_data();
    void senhaDaInstalacao();
    void antesDoInicio_data();
    void antesDoInicio();
    void fimPassado();
    void formata();
    void palavraErrada();
    void paginasIlegiveis_data();
    void paginasIlegiveis();
};

void tst_logger_fim::paraEGuarda() {
    Bancada b;
    b.comMissao();
    b.instalacao.relogio(u"2026-03-02 10:42:10"_s);
    b.instalacao.dialogos.responderPergunta(true, u"Deseja parar a missão?"_s);
    b.clicar("cmdPararMissao");
    QVERIFY(!b.leitor.chip().missao());
    QCOMPARE(int(b.leitor.chip().ler(0x21A)), 0); // the memory is cleared
    QCOMPARE(b.linhasGuardadas(), 11);
    QCOMPARE(b.instalacao.linha(u"SELECT DataFimMissao, Flag FROM DS1921head"_s),
             (QVariantList{u"2026-03-02 10:42:10"_s, u"NC"_s}));
    QVERIFY(b.visivel("frameAssistente"));
    b.clicar("lblEstado");
    QCOMPARE(b.caixa("txtEstadoMissao"), u"Sem Missão"_s);
    QCOMPARE(b.caixa("txtInicioMissao"), QString());
}

void tst_logger_fim::naoPara() {
    Bancada b;
    b.comMissao();
    b.instalacao.dialogos.responderPergunta(false, u"Deseja parar"_s);
    b.clicar("cmdPararMissao");
    QVERIFY(b.leitor.chip().missao());
    QVERIFY(b.permitido("cmdPararMissao"));
}

void tst_logger_fim::semAmostras_data() {
    QTest::addColumn<bool>("continua");
    QTest::addColumn<bool>("senha");
    QTest::addColumn<bool>("eliminada");
    QTest::newRow("right password") << true << true << true;
    QTest::newRow("no right password") << true << false << false;
    QTest::newRow("no") << false << true << false;
}

void tst_logger_fim::semAmostras() {
    QFETCH(bool, continua);
    QFETCH(bool, senha);
    QFETCH(bool, eliminada);
    Bancada b;
    SenhaFalsa dialogo(senha);
    b.comMissao();
    b.instalacao.executar(u"DELETE FROM DS1921"_s);
    b.instalacao.dialogos.responderPergunta(true, u"Deseja parar"_s);
    b.instalacao.dialogos.responderPergunta(continua, u"não existem dados nesta missão\n"_s);
    b.clicar("cmdPararMissao");
    QCOMPARE(dialogo.vezes, continua ? 1 : 0);
    if (continua)
        QCOMPARE(dialogo.objectivo, 3);
    QCOMPARE(b.um(u"SELECT COUNT(*) FROM DS1921head"_s).toInt(), eliminada ? 0 : 1);
    QCOMPARE(b.leitor.chip().missao(), !eliminada);
    QVERIFY(b.permitido("cmdLer") || !b.visivel("FrameEstado"));
}

void tst_logger_fim::senhaDaInstalacao_data() {
    QTest::addColumn<QString>("digitada");
    QTest::addColumn<bool>("eliminada");
    QTest::newRow("right") << u"Vistrel"_s << true;
    QTest::newRow("given up") << u"vistrel"_s << false;
}

// With the dialog itself.
void tst_logger_fim::senhaDaInstalacao() {
    QFETCH(QString, digitada);
    QFETCH(bool, eliminada);
    Bancada b;
    registarManutencao(registoForms());
    b.comMissao();
    b.instalacao.executar(u"DELETE FROM DS1921"_s);
    b.instalacao.dialogos.responderPergunta(true, u"Deseja parar"_s);
    b.instalacao.dialogos.responderPergunta(true, u"não existem dados"_s);
    QTimer escreve; // once the dialog is there
    connect(&escreve, &QTimer::timeout, this, [&] {
        const QPointer<QWidget> dialogo = registoForms().form(u"frmPassWord"_s);
        if (!dialogo || !dialogo->isVisible())
            return;
        escreve.stop();
        utilizador::escrever(dialogo, u"txtPassWord"_s, digitada);
        if (dialogo && dialogo->isVisible())
            utilizador::tecla(utilizador::controlo<QWidget>(dialogo, u"txtPassWord"_s), Qt::Key_Escape);
    });
    escreve.start(20);
    b.clicar("cmdPararMissao");
    QVERIFY(!escreve.isActive());
    QCOMPARE(b.um(u"SELECT COUNT(*) FROM DS1921head"_s).toInt(), eliminada ? 0 : 1);
    b.leitor.linha->reset();
    QCOMPARE(b.leitor.chip().missao(), !eliminada);
}

void tst_logger_fim::antesDoInicio_data() {
    QTest::addColumn<bool>("continua");
    QTest::addColumn<bool>("semSenha"); // the installation has none
    QTest::newRow("yes, no password set") << true << true;
    QTest::newRow("yes, password not given") << true << false;
    QTest::newRow("no") << false << false;
}

void tst_logger_fim::antesDoInicio() {
    QFETCH(bool, continua);
    QFETCH(bool, semSenha);
    Bancada b;
    SenhaFalsa dialogo(false);
    if (semSenha)
        b.instalacao.escreverFicheiro(b.instalacao.pastaINI() + u"/Vistrel.ini", "[CONFIGURACOES]\r\nPWD=\r\n");
    b.comMissao();
    b.instalacao.relogio(u"2026-03-01 10:00:00"_s);
    b.instalacao.dialogos.responderPergunta(true, u"Deseja parar"_s);
    b.instalacao.dialogos.responderPergunta(
        continua, u"anterior á data de inicio\nPara Terminar a missão é necessário inserir palavra-passe\nDeseja "_s);
    b.clicar("cmdPararMissao");
    QCOMPARE(dialogo.vezes, continua && !semSenha ? 1 : 0);
    QCOMPARE(b.linhasGuardadas(), continua && semSenha ? 0 : 11);
    QCOMPARE(b.leitor.chip().missao(), !(continua && semSenha));
}

void tst_logger_fim::fimPassado() {
    Bancada b;
    b.programar({.intervalo = u"1"_s});
    b.andar(2060);
    b.instalacao.dialogos.responderPergunta(true, u"Deseja parar"_s);
    b.clicar("cmdLerDados");
    QCOMPARE(b.linhasGuardadas(), 2048);
    QVERIFY(!b.leitor.chip().missao());
    // The next mission is not asked for.
    b.programar({.intervalo = u"1"_s});
    b.andar(10);
    b.clicar("cmdLerDados");
    QCOMPARE(b.caixa("txtEstadoMissao"), u"Activa"_s);
}

void tst_logger_fim::formata() {
    Bancada b;
    b.comMissao();
    QVERIFY(b.leitor.chip().ler(0x20) != 0);
    b.clicar("lblNumeroMissoes");
    b.instalacao.dialogos.responderPergunta(true, u"Formatar Registador?"_s);
    auto *senha = utilizador::controlo<QLineEdit>(b.form, u"txtPass"_s);
    QTRY_VERIFY(senha->hasFocus());
    QTest::keyClicks(senha, u"quinTAL"_s);
    QVERIFY(!b.leitor.chip().missao());
    for (int pagina = 0; pagina < 16; ++pagina)
        QCOMPARE(int(b.leitor.chip().ler(32 * pagina)), 0); // empty packets
    QCOMPARE(b.etiqueta("lblDescricaoRegistador"), u"x"_s);
    QCOMPARE(b.linhasGuardadas(), 11); // what is stored stays
}

void tst_logger_fim::palavraErrada() {
    Bancada b;
    b.comMissao();
    b.clicar("lblNumeroMissoes");
    auto *senha = utilizador::controlo<QLineEdit>(b.form, u"txtPass"_s);
    QTest::keyClicks(senha, u"quintais"_s);
    QVERIFY(b.leitor.chip().missao());
    b.clicar("lblNumeroMissoes"); // empties it
    b.instalacao.dialogos.responderPergunta(false, u"Formatar"_s);
    QTest::keyClicks(senha, u"QUINTAL"_s);
    QVERIFY(b.leitor.chip().missao());
    QTRY_VERIFY(b.controlo("cmdLer")->hasFocus());
}

void tst_logger_fim::paginasIlegiveis_data() {
    QTest::addColumn<bool>("formatar");
    QTest::newRow("format") << true;
    QTest::newRow("leave it") << false;
}

void tst_logger_fim::paginasIlegiveis() {
    QFETCH(bool, formatar);
    Bancada b;
    {
        SessaoTMEX sessao({1, 6});
        MemoriaDS1921 memoria;
        QVERIFY(memoria.procurar(sessao.numero(), 0x21));
        QVERIFY(memoria.EscreverPaginaTexto(sessao.numero(), u"lista de compras"_s, 1));
    }
    b.instalacao.dialogos.responderPergunta(formatar, u"Versão antiga detectada"_s);
    b.clicar("cmdLer");
    QCOMPARE(int(b.leitor.chip().ler(32)), formatar ? 0 : 16);
    if (formatar) {
        QCOMPARE(b.etiqueta("lblDescricaoRegistador"), u"x"_s);
    } else {
        QCOMPARE(b.form->windowTitle(), u"Registador"_s);
        QCOMPARE(b.caixa("txtEstadoMissao"), QString());
        QVERIFY(b.permitido("cmdLer") && b.permitido("cmdLerDados") && !b.permitido("cmdConcluir"));
        QTRY_VERIFY(b.controlo("cmdLer")->hasFocus());
    }
}

QTEST_MAIN(tst_logger_fim)
#include "tst_logger_fim.moc"
