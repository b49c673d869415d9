#pragma once

#include <QString>

#include <functional>
#include <optional>

namespace demonstracao {

// Where virtual units wait: loopback addresses and ports that need no privileges.
constexpr int portaWebDasUnidades = 8080;
constexpr int portaConsolaDasUnidades = 8099;

// Is this one of the units of the demonstration that can be started?
bool unidadeVirtual(QStringView endereco);

// What the channels of those units read at a moment, as the stored history does; nothing: no reading.
using Leituras = std::function<std::optional<double>(const QString &endereco, const QString &id, qint64 t)>;
Leituras leiturasDasUnidades(quint64 semente);

// The arguments of Kelvark-unidades, one a line, that give two of the demonstration's units their own sensors.
QString argumentosDasUnidades(quint64 semente);

} // namespace demonstracao
