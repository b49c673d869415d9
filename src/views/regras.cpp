#include "views/regras.h"

#include <algorithm>

bool RegraTipo::aceita(QStringView tipo) const {
    if (!unicos.front().isEmpty())
        return std::any_of(unicos.begin(), unicos.end(),
                           [tipo](QStringView unico) { return tipo.compare(unico, Qt::CaseInsensitive) == 0; });
    const QStringView aparado = tipo.trimmed();
    const char16_t ultima = aparado.isEmpty() ? u'\0' : aparado.back().unicode();
    if ((ultima == letra) == contraria)
        return false;
    for (const QStringView &excluido : excluidos)
        if (!excluido.isEmpty() && tipo == excluido)
            return false;
    return true;
}
