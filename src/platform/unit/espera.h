#pragma once

#include <QElapsedTimer>
#include <QEventLoop>
#include <QObject>

#include <functional>

// Waits of routines on the interface thread: the event loop turns meanwhile, without spinning. Both throw
// Interrompido when the owner has gone.
namespace espera {

void pausar(QObject *dono, int ms);
// True as soon as the condition holds; it is looked at after every turn of the loop.
bool ate(QObject *dono, int ms, const std::function<bool()> &condicao);

} // namespace espera
