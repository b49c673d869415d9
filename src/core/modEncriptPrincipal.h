#pragma once

#include <QString>

// The cipher with the pass phrase that all installations share.
namespace modEncriptPrincipal {

QString EncriptarString(const QString &texto);
// The empty text for a damaged value.
QString DesencriptarString(const QString &hexadecimal);

} // namespace modEncriptPrincipal
