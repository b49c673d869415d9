#pragma once

#include "core/estadoDoPonto.h"
#include "views/limites.h"

#include <optional>

// Why something is red or blue: the rules of the installations, side by side, since they differ. To stand on a limit is
// an alarm in all of them.
namespace alarme {

// A stored reading, by the limits in force when it was stored. The maximum is tested first: it wins where limits cross.
constexpr EstadoDoPonto daLeitura(const Limites &limites, double valor) {
    if (limites.maximo <= valor) // no comparison with a limit that is none holds
        return EstadoDoPonto::Acima;
    return limites.minimo >= valor ? EstadoDoPonto::Abaixo : EstadoDoPonto::Normal;
}

// A bar of a histogram, by its lower bound and the limits of the first reading stored. The minimum is tested first.
// None where only a minimum is set and the bar stands above it: such a bar is neither drawn nor counted, as it always
// was.
constexpr std::optional<EstadoDoPonto> doBalde(const Limites &limites, double baixo) {
    if (limites.minimo >= baixo)
        return EstadoDoPonto::Abaixo;
    if (limites.temMinimo() && !limites.temMaximo())
        return std::nullopt;
    return limites.maximo <= baixo ? EstadoDoPonto::Acima : EstadoDoPonto::Normal;
}

// A sample of a logger button as it was read, by the limits that its mission has throughout. The minimum is tested
// first. Once stored, the limits stand beside the sample, and it is a reading like others. (What counts as a run of
// alarms is told by SequenciasAlarme, each limit on its own.)
constexpr EstadoDoPonto daAmostra(double maximo, double minimo, double valor) {
    if (valor <= minimo)
        return EstadoDoPonto::Abaixo;
    return valor >= maximo ? EstadoDoPonto::Acima : EstadoDoPonto::Normal;
}

} // namespace alarme
