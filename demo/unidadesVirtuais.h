#pragma once

#include <QString>

namespace demonstracao {

// Where virtual units wait: loopback addresses and ports that need no privileges.
constexpr int portaWebDasUnidades = 8080;
constexpr int portaConsolaDasUnidades = 8099;

// Is this one of the units of the demonstration that can be started?
bool unidadeVirtual(QStringView endereco);

// The arguments of Kelvark-unidades, one a line, that give two of the demonstration's units their own sensors.
QString argumentosDasUnidades(quint64 semente);

} // namespace demonstracao
