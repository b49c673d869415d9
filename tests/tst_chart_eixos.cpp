#include "core/datas.h"
#include "core/estado.h"
#include "platform/chart/graduacao.h"
#include "platform/chart/tema.h"
#include "tests/apoio/tabela.h"

#include <cmath>
#include <random>

namespace {

double em(const QString &texto) {
    return datas::segundosDe(texto);
}

double larguraDe(const QString &rotulo, const QFontMetricsF &letra) {
    double l = 0;
    const QStringList linhas = rotulo.split(u'\n');
    for (const QString &linha : linhas)
        l = std::max(l, letra.horizontalAdvance(linha));
    return l;
}

QFont letra12() {
    QFont f;
    f.setPixelSize(12);
    return f;
}

QStringList instantes(const Graduacao &g) {
    QStringList lista;
    for (double t : g.marcas)
        lista.append(datas::textoBD(t));
    return lista;
}

} // namespace

class tst_chart_eixos : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { renovarEstado(); }

    // Whatever is shown, however wide, in any locale: readable labels, in order, on round times.
    void rotulosNaoSeTocam_data() {
        const Tabela<QString> caso("locale");
        for (const char *l : {"pt_PT", "en_US", "de_DE", "ja_JP", "ar_EG"})
            caso(l, QString::fromLatin1(l));
    }
    void rotulosNaoSeTocam() {
        QFETCH(QString, locale);
        estado().ambiente.locale = QLocale(locale);
        const QFontMetricsF letra(letra12());
        std::mt19937 sorte(7);
        for (double extensao = 3; extensao < 40 * 365.25 * 86400; extensao *= 1.37) {
            for (double largura : {150.0, 420.0, 975.0, 2400.0}) {
                const double minimo = em(u"2019-12-30 22:10:07"_s) + std::floor(double(sorte() % 100000000));
                const Graduacao g = graduarTempo(minimo, minimo + extensao, largura, letra, 1);
                const QByteArray texto = QByteArray::number(extensao) + " s on " + QByteArray::number(largura);
                const char *caso = texto.constData();
                QVERIFY2(g.marcas.size() == g.rotulos.size(), caso);
                if (largura >= 420 && extensao >= 20)
                    QVERIFY2(g.marcas.size() >= 2, caso);
                double fim = -1e9;
                for (qsizetype i = 0; i < g.marcas.size(); ++i) {
                    const double x = (g.marcas[i] - minimo) / extensao * largura;
                    const double meia = larguraDe(g.rotulos[i], letra) / 2;
                    QVERIFY2(x >= 0 && x <= largura && g.marcas[i] == std::floor(g.marcas[i]), caso);
                    QVERIFY2(x - meia >= fim + 4, caso);
                    fim = x + meia;
                }
                QVERIFY2(g.marcas.isEmpty() || g.marcas.size() < 80, caso);
            }
        }
    }

    void passosDoCalendario_data() {
        // esperado: the first marks; rotulo: of the first
        const Tabela<QString, QString, double, double, QStringList, QString> caso("de", "ate", "largura", "incremento",
                                                                                  "esperado", "rotulo");
        caso("seconds, zoomed in", u"2024-03-05 10:00:58"_s, u"2024-03-05 10:01:18"_s, 500., 60.,
             {u"2024-03-05 10:01:00"_s, u"2024-03-05 10:01:05"_s}, u"10:01:00\n05/03/2024"_s);
        caso("not finer than a minute", u"2024-03-05 10:00:00"_s, u"2024-03-05 10:02:30"_s, 3000., 60.,
             {u"2024-03-05 10:00:00"_s, u"2024-03-05 10:01:00"_s}, u"10:00\n05/03/2024"_s);
        caso("quarters of an hour", u"2024-03-05 10:05:00"_s, u"2024-03-05 12:05:00"_s, 900., 60.,
             {u"2024-03-05 10:15:00"_s, u"2024-03-05 10:30:00"_s}, u"10:15\n05/03/2024"_s);
        caso("days", u"2024-02-26 10:00:00"_s, u"2024-03-04 10:00:00"_s, 500., 60.,
             {u"2024-02-27 00:00:00"_s, u"2024-02-28 00:00:00"_s, u"2024-02-29 00:00:00"_s, u"2024-03-01 00:00:00"_s},
             u"27 fev.\n2024"_s);
        caso("weeks begin on Mondays", u"2024-01-03 00:00:00"_s, u"2024-03-03 00:00:00"_s, 700., 60.,
             {u"2024-01-08 00:00:00"_s, u"2024-01-15 00:00:00"_s}, u"8 jan.\n2024"_s);
        caso("months", u"2023-11-15 00:00:00"_s, u"2024-11-20 00:00:00"_s, 700., 60.,
             {u"2023-12-01 00:00:00"_s, u"2024-01-01 00:00:00"_s}, u"dez.\n2023"_s);
        caso("quarters of a year", u"2021-02-15 00:00:00"_s, u"2024-11-20 00:00:00"_s, 900., 60.,
             {u"2021-04-01 00:00:00"_s, u"2021-07-01 00:00:00"_s}, u"abr.\n2021"_s);
        caso("years", u"2009-02-15 00:00:00"_s, u"2024-11-20 00:00:00"_s, 900., 60.,
             {u"2010-01-01 00:00:00"_s, u"2011-01-01 00:00:00"_s}, u"2010"_s);
    }
    void passosDoCalendario() {
        QFETCH(QString, de);
        QFETCH(QString, ate);
        QFETCH(double, largura);
        QFETCH(double, incremento);
        QFETCH(QStringList, esperado);
        QFETCH(QString, rotulo);
        estado().ambiente.locale = QLocale(u"pt_PT"_s);
        const Graduacao g = graduarTempo(em(de), em(ate), largura, QFontMetricsF(letra12()), incremento);
        QCOMPARE(instantes(g).mid(0, esperado.size()), esperado);
        QCOMPARE(g.rotulos.value(0), rotulo);
    }

    void dataSoOndeMuda() {
        estado().ambiente.locale = QLocale(u"pt_PT"_s);
        const Graduacao g =
            graduarTempo(em(u"2024-12-31 17:00:00"_s), em(u"2025-01-01 07:00:00"_s), 600, QFontMetricsF(letra12()), 60);
        QStringList comData;
        for (const QString &r : g.rotulos)
            if (r.contains(u'\n'))
                comData.append(r);
        QCOMPARE(comData, QStringList({g.rotulos.constFirst(), u"00:00\n01/01/2025"_s}));
        QVERIFY(g.rotulos.constFirst().endsWith(u"31/12/2024"));
    }

    void valores_data() {
        const Tabela<double, double, double, double, QVector<QString>> caso("minimo", "maximo", "altura", "incremento",
                                                                            "rotulos");
        caso("whole", 1., 40., 250., 0., {u"5"_s, u"10"_s, u"15"_s, u"20"_s, u"25"_s, u"30"_s, u"35"_s, u"40"_s});
        caso("below zero, local separator", -0.5, 0.6, 200., 0.,
             {u"-0,4"_s, u"-0,2"_s, u"0,0"_s, u"0,2"_s, u"0,4"_s, u"0,6"_s});
        caso("not finer than the increment", 0., 3.2, 900., 1., {u"0"_s, u"1"_s, u"2"_s, u"3"_s});
        caso("a free increment", 0., 1., 400., 0.25, {u"0,00"_s, u"0,25"_s, u"0,50"_s, u"0,75"_s, u"1,00"_s});
        caso("zoomed in further than the increment", 20.1, 20.9, 150., 1.,
             {u"20,2"_s, u"20,4"_s, u"20,6"_s, u"20,8"_s});
        caso("large, no exponent", 0., 3e6, 120., 0., {u"0"_s, u"1000000"_s, u"2000000"_s, u"3000000"_s});
        caso("nothing", 5., 5., 120., 0., {});
    }
    void valores() {
        QFETCH(double, minimo);
        QFETCH(double, maximo);
        QFETCH(double, altura);
        QFETCH(double, incremento);
        QFETCH(QVector<QString>, rotulos);
        estado().ambiente.locale = QLocale(u"pt_PT"_s);
        QCOMPARE(graduarValores(minimo, maximo, altura, QFontMetricsF(letra12()), incremento).rotulos, rotulos);
    }

    // What is on or off has nothing between, also where there is room for it.
    void valoresInteiros() {
        const Graduacao g = graduarValores(-0.3, 1.2, 600, QFontMetricsF(letra12()), 1, true);
        QCOMPARE(g.rotulos, QVector<QString>({u"0"_s, u"1"_s}));
        QVERIFY(g.finas.isEmpty());
    }

    // Upright while they fit, then upwards, then fewer.
    void textosDasBarras() {
        const QFontMetricsF letra(letra12());
        QVector<QString> textos;
        for (int i = 0; i < 40; ++i)
            textos.append(u"%1 <> %2"_s.arg(i).arg(i + 1));
        const auto com = [&](double largura) { return graduarBarras(-0.6, 39.6, largura, letra, textos); };
        QVERIFY(!com(4000).deitados);
        QCOMPARE(com(4000).rotulos, textos);
        QVERIFY(com(1000).deitados);
        QCOMPARE(com(1000).rotulos, textos);
        const Graduacao poucos = com(200);
        QVERIFY(poucos.deitados && poucos.marcas.size() > 4);
        for (qsizetype i = 1; i < poucos.marcas.size(); ++i)
            QVERIFY((poucos.marcas[i] - poucos.marcas[i - 1]) * 200 / 40.2 >= letra.height());
        QCOMPARE(poucos.rotulos[1], textos[qsizetype(poucos.marcas[1])]);
    }

    // Every colour the system draws with can be told from every background, and stays itself where it already could.
    void coresLegiveis() {
        constexpr quint32 cores[] = {255,      33023,    65535,   65408,   16711808, 16711680,
                                     16744448, 16776960, 0,       8047359, 4210816,  8388863,
                                     39372,    6750182,  9091072, 9408399, 65280,    16777215};
        for (const QColor &fundo : {QColor(Qt::white), QColor(Qt::black), QColor(30, 31, 34), QColor(239, 240, 241)}) {
            QPalette paleta;
            paleta.setColor(QPalette::Base, fundo);
            const Tema tema = Tema::doEcra(paleta, QFont());
            for (quint32 ole : cores) {
                const QColor cor(int(ole & 255), int((ole >> 8) & 255), int((ole >> 16) & 255));
                const QColor boa = tema.legivel(cor);
                QVERIFY2(contraste(boa, fundo) >= 2.9, qPrintable(cor.name() + u" on "_s + fundo.name()));
                if (contraste(cor, fundo) >= 3)
                    QCOMPARE(boa, cor);
                if (cor.hslSaturation() > 100)
                    QVERIFY(std::abs(boa.hslHue() - cor.hslHue()) <= 4);
            }
        }
    }
};

QTEST_MAIN(tst_chart_eixos)
#include "tst_chart_eixos.moc"
