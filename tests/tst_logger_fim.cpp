#include "core/datas.h"
#include "core/modINI.h"
#include "data/ligacao.h"
#include "data/recordset.h"
#include "logger/memoriaDS1921.h"
#include "manutencao/registar.h"
#include "platform/onewire/portos.h"
#include "tests/apoio/leitorSerie.h"
#include "tests/bancada1921.h"

#include <QDateEdit>
#include <QDialog>
#include <QTimer>

#include <cmath>

using simulador::Variante;

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
    void vidaPelaPortaSerie_data();
    void vidaPelaPortaSerie();
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
    if (!senha)
        QVERIFY(b.permitido("cmdPararMissao")); // to try once more
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

void tst_logger_fim::vidaPelaPortaSerie_data() {
    QTest::addColumn<int>("variante");
    QTest::addColumn<QString>("calibracao");
    QTest::addColumn<double>("acerto");
    QTest::addColumn<QString>("minimo");
    QTest::addColumn<QString>("maximo");
    QTest::newRow("G") << int(Variante::G) << u"0,7"_s << 0.7 << u"2,0"_s << u"25,0"_s;
    QTest::newRow("H") << int(Variante::H) << u"0,125"_s << 0.125 << u"18,0"_s << u"30,5"_s;
    QTest::newRow("Z") << int(Variante::Z) << u"-1,375"_s << -1.375 << u"-2,0"_s << u"20,5"_s;
}

// A mission from its programming to the format, over the line driver: what is stored is what the button measured.
void tst_logger_fim::vidaPelaPortaSerie() {
    QFETCH(int, variante);
    QFETCH(QString, calibracao);
    QFETCH(double, acerto);
    QFETCH(QString, minimo);
    QFETCH(QString, maximo);
    Bancada b{Variante(variante)};
    b.leitor.linha->temperatura = [](qint64 s) { return 20 + 7 * std::sin(double(s) / 9000); };
    delete b.form;
    LeitorSerie serie(b.leitor.linha);
    onewire::barramento().abrir = onewire::abrirPorto;
    modINI::SaveSettings(u"Kelvark"_s, {{u"LIAGACAOHARDWARE"_s, u"PortType"_s, u"5"_s},
                                        {u"LIAGACAOHARDWARE"_s, u"PortNum"_s, u"1"_s},
                                        {u"LIAGACAOHARDWARE"_s, u"Caminho5.1"_s, serie.caminho()}});
    b.abrir();
    const auto andar = [&](int minutos) { serie.comALinha([&] { b.andar(minutos); }); };
    std::vector<double> medidas; // by the number of the sample, as the button's memory has them
    const auto espreitar = [&] {
        serie.comALinha([&] {
            const simulador::ChipDS1921 &chip = b.leitor.chip();
            medidas.resize(chip.contador());
            for (size_t k = medidas.size() > 2048 ? medidas.size() - 2048 : 0; k < medidas.size(); ++k)
                medidas[k] = simulador::grausDe(Variante(variante), chip.ler(0x1000 + int(k % 2048)));
        });
    };

    utilizador::controlo<QTimeEdit>(b.form, u"DTPhoraInicio"_s)->setTime(QTime(10, 0));
    b.programar({u"Cais"_s, u"Verão"_s, u"2"_s, calibracao, minimo, maximo, true});
    QCOMPARE(b.caixa("txtEstadoMissao"), u"Atraso Activo"_s);
    andar(61 + 600);
    b.clicar("cmdLerDados");
    espreitar();
    const int primeiras = b.linhasGuardadas();
    QCOMPARE(size_t(primeiras), medidas.size());
    b.clicar("cmdLerDados");
    QCOMPARE(b.um(u"SELECT COUNT(DISTINCT Data) FROM DS1921"_s).toInt(), b.linhasGuardadas());
    andar(2 * 1900);
    b.instalacao.dialogos.responderPergunta(false, u"Deseja parar"_s); // the planned end lies behind
    b.clicar("cmdLerDados");
    espreitar();
    QVERIFY(medidas.size() > 2048 && medidas.size() - 2048 < size_t(primeiras));
    QCOMPARE(size_t(b.linhasGuardadas()), medidas.size());
    Recordset linhas = cnBD().consultar(u"SELECT Data, Temperatura FROM DS1921 ORDER BY Data"_s);
    const QDateTime inicio = datas::lerDataHora(b.caixa("txtInicioMissao"));
    for (size_t k = 0; linhas.avancar(); ++k) {
        QCOMPARE(linhas.dataHora(0), inicio.addSecs(120 * qint64(k)));
        QCOMPARE(linhas.real(1), std::round((medidas[k] + acerto) * 1000) / 1000);
    }
    b.instalacao.dialogos.responderPergunta(true, u"Deseja parar"_s);
    b.clicar("cmdPararMissao");
    QVERIFY(!serie.comALinha([&] { return b.leitor.chip().missao(); }));
    b.instalacao.dialogos.responderPergunta(true, u"Formatar Registador?"_s);
    b.clicar("lblNumeroMissoes");
    QTest::keyClicks(utilizador::controlo<QLineEdit>(b.form, u"txtPass"_s), u"QUINTAL"_s);
    QCOMPARE(serie.comALinha([&] { return int(b.leitor.chip().ler(0x20)); }), 0);
    QCOMPARE(b.etiqueta("lblDescricaoRegistador"), u"x"_s);
    QCOMPARE(size_t(b.linhasGuardadas()), medidas.size());
}

QTEST_MAIN(tst_logger_fim)
#include "tst_logger_fim.moc"
