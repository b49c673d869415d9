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

#include <QTcpServer>

#include <unistd.h>

using simulador::Variante;

namespace {

// The reader with its buttons behind a serial port; the port is type 5, number 1 of the settings.
struct Mesa {
    Instalacao instalacao{Instalacao::Base::Nenhuma};
    BotaoDeTeste leitor;
    LeitorSerie serie{leitor.linha};
    DS1921 controlo;

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
    void fazer(Variante v = Variante::G) {
        serie.comALinha([&] { leitor.fazer(u"A"_s, v); });
    }
};

} // namespace

// The serial back end byte by byte, the kernel's files, the ports, and an independent program at the same adapter.
class TstSerie : public QObject {
    Q_OBJECT
private Q_SLOTS:
    // Every byte value through the escapes of the data mode.
    void todosOsBytes() {
        Mesa m;
        m.fazer();
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
        QList<onewire::Rom> roms;
        for (int i = 0; i < 9; ++i)
            roms.append(simulador::fazerRom(i % 2 ? 0x21 : 0x09, quint64(i) * 0xE3E3E3E31ULL, i * 577));
        m.serie.comALinha([&] { m.leitor.fazer(roms); });
        std::sort(roms.begin(), roms.end(), onewire::antes);
        const auto t = onewire::TransporteSerie::abrir(m.serie.caminho());
        for (int familia : {0, 0x21, 0x44}) {
            QList<onewire::Rom> achados, esperados = roms;
            for (auto r = t->procurar(quint8(familia), true); r; r = t->procurar(quint8(familia), false))
                achados.append(*r);
            esperados.removeIf([&](const onewire::Rom &r) { return familia && r[0] != familia; });
            QCOMPARE(achados, esperados);
        }
    }

    // Equipment that is no adapter sees the reset byte and the first question, and the port is given up soon.
    void naoEscreveAoQueNaoResponde() {
        Mesa m;
        m.serie.comALinha([&] { m.serie.adaptador.mudo = true; });
        QVERIFY(!onewire::abrirPorto(1, 5));
        QTRY_COMPARE(m.serie.comALinha([&] { return m.serie.adaptador.tudoRecebido.toHex(); }), QByteArray("c145"));
    }

    void adaptadorTirado() {
        Mesa m;
        m.fazer();
        const auto s = tmex::TMExtendedStartSession(1, 5);
        QCOMPARE(tmex::TMTouchReset(s), qint16(1));
        m.serie.desligar();
        QVERIFY(tmex::TMTouchReset(s) < 0);
        QVERIFY(tmex::TMSetup(s) <= 0);
        QVERIFY(tmex::TMEndSession(s) > 0);
        QCOMPARE(m.controlo.ActualizarEstado(), qint16(0));
    }

    // One program at a time, however the path is spelled; the lock ends with the program.
    void trincoEntreProgramas() {
        Mesa m;
        m.fazer();
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
        QVERIFY(onewire::barramento().motivo.causa == onewire::Causa::Ocupado);
        QCOMPARE(m.controlo.ActualizarEstado(), qint16(0)); // waits a little, then gives up
        filho.matar();
        QTRY_VERIFY(tmex::TMExtendedStartSession(1, 5) > 0);
    }

    // Why a port does not become a reader, with what the user has to be told.
    void causasDoPorto() {
        using onewire::Causa;
        Mesa m;
        m.fazer();
        const auto dito = [&](Causa causa, const QString &trecho) {
            QVERIFY2(tmex::TMExtendedStartSession(1, 5) < 0, qUtf8Printable(trecho));
            const onewire::Motivo motivo = onewire::barramento().motivo;
            QVERIFY2(motivo.causa == causa, qUtf8Printable(trecho));
            QVERIFY2(onewire::frase(motivo).contains(trecho), qUtf8Printable(onewire::frase(motivo)));
        };
        QVERIFY(onewire::frase({Causa::SemPermissao, u"/dev/x"_s, u"dialout"_s}).contains(u"grupo \"dialout\""));
        QVERIFY(QFile::setPermissions(m.serie.caminho(), {}));
        onewire::barramento().motivo = {};
        const bool administrador = ::geteuid() == 0; // who may open everything
        if (administrador)
            QCOMPARE(::seteuid(65534), 0);
        const bool aberta = onewire::abrirNoCaminho(m.serie.caminho()) != nullptr;
        if (administrador)
            QCOMPARE(::seteuid(0), 0);
        QVERIFY(!aberta && onewire::barramento().motivo.causa == Causa::SemPermissao);
        QCOMPARE(onewire::barramento().motivo.grupo, QFileInfo(m.serie.caminho()).group());
        QVERIFY(QFile::setPermissions(m.serie.caminho(), QFile::ReadOwner | QFile::WriteOwner));
        m.serie.comALinha([&] { m.serie.adaptador.mudo = true; });
        dito(Causa::OutroEquipamento, m.serie.caminho());
        Mesa::caminho(m.instalacao.pastaINI());
        dito(Causa::OutroEquipamento, u"não responde como um adaptador"_s);
        Mesa::caminho(u"/dev/ttyNenhum"_s);
        dito(Causa::AdaptadorFora, u"(/dev/ttyNenhum)"_s);
        QVERIFY(tmex::TMExtendedStartSession(1, 3) < 0); // stands for nothing
        QVERIFY(onewire::barramento().motivo.causa == Causa::SemPorto);
    }

    void ondeEstaoOsPortos() {
        const Instalacao instalacao(Instalacao::Base::Nenhuma);
        QCOMPARE(onewire::caminhoDoPorto(9, 5), u"/dev/ttyS0"_s);
        QCOMPARE(onewire::caminhoDoPorto(13, 5), u"/dev/ttyACM0"_s);
        QCOMPARE(onewire::caminhoDoPorto(16, 5), QString());
        QCOMPARE(onewire::caminhoDoPorto(2, 6), u"/sys/bus/w1/devices/w1_bus_master2"_s);
        Mesa::caminho(u"/x/y"_s);
        QCOMPARE(onewire::caminhoDoPorto(1, 5), u"/x/y"_s);
    }

    // The kernel's files, played by plain ones: what is written goes before what is read.
    void ficheirosDoNucleo() {
        Mesa m;
        const QString pasta = m.instalacao.ficheiro(u"w1_bus_master1"_s);
        const auto rom = simulador::romDeTexto(u"212BC5FB00203BD6"_s);
        const QString rw = pasta + u"/21-3b2000fbc52b/rw"_s;
        QVERIFY(QDir().mkpath(QFileInfo(rw).path()));
        Mesa::caminho(pasta);
        QVERIFY(!onewire::abrirPorto(1, 5)); // a folder, but no bus master
        Instalacao::escreverFicheiro(pasta + u"/w1_master_slaves"_s, "21-3b2000fbc52b\n09-000000123456\n");
        Instalacao::escreverFicheiro(pasta + u"/w1_master_search"_s, "0");
        // The page's answer stands behind the three bytes of the command.
        const QByteArray cabeca = QByteArray::fromHex("a54000");
        const QByteArray conteudo = QByteArray(1, '\xFF') + QByteArray(30, '\0') + QByteArray(1, '\x77');
        const QByteArray coberto = cabeca + conteudo;
        const quint16 crc =
            quint16(~onewire::crc16({reinterpret_cast<const quint8 *>(coberto.constData()), size_t(coberto.size())}));
        Instalacao::escreverFicheiro(rw, QByteArray(3, '\0') + conteudo + char(crc) + char(crc >> 8));

        auto t = onewire::abrirPorto(1, 5);
        QVERIFY(t && t->reset() && t->valido());
        // A real search flag falls back by itself.
        const onewire::ComPassagem passagem(
            [&] { Instalacao::escreverFicheiro(pasta + u"/w1_master_search"_s, "0\n"); });
        QCOMPARE(t->procurar(0x21, true).value(), rom);
        QVERIFY(!t->procurar(0x21, false));
        const auto lida = onewire::Memoria1921(*t, rom).lerPagina(2);
        QVERIFY(lida && std::equal(lida->begin(), lida->end(), conteudo.begin(),
                                   [](quint8 a, char b) { return a == quint8(b); }));
        QCOMPARE(Instalacao::lerFicheiro(rw).left(3), cabeca);
        QDir(pasta).removeRecursively();
        QVERIFY(!t->valido());
        QVERIFY_THROWS_EXCEPTION(Falha, t->procurar(0x21, true));
    }

    // The program: a button is made, put on the reader, programmed over its port, and is the same afterwards.
    void programa() {
        Instalacao instalacao(Instalacao::Base::Nenhuma);
        const QString gaveta = instalacao.ficheiro(u"gaveta"_s);
        const auto correr = [&](const char *argumentos) {
            QProcess p;
            p.start(QStringLiteral(KELVARK_ADAPTADOR),
                    QStringList{u"--gaveta"_s, gaveta} +
                        QString::fromLatin1(argumentos).split(u' ', Qt::SkipEmptyParts));
            p.waitForFinished(10'000);
            return p.exitCode();
        };
        QCOMPARE(correr("--criar cais --tipo H"), 0);
        for (const char *recusado : {"--criar cais", "--criar outro --tipo Q", "--por nenhum", "--defeito nada=1"})
            QCOMPARE(correr(recusado), 2); // the first: never over another
        QCOMPARE(correr("--por cais"), 0);
        QProcess adaptador;
        adaptador.start(QStringLiteral(KELVARK_ADAPTADOR), {u"--gaveta"_s, gaveta, u"--aceleracao"_s, u"600"_s});
        QVERIFY(adaptador.waitForReadyRead(10'000));
        Mesa::caminho(QString::fromUtf8(adaptador.readLine()).trimmed());
        QCOMPARE(correr(""), 2); // a second one on the same drawer
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
        QCOMPARE(correr("--tirar"), 0);
        QCOMPARE(restante.noLeitor(), QStringList{u"chip"_s}); // it belongs to the reader
    }
};

QTEST_GUILESS_MAIN(TstSerie)
#include "tst_serie.moc"
