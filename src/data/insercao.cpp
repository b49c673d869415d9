#include "data/insercao.h"

#include "core/literais.h"
#include "data/ligacao_interno.h"

#include <sqlite3.h>

Insercao::Insercao(Ligacao &ligacao, const QString &tabela, const QStringList &colunas)
    : m_motor((ligacao.motor(), ligacao.m_motor)) {
    const QString sql = u"INSERT INTO %1 (%2) VALUES (%3)"_s.arg(tabela, colunas.join(u", "),
                                                                 QStringList(colunas.size(), u"?"_s).join(u", "));
    m_instrucao = m_motor->preparar(sql, QVariantList(colunas.size()));
}

Insercao::~Insercao() {
    sqlite3_finalize(m_instrucao);
}

void Insercao::nulo(int coluna) {
    sqlite3_bind_null(m_instrucao, coluna + 1);
}

void Insercao::inteiro(int coluna, qint64 valor) {
    sqlite3_bind_int64(m_instrucao, coluna + 1, valor);
}

void Insercao::real(int coluna, double valor) {
    sqlite3_bind_double(m_instrucao, coluna + 1, valor);
}

void Insercao::texto(int coluna, const QString &valor) {
    const QByteArray t = valor.toUtf8();
    sqlite3_bind_text(m_instrucao, coluna + 1, t.constData(), int(t.size()), SQLITE_TRANSIENT);
}

void Insercao::utf8(int coluna, const char *bytes, int tamanho) {
    sqlite3_bind_text(m_instrucao, coluna + 1, bytes, tamanho, SQLITE_STATIC);
}

void Insercao::gravar() {
    const int codigo = sqlite3_step(m_instrucao);
    sqlite3_reset(m_instrucao);
    if (codigo != SQLITE_DONE)
        m_motor->falhar(codigo, QString::fromUtf8(sqlite3_sql(m_instrucao)));
}
