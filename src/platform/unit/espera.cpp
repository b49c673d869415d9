#include "platform/unit/espera.h"

#include "core/falha.h"

#include <QCoreApplication>
#include <QPointer>
#include <QTimer>

namespace espera {

bool ate(QObject *dono, int ms, const std::function<bool()> &condicao) {
    const QPointer<QObject> vivo(dono);
    QElapsedTimer relogio;
    relogio.start();
    QTimer acordar; // the loop sleeps; something has to end its sleep in time
    acordar.setTimerType(Qt::PreciseTimer);
    acordar.setSingleShot(true);
    acordar.start(ms);
    while (!condicao()) {
        if (relogio.elapsed() >= ms)
            return false;
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        if (!vivo)
            throw Interrompido();
        if (!acordar.isActive() && relogio.elapsed() < ms)
            acordar.start(int(ms - relogio.elapsed()));
    }
    return true;
}

void pausar(QObject *dono, int ms) {
    ate(dono, ms, [] { return false; });
}

} // namespace espera
