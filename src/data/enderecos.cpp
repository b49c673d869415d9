#include "data/modMain.h"

#include "core/literais.h"

#include <QStringList>

#include <algorithm>

namespace modMain {

bool ValidarIP(const QString &texto) {
    const QStringList partes = texto.trimmed().split(u'.');
    return partes.size() == 4 && std::all_of(partes.begin(), partes.end(), [](const QString &parte) {
               const bool soDigitos =
                   std::all_of(parte.begin(), parte.end(), [](QChar c) { return c >= u'0' && c <= u'9'; });
               bool numero = false;
               return soDigitos && parte.toInt(&numero) <= 255 && numero;
           });
}

} // namespace modMain
