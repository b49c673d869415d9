#pragma once

#include "data/comando.h"

#include <QByteArray>
#include <QStringList>

// Many rows into one table through one prepared statement. A column keeps its value until it is set anew. The caller
// surrounds a batch with a Transaccao; without one every row is a transaction of its own.
class Insercao {
public:
    Insercao(Ligacao &ligacao, const QString &tabela, const QStringList &colunas);

    // Columns count from 0 in the order given.
    void nulo(int coluna) { m_comando.nulo(coluna + 1); }
    void inteiro(int coluna, qint64 valor) { m_comando.inteiro(coluna + 1, valor); }
    void real(int coluna, double valor) { m_comando.numero(coluna + 1, valor); }
    void texto(int coluna, const QString &valor) { m_comando.copiar(coluna + 1, valor); }
    // Not copied: the bytes must stand until the column is set anew or the last row is stored.
    void utf8(int coluna, const char *bytes, int tamanho) { m_comando.texto(coluna + 1, {bytes, tamanho}); }
    void utf8(int coluna, const QByteArray &valor) { m_comando.texto(coluna + 1, valor); }

    void gravar() { m_comando.executar(); }

private:
    Comando m_comando;
};
