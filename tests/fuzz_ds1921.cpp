#include "core/literais.h"
#include "logger/numeros1921.h"
#include "logger/registoDS1921.h"
#include "platform/onewire/registos1921.h"
#include "simulator/botao/chip.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>

// Random bytes through everything that reads what a button sends. Under the sanitizers any slip ends the program; the
// same start gives the same run. Argument: rounds.
namespace {

std::mt19937 acaso(1921);
int ronda = 0;

void exigir(bool certo, const char *oque) {
    if (certo)
        return;
    std::fprintf(stderr, "round %d: %s\n", ronda, oque);
    std::exit(1);
}

quint8 byte() {
    return quint8(acaso());
}

void registos(const onewire::BytesDaPagina &pagina) {
    const auto r = onewire::descodificarRegistos(pagina);
    const auto entradas = onewire::entradasDoLog(r);
    exigir(entradas.size() <= 2048, "too many samples");
    exigir(entradas.empty() || r.carimbo.isValid(), "samples without a start");
    for (size_t i = 0; i < entradas.size(); i += 101)
        exigir(entradas[i].indice >= 0 && entradas[i].indice < 2048 && entradas[i].data.isValid(), "entry");
    exigir(!r.carimbo.isValid() || !r.relogio.isValid() || r.carimbo <= r.relogio, "stamp in the future");
    if (!r.relogio.isValid())
        return;
    const auto de_volta = onewire::codificarRelogio(r.relogio);
    onewire::BytesDaPagina outra{};
    std::copy(de_volta.begin(), de_volta.end(), outra.begin());
    exigir(onewire::descodificarRegistos(outra).relogio == r.relogio, "clock is not the same again");
}

void pacotes(std::span<const quint8> pagina) {
    const int numero = int(acaso() % 16);
    std::array<quint8, 30> dados{};
    exigir(onewire::lerPacote(pagina.first(acaso() % 33), numero, dados) <= 29, "packet too long");
    const size_t tamanho = acaso() % 30;
    const QByteArray pacote = onewire::fazerPacote(pagina.first(tamanho), numero);
    const auto bytes = std::span(reinterpret_cast<const quint8 *>(pacote.constData()), size_t(pacote.size()));
    exigir(onewire::lerPacote(bytes, numero, dados) == int(tamanho), "packet is not read again");
    onewire::paginaComCrc(pagina.first(acaso() % 33), int(acaso() % 0x2000));
}

// Any bytes written to the chip leave one that ticks.
void escritas(std::span<const quint8> pagina) {
    simulador::ChipDS1921 chip(onewire::Rom{0x21, byte(), byte(), byte(), byte(), byte(), byte(), byte()});
    for (int i = 0; i < 8; ++i) {
        const int inicio = int(acaso() % 32);
        chip.copiar(0x200 + inicio, pagina.first(1 + acaso() % size_t(32 - inicio)));
        chip.andar(qint64(acaso() % 10'000'000));
        exigir((chip.ler(0x205) & 0x1F) != 0 && chip.ler(0x204) != 0, "clock without a date");
    }
}

// What a read of the six pages gives back, near a real record, so that every field is reached.
void registo(QByteArray bytes, int (&aceites)[2]) {
    for (unsigned mudados = acaso() % 6; mudados > 0; --mudados)
        bytes[qsizetype(acaso() % size_t(bytes.size()))] = char(acaso());
    if (ronda % 3 == 0)
        bytes.truncate(qsizetype(acaso() % size_t(bytes.size() + 1)));
    const auto r = registoDS1921::decifrar(QString::fromLatin1(bytes), u"D63B2000FBC52B21"_s);
    if (!r)
        return;
    ++aceites[r->VersaoAntiga];
    const int intervalo = r->intervalo.toInt();
    exigir(!r->TextoMissao.isEmpty() && !r->descricaoRegistador.isEmpty(), "a name is empty");
    exigir(intervalo >= 1 && intervalo <= numeros1921::maiorIntervalo, "interval");
    exigir(std::isfinite(r->Calibracao), "calibration");
}

} // namespace

int main(int argc, char **argv) {
    const int rondas = argc > 1 ? std::atoi(argv[1]) : 200'000;
    const QByteArray certos[] = {QByteArray("0001abc\nnome\nD63B2000FBC52B\x02") +
                                     QByteArray("2115\n-0,5\n").leftJustified(150, '\0'),
                                 QByteArray("0012Lota").leftJustified(30) + QByteArray("Pescado").leftJustified(30) +
                                     QByteArray(30, ' ') + QByteArray("0,5").leftJustified(30)};
    int aceites[] = {0, 0};
    for (ronda = 0; ronda < rondas; ++ronda) {
        onewire::BytesDaPagina pagina;
        // Half of the pages are nearly right, so that the decoders get past their first check.
        for (quint8 &b : pagina)
            b = ronda % 2 ? byte() : simulador::paraBcd(int(acaso() % 100));
        if (ronda % 3 == 0)
            pagina[0x18] = quint8(1 + acaso() % 9);
        registos(pagina);
        pacotes(pagina);
        if (ronda % 50 == 0)
            escritas(pagina);
        registo(certos[ronda % 2], aceites);
    }
    exigir(rondas < 1000 || (aceites[0] > 0 && aceites[1] > 0), "no record was accepted");
    std::printf("%d rounds, %d new and %d old records accepted\n", rondas, aceites[0], aceites[1]);
    return 0;
}
