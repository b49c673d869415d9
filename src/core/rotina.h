#pragma once

#include "core/modErros.h"

#include <type_traits>

// A routine of the system: runs the body; a failure inside stops it there, is reported once under the routine's
// name and gives the default result back. The caller does not learn of it.
template <typename Corpo>
std::invoke_result_t<Corpo> Rotina(const char *fonte, Corpo &&corpo) {
    using Resultado = std::invoke_result_t<Corpo>;
    try {
        return corpo();
    } catch (...) {
        modErros::tratarExcepcaoCorrente(fonte);
    }
    if constexpr (!std::is_void_v<Resultado>)
        return Resultado{};
}
