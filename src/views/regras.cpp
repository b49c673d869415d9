#include "views/regras.h"

bool RegraTipo::aceita(QStringView tipo) const {
    const QStringView aparado = tipo.trimmed();
    const char16_t ultima = aparado.isEmpty() ? u'\0' : aparado.back().unicode();
    if ((ultima == letra) == contraria)
        return false;
    for (const QStringView &excluido : excluidos)
        if (!excluido.isEmpty() && tipo == excluido)
            return false;
    return true;
}
