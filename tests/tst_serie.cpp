#include "core/falha.h"
#include "core/modINI.h"
#include "platform/onewire/DS1921.h"
#include "platform/onewire/crc.h"
#include "platform/onewire/memoria1921.h"
#include "platform/onewire/pesquisaRom.h"
#include "platform/onewire/portos.h"
#include "platform/onewire/tmex.h"
#include "platform/onewire/transporteNucleo.h"
#include "platform/onewire/transporteSerie.h"
#include "platform/onewire/trinco.h"
#include "tests/apoio/botaoDeTeste.h"
#include "tests/apoio/filho.h"
#include "tests/apoio/instalacao.h"
#include "tests/apoio/leitorSerie.h"

#include <QDir>
#include <QProcess>
#include <QStandardPaths>
#include <QTcpServer>
#include <QtTest>

using simulador::Variante;

Q_DECLARE_METATYPE(Variante)

namespace {

// The reader with its buttons behind a serial port; the port is type 5, number 1 of the settings.
struct Mesa {
    Instalacao instalacao{Instalacao::Base::Nenhuma};
    BotaoDeTeste leitor;
    LeitorSerie serie{leitor.linha};
    DS1921 controlo;
    std::vector<DS1921::Amostra> amostras;

    Mesa() {
        onewire::barramento().abrir = onewire::abrirPorto;
        estado().ambiente.agora = [this] { return serie.comALinha([&] { return leitor.agora(); }); };
        caminho(serie.caminho());
        controlo.PortaTipo = 5;
        controlo.PortaNumero = 1;
        leitor.passoMs = 600; // the wait for the clock is short, however slow the machine
    }
    static void caminho(const QString &onde) {
        modINI::SaveSetting(u"Kelvark"_s, u"LIAGACAOHARDWARE"_s, u"Caminho5.1"_s, onde);
    }
    void fazer(Variante v, const std::function<double(qint64)> &curva) {
        serie.comALinha([&] {
            leitor.fazer(u"A"_s, v);
            leitor.linha->temperatura = curva;
        });
    }
    void andar(int minutos) {
        serie.comALinha([&] { leitor.andar(minutos); });
    }
    quint32 tiradas() {
        return serie.comALinha([&] { return leitor.chip().contador(); });
    }
};

qint64 segundosDoChip(const QDateTime &data) {
    return QDateTime(QDate(2000, 1, 1), QTime(0, 0), Qt::UTC).secsTo(data) + 36525LL * 86400;
}

} // namespace

// The serial back end byte by byte, the kernel's files, the ports, and an independent program at the same adapter.
class TstSerie : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void vidaDeUmaMissao_data() {
        QTest::addColumn<Variante>("variante");
        QTest::addColumn<bool>("continuo");
        QTest::newRow("G wraps") << Variante::G << true;
        QTest::newRow("H stops") << Variante::H << false;
        QTest::newRow("Z wraps") << Variante::Z << true;
    }
    void vidaDeUmaMissao() {
        QFETCH(Variante, variante);
        QFETCH(bool, continuo);
        Mesa m;
        QVERIFY(m.serie.aberto);
        const auto curva = [](qint64 s) { return 20.0 + 5.0 * std::sin(double(s / 60) / 700.0); };
        m.fazer(variante, curva);
        QCOMPARE(m.controlo.ActualizarEstado(), qint16(1));
        m.controlo.IntervaloAmostra = 10;
        m.controlo.MinutosAtraso = 300;
        m.controlo.CicloContinuo = continuo;
        m.controlo.LimiteBaixo = 16;
        m.controlo.LimiteAlto = 24;
        QCOMPARE(m.controlo.ProgramarMissao(), qint16(1));
        m.andar(200);
        QCOMPARE(m.controlo.ActualizarEstado(), qint16(1));
        QVERIFY(m.controlo.MissaoEmCurso && m.controlo.InicioAmostragem.date().year() <= 1900);
        QVERIFY(m.controlo.MinutosAtraso >= 99 && m.controlo.MinutosAtraso <= 100);
        QCOMPARE(m.controlo.ContarAmostras(m.amostras), qint16(0));

        for (int minutos : {400, 5003, 10 * 2048 + 7}) {
            m.andar(minutos);
            m.controlo.LerAmostras(m.amostras);
            const qint16 n = m.controlo.ContarAmostras(m.amostras);
            const quint32 tiradas = m.tiradas();
            QCOMPARE(quint32(n), std::min(tiradas, 2048U));
            QCOMPARE(m.controlo.ActualizarEstado(), qint16(1));
            const quint32 primeira = continuo ? tiradas - quint32(n) : 0;
            for (int i = 0; i < n; ++i) {
                const auto &a = m.amostras[size_t(i)];
                QCOMPARE(a.Data, m.controlo.InicioAmostragem.addSecs(qint64(primeira + quint32(i)) * 600));
                QCOMPARE(a.Temperatura,
                         simulador::grausDe(variante, simulador::codigoDe(variante, curva(segundosDoChip(a.Data)))));
            }
        }
        QVERIFY(m.tiradas() > 2500);
        QCOMPARE(m.controlo.TerminarAmostragem(), qint16(1));
        QCOMPARE(m.controlo.LimparMemoria(), qint16(1));
        QCOMPARE(m.controlo.ContarAmostras(m.amostras), qint16(0));
    }

    // Every byte value through the escapes of the data mode.
    void todosOsBytes() {
        Mesa m;
        m.fazer(Variante::G, [](qint64) { return 20.0; });
        auto t = onewire::TransporteSerie::abrir(m.serie.caminho());
        QVERIFY(t && t->valido());
        onewire::Memoria1921 memoria(*t, BotaoDeTeste::rom(Variante::G));
        for (int p = 0; p < 8; ++p) {
            std::array<quint8, 32> bytes;
            for (size_t i = 0; i < 32; ++i)
                bytes[i] = quint8(p * 32 + int(i));
            QVERIFY(memoria.escrever(p * 32, bytes));
            QCOMPARE(memoria.lerPagina(p).value(), bytes);
        }
        t.reset();
        QVERIFY(onewire::TransporteSerie::abrir(m.serie.caminho())); // and once more, as it was left
    }

    void procuraNoFio() {
        Mesa m;
        QStringList nomes;
        QList<onewire::Rom> roms;
        m.serie.comALinha([&] {
            for (int i = 0; i < 9; ++i) {
                roms.append(simulador::fazerRom(i % 2 ? 0x21 : 0x09, quint64(i) * 0xE3E3E3E31ULL, i * 577));
                nomes.append(QString::number(i));
                m.leitor.fazer(nomes.last(), roms.last());
            }
            m.leitor.por(nomes);
        });
        const auto t = onewire::TransporteSerie::abrir(m.serie.caminho());
        for (int familia : {0, 0x21, 0x44}) {
            QList<onewire::Rom> achados, esperados;
            for (auto r = t->procurar(quint8(familia), true); r; r = t->procurar(quint8(familia), false))
                achados.append(*r);
            for (const auto &r : roms)
                if (!familia || r[0] == familia)
                    esperados.append(r);
            std::sort(esperados.begin(), esperados.end(), onewire::antes);
            QCOMPARE(achados, esperados);
        }
    }

    // Equipment that is no adapter sees the reset byte and the first question, and the port is given up soon.
    void naoEscreveAoQueNaoResponde() {
        Mesa m;
        m.serie.comALinha([&] { m.serie.adaptador.mudo = true; });
        QElapsedTimer relogio;
        relogio.start();
        QVERIFY(!onewire::abrirPorto(1, 5));
        QVERIFY(relogio.elapsed() < 10000);
        QTRY_COMPARE(m.serie.comALinha([&] { return m.serie.adaptador.tudoRecebido.toHex(); }), QByteArray("c145"));
    }

    void adaptadorTirado() {
        Mesa m;
        m.fazer(Variante::G, [](qint64) { return 20.0; });
        const auto s = tmex::TMExtendedStartSession(1, 5);
        QVERIFY(s > 0);
        QCOMPARE(tmex::TMSetup(s), qint16(1));
        QCOMPARE(tmex::TMTouchReset(s), qint16(1));
        m.serie.desligar();
        QElapsedTimer relogio;
        relogio.start();
        QVERIFY(tmex::TMTouchReset(s) < 0);
        QVERIFY(tmex::TMSetup(s) <= 0);
        QVERIFY(tmex::TMEndSession(s) > 0);
        QCOMPARE(m.controlo.ActualizarEstado(), qint16(0));
        QVERIFY(relogio.elapsed() < 20000);
    }

    // One program at a time, however the path is spelled; the lock ends with the program.
    void trincoEntreProgramas() {
        Mesa m;
        m.fazer(Variante::G, [](qint64) { return 20.0; });
        const QString outroNome = m.instalacao.ficheiro(u"porta"_s);
        QVERIFY(QFile::link(m.serie.caminho(), outroNome));
        QCOMPARE(onewire::Trinco::ficheiro(outroNome), onewire::Trinco::ficheiro(m.serie.caminho()));
        const QString marca = m.instalacao.ficheiro(u"marca"_s);
        Filho filho([&]() -> QByteArray {
            const onewire::Trinco trinco(outroNome);
            Instalacao::escreverFicheiro(marca, trinco.preso() ? "1" : "0");
            for (;;)
                QThread::msleep(50);
        });
        QTRY_COMPARE(Instalacao::lerFicheiro(marca), QByteArray("1"));
        QVERIFY(tmex::TMExtendedStartSession(1, 5) < 0);
        QVERIFY(onewire::barramento().ocupado);
        QCOMPARE(m.controlo.ActualizarEstado(), qint16(0)); // waits a little, then gives up
        filho.matar();
        QTRY_VERIFY(tmex::TMExtendedStartSession(1, 5) > 0);
    }

    void ondeEstaoOsPortos_data() {
        QTest::addColumn<int>("tipo");
        QTest::addColumn<int>("porto");
        QTest::addColumn<QString>("caminho");
        QTest::newRow("first serial") << 5 << 1 << u"/dev/ttyUSB0"_s;
        QTest::newRow("last USB serial") << 5 << 8 << u"/dev/ttyUSB7"_s;
        QTest::newRow("built in") << 5 << 9 << u"/dev/ttyS0"_s;
        QTest::newRow("modem class") << 5 << 13 << u"/dev/ttyACM0"_s;
        QTest::newRow("past the end") << 5 << 16 << QString();
        QTest::newRow("kernel") << 6 << 2 << u"/sys/bus/w1/devices/w1_bus_master2"_s;
        QTest::newRow("no such type") << 1 << 1 << QString();
    }
    void ondeEstaoOsPortos() {
        QFETCH(int, tipo);
        QFETCH(int, porto);
        Instalacao instalacao(Instalacao::Base::Nenhuma);
        QTEST(onewire::caminhoDoPorto(qint16(porto), qint16(tipo)), "caminho");
        modINI::SaveSetting(u"Kelvark"_s, u"LIAGACAOHARDWARE"_s, u"Caminho%1.%2"_s.arg(tipo).arg(porto), u"/x/y"_s);
        QCOMPARE(onewire::caminhoDoPorto(qint16(porto), qint16(tipo)), u"/x/y"_s);
    }

    // The kernel's files, played by plain ones: what is written goes before what is read.
    void ficheirosDoNucleo() {
        Mesa m;
        const QString pasta = m.instalacao.ficheiro(u"w1_bus_master1"_s);
        const auto rom = simulador::romDeTexto(u"212BC5FB00203BD6"_s);
        QCOMPARE(onewire::nomeDoRom(rom), u"21-3b2000fbc52b"_s);
        QCOMPARE(onewire::romDoNome(u"21-3b2000fbc52b"_s).value(), rom);
        QVERIFY(QDir().mkpath(pasta + u"/21-3b2000fbc52b"_s));
        Mesa::caminho(pasta);
        QVERIFY(!onewire::abrirPorto(1, 5)); // a folder, but no bus master
        Instalacao::escreverFicheiro(pasta + u"/w1_master_slaves"_s, "21-3b2000fbc52b\n09-000000123456\n");
        Instalacao::escreverFicheiro(pasta + u"/w1_master_search"_s, "0");
        // The page's answer stands behind the three bytes of the command.
        std::array<quint8, 32> conteudo{};
        conteudo[0] = 0xFF;
        conteudo[31] = 0x77;
        const QByteArray cabeca = QByteArray::fromHex("a54000");
        QByteArray ficheiro = cabeca + QByteArray(reinterpret_cast<const char *>(conteudo.data()), 32);
        const auto comoBytes =
            std::span(reinterpret_cast<const quint8 *>(ficheiro.constData()), size_t(ficheiro.size()));
        const quint16 crc = quint16(~onewire::crc16(comoBytes));
        ficheiro.append(char(crc)).append(char(crc >> 8));
        ficheiro.replace(0, 3, QByteArray(3, char(0)));
        Instalacao::escreverFicheiro(pasta + u"/21-3b2000fbc52b/rw"_s, ficheiro);

        auto t = onewire::abrirPorto(1, 5);
        QVERIFY(t && t->reset() && t->valido());
        // A real search flag falls back by itself.
        const onewire::ComPassagem passagem(
            [&] { Instalacao::escreverFicheiro(pasta + u"/w1_master_search"_s, "0\n"); });
        QCOMPARE(t->procurar(0x21, true).value(), rom);
        QVERIFY(!t->procurar(0x21, false));
        QCOMPARE(onewire::Memoria1921(*t, rom).lerPagina(2).value(), conteudo);
        QCOMPARE(Instalacao::lerFicheiro(pasta + u"/21-3b2000fbc52b/rw"_s).left(3), cabeca);
        QDir(pasta).removeRecursively();
        QVERIFY(!t->valido());
        QVERIFY_THROWS_EXCEPTION(Falha, t->procurar(0x21, true));
    }

    // Another program's reading of the same button: number, memory, log.
    void testemunha() {
        const QString owserver = QStandardPaths::findExecutable(u"owserver"_s);
        const QString owread = QStandardPaths::findExecutable(u"owread"_s);
        if (owserver.isEmpty() || owread.isEmpty())
            QSKIP("owserver is not installed");
        Mesa m;
        m.fazer(Variante::Z, [](qint64 s) { return 2.0 + double(s / 60 % 50) / 4.0; });
        QCOMPARE(m.controlo.ActualizarEstado(), qint16(1));
        m.controlo.IntervaloAmostra = 1;
        QCOMPARE(m.controlo.ProgramarMissao(), qint16(1));
        m.andar(62);
        const auto n = size_t(m.controlo.ContarAmostras(m.amostras));
        QVERIFY(n > 60);
        const auto s = tmex::TMExtendedStartSession(1, 5);
        auto buffer = std::make_unique<tmex::BufferEstado>();
        tmex::TMFamilySearchSetup(s, *buffer, 0x21);
        QCOMPARE(tmex::TMNext(s, *buffer), qint16(1));
        const std::array<quint8, 12> texto{'0', '0', '0', '1', 'W', 'i', 't', 'n', 'e', 's', 's', '.'};
        QCOMPARE(tmex::TMWritePacket(s, *buffer, 2, texto), qint16(12));
        tmex::TMEndSession(s);

        QTcpServer livre;
        QVERIFY(livre.listen(QHostAddress::LocalHost));
        const QString onde = u"127.0.0.1:%1"_s.arg(livre.serverPort());
        livre.close();
        QProcess servidor;
        servidor.start(owserver, {u"--foreground"_s, u"--nozero"_s, u"-d"_s, m.serie.caminho(), u"-p"_s, onde});
        QVERIFY(servidor.waitForStarted());
        const auto ler = [&](const QString &caminho) {
            QProcess p;
            p.start(owread, {u"-s"_s, onde, caminho});
            p.waitForFinished(20'000);
            return p.readAllStandardOutput();
        };
        const QString botao = u"/uncached/21."_s + simulador::textoDoRom(BotaoDeTeste::rom(Variante::Z)).mid(2, 12);
        const QByteArray numero = simulador::textoDoRom(BotaoDeTeste::rom(Variante::Z)).toLatin1();
        QTRY_COMPARE_WITH_TIMEOUT(ler(botao + u"/address"_s).trimmed(), numero, 30'000);
        const QByteArray pagina = ler(botao + u"/pages/page.2"_s);
        QCOMPARE(pagina.mid(1, 12), QByteArray("0001Witness."));
        const auto lidas = ler(botao + u"/log/temperature.ALL"_s).split(',');
        QVERIFY(size_t(lidas.size()) >= n);
        for (size_t i = 0; i < n; ++i)
            QCOMPARE(lidas.at(qsizetype(i)).trimmed().toDouble(), m.amostras[i].Temperatura);
        servidor.terminate();
        if (!servidor.waitForFinished(5000))
            servidor.kill();
        servidor.waitForFinished(1000);
    }

    // The program: a button is made, put on the reader, programmed over its port, and is the same afterwards.
    void programa() {
        Instalacao instalacao(Instalacao::Base::Nenhuma);
        const QString gaveta = instalacao.ficheiro(u"gaveta"_s);
        const auto correr = [&](const QStringList &argumentos) {
            QProcess p;
            p.start(QStringLiteral(KELVARK_ADAPTADOR), QStringList{u"--gaveta"_s, gaveta} + argumentos);
            p.waitForFinished(10'000);
            return p.exitCode();
        };
        QCOMPARE(correr({u"--criar"_s, u"cais"_s, u"--tipo"_s, u"H"_s}), 0);
        QCOMPARE(correr({u"--criar"_s, u"cais"_s}), 2); // never over another
        QCOMPARE(correr({u"--criar"_s, u"outro"_s, u"--tipo"_s, u"Q"_s}), 2);
        QCOMPARE(correr({u"--por"_s, u"nenhum"_s}), 2);
        QCOMPARE(correr({u"--defeito"_s, u"nada=1"_s}), 2);
        QCOMPARE(correr({u"--por"_s, u"cais"_s}), 0);
        QProcess adaptador;
        adaptador.start(QStringLiteral(KELVARK_ADAPTADOR), {u"--gaveta"_s, gaveta, u"--aceleracao"_s, u"600"_s});
        QVERIFY(adaptador.waitForReadyRead(10'000));
        Mesa::caminho(QString::fromUtf8(adaptador.readLine()).trimmed());
        QCOMPARE(correr({}), 2); // a second one on the same drawer
        DS1921 controlo;
        controlo.PortaTipo = 5;
        controlo.PortaNumero = 1;
        QCOMPARE(controlo.ActualizarEstado(), qint16(1));
        QCOMPARE(controlo.TipoRegistador, u"H"_s);
        controlo.IntervaloAmostra = 1;
        QCOMPARE(controlo.ProgramarMissao(), qint16(1));
        std::vector<DS1921::Amostra> amostras;
        QTRY_VERIFY(controlo.ContarAmostras(amostras) >= 5); // ten minutes of the button in one of our seconds
        adaptador.kill();                                    // with no time to tidy up
        adaptador.waitForFinished();
        const auto botao = simulador::Gaveta(gaveta).botao(u"cais"_s);
        QVERIFY(botao);
        botao->actualizar(simulador::milissegundosAgora());
        QVERIFY(botao->chip.missao());
        QVERIFY(botao->chip.contador() >= amostras.size());
        for (size_t i = 0; i < amostras.size(); ++i)
            QCOMPARE(simulador::grausDe(Variante::H, botao->chip.ler(0x1000 + int(i))), amostras[i].Temperatura);
        const simulador::Gaveta restante(gaveta);
        restante.criar(u"chip"_s, simulador::fazerRom(0x81, 5, 0), QDateTime::currentDateTimeUtc(), 0);
        restante.por({u"cais"_s, u"chip"_s});
        QCOMPARE(correr({u"--tirar"_s}), 0);
        QCOMPARE(restante.noLeitor(), QStringList{u"chip"_s}); // it belongs to the reader
    }
};

QTEST_GUILESS_MAIN(TstSerie)
#include "tst_serie.moc"
