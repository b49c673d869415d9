#include "logger/numeros1921.h"
#include "logger/registoDS1921.h"
#include "tests/apoio/instalacao.h"

#include <QTest>

using namespace registoDS1921;

namespace {

const QString romid = u"D63B2000FBC52B21"_s;

// What a read of the pages gives back: every packet as 30 characters, the rest of a short one filled with zeros.
QString lidoDe(const QStringList &linhas) {
    QString texto;
    for (qsizetype i = 1; i < linhas.size() && i <= paginasLidas; ++i) {
        QByteArray bytes = bytesDoTexto(linhas[i]);
        bytes.append(caracteresLidos - bytes.size(), '\0');
        texto += QString::fromLatin1(bytes);
    }
    return texto;
}

// The old record: fixed slots of 30 characters.
QString antigo(const QStringList &campos) {
    QString texto;
    for (const QString &campo : campos)
        texto += campo.leftJustified(27, u' ', true) + QString(3, u'\0');
    return texto;
}

} // namespace

class tst_registo1921 : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void idaEVolta_data();
    void idaEVolta();
    void paginas();
    void registoDemasiadoLongo();
    void restoDeOutroRegisto();
    void decifra_data();
    void decifra();
    void numeroSeguinte_data();
    void numeroSeguinte();
    void registos_data();
    void registos();
    void textoDoROM();
    void gamas_data();
    void gamas();
    void numericos_data();
    void numericos();

private:
    std::unique_ptr<Instalacao> m_instalacao = std::make_unique<Instalacao>(Instalacao::Base::Nenhuma);
};

void tst_registo1921::idaEVolta_data() {
    QTest::addColumn<QString>("missao");
    QTest::addColumn<QString>("registador");
    QTest::addColumn<QString>("calibracao");
    QTest::newRow("plain") << u"Rota Semanal"_s << u"Registador Pescado"_s << u"0,0"_s;
    QTest::newRow("letters of the language") << u"Exposição d'Outono"_s << u"Café à mão"_s << u"-0,125"_s;
    QTest::newRow("one letter each") << u"m"_s << u"r"_s << u"2,000"_s;
    QTest::newRow("as long as can be typed")
        << QString(maximoDeDescricao, u'm') << QString(maximoDeDescricao, u'r') << u"-2,000"_s;
}

void tst_registo1921::idaEVolta() {
    QFETCH(QString, missao);
    QFETCH(QString, registador);
    QFETCH(QString, calibracao);
    const QStringList linhas = CriarEstruturaDasLinhas(u"0042"_s + missao, registador, romid + u"255", calibracao);
    const auto r = decifrar(lidoDe(linhas), u"0"_s);
    QVERIFY(r);
    QVERIFY(!r->VersaoAntiga);
    QCOMPARE(r->TextoMissao, missao);
    QCOMPARE(r->descricaoMissao, missao);
    QCOMPARE(r->descricaoRegistador, registador);
    QCOMPARE(r->numeroMissao, u"0042"_s);
    QCOMPARE(r->NumeroMissaoActual, qint16(42));
    QCOMPARE(r->intervalo, u"255"_s);
    QCOMPARE(r->calibracao.value_or(QString()), calibracao);
    QCOMPARE(r->Calibracao, QString(calibracao).replace(u',', u'.').toDouble());
}

// A page holds 28 characters and the number of the next one.
void tst_registo1921::paginas() {
    const QStringList linhas = CriarEstruturaDasLinhas(QString(55, u'a'), {}, {}, QString(23, u'b'));
    QCOMPARE(linhas.size(), 4); // 82 characters: 28, 28 and 26
    QVERIFY(linhas[0].isEmpty());
    QCOMPARE(linhas[1], QString(28, u'a') + QChar(2));
    QCOMPARE(linhas[2], QString(27, u'a') + u'\n' + QChar(3));
    QCOMPARE(linhas[3], u"\n\n"_s + QString(23, u'b') + u'\n' + QString(2, u'\0'));
    // Exactly a page is left: filled up, and cut when it is written.
    const QStringList cheia = CriarEstruturaDasLinhas(QString(24, u'a'), {}, {}, {});
    QCOMPARE(cheia.size(), 2);
    QCOMPARE(cheia[1].size(), 30);
    QCOMPARE(bytesDoTexto(cheia[1]).size(), bytesPorPacote);
}

void tst_registo1921::registoDemasiadoLongo() {
    // Eleven pages and no end: what does not fit is lost without a word.
    const QStringList linhas = CriarEstruturaDasLinhas(u"0001"_s + QString(400, u'm'), u"r"_s, romid, u"0"_s);
    QCOMPARE(linhas.size(), ultimaPagina);
    QCOMPARE(linhas.last().back(), QChar(ultimaPagina));
}

// A shorter record leaves pages of the longer one before it behind.
void tst_registo1921::restoDeOutroRegisto() {
    const QStringList longo =
        CriarEstruturaDasLinhas(u"0007"_s + QString(60, u'x'), QString(60, u'y'), romid, u"1,5"_s);
    QStringList linhas = CriarEstruturaDasLinhas(u"0008curta"_s, u"novo"_s, romid + u"5", u"0,0"_s);
    linhas += longo.mid(linhas.size());
    const auto r = decifrar(lidoDe(linhas), romid);
    QVERIFY(r);
    QCOMPARE(r->TextoMissao, u"curta"_s);
    QCOMPARE(r->descricaoRegistador, u"novo"_s);
    QCOMPARE(r->Calibracao, 0.0);
}

void tst_registo1921::decifra_data() {
    QTest::addColumn<QString>("texto");
    QTest::addColumn<bool>("aceite");
    QTest::addColumn<bool>("velho");
    QTest::addColumn<QString>("missao");
    QTest::addColumn<QString>("registador");
    QTest::addColumn<QString>("numero");
    QTest::addColumn<QString>("intervalo");
    QTest::addColumn<double>("calibracao");
    const QString x = u"x"_s;
    const auto novo = [](const QString &a, const QString &b, const QString &c, const QString &d) {
        return lidoDe(CriarEstruturaDasLinhas(a, b, c, d));
    };
    QTest::newRow("blank button") << QString() << true << false << x << x << u"0000"_s << u"1"_s << 0.0;
    QTest::newRow("no logger name") << novo(u"0003abc"_s, {}, romid + u"10", u"0,5"_s) << true << false << u"abc"_s << x
                                    << u"0003"_s << u"10"_s << 0.5;
    QTest::newRow("a point in the calibration") << novo(u"0003abc"_s, u"r"_s, romid + u"10", u"1.5"_s) << true << false
                                                << u"abc"_s << u"r"_s << u"0003"_s << u"10"_s << 1.5;
    QTest::newRow("no calibration") << novo(u"0003abc"_s, u"r"_s, romid + u"10", {}) << true << false << u"abc"_s
                                    << u"r"_s << u"0003"_s << u"10"_s << 0.0;
    QTest::newRow("calibration is no number") << novo(u"0003abc"_s, u"r"_s, romid + u"10", u"abc"_s) << true << false
                                              << u"abc"_s << u"r"_s << u"0003"_s << u"10"_s << 0.0;
    QTest::newRow("no interval") << novo(u"0003abc"_s, u"r"_s, romid, u"0"_s) << true << false << u"abc"_s << u"r"_s
                                 << u"0003"_s << u"1"_s << 0.0;
    QTest::newRow("interval zero") << novo(u"0003abc"_s, u"r"_s, romid + u"0", u"0"_s) << true << false << u"abc"_s
                                   << u"r"_s << u"0003"_s << u"1"_s << 0.0;
    QTest::newRow("number is no number") << novo(u"abcdefg"_s, u"r"_s, romid, u"0"_s) << false << false << QString()
                                         << QString() << QString() << QString() << 0.0;
    QTest::newRow("only a number") << novo(u"0003"_s, u"r"_s, romid, u"0"_s) << false << false << QString() << QString()
                                   << QString() << QString() << 0.0;
    QTest::newRow("three fields") << u"0003abc\nr\n"_s + romid << false << false << QString() << QString() << QString()
                                  << QString() << 0.0;
    QTest::newRow("old record") << antigo({u"0012Lota"_s, u"Pescado"_s, {}, u"0,5"_s}) << true << true << u"Lota"_s
                                << u"Pescado"_s << u"0012"_s << u"1"_s << 0.5;
    QTest::newRow("old record without a name") << antigo({u"0012Lota"_s, {}, {}, u"0,5"_s}) << false << false
                                               << QString() << QString() << QString() << QString() << 0.0;
    QTest::newRow("old record without a calibration") << antigo({u"0012Lota"_s, u"Pescado"_s, {}, {}}) << false << false
                                                      << QString() << QString() << QString() << QString() << 0.0;
}

void tst_registo1921::decifra() {
    QFETCH(QString, texto);
    QFETCH(bool, aceite);
    QFETCH(bool, velho);
    const auto r = decifrar(texto, romid);
    QCOMPARE(r.has_value(), aceite);
    if (!aceite)
        return;
    QCOMPARE(r->VersaoAntiga, velho);
    QTEST(r->TextoMissao, "missao");
    QTEST(r->descricaoRegistador, "registador");
    QTEST(r->numeroMissao, "numero");
    QTEST(r->intervalo, "intervalo");
    QTEST(r->Calibracao, "calibracao");
}

void tst_registo1921::numeroSeguinte_data() {
    QTest::addColumn<int>("guardado");
    QTest::addColumn<QString>("seguinte");
    QTest::newRow("none") << 0 << u"0001"_s;
    QTest::newRow("one") << 1 << u"0002"_s;
    QTest::newRow("the last but one") << 9998 << u"9999"_s;
    QTest::newRow("the last") << 9999 << u"0001"_s;
}

void tst_registo1921::numeroSeguinte() {
    QFETCH(int, guardado);
    QTEST(numeroDeMissao(registoDS1921::numeroSeguinte(guardado)), "seguinte");
}

void tst_registo1921::registos_data() {
    QTest::addColumn<int>("controlo");
    QTest::addColumn<int>("leituras");
    QTest::addColumn<bool>("rollover");
    QTest::newRow("memory just full") << 8 << 2048 << false;
    QTest::newRow("one more") << 8 << 2049 << true;
    QTest::newRow("no bit of control set") << 0 << 100000 << false;
    QTest::newRow("any bit of control") << 0x40 << 0x123456 << true;
}

void tst_registo1921::registos() {
    QFETCH(int, controlo);
    QFETCH(int, leituras);
    tmex::Pagina pagina{};
    pagina[14] = quint8(controlo);
    for (int i = 0; i < 3; ++i) {
        pagina[size_t(26 + i)] = quint8(leituras >> (8 * i));
        pagina[size_t(29 + i)] = quint8(0xABCDEF >> (8 * i));
    }
    QCOMPARE(LerAmostrasMissao(pagina), double(leituras));
    QCOMPARE(LerAmostrasDispositivo(pagina), double(0xABCDEF));
    QTEST(RolloverOcorreu(pagina), "rollover");
}

// Small elements take a zero too many here, so that the family ends the text as "021".
void tst_registo1921::textoDoROM() {
    QCOMPARE(textoROM({0x21, 0x2B, 0xC5, 0xFB, 0x00, 0x20, 0x3B, 0xD6}), u"D63B02000FBC52B021"_s);
    QCOMPARE(textoROM({0x21, 0x22, 0x1F, 0x09, 0x00, 0x00, 0x00, 0xFF}), u"FF00000009"
                                                                         "01F"
                                                                         "22"
                                                                         "021"_s);
}

void tst_registo1921::gamas_data() {
    QTest::addColumn<QString>("tipo");
    QTest::addColumn<QString>("primeiroLimite");
    QTest::addColumn<QString>("ultimoLimite");
    QTest::addColumn<int>("limites");
    QTest::addColumn<QString>("segundaCalibracao");
    QTest::addColumn<QString>("ultimaCalibracao");
    QTest::addColumn<int>("calibracoes");
    QTest::newRow("H") << u"H"_s << u"46,0"_s << u"15,0"_s << 63 << u"1,875"_s << u"-2,000"_s << 33;
    QTest::newRow("Z") << u"Z"_s << u"26,0"_s << u"-5,0"_s << 63 << u"1,875"_s << u"-2,000"_s << 33;
    QTest::newRow("G") << u"G"_s << u"85,0"_s << u"-40,0"_s << 251 << u"4,9"_s << u"-5,0"_s << 101;
    QTest::newRow("not read") << QString() << u"85,0"_s << u"-40,0"_s << 251 << u"4,9"_s << u"-5,0"_s << 101;
}

void tst_registo1921::gamas() {
    QFETCH(QString, tipo);
    const numeros1921::Gama &gama = numeros1921::gamaDe(tipo);
    const QStringList limites = numeros1921::limitesDe(gama);
    QTEST(limites.first(), "primeiroLimite");
    QTEST(limites.last(), "ultimoLimite");
    QTEST(int(limites.size()), "limites");
    const QStringList calibracoes = numeros1921::calibracoesDe(gama);
    QTEST(calibracoes[1], "segundaCalibracao");
    QTEST(calibracoes.last(), "ultimaCalibracao");
    QTEST(int(calibracoes.size()), "calibracoes");
    // The one that is chosen without a calibration.
    QVERIFY(calibracoes.contains(numeros1921::formatar(-0.0, gama.casasCalibracao)));
    for (const QString &calibracao : calibracoes) {
        const QString gravada = calibracao.left(6); // what a record keeps of it
        QCOMPARE(valorDeCalibracao(gravada), QString(calibracao).replace(u',', u'.').toDouble());
    }
}

void tst_registo1921::numericos_data() {
    QTest::addColumn<QString>("texto");
    QTest::addColumn<bool>("numerico");
    for (const char *t : {"0001", "-0,5", "1.5", " 12 ", ",5", "5,"})
        QTest::newRow(t) << QString::fromLatin1(t) << true;
    for (const char *t : {"", "-", ",", "1,2,3", "12a4", "1-2", "--1", "0x1F", "1e3"})
        QTest::addRow("not %s", t) << QString::fromLatin1(t) << false;
}

void tst_registo1921::numericos() {
    QFETCH(QString, texto);
    QTEST(numeros1921::eNumerico(texto), "numerico");
}

QTEST_GUILESS_MAIN(tst_registo1921)
#include "tst_registo1921.moc"
