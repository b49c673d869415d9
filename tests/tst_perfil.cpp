#include "core/literais.h"
#include "core/perfil.h"

#include <QTest>

class tst_perfil : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void le_data();
    void le();
    void escreve_data();
    void escreve();
    void guardaACodificacao_data();
    void guardaACodificacao();
    void naoTocaNasOutrasLinhas_data();
    void naoTocaNasOutrasLinhas();
    void devolveOQueRecebeu_data();
    void devolveOQueRecebeu();
    void lista();
};

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

void tst_perfil::le_data() {
    QTest::addColumn<QByteArray>("ficheiro");
    QTest::addColumn<QString>("esperado"); // of section S, key k
    const auto linha = [](const char *nome, const QByteArray &f, const QString &v) { QTest::newRow(nome) << f << v; };
    linha("plain", "[S]\nk=v\n", u"v"_s);
    linha("case", "[s]\nK=v\n", u"v"_s);
    linha("first key wins", "[S]\nk=1\nk=2\n", u"1"_s);
    linha("first section wins", "[S]\nk=1\n[S]\nk=2\n", u"1"_s);
    linha("key only in the second section of the name", "[S]\na=1\n[s]\nk=2\n", ausente);
    linha("key of another section", "[T]\nk=1\n[S]\na=1\n", ausente);
    linha("before any section", "k=1\n[S]\n", ausente);
    linha("empty value", "[S]\nk=\n", u""_s);
    linha("empty file", "", ausente);
    linha("equals signs", "[S]\nk=a=b=c\n", u"a=b=c"_s);
    linha("blanks around", " [ S ] \n  k  =  v w  \n", u"v w"_s);
    linha("quotes protect blanks", "[S]\nk=\" v \"\n", u" v "_s);
    linha("apostrophes too", "[S]\nk=' v '\n", u" v "_s);
    linha("one pair only", "[S]\nk=\"\"v\"\"\n", u"\"v\""_s);
    linha("a lone quote", "[S]\nk=\"\n", u"\""_s);
    linha("unlike quotes", "[S]\nk=\"v'\n", u"\"v'"_s);
    linha("comment", "[S]\n;k=1\n ; k=2\nk=3\n", u"3"_s);
    linha("a value is no comment", "[S]\nk=a;b\n", u"a;b"_s);
    linha("line without equals", "[S]\nk\nk=1\n", u"1"_s);
    linha("no final newline", "[S]\nk=v", u"v"_s);
    linha("CR alone", "[S]\rk=v\rx=y\r", u"v"_s);
    linha("mixed ends", "[S]\r\na=1\rk=v\nb=2\r\n", u"v"_s);
    linha("unclosed section", "[S\nk=v\n", u"v"_s);
    linha("text after the bracket", "[S] ; note\nk=v\n", u"v"_s);
    linha("accents without case", "[s]\nk=v\n[\xC3\x81]\nk=w\n", u"v"_s);
    linha("UTF-8", "[S]\nk=\xC3\xA7\xE2\x82\xAC\n", u"ç€"_s);
    linha("UTF-8 with mark", "\xEF\xBB\xBF[S]\nk=\xC3\xA7\n", u"ç"_s);
    linha("1252", "[S]\nk=\xE7o\x80\x93\n", u"ço€“"_s);
    linha("UTF-16 LE", utf16(u"[S]\r\nk=ç€č\r\n"_s, true), u"ç€č"_s);
    linha("UTF-16 BE", utf16(u"[S]\r\nk=ç€č\r\n"_s, false), u"ç€č"_s);
}

void tst_perfil::le() {
    QFETCH(QByteArray, ficheiro);
    QTEST(Perfil(ficheiro).valor(u"S"_s, u"k"_s).value_or(ausente), "esperado");
}

void tst_perfil::escreve_data() {
    QTest::addColumn<QByteArray>("antes");
    QTest::addColumn<QString>("valor");
    QTest::addColumn<QByteArray>("depois");
    const auto linha = [](const char *nome, const QByteArray &a, const QString &v, const QByteArray &d) {
        QTest::newRow(nome) << a << v << d;
    };
    linha("new file", "", u"v"_s, "[S]\r\nk=v\r\n");
    linha("replace, name as it stood", "[s]\n K =1\nx=2\n", u"v"_s, "[s]\n K =v\nx=2\n");
    linha("only the first", "[S]\nk=1\nk=2\n", u"v"_s, "[S]\nk=v\nk=2\n");
    linha("append to the section", "[S]\na=1\n\n[T]\nk=9\n", u"v"_s, "[S]\na=1\nk=v\n\n[T]\nk=9\n");
    linha("empty section", "[S]\n\n[T]\n", u"v"_s, "[S]\nk=v\n\n[T]\n");
    linha("after comments and junk", "[S]\n;c\njunk\n", u"v"_s, "[S]\n;c\njunk\nk=v\n");
    linha("no final newline", "[S]\na=1", u"v"_s, "[S]\na=1\nk=v\n");
    linha("no final newline, last line set", "[S]\nk=1", u"v"_s, "[S]\nk=v");
    linha("new section, no final newline", "[T]\r\na=1", u"v"_s, "[T]\r\na=1\r\n[S]\r\nk=v\r\n");
    linha("CR", "[S]\ra=1\r", u"v"_s, "[S]\ra=1\rk=v\r");
    linha("each line keeps its end", "[S]\na=1\r\nk=2\rb=3\n", u"v"_s, "[S]\na=1\r\nk=v\rb=3\n");
    linha("outer blanks", "[S]\nk=1\n", u" v "_s, "[S]\nk=\" v \"\n");
    linha("quoted value", "[S]\n", u"\"v\""_s, "[S]\nk=\"\"v\"\"\n");
    linha("line feeds as they are", "[S]\nk=1\nx=2\n", u"a\nb=3\r\nc"_s, "[S]\nk=a\nb=3\r\nc\nx=2\n");
    linha("outside 1252", "[S]\nx=\xE7\n", u"ç€č"_s, "[S]\nx=\xE7\nk=\xE7\x80?\n");
}

void tst_perfil::escreve() {
    QFETCH(QByteArray, antes);
    QFETCH(QString, valor);
    Perfil p(antes);
    p.definir(u"S"_s, u"k"_s, valor);
    QTEST(p.bytes(), "depois");
    if (!valor.contains(u'č') || p.codificacao() != Perfil::Codificacao::Windows1252)
        QCOMPARE(*Perfil(p.bytes()).valor(u"S"_s, u"k"_s), valor.section(u'\n', 0, 0));
}

void tst_perfil::guardaACodificacao_data() {
    QTest::addColumn<QByteArray>("antes");
    QTest::addColumn<QByteArray>("depois");
    QTest::newRow("UTF-8") << QByteArray("[S]\na=\xC3\xA7\n") << QByteArray("[S]\na=\xC3\xA7\nk=\xC3\xA3\n");
    QTest::newRow("mark") << QByteArray("\xEF\xBB\xBF[S]\n") << QByteArray("\xEF\xBB\xBF[S]\nk=\xC3\xA3\n");
    QTest::newRow("1252") << QByteArray("[S]\na=\xE7\n") << QByteArray("[S]\na=\xE7\nk=\xE3\n");
    QTest::newRow("LE") << utf16(u"[S]\r\n"_s, true) << utf16(u"[S]\r\nk=ã\r\n"_s, true);
    QTest::newRow("BE") << utf16(u"[S]\r\n"_s, false) << utf16(u"[S]\r\nk=ã\r\n"_s, false);
    QTest::newRow("only a mark") << utf16({}, true) << utf16(u"[S]\r\nk=ã\r\n"_s, true);
}

void tst_perfil::guardaACodificacao() {
    QFETCH(QByteArray, antes);
    Perfil p(antes);
    p.definir(u"S"_s, u"k"_s, u"ã"_s);
    QTEST(p.bytes(), "depois");
}

// Bytes that are no text in the file's own encoding must survive a change of another line.
void tst_perfil::naoTocaNasOutrasLinhas_data() {
    QTest::addColumn<QByteArray>("inicio");
    QTest::newRow("broken UTF-8 after a mark") << QByteArray("\xEF\xBB\xBF; \xC3\x28 \xFF\n[S]\n");
    QTest::newRow("unassigned in 1252") << QByteArray("; \xFF\x81\x8D\x8F\x90\x9D\n[S]\n");
    QTest::newRow("lone surrogate") << utf16(u"; \xD800 x\n[S]\n"_s, true);
    QTest::newRow("NUL") << QByteArray("; a\0b\n[S]\n", 10);
    QTest::newRow("blank lines and junk") << QByteArray("\n\n  \t\njunk ]\n=\n = x\n[S]\n");
}

void tst_perfil::naoTocaNasOutrasLinhas() {
    QFETCH(QByteArray, inicio);
    Perfil p(inicio);
    p.definir(u"S"_s, u"k"_s, u"1"_s);
    p.definir(u"T"_s, u"k"_s, u"2"_s);
    p.definir(u"S"_s, u"k"_s, u"3"_s);
    QVERIFY(p.bytes().startsWith(inicio));
    QCOMPARE(*Perfil(p.bytes()).valor(u"S"_s, u"k"_s), u"3"_s);
    QCOMPARE(*Perfil(p.bytes()).valor(u"T"_s, u"k"_s), u"2"_s);
}

void tst_perfil::devolveOQueRecebeu_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("odd UTF-16") << utf16(u"[S]\nk=1"_s, true) + "x";
    QTest::newRow("odd UTF-16 BE after an end") << utf16(u"[S]\r\n"_s, false) + "x";
    QTest::newRow("CR at the very end") << QByteArray("[S]\r\nk=1\r");
    QTest::newRow("no end") << QByteArray("[S]");
}

void tst_perfil::devolveOQueRecebeu() {
    QFETCH(QByteArray, bytes);
    QCOMPARE(Perfil(bytes).bytes(), bytes);
}

void tst_perfil::lista() {
    const Perfil p("[A]\nx=1\n;y=2\nz = 3\njunk\n[B]\nw=4\n[a]\nq=5\n");
    QCOMPARE(p.seccoes(), QStringList({u"A"_s, u"B"_s, u"a"_s}));
    QCOMPARE(p.chaves(u"a"_s), QStringList({u"x"_s, u"z"_s}));
    QVERIFY(p.chaves(u"C"_s).isEmpty());
}

QTEST_GUILESS_MAIN(tst_perfil)
#include "tst_perfil.moc"
