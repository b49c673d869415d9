#pragma once

#include "data/ligacao.h"

#include <SQLiteCpp/Database.h>

#include <optional>

struct sqlite3_stmt;

// Shared by the connection and its cursors; nothing outside data/ includes this.
struct Ligacao::Interno {
    std::optional<SQLite::Database> bd;
    QString caminho;
    bool soLeitura = false;
    bool imutavel = false; // read without locks, since no log can be made beside the file
    int transaccoes = 0;

    sqlite3_stmt *preparar(const QString &sql, const Parametros &valores);
    [[noreturn]] void falhar(int codigo, const QString &contexto = {});
};
