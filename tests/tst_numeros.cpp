#include "core/falha.h"
#include "core/modDoubleTratamento.h"
#include "tests/apoio/instalacao.h"

#include <QRandomGenerator>
#include <QTest>

#include <cmath>
#include <limits>

using namespace modDoubleTratamento;

class tst_numeros : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void le_data();
    void le();
    void comPonto_data();
    void comPonto();
    void escreve_data();
    void escreve();
    void quinzeAlgarismos();
    void idaEVoltaEmTodasAsLinguas();
    void arredonda_data();
    void arredonda();
    void semValor();
};

void tst_numeros::le_data() {
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("texto");
    QTest::addColumn<double>("valor"); // NaN: a failure
    const double falha = std::numeric_limits<double>::quiet_NaN();
    for (const char *l : {"pt_PT", "en_US", "cs_CZ", "fr_CH", "sv_SE"}) {
        const auto linha = [&](const QString &texto, double v) {
            QTest::addRow("%s %s", l, qUtf8Printable(texto)) << QString::fromLatin1(l) << texto << v;
        };
        linha(u"21.5"_s, 21.5);
        linha(u"21,5"_s, 21.5);
        linha(u"-0,25"_s, -0.25);
        linha(u"-5"_s, -5);
        linha(u"007"_s, 7);
        linha(u" 21.5 "_s, 21.5);
        linha(u"21'5"_s, 21.5); // whatever stands between the digits is the separator
        linha(u"-"_s, falha);
        linha(QString(), falha);
        linha(u"ND"_s, falha);
        linha(u"NA"_s, falha);
        linha(u"1.2.3"_s, falha);
        linha(u"5-"_s, falha);
        linha(u"1e5"_s, 1.5); // the letter is a separator like any other
        linha(u"1e-5"_s, falha);
        linha(QString(400, u'9'), falha);
    }
    QTest::newRow("two separators, pt") << u"pt_PT"_s << u"1.234,5"_s << falha;
    QTest::newRow("two separators, cs") << u"cs_CZ"_s << u"1,234.5"_s << falha;
    QTest::newRow("groups of the locale") << u"en_US"_s << u"1,234.5"_s << 1234.5;
}

void tst_numeros::le() {
    QFETCH(QString, locale);
    QFETCH(QString, texto);
    QFETCH(double, valor);
    Instalacao inst(Instalacao::Base::Nenhuma, QLocale(locale));
    try {
        const double lido = TextoParaDouble(texto);
        QVERIFY2(!std::isnan(valor), "should have failed");
        QCOMPARE(lido, valor);
    } catch (const Falha &f) {
        QVERIFY2(std::isnan(valor), qUtf8Printable(f.descricao()));
        QCOMPARE(f.numero(), erros::tipoIncompativel);
    }
}

void tst_numeros::comPonto_data() {
    QTest::addColumn<QString>("texto");
    QTest::addColumn<QString>("esperado");
    QTest::newRow("comma") << u"21,5"_s << u"21.5"_s;
    QTest::newRow("point") << u"21.5"_s << u"21.5"_s;
    QTest::newRow("whole") << u"-21"_s << u"-21"_s;
    QTest::newRow("the same twice is not one string") << u"1,234,5"_s << u"1,234,5"_s;
    QTest::newRow("two separators") << u"1.234,5"_s << u"1.234,5"_s;
    QTest::newRow("empty") << QString() << QString();
}

void tst_numeros::comPonto() {
    QFETCH(QString, texto);
    Instalacao inst(Instalacao::Base::Nenhuma);
    QTEST(TextoComPonto(texto), "esperado");
}

void tst_numeros::escreve_data() {
    QTest::addColumn<double>("numero");
    QTest::addColumn<QByteArray>("esperado");
    QTest::newRow("plain") << 21.5 << QByteArray("21.5");
    QTest::newRow("15 digits") << 0.1 + 0.2 << QByteArray("0.3");
    QTest::newRow("third") << 1.0 / 3 << QByteArray("0.333333333333333");
    QTest::newRow("minus zero") << -0.0 << QByteArray("0");
    QTest::newRow("minus") << -0.05 << QByteArray("-0.05");
    QTest::newRow("no exponent, large") << 1e20 << QByteArray("100000000000000000000");
    QTest::newRow("no exponent, small") << 1.5e-7 << QByteArray("0.00000015");
    QTest::newRow("carry") << 0.9999999999999999 << QByteArray("1");
    QTest::newRow("hundred") << 100.0 << QByteArray("100");
    QTest::newRow("no number") << std::numeric_limits<double>::quiet_NaN() << QByteArray();
    QTest::newRow("infinity") << -std::numeric_limits<double>::infinity() << QByteArray();
}

void tst_numeros::escreve() {
    QFETCH(double, numero);
    QFETCH(QByteArray, esperado);
    Instalacao inst(Instalacao::Base::Nenhuma);
    QCOMPARE(NumeroComPonto(numero), esperado);
    QCOMPARE(NumeroParaTexto(numero), QString::fromLatin1(esperado).replace(u'.', u','));
}

void tst_numeros::idaEVoltaEmTodasAsLinguas() {
    Instalacao inst(Instalacao::Base::Nenhuma);
    const auto locales = QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyTerritory);
    for (const QLocale &l : locales) {
        inst.locale(l.name());
        for (const double n : {-1234567.25, -0.5, 0.0, 21.5, 1e-6, 98765.4321}) {
            const QString t = NumeroParaTexto(n);
            double lido = std::numeric_limits<double>::quiet_NaN();
            try {
                lido = TextoParaDouble(t);
            } catch (const Falha &) {
            }
            QVERIFY2(lido == n, qUtf8Printable(l.name() + u": "_s + t));
        }
    }
}

void tst_numeros::arredonda_data() {
    QTest::addColumn<double>("numero");
    QTest::addColumn<int>("casas");
    QTest::addColumn<double>("esperado");
    const auto linha = [](double n, int casas, double e) { QTest::addRow("%.17g to %d", n, casas) << n << casas << e; };
    linha(0.5, 0, 0);
    linha(1.5, 0, 2);
    linha(2.5, 0, 2);
    linha(-2.5, 0, -2);
    linha(2.51, 0, 3);
    linha(1.005, 2, 1.0); // a half on the decimal text, not on the bits
    linha(1.015, 2, 1.02);
    linha(2.345, 2, 2.34);
    linha(0.06, 1, 0.1);
    linha(0.05, 1, 0.0);
    linha(0.04, 1, 0);
    linha(9.99, 1, 10);
    linha(99.95, 1, 100);
    linha(-0.04, 1, 0);
    linha(21, 2, 21);
    linha(1e15, 2, 1e15);
    linha(1e-9, 2, 0);
    linha(0, 0, 0);
    linha(-0.0, 0, 0);
}

void tst_numeros::arredonda() {
    QFETCH(double, numero);
    QFETCH(int, casas);
    QFETCH(double, esperado);
    const double r = Arredondar(numero, casas);
    QCOMPARE(r, esperado);
    QVERIFY2(r != 0 || !std::signbit(r), "minus zero");
}

// Whatever the road, the text is that of 15 significant digits.
void tst_numeros::quinzeAlgarismos() {
    QRandomGenerator sorte(20260315);
    for (int i = 0; i < 20000; ++i) {
        const double inteiro = sorte.bounded(2000000) - 1000000;
        const double numero = i % 3 == 0 ? inteiro / std::pow(10, sorte.bounded(5)) : inteiro * sorte.generateDouble();
        if (std::fabs(numero) >= 1e-4)
            QCOMPARE(NumeroComPonto(numero), QByteArray::number(numero, 'g', 15));
    }
}

void tst_numeros::semValor() {
    for (const QString &t : {u"ND"_s, u" nd "_s})
        QVERIFY(eND(t));
    for (const QString &t : {u""_s, u"NDA"_s, u"0"_s, u"NA"_s})
        QVERIFY(!eND(t));
}

QTEST_GUILESS_MAIN(tst_numeros)
#include "tst_numeros.moc"
