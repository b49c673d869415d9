#include "platform/onewire/crc.h"
#include "platform/onewire/registos1921.h"
#include "simulator/botao/transporteVirtual.h"
#include "tests/apoio/botaoDeTeste.h"
#include "tests/apoio/instalacao.h"
#include "tests/apoio/tabela.h"

#include <QtTest>

#include <cmath>

using simulador::ChipDS1921;
using simulador::Variante;

namespace {

QByteArray hex(const char *texto) {
    return QByteArray::fromHex(texto);
}
std::span<const quint8> bytes(const QByteArray &a) {
    return {reinterpret_cast<const quint8 *>(a.constData()), size_t(a.size())};
}
std::array<quint8, 7> relogio(const ChipDS1921 &chip) {
    std::array<quint8, 7> r;
    for (size_t i = 0; i < 7; ++i)
        r[i] = chip.ler(0x200 + int(i));
    return r;
}
void escrever(ChipDS1921 &chip, int endereco, const QByteArray &valores) {
    QVERIFY(chip.copiar(endereco, bytes(valores)));
}

} // namespace

// The virtual chip against the public facts, and the decoder against their vectors.
class TstChip : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void crcs() {
        QCOMPARE(onewire::crc8(bytes(hex("212BC5FB00203B"))), quint8(0xD6));
        QCOMPARE(onewire::crc16(bytes("123456789")), quint16(0xBB3D));
        const onewire::Rom rom = simulador::romDeTexto(u"212BC5FB00203BD6"_s);
        QVERIFY(onewire::romValido(rom));
        QVERIFY(onewire::variante1921(rom) == onewire::Variante1921::Z);
        QVERIFY(!onewire::romValido({}));
    }

    void pacotes_data() {
        const Tabela<QByteArray, int, QByteArray> caso("dados", "pagina", "bytes");
        caso("page 0", "HELLO", 0, hex("0548454C4C4FBE4B"));
        caso("page 3", "HELLO", 3, hex("0548454C4C4FBE78"));
        caso("page 15", "HELLO", 15, hex("0548454C4C4FBEB4"));
        caso("empty", {}, 0, hex("00FFFF"));
    }
    void pacotes() {
        QFETCH(QByteArray, dados);
        QFETCH(int, pagina);
        QTEST(onewire::fazerPacote(bytes(dados), pagina), "bytes");
        QByteArray folha = onewire::fazerPacote(bytes(dados), pagina).leftJustified(32, '\x5A');
        std::array<quint8, 30> lidos{};
        QCOMPARE(onewire::lerPacote(bytes(folha), pagina, lidos), int(dados.size()));
        QVERIFY(std::equal(dados.begin(), dados.end(), lidos.begin(), [](char a, quint8 b) { return quint8(a) == b; }));
        QCOMPARE(onewire::lerPacote(bytes(folha), pagina + 1, lidos), -1); // another page's packet
        folha[1] = char(folha.at(1) ^ 4);
        QCOMPARE(onewire::lerPacote(bytes(folha), pagina, lidos), -1);
    }

    void codigos_data() {
        const Tabela<Variante, double, int> caso("variante", "graus", "codigo");
        caso("G 23", Variante::G, 23.0, 0x7E);
        caso("H 23", Variante::H, 23.0, 0x44);
        caso("Z 23", Variante::Z, 23.0, 0xE4);
        caso("Z 0", Variante::Z, 0.0, 0x2C);
        caso("G -5", Variante::G, -5.0, 0x46);
        caso("G just above -5", Variante::G, -4.99, 0x46);
        caso("G just below -5", Variante::G, -5.01, 0x46);
        caso("H too cold", Variante::H, -80.0, 0x00);
    }
    void codigos() {
        QFETCH(Variante, variante);
        QFETCH(double, graus);
        const auto v = onewire::variante1921(BotaoDeTeste::rom(variante));
        QTEST(int(simulador::codigoDe(variante, graus)), "codigo");
        QTEST(int(onewire::codigo1921(v, graus)), "codigo");
    }
    void saturacao() {
        QCOMPARE(int(simulador::codigoDe(Variante::G, 200)), 0xFA);
        QCOMPARE(int(simulador::codigoDe(Variante::Z, 200)), 0xFF);
        QCOMPARE(int(onewire::codigo1921(onewire::Variante1921::G, 87.5)), 0xFF); // a threshold may be any code
    }

    // Seconds go by; what the seven registers show, and what the decoder makes of them.
    void calendario_data() {
        const Tabela<QByteArray, int, QByteArray, QString> caso("antes", "segundos", "depois", "lido");
        caso("leap", hex("59592306288224"), 1, hex("00000007298224"), u"2024-02-29 00:00:00"_s);
        caso("no leap", hex("59592306288223"), 1, hex("00000007018323"), u"2023-03-01 00:00:00"_s);
        caso("century on", hex("59592305311299"), 1, hex("00000006018100"), u"2000-01-01 00:00:00"_s);
        caso("century off", hex("59592304319299"), 1, hex("00000005010100"), u"1900-01-01 00:00:00"_s);
        caso("12 h: midnight", hex("59597107158326"), 1, hex("00005201168326"), u"2026-03-16 00:00:00"_s);
        caso("12 h: noon", hex("59595107158326"), 1, hex("00007207158326"), u"2026-03-15 12:00:00"_s);
        caso("12 h: one", hex("59597207158326"), 1, hex("00006107158326"), u"2026-03-15 13:00:00"_s);
    }
    void calendario() {
        QFETCH(QByteArray, antes);
        QFETCH(int, segundos);
        QFETCH(QByteArray, depois);
        ChipDS1921 chip(BotaoDeTeste::rom(Variante::G));
        escrever(chip, 0x200, antes);
        chip.andar(segundos * 1000);
        const auto r = relogio(chip);
        QCOMPARE(QByteArray(reinterpret_cast<const char *>(r.data()), 7).toHex(), depois.toHex());
        onewire::BytesDaPagina pagina{};
        std::copy(r.begin(), r.end(), pagina.begin());
        QTEST(onewire::descodificarRegistos(pagina).relogio.toString(u"yyyy-MM-dd hh:mm:ss"), "lido");
    }

    // Which writes leave a mission running, and which starts are taken.
    void escritasNaMissao_data() {
        const Tabela<int, QByteArray, bool> caso("endereco", "bytes", "continua");
        caso("clock", 0x200, hex("00"), false);
        caso("no function", 0x20F, hex("00"), false);
        caso("delay", 0x213, hex("00"), false);
        caso("rate", 0x20D, hex("05"), false);
        caso("status kept", 0x214, hex("FF"), true);
        caso("status ends", 0x214, hex("DF"), false);
        caso("memory", 0x0100, hex("AB"), true);
    }
    void escritasNaMissao() {
        QFETCH(int, endereco);
        QFETCH(QByteArray, bytes);
        ChipDS1921 chip(BotaoDeTeste::rom(Variante::G));
        chip.iniciar(1, 0, false, 0, 50);
        QVERIFY(chip.missao());
        chip.andar(600'000);
        QCOMPARE(chip.contador(), 10U);
        escrever(chip, endereco, bytes);
        QTEST(chip.missao(), "continua");
        QCOMPARE(int(chip.ler(0x20D)), 1); // read only until the mission has ended
        QCOMPARE(chip.contador(), 10U);    // what was counted stays
    }
    void recusasCaladas_data() {
        QTest::addColumn<int>("impedimento");
        QTest::newRow("none") << 0;
        QTest::newRow("not cleared") << 1;
        QTest::newRow("stopped clock") << 2;
        QTest::newRow("start disabled") << 3;
        QTest::newRow("clock not yet seen to go") << 4;
        QTest::newRow("rate 0") << 5;
    }
    void recusasCaladas() {
        QFETCH(int, impedimento);
        ChipDS1921 chip(BotaoDeTeste::rom(Variante::G));
        if (impedimento != 1)
            chip.limpar();
        if (impedimento == 2)
            chip.pararOscilador();
        if (impedimento == 3)
            escrever(chip, 0x20E, hex("10"));
        if (impedimento == 4)
            escrever(chip, 0x200, hex("00"));
        escrever(chip, 0x20D, impedimento == 5 ? hex("00") : hex("0A"));
        QCOMPARE(chip.missao(), impedimento == 0);
    }

    void limparSoDepoisDeArmar() {
        Instalacao instalacao(Instalacao::Base::Nenhuma);
        BotaoDeTeste leitor;
        leitor.fazer(u"A"_s);
        leitor.chip().iniciar(1, 0, false, 0, 50);
        leitor.andar(10);
        simulador::TransporteVirtual t(leitor.linha);
        onewire::Memoria1921 memoria(t, leitor.chip().rom());
        const quint8 armar[] = {0x40};
        QVERIFY(memoria.comandar(0x3C)); // not armed: nothing
        QVERIFY(leitor.chip().contador() >= 10);
        QVERIFY(memoria.escrever(0x20E, armar));
        QVERIFY(memoria.lerPagina(16)); // the look at it disarms it
        QVERIFY(memoria.comandar(0x3C));
        QVERIFY(leitor.chip().contador() >= 10);
        const quint8 primeiro = leitor.chip().ler(0x1000);
        const quint8 limites[] = {0x46, 0x50};
        QVERIFY(memoria.escrever(0x20B, limites));
        QVERIFY(memoria.escrever(0x20E, armar));
        QVERIFY(memoria.comandar(0x3C));
        ChipDS1921 &chip = leitor.chip();
        QCOMPARE(chip.contador(), 0U);
        QCOMPARE(chip.ler(0x214) & 0x60, 0x40);
        QCOMPARE(chip.ler(0x1000), primeiro); // the log is not cleared, nor are the limits and the lifetime counter
        QCOMPARE(int(chip.ler(0x20B)), 0x46);
        QVERIFY(chip.ler(0x21D) >= 10);
    }

    void alarmesEHistograma() {
        ChipDS1921 chip(BotaoDeTeste::rom(Variante::G));
        // Hot for two minutes of every five; after 400 minutes cold for good.
        int minuto = -1;
        chip.temperatura = [&](qint64) { return ++minuto >= 400 ? -10.0 : minuto % 5 < 2 ? 60.0 : 20.0; };
        chip.iniciar(1, 0, false, 0, 50);
        chip.andar(60'000LL * 1000);
        QCOMPARE(chip.contador(), 1000U);
        for (int i = 0; i < 12; ++i) { // the first twelve runs; the others have no room
            QCOMPARE(int(chip.ler(0x250 + 4 * i)), 5 * i + 1);
            QCOMPARE(int(chip.ler(0x253 + 4 * i)), 2);
        }
        QCOMPARE(chip.ler(0x220) + (chip.ler(0x221) << 8), 401);
        QCOMPARE(int(chip.ler(0x223)), 255); // a run that outlasts its byte goes on in the next slot
        QCOMPARE(chip.ler(0x224) + (chip.ler(0x225) << 8), 656);
        QCOMPARE(int(chip.ler(0x22B)), 90);
        QCOMPARE(int(chip.ler(0x22F)), 0);
        QCOMPARE(chip.ler(0x214) & 0x06, 0x06);
        const auto bin = [&](double graus) {
            const int e = 0x800 + 2 * (simulador::codigoDe(Variante::G, graus) >> 2);
            return chip.ler(e) | chip.ler(e + 1) << 8;
        };
        QCOMPARE(bin(60), 160);
        QCOMPARE(bin(20), 240);
        QCOMPARE(bin(-10), 600);
        chip.andar(60'000LL * 70'000);
        QCOMPARE(bin(-10), 65535); // full is full
    }

    void logParaOuGira_data() {
        QTest::addColumn<bool>("continuo");
        QTest::newRow("stops") << false;
        QTest::newRow("wraps") << true;
    }
    void logParaOuGira() {
        QFETCH(bool, continuo);
        ChipDS1921 chip(BotaoDeTeste::rom(Variante::G));
        quint32 n = 0;
        chip.temperatura = [&](qint64) { return ++n > 2048 ? 30.0 : 20.0; };
        chip.iniciar(1, 3, continuo, 0, 50);
        chip.andar(60'000LL * (3 + 2563));
        QCOMPARE(chip.contador(), 2563U);
        QCOMPARE(chip.ler(0x1000 + 514), simulador::codigoDe(Variante::G, continuo ? 30 : 20));
        QCOMPARE(chip.ler(0x1000 + 515), simulador::codigoDe(Variante::G, 20));
        // Kept and taken up again, it is the same chip.
        ChipDS1921 outro(chip.rom());
        QVERIFY(outro.repor(chip.guardar()));
        outro.temperatura = chip.temperatura;
        for (int e = 0; e < ChipDS1921::tamanho; ++e)
            QCOMPARE(outro.ler(e), chip.ler(e));
        outro.andar(60'000);
        QCOMPARE(outro.contador(), 2564U);
    }

    void procuraEncontraTodos() {
        Instalacao instalacao(Instalacao::Base::Nenhuma);
        BotaoDeTeste leitor;
        QStringList nomes;
        QList<onewire::Rom> roms;
        for (int i = 0; i < 12; ++i) {
            const auto rom = simulador::fazerRom(i % 3 ? 0x21 : 0x81, quint64(i) * 0x2468ACE1357ULL, i * 291);
            roms.append(rom);
            nomes.append(u"b%1"_s.arg(i));
            leitor.fazer(nomes.last(), rom);
        }
        leitor.por(nomes);
        simulador::TransporteVirtual t(leitor.linha);
        for (int familia : {0, 0x21, 0x81, 0x10}) {
            QList<onewire::Rom> achados;
            for (auto r = t.procurar(quint8(familia), true); r; r = t.procurar(quint8(familia), false))
                achados.append(*r);
            QList<onewire::Rom> esperados;
            for (const auto &r : roms)
                if (!familia || r[0] == familia)
                    esperados.append(r);
            std::sort(esperados.begin(), esperados.end(), onewire::antes);
            QCOMPARE(achados, esperados);
        }
    }
};

QTEST_GUILESS_MAIN(TstChip)
#include "tst_chip.moc"
