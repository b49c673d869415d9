#pragma once

#include <QString>

// Whether a path of the settings can be used as it stands now, and what is the matter if not. Nothing is changed.
namespace estadoCaminhos {

enum class Grau { Bom, Aviso, Mau };
struct EstadoCaminho {
    Grau grau;
    QString texto;
};

EstadoCaminho daBD(const QString &caminho);
EstadoCaminho daExportacao(const QString &caminho); // a leading "." is the program's folder
EstadoCaminho dosINIs(const QString &caminho);

} // namespace estadoCaminhos
