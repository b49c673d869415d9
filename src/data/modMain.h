#pragma once

#include <QString>

// Shared routines over the database and the settings.
namespace modMain {

// Opens or reopens cnBD from the settings. A missing file gives one warning with its path, or, with `escolher`, one
// question whether to choose another. True when the connection is open.
bool carregaGlobaisBD(bool escolher = false);

// To be called about once a second: tells the user once when the open file was deleted or replaced.
void vigiarBD();

// "TRUE" only when start lies strictly before end; texts as datas::textoDataHora writes them.
QString VerificaDatas(const QString &inicio, const QString &fim);

// True when the sensor has no row or its Seleccionado differs from "SIM".
bool VerificaSeSensorEstaDesactivo(const QString &sensorId);

// Name and MAC of the unit with this address; empty texts for what is not known. The address is the unit's own,
// without the mode digit of Sensores.PoseidonIP.
void BuscarNomePoseidonPorID(const QString &ip, QString &nome, QString &mac);

// The PoseidonIP of a sensor as stored, mode digit included; empty when there is none.
QString BuscarPoseidonPorIDSensor(const QString &sensorId);

// True when any named thing of the installation bears this description.
bool VerificarSeDescricaoJaExiste(const QString &descricao);

// "base suffix", or a free "base suffix(n)" of at most 20 characters with the base shortened; only the first try may
// be longer. Empty when a thousand are taken.
QString CriarNovaDescricao(const QString &base, const QString &sufixo);

// Today's export folder, created when missing; pictures and tables share it.
QString CriarCaminhoJPG();
// The full path that a save dialog proposes for a base name: today's folder, the name, the time.
QString CriarCaminhoJPG(const QString &base);
QString CriarCaminhoCSV(const QString &base);

// The name with the time of day and the extension.
QString TratarNomeFicheiroJPG(const QString &nome);
QString TratarNomeFicheiroCSV(const QString &nome);

// Creates a folder and its parents. False, and no report, when it could not be made or was there already.
bool CriarPastas(const QString &caminho);

// A dotted IPv4 address, blanks around it allowed.
bool ValidarIP(const QString &texto);

// The default path of the database below the program's folder.
QString caminhoBDPorOmissao();

} // namespace modMain
