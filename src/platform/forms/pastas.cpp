#include "platform/forms/pastas.h"

#include "core/estado.h"

QString PedeCaminhoParaPasta() {
    const QString pasta = estado().ambiente.dialogos->escolherPasta(u"/"_s);
    return pasta.isEmpty() || pasta.endsWith(u'/') ? pasta : pasta + u'/';
}
