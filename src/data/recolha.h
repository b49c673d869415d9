#pragma once

#include <QByteArray>

#include <atomic>
#include <thread>

struct sqlite3;

// Takes what was written to the log beside the database into the database itself, on a thread and a connection of its
// own: after a large import that takes longer than a window may stand still. The thread touches nothing else.
class Recolha {
public:
    Recolha(sqlite3 *bd, const QByteArray &caminho);
    ~Recolha(); // waits for what is under way

    Recolha(const Recolha &) = delete;
    Recolha &operator=(const Recolha &) = delete;

private:
    static int aposConfirmar(void *esta, sqlite3 *bd, const char *base, int paginas);

    QByteArray m_caminho;
    std::atomic<bool> m_activa{false};
    std::jthread m_trabalho;
};
