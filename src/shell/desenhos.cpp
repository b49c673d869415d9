#include "shell/desenhos.h"

#include <QtGlobal>

// The macro must stand outside any namespace.
void juntarDesenhos() {
    Q_INIT_RESOURCE(icones);
}
