#pragma once

#include "data/ligacao.h"
#include "data/lugarDoFicheiro.h"

#include <SQLiteCpp/Database.h>

#include <atomic>
#include <optional>

struct sqlite3_stmt;

// One opened file, shared by the connection and its cursors; nothing outside data/ includes this. A cursor keeps it
// alive, so that a window in the middle of its rows survives the connection being closed or pointed elsewhere.
struct Motor {
    Motor(const QString &caminho, const std::string &nome, int modo, int esperaMs)
        : bd(nome, modo, esperaMs), caminho(caminho) {}

    SQLite::Database bd;
    QString caminho;
    bool soLeitura = false;
    bool imutavel = false; // read without locks, since no log can be made beside the file
    int transaccoes = 0;
    int profundidade = 0; // of the events in which the outermost transaction began
    QString exame;        // findings of the check, made once
    std::optional<LugarDoFicheiro> lugar;
    bool avisada = false;           // the user knows that the file is no longer in its place
    std::optional<Recolha> recolha; // only where this process may write; gone before the connection

    // A large batch is confirmed on a thread of its own; whoever wants the connection meanwhile waits for the end.
    std::atomic<bool> emConfirmacao{false};
    void esperar() const {
        if (emConfirmacao.load(std::memory_order_acquire)) // asked for every row, where wait() alone is dear
            emConfirmacao.wait(true);
    }

    // Before everything that writes: what the user does while events run within a transaction is not part of it, and
    // would be undone with it. It cannot wait either, since the transaction goes on only when it has ended.
    void exigirSemPasso() const;

    // Around everything that writes: what goes into a file that has lost its name must not pass for stored.
    void exigirNoLugar();

    sqlite3_stmt *preparar(const QString &sql, const Parametros &valores);
    int executarDirecto(const QByteArray &sql);
    [[noreturn]] void falhar(int codigo, const QString &contexto = {});
    [[noreturn]] static void falharAnulada(); // the engine has undone the transaction by itself

private:
    QString examinar();
};
