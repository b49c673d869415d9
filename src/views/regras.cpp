#include "views/regras.h"

#include "views/grandezas.h"

#include <algorithm>

bool RegraTipo::aceita(QStringView tipo) const {
    const QStringView aparado = tipo.trimmed();
    if (!aparado.isEmpty() && letras.contains(aparado.back()))
        return true;
    if (std::ranges::any_of(unicos, [tipo](QStringView unico) {
            return !unico.isEmpty() && tipo.compare(unico, Qt::CaseInsensitive) == 0;
        }))
        return true;
    return oQueSobra && !grandezas::reclamado(tipo);
}
