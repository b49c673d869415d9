#pragma once

#include <QIcon>

class QPalette;

// Line drawings from the resources, in the text colour of a palette and sharp at any scale.
namespace icones {
QIcon icone(const QString &nome, const QPalette &paleta);
}
