#include "platform/onewire/espera.h"

#include "platform/onewire/barramento.h"

#include <QElapsedTimer>
#include <QThread>

#include <algorithm>

namespace onewire {

namespace {
constexpr int fatia = 10; // ms between two passes
}

void passar() {
    // A copy: what runs may put another one in its place.
    if (const auto correr = barramento().passar)
        correr();
}

void esperar(int ms) {
    esperarAte(ms, [] { return false; });
}

bool esperarAte(int ms, const std::function<bool()> &condicao) {
    QElapsedTimer relogio;
    relogio.start();
    for (;;) {
        passar();
        if (condicao())
            return true;
        const qint64 resta = ms - relogio.elapsed();
        if (resta <= 0)
            return false;
        QThread::msleep(unsigned(std::min<qint64>(resta, fatia)));
    }
}

} // namespace onewire
