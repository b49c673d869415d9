#pragma once

#include "data/motor.h"

#include <QByteArray>

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

struct sqlite3;

// Takes what was written to the log beside the database into the database itself, and cuts a log that has grown: on a
// thread and a connection of its own, since after a large import that takes longer than a window may stand still.
// Nobody is waited for: what a reader still needs, of whatever program, is left for the next look.
class Recolha {
public:
    using Medidas = MedidasDeRecolha; // pages of the log after a commit, bytes of its file
    // `noLugar` says whether the file is still the one that was opened; asked on the thread.
    Recolha(sqlite3 *bd, const QByteArray &caminho, std::function<bool()> noLugar, const Medidas &medidas);
    ~Recolha(); // stops what is under way

    // A large batch is still to be taken in. What is written meanwhile goes behind it, so that the log grows by all of
    // that; whoever has written the batch does well to wait a moment for the end before the next one begins.
    bool atrasada() const { return m_atrasada; }

    Recolha(const Recolha &) = delete;
    Recolha &operator=(const Recolha &) = delete;

private:
    static int aposConfirmar(void *esta, sqlite3 *bd, const char *base, int paginas);
    void correr(const std::stop_token &parar);
    bool recolher(const std::stop_token &parar); // all of it
    bool ligar();
    qint64 tamanhoDoDiario() const;

    const QByteArray m_caminho;
    const std::function<bool()> m_noLugar;
    const Medidas m_medidas;
    sqlite3 *m_bd = nullptr; // of the thread, kept: a name may mean another file the next time
    std::mutex m_mutex;
    std::condition_variable_any m_aviso;
    bool m_pedida = false;
    int m_paginas = 0; // in the log after this connection's last commit
    std::atomic<bool> m_atrasada{false};
    std::jthread m_trabalho;
};
