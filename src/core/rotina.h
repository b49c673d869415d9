#pragma once

#include "core/modErros.h"

#include <QByteArray>
#include <QStringView>

#include <type_traits>
#include <utility>

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

inline QByteArray fonteDeErros(QStringView form, const char *rotina) {
    return form.toUtf8() + '.' + rotina;
}

// The same of a form that goes by several names. The body may take the form away, and its name with it.
template <typename Corpo>
std::invoke_result_t<Corpo> Rotina(QStringView form, const char *rotina, Corpo &&corpo) {
    const QByteArray fonte = fonteDeErros(form, rotina);
    return Rotina(fonte.constData(), std::forward<Corpo>(corpo));
}
