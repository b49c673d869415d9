#include "platform/onewire/DS1921.h"
#include "platform/onewire/tmex.h"
#include "tests/apoio/botaoDeTeste.h"
#include "tests/apoio/instalacao.h"

using simulador::DefeitosBotao;
using simulador::Variante;
using Campo = int DefeitosBotao::*;

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
        qint16 ler() { return controlo.ContarAmostras(amostras); }
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
        const Tabela<Variante, QString, float, float, bool> caso("variante", "tipo", "baixo", "alto", "continuo");
        caso("G", Variante::G, u"G"_s, -5.0F, 30.5F, true);
        caso("H", Variante::H, u"H"_s, 15.125F, 45.875F, false);
        caso("Z", Variante::Z, u"Z"_s, -5.0F, 25.875F, true);
    }
    void vidaDeUmaMissao() {
        QFETCH(Variante, variante);
        QFETCH(float, baixo);
        QFETCH(float, alto);
        QFETCH(bool, continuo);
        Mesa m;
        m.leitor.fazer(u"A"_s, variante);
        const auto curva = [](qint64 s) { return 18.0 + double(s / 60 % 97) / 16.0; };
        m.leitor.linha->temperatura = curva;
        m.leitor.chip().pararOscilador();

        QCOMPARE(m.controlo.ActualizarEstado(), qint16(1));
        QTEST(m.controlo.TipoRegistador, "tipo");
        QVERIFY(!m.controlo.MissaoEmCurso && m.controlo.InicioAmostragem.date().year() <= 1900);
        QCOMPARE(m.ler(), qint16(0));

        m.definir(7, 300, continuo, baixo, alto);
        QCOMPARE(m.controlo.ProgramarMissao(), qint16(1));
        DS1921 outro;
        QCOMPARE(outro.ActualizarEstado(), qint16(1));
        QVERIFY(outro.MissaoEmCurso && outro.InicioAmostragem.date().year() <= 1900);
        QCOMPARE(outro.LimiteBaixo, baixo);
        QCOMPARE(outro.LimiteAlto, alto);
        QCOMPARE(outro.IntervaloAmostra, qint16(7));
        QVERIFY(outro.MinutosAtraso >= 299 && outro.MinutosAtraso <= 300);
        QCOMPARE(outro.CicloContinuo, continuo);
        QVERIFY(std::abs(outro.RelogioTempoReal.secsTo(m.leitor.agora())) <= 2);

        // Running, then past the end of the log: what is read is what the curve was at those minutes.
        for (int minutos : {301 + 7 * 40, 7 * 2047, 7 * 515 + 3}) {
            m.leitor.andar(minutos);
            const qint16 n = m.ler();
            const quint32 tiradas = m.leitor.chip().contador();
            QCOMPARE(quint32(n), std::min(tiradas, 2048U));
            QCOMPARE(quint32(m.amostras.size()), quint32(n));
            QCOMPARE(m.controlo.ActualizarEstado(), qint16(1));
            const qint64 primeira = continuo ? tiradas - quint32(n) : 0;
            for (int i = 0; i < n; ++i) {
                const auto &a = m.amostras[size_t(i)];
                QCOMPARE(a.Data, m.controlo.InicioAmostragem.addSecs((primeira + i) * 7 * 60));
                const qint64 s = QDateTime(QDate(2000, 1, 1), QTime(0, 0), Qt::UTC).secsTo(a.Data) + 36525LL * 86400;
                QCOMPARE(a.Temperatura, simulador::grausDe(variante, simulador::codigoDe(variante, curva(s))));
            }
        }
        QVERIFY(m.leitor.chip().contador() > 2560);
        QCOMPARE(m.controlo.TerminarAmostragem(), qint16(1));
        QCOMPARE(m.leitor.chip().missao(), false);
        QCOMPARE(m.ler(), qint16(2048)); // the ended mission can still be read
        QCOMPARE(m.controlo.LimparMemoria(), qint16(1));
        QCOMPARE(m.ler(), qint16(0));
    }

    // A fault that passes is overcome; one that stays ends in a refusal, and soon. Neither is a loss of contact.
    void defeitos_data() {
        const Tabela<Campo> caso("defeito");
        for (const auto &d : simulador::tabelaDeDefeitosBotao)
            if (d.campo != &DefeitosBotao::retirar && d.campo != &DefeitosBotao::contacto &&
                d.campo != &DefeitosBotao::adaptadorFora)
                caso(d.nome.toLatin1().constData(), d.campo);
    }
    void defeitos() {
        QFETCH(Campo, defeito);
        Mesa m;
        m.leitor.fazer(u"A"_s, Variante::H);
        const auto passageiro = [&] { m.leitor.defeitos().*defeito = defeito == &DefeitosBotao::semPresenca ? 0 : 3; };
        m.definir(1, 0, true, 20, 40);
        passageiro();
        QCOMPARE(m.controlo.ProgramarMissao(), qint16(1));
        m.leitor.andar(3000);
        passageiro();
        QCOMPARE(m.controlo.ActualizarEstado(), qint16(1));
        passageiro();
        QCOMPARE(m.ler(), qint16(2048));

        m.leitor.defeitos().*defeito = 1'000'000;
        const bool soEscrita = defeito == &DefeitosBotao::esErrado || defeito == &DefeitosBotao::copiaRecusada;
        const bool soLog = defeito == &DefeitosBotao::saltoNoLog;
        QCOMPARE(m.controlo.ActualizarEstado(), qint16(soEscrita || soLog));
        QCOMPARE(m.ler(), qint16(soEscrita ? 2048 : 0));
        m.controlo.LimiteAlto = 30;
        if (!soLog) {
            QCOMPARE(m.controlo.TerminarAmostragem(), qint16(0));
            QCOMPARE(m.controlo.LimparMemoria(), qint16(0));
            QCOMPARE(m.controlo.ProgramarMissao(), qint16(0));
        }
        m.leitor.defeitos() = {};
        QCOMPARE(m.controlo.ActualizarEstado(), qint16(1));
        QCOMPARE(m.controlo.MissaoEmCurso, true);
        QCOMPARE(m.controlo.LimiteAlto, 40.0F);
        passageiro();
        QCOMPARE(m.controlo.TerminarAmostragem(), qint16(1));
    }

    // Taken off, or the adapter pulled, after each of the bytes and operations of each member: a refusal or a failure,
    // no session left open, and no mission that was not asked for in full.
    void retirado_data() {
        const Tabela<int, Campo> caso("operacao", "defeito");
        for (int o = 0; o < 5; ++o) {
            caso(qPrintable(u"button, member %1"_s.arg(o)), o, &DefeitosBotao::retirar);
            caso(qPrintable(u"adapter, member %1"_s.arg(o)), o, &DefeitosBotao::adaptadorFora);
        }
    }
    void retirado() {
        QFETCH(int, operacao);
        QFETCH(Campo, defeito);
        Mesa m;
        const std::function<qint16()> membros[] = {
            [&] { return m.controlo.ActualizarEstado(); },
            [&] { return m.controlo.ProgramarMissao(); },
            [&] { return m.controlo.TerminarAmostragem(); },
            [&] { return m.controlo.LimparMemoria(); },
            [&] { return m.ler(); },
        };
        m.leitor.passoMs = 400; // the wait for the clock is short
        int acabou = 0;
        for (int n = 1; acabou < 3 && n < 4000; n += 1 + n / 60) {
            m.leitor.defeitos() = {};
            m.leitor.fazer(u"A"_s);
            if (operacao == 2 || operacao == 4) {
                m.leitor.chip().iniciar(1, 0, false, 0, 40);
                m.leitor.andar(70);
            }
            m.definir(7, 30, false, -5, 30);
            m.leitor.defeitos().*defeito = n;
            qint16 resultado = 0;
            try {
                resultado = membros[operacao]();
            } catch (const Falha &) {
                QVERIFY(defeito == &DefeitosBotao::adaptadorFora);
            }
            QCOMPARE(onewire::barramento().sessao, 0);
            QVERIFY(!onewire::barramento().emUso);
            const bool chegou = m.leitor.defeitos().*defeito > 0;
            acabou += chegou;
            QVERIFY(resultado >= 1 || !chegou);
            m.leitor.defeitos() = {};
            m.leitor.por({u"A"_s});
            auto &chip = m.leitor.chip();
            if (operacao == 1 && chip.missao()) {
                QCOMPARE(int(chip.ler(0x20D)), 7);
                QCOMPARE(int(chip.ler(0x20B)), 70);
                QCOMPARE(int(chip.ler(0x20C)), 140);
                QVERIFY(chip.ler(0x212) >= 28 && chip.ler(0x212) <= 30);
            }
            m.leitor.tirar();
            m.leitor.linha->botoes(); // forgotten, so that the next one is read from its file
        }
        QVERIFY(acabou > 0);
    }

    void outroBotaoNaoEProgramado() {
        Mesa m;
        m.leitor.fazer(u"A"_s, Variante::G, 1);
        QCOMPARE(m.controlo.ActualizarEstado(), qint16(1));
        m.leitor.fazer(u"B"_s, Variante::G, 2);
        m.leitor.chip().iniciar(1, 0, false, 0, 40);
        m.definir(5, 0, false, 0, 30);
        QCOMPARE(m.controlo.ProgramarMissao(), qint16(0));
        QCOMPARE(m.controlo.TerminarAmostragem(), qint16(0));
        QCOMPARE(m.controlo.LimparMemoria(), qint16(0));
        QVERIFY(m.leitor.chip().missao());
    }

    // ROM text, pages, packets, as the calls give them.
    void chamadas() {
        Mesa m;
        m.leitor.fazer(u"A"_s, simulador::romDeTexto(u"212BC5FB00203BD6"_s));
        QCOMPARE(m.controlo.ActualizarEstado(), qint16(1));
        QCOMPARE(m.controlo.ROMID, u"D63B2000FBC52B21"_s);

        auto estado = std::make_unique<tmex::BufferEstado>();
        tmex::Pacote pacote{};
        const auto s = tmex::TMExtendedStartSession(1, 5);
        const auto ler = [&](qint16 pagina) { return tmex::TMReadPacket(s, *estado, pagina, pacote, 29); };
        QVERIFY(ler(1) < 0); // no device chosen yet
        QCOMPARE(tmex::TMFamilySearchSetup(s, *estado, 0x21), qint16(1));
        QCOMPARE(tmex::TMNext(s, *estado), qint16(1));
        const std::array<quint8, 29> dados{'0', '0', '0', '1', 'C', 'a', 'i', 's', 'x'};
        QCOMPARE(tmex::TMWritePacket(s, *estado, 3, dados), qint16(29));
        QCOMPARE(ler(3), qint16(29));
        QVERIFY(std::equal(dados.begin(), dados.end(), pacote.begin()));
        QCOMPARE(tmex::TMWritePacket(s, *estado, 3, std::span(dados).first(5)), qint16(5));
        QCOMPARE(ler(3), qint16(5));
        QCOMPARE(int(pacote[5]), 0); // nothing of the longer one
        QVERIFY(tmex::TMWritePacket(s, *estado, 4, {}) > 0);
        QCOMPARE(ler(4), qint16(0));
        QVERIFY(tmex::TMWritePacket(s, *estado, 16, std::span(dados).first(1)) < 0);
        QCOMPARE(tmex::TMNext(s, *estado), qint16(0));
        QCOMPARE(tmex::TMNext(s, *estado), qint16(1)); // and from the front
        m.leitor.tirar();
        QVERIFY(ler(3) < 0);
        QVERIFY(tmex::TMWritePacket(s, *estado, 3, dados) < 0);
        QCOMPARE(tmex::TMTouchReset(s), qint16(0));
        QCOMPARE(tmex::TMEndSession(s), qint16(1));
        QVERIFY(tmex::TMSetup(s) < 0);
        m.leitor.semAdaptador = true;
        QVERIFY(tmex::TMExtendedStartSession(1, 5) < 0);
    }

    // What runs within a wait cannot cut into the operation, and may end it.
    void dentroDaEspera() {
        Mesa m;
        m.leitor.fazer(u"A"_s);
        int vezes = 0;
        qint16 dentro = 1;
        {
            const onewire::ComPassagem passagem([&] {
                if (++vezes == 2)
                    dentro = DS1921().ActualizarEstado();
            });
            QCOMPARE(m.controlo.ActualizarEstado(), qint16(1));
        }
        QCOMPARE(dentro, qint16(0));
        for (int n = 1; n < 12; ++n) {
            int contadas = 0;
            const onewire::ComPassagem passagem([&] {
                if (++contadas == n)
                    throw Interrompido();
            });
            m.definir(5, 0, false, 0, 30);
            QVERIFY_THROWS_EXCEPTION(Interrompido, m.controlo.ProgramarMissao());
            QCOMPARE(onewire::barramento().sessao, 0);
            QVERIFY(!onewire::barramento().emUso);
        }
        QCOMPARE(m.controlo.ProgramarMissao(), qint16(1));
    }
};

QTEST_GUILESS_MAIN(TstDS1921)
#include "tst_ds1921.moc"
