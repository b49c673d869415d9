#include "core/modDoubleTratamento.h"
#include "logger/numeros1921.h"
#include "logger/registoDS1921.h"
#include "tests/apoio/instalacao.h"
#include "tests/falhaDe.h"

#include <cmath>

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
        // Eleven pages and no end: what does not fit is lost without a word.
        const QStringList longa = CriarEstruturaDasLinhas(u"0001"_s + QString(400, u'm'), u"r"_s, romid, u"0"_s);
        QCOMPARE(longa.size(), ultimaPagina);
        QCOMPARE(longa.last().back(), QChar(ultimaPagina));
    }

    void decifra_data() {
        // esperado: version, mission, logger, number, interval, calibration; empty: refused
        const Tabela<QString, QString> caso("texto", "esperado");
        const auto novo = [](const QString &a, const QString &b, const QString &c, const QString &d) {
            return lidoDe(CriarEstruturaDasLinhas(a, b, c, d));
        };
        const QString abc = u"0003abc"_s;
        const QString dez = romid + u"10";
        const QString m(maximoDeDescricao, u'm'), r(maximoDeDescricao, u'r');
        caso("letters of the language", novo(u"0042Exposição d'Outono"_s, u"Café à mão"_s, romid + u"255", u"-0,125"_s),
             u"new|Exposição d'Outono|Café à mão|0042|255|-0.125"_s);
        caso("as long as can be typed", novo(u"0001"_s + m, r, dez, u"-2,000"_s), u"new|%1|%2|0001|10|-2"_s.arg(m, r));
        // A shorter record leaves pages of the longer one before it behind.
        QStringList curto = CriarEstruturaDasLinhas(abc, u"r"_s, dez, u"0,0"_s);
        curto += CriarEstruturaDasLinhas(u"0007"_s + m, r, romid, u"1,5"_s).mid(curto.size());
        caso("rest of another record", lidoDe(curto), u"new|abc|r|0003|10|0"_s);
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

    void registoPorPaginas_data() {
        const Tabela<QList<int>, bool> caso("tamanhos", "inteiro"); // of the packets; 29 goes on to the next page
        caso("blank button", {-1, -1, -1, -1, -1, -1}, true);
        caso("formatted button", {0, 0, 0, 0, 0, 0}, true);
        caso("three pages", {29, 29, 12, -1, -1, -1}, true);
        caso("rest of a longer record", {29, 12, 29, 29, 5, -1}, true);
        caso("over all that is read", {29, 29, 29, 29, 29, 29}, true);
        caso("first page gone", {-1, 29, 12, -1, -1, -1}, false);
        caso("first page emptied", {0, 29, 12, -1, -1, -1}, false);
        caso("page in the middle gone", {29, -1, 12, -1, -1, -1}, false);
        caso("last page emptied", {29, 29, 0, -1, -1, -1}, false);
        caso("slots of the old record", {27, 28, -1, 27, -1, -1}, true);
    }
    void registoPorPaginas() {
        QFETCH(QList<int>, tamanhos);
        std::vector<PaginaDeTexto> paginas;
        for (const int tamanho : tamanhos)
            paginas.push_back({tamanho, QString(28, u'a') + QChar(char16_t(paginas.size() + 2)) + QChar(u'\0')});
        QTEST(registoInteiro(paginas), "inteiro");
    }

    void registos() {
        const std::tuple<int, int, bool> casos[] = {
            {8, 2048, false}, {8, 2049, true}, {0, 100000, false}, {0x40, 0x123456, true}};
        for (const auto &[controlo, leituras, rollover] : casos) {
            tmex::Pagina pagina{};
            pagina[14] = quint8(controlo);
            for (int i = 0; i < 3; ++i) {
                pagina[size_t(26 + i)] = quint8(leituras >> (8 * i));
                pagina[size_t(29 + i)] = quint8(0xABCDEF >> (8 * i));
            }
            QCOMPARE(LerAmostrasMissao(pagina), double(leituras));
            QCOMPARE(LerAmostrasDispositivo(pagina), double(0xABCDEF));
            QCOMPARE(RolloverOcorreu(pagina), rollover);
        }
    }

    // Small elements take a zero too many here, so that the family ends the text as "021".
    void textoDoROM() { QCOMPARE(textoROM({0x21, 0x22, 0x1F, 0x09, 0x00, 0x00, 0x00, 0xFF}), u"FF0000000901F22021"_s); }

    void gamas() {
        // First, last and number of the limits; second, last and number of the calibrations.
        const std::tuple<QString, QString, QString> casos[] = {
            {u"H"_s, u"46,0 15,0 63"_s, u"1,875 -2,000 33"_s},
            {u"Z"_s, u"26,0 -5,0 63"_s, u"1,875 -2,000 33"_s},
            {{}, u"85,0 -40,0 251"_s, u"4,9 -5,0 101"_s},
        };
        for (const auto &[tipo, limitesCertos, calibracoesCertas] : casos) {
            const numeros1921::Gama &gama = numeros1921::gamaDe(tipo);
            const QStringList limites = numeros1921::limitesDe(gama);
            const QStringList calibracoes = numeros1921::calibracoesDe(gama);
            QCOMPARE(u"%1 %2 %3"_s.arg(limites.first(), limites.last()).arg(limites.size()), limitesCertos);
            QCOMPARE(u"%1 %2 %3"_s.arg(calibracoes[1], calibracoes.last()).arg(calibracoes.size()), calibracoesCertas);
            // The one that is chosen without a calibration.
            QVERIFY(calibracoes.contains(numeros1921::formatar(-0.0, gama.casasCalibracao)));
            for (const QString &calibracao : calibracoes) // what a record keeps of it
                QCOMPARE(valorDeCalibracao(calibracao.left(6)), QString(calibracao).replace(u',', u'.').toDouble());
        }
    }

    void numericos() {
        for (const char *t : {"0001", "-0,5", "1.5", " 12 ", ",5", "5,"})
            QVERIFY2(numeros1921::eNumerico(QString::fromLatin1(t)), t);
        for (const char *t : {"", "-", ",", "1,2,3", "12a4", "1-2", "--1", "0x1F", "1e3"})
            QVERIFY2(!numeros1921::eNumerico(QString::fromLatin1(t)), t);
        QVERIFY(!numeros1921::eNumerico(QString(400, u'9')));
    }

    // What is taken for a number is read, and as the number that was meant, in every locale.
    void numericoEConvertido() {
        const QString letras = u"00123456789.,.,-- \f\u00a0\u2003\te"_s;
        QRandomGenerator acaso(1921);
        for (const QString &nome : {u"pt_PT"_s, u"en_US"_s, u"cs_CZ"_s, u"fr_CH"_s, u"sv_SE"_s, u"ar_EG"_s}) {
            m_instalacao->locale(nome);
            int aceites = 0;
            for (int i = 0; i < 30'000 || aceites < 500; ++i) {
                QString t;
                for (int n = acaso.bounded(1, 8); n > 0; --n)
                    t += letras[acaso.bounded(int(letras.size()))];
                if (!numeros1921::eNumerico(t))
                    continue;
                ++aceites;
                const double certo = QLocale::c().toDouble(t.trimmed().replace(u',', u'.'));
                double lido = std::nan("");
                (void)falhaDe([&] { lido = modDoubleTratamento::TextoParaDouble(t); });
                QVERIFY2(lido == certo, qUtf8Printable(nome + u": \"" + t + u'"'));
            }
        }
        m_instalacao->locale(u"pt_PT"_s);
        QCOMPARE(valorDeCalibracao(u",50 "_s), 0.5);
    }

private:
    std::unique_ptr<Instalacao> m_instalacao = std::make_unique<Instalacao>(Instalacao::Base::Nenhuma);
};

QTEST_GUILESS_MAIN(tst_registo1921)
#include "tst_registo1921.moc"
