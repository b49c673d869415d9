#include "data/criarBD.h"

#include "core/falha.h"
#include "core/literais.h"
#include "data/esquema.h"
#include "data/motor.h"

#include <QFile>

void criarBD(const QString &caminho) {
    if (QFile::exists(caminho))
        throw Falha(erros::falhaDoFicheiro, u"\"%1\" já existe."_s.arg(caminho));
    fabricaDe(caminho).criar(caminho, esquemaSQL);
}
