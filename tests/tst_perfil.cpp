#include "core/literais.h"
#include "core/perfil.h"
#include "tests/apoio/tabela.h"

namespace {

const auto ausente = u"(absent)"_s;
QByteArray utf16(const QString &texto, bool le) {
    QByteArray b(le ? "\xFF\xFE" : "\xFE\xFF", 2);
    for (const QChar c : texto) {
        const char alto = char(c.unicode() >> 8);
        const char baixo = char(c.unicode() & 0xFF);
        b.append(le ? baixo : alto).append(le ? alto : baixo);
    }
    return b;
}

} // namespace

class tst_perfil : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void le_data() {
        const Tabela<QByteArray, QString> caso("ficheiro", "esperado"); // of section S, key k
        caso("plain", "[S]\nk=v\n", u"v"_s);
        caso("case", "[s]\nK=v\n", u"v"_s);
        caso("first key wins", "[S]\nk=1\nk=2\n", u"1"_s);
        caso("key only in the second section of the name", "[S]\na=1\n[s]\nk=2\n", ausente);
        caso("key of other sections", "[T]\nk=1\n[S]\na=1\n[U]\nk=1\n", ausente);
        caso("before any section", "k=1\n[S]\n", ausente);
        caso("empty value", "[S]\nk=\n", u""_s);
        caso("equals signs", "[S]\nk=a=b=c\n", u"a=b=c"_s);
        caso("blanks around", " [ S ] \n  k  =  v w  \n", u"v w"_s);
        caso("apostrophes protect blanks", "[S]\nk=' v '\n", u" v "_s);
        caso("one pair only", "[S]\nk=\"\"v\"\"\n", u"\"v\""_s);
        caso("a lone quote", "[S]\nk=\"\n", u"\""_s);
        caso("unlike quotes", "[S]\nk=\"v'\n", u"\"v'"_s);
        caso("comment", "[S]\n;k=1\n ; k=2\nk=3\n", u"3"_s);
        caso("a value is no comment", "[S]\nk=a;b\n", u"a;b"_s);
        caso("line without equals", "[S]\nk\nk=1\n", u"1"_s);
        caso("no final newline", "[S]\nk=v", u"v"_s);
        caso("mixed ends", "[S]\r\na=1\rk=v\nb=2\r\n", u"v"_s);
        caso("unclosed section", "[S\nk=v\n", u"v"_s);
        caso("text after the bracket", "[S] ; note\nk=v\n", u"v"_s);
        caso("UTF-8", "[S]\nk=\xC3\xA7\xE2\x82\xAC\n", u"ç€"_s);
        caso("UTF-8 with mark", "\xEF\xBB\xBF[S]\nk=\xC3\xA7\n", u"ç"_s);
        caso("1252", "[S]\nk=\xE7o\x80\x93\n", u"ço€“"_s);
        caso("UTF-16 LE", utf16(u"[S]\r\nk=ç€č\r\n"_s, true), u"ç€č"_s);
        caso("UTF-16 BE", utf16(u"[S]\r\nk=ç€č\r\n"_s, false), u"ç€č"_s);
    }
    void le() {
        QFETCH(QByteArray, ficheiro);
        QTEST(Perfil(ficheiro).valor(u"S"_s, u"k"_s).value_or(ausente), "esperado");
    }

    void escreve_data() {
        const Tabela<QByteArray, QString, QByteArray> caso("antes", "valor", "depois");
        caso("new file", "", u"v"_s, "[S]\r\nk=v\r\n");
        caso("replace, name as it stood", "[s]\n K =1\nx=2\n", u"v"_s, "[s]\n K =v\nx=2\n");
        caso("only the first", "[S]\nk=1\nk=2\n", u"v"_s, "[S]\nk=v\nk=2\n");
        caso("append to the section", "[S]\na=1\n\n[T]\nk=9\n", u"v"_s, "[S]\na=1\nk=v\n\n[T]\nk=9\n");
        caso("after comments and junk", "[S]\n;c\njunk\n", u"v"_s, "[S]\n;c\njunk\nk=v\n");
        caso("no final newline", "[S]\na=1", u"v"_s, "[S]\na=1\nk=v\n");
        caso("no final newline, last line set", "[S]\nk=1", u"v"_s, "[S]\nk=v");
        caso("new section, no final newline", "[T]\r\na=1", u"v"_s, "[T]\r\na=1\r\n[S]\r\nk=v\r\n");
        caso("CR", "[S]\ra=1\r", u"v"_s, "[S]\ra=1\rk=v\r");
        caso("each line keeps its end", "[S]\na=1\r\nk=2\rb=3\n", u"v"_s, "[S]\na=1\r\nk=v\rb=3\n");
        caso("outer blanks", "[S]\nk=1\n", u" v "_s, "[S]\nk=\" v \"\n");
        caso("quoted value", "[S]\n", u"\"v\""_s, "[S]\nk=\"\"v\"\"\n");
        caso("line feeds as they are", "[S]\nk=1\nx=2\n", u"a\nb=3\r\nc"_s, "[S]\nk=a\nb=3\r\nc\nx=2\n");
        // In the encoding of the file.
        caso("UTF-8", "[S]\na=\xC3\xA7\n", u"ã"_s, "[S]\na=\xC3\xA7\nk=\xC3\xA3\n");
        caso("mark", "\xEF\xBB\xBF[S]\n", u"ã"_s, "\xEF\xBB\xBF[S]\nk=\xC3\xA3\n");
        caso("1252", "[S]\na=\xE7\n", u"ã€"_s, "[S]\na=\xE7\nk=\xE3\x80\n");
        caso("LE", utf16(u"[S]\r\n"_s, true), u"ã"_s, utf16(u"[S]\r\nk=ã\r\n"_s, true));
        caso("BE", utf16(u"[S]\r\n"_s, false), u"ã"_s, utf16(u"[S]\r\nk=ã\r\n"_s, false));
        caso("only a mark", utf16({}, true), u"ã"_s, utf16(u"[S]\r\nk=ã\r\n"_s, true));
    }
    void escreve() {
        QFETCH(QByteArray, antes);
        QFETCH(QString, valor);
        Perfil p(antes);
        p.definir(u"S"_s, u"k"_s, valor);
        QTEST(p.bytes(), "depois");
        QCOMPARE(*Perfil(p.bytes()).valor(u"S"_s, u"k"_s), valor.section(u'\n', 0, 0));
    }

    // Bytes that are no text in the file's own encoding must survive a change of another line.
    void naoTocaNasOutrasLinhas_data() {
        const Tabela<QByteArray> caso("inicio");
        caso("broken UTF-8 after a mark", "\xEF\xBB\xBF; \xC3\x28 \xFF\n[S]\n");
        caso("unassigned in 1252", "; \xFF\x81\x8D\x8F\x90\x9D\n[S]\n");
        caso("lone surrogate", utf16(u"; \xD800 x\n[S]\n"_s, true));
        caso("NUL", QByteArray("; a\0b\n[S]\n", 10));
        caso("blank lines and junk", "\n\n  \t\njunk ]\n=\n = x\n[S]\n");
    }
    void naoTocaNasOutrasLinhas() {
        QFETCH(QByteArray, inicio);
        Perfil p(inicio);
        p.definir(u"S"_s, u"k"_s, u"1"_s);
        p.definir(u"T"_s, u"k"_s, u"2"_s);
        p.definir(u"S"_s, u"k"_s, u"3"_s);
        QVERIFY(p.bytes().startsWith(inicio));
        QCOMPARE(*Perfil(p.bytes()).valor(u"S"_s, u"k"_s), u"3"_s);
        QCOMPARE(*Perfil(p.bytes()).valor(u"T"_s, u"k"_s), u"2"_s);
    }

    // Half a character at the end must not shift what is added behind it.
    void meioCaracterNoFim() {
        for (const bool le : {true, false}) {
            for (const QString &chave : {u"a"_s, u"nova"_s}) {
                Perfil p(utf16(u"[T]\nb=ç\n[S]\na=1"_s, le) + 'x');
                p.definir(u"S"_s, chave, u"2"_s);
                p.definir(u"U"_s, u"k"_s, u"3"_s);
                const Perfil lido(p.bytes());
                QCOMPARE(*lido.valor(u"T"_s, u"b"_s) + *lido.valor(u"S"_s, u"a"_s), chave == u"a" ? u"ç2"_s : u"ç1"_s);
                QCOMPARE(lido.valor(u"S"_s, chave).value_or(QString()), u"2"_s);
                QCOMPARE(lido.valor(u"U"_s, u"k"_s).value_or(QString()), u"3"_s);
            }
        }
    }

    void devolveOQueRecebeu() {
        for (const QByteArray &bytes :
             QByteArrayList{utf16(u"[S]\nk=1"_s, true) + "x", utf16(u"[S]\r\n"_s, false) + "x",
                            QByteArray("[S]\r\nk=1\r"), QByteArray("[S]")})
            QCOMPARE(Perfil(bytes).bytes(), bytes);
        Perfil p("[S]\nx=\xE7\n"); // 1252 has no such letter
        p.definir(u"S"_s, u"k"_s, u"č"_s);
        QCOMPARE(p.bytes(), "[S]\nx=\xE7\nk=?\n");
    }

    void lista() {
        const Perfil p("[A]\nx=1\n;y=2\nz = 3\njunk\n[B]\nw=4\n[a]\nq=5\n");
        QCOMPARE(p.seccoes(), QStringList({u"A"_s, u"B"_s, u"a"_s}));
        QCOMPARE(p.chaves(u"a"_s), QStringList({u"x"_s, u"z"_s}));
        QVERIFY(p.chaves(u"C"_s).isEmpty());
    }
};

QTEST_GUILESS_MAIN(tst_perfil)
#include "tst_perfil.moc"
