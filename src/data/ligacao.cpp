#include "data/ligacao.h"

#include "core/datas.h"
#include "core/falha.h"
#include "core/literais.h"
#include "data/esquema.h"
#include "data/ligacao_interno.h"
#include "data/recordset.h"

#include <SQLiteCpp/Exception.h>

#include <QFile>
#include <QFileInfo>

#include <sqlite3.h>

#include <utility>

namespace {

constexpr int esperaOcupadaMs = 5000;
constexpr int tamanhoDoCabecalho = 100;

int ligar(sqlite3_stmt *instrucao, int posicao, const QVariant &valor) {
    if (valor.isNull())
        return sqlite3_bind_null(instrucao, posicao);
    switch (valor.typeId()) {
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Short:
    case QMetaType::LongLong:
        return sqlite3_bind_int64(instrucao, posicao, valor.toLongLong());
    case QMetaType::Float:
    case QMetaType::Double:
        return sqlite3_bind_double(instrucao, posicao, valor.toDouble());
    case QMetaType::QDateTime: {
        const QByteArray t = datas::textoBD(valor.toDateTime()).toUtf8();
        return sqlite3_bind_text(instrucao, posicao, t.constData(), int(t.size()), SQLITE_TRANSIENT);
    }
    default: {
        const QByteArray t = valor.toString().toUtf8();
        return sqlite3_bind_text(instrucao, posicao, t.constData(), int(t.size()), SQLITE_TRANSIENT);
    }
    }
}

quint32 inteiroBE(const QByteArray &b, int posicao) {
    quint32 n = 0;
    for (int i = 0; i < 4; ++i)
        n = (n << 8) | static_cast<uchar>(b[posicao + i]);
    return n;
}

// What can be told from the file itself, in constant time, before the engine touches it.
void examinarFicheiro(const QString &caminho) {
    const QFileInfo info(caminho);
    if (!info.exists())
        throw Falha(erros::falhaGeralBD, u"Não existe o ficheiro \"%1\"."_s.arg(caminho));
    if (info.isDir())
        throw Falha(erros::falhaDoFicheiro, u"\"%1\" é uma pasta, não uma base de dados."_s.arg(caminho));
    QFile ficheiro(caminho);
    if (!ficheiro.open(QIODevice::ReadOnly))
        throw Falha(erros::falhaDoFicheiro, u"Não é possível ler \"%1\": %2."_s.arg(caminho, ficheiro.errorString()));
    const QByteArray cabecalho = ficheiro.read(tamanhoDoCabecalho);
    const QByteArray motorAntigo = cabecalho.mid(4, 15);
    if (motorAntigo == "Standard Jet DB" || motorAntigo == "Standard ACE DB")
        throw Falha(erros::falhaDoFicheiro,
                    u"\"%1\" está no formato do motor de base de dados antigo (Jet) e tem de ser "
                    "convertido antes de ser usado. O ficheiro não foi alterado."_s.arg(caminho));
    if (cabecalho.size() < tamanhoDoCabecalho || !cabecalho.startsWith(QByteArray("SQLite format 3\0", 16)))
        throw Falha(erros::falhaDoFicheiro,
                    u"\"%1\" não é uma base de dados. O ficheiro não foi alterado."_s.arg(caminho));
    const QFileInfo diario(caminho + u"-wal"_s);
    const int pagina = (static_cast<uchar>(cabecalho[16]) << 8) | static_cast<uchar>(cabecalho[17]);
    const qint64 esperado = qint64(inteiroBE(cabecalho, 28)) * (pagina == 1 ? 65536 : pagina);
    if (ficheiro.size() < esperado && (!diario.exists() || diario.size() == 0))
        throw Falha(erros::falhaDoFicheiro, u"\"%1\" está truncado: tem %2 bytes e devia ter %3. O "
                                            "ficheiro não foi alterado."_s.arg(caminho)
                                                .arg(ficheiro.size())
                                                .arg(esperado));
}

} // namespace

Ligacao::Ligacao() : m(std::make_unique<Interno>()) {}
Ligacao::~Ligacao() = default;

bool Ligacao::aberta() const {
    return m->bd.has_value();
}
bool Ligacao::soLeitura() const {
    return m->soLeitura;
}
QString Ligacao::caminho() const {
    return m->caminho;
}

void Ligacao::fechar() {
    if (!aberta())
        throw Falha(erros::objectoFechado, u"A base de dados já está fechada."_s);
    m->bd.reset();
}

void Ligacao::abrir(const QString &caminho) {
    if (aberta())
        throw Falha(erros::objectoAberto, u"A base de dados já está aberta."_s);
    examinarFicheiro(caminho);
    const std::string nome = QFile::encodeName(caminho).toStdString();
    m->caminho = caminho;
    m->soLeitura = !QFileInfo(caminho).isWritable();
    m->imutavel = false;
    m->transaccoes = 0;
    try {
        if (!m->soLeitura) {
            m->bd.emplace(nome, SQLite::OPEN_READWRITE, esperaOcupadaMs);
        } else if (QFileInfo(QFileInfo(caminho).absolutePath()).isWritable() || QFile::exists(caminho + u"-wal"_s)) {
            m->bd.emplace(nome, SQLite::OPEN_READONLY, esperaOcupadaMs);
        } else {
            const QByteArray uri = "file:" + QFile::encodeName(caminho).toPercentEncoding("/") + "?immutable=1";
            m->bd.emplace(uri.toStdString(), SQLite::OPEN_READONLY | SQLite::OPEN_URI, esperaOcupadaMs);
            m->imutavel = true;
        }
        const int versao = m->bd->execAndGet("PRAGMA user_version").getInt();
        if (versao > versaoDoEsquema)
            throw Falha(erros::falhaDoFicheiro,
                        u"\"%1\" foi criada por uma versão mais recente (esquema %2; esta versão conhece "
                        "até ao %3). O ficheiro não foi alterado."_s.arg(caminho)
                            .arg(versao)
                            .arg(versaoDoEsquema));
    } catch (const SQLite::Exception &e) {
        m->bd.reset();
        throw Falha(e.getErrorCode() > 0 ? e.getErrorCode() : erros::falhaDoFicheiro,
                    u"Não é possível abrir \"%1\": %2."_s.arg(caminho, QString::fromUtf8(e.what())));
    } catch (...) {
        m->bd.reset();
        throw;
    }
}

void Ligacao::Interno::falhar(int codigo, const QString &contexto) {
    sqlite3 *motor = bd->getHandle();
    QString descricao = QString::fromUtf8(sqlite3_errmsg(motor));
    if (!contexto.isEmpty())
        descricao += u" [%1]"_s.arg(contexto.left(200));
    const int primario = codigo & 0xFF;
    if (primario == SQLITE_BUSY || primario == SQLITE_LOCKED)
        descricao = u"A base de dados está bloqueada por outro programa (%1)."_s.arg(descricao);
    if (primario == SQLITE_READONLY)
        descricao = u"A base de dados só pode ser lida (%1)."_s.arg(descricao);
    if (primario == SQLITE_CORRUPT || primario == SQLITE_NOTADB) {
        // Only now: a check of the whole file costs minutes on a large one, so it stops at the first few findings.
        descricao = u"A base de dados \"%1\" está danificada (%2)."_s.arg(caminho, descricao);
        sqlite3_stmt *exame = nullptr;
        if (sqlite3_prepare_v2(motor, "PRAGMA quick_check(3)", -1, &exame, nullptr) == SQLITE_OK)
            while (sqlite3_step(exame) == SQLITE_ROW)
                descricao += u' ' + QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_column_text(exame, 0)));
        sqlite3_finalize(exame);
    }
    throw Falha(codigo, descricao);
}

sqlite3_stmt *Ligacao::Interno::preparar(const QString &sql, const Parametros &valores) {
    const QByteArray utf8 = sql.toUtf8();
    sqlite3_stmt *instrucao = nullptr;
    int codigo = sqlite3_prepare_v2(bd->getHandle(), utf8.constData(), int(utf8.size()), &instrucao, nullptr);
    if (codigo != SQLITE_OK)
        falhar(codigo, sql);
    int posicao = 0;
    for (const QVariant &valor : valores) {
        codigo = ligar(instrucao, ++posicao, valor);
        if (codigo != SQLITE_OK) {
            sqlite3_finalize(instrucao);
            falhar(codigo, sql);
        }
    }
    return instrucao;
}

Recordset Ligacao::consultar(const QString &sql, const Parametros &valores) {
    if (!aberta())
        throw Falha(erros::objectoFechado, u"A base de dados não está aberta."_s);
    // A file read without locks must be opened again once somebody starts to write to it.
    if (m->imutavel && QFile::exists(m->caminho + u"-wal"_s)) {
        const QString caminho = m->caminho;
        fechar();
        abrir(caminho);
    }
    return {*this, m->preparar(sql, valores)};
}

qint64 Ligacao::executar(const QString &sql, const Parametros &valores) {
    Recordset rs = consultar(sql, valores);
    while (rs.avancar()) {
    }
    return sqlite3_changes64(m->bd->getHandle());
}

void Ligacao::executarGuiao(const QString &sql) {
    const int codigo = sqlite3_exec(m->bd->getHandle(), sql.toUtf8().constData(), nullptr, nullptr, nullptr);
    if (codigo != SQLITE_OK)
        m->falhar(codigo, sql);
}

Transaccao::Transaccao(Ligacao &ligacao) : m_ligacao(ligacao) {
    const int nivel = m_ligacao.interno().transaccoes;
    // The outermost one takes the write lock at once, so that it cannot fail half way for want of it.
    m_ligacao.executar(nivel == 0 ? u"BEGIN IMMEDIATE"_s : u"SAVEPOINT n%1"_s.arg(nivel));
    ++m_ligacao.interno().transaccoes;
}

void Transaccao::confirmar() {
    const int nivel = m_ligacao.interno().transaccoes - 1;
    m_ligacao.executar(nivel == 0 ? u"COMMIT"_s : u"RELEASE n%1"_s.arg(nivel));
    --m_ligacao.interno().transaccoes;
    m_pendente = false;
}

Transaccao::~Transaccao() {
    if (!m_pendente || !m_ligacao.aberta())
        return;
    const int nivel = --m_ligacao.interno().transaccoes;
    try {
        if (nivel == 0)
            m_ligacao.executar(u"ROLLBACK"_s);
        else
            m_ligacao.executarGuiao(u"ROLLBACK TO n%1; RELEASE n%1"_s.arg(nivel));
    } catch (const Falha &) { // the engine has rolled back by itself already
    }
}

Ligacao &ligacaoPartilhada() {
    if (!estado().cnBD)
        estado().cnBD = std::make_unique<Ligacao>();
    return static_cast<Ligacao &>(*estado().cnBD);
}

Ligacao &cnBD() {
    Ligacao &ligacao = ligacaoPartilhada();
    if (!ligacao.aberta())
        throw Falha(erros::objectoFechado, u"A base de dados não está aberta."_s);
    return ligacao;
}
