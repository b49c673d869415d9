#include "core/espera.h"

#include "core/eventos.h"
#include "core/falha.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QThread>
#include <QTimer>

#include <algorithm>

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
        correrEventos(true);
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

bool ate(const std::function<void()> &passar, int ms, const std::function<bool()> &condicao) {
    constexpr qint64 fatia = 10; // ms between two looks
    QElapsedTimer relogio;
    relogio.start();
    for (;;) {
        if (passar)
            passar();
        if (condicao())
            return true;
        const qint64 resta = ms - relogio.elapsed();
        if (resta <= 0)
            return false;
        QThread::msleep(unsigned(std::min(resta, fatia)));
    }
}

} // namespace espera
