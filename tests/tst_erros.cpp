#include "core/estado.h"
#include "core/eventos.h"
#include "core/falha.h"
#include "core/modErros.h"
#include "core/modINI.h"
#include "core/perfil.h"
#include "core/rotina.h"
#include "tests/apoio/instalacao.h"

#include <QDir>
#include <QTest>

#include <new>

class tst_erros : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void proximaEntrada_data();
    void proximaEntrada();
    void daAVolta();
    void linhasAntigasFicam();
    void entradaDeUmaFalha();
    void descricaoComMudancasDeLinha();
    void textoDoDialogo_data();
    void textoDoDialogo();
    void umSoDialogo();
    void repeteAExibicao_data();
    void repeteAExibicao();
    void rotina_data();
    void rotina();
    void rotinaInterrompida();
    void semPastaAindaMostra();
    void semApresentador();
};

namespace {
QString anel(const QString &seccao, const QString &chave) {
    return modINI::GetSetting(u"Errors"_s, seccao, chave, u"(none)"_s);
}
} // namespace

void tst_erros::proximaEntrada_data() {
    QTest::addColumn<QString>("ID"); // as it stands; null: none
    QTest::addColumn<int>("proxima");
    QTest::newRow("none") << QString() << 1;
    QTest::newRow("empty") << u""_s << 1;
    QTest::newRow("text") << u"abc"_s << 1;
    QTest::newRow("zero") << u"0"_s << 1;
    QTest::newRow("plain") << u"41"_s << 42;
    QTest::newRow("last but one") << u"499"_s << 500;
    QTest::newRow("last") << u"500"_s << 1;
    QTest::newRow("too large") << u"7000"_s << 1;
    QTest::newRow("largest integer") << u"2147483647"_s << 1;
    QTest::newRow("beyond integers") << u"99999999999"_s << 1;
    QTest::newRow("negative") << u"-3"_s << 1;
}

void tst_erros::proximaEntrada() {
    QFETCH(QString, ID);
    QFETCH(int, proxima);
    Instalacao inst(Instalacao::Base::Nenhuma);
    if (!ID.isNull())
        modINI::SaveSetting(u"Errors"_s, u"INDEX"_s, u"ID"_s, ID);
    QVERIFY(modErros::GravarRegistoErro(modErros::aviso, u"hoje"_s, u"um"_s, {}, {}, u"quatro"_s));
    const QString e = u'E' + QString::number(proxima);
    QCOMPARE(anel(u"INDEX"_s, u"ID"_s), QString::number(proxima));
    QCOMPARE(anel(e, u"Soft"_s) + anel(e, u"Type"_s) + anel(e, u"Date"_s), u"VistrelWARNINGhoje"_s);
    QCOMPARE(anel(e, u"L1"_s) + anel(e, u"L2"_s) + anel(e, u"L4"_s), u"um(none)quatro"_s);
}

void tst_erros::daAVolta() {
    Instalacao inst(Instalacao::Base::Nenhuma);
    for (int i = 1; i <= modErros::entradasDoAnel + 3; ++i)
        modErros::GuardarErro(modErros::erro, u"d"_s, QString::number(i), {}, {}, {});
    const Perfil p(Instalacao::lerFicheiro(inst.pastaINI() + u"/Errors.ini"_s));
    QCOMPARE(p.seccoes().size(), modErros::entradasDoAnel + 1);
    QCOMPARE(*p.valor(u"INDEX"_s, u"ID"_s), u"3"_s);
    QCOMPARE(*p.valor(u"E3"_s, u"L1"_s), u"503"_s);
    QCOMPARE(*p.valor(u"E4"_s, u"L1"_s), u"4"_s);
    QCOMPARE(*p.valor(u"E4"_s, u"Type"_s), u"ERROR"_s);
}

void tst_erros::linhasAntigasFicam() {
    Instalacao inst(Instalacao::Base::Nenhuma);
    modErros::GravarRegistoErro(modErros::erro, u"d"_s, u"a"_s, u"b"_s, u"c"_s, u"d"_s);
    modINI::SaveSetting(u"Errors"_s, u"INDEX"_s, u"ID"_s, u"500"_s);
    modErros::GravarRegistoErro(modErros::erro, u"d"_s, u"x"_s, {}, u"z"_s, {});
    QCOMPARE(anel(u"E1"_s, u"L1"_s) + anel(u"E1"_s, u"L2"_s) + anel(u"E1"_s, u"L3"_s) + anel(u"E1"_s, u"L4"_s),
             u"xbzd"_s);
}

void tst_erros::entradaDeUmaFalha() {
    Instalacao inst(Instalacao::Base::Nenhuma);
    inst.erros.esperar(u"frmX.Teste"_s);
    modErros::TratarErro(u"frmX.Teste"_s, u"Não há"_s, u"-2147467259"_s);
    // The whole file, as other programs read it.
    QCOMPARE(QString::fromUtf8(Instalacao::lerFicheiro(inst.pastaINI() + u"/Errors.ini"_s)),
             u"[INDEX]\r\nID=1\r\n[E1]\r\nSoft=Vistrel\r\nType=ERROR\r\nDate=15/03/2024 10:20:30\r\n"
             "L1=Font: frmX.Teste\r\nL2=Number: -2147467259\r\nL3=Description: Não há\r\n"_s);
}

void tst_erros::descricaoComMudancasDeLinha() {
    Instalacao inst(Instalacao::Base::Nenhuma);
    inst.erros.esperar(u"linha 2"_s);
    modErros::TratarErro(u"frmX.Teste"_s, u"linha 1\nlinha 2\r\n[falsa]"_s, u"5"_s);
    QVERIFY(Instalacao::lerFicheiro(inst.pastaINI() + u"/Errors.ini"_s)
                .contains("L3=Description: linha 1\nlinha 2\r\n[falsa]\r\n"));
    QCOMPARE(anel(u"E1"_s, u"L3"_s), u"Description: linha 1"_s);
    inst.erros.esperar(u"depois"_s);
    modErros::TratarErro(u"frmX.Teste"_s, u"depois"_s, u"5"_s);
    QCOMPARE(anel(u"E2"_s, u"L3"_s), u"Description: depois"_s);
}

void tst_erros::textoDoDialogo_data() {
    QTest::addColumn<QString>("lingua");
    QTest::addColumn<QString>("texto");
    QTest::newRow("default") << u"PT"_s
                             << u"Vistrel...:\r\nFonte.....: frmX.Teste\r\nNúmero....: 13\r\nDescrição.: Não é\r\n"
                                "Data......: 15/03/2024 10:20:30"_s;
    QTest::newRow("translated") << u"EN"_s
                                << u"Vistrel...:\r\nSource: frmX.Teste\r\nNúmero....: 13\r\nText: Não é\r\n"
                                   "Data......: 15/03/2024 10:20:30"_s;
}

void tst_erros::textoDoDialogo() {
    QFETCH(QString, lingua);
    Instalacao inst(Instalacao::Base::Nenhuma);
    inst.ficheiroLingua(u"EN"_s, {{u"modMain"_s, u"L2"_s, u"Source: "_s}, {u"modMain"_s, u"L4"_s, u"Text: "_s}});
    inst.usarLingua(lingua);
    inst.erros.esperar({});
    modErros::TratarErro(u"frmX.Teste"_s, u"Não é"_s, u"13"_s);
    QTEST(inst.erros.mensagens.value(0), "texto");
}

void tst_erros::umSoDialogo() {
    Instalacao inst(Instalacao::Base::Nenhuma);
    inst.erros.abrirDeVerdade = true;
    inst.erros.esperar(u"primeira"_s);
    for (const QString &d : {u"primeira"_s, u"segunda"_s, u"terceira"_s})
        modErros::TratarErro(u"frmX.Timer1_Timer"_s, d, u"5"_s);
    QCOMPARE(inst.erros.carregamentos, 1);
    QCOMPARE(inst.erros.destaques, 1);
    QCOMPARE(anel(u"E3"_s, u"L3"_s), u"Description: terceira"_s); // all are logged
    inst.erros.fechar();
    inst.erros.esperar(u"quarta"_s);
    modErros::TratarErro(u"frmX.Timer1_Timer"_s, u"quarta"_s, u"5"_s);
}

void tst_erros::repeteAExibicao_data() {
    QTest::addColumn<int>("falhas");
    QTest::addColumn<int>("exibicoes");
    QTest::newRow("shown") << 0 << 1;
    QTest::newRow("shown the second time") << 1 << 2;
    QTest::newRow("never more than twice") << 9 << 2;
}

void tst_erros::repeteAExibicao() {
    QFETCH(int, falhas);
    Instalacao inst(Instalacao::Base::Nenhuma);
    inst.erros.falhasAoMostrar = falhas;
    inst.erros.esperar(u"frmX"_s);
    modErros::TratarErro(u"frmX.Teste"_s, u"d"_s, u"5"_s);
    QTEST(inst.erros.exibicoes, "exibicoes");
    QCOMPARE(inst.erros.destaques, 1); // it goes on with the text and the front all the same
}

void tst_erros::rotina_data() {
    QTest::addColumn<int>("qual");
    QTest::addColumn<QString>("numero");
    QTest::addColumn<QString>("descricao");
    QTest::newRow("failure") << 0 << u"3704"_s << u"Fechada: ção"_s;
    QTest::newRow("memory") << 1 << u"7"_s << u"Memória insuficiente"_s;
    QTest::newRow("library") << 2 << u"5"_s << u"vector"_s;
    QTest::newRow("anything") << 3 << u"5"_s << u"Falha desconhecida"_s;
}

void tst_erros::rotina() {
    QFETCH(int, qual);
    QFETCH(QString, numero);
    QFETCH(QString, descricao);
    Instalacao inst(Instalacao::Base::Nenhuma);
    const auto corpo = [&] {
        switch (qual) {
        case 0:
            throw Falha(erros::objectoFechado, descricao);
        case 1:
            throw std::bad_alloc();
        case 2:
            throw std::out_of_range("vector");
        default:
            throw 42;
        }
    };
    bool depois = false;
    inst.erros.esperar(descricao);
    QVERIFY(Rotina("frmX.Vazia", [&]() -> QString {
                corpo();
                depois = true;
                return u"nunca"_s;
            }).isEmpty());
    QVERIFY(!depois);
    QVERIFY(inst.erros.mensagens.value(0).contains(u"frmX.Vazia\r\nNúmero....: "_s + numero + u"\r\n"_s));
    inst.erros.esperar(u"frmX.Interior"_s);
    // Reported where it happened, and only there; the caller goes on with the default.
    QCOMPARE(Rotina("frmX.Exterior", [&] { return 1 + Rotina("frmX.Interior", [&]() -> int { return corpo(), 7; }); }),
             1);
    QCOMPARE(Rotina("frmX.Boa", [] { return 8; }), 8);
    QCOMPARE(inst.erros.carregamentos, 2);
}

void tst_erros::rotinaInterrompida() {
    Instalacao inst(Instalacao::Base::Nenhuma);
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
    QCOMPARE(inst.erros.carregamentos, 0);
    QCOMPARE(anel(u"INDEX"_s, u"ID"_s), u"(none)"_s);
}

void tst_erros::semPastaAindaMostra() {
    Instalacao inst(Instalacao::Base::Nenhuma);
    QVERIFY(QDir(inst.pastaINI()).removeRecursively());
    inst.erros.esperar(u"frmX.Teste"_s);
    modErros::TratarErro(u"frmX.Teste"_s, u"d"_s, u"5"_s);
    QVERIFY(!QDir(inst.pastaINI()).exists());
}

void tst_erros::semApresentador() {
    Instalacao inst(Instalacao::Base::Nenhuma);
    estado().ambiente.apresentador = nullptr; // before the shell has come up
    modErros::TratarErro(u"modMain.Main"_s, u"d"_s, u"5"_s);
    QCOMPARE(anel(u"E1"_s, u"L1"_s), u"Font: modMain.Main"_s);
}

QTEST_GUILESS_MAIN(tst_erros)
#include "tst_erros.moc"
