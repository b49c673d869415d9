#pragma once

#include "data/motor.h"

#include <QByteArrayView>
#include <QString>

#include <memory>

class Ligacao;

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
    Instrucao &livre();
    std::shared_ptr<Motor> m_motor;
    std::unique_ptr<Instrucao> m_instrucao; // gone before its engine
    bool m_emTransaccao;
};
