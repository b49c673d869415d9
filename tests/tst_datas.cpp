#include "core/datas.h"
#include "tests/apoio/instalacao.h"

#include <cmath>

class tst_datas : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void segundos_data() {
        const Tabela<QString, QString> caso("texto", "esperado"); // as stored; empty: no date
        const auto linha = [&](const QString &t, const QString &e) { caso(qUtf8Printable(t), t, e); };
        linha(u"2024-03-15T10:20:30"_s, u"2024-03-15 10:20:30"_s);
        linha(u"2024-03-15 10:20:30.999"_s, u"2024-03-15 10:20:30"_s);
        linha(u"2024-03-15 10:20"_s, u"2024-03-15 10:20:00"_s);
        linha(u"2000-02-29"_s, u"2000-02-29 00:00:00"_s);
        linha(u"9999-12-31 23:59:59"_s, u"9999-12-31 23:59:59"_s);
        linha(u"2024-03-31 01:30:00"_s, u"2024-03-31 01:30:00"_s); // an hour that summer time skips
        const QString maus = u"|ND|2023-02-29|1900-02-29|2024-13-01|2024-00-10|2024-04-31|2024-01-00|2024-01-32|"
                             "0000-01-01|+024-03-15|2024/03/15|2024-3-15 10:20:30|2024-03-15 |2024-03-15x10:20:30|"
                             "2024-03-15 24:00:00|2024-03-15 10:60:00|2024-03-15 10:20:60|2024-03-15 10-20-30|"
                             "2024-03-15 10:20:30Z+1|2024-03-15 1:20:30|2024-03-15 10:20:3"_s;
        for (const QString &mau : maus.split(u'|'))
            linha(mau, {});
    }
    void segundos() {
        QFETCH(QString, texto);
        const double s = datas::segundosDe(texto);
        QTEST(datas::textoBD(s), "esperado");
        QCOMPARE(std::isnan(s), !datas::instanteDe(s).isValid());
    }

    void idaEVolta() {
        // Against the calendar of the library, over leap years and centuries.
        for (QDate d(1600, 1, 1); d.year() < 2401; d = d.addDays(17)) {
            const QDateTime instante(d, QTime(d.day() % 24, d.dayOfYear() % 60, d.month()), Qt::UTC);
            const double s = datas::segundosDe(instante.toString(u"yyyy-MM-dd HH:mm:ss"_s));
            QCOMPARE(s, double(instante.toSecsSinceEpoch()));
            QCOMPARE(datas::segundosDe(instante), s);
            QCOMPARE(datas::instanteDe(s), instante);
        }
        // A clock without a zone: what the value given says of one makes no difference.
        const QDate d(2024, 3, 31);
        QCOMPARE(datas::segundosDe(QDateTime(d, QTime(12, 0), Qt::LocalTime)),
                 datas::segundosDe(QDateTime(d, QTime(12, 0), Qt::UTC)));
        for (const double s : {std::nan(""), -HUGE_VAL, 1e300, 1e13})
            QVERIFY(!datas::instanteDe(s).isValid());
        QVERIFY(std::isnan(datas::segundosDe(QDateTime())));
    }

    void textos_data() {
        const Tabela<QString> caso("esperado");
        caso("pt_PT", u"05/03/2024 14:07:09"_s);
        caso("en_US", u"3/5/2024 2:07:09 PM"_s);
        caso("cs_CZ", u"05.03.2024 14:07:09"_s);
        caso("da_DK", u"05.03.2024 14.07.09"_s);
    }
    void textos() {
        Instalacao inst(Instalacao::Base::Nenhuma, QLocale(QLatin1StringView(QTest::currentDataTag())));
        QTEST(datas::textoDataHora(datas::instanteDe(datas::segundosDe(u"2024-03-05 14:07:09"_s))), "esperado");
    }

    void leTextosDeTodasAsLinguas() {
        Instalacao inst(Instalacao::Base::Nenhuma);
        QStringList falhas;
        for (const QLocale &l :
             QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyTerritory)) {
            inst.locale(l.name());
            for (const QString &t : {u"2024-03-31 01:30:00"_s, u"2024-02-29 00:00:00"_s, u"1999-12-31 23:59:59"_s,
                                     u"2024-10-27 01:07:09"_s, u"2024-11-05 12:00:01"_s}) {
                const QString texto = datas::textoDataHora(datas::instanteDe(datas::segundosDe(t)));
                if (const QString lido = datas::textoBD(datas::lerDataHora(texto)); lido != t)
                    falhas << l.name() + u": "_s + texto + u" -> "_s + lido;
            }
        }
        QVERIFY2(falhas.isEmpty(), qUtf8Printable(falhas.join(u'\n')));
        inst.locale(u"pt_PT"_s);
        for (const QString &mau : {u""_s, u"31/02/2024 10:00:00"_s, u"15/03/2024"_s, u"15/03/2024 25:00:00"_s,
                                   u"2024-03-15 10:20:30"_s, u"15/03/2024 10:20:30 x"_s})
            QVERIFY2(!datas::lerDataHora(mau).isValid(), qUtf8Printable(mau));
    }
};

QTEST_GUILESS_MAIN(tst_datas)
#include "tst_datas.moc"
