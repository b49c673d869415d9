#include "core/datas.h"
#include "logger/controloDS1921.h"
#include "platform/onewire/portos.h"
#include "tests/apoio/leitorSerie.h"
#include "tests/bancada1921.h"

#include <cmath>

using simulador::Variante;

// How missions end, and how buttons are formatted.
class tst_logger_fim : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void paraEGuarda() {
        Bancada b;
        b.descarregar();
        b.instalacao.relogio(u"2026-03-02 10:42:10"_s);
        b.parar(false);
        QVERIFY(b.leitor.chip().missao() && b.permitido("cmdPararMissao"));
        QVERIFY(b.instalacao.dialogos.textos.last().endsWith(
            u"\nRegistador: %1 Registador Vacinas\nMissão: 0001 Transporte Évora\nAmostras no registador: 11, ainda "
            u"não "
            "guardadas: 0"_s.arg(b.um(u"SELECT LoggerID FROM DS1921head"_s).toString())));
        b.parar();
        QVERIFY(!b.leitor.chip().missao());
        QCOMPARE(int(b.leitor.chip().ler(0x21A)), 0); // the memory is cleared
        QCOMPARE(b.linhas(), 11);
        QCOMPARE(b.instalacao.linha(u"SELECT DataFimMissao, Flag FROM DS1921head"_s),
                 (QVariantList{u"2026-03-02 10:42:10"_s, u"NC"_s}));
        QVERIFY(b.visivel("frameAssistente"));
        b.clicar("lblEstado");
        QCOMPARE(b.texto("txtEstadoMissao"), u"Sem Missão"_s);
        QCOMPARE(b.texto("txtInicioMissao"), QString());
        // The next ones count on by their names.
        b.descarregar();
        QCOMPARE(b.texto("lblNumeroMissoes"), u"0002"_s);
        b.parar();
        b.descarregar(30, {.missao = u"Outra"_s});
        QCOMPARE(b.texto("lblNumeroMissoes"), u"0001"_s);
        b.parar();
        b.instalacao.executar(u"UPDATE DS1921head SET NMissao = '9999' WHERE NMissao = '0002'"_s);
        b.programar();
        QCOMPARE(b.texto("lblNumeroMissoes"), u"0001"_s);
    }

    // What is taken while the user is asked is not cleared with the rest.
    void amostrasDepoisDaPergunta() {
        Bancada b;
        b.descarregar();
        b.leitor.andar(20);
        b.parar(false);
        QVERIFY(b.instalacao.dialogos.textos.last().endsWith(u"Amostras no registador: 13, ainda não guardadas: 2"));
        delete b.form;
        ControloDS1921 c;
        QCOMPARE(c.lerMemoria(), ControloDS1921::Memoria::Lida);
        QCOMPARE(c.BuscarDadosPeloObjecto(), EstadoMissao::Activa);
        QCOMPARE(c.porGuardar(), 2);
        b.leitor.andar(10);
        int terminada = 0;
        const auto aoTerminar = [&] { ++terminada; };
        QCOMPARE(c.terminarNoRegistador(2, aoTerminar), ControloDS1921::Fim::Terminada);
        QVERIFY(!b.leitor.chip().missao() && b.leitor.chip().contador() == 14);
        QCOMPARE(c.terminarNoRegistador(3, aoTerminar), ControloDS1921::Fim::Nenhum); // it was read as running
        QCOMPARE(c.FormatarDS1921(3, [] {}), false);
        c.lerMemoria();
        c.BuscarDadosPeloObjecto();
        QCOMPARE(c.FormatarDS1921(2, [] {}), false);
        QCOMPARE(int(b.leitor.chip().contador()), 14);
        QCOMPARE(terminada, 1);
    }

    // A sample that the table lacks, and that no download brings back behind newer ones.
    void lacuna() {
        Bancada b;
        b.descarregar();
        b.instalacao.executar(u"DELETE FROM DS1921 WHERE Data LIKE '%09:21%'"_s);
        b.instalacao.dialogos.esperarMensagem(u"Há 1 amostras no registador que não foram guardadas."_s);
        b.clicar("cmdLerDados");
        QCOMPARE(b.amostras()->linhas(), 11);
        QVERIFY(b.permitido("lblResultados") && !b.permitido("cmdPararMissao"));
    }

    // Samples of a mission that another program stopped: they get the header that the views need, and are not
    // programmed over unasked.
    void paradaNoutroLado() {
        Bancada b;
        b.programar();
        b.andar(101);
        const quint8 parada[] = {0xDF};
        QVERIFY(b.leitor.chip().copiar(0x214, parada) && !b.leitor.chip().missao());
        for (const bool sim : {false, true}) {
            b.instalacao.dialogos.responderPergunta(sim, u"ainda não guardadas: 11\n"_s);
            b.clicar("lblEstado");
            b.clicar("cmdLer");
            b.clicar("lblAssistente");
            if (sim)
                break;
            b.clicar("cmdConcluir");
            QCOMPARE(int(b.leitor.chip().contador()), 11);
        }
        b.instalacao.dialogos.esquecer();
        b.clicar("lblEstado");
        b.clicar("cmdLerDados");
        QVERIFY(b.permitido("lblResultados") && b.permitido("lblGrafico") && !b.permitido("cmdPararMissao"));
        QCOMPARE(b.linhas(), 11);
        QCOMPARE(b.instalacao.linha(u"SELECT COUNT(*), Nomelogger, DescricaoMissao, NMissao, DataProg, DataFimMissao, "
                                    "Max, Min FROM DS1921head NATURAL JOIN (SELECT DISTINCT LoggerID, Nomelogger, "
                                    "DescricaoMissao, NMissao FROM DS1921)"_s),
                 (QVariantList{1, u"Registador Vacinas"_s, u"Transporte Évora"_s, u"0001"_s, u"2026-03-02 09:01:00"_s,
                               u"2026-03-02 10:41:00"_s, 8, 2}));
        b.clicar("cmdConcluir"); // all is stored
        QVERIFY(b.leitor.chip().missao());
        QCOMPARE(b.texto("lblNumeroMissoes"), u"0002"_s);
    }

    // A mission without samples, or one that would end before its start, is deleted when the password allows it.
    void elimina_data() {
        const Tabela<bool, QString> caso("antesDoInicio", "senha");
        for (const QString &senha : {u"right"_s, u"wrong"_s, u"none set"_s, u"not asked for"_s}) {
            caso(qPrintable(u"no samples, "_s + senha), false, senha);
            caso(qPrintable(u"too early, "_s + senha), true, senha);
        }
    }
    void elimina() {
        QFETCH(bool, antesDoInicio);
        QFETCH(QString, senha);
        const bool continua = senha != u"not asked for";
        Bancada b;
        int pedidas = 0;
        registoForms().registar(
            u"frmPassWord"_s,
            [&](QWidget *dono) {
                auto *dialogo = new QDialog(dono);
                pedidas += estado().ObjectivoPassWord == 3;
                QTimer::singleShot(0, dialogo, [&, dialogo] {
                    estado().EliminarConfirmado = senha == u"right";
                    dialogo->close();
                });
                return dialogo;
            },
            RegistoForms::Modo::Modal);
        if (senha == u"none set")
            b.instalacao.escreverFicheiro(b.instalacao.pastaINI() + u"/Vistrel.ini", "[CONFIGURACOES]\r\nPWD=\r\n");
        b.descarregar();
        if (antesDoInicio)
            b.instalacao.relogio(u"2026-03-01 10:00:00"_s);
        else
            b.instalacao.executar(u"DELETE FROM DS1921"_s);
        b.instalacao.dialogos.responderPergunta(true, u"Deseja parar"_s);
        b.instalacao.dialogos.responderPergunta(
            continua, antesDoInicio ? u"anterior á data de inicio\nPara Terminar a missão é necessário inserir "
                                      "palavra-passe\nDeseja "_s
                                    : u"não existem dados nesta missão\n"_s);
        b.clicar("cmdPararMissao");
        QVERIFY(b.instalacao.dialogos.textos.last().contains(antesDoInicio ? u"amostras guardadas: 11\n"_s
                                                                           : u"amostras guardadas: 0\n"_s));
        const bool eliminada = continua && senha != u"wrong";
        QCOMPARE(pedidas, int(continua && senha != u"none set"));
        QCOMPARE(b.linhas(u"DS1921head"_s), eliminada ? 0 : 1);
        QCOMPARE(b.linhas(), antesDoInicio && !eliminada ? 11 : 0);
        QCOMPARE(b.leitor.chip().missao(), !eliminada);
        QVERIFY(b.permitido("cmdLer"));
        if (senha == u"wrong")
            QVERIFY(b.permitido("cmdPararMissao")); // to try once more
    }

    void formata() {
        Bancada b;
        b.descarregar();
        QVERIFY(b.leitor.chip().ler(0x20) != 0);
        auto *senha = utilizador::controlo<QLineEdit>(b.form, u"txtPass"_s);
        const auto palavra = [&](const QString &texto) {
            b.clicar("lblNumeroMissoes"); // empties the box
            QTRY_COMPARE(b.form->focusWidget(), senha);
            QTest::keyClicks(senha, texto);
        };
        palavra(u"quintais"_s);
        b.instalacao.dialogos.responderPergunta(false, u"Formatar Registador?"_s);
        palavra(u"QUINTAL"_s);
        QVERIFY(b.leitor.chip().missao());
        QTRY_COMPARE(b.form->focusWidget(), b.controlo("cmdLer"));
        b.instalacao.dialogos.responderPergunta(true, u"Formatar Registador?"_s);
        palavra(u"quinTAL"_s);
        QVERIFY(!b.leitor.chip().missao());
        for (int pagina = 0; pagina < 16; ++pagina)
            QCOMPARE(int(b.leitor.chip().ler(32 * pagina)), 0); // empty packets
        QCOMPARE(b.texto("lblDescricaoRegistador"), u"x"_s);
        QCOMPARE(b.linhas(), 11); // what is stored stays
        b.clicar("lblEstado");
        b.leitor.tirar();
        b.instalacao.dialogos.esperarMensagem(u"Erro ao formatar Registador!"_s);
        palavra(u"QUINTAL"_s);
    }

    void paginasIlegiveis() {
        Bancada b;
        {
            SessaoTMEX sessao({1, 6});
            MemoriaDS1921 memoria;
            QVERIFY(memoria.procurar(sessao.numero(), 0x21));
            QVERIFY(memoria.EscreverPaginaTexto(sessao.numero(), u"lista de compras"_s, 1));
        }
        b.instalacao.dialogos.responderPergunta(false, u"Versão antiga detectada"_s);
        b.clicar("cmdLer");
        QCOMPARE(int(b.leitor.chip().ler(32)), 16);
        QCOMPARE(b.form->windowTitle(), u"Registador"_s);
        QCOMPARE(b.texto("txtEstadoMissao"), QString());
        QVERIFY(b.permitido("cmdLer") && b.permitido("cmdLerDados") && !b.permitido("cmdConcluir"));
        QTRY_COMPARE(b.form->focusWidget(), b.controlo("cmdLer"));
        b.instalacao.dialogos.responderPergunta(true, u"Versão antiga detectada"_s);
        b.clicar("cmdLer");
        QCOMPARE(int(b.leitor.chip().ler(32)), 0);
        QCOMPARE(b.texto("lblDescricaoRegistador"), u"x"_s);
    }

    void vidaPelaPortaSerie_data() {
        const Tabela<int, QString, double> caso("variante", "calibracao", "acerto");
        caso("G", int(Variante::G), u"-0,3"_s, -0.3);
        caso("H", int(Variante::H), u"0,125"_s, 0.125);
        caso("Z", int(Variante::Z), u"1,875"_s, 1.875);
    }
    // A mission from its programming to the format, over the line driver: what is stored is what the button measured.
    void vidaPelaPortaSerie() {
        QFETCH(int, variante);
        QFETCH(QString, calibracao);
        QFETCH(double, acerto);
        Bancada b{Variante(variante)};
        b.leitor.linha->temperatura = [](qint64 s) { return 20 + 7 * std::sin(double(s) / 9000); };
        delete b.form;
        LeitorSerie serie(b.leitor.linha);
        onewire::barramento().abrir = onewire::abrirPorto;
        modINI::SaveSettings(u"Kelvark"_s, {{u"LIAGACAOHARDWARE"_s, u"PortType"_s, u"5"_s},
                                            {u"LIAGACAOHARDWARE"_s, u"PortNum"_s, u"1"_s},
                                            {u"LIAGACAOHARDWARE"_s, u"Caminho5.1"_s, serie.caminho()}});
        b.abrir();
        std::vector<double> medidas; // by the number of the sample, as the button's memory has them
        const auto descarregar = [&](int minutos) {
            serie.comALinha([&] { b.andar(minutos); });
            b.clicar("cmdLerDados");
            serie.comALinha([&] {
                const simulador::ChipDS1921 &chip = b.leitor.chip();
                medidas.resize(chip.contador());
                for (size_t k = medidas.size() > 2048 ? medidas.size() - 2048 : 0; k < medidas.size(); ++k)
                    medidas[k] = simulador::grausDe(Variante(variante), chip.ler(0x1000 + int(k % 2048)));
            });
        };

        utilizador::controlo<QTimeEdit>(b.form, u"DTPhoraInicio"_s)->setTime(QTime(10, 0));
        b.programar({u"Cais"_s, u"Verão"_s, u"2"_s, calibracao, u"18,0"_s, u"25,5"_s, true});
        QCOMPARE(b.texto("txtEstadoMissao"), u"Atraso Activo"_s);
        descarregar(61 + 600);
        const size_t primeiras = medidas.size();
        QCOMPARE(b.texto("txtRollOverExecuted"), u"Não"_s);
        QCOMPARE(size_t(b.linhas()), primeiras);
        descarregar(0); // read twice, nothing is doubled
        QCOMPARE(b.um(u"SELECT COUNT(DISTINCT Data) FROM DS1921"_s).toInt(), b.linhas());
        b.instalacao.dialogos.responderPergunta(false, u"Deseja parar"_s); // the planned end lies behind
        descarregar(2 * 1900);
        QCOMPARE(b.texto("txtRollOverExecuted"), u"Sim"_s);
        QCOMPARE(b.amostras()->linhas(), 2048);
        // What an earlier download stored stays when the button has overwritten it.
        QVERIFY(medidas.size() > 2048 && medidas.size() - 2048 < primeiras);
        QCOMPARE(size_t(b.linhas()), medidas.size());
        Recordset linhas = cnBD().consultar(u"SELECT Data, Temperatura FROM DS1921 ORDER BY Data"_s);
        const QDateTime inicio = datas::lerDataHora(b.texto("txtInicioMissao"));
        for (size_t k = 0; linhas.avancar(); ++k) {
            QCOMPARE(linhas.dataHora(0), inicio.addSecs(120 * qint64(k)));
            QCOMPARE(linhas.real(1), std::round((medidas[k] + acerto) * 1000) / 1000);
        }
        b.parar();
        QVERIFY(!serie.comALinha([&] { return b.leitor.chip().missao(); }));
        b.instalacao.dialogos.responderPergunta(true, u"Formatar Registador?"_s);
        b.clicar("lblNumeroMissoes");
        QTest::keyClicks(utilizador::controlo<QLineEdit>(b.form, u"txtPass"_s), u"QUINTAL"_s);
        QCOMPARE(serie.comALinha([&] { return int(b.leitor.chip().ler(0x20)); }), 0);
        QCOMPARE(b.texto("lblDescricaoRegistador"), u"x"_s);
        QCOMPARE(size_t(b.linhas()), medidas.size());
    }
};

QTEST_MAIN(tst_logger_fim)
#include "tst_logger_fim.moc"
