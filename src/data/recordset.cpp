#include "data/recordset.h"

#include "core/datas.h"
#include "core/falha.h"
#include "core/literais.h"
#include "core/modDoubleTratamento.h"
#include "data/ligacao_interno.h"

#include <sqlite3.h>

#include <limits>
#include <utility>

Recordset::Recordset(Ligacao &ligacao, sqlite3_stmt *instrucao) : m_ligacao(&ligacao), m_instrucao(instrucao) {}

Recordset::Recordset(Recordset &&outro) noexcept
    : m_ligacao(outro.m_ligacao), m_instrucao(std::exchange(outro.m_instrucao, nullptr)) {}

Recordset &Recordset::operator=(Recordset &&outro) noexcept {
    std::swap(m_ligacao, outro.m_ligacao);
    std::swap(m_instrucao, outro.m_instrucao);
    return *this;
}

Recordset::~Recordset() {
    fechar();
}

void Recordset::fechar() {
    sqlite3_finalize(std::exchange(m_instrucao, nullptr));
}

bool Recordset::avancar() {
    if (!m_instrucao)
        throw Falha(erros::objectoFechado, u"A consulta está fechada."_s);
    const int codigo = sqlite3_step(m_instrucao);
    if (codigo == SQLITE_ROW)
        return true;
    if (codigo != SQLITE_DONE)
        m_ligacao->interno().falhar(codigo);
    return false;
}

int Recordset::colunas() const {
    return sqlite3_column_count(m_instrucao);
}

QString Recordset::nome(int coluna) const {
    return QString::fromUtf8(sqlite3_column_name(m_instrucao, coluna));
}

int Recordset::coluna(const QString &procurado) const {
    const QByteArray utf8 = procurado.toUtf8();
    for (int i = 0; i < colunas(); ++i)
        if (sqlite3_stricmp(sqlite3_column_name(m_instrucao, i), utf8.constData()) == 0)
            return i;
    throw Falha(erros::chamadaInvalida, u"A consulta não tem a coluna \"%1\"."_s.arg(procurado));
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
    int tamanho = 0;
    const char *bytes = utf8(coluna, tamanho);
    return datas::segundosDe(bytes, tamanho);
}

QDateTime Recordset::dataHora(int coluna) const {
    return datas::instanteDe(segundos(coluna));
}
