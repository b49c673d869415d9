#include "core/modDoubleTratamento.h"
#include "tests/apoio/instalacao.h"
#include "tests/falhaDe.h"

#include <cmath>

using namespace modDoubleTratamento;

class tst_numeros : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void le_data() {
        const double falha = std::nan("");
        const Tabela<QString, QString, double> caso("locale", "texto", "valor");
        for (const QString &l : {u"pt_PT"_s, u"en_US"_s, u"cs_CZ"_s, u"fr_CH"_s, u"sv_SE"_s}) {
            const auto linha = [&](const QString &texto, double v) {
                caso(qUtf8Printable(l + u' ' + texto), l, texto, v);
            };
            linha(u"21.5"_s, 21.5);
            linha(u"-0,25"_s, -0.25);
            linha(u"-5"_s, -5);
            linha(u" 21.5 "_s, 21.5);
            linha(u"21'5"_s, 21.5); // whatever stands between the digits is the separator
            linha(u"1e5"_s, 1.5);   // a letter too
            for (const QString &mau : {u"-"_s, u""_s, u"ND"_s, u"1.2.3"_s, u"5-"_s, u"1e-5"_s, QString(400, u'9')})
                linha(mau, falha);
        }
        caso("two separators, pt", u"pt_PT"_s, u"1.234,5"_s, falha);
        caso("groups of the locale", u"en_US"_s, u"1,234.5"_s, 1234.5);
    }
    void le() {
        QFETCH(QString, locale);
        QFETCH(QString, texto);
        QFETCH(double, valor);
        Instalacao inst(Instalacao::Base::Nenhuma, QLocale(locale));
        double lido = std::nan("");
        const Resultado r = falhaDe([&] { lido = TextoParaDouble(texto); });
        QCOMPARE(r.numero, std::isnan(valor) ? erros::tipoIncompativel : 0);
        QCOMPARE(lido, valor);
    }

    void comPontoESemValor() {
        QCOMPARE(TextoComPonto(u"21,5"_s), u"21.5"_s);
        for (const QString &fica : {u"-21"_s, u"1,234,5"_s, u"1.234,5"_s}) // "," and "," are not one separator
            QCOMPARE(TextoComPonto(fica), fica);
        QVERIFY(eND(u" nd "_s) && !eND(u"NDA"_s) && !eND(u"NA"_s) && !eND(u""_s));
    }

    void escreve_data() {
        const Tabela<double, QByteArray> caso("numero", "esperado");
        caso("15 digits", 0.1 + 0.2, "0.3");
        caso("minus zero", -0.0, "0");
        caso("minus", -0.05, "-0.05");
        caso("no exponent, large", 1e20, "100000000000000000000");
        caso("no exponent, small", 1.5e-7, "0.00000015");
        caso("carry", 0.9999999999999999, "1");
        caso("no number", std::nan(""), "");
        caso("infinity", -HUGE_VAL, "");
    }
    void escreve() {
        QFETCH(double, numero);
        QFETCH(QByteArray, esperado);
        Instalacao inst(Instalacao::Base::Nenhuma);
        QCOMPARE(NumeroComPonto(numero), esperado);
        QCOMPARE(NumeroParaTexto(numero), QString::fromLatin1(esperado).replace(u'.', u','));
    }

    void idaEVoltaEmTodasAsLinguas() {
        Instalacao inst(Instalacao::Base::Nenhuma);
        for (const QLocale &l :
             QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyTerritory)) {
            inst.locale(l.name());
            for (const double n : {-1234567.25, 0.0, 1e-6}) {
                const QString t = NumeroParaTexto(n);
                double lido = std::nan("");
                (void)falhaDe([&] { lido = TextoParaDouble(t); });
                QVERIFY2(lido == n, qUtf8Printable(l.name() + u": "_s + t));
            }
        }
    }

    void arredonda_data() {
        const Tabela<double, int, double> caso("numero", "casas", "esperado");
        const auto linha = [&](double n, int casas, double e) {
            caso(qPrintable(u"%1 to %2"_s.arg(n).arg(casas)), n, casas, e);
        };
        linha(0.5, 0, 0);
        linha(1.5, 0, 2);
        linha(-2.5, 0, -2);
        linha(2.51, 0, 3);
        linha(1.005, 2, 1.0); // a half on the decimal text, not on the bits
        linha(1.015, 2, 1.02);
        linha(0.06, 1, 0.1);
        linha(99.95, 1, 100);
        linha(-0.04, 1, 0);
        linha(21, 2, 21);
        linha(1e-9, 2, 0);
        linha(-0.0, 0, 0);
    }
    void arredonda() {
        QFETCH(double, numero);
        QFETCH(int, casas);
        const double r = Arredondar(numero, casas);
        QTEST(r, "esperado");
        QVERIFY2(r != 0 || !std::signbit(r), "minus zero");
    }

    // Whatever the road, the text is that of 15 significant digits.
    void quinzeAlgarismos() {
        QRandomGenerator sorte(20260315);
        for (int i = 0; i < 20000; ++i) {
            const double inteiro = sorte.bounded(2000000) - 1000000;
            const double numero =
                i % 3 == 0 ? inteiro / std::pow(10, sorte.bounded(5)) : inteiro * sorte.generateDouble();
            if (std::fabs(numero) >= 1e-4)
                QCOMPARE(NumeroComPonto(numero), QByteArray::number(numero, 'g', 15));
        }
    }

    void casas_data() {
        const Tabela<double, int, QString> caso("numero", "casas", "texto");
        caso("filled", 21.5, 2, u"21,50"_s);
        caso("whole", -18, 2, u"-18,00"_s);
        caso("rounded, half to even", 0.125, 2, u"0,12"_s);
        caso("none left", -0.004, 2, u"0,00"_s);
        caso("as many as there are", 0.125, -1, u"0,125"_s);
        caso("none", 21.5, 0, u"22"_s);
    }
    void casas() {
        const Instalacao instalacao(Instalacao::Base::Nenhuma);
        QFETCH(const double, numero);
        QFETCH(const int, casas);
        QTEST(NumeroParaTexto(numero, casas), "texto");
    }
};

QTEST_GUILESS_MAIN(tst_numeros)
#include "tst_numeros.moc"
