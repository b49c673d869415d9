#include "data/criarBD.h"

#include "core/falha.h"
#include "core/literais.h"
#include "data/esquema.h"

#include <SQLiteCpp/Database.h>

#include <QFile>

void criarBD(const QString &caminho) {
    if (QFile::exists(caminho))
        throw Falha(erros::falhaDoFicheiro, u"\"%1\" já existe."_s.arg(caminho));
    try {
        SQLite::Database bd(QFile::encodeName(caminho).toStdString(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
        bd.exec(esquemaSQL);
    } catch (const SQLite::Exception &e) {
        throw Falha(erros::falhaDoFicheiro,
                    u"Não é possível criar \"%1\" (%2)."_s.arg(caminho, QString::fromUtf8(e.what())));
    }
}
