#pragma once

#include <QDateTime>
#include <QString>

#include <optional>

// The note that a user attaches to one stored reading, found by its exact second.
namespace notas {

// What flag holds ("" for Null); nothing when there is no such reading.
std::optional<QString> ler(QStringView tabela, const QDateTime &data, const QString &sensor);
// Changes one reading at most; false when there is none.
bool gravar(QStringView tabela, const QDateTime &data, const QString &sensor, const QString &nota);

// What is stored for a text of the user's: trimmed, and one blank for nothing.
QString paraGuardar(const QString &texto);
// What is shown of a stored note.
QString paraMostrar(const QString &flag);

} // namespace notas
