#pragma once

#include <QPointer>

// The pass that lets events run. Time-sliced: call it after every row or point, it costs nanoseconds and turns the
// loop at most once in about 15 ms. A forced pass always turns the loop.
void passarEventos();
void forcarEventos();
// How many turns of the loop run within each other at this moment: whoever began something at a lower number waits
// further down for this one to end.
int profundidadeDosEventos();
// One turn of the loop, counted; with <adormecer> it sleeps until something happens.
void correrEventos(bool adormecer = false);

// The slice of a loop that gives way to the events by itself: a time, or a number of rows where a test wants it so.
class Fatia {
public:
    explicit Fatia(int ms);
    bool gasta(int linhas = 1); // so many more rows are about to be read

private:
    qint64 m_fim;
    int m_restam;
};

// The same for a routine of an object that may be destroyed meanwhile: throws Interrompido when it has gone.
class Vigia {
public:
    explicit Vigia(QObject *dono);
    void passar() const;
    void forcar() const;
    // The same for a loop whose turns take microseconds: looking at the clock would be a good part of each.
    void passarLinha() const {
        if ((++m_linhas & m_entreOlhares) == 0)
            passar();
    }
    bool vivo() const { return !m_dono.isNull(); }

private:
    QPointer<QObject> m_dono;
    unsigned m_entreOlhares; // a mask: 31, or 0 where every row is counted
    mutable unsigned m_linhas = 0;
};
