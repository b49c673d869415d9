#pragma once

#include <QString>

// Says that a file was written and where it is, and opens its folder when the user wants to see it.
void anunciarExportado(const QString &caminho);
