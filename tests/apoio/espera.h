#pragma once

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

// Lets everything happen that timers of less than ms bring, however slow the machine: they end in their order, and this
// one is the last.
inline void deixarPassar(int ms) {
    QEventLoop volta;
    QTimer::singleShot(ms, Qt::PreciseTimer, &volta, &QEventLoop::quit);
    volta.exec();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}
