#include "core/eventos.h"
#include "core/modErros.h"
#include "core/rotina.h"
#include "tests/apoio/instalacao.h"

#include <new>

namespace {

QString anel(const QString &seccao, const QString &chave) {
    return modINI::GetSetting(u"Errors"_s, seccao, chave, u"(none)"_s);
}
QString linhas(const QString &seccao) {
    return anel(seccao, u"L1"_s) + anel(seccao, u"L2"_s) + anel(seccao, u"L3"_s) + anel(seccao, u"L4"_s);
}

} // namespace

class tst_erros : public QObject {
    Q_OBJECT
    std::optional<Instalacao> m_inst;

    void tratar(const QString &descricao, const QString &esperado = {}) {
        m_inst->erros.esperar(esperado.isEmpty() ? descricao : esperado);
        modErros::TratarErro(u"frmX.Teste"_s, descricao, u"5"_s);
    }
    QByteArray ficheiro() const { return Instalacao::lerFicheiro(m_inst->pastaINI() + u"/Errors.ini"_s); }

private Q_SLOTS:
    void init() { m_inst.emplace(Instalacao::Base::Nenhuma); }
    void cleanup() { m_inst.reset(); }

    void proximaEntrada_data() {
        const Tabela<QString, int> caso("ID", "proxima"); // as it stands; null: none
        caso("none", {}, 1);
        caso("text", u"abc"_s, 1);
        caso("zero", u"0"_s, 1);
        caso("last but one", u"499"_s, 500);
        caso("last", u"500"_s, 1);
        caso("largest integer", u"2147483647"_s, 1);
        caso("negative", u"-3"_s, 1);
    }
    void proximaEntrada() {
        QFETCH(QString, ID);
        QFETCH(int, proxima);
        if (!ID.isNull())
            modINI::SaveSetting(u"Errors"_s, u"INDEX"_s, u"ID"_s, ID);
        QVERIFY(modErros::GravarRegistoErro(modErros::aviso, u"hoje"_s, u"um"_s, {}, {}, u"quatro"_s));
        const QString e = u'E' + QString::number(proxima);
        QCOMPARE(anel(u"INDEX"_s, u"ID"_s), QString::number(proxima));
        QCOMPARE(anel(e, u"Soft"_s) + anel(e, u"Type"_s) + anel(e, u"Date"_s), u"VistrelWARNINGhoje"_s);
        QCOMPARE(linhas(e), u"um(none)(none)quatro"_s);
    }

    void linhasAntigasFicam() {
        modErros::GravarRegistoErro(modErros::erro, u"d"_s, u"a"_s, u"b"_s, u"c"_s, u"d"_s);
        modINI::SaveSetting(u"Errors"_s, u"INDEX"_s, u"ID"_s, u"500"_s);
        modErros::GravarRegistoErro(modErros::erro, u"d"_s, u"x"_s, {}, u"z"_s, {});
        QCOMPARE(linhas(u"E1"_s), u"xbzd"_s);
    }

    void entradaEDialogo() {
        tratar(u"Não há"_s);
        // The whole file, as other programs read it.
        QCOMPARE(QString::fromUtf8(ficheiro()),
                 u"[INDEX]\r\nID=1\r\n[E1]\r\nSoft=Vistrel\r\nType=ERROR\r\nDate=15/03/2024 10:20:30\r\n"
                 "L1=Font: frmX.Teste\r\nL2=Number: 5\r\nL3=Description: Não há\r\n"_s);
        QCOMPARE(m_inst->erros.mensagens.value(0),
                 u"Vistrel...:\r\nFonte.....: frmX.Teste\r\nNúmero....: 5\r\nDescrição.: Não há\r\n"
                 "Data......: 15/03/2024 10:20:30"_s);
        m_inst->ficheiroLingua(u"EN"_s, {{u"modMain"_s, u"L2"_s, u"Source: "_s}, {u"modMain"_s, u"L4"_s, u"Text: "_s}});
        m_inst->usarLingua(u"EN"_s);
        tratar(u"Não há"_s);
        QCOMPARE(m_inst->erros.mensagens.value(1), u"Vistrel...:\r\nSource: frmX.Teste\r\nNúmero....: 5\r\n"
                                                   "Text: Não há\r\nData......: 15/03/2024 10:20:30"_s);
    }

    void descricaoComMudancasDeLinha() {
        tratar(u"linha 1\nlinha 2\r\n[falsa]"_s, u"linha 2"_s);
        QCOMPARE(anel(u"E1"_s, u"L3"_s), u"Description: linha 1 linha 2 [falsa]"_s);
        QCOMPARE(ficheiro().count('\n'), 9); // two sections of their keys, and nothing else
        tratar(u"depois"_s);
        QCOMPARE(anel(u"E2"_s, u"L3"_s), u"Description: depois"_s);
    }

    void umSoDialogo() {
        ApresentadorDeTeste &erros = m_inst->erros;
        erros.abrirDeVerdade = true;
        erros.esperar(u"primeira"_s);
        for (const QString &d : {u"primeira"_s, u"segunda"_s, u"terceira"_s})
            modErros::TratarErro(u"frmX.Timer1_Timer"_s, d, u"5"_s);
        QCOMPARE(erros.carregamentos, 1);
        QCOMPARE(erros.destaques, 1);
        QCOMPARE(anel(u"E3"_s, u"L3"_s), u"Description: terceira"_s); // all are logged
        erros.fechar();
        tratar(u"quarta"_s);
    }

    void repeteAExibicao() {
        ApresentadorDeTeste &erros = m_inst->erros;
        for (const auto &[falhas, exibicoes] : {std::pair(0, 1), {1, 2}, {9, 2}}) {
            erros.falhasAoMostrar = falhas;
            erros.exibicoes = erros.destaques = 0;
            tratar(u"d"_s);
            QCOMPARE(erros.exibicoes, exibicoes);
            QCOMPARE(erros.destaques, 1); // it goes on with the text and the front all the same
        }
    }

    void rotina() {
        struct Caso {
            std::function<void()> corpo;
            QString relato;
        };
        ApresentadorDeTeste &relatos = m_inst->erros;
        for (const auto &[corpo, relato] :
             {Caso{[] { throw Falha(erros::objectoFechado, u"Fechada: ção"_s); },
                   u"3704\r\nDescrição.: Fechada: ção"_s},
              Caso{[] { throw std::bad_alloc(); }, u"7\r\nDescrição.: Memória insuficiente"_s},
              Caso{[] { throw std::out_of_range("vector"); }, u"5\r\nDescrição.: vector"_s},
              Caso{[] { throw 42; }, u"5\r\nDescrição.: Falha desconhecida"_s}}) {
            relatos.esperar(u"frmX.Vazia\r\nNúmero....: "_s + relato);
            QVERIFY(Rotina("frmX.Vazia", [&corpo = corpo]() -> QString {
                        corpo();
                        return u"nunca"_s;
                    }).isEmpty());
        }
        // Reported where it happened, and only there; the caller goes on with the default.
        relatos.esperar(u"frmX.Interior"_s);
        QCOMPARE(Rotina("frmX.Exterior", [] { return 1 + Rotina("frmX.Interior", []() -> int { throw 42; }); }), 1);
        QCOMPARE(Rotina("frmX.Boa", [] { return 8; }), 8);
    }

    void rotinaInterrompida() {
        auto dono = std::make_unique<QObject>();
        const Vigia vigia(dono.get());
        int linhas = 0;
        Rotina("frmX.Longa", [&] {
            for (int i = 0; i < 10; ++i) {
                vigia.passar();
                if (++linhas == 4)
                    dono.reset(); // the window is closed during a pass
            }
        });
        QCOMPARE(linhas, 4);
        QCOMPARE(m_inst->erros.carregamentos, 0);
        QCOMPARE(anel(u"INDEX"_s, u"ID"_s), u"(none)"_s);
    }

    void semPastaAindaMostra() {
        QVERIFY(QDir(m_inst->pastaINI()).removeRecursively());
        tratar(u"d"_s);
        QVERIFY(!QDir(m_inst->pastaINI()).exists());
    }

    void semApresentador() {
        estado().ambiente.apresentador = nullptr; // before the shell has come up
        modErros::TratarErro(u"modMain.Main"_s, u"d"_s, u"5"_s);
        QCOMPARE(anel(u"E1"_s, u"L1"_s), u"Font: modMain.Main"_s);
    }
};

QTEST_GUILESS_MAIN(tst_erros)
#include "tst_erros.moc"
