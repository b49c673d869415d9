#include "platform/onewire/pesquisaRom.h"
#include "platform/onewire/registos1921.h"
#include "tests/apoio/botaoDeTeste.h"
#include "tests/apoio/discoCheio.h"
#include "tests/apoio/instalacao.h"

#include <algorithm>
#include <ranges>

using simulador::ChipDS1921;
using simulador::Variante;

namespace {

QByteArray hex(const char *texto) {
    return QByteArray::fromHex(texto);
}
std::span<const quint8> bytes(const QByteArray &a) {
    return {reinterpret_cast<const quint8 *>(a.constData()), size_t(a.size())};
}
void escrever(ChipDS1921 &chip, int endereco, const QByteArray &valores) {
    QVERIFY(chip.copiar(endereco, bytes(valores)));
}

} // namespace

// The virtual chip against the public facts, and the decoder against their vectors.
class TstChip : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void pacotes() {
        QVERIFY(onewire::romValido(simulador::romDeTexto(u"212BC5FB00203BD6"_s)) && !onewire::romValido({}));
        const std::tuple<QByteArray, int, QByteArray> casos[] = {
            {"HELLO", 3, hex("0548454C4C4FBE78")}, {"HELLO", 15, hex("0548454C4C4FBEB4")}, {{}, 0, hex("00FFFF")}};
        for (const auto &[dados, pagina, esperado] : casos) {
            QByteArray folha = onewire::fazerPacote(bytes(dados), pagina);
            QCOMPARE(folha, esperado);
            folha = folha.leftJustified(32, '\x5A');
            std::array<quint8, 30> lidos{};
            QCOMPARE(onewire::lerPacote(bytes(folha), pagina, lidos), int(dados.size()));
            QVERIFY(std::ranges::equal(bytes(dados), std::span(lidos).first(size_t(dados.size()))));
            QCOMPARE(onewire::lerPacote(bytes(folha), pagina + 1, lidos), -1); // another page's packet
            folha[1] = char(folha.at(1) ^ 4);
            QCOMPARE(onewire::lerPacote(bytes(folha), pagina, lidos), -1);
        }
    }

    void codigos() {
        const std::tuple<Variante, double, int> casos[] = {
            {Variante::G, 23.0, 0x7E},  {Variante::H, 23.0, 0x44},  {Variante::Z, 23.0, 0xE4},
            {Variante::G, -4.99, 0x46}, {Variante::G, -5.01, 0x46}, {Variante::H, -80.0, 0x00},
        };
        for (const auto &[variante, graus, codigo] : casos) {
            QCOMPARE(int(simulador::codigoDe(variante, graus)), codigo);
            QCOMPARE(int(onewire::codigo1921(onewire::variante1921(BotaoDeTeste::rom(variante)), graus)), codigo);
        }
        QCOMPARE(int(simulador::codigoDe(Variante::G, 200)), 0xFA);
        QCOMPARE(int(simulador::codigoDe(Variante::Z, 200)), 0xFF);
        QCOMPARE(int(onewire::codigo1921(onewire::Variante1921::G, 87.5)), 0xFF); // a threshold may be any code
        QCOMPARE(int(onewire::codigo1921(onewire::Variante1921::G, 1e300)), 0xFF);
        QCOMPARE(int(onewire::codigo1921(onewire::Variante1921::G, qQNaN())), 0);
    }

    // A second goes by; what the seven registers show, and what the decoder makes of them.
    // A button and what lies on the reader are written whole or not at all, and what was not written is still to be.
    void discoCheio() {
        const Instalacao inst(Instalacao::Base::Nenhuma);
        const simulador::Gaveta gaveta(inst.ficheiro(u"gaveta"_s));
        const auto botao = gaveta.criar(u"cais"_s, simulador::fazerRom(0x21, 5, 0), QDateTime::currentDateTimeUtc(), 0);
        QVERIFY(botao && gaveta.por({u"cais"_s}));
        botao->chip.sujo = true;
        {
            const DiscoCheio cheio(4);
            QVERIFY(!botao->guardar() && botao->chip.sujo);
            QVERIFY(!gaveta.por({u"cais"_s, u"outro"_s}));
        }
        QVERIFY(gaveta.botao(u"cais"_s));
        QCOMPARE(gaveta.noLeitor(), QStringList{u"cais"_s});
        QVERIFY(botao->guardar() && !botao->chip.sujo);
    }

    void calendario() {
        const std::tuple<QByteArray, QByteArray, QString> casos[] = {
            {hex("59592306288224"), hex("00000007298224"), u"2024-02-29 00:00:00"_s},
            {hex("59592306288223"), hex("00000007018323"), u"2023-03-01 00:00:00"_s},
            {hex("59592305311299"), hex("00000006018100"), u"2000-01-01 00:00:00"_s}, // the century goes on
            {hex("59592304319299"), hex("00000005010100"), u"1900-01-01 00:00:00"_s}, // and off
            {hex("59597107158326"), hex("00005201168326"), u"2026-03-16 00:00:00"_s}, // twelve hours: midnight
            {hex("59595107158326"), hex("00007207158326"), u"2026-03-15 12:00:00"_s}, // noon
            {hex("59597207158326"), hex("00006107158326"), u"2026-03-15 13:00:00"_s}, // one
        };
        for (const auto &[antes, depois, lido] : casos) {
            ChipDS1921 chip(BotaoDeTeste::rom(Variante::G));
            escrever(chip, 0x200, antes);
            chip.andar(1000);
            onewire::BytesDaPagina pagina{};
            for (size_t i = 0; i < 7; ++i)
                pagina[i] = chip.ler(0x200 + int(i));
            QVERIFY(std::ranges::equal(bytes(depois), std::span(pagina).first(7)));
            QCOMPARE(onewire::descodificarRegistos(pagina).relogio.toString(u"yyyy-MM-dd hh:mm:ss"), lido);
        }
    }

    // Which writes leave a mission running, and which starts are taken.
    void escritasNaMissao() {
        // Clock, no function, delay, rate; status with the mission's bit off and on; memory.
        const std::tuple<int, QByteArray, bool> casos[] = {
            {0x200, hex("00"), false}, {0x20F, hex("00"), false}, {0x213, hex("00"), false}, {0x20D, hex("05"), false},
            {0x214, hex("DF"), false}, {0x214, hex("FF"), true},  {0x0100, hex("AB"), true},
        };
        for (const auto &[endereco, valor, continua] : casos) {
            ChipDS1921 chip(BotaoDeTeste::rom(Variante::G));
            chip.iniciar(1, 0, false, 0, 50);
            chip.andar(600'000);
            escrever(chip, endereco, valor);
            QCOMPARE(chip.missao(), continua);
            QCOMPARE(int(chip.ler(0x20D)), 1); // read only until the mission has ended
            QCOMPARE(chip.contador(), 10U);    // what was counted stays
        }
    }
    void recusasCaladas() {
        // Nothing, not cleared, stopped clock, start disabled, clock not yet seen to go, rate 0.
        for (int impedimento = 0; impedimento < 6; ++impedimento) {
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
            QVERIFY2(chip.missao() == (impedimento == 0), qPrintable(QString::number(impedimento)));
        }
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
        QVERIFY(memoria.escrever(0x20E, armar));
        QVERIFY(memoria.comandar(0x3C));
        ChipDS1921 &chip = leitor.chip();
        QCOMPARE(chip.contador(), 0U);
        QCOMPARE(chip.ler(0x214) & 0x60, 0x40);
        QCOMPARE(chip.ler(0x1000), primeiro); // the log is not cleared, nor are the limits and the lifetime counter
        QVERIFY(chip.ler(0x20C) == simulador::codigoDe(Variante::G, 50) && chip.ler(0x21D) >= 10);
    }
};

QTEST_GUILESS_MAIN(TstChip)
#include "tst_chip.moc"
