#pragma once

#include "data/celula.h"

#include <QByteArrayView>
#include <QString>

#include <memory>

struct sqlite3_stmt;
class Ligacao;
struct Motor;

// One statement without a result, prepared once and run many times. Values stay bound until they are bound anew.
// Positions count from 1. Runs only as part of what the connection has open: once its transaction was undone, or the
// connection closed, executar() fails instead of storing anything.
class Comando {
public:
    Comando(Ligacao &ligacao, const QString &sql);
    ~Comando();
    Comando(const Comando &) = delete;
    Comando &operator=(const Comando &) = delete;

    void texto(int posicao, QByteArrayView utf8);   // not copied: has to stand until the last executar()
    void copiar(int posicao, const QString &texto); // copied
    void numero(int posicao, double valor);         // NaN binds Null
    void inteiro(int posicao, qint64 valor);
    void nulo(int posicao);
    void celula(int posicao, const Celula &valor); // copied
    qint64 executar();                             // rows changed

private:
    void verificar(int codigo);
    std::shared_ptr<Motor> m_motor;
    sqlite3_stmt *m_instrucao = nullptr;
    bool m_emTransaccao;
};
