#include "core/modEncriptPrincipal.h"

#include "core/CRijndael.h"
#include "core/literais.h"
#include "core/rotina.h"

namespace {
const QString frase = u"keyQ7"_s;
}

namespace modEncriptPrincipal {

QString EncriptarString(const QString &texto) {
    return Rotina("modEncriptPrincipal.EncriptarString", [&] { return CRijndael().JustCrypter(texto, frase); });
}

QString DesencriptarString(const QString &hexadecimal) {
    return Rotina("modEncriptPrincipal.DesencriptarString",
                  [&] { return CRijndael().JustDécrypter(hexadecimal, frase); });
}

} // namespace modEncriptPrincipal
