#pragma once

#include <QObject>

#include <functional>

// Waits of routines on the interface thread.
namespace espera {

// The event loop turns meanwhile, without spinning; Interrompido when the owner has gone. True as soon as the condition
// holds, which is looked at after every turn of the loop.
bool ate(QObject *dono, int ms, const std::function<bool()> &condicao);
void pausar(QObject *dono, int ms);

// For what no event tells: <passar> runs and the condition is looked at every few milliseconds. <passar> may be empty,
// and may end the wait by throwing.
bool ate(const std::function<void()> &passar, int ms, const std::function<bool()> &condicao);

} // namespace espera
