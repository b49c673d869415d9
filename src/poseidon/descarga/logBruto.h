#pragma once

#include <QString>

#include <functional>

class PosLog;

// The lines of a unit exactly as they came, in a file of their own, so that nothing is lost with the unit's memory.
namespace logBruto {

// Below the settings folder: Logs2251/<year>/<month>/<address>_<port> <date> <time>.log
QString pasta();

// Returns the file's path once its bytes are on the disk; throws Falha. <passar> lets events run and may throw.
QString gravar(const PosLog &log, const QString &ip, qint32 porta, const std::function<void()> &passar);

// True for a log that lies here already, and need not be kept again.
bool guardado(const QString &caminho);

// The newest file of replaced readings of a unit; empty when there is none.
QString ultimasSubstituidas(const QString &ip, qint32 porta);

} // namespace logBruto
