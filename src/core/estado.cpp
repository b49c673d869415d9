#include "core/estado.h"

#include "core/perfil.h"

namespace {
std::unique_ptr<Estado> &guardado() {
    static auto unico = std::make_unique<Estado>();
    return unico;
}
} // namespace

Ambiente::Ambiente()
    : agora([] {
          const QDateTime local = QDateTime::currentDateTime();
          return QDateTime(local.date(), local.time(), Qt::UTC);
      }),
      redeLigada([] { return true; }), locale(QLocale::system()) {}

Estado &estado() {
    return *guardado();
}

void renovarEstado() {
    guardado() = std::make_unique<Estado>();
}
