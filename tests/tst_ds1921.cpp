#include "core/falha.h"
#include "platform/onewire/DS1921.h"
#include "platform/onewire/tmex.h"
#include "tests/apoio/botaoDeTeste.h"
#include "tests/apoio/instalacao.h"

#include <QtTest>

using simulador::Variante;

Q_DECLARE_METATYPE(Variante)

// The control and the calls over user memory, against the virtual button.
class TstDS1921 : public QObject {
    Q_OBJECT

    struct Mesa {
        Instalacao instalacao{Instalacao::Base::Nenhuma};
        BotaoDeTeste leitor;
        DS1921 controlo;
        std::vector<DS1921::Amostra> amostras;
        Mesa() {
            estado().ambiente.agora = [this] { return leitor.agora(); };
        }
        qint16 ler() {
            controlo.LerAmostras(amostras);
            return controlo.ContarAmostras(amostras);
        }
        void definir(int intervalo, int atraso, bool continuo, float baixo, float alto) {
            controlo.IntervaloAmostra = qint16(intervalo);
            controlo.MinutosAtraso = atraso;
            controlo.CicloContinuo = continuo;
            controlo.LimiteBaixo = baixo;
            controlo.LimiteAlto = alto;
        }
    };

private Q_SLOTS:
    void vidaDeUmaMissao_data() {
        QTest::addColumn<Variante>("variante");
        QTest::addColumn<QString>("tipo");
        QTest::addColumn<float>("baixo");
        QTest::addColumn<float>("alto");
        QTest::newRow("G") << Variante::G << u"G"_s << -5.0F << 30.5F;
        QTest::newRow("H") << Variante::H << u"H"_s << 15.125F << 45.875F;
        QTest::newRow("Z") << Variante::Z << u"Z"_s << -5.0F << 25.875F;
    }
    void vidaDeUmaMissao() {
        QFETCH(Variante, variante);
        QFETCH(float, baixo);
        QFETCH(float, alto);
        Mesa m;
        m.leitor.fazer(u"A"_s, variante);
        const auto curva = [](qint64 s) { return 18.0 + double(s / 60 % 97) / 16.0; };
        m.leitor.linha->temperatura = curva;
        m.leitor.chip().pararOscilador();

        QCOMPARE(m.controlo.ActualizarEstado(), qint16(1));
        QTEST(m.controlo.TipoRegistador, "tipo");
        QCOMPARE(m.controlo.MissaoEmCurso, false);
        QVERIFY(m.controlo.InicioAmostragem.date().year() <= 1900);
        QCOMPARE(m.ler(), qint16(0));

        m.definir(7, 65, true, baixo, alto);
        QCOMPARE(m.controlo.ProgramarMissao(), qint16(1));
        DS1921 outro;
        QCOMPARE(outro.ActualizarEstado(), qint16(1));
        QCOMPARE(outro.MissaoEmCurso, true);
        QVERIFY(outro.InicioAmostragem.date().year() <= 1900);
        QCOMPARE(outro.LimiteBaixo, baixo);
        QCOMPARE(outro.LimiteAlto, alto);
        QCOMPARE(outro.IntervaloAmostra, qint16(7));
        QVERIFY(outro.MinutosAtraso >= 64 && outro.MinutosAtraso <= 65);
        QCOMPARE(outro.CicloContinuo, true);
        QVERIFY(std::abs(outro.RelogioTempoReal.secsTo(m.leitor.agora())) <= 2);

        // Running, then past the end of the log: what is read is what the curve was at those minutes.
        for (int minutos : {66 + 7 * 40, 7 * 2047, 7 * 515 + 3}) {
            m.leitor.andar(minutos);
            const qint16 n = m.ler();
            const quint32 tiradas = m.leitor.chip().contador();
            QCOMPARE(quint32(n), std::min(tiradas, 2048U));
            QCOMPARE(quint32(m.amostras.size()), quint32(n));
            QCOMPARE(m.controlo.ActualizarEstado(), qint16(1));
            const QDateTime inicio = m.controlo.InicioAmostragem;
            for (int i = 0; i < n; ++i) {
                const auto &a = m.amostras[size_t(i)];
                QCOMPARE(a.Data, inicio.addSecs(qint64(tiradas - quint32(n) + quint32(i)) * 7 * 60));
                const qint64 s = QDateTime(QDate(2000, 1, 1), QTime(0, 0), Qt::UTC).secsTo(a.Data) + 36525LL * 86400;
                QCOMPARE(a.Temperatura, simulador::grausDe(variante, simulador::codigoDe(variante, curva(s))));
            }
        }
        QVERIFY(m.leitor.chip().contador() > 2560);
        QCOMPARE(m.controlo.TerminarAmostragem(), qint16(1));
        QCOMPARE(m.leitor.chip().missao(), false);
        const quint32 parado = m.leitor.chip().contador();
        m.leitor.andar(100);
        QCOMPARE(m.leitor.chip().contador(), parado);
        QCOMPARE(m.ler(), qint16(2048)); // the ended mission can still be read
        QCOMPARE(m.controlo.LimparMemoria(), qint16(1));
        QCOMPARE(m.ler(), qint16(0));
    }
};

QTEST_GUILESS_MAIN(TstDS1921)
#include "tst_ds1921.moc"
