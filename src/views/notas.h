#pragma once

#include "views/escolha.h"

#include <QDateTime>
#include <QString>

#include <optional>

// The note that a user attaches to one stored row, found by its exact second.
namespace notas {

// Where it stands.
struct Lugar {
    QStringView tabela;
    QStringView colunaData = u"Data";
    ColunasChave colunas{u"Sensor"};
    QStringList chave;
    QDateTime data;
};

// What flag holds ("" for Null); nothing when there is no such row.
std::optional<QString> ler(const Lugar &lugar);
// Changes one row at most; false when there is none.
bool gravar(const Lugar &lugar, const QString &nota);

// What is stored for a text of the user's: trimmed, and one blank for nothing.
QString paraGuardar(const QString &texto);
// What is shown of a stored note.
QString paraMostrar(const QString &flag);

} // namespace notas
