#include "data/recordset.h"

#include "core/datas.h"
#include "core/falha.h"
#include "core/literais.h"
#include "core/modDoubleTratamento.h"
#include "core/modTraducoes.h"
#include "data/ligacao_interno.h"

#include <sqlite3.h>

#include <cstring>
#include <limits>
#include <utility>

Recordset::Recordset(std::shared_ptr<Motor> motor, sqlite3_stmt *instrucao)
    : m_motor(std::move(motor)), m_instrucao(instrucao) {}

Recordset::Recordset(Recordset &&outro) noexcept
    : m_motor(std::move(outro.m_motor)), m_instrucao(std::exchange(outro.m_instrucao, nullptr)), m_fim(outro.m_fim) {}

Recordset &Recordset::operator=(Recordset &&outro) noexcept {
    std::swap(m_motor, outro.m_motor);
    std::swap(m_instrucao, outro.m_instrucao);
    std::swap(m_fim, outro.m_fim);
    return *this;
}

Recordset::~Recordset() {
    fechar();
}

void Recordset::fechar() {
    if (m_motor)
        m_motor->esperar();
    sqlite3_finalize(std::exchange(m_instrucao, nullptr));
    m_motor.reset();
}

bool Recordset::avancar() {
    if (!m_instrucao)
        throw Falha(erros::objectoFechado, u"A consulta está fechada."_s);
    if (m_fim) // one more step would run the query again
        return false;
    m_motor->esperar();
    const int codigo = sqlite3_step(m_instrucao);
    m_fim = codigo != SQLITE_ROW;
    if (m_fim && codigo != SQLITE_DONE)
        m_motor->falhar(codigo, QString::fromUtf8(sqlite3_sql(m_instrucao)));
    return !m_fim;
}

bool Recordset::escreve() const {
    return m_instrucao && sqlite3_stmt_readonly(m_instrucao) == 0;
}

int Recordset::colunas() const {
    return sqlite3_column_count(m_instrucao);
}

QString Recordset::nome(int coluna) const {
    return m_instrucao ? QString::fromUtf8(sqlite3_column_name(m_instrucao, coluna)) : QString();
}

int Recordset::coluna(const QString &procurado) const {
    for (int i = 0; i < colunas(); ++i)
        if (QAnyStringView::compare(QUtf8StringView(sqlite3_column_name(m_instrucao, i)), procurado,
                                    Qt::CaseInsensitive) == 0)
            return i;
    throw Falha(erros::chamadaInvalida,
                modTraducoes::texto(u"KelvarkAUX"_s, u"BDSemColuna"_s, u"A consulta não tem a coluna \"%1\"."_s)
                    .arg(procurado));
}

bool Recordset::nulo(int coluna) const {
    return sqlite3_column_type(m_instrucao, coluna) == SQLITE_NULL;
}

bool Recordset::eNumero(int coluna) const {
    const int tipo = sqlite3_column_type(m_instrucao, coluna);
    return tipo == SQLITE_FLOAT || tipo == SQLITE_INTEGER;
}

double Recordset::real(int coluna) const {
    return sqlite3_column_double(m_instrucao, coluna);
}

qint64 Recordset::inteiro(int coluna) const {
    return sqlite3_column_int64(m_instrucao, coluna);
}

const char *Recordset::utf8(int coluna, int &tamanho) const {
    const auto *bytes = reinterpret_cast<const char *>(sqlite3_column_text(m_instrucao, coluna));
    tamanho = bytes ? sqlite3_column_bytes(m_instrucao, coluna) : 0;
    return bytes;
}

const char *Recordset::utf8(int coluna) const {
    const auto *bytes = reinterpret_cast<const char *>(sqlite3_column_text(m_instrucao, coluna));
    return bytes ? bytes : "";
}

Celula Recordset::celula(int coluna) const {
    Celula c;
    const auto bytes = [&](const void *inicio) {
        return QByteArray(static_cast<const char *>(inicio), sqlite3_column_bytes(m_instrucao, coluna));
    };
    switch (sqlite3_column_type(m_instrucao, coluna)) {
    case SQLITE_INTEGER:
        c.tipo = Celula::Tipo::Inteiro;
        c.inteiro = inteiro(coluna);
        break;
    case SQLITE_FLOAT:
        c.tipo = Celula::Tipo::Real;
        c.real = real(coluna);
        break;
    case SQLITE_TEXT:
        c.tipo = Celula::Tipo::Texto;
        c.bytes = bytes(sqlite3_column_text(m_instrucao, coluna));
        break;
    case SQLITE_BLOB:
        c.tipo = Celula::Tipo::Bloco;
        c.bytes = bytes(sqlite3_column_blob(m_instrucao, coluna));
        break;
    default:
        break;
    }
    return c;
}

QVariant Recordset::guardado(int coluna) const {
    const Celula c = celula(coluna);
    switch (c.tipo) {
    case Celula::Tipo::Inteiro:
        return c.inteiro;
    case Celula::Tipo::Real:
        return c.real;
    case Celula::Tipo::Bloco:
        return QVariant::fromValue(Cru{c.bytes, true});
    case Celula::Tipo::Texto: {
        const QString lido = QString::fromUtf8(c.bytes);
        return lido.toUtf8() == c.bytes ? QVariant(lido) : QVariant::fromValue(Cru{c.bytes, false});
    }
    default:
        return {};
    }
}

QString Recordset::texto(int coluna) const {
    if (sqlite3_column_type(m_instrucao, coluna) == SQLITE_FLOAT)
        return modDoubleTratamento::NumeroParaTexto(real(coluna));
    int tamanho = 0;
    const char *bytes = utf8(coluna, tamanho);
    return QString::fromUtf8(bytes, tamanho);
}

double Recordset::numero(int coluna) const {
    if (eNumero(coluna))
        return real(coluna);
    const QString t = texto(coluna);
    if (modDoubleTratamento::eND(t))
        return std::numeric_limits<double>::quiet_NaN();
    return modDoubleTratamento::TextoParaDouble(t);
}

double Recordset::segundos(int coluna) const {
    constexpr size_t comprimento = 20; // what follows the seconds does not count
    const char *bytes = utf8(coluna);
    return datas::segundosDe(bytes, int(strnlen(bytes, comprimento)));
}

QDateTime Recordset::dataHora(int coluna) const {
    return datas::instanteDe(segundos(coluna));
}
