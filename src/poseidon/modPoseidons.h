#pragma once

#include <QString>

// The address of a unit is free text: a dotted number or a host name, with or without "http://", a port and a
// trailing "/". These routines make of it what each use needs.
namespace modPoseidons {

constexpr quint16 portaPorOmissao = 80;

quint16 TratarPortaDoEndereco(const QString &endereco);
QString TratarEndereco(const QString &endereco, bool comHTTP);
QString TratarEnderecoComPorta(const QString &endereco, bool comHTTP, quint16 porta);
QString TratarEnderecoHTTP(const QString &endereco);

// Only digits and ".", with three "." in it.
bool EnderecoENumerico(const QString &texto);
// The text before the first ":".
QString TratarIP(const QString &ip);
// Without ":" and the port, wherever they stand.
QString TratarEnderecoRemoto(const QString &endereco, quint16 porta);
// Where a unit publishes its configuration; the port is told apart.
QString enderecoDoSetup(const QString &endereco);

// "SIM" selects a sensor, any other text drops it.
void AlterarEstadoSensorNaBD(const QString &sensorID, const QString &estado);

} // namespace modPoseidons

namespace modNetworkStatus {
// Has the workstation a network at all?
bool NetworkIsAlive();
} // namespace modNetworkStatus
