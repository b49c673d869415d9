#include "core/eventos.h"

#include "core/falha.h"
#include "core/literais.h"

#include <QCoreApplication>

#include <ctime>

namespace {

constexpr qint64 fatiaNs = 15'000'000;

// The coarse clock costs a few nanoseconds; its grain of 1 to 4 ms is fine for a slice of 15.
qint64 agoraNs() {
    timespec t{};
    clock_gettime(CLOCK_MONOTONIC_COARSE, &t);
    return t.tv_sec * 1'000'000'000LL + t.tv_nsec;
}

qint64 &ultimaVolta() {
    thread_local qint64 instante = 0;
    return instante;
}

} // namespace

void forcarEventos() {
    QCoreApplication::processEvents();
    ultimaVolta() = agoraNs();
}

void passarEventos() {
    if (agoraNs() - ultimaVolta() >= fatiaNs)
        forcarEventos();
}

void Vigia::passar() const {
    passarEventos();
    if (!vivo())
        throw Interrompido();
}

void Vigia::forcar() const {
    forcarEventos();
    if (!vivo())
        throw Interrompido();
}
