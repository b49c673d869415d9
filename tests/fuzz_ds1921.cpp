#include "platform/onewire/registos1921.h"
#include "simulator/botao/chip.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>

// Random bytes through everything that reads what a button sends. Under the sanitizers any slip ends the program; the
// same start gives the same run. Argument: rounds.
namespace {

void exigir(bool certo, const char *oque, int ronda) {
    if (certo)
        return;
    std::fprintf(stderr, "round %d: %s\n", ronda, oque);
    std::exit(1);
}

} // namespace

int main(int argc, char **argv) {
    const int rondas = argc > 1 ? std::atoi(argv[1]) : 200'000;
    std::mt19937 acaso(1921);
    const auto byte = [&] { return quint8(acaso()); };
    for (int ronda = 0; ronda < rondas; ++ronda) {
        onewire::BytesDaPagina pagina;
        // Half of the pages are nearly right, so that the decoders get past their first check.
        for (quint8 &b : pagina)
            b = ronda % 2 ? byte() : simulador::paraBcd(int(acaso() % 100));
        if (ronda % 3 == 0)
            pagina[0x18] = quint8(1 + acaso() % 9);

        const auto r = onewire::descodificarRegistos(pagina);
        const auto entradas = onewire::entradasDoLog(r);
        exigir(entradas.size() <= 2048, "too many samples", ronda);
        exigir(entradas.empty() || r.carimbo.isValid(), "samples without a start", ronda);
        for (size_t i = 0; i < entradas.size(); i += 101)
            exigir(entradas[i].indice >= 0 && entradas[i].indice < 2048 && entradas[i].data.isValid(), "entry", ronda);
        exigir(!r.carimbo.isValid() || !r.relogio.isValid() || r.carimbo <= r.relogio, "stamp in the future", ronda);
        if (r.relogio.isValid()) {
            const auto de_volta = onewire::codificarRelogio(r.relogio);
            onewire::BytesDaPagina outra{};
            std::copy(de_volta.begin(), de_volta.end(), outra.begin());
            exigir(onewire::descodificarRegistos(outra).relogio == r.relogio, "clock is not the same again", ronda);
        }

        const int numero = int(acaso() % 16);
        std::array<quint8, 30> dados{};
        const std::span folha = std::span(pagina).first(acaso() % 33);
        exigir(onewire::lerPacote(folha, numero, dados) <= 29, "packet too long", ronda);
        const size_t tamanho = acaso() % 30;
        QByteArray pacote = onewire::fazerPacote(std::span(pagina).first(tamanho), numero);
        const auto bytes = std::span(reinterpret_cast<const quint8 *>(pacote.constData()), size_t(pacote.size()));
        exigir(onewire::lerPacote(bytes, numero, dados) == int(tamanho), "packet is not read again", ronda);
        onewire::paginaComCrc(std::span(pagina).first(acaso() % 33), int(acaso() % 0x2000));

        for (auto v : {onewire::Variante1921::G, onewire::Variante1921::H, onewire::Variante1921::Z}) {
            const quint8 codigo = byte();
            exigir(onewire::codigo1921(v, onewire::graus1921(v, codigo)) == codigo, "code", ronda);
        }
        onewire::codigo1921(onewire::Variante1921::G, ronda % 5 ? std::ldexp(1.0, int(acaso() % 2000) - 1000) : NAN);

        if (ronda % 50 == 0) { // any bytes written to the chip leave one that ticks
            simulador::ChipDS1921 chip(onewire::Rom{0x21, byte(), byte(), byte(), byte(), byte(), byte(), byte()});
            for (int i = 0; i < 8; ++i) {
                const int inicio = int(acaso() % 32);
                const size_t quantos = 1 + acaso() % size_t(32 - inicio);
                chip.copiar(0x200 + inicio, std::span(pagina).first(quantos));
                chip.andar(qint64(acaso() % 10'000'000));
                exigir((chip.ler(0x205) & 0x1F) != 0 && chip.ler(0x204) != 0, "clock without a date", ronda);
            }
        }
    }
    std::printf("%d rounds\n", rondas);
    return 0;
}
