#include "platform/onewire/tmex.h"

#include "core/falha.h"
#include "platform/onewire/barramento.h"
#include "platform/onewire/memoria1921.h"
#include "platform/onewire/pesquisaRom.h"
#include "platform/onewire/registos1921.h"
#include "platform/onewire/sessao.h"

#include <algorithm>
#include <cstring>

using namespace onewire;

namespace tmex {

namespace {

constexpr qint16 sessaoInvalida = -200;
constexpr qint16 semDispositivo = -1;
constexpr qint16 erroDoAdaptador = -2;
constexpr int maximoDoPacote = 29;

// Where a search stands, in the caller's buffer. Zeros are a search of every family that has not begun.
struct Procura {
    qint32 sessao = 0; // whose transport goes on with it
    quint8 familia = 0;
    quint8 encontrou = 0; // rom holds a device
    Rom rom{};
};
static_assert(sizeof(Procura) <= std::tuple_size_v<BufferEstado>);

Procura ler(const BufferEstado &estado) {
    Procura p;
    std::memcpy(&p, estado.data(), sizeof p);
    return p;
}

void guardar(BufferEstado &estado, const Procura &p) {
    std::memcpy(estado.data(), &p, sizeof p);
}

// One operation on the open session. An adapter that has gone is a negative result; a user that has gone ends the
// session with the operation.
template <typename Corpo>
qint16 operacao(Sessao sessao, Corpo &&corpo) {
    const EmUso uso;
    Barramento &b = barramento();
    if (!uso || sessao <= 0 || sessao != b.sessao || !b.transporte)
        return sessaoInvalida;
    try {
        passar();
        return corpo(*b.transporte);
    } catch (const Falha &) {
        anotar(Causa::AdaptadorFora);
        return erroDoAdaptador;
    } catch (...) {
        fecharSessao();
        throw;
    }
}

std::optional<Rom> escolhido(const BufferEstado &estado) {
    const Procura p = ler(estado);
    return p.encontrou ? std::optional(p.rom) : std::nullopt;
}

// A search that another session began goes on behind the device it found last.
std::optional<Rom> proximo(Transporte &t, Procura &p, Sessao sessao) {
    if (p.encontrou && p.sessao == sessao)
        return t.procurar(p.familia, false);
    p.sessao = sessao;
    auto rom = t.procurar(p.familia, true);
    while (rom && p.encontrou && !antes(p.rom, *rom))
        rom = t.procurar(p.familia, false);
    return rom;
}

} // namespace

Sessao TMExtendedStartSession(qint16 porto, qint16 tipo, const void *) {
    const EmUso uso;
    return uso ? abrirSessao(porto, tipo) : Sessao(sessaoInvalida);
}

qint16 TMSetup(Sessao sessao) {
    return operacao(sessao, [](Transporte &t) {
        const bool valido = t.valido();
        if (!valido)
            anotar(Causa::AdaptadorFora);
        return qint16(valido);
    });
}

qint16 TMEndSession(Sessao sessao) {
    const EmUso uso;
    if (!uso || sessao <= 0 || sessao != barramento().sessao)
        return sessaoInvalida;
    fecharSessao();
    return 1;
}

qint16 TMClose(Sessao sessao) {
    return TMEndSession(sessao);
}

qint16 TMValidSession(Sessao sessao) {
    return operacao(sessao, [](Transporte &) { return qint16(1); });
}

qint16 TMTouchReset(Sessao sessao) {
    return operacao(sessao, [](Transporte &t) { return qint16(t.reset()); });
}

qint16 TMFamilySearchSetup(Sessao sessao, BufferEstado &estado, qint16 familia) {
    return operacao(sessao, [&](Transporte &) {
        Procura p;
        p.familia = quint8(familia);
        guardar(estado, p);
        return qint16(1);
    });
}

qint16 TMNext(Sessao sessao, BufferEstado &estado) {
    return operacao(sessao, [&](Transporte &t) {
        Procura p = ler(estado);
        const auto procurar = [&] { return proximo(t, p, sessao); };
        const auto rom = p.familia && !p.encontrou ? insistir(t, p.familia, procurar) : procurar();
        p.encontrou = rom.has_value(); // behind the last one a search begins again
        p.rom = rom.value_or(Rom{});
        guardar(estado, p);
        return qint16(rom.has_value());
    });
}

qint16 TMRom(Sessao sessao, BufferEstado &estado, NumeroROM &numero) {
    return operacao(sessao, [&](Transporte &) {
        const auto rom = escolhido(estado);
        if (!rom)
            return semDispositivo;
        std::copy(rom->begin(), rom->end(), numero.begin());
        return qint16(1);
    });
}

qint16 TMExtendedReadPage(Sessao sessao, BufferEstado &estado, qint16 pagina, Pagina &destino, qint16) {
    return operacao(sessao, [&](Transporte &t) {
        const auto rom = escolhido(estado);
        const auto lida = rom && pagina >= 0 ? Memoria1921(t, *rom).lerPagina(pagina) : std::nullopt;
        if (!lida)
            return semDispositivo;
        destino.fill(0);
        std::copy(lida->begin(), lida->end(), destino.begin());
        return qint16(bytesDaPagina);
    });
}

qint16 TMReadPacket(Sessao sessao, BufferEstado &estado, qint16 pagina, Pacote &destino, qint16 maximo) {
    return operacao(sessao, [&](Transporte &t) {
        const auto rom = escolhido(estado);
        const auto lida = rom && pagina >= 0 ? Memoria1921(t, *rom).lerPagina(pagina) : std::nullopt;
        if (!lida)
            return semDispositivo;
        const size_t lugar = size_t(std::clamp<int>(maximo, 0, maximoDoPacote));
        Pacote dados{};
        const int tamanho = lerPacote(*lida, pagina, dados);
        if (tamanho < 0 || size_t(tamanho) > lugar)
            return SemPacote;
        destino = dados;
        return qint16(tamanho);
    });
}

qint16 TMWritePacket(Sessao sessao, BufferEstado &estado, qint16 pagina, std::span<const quint8> dados) {
    return operacao(sessao, [&](Transporte &t) {
        const auto rom = escolhido(estado);
        if (!rom || pagina < 0 || pagina >= registo::pagina || dados.size() > maximoDoPacote)
            return semDispositivo;
        const QByteArray pacote = fazerPacote(dados, pagina);
        const std::span bytes(reinterpret_cast<const quint8 *>(pacote.constData()), size_t(pacote.size()));
        Memoria1921 memoria(t, *rom);
        if (!memoria.escrever(pagina * bytesDaPagina, bytes))
            return semDispositivo;
        const auto lida = memoria.lerPagina(pagina);
        if (!lida || !std::equal(bytes.begin(), bytes.end(), lida->begin()))
            return semDispositivo;
        return qint16(std::max<size_t>(dados.size(), 1)); // an empty packet was written too
    });
}

} // namespace tmex
