#pragma once

#include "core/eventos.h"

#include <QList>
#include <QString>

// The devices of the installation, whatever their kind.
namespace dispositivos {

struct Dispositivo {
    QString ip;
    QString nome;
};

inline constexpr QStringView todos = u"-";

QList<Dispositivo> listar(const Vigia &vigia);

} // namespace dispositivos
