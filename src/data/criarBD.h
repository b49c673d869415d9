#pragma once

#include <QString>

// Makes an empty database of the present schema. Never called by the workstation, which creates no database.
// Falha when the file exists or cannot be made.
void criarBD(const QString &caminho);
