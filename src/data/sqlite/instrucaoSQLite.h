#pragma once

#include "data/motor.h"

class MotorSQLite;
struct sqlite3_stmt;

class InstrucaoSQLite final : public Instrucao {
public:
    InstrucaoSQLite(MotorSQLite &motor, sqlite3_stmt *instrucao) : m_motor(motor), m_instrucao(instrucao) {}
    ~InstrucaoSQLite() override;

    int valores() const override;
    bool escreve() const override;
    int colunas() const override;
    const char *nome(int coluna) const override;
    bool avancar() override;
    qint64 executar() override;

    void ligarNulo(int posicao) override;
    void ligarInteiro(int posicao, qint64 valor) override;
    void ligarReal(int posicao, double valor) override;
    void ligarTexto(int posicao, QByteArrayView utf8, Bytes bytes) override;
    void ligarBloco(int posicao, QByteArrayView valor) override;

    Celula::Tipo tipo(int coluna) const override;
    qint64 inteiro(int coluna) const override;
    double real(int coluna) const override;
    bool numero(int coluna, double &valor) const override;
    const char *texto(int coluna) const override;
    const char *texto(int coluna, int &tamanho) const override;
    QByteArrayView bloco(int coluna) const override;

private:
    void verificar(int codigo);
    MotorSQLite &m_motor;
    sqlite3_stmt *m_instrucao;
};
