#pragma once

#include <QString>

// Shared routines over the database and the settings.
namespace modMain {

// Opens or reopens cnBD from the settings; a missing file gives one warning. True when the connection is open.
bool carregaGlobaisBD();

// "TRUE" only when start lies strictly before end; texts as datas::textoDataHora writes them.
QString VerificaDatas(const QString &inicio, const QString &fim);

// True when the sensor has no row or its Seleccionado differs from "SIM".
bool VerificaSeSensorEstaDesactivo(const QString &sensorId);

// The default path of the database below the program's folder.
QString caminhoBDPorOmissao();

} // namespace modMain
