#pragma once

// The plotting library's header is written with Qt's short keywords, which the rest of the system goes without.
#include <QObject>

#define signals Q_SIGNALS
#define slots Q_SLOTS
#define foreach(variable, container) for (variable : container)
#include <qcustomplot.h>
#undef signals
#undef slots
#undef foreach
