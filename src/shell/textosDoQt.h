#pragma once

#include <QString>

// The texts that come with Qt (buttons of message boxes, file and folder pickers), in the language of the interface.
namespace textosDoQt {

void aplicar(const QString &lingua);

} // namespace textosDoQt
