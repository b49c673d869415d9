#pragma once

#include <QIcon>

// Line drawings from the resources, sharp at any scale and in the text colour of the palette in force when they are
// painted. In a menu the icon of the entry under the pointer takes the colour of its text there.
namespace icones {

enum class Uso { Botao, Menu };
QIcon icone(const QString &nome, Uso uso = Uso::Botao);

} // namespace icones
