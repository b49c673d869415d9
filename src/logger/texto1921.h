#pragma once

#include "core/literais.h"
#include "core/modTraducoes.h"

// A text of the button's form.
inline QString texto1921(const QString &chave, const QString &omissao) {
    return modTraducoes::texto(u"DSfrmDS1921"_s, chave, omissao);
}
