#include "core/datas.h"
#include "tests/apoio/instalacao.h"

#include <QTest>

#include <cmath>

class tst_datas : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void segundos_data();
    void segundos();
    void idaEVolta();
    void foraDoCalendario();
    void textos_data();
    void textos();
    void leTextosDeTodasAsLinguas();
    void naoSaoDatas_data();
    void naoSaoDatas();
};

void tst_datas::segundos_data() {
    QTest::addColumn<QString>("texto");
    QTest::addColumn<QString>("esperado"); // as stored; empty: no date
    const auto linha = [](const QString &t, const QString &e) { QTest::newRow(qUtf8Printable(t)) << t << e; };
    linha(u"2024-03-15 10:20:30"_s, u"2024-03-15 10:20:30"_s);
    linha(u"2024-03-15T10:20:30"_s, u"2024-03-15 10:20:30"_s);
    linha(u"2024-03-15 10:20:30.999"_s, u"2024-03-15 10:20:30"_s);
    linha(u"2024-03-15 10:20"_s, u"2024-03-15 10:20:00"_s);
    linha(u"2024-03-15"_s, u"2024-03-15 00:00:00"_s);
    linha(u"2024-02-29 23:59:59"_s, u"2024-02-29 23:59:59"_s);
    linha(u"2000-02-29"_s, u"2000-02-29 00:00:00"_s);
    linha(u"1900-02-28"_s, u"1900-02-28 00:00:00"_s);
    linha(u"1969-12-31 23:59:59"_s, u"1969-12-31 23:59:59"_s);
    linha(u"9999-12-31 23:59:59"_s, u"9999-12-31 23:59:59"_s);
    linha(u"2024-03-31 01:30:00"_s, u"2024-03-31 01:30:00"_s); // an hour that summer time skips
    linha(u"2024-10-27 01:30:00"_s, u"2024-10-27 01:30:00"_s); // and one that comes twice
    for (const char *mau : {"",
                            "ND",
                            "2023-02-29",
                            "1900-02-29",
                            "2024-13-01",
                            "2024-00-10",
                            "2024-04-31",
                            "2024-01-00",
                            "0000-01-01",
                            "2024-03-15 24:00:00",
                            "2024-03-15 10:60:00",
                            "2024-03-15 10:20:60",
                            "2024-03-15 10-20-30",
                            "2024-03-15x10:20:30",
                            "2024-03-15 10:20:30Z+1",
                            "2024-03-15 1:20:30",
                            "2024/03/15",
                            "15-03-2024",
                            "2024-3-15 10:20:30",
                            "+024-03-15",
                            "2024-03-15 ",
                            "2024-03-15 10:20:3"})
        linha(QString::fromLatin1(mau), QString());
}

void tst_datas::segundos() {
    QFETCH(QString, texto);
    const double s = datas::segundosDe(texto);
    QTEST(datas::textoBD(s), "esperado");
    QCOMPARE(std::isnan(s), !datas::instanteDe(s).isValid());
}

void tst_datas::idaEVolta() {
    // Against the calendar of the library, over leap years and centuries.
    for (QDate d(1600, 1, 1); d.year() < 2401; d = d.addDays(17)) {
        const QDateTime instante(d, QTime(d.day() % 24, d.dayOfYear() % 60, d.month()), Qt::UTC);
        const double s = datas::segundosDe(instante.toString(u"yyyy-MM-dd HH:mm:ss"_s));
        QCOMPARE(s, double(instante.toSecsSinceEpoch()));
        QCOMPARE(datas::segundosDe(instante), s);
        QCOMPARE(datas::instanteDe(s), instante);
        QCOMPARE(datas::textoBD(s), datas::textoBD(instante));
    }
    // A clock without a zone: what the value given says of one makes no difference.
    const QDate d(2024, 3, 31);
    QCOMPARE(datas::segundosDe(QDateTime(d, QTime(12, 0), Qt::LocalTime)),
             datas::segundosDe(QDateTime(d, QTime(12, 0), Qt::UTC)));
}

void tst_datas::foraDoCalendario() {
    for (const double s : {std::nan(""), HUGE_VAL, -HUGE_VAL, 1e300, -1e300, 1e13})
        QVERIFY(!datas::instanteDe(s).isValid());
    QVERIFY(std::isnan(datas::segundosDe(QDateTime())));
    QCOMPARE(datas::textoBD(QDateTime()), QString());
}

void tst_datas::textos_data() {
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("esperado");
    QTest::newRow("pt_PT") << u"pt_PT"_s << u"05/03/2024 14:07:09"_s;
    QTest::newRow("en_US") << u"en_US"_s << u"3/5/2024 2:07:09 PM"_s;
    QTest::newRow("cs_CZ") << u"cs_CZ"_s << u"05.03.2024 14:07:09"_s;
    QTest::newRow("fr_CH") << u"fr_CH"_s << u"05.03.2024 14:07:09"_s;
    QTest::newRow("da_DK") << u"da_DK"_s << u"05.03.2024 14.07.09"_s;
}

void tst_datas::textos() {
    QFETCH(QString, locale);
    Instalacao inst(Instalacao::Base::Nenhuma, QLocale(locale));
    QTEST(datas::textoDataHora(datas::instanteDe(datas::segundosDe(u"2024-03-05 14:07:09"_s))), "esperado");
}

void tst_datas::leTextosDeTodasAsLinguas() {
    Instalacao inst(Instalacao::Base::Nenhuma);
    const auto locales = QLocale::matchingLocales(QLocale::AnyLanguage, QLocale::AnyScript, QLocale::AnyTerritory);
    QStringList falhas;
    for (const QLocale &l : locales) {
        inst.locale(l.name());
        for (const char *t : {"2024-03-31 01:30:00", "2024-02-29 00:00:00", "1999-12-31 23:59:59",
                              "2024-10-27 01:07:09", "2024-11-05 12:00:01"}) {
            const QDateTime instante = datas::instanteDe(datas::segundosDe(QString::fromLatin1(t)));
            const QString texto = datas::textoDataHora(instante);
            if (datas::lerDataHora(texto) != instante)
                falhas << l.name() + u": "_s + texto + u" -> "_s + datas::textoBD(datas::lerDataHora(texto));
        }
    }
    QVERIFY2(falhas.isEmpty(), qUtf8Printable(falhas.join(u'\n')));
}

void tst_datas::naoSaoDatas_data() {
    QTest::addColumn<QString>("texto");
    for (const char *t : {"", " ", "31/02/2024 10:00:00", "15/03/2024", "10:00:00", "15/03/2024 25:00:00",
                          "2024-03-15 10:20:30", "15/03/2024 10:20:30 x"})
        QTest::newRow(t) << QString::fromLatin1(t);
}

void tst_datas::naoSaoDatas() {
    QFETCH(QString, texto);
    Instalacao inst(Instalacao::Base::Nenhuma);
    QVERIFY(!datas::lerDataHora(texto).isValid());
}

QTEST_GUILESS_MAIN(tst_datas)
#include "tst_datas.moc"
