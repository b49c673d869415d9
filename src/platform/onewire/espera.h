#pragma once

#include <functional>

namespace onewire {

// Waits of the bus: Barramento::passar runs meanwhile, so windows stay painted and the user can go away.
void passar();
void esperar(int ms);
// True as soon as the condition holds; looked at every few milliseconds.
bool esperarAte(int ms, const std::function<bool()> &condicao);

} // namespace onewire
