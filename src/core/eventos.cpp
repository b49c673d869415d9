#include "core/eventos.h"

#include "core/estado.h"
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

int &profundidade() {
    thread_local int voltas = 0;
    return voltas;
}

} // namespace

int profundidadeDosEventos() {
    return profundidade();
}

void correrEventos(bool adormecer) {
    struct Volta {
        Volta() { ++profundidade(); }
        ~Volta() { --profundidade(); }
    };
    const Volta volta;
    QCoreApplication::processEvents(adormecer ? QEventLoop::WaitForMoreEvents : QEventLoop::AllEvents);
}

void forcarEventos() {
    correrEventos();
    ultimaVolta() = agoraNs();
}

void passarEventos() {
    if (const int linhas = estado().linhasPorFatia; linhas > 0) {
        thread_local int passadas = 0;
        if (++passadas % linhas == 0)
            forcarEventos();
    } else if (agoraNs() - ultimaVolta() >= fatiaNs)
        forcarEventos();
}

Fatia::Fatia(int ms) : m_fim(agoraNs() + ms * 1'000'000LL), m_restam(estado().linhasPorFatia) {}

bool Fatia::gasta(int linhas) {
    if (estado().linhasPorFatia <= 0)
        return agoraNs() >= m_fim;
    m_restam -= linhas;
    return m_restam < 0;
}

Vigia::Vigia(QObject *dono) : m_dono(dono), m_entreOlhares(estado().linhasPorFatia > 0 ? 0 : 31) {}

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
