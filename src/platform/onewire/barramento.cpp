#include "platform/onewire/barramento.h"

#include "core/espera.h"
#include "platform/onewire/portos.h"

#include <utility>

namespace onewire {

Barramento &barramento() {
    auto &servico = estado().onewire;
    if (!servico) {
        auto novo = std::make_unique<Barramento>();
        novo->abrir = abrirPorto;
        servico = std::move(novo);
    }
    return static_cast<Barramento &>(*servico);
}

ComPassagem::ComPassagem(std::function<void()> passar)
    : m_anterior(std::exchange(barramento().passar, std::move(passar))) {}

ComPassagem::~ComPassagem() {
    barramento().passar = std::move(m_anterior);
}

void passar() {
    // A copy: what runs may put another one in its place.
    if (const auto correr = barramento().passar)
        correr();
}

void esperar(int ms) {
    esperarAte(ms, [] { return false; });
}

bool esperarAte(int ms, const std::function<bool()> &condicao) {
    return espera::ate(passar, ms, condicao);
}

} // namespace onewire
