#include "core/falha.h"
#include "platform/onewire/DS1921.h"
#include "platform/onewire/tmex.h"
#include "tests/apoio/botaoDeTeste.h"
#include "tests/apoio/instalacao.h"
#include "tests/apoio/tabela.h"

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
        const Tabela<Variante, QString, float, float> caso("variante", "tipo", "baixo", "alto");
        caso("G", Variante::G, u"G"_s, -5.0F, 30.5F);
        caso("H", Variante::H, u"H"_s, 15.125F, 45.875F);
        caso("Z", Variante::Z, u"Z"_s, -5.0F, 25.875F);
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

    // A fault that passes is overcome.
    void defeitosQuePassam_data() {
        const Tabela<int, int> caso("campo", "vezes");
        for (size_t i = 0; i < simulador::tabelaDeDefeitosBotao.size(); ++i) {
            const auto &d = simulador::tabelaDeDefeitosBotao[i];
            for (int vezes : {1, 3})
                if (d.campo != &simulador::DefeitosBotao::retirar &&
                    d.campo != &simulador::DefeitosBotao::adaptadorFora &&
                    d.campo != &simulador::DefeitosBotao::semPresenca)
                    QTest::addRow("%s x%d", d.nome.toLatin1().constData(), vezes) << int(i) << vezes;
        }
    }
    void defeitosQuePassam() {
        QFETCH(int, campo);
        QFETCH(int, vezes);
        const auto ligar = [&](Mesa &m) {
            m.leitor.defeitos().*simulador::tabelaDeDefeitosBotao[size_t(campo)].campo = vezes;
        };
        Mesa m;
        m.leitor.fazer(u"A"_s, Variante::H);
        m.definir(1, 0, false, 20, 40);
        ligar(m);
        QCOMPARE(m.controlo.ProgramarMissao(), qint16(1));
        m.leitor.andar(100);
        ligar(m);
        QCOMPARE(m.controlo.ActualizarEstado(), qint16(1));
        ligar(m);
        QVERIFY(m.ler() >= 100);
        QCOMPARE(quint32(m.amostras.size()), m.leitor.chip().contador());
        ligar(m);
        QCOMPARE(m.controlo.TerminarAmostragem(), qint16(1));
    }

    // One that stays ends in a refusal, and soon.
    void defeitosQueFicam_data() {
        QTest::addColumn<int>("campo");
        for (size_t i = 0; i < simulador::tabelaDeDefeitosBotao.size(); ++i) {
            const auto &d = simulador::tabelaDeDefeitosBotao[i];
            if (d.campo != &simulador::DefeitosBotao::retirar && d.campo != &simulador::DefeitosBotao::adaptadorFora)
                QTest::newRow(d.nome.toLatin1().constData()) << int(i);
        }
    }
    void defeitosQueFicam() {
        QFETCH(int, campo);
        const auto defeito = simulador::tabelaDeDefeitosBotao[size_t(campo)].campo;
        Mesa m;
        m.leitor.fazer(u"A"_s);
        m.leitor.chip().iniciar(1, 0, true, 0, 40);
        m.leitor.andar(3000);
        QCOMPARE(m.controlo.ActualizarEstado(), qint16(1));
        const float antes = m.controlo.LimiteAlto;
        m.leitor.defeitos().*defeito = 1'000'000;
        const bool soEscrita =
            defeito == &simulador::DefeitosBotao::esErrado || defeito == &simulador::DefeitosBotao::copiaRecusada;
        const bool soLog = defeito == &simulador::DefeitosBotao::saltoNoLog;
        QElapsedTimer relogio;
        relogio.start();
        QCOMPARE(m.controlo.ActualizarEstado(), qint16(soEscrita || soLog));
        QCOMPARE(m.ler(), qint16(soEscrita ? 2048 : 0));
        m.controlo.LimiteAlto = 12;
        if (!soLog) {
            QCOMPARE(m.controlo.TerminarAmostragem(), qint16(0));
            QCOMPARE(m.controlo.LimparMemoria(), qint16(0));
            QCOMPARE(m.controlo.ProgramarMissao(), qint16(0));
            m.leitor.defeitos() = {};
            QCOMPARE(m.controlo.ActualizarEstado(), qint16(1));
            QCOMPARE(m.controlo.MissaoEmCurso, true);
            QCOMPARE(m.controlo.LimiteAlto, antes);
        }
        QVERIFY(relogio.elapsed() < 30'000);
    }

    // Taken off, or the adapter pulled, after each of the bytes and operations of each member: a refusal or a failure,
    // no session left open, and no mission that was not asked for in full.
    void retirado_data() {
        const Tabela<int, bool> caso("operacao", "adaptador");
        for (bool adaptador : {false, true})
            for (int o = 0; o < 5; ++o)
                QTest::addRow("%s member %d", adaptador ? "adapter" : "button", o) << o << adaptador;
    }
    void retirado() {
        QFETCH(int, operacao);
        QFETCH(bool, adaptador);
        const std::function<qint16(Mesa &)> membros[] = {
            [](Mesa &m) { return m.controlo.ActualizarEstado(); },
            [](Mesa &m) { return m.controlo.ProgramarMissao(); },
            [](Mesa &m) { return m.controlo.TerminarAmostragem(); },
            [](Mesa &m) { return m.controlo.LimparMemoria(); },
            [](Mesa &m) { return m.ler(); },
        };
        Mesa m;
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
            (adaptador ? m.leitor.defeitos().adaptadorFora : m.leitor.defeitos().retirar) = n;
            qint16 resultado = 0;
            try {
                resultado = membros[operacao](m);
            } catch (const Falha &) {
                QVERIFY(adaptador);
            }
            QCOMPARE(onewire::barramento().sessao, 0);
            QVERIFY(!onewire::barramento().emUso);
            const bool chegou = (adaptador ? m.leitor.defeitos().adaptadorFora : m.leitor.defeitos().retirar) > 0;
            acabou += chegou;
            if (chegou)
                QVERIFY(resultado >= 1);
            m.leitor.defeitos() = {};
            m.leitor.por({u"A"_s});
            auto &chip = m.leitor.chip();
            if (operacao == 1 && chip.missao()) {
                QCOMPARE(int(chip.ler(0x20D)), 7);
                QCOMPARE(int(chip.ler(0x20B)), 70);
                QCOMPARE(int(chip.ler(0x20C)), 140);
                QVERIFY(chip.ler(0x212) >= 28 && chip.ler(0x212) <= 30);
            }
            m.leitor.por({});
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
    void outraFamiliaNaoERegistador() {
        Mesa m;
        m.leitor.fazer(u"A"_s, simulador::fazerRom(0x81, 77, 0));
        QCOMPARE(m.controlo.ActualizarEstado(), qint16(0));
        QCOMPARE(m.controlo.ROMID, QString());
    }

    // ROM text, pages, packets, as the calls give them.
    void chamadas() {
        Mesa m;
        m.leitor.fazer(u"A"_s, simulador::romDeTexto(u"212BC5FB00203BD6"_s));
        QCOMPARE(m.controlo.ActualizarEstado(), qint16(1));
        QCOMPARE(m.controlo.ROMID, u"D63B2000FBC52B21"_s);
        QCOMPARE(m.controlo.TipoRegistador, u"Z"_s);

        auto estado = std::make_unique<tmex::BufferEstado>();
        tmex::Pacote pacote{};
        tmex::NumeroROM numero{};
        const auto s = tmex::TMExtendedStartSession(1, 5);
        QVERIFY(s > 0);
        QCOMPARE(tmex::TMSetup(s), qint16(1));
        QVERIFY(tmex::TMReadPacket(s, *estado, 1, pacote, 29) < 0); // no device chosen yet
        QCOMPARE(tmex::TMFamilySearchSetup(s, *estado, 0x21), qint16(1));
        QCOMPARE(tmex::TMNext(s, *estado), qint16(1));
        QCOMPARE(tmex::TMRom(s, *estado, numero), qint16(1));
        QCOMPARE(numero, (tmex::NumeroROM{0x21, 0x2B, 0xC5, 0xFB, 0x00, 0x20, 0x3B, 0xD6}));
        QVERIFY(tmex::TMReadPacket(s, *estado, 1, pacote, 29) <= 0);
        const QByteArray texto = "0001Camara 4\nRegistador do cais";
        QByteArray cortado = texto.left(29);
        const std::span dados(reinterpret_cast<const quint8 *>(cortado.constData()), size_t(cortado.size()));
        QCOMPARE(tmex::TMWritePacket(s, *estado, 3, dados), qint16(29));
        QCOMPARE(tmex::TMReadPacket(s, *estado, 3, pacote, 29), qint16(29));
        QVERIFY(std::equal(dados.begin(), dados.end(), pacote.begin()));
        QCOMPARE(tmex::TMWritePacket(s, *estado, 3, dados.first(5)), qint16(5));
        pacote.fill(9);
        QCOMPARE(tmex::TMReadPacket(s, *estado, 3, pacote, 29), qint16(5));
        QCOMPARE(int(pacote[5]), 0); // nothing of the longer one
        QVERIFY(tmex::TMWritePacket(s, *estado, 4, {}) > 0);
        QCOMPARE(tmex::TMReadPacket(s, *estado, 4, pacote, 29), qint16(0));
        QVERIFY(tmex::TMWritePacket(s, *estado, 16, dados.first(1)) < 0);
        tmex::Pagina pagina{};
        QVERIFY(tmex::TMExtendedReadPage(s, *estado, 16, pagina) > 0);
        QCOMPARE(int(pagina[20] & 0x80), 0x80);
        QCOMPARE(int(pagina[32]), 0);
        QCOMPARE(tmex::TMNext(s, *estado), qint16(0));
        QCOMPARE(tmex::TMNext(s, *estado), qint16(1)); // and from the front
        m.leitor.tirar();
        QVERIFY(tmex::TMReadPacket(s, *estado, 3, pacote, 29) < 0);
        QVERIFY(tmex::TMWritePacket(s, *estado, 3, dados) < 0);
        QCOMPARE(tmex::TMTouchReset(s), qint16(0));
        QCOMPARE(tmex::TMEndSession(s), qint16(1));
        QVERIFY(tmex::TMSetup(s) < 0);
        m.leitor.semAdaptador = true;
        QVERIFY(tmex::TMExtendedStartSession(1, 5) < 0);
    }

    // A search goes on over sessions, as the adapter's set-up does it.
    void procuraEntreSessoes() {
        Mesa m;
        QStringList nomes;
        for (int i = 0; i < 5; ++i) {
            nomes.append(QString::number(i));
            m.leitor.fazer(nomes.last(), Variante::G, quint64(i) * 99991);
        }
        m.leitor.por(nomes);
        auto estado = std::make_unique<tmex::BufferEstado>();
        QSet<QString> vistos;
        for (int i = 0; i < 5; ++i) {
            const auto s = tmex::TMExtendedStartSession(1, 5);
            QCOMPARE(tmex::TMNext(s, *estado), qint16(1));
            tmex::NumeroROM numero{};
            tmex::TMRom(s, *estado, numero);
            vistos.insert(QString::number(numero[1] << 8 | numero[2]));
            tmex::TMEndSession(s);
        }
        QCOMPARE(vistos.size(), 5);
        const auto s = tmex::TMExtendedStartSession(1, 5);
        QCOMPARE(tmex::TMNext(s, *estado), qint16(0));
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
        QVERIFY(vezes >= 2);
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
