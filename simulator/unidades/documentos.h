#pragma once

#include "simulator/unidades/registo.h"

namespace simulador {

// What a unit publishes over HTTP.
struct Portas {
    quint16 web = 0;
    quint16 consola = 0;
};
QByteArray setupXml(const Definicao &definicao, const Registo &registo, const Portas &portas);
QByteArray pagina(const Definicao &definicao, const Registo &registo);

} // namespace simulador
