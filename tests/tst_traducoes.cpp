#include "core/modTraducoes.h"
#include "core/textoMostrado.h"
#include "tests/apoio/instalacao.h"

class tst_traducoes : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void textoDaLingua() {
        const Instalacao inst(Instalacao::Base::Nenhuma);
        const auto lido = [&](const QString &lingua, const QString &seccao, const QString &chave) {
            inst.usarLingua(lingua);
            return modTraducoes::texto(seccao, chave, u"Omissão"_s);
        };
        inst.ficheiroLingua(u"EN"_s,
                            {{u"VISTREL_frmX"_s, u"a.Caption"_s, u"Confirm"_s}, {u"VISTREL_frmX"_s, u"b"_s, {}}});
        inst.ficheiroLingua(u"CZ"_s, {{u"VISTREL_frmX"_s, u"a.Caption"_s, u"Konec č"_s}});
        QCOMPARE(lido(u"EN"_s, u"VISTREL_frmX"_s, u"a.Caption"_s), u"Confirm"_s);
        QCOMPARE(lido(u"EN"_s, u"vistrel_FRMX"_s, u"A.CAPTION"_s), u"Confirm"_s);
        QCOMPARE(lido(u"EN"_s, u"VISTREL_frmX"_s, u"b"_s), u"Omissão"_s);
        QCOMPARE(lido(u"EN"_s, u"VISTREL_frmX"_s, u"none"_s), u"Omissão"_s);
        QCOMPARE(lido(u"EN"_s, u"VISTREL_frmY"_s, u"a.Caption"_s), u"Omissão"_s);
        QCOMPARE(lido(u"XX"_s, u"VISTREL_frmX"_s, u"a.Caption"_s), u"Omissão"_s);
        QCOMPARE(lido(u"CZ"_s, u"VISTREL_frmX"_s, u"a.Caption"_s), u"Konec č"_s);
        // A corrected language file shows without a restart.
        inst.ficheiroLingua(u"CZ"_s, {{u"VISTREL_frmX"_s, u"a.Caption"_s, u"Ukončit"_s}});
        QCOMPARE(lido(u"CZ"_s, u"VISTREL_frmX"_s, u"a.Caption"_s), u"Ukončit"_s);
    }

    void linguaDasDefinicoes() {
        const Instalacao inst(Instalacao::Base::Nenhuma);
        for (const auto &[ficheiro, esperada] : {std::pair("[Lingua]\nL1=EN\n", u"PT"_s),
                                                 {"[Lingua]\nACT=3\nL1=EN\n", u"PT"_s},
                                                 {"[Lingua]\nACT=2\nL1=PT\nL2=CZ\n", u"CZ"_s}}) {
            Instalacao::escreverFicheiro(inst.pastaINI() + u"/Vistrel.ini"_s, ficheiro);
            QCOMPARE(modTraducoes::linguaDasDefinicoes(), esperada);
        }
    }

    void mostrado_data() {
        const Tabela<QString, QString> caso("texto", "linha");
        caso("as it is", u"<b>Sala & 1</b> 😀"_s, u"<b>Sala & 1</b> 😀"_s);
        caso("line ends", u"a\r\nb\nc\rd"_s, u"a↵b↵c↵d"_s);
        caso("controls", u"a\tb\x1b[m\u0085"_s, u"a b�[m↵"_s);
        caso("directions", u"\u202egnp\u200f"_s, u"�gnp�"_s);
        caso("halves", QString(QChar(0xdc00) + u"x"_s + QChar(0xd800)), u"�x�"_s);
        caso("long", QString(30, u'W'), QString(QString(19, u'W') + u'…'));
        caso("no half is left", QString(QString(18, u'W') + u"😀😀"_s), QString(QString(18, u'W') + u'…'));
    }
    void mostrado() {
        QFETCH(const QString, texto);
        QTEST(textoMostrado::linha(texto, 20), "linha");
        static const QRegularExpression larga(u"\\S{123}"_s); // a word that makes a window too wide
        QVERIFY(!textoMostrado::paragrafos(texto.repeated(1000)).contains(larga));
    }

    void nomesDosMeses_data() {
        const Tabela<QString, QString, QString> caso("lingua", "sistema", "locale");
        caso("a system without a language", u"PT"_s, u"C"_s, u"pt_PT"_s);
        caso("by the country", u"CZ"_s, u"C"_s, u"cs_CZ"_s);
        caso("the system speaks another", u"EN"_s, u"pt_PT"_s, u"en_US"_s);
        caso("the system speaks it its own way", u"EN"_s, u"en_GB"_s, u"en_GB"_s);
        caso("of no known language", u"XX"_s, u"C"_s, u"pt_PT"_s);
    }
    void nomesDosMeses() {
        QFETCH(const QString, lingua);
        QFETCH(const QString, sistema);
        const Instalacao inst(Instalacao::Base::Nenhuma, QLocale(sistema));
        estado().Lingua = lingua;
        QTEST(modTraducoes::localeDosNomes().name(), "locale");
    }
};

QTEST_GUILESS_MAIN(tst_traducoes)
#include "tst_traducoes.moc"
