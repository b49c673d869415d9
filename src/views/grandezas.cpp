#include "views/grandezas.h"

#include <algorithm>

namespace grandezas {

bool reclamado(QStringView tipo) {
    const QStringView aparado = tipo.trimmed();
    const QChar ultima = aparado.isEmpty() ? QChar() : aparado.back();
    const auto reclama = [&](const Grandeza &g) {
        return !g.regra.oQueSobra &&
               (g.reclama == Reclama::ALetra ? g.regra.letras.contains(ultima) : tipo == g.tipoDaUnidade);
    };
    return std::ranges::any_of(tabela, reclama) ||
           std::ranges::find(regras::sensUI.unicos, tipo) != regras::sensUI.unicos.end();
}

} // namespace grandezas
