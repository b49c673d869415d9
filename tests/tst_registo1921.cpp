#include "logger/numeros1921.h"
#include "logger/registoDS1921.h"
#include "tests/apoio/instalacao.h"
#include "tests/apoio/tabela.h"

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
    void idaEVolta_data() {
        const Tabela<QString, QString, QString> caso("missao", "registador", "calibracao");
        caso("plain", u"Rota Semanal"_s, u"Registador Pescado"_s, u"0,0"_s);
        caso("letters of the language", u"Exposição d'Outono"_s, u"Café à mão"_s, u"-0,125"_s);
        caso("one letter each", u"m"_s, u"r"_s, u"2,000"_s);
        caso("as long as can be typed", QString(maximoDeDescricao, u'm'), QString(maximoDeDescricao, u'r'),
             u"-2,000"_s);
    }
    void idaEVolta() {
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
    void paginas() {
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

    void registoDemasiadoLongo() {
        // Eleven pages and no end: what does not fit is lost without a word.
        const QStringList linhas = CriarEstruturaDasLinhas(u"0001"_s + QString(400, u'm'), u"r"_s, romid, u"0"_s);
        QCOMPARE(linhas.size(), ultimaPagina);
        QCOMPARE(linhas.last().back(), QChar(ultimaPagina));
    }

    // A shorter record leaves pages of the longer one before it behind.
    void restoDeOutroRegisto() {
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

    void decifra_data() {
        // esperado: version, mission, logger, number, interval, calibration; empty: refused
        const Tabela<QString, QString> caso("texto", "esperado");
        const auto novo = [](const QString &a, const QString &b, const QString &c, const QString &d) {
            return lidoDe(CriarEstruturaDasLinhas(a, b, c, d));
        };
        const QString abc = u"0003abc"_s;
        const QString dez = romid + u"10";
        caso("blank button", {}, u"new|x|x|0000|1|0"_s);
        caso("no logger name", novo(abc, {}, dez, u"0,5"_s), u"new|abc|x|0003|10|0.5"_s);
        caso("a point in the calibration", novo(abc, u"r"_s, dez, u"1.5"_s), u"new|abc|r|0003|10|1.5"_s);
        caso("no calibration", novo(abc, u"r"_s, dez, {}), u"new|abc|r|0003|10|0"_s);
        caso("calibration is no number", novo(abc, u"r"_s, dez, u"abc"_s), u"new|abc|r|0003|10|0"_s);
        caso("no interval", novo(abc, u"r"_s, romid, u"0"_s), u"new|abc|r|0003|1|0"_s);
        caso("interval zero", novo(abc, u"r"_s, romid + u"0", u"0"_s), u"new|abc|r|0003|1|0"_s);
        caso("number is no number", novo(u"abcdefg"_s, u"r"_s, romid, u"0"_s), {});
        caso("only a number", novo(u"0003"_s, u"r"_s, romid, u"0"_s), {});
        caso("three fields", u"0003abc\nr\n"_s + romid, {});
        caso("old record", antigo({u"0012Lota"_s, u"Pescado"_s, {}, u"0,5"_s}), u"old|Lota|Pescado|0012|1|0.5"_s);
        caso("old record without a name", antigo({u"0012Lota"_s, {}, {}, u"0,5"_s}), {});
        caso("old record without a calibration", antigo({u"0012Lota"_s, u"Pescado"_s, {}, {}}), {});
    }
    void decifra() {
        QFETCH(QString, texto);
        QString lido;
        if (const auto r = decifrar(texto, romid))
            lido = QStringList{r->VersaoAntiga ? u"old"_s : u"new"_s,
                               r->TextoMissao,
                               r->descricaoRegistador,
                               r->numeroMissao,
                               r->intervalo,
                               QString::number(r->Calibracao)}
                       .join(u'|');
        QTEST(lido, "esperado");
    }

    void depoisDoUltimoNumero() {
        const std::pair<int, QString> casos[] = {{0, u"0001"_s}, {1, u"0002"_s}, {9998, u"9999"_s}, {9999, u"0001"_s}};
        for (const auto &[guardado, seguinte] : casos)
            QCOMPARE(numeroDeMissao(numeroSeguinte(guardado)), seguinte);
    }

    void registos_data() {
        const Tabela<int, int, bool> caso("controlo", "leituras", "rollover");
        caso("memory just full", 8, 2048, false);
        caso("one more", 8, 2049, true);
        caso("no bit of control set", 0, 100000, false);
        caso("any bit of control", 0x40, 0x123456, true);
    }
    void registos() {
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
    void textoDoROM() {
        QCOMPARE(textoROM({0x21, 0x2B, 0xC5, 0xFB, 0x00, 0x20, 0x3B, 0xD6}), u"D63B02000FBC52B021"_s);
        QCOMPARE(textoROM({0x21, 0x22, 0x1F, 0x09, 0x00, 0x00, 0x00, 0xFF}), u"FF00000009"
                                                                             "01F"
                                                                             "22"
                                                                             "021"_s);
    }

    void gamas_data() {
        // first, last and number of the limits; second, last and number of the calibrations
        const Tabela<QString, QString, QString> caso("tipo", "limites", "calibracoes");
        caso("H", u"H"_s, u"46,0 15,0 63"_s, u"1,875 -2,000 33"_s);
        caso("Z", u"Z"_s, u"26,0 -5,0 63"_s, u"1,875 -2,000 33"_s);
        caso("G", u"G"_s, u"85,0 -40,0 251"_s, u"4,9 -5,0 101"_s);
        caso("not read", {}, u"85,0 -40,0 251"_s, u"4,9 -5,0 101"_s);
    }
    void gamas() {
        QFETCH(QString, tipo);
        const numeros1921::Gama &gama = numeros1921::gamaDe(tipo);
        const QStringList limites = numeros1921::limitesDe(gama);
        const QStringList calibracoes = numeros1921::calibracoesDe(gama);
        QTEST(u"%1 %2 %3"_s.arg(limites.first(), limites.last()).arg(limites.size()), "limites");
        QTEST(u"%1 %2 %3"_s.arg(calibracoes[1], calibracoes.last()).arg(calibracoes.size()), "calibracoes");
        // The one that is chosen without a calibration.
        QVERIFY(calibracoes.contains(numeros1921::formatar(-0.0, gama.casasCalibracao)));
        for (const QString &calibracao : calibracoes) {
            const QString gravada = calibracao.left(6); // what a record keeps of it
            QCOMPARE(valorDeCalibracao(gravada), QString(calibracao).replace(u',', u'.').toDouble());
        }
    }

    void numericos_data() {
        const Tabela<QString, bool> caso("texto", "numerico");
        for (const char *t : {"0001", "-0,5", "1.5", " 12 ", ",5", "5,"})
            caso(t, QString::fromLatin1(t), true);
        for (const char *t : {"", "-", ",", "1,2,3", "12a4", "1-2", "--1", "0x1F", "1e3"})
            QTest::addRow("not %s", t) << QString::fromLatin1(t) << false;
    }
    void numericos() {
        QFETCH(QString, texto);
        QTEST(numeros1921::eNumerico(texto), "numerico");
    }

private:
    std::unique_ptr<Instalacao> m_instalacao = std::make_unique<Instalacao>(Instalacao::Base::Nenhuma);
};

QTEST_GUILESS_MAIN(tst_registo1921)
#include "tst_registo1921.moc"
