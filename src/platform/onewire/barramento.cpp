#include "platform/onewire/barramento.h"

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

} // namespace onewire
