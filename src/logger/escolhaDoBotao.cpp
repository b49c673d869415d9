#include "logger/escolhaDoBotao.h"

#include "core/literais.h"
#include "logger/controloDS1921.h"
#include "platform/onewire/barramento.h"

#include <memory>

namespace escolhaDoBotao {

namespace {

std::vector<Botao> procurarTodos(tmex::Sessao sessao) {
    std::vector<Botao> botoes;
    const auto estado = std::make_unique<tmex::BufferEstado>();
    if (tmex::TMFamilySearchSetup(sessao, *estado, ControloDS1921::FamiliaDS1921) != 1)
        return botoes;
    while (tmex::TMNext(sessao, *estado) == 1) {
        tmex::NumeroROM numero{};
        tmex::TMRom(sessao, *estado, numero);
        Botao &b = botoes.emplace_back();
        std::copy(numero.begin(), numero.end(), b.rom.begin());
        b.ROMID = registoDS1921::ROMIDde(numero);
    }
    return botoes;
}

QString descricaoDe(MemoriaDS1921 &memoria, tmex::Sessao sessao) {
    const auto leitura = memoria.FindFirstFamily(sessao, ControloDS1921::FamiliaDS1921);
    if (leitura.achado != MemoriaDS1921::Achado::Lido)
        return {};
    const registoDS1921::Registo &r = leitura.registo;
    if (r.NumeroMissaoActual == 0) // never programmed
        return {};
    return u"%1, %2 %3"_s.arg(r.descricaoRegistador, r.numeroMissao, r.TextoMissao);
}

} // namespace

std::optional<onewire::Rom> escolhido() {
    return onewire::barramento().escolhido;
}

void escolher(const std::optional<onewire::Rom> &rom) {
    onewire::barramento().escolhido = rom;
}

std::vector<Botao> noLeitor(SessaoTMEX::Porto porto) {
    const SessaoTMEX sessao(porto);
    std::vector<Botao> botoes = sessao.preparar() ? procurarTodos(sessao.numero()) : std::vector<Botao>();
    if (botoes.size() < 2)
        return botoes;
    const auto antes = escolhido();
    const auto memoria = std::make_unique<MemoriaDS1921>();
    for (Botao &b : botoes) {
        escolher(b.rom);
        b.descricao = descricaoDe(*memoria, sessao.numero());
    }
    escolher(antes);
    return botoes;
}

} // namespace escolhaDoBotao
