#pragma once

#include <QSet>
#include <QString>

// Which entries of the menu the database gives a reason for.
namespace estadoMenu {

// Raises flags from the database, in the order of the tables; RegistadorControl and Alarmes are cleared first, all
// others only ever raised. A failed query ends it and is reported; what was raised so far stands.
void BuscarEstadoMenu(QSet<QString> &estados);

// True when the optional table is there and its first row has a date. A missing table is reported.
bool VerificaSeTabelaExiste_MaskListaAlarmes();

} // namespace estadoMenu
