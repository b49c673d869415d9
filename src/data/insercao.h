#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <memory>

struct Motor;
struct sqlite3_stmt;
class Ligacao;

// Many rows into one table through one prepared statement. A column keeps its value until it is set anew. The caller
// surrounds a batch with a Transaccao; without one every row is a transaction of its own.
class Insercao {
public:
    Insercao(Ligacao &ligacao, const QString &tabela, const QStringList &colunas);
    ~Insercao();
    Insercao(const Insercao &) = delete;
    Insercao &operator=(const Insercao &) = delete;

    // Columns count from 0 in the order given.
    void nulo(int coluna);
    void inteiro(int coluna, qint64 valor);
    void real(int coluna, double valor);
    void texto(int coluna, const QString &valor);
    // Not copied: the bytes must stand until the column is set anew or the last row is stored.
    void utf8(int coluna, const char *bytes, int tamanho);
    void utf8(int coluna, const QByteArray &valor) { utf8(coluna, valor.constData(), int(valor.size())); }

    void gravar();

private:
    std::shared_ptr<Motor> m_motor;
    sqlite3_stmt *m_instrucao;
};
