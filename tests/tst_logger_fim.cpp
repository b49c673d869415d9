#include "core/datas.h"
#include "core/modINI.h"
#include "data/ligacao.h"
#include "data/recordset.h"
#include "logger/memoriaDS1921.h"
#include "manutencao/registar.h"
#include "platform/onewire/portos.h"
#include "tests/apoio/leitorSerie.h"
#include "tests/apoio/tabela.h"
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
    void paraEGuarda() {
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

    void naoPara() {
        Bancada b;
        b.comMissao();
        b.instalacao.dialogos.responderPergunta(false, u"Deseja parar"_s);
        b.clicar("cmdPararMissao");
        QVERIFY(b.leitor.chip().missao());
        QVERIFY(b.permitido("cmdPararMissao"));
    }

    void semAmostras_data() {
        const Tabela<bool, bool, bool> caso("continua", "senha", "eliminada");
        caso("right password", true, true, true);
        caso("no right password", true, false, false);
        caso("no", false, true, false);
    }
    void semAmostras() {
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

    void antesDoInicio_data() {
        // semSenha: the installation has none
        const Tabela<bool, bool> caso("continua", "semSenha");
        caso("yes, no password set", true, true);
        caso("yes, password not given", true, false);
        caso("no", false, false);
    }
    void antesDoInicio() {
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
            continua,
            u"anterior á data de inicio\nPara Terminar a missão é necessário inserir palavra-passe\nDeseja "_s);
        b.clicar("cmdPararMissao");
        QCOMPARE(dialogo.vezes, continua && !semSenha ? 1 : 0);
        QCOMPARE(b.linhasGuardadas(), continua && semSenha ? 0 : 11);
        QCOMPARE(b.leitor.chip().missao(), !(continua && semSenha));
    }

    void fimPassado() {
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

    void formata() {
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

    void palavraErrada() {
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

    void paginasIlegiveis_data() {
        QTest::addColumn<bool>("formatar");
        QTest::newRow("format") << true;
        QTest::newRow("leave it") << false;
    }
    void paginasIlegiveis() {
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

    // A mission from its programming to the format, over the line driver: what is stored is what the button measured.
    void vidaPelaPortaSerie() {
        Bancada b{Variante::H};
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
                    medidas[k] = simulador::grausDe(Variante::H, chip.ler(0x1000 + int(k % 2048)));
            });
        };

        utilizador::controlo<QTimeEdit>(b.form, u"DTPhoraInicio"_s)->setTime(QTime(10, 0));
        b.programar({u"Cais"_s, u"Verão"_s, u"2"_s, u"0,125"_s, u"18,0"_s, u"30,5"_s, true});
        QCOMPARE(b.caixa("txtEstadoMissao"), u"Atraso Activo"_s);
        andar(61 + 600);
        b.clicar("cmdLerDados");
        espreitar();
        const int primeiras = b.linhasGuardadas();
        QCOMPARE(b.caixa("txtRollOverExecuted"), u"Não"_s);
        QCOMPARE(size_t(primeiras), medidas.size());
        b.clicar("cmdLerDados");
        QCOMPARE(b.um(u"SELECT COUNT(DISTINCT Data) FROM DS1921"_s).toInt(), b.linhasGuardadas());
        andar(2 * 1900);
        b.instalacao.dialogos.responderPergunta(false, u"Deseja parar"_s); // the planned end lies behind
        b.clicar("cmdLerDados");
        espreitar();
        QCOMPARE(b.caixa("txtRollOverExecuted"), u"Sim"_s);
        QCOMPARE(b.amostras()->linhas(), 2048);
        // What an earlier download stored stays when the button has overwritten it.
        QVERIFY(medidas.size() > 2048 && medidas.size() - 2048 < size_t(primeiras));
        QCOMPARE(size_t(b.linhasGuardadas()), medidas.size());
        Recordset linhas = cnBD().consultar(u"SELECT Data, Temperatura FROM DS1921 ORDER BY Data"_s);
        const QDateTime inicio = datas::lerDataHora(b.caixa("txtInicioMissao"));
        for (size_t k = 0; linhas.avancar(); ++k) {
            QCOMPARE(linhas.dataHora(0), inicio.addSecs(120 * qint64(k)));
            QCOMPARE(linhas.real(1), std::round((medidas[k] + 0.125) * 1000) / 1000);
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
};

QTEST_MAIN(tst_logger_fim)
#include "tst_logger_fim.moc"
