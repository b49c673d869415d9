#pragma once

#include "views/escolha.h"

#include <QDateTime>
#include <QString>
#include <QVariant>

#include <functional>
#include <optional>

class Recordset;

// The note that a user attaches to one stored row.
namespace notas {

// Where the row of a point is looked for, by its exact second.
struct Lugar {
    QStringView tabela;
    QStringView colunaData = u"Data";
    ColunasChave colunas{u"Sensor"};
    QStringList chave;
    QDateTime data;
    // The value, or what else stands in the row; and which of the rows of that second is the point's. Without a test
    // it is the first stored.
    QStringView colunaValor{};
    std::function<bool(const Recordset &rs, int coluna)> eDoPonto{};
};

// A stored row as it was when its note was shown: what it is known by, exactly as stored, and that note.
struct Linha {
    QString tabela;
    QStringList colunas;
    QVariantList valores;
    QVariant nota;
    qint64 numero = 0; // tells rows apart that are equal in all that; once they were rewritten it may be any row's

    bool operator==(const Linha &) const = default;
};

// Nothing when there is no such row.
std::optional<Linha> procurar(const Lugar &lugar);
// The text of a stored note; "" for Null.
QString texto(const Linha &linha);

// What became of a note: the row may have gone, or its note may be another than the one that was shown.
enum class Resultado { Gravada, SemLinha, Alterada };
// Changes one row, or none unless its note is still the one that was shown.
Resultado gravar(const Linha &linha, const QString &nota);
// Tells the user why a note was not stored.
void avisar(Resultado resultado, const Linha &linha);

// What is stored for a text of the user's: trimmed, and one blank for nothing.
QString paraGuardar(const QString &texto);
// What is shown of a stored note.
QString paraMostrar(const QString &flag);

} // namespace notas
