#include "data/comando.h"

#include "data/ligacao_interno.h"

#include <sqlite3.h>

Comando::Comando(Ligacao &ligacao, const QString &sql)
    : m_motor((ligacao.motor(), ligacao.m_motor)), m_emTransaccao(m_motor->transaccoes > 0) {
    const QByteArray utf8 = sql.toUtf8();
    const int codigo = sqlite3_prepare_v3(m_motor->bd.getHandle(), utf8.constData(), int(utf8.size()) + 1,
                                          SQLITE_PREPARE_PERSISTENT, &m_instrucao, nullptr);
    if (codigo != SQLITE_OK)
        m_motor->falhar(codigo, sql);
}

Comando::~Comando() {
    m_motor->esperar();
    sqlite3_finalize(m_instrucao);
}

void Comando::verificar(int codigo) {
    if (codigo != SQLITE_OK)
        m_motor->falhar(codigo, QString::fromUtf8(sqlite3_sql(m_instrucao)));
}

void Comando::texto(int posicao, QByteArrayView utf8) {
    // An empty view may carry no address, and no address would bind Null.
    const char *bytes = utf8.isEmpty() ? "" : utf8.data();
    verificar(sqlite3_bind_text(m_instrucao, posicao, bytes, int(utf8.size()), SQLITE_STATIC));
}

void Comando::copiar(int posicao, const QString &texto) {
    const QByteArray utf8 = texto.toUtf8();
    verificar(sqlite3_bind_text(m_instrucao, posicao, utf8.constData(), int(utf8.size()), SQLITE_TRANSIENT));
}

void Comando::numero(int posicao, double valor) {
    verificar(sqlite3_bind_double(m_instrucao, posicao, valor));
}

void Comando::inteiro(int posicao, qint64 valor) {
    verificar(sqlite3_bind_int64(m_instrucao, posicao, valor));
}

void Comando::nulo(int posicao) {
    verificar(sqlite3_bind_null(m_instrucao, posicao));
}

void Comando::celula(int posicao, const Celula &valor) {
    const char *bytes = valor.bytes.constData();
    const int tamanho = int(valor.bytes.size());
    switch (valor.tipo) {
    case Celula::Tipo::Nulo:
        return nulo(posicao);
    case Celula::Tipo::Inteiro:
        return inteiro(posicao, valor.inteiro);
    case Celula::Tipo::Real:
        return numero(posicao, valor.real);
    case Celula::Tipo::Texto:
        return verificar(sqlite3_bind_text(m_instrucao, posicao, bytes, tamanho, SQLITE_TRANSIENT));
    case Celula::Tipo::Bloco:
        return verificar(sqlite3_bind_blob(m_instrucao, posicao, bytes, tamanho, SQLITE_TRANSIENT));
    }
}

qint64 Comando::executar() {
    m_motor->esperar();
    sqlite3 *bd = m_motor->bd.getHandle();
    if (m_emTransaccao && (m_motor->transaccoes == 0 || sqlite3_get_autocommit(bd) != 0))
        Motor::falharAnulada();
    m_motor->exigirSemPasso();
    const bool sozinho = sqlite3_get_autocommit(bd) != 0;
    if (sozinho)
        m_motor->exigirNoLugar();
    const int codigo = sqlite3_step(m_instrucao);
    if (codigo != SQLITE_DONE && codigo != SQLITE_ROW) {
        sqlite3_reset(m_instrucao);
        m_motor->falhar(codigo, QString::fromUtf8(sqlite3_sql(m_instrucao)));
    }
    const qint64 alteradas = sqlite3_changes64(bd);
    sqlite3_reset(m_instrucao);
    if (sozinho)
        m_motor->exigirNoLugar();
    return alteradas;
}
