#include "core/estado.h"
#include "core/modINI.h"
#include "core/modTraducoes.h"
#include "tests/apoio/instalacao.h"

#include <QTest>

class tst_traducoes : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void textoDaLingua_data();
    void textoDaLingua();
    void linguaDasDefinicoes_data();
    void linguaDasDefinicoes();
    void mudaDeLinguaENaMesmaHora();
};

void tst_traducoes::textoDaLingua_data() {
    QTest::addColumn<QString>("lingua");
    QTest::addColumn<QString>("seccao");
    QTest::addColumn<QString>("chave");
    QTest::addColumn<QString>("esperado");
    QTest::newRow("translated") << u"EN"_s << u"VISTREL_frmX"_s << u"a.Caption"_s << u"Confirm"_s;
    QTest::newRow("case of names") << u"EN"_s << u"vistrel_FRMX"_s << u"A.CAPTION"_s << u"Confirm"_s;
    QTest::newRow("missing key") << u"EN"_s << u"VISTREL_frmX"_s << u"b.Caption"_s << u"Omissão"_s;
    QTest::newRow("empty value") << u"EN"_s << u"VISTREL_frmX"_s << u"vazio"_s << u"Omissão"_s;
    QTest::newRow("missing section") << u"EN"_s << u"VISTREL_frmY"_s << u"a.Caption"_s << u"Omissão"_s;
    QTest::newRow("missing file") << u"XX"_s << u"VISTREL_frmX"_s << u"a.Caption"_s << u"Omissão"_s;
    QTest::newRow("empty code") << QString() << u"VISTREL_frmX"_s << u"a.Caption"_s << u"Omissão"_s;
}

void tst_traducoes::textoDaLingua() {
    QFETCH(QString, lingua);
    QFETCH(QString, seccao);
    QFETCH(QString, chave);
    Instalacao inst(Instalacao::Base::Nenhuma);
    inst.ficheiroLingua(u"EN"_s,
                        {{u"VISTREL_frmX"_s, u"a.Caption"_s, u"Confirm"_s}, {u"VISTREL_frmX"_s, u"vazio"_s, {}}});
    inst.usarLingua(lingua);
    QTEST(modTraducoes::texto(seccao, chave, u"Omissão"_s), "esperado");
}

void tst_traducoes::linguaDasDefinicoes_data() {
    QTest::addColumn<QByteArray>("ficheiro");
    QTest::addColumn<QString>("esperada");
    QTest::newRow("no file") << QByteArray() << u"PT"_s;
    QTest::newRow("no ACT") << QByteArray("[Lingua]\nL1=EN\n") << u"PT"_s;
    QTest::newRow("ACT without its L") << QByteArray("[Lingua]\nACT=3\nL1=EN\n") << u"PT"_s;
    QTest::newRow("second of two") << QByteArray("[Lingua]\nACT=2\nL1=PT\nL2=CZ\n") << u"CZ"_s;
    QTest::newRow("empty L") << QByteArray("[Lingua]\nACT=1\nL1=\n") << u"PT"_s;
}

void tst_traducoes::linguaDasDefinicoes() {
    QFETCH(QByteArray, ficheiro);
    Instalacao inst(Instalacao::Base::Nenhuma);
    Instalacao::escreverFicheiro(inst.pastaINI() + u"/Vistrel.ini"_s, ficheiro);
    QTEST(modTraducoes::linguaDasDefinicoes(), "esperada");
}

void tst_traducoes::mudaDeLinguaENaMesmaHora() {
    Instalacao inst(Instalacao::Base::Nenhuma);
    inst.ficheiroLingua(u"EN"_s, {{u"S"_s, u"k"_s, u"Exit"_s}});
    inst.ficheiroLingua(u"CZ"_s, {{u"S"_s, u"k"_s, u"Konec č"_s}});
    const auto lido = [] { return modTraducoes::texto(u"S"_s, u"k"_s, u"Sair"_s); };
    QCOMPARE(lido(), u"Sair"_s);
    inst.usarLingua(u"EN"_s);
    QCOMPARE(lido(), u"Exit"_s);
    inst.usarLingua(u"CZ"_s);
    QCOMPARE(lido(), u"Konec č"_s);
    // A corrected language file shows without a restart.
    inst.ficheiroLingua(u"CZ"_s, {{u"S"_s, u"k"_s, u"Ukončit"_s}});
    QCOMPARE(lido(), u"Ukončit"_s);
}

QTEST_GUILESS_MAIN(tst_traducoes)
#include "tst_traducoes.moc"
