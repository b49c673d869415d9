#include "data/sqlite/instrucaoSQLite.h"

#include "data/sqlite/motorSQLite.h"

#include <sqlite3.h>

InstrucaoSQLite::~InstrucaoSQLite() {
    sqlite3_finalize(m_instrucao);
}

void InstrucaoSQLite::verificar(int codigo) {
    if (codigo != SQLITE_OK)
        m_motor.falhar(codigo, QString::fromUtf8(sqlite3_sql(m_instrucao)));
}

int InstrucaoSQLite::valores() const {
    return sqlite3_bind_parameter_count(m_instrucao);
}

bool InstrucaoSQLite::escreve() const {
    return sqlite3_stmt_readonly(m_instrucao) == 0;
}

int InstrucaoSQLite::colunas() const {
    return sqlite3_column_count(m_instrucao);
}

const char *InstrucaoSQLite::nome(int coluna) const {
    return sqlite3_column_name(m_instrucao, coluna);
}

bool InstrucaoSQLite::avancar() {
    const int codigo = sqlite3_step(m_instrucao);
    if (codigo != SQLITE_ROW && codigo != SQLITE_DONE)
        verificar(codigo);
    return codigo == SQLITE_ROW;
}

qint64 InstrucaoSQLite::executar() {
    const qint64 antes = m_motor.alteradas();
    int codigo = SQLITE_ROW;
    while (codigo == SQLITE_ROW)
        codigo = sqlite3_step(m_instrucao);
    const qint64 alteradas = m_motor.alteradas() - antes;
    sqlite3_reset(m_instrucao);
    if (codigo != SQLITE_DONE)
        verificar(codigo);
    return alteradas;
}

void InstrucaoSQLite::ligarNulo(int posicao) {
    verificar(sqlite3_bind_null(m_instrucao, posicao));
}

void InstrucaoSQLite::ligarInteiro(int posicao, qint64 valor) {
    verificar(sqlite3_bind_int64(m_instrucao, posicao, valor));
}

void InstrucaoSQLite::ligarReal(int posicao, double valor) {
    verificar(sqlite3_bind_double(m_instrucao, posicao, valor));
}

// An empty view may carry no address, and no address would bind Null.
void InstrucaoSQLite::ligarTexto(int posicao, QByteArrayView utf8, Bytes bytes) {
    verificar(sqlite3_bind_text(m_instrucao, posicao, utf8.isEmpty() ? "" : utf8.data(), int(utf8.size()),
                                bytes == Bytes::Emprestados ? SQLITE_STATIC : SQLITE_TRANSIENT));
}

void InstrucaoSQLite::ligarBloco(int posicao, QByteArrayView valor) {
    verificar(sqlite3_bind_blob(m_instrucao, posicao, valor.isEmpty() ? "" : valor.data(), int(valor.size()),
                                SQLITE_TRANSIENT));
}

Celula::Tipo InstrucaoSQLite::tipo(int coluna) const {
    switch (sqlite3_column_type(m_instrucao, coluna)) {
    case SQLITE_INTEGER:
        return Celula::Tipo::Inteiro;
    case SQLITE_FLOAT:
        return Celula::Tipo::Real;
    case SQLITE_TEXT:
        return Celula::Tipo::Texto;
    case SQLITE_BLOB:
        return Celula::Tipo::Bloco;
    default:
        return Celula::Tipo::Nulo;
    }
}

qint64 InstrucaoSQLite::inteiro(int coluna) const {
    return sqlite3_column_int64(m_instrucao, coluna);
}

double InstrucaoSQLite::real(int coluna) const {
    return sqlite3_column_double(m_instrucao, coluna);
}

bool InstrucaoSQLite::numero(int coluna, double &valor) const {
    const int tipo = sqlite3_column_type(m_instrucao, coluna);
    if (tipo != SQLITE_FLOAT && tipo != SQLITE_INTEGER)
        return false;
    valor = sqlite3_column_double(m_instrucao, coluna);
    return true;
}

const char *InstrucaoSQLite::texto(int coluna) const {
    return reinterpret_cast<const char *>(sqlite3_column_text(m_instrucao, coluna));
}

const char *InstrucaoSQLite::texto(int coluna, int &tamanho) const {
    const auto *bytes = reinterpret_cast<const char *>(sqlite3_column_text(m_instrucao, coluna));
    tamanho = bytes ? sqlite3_column_bytes(m_instrucao, coluna) : 0;
    return bytes;
}

QByteArrayView InstrucaoSQLite::bloco(int coluna) const {
    const auto *bytes = static_cast<const char *>(sqlite3_column_blob(m_instrucao, coluna));
    return {bytes, bytes ? sqlite3_column_bytes(m_instrucao, coluna) : 0};
}
