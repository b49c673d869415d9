#include "data/sqlite/motorSQLite.h"

#include "core/falha.h"
#include "core/literais.h"
#include "core/modTraducoes.h"
#include "data/avarias.h"
#include "data/sqlite/ficheiroBD.h"
#include "data/sqlite/instrucaoSQLite.h"

#include <SQLiteCpp/Exception.h>

#include <QElapsedTimer>
#include <QFile>

#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

namespace {

// A page that leaves the cache and is changed again makes the commit read the whole log anew, so hot pages must stay
// while something is written; reading needs no more than the engine's own measure.
constexpr const char *memoriaParaEscrever = "PRAGMA cache_size = -16384";
constexpr const char *memoriaParaLer = "PRAGMA cache_size = -2000";

QString texto(const QString &chave, const QString &omissao) {
    return modTraducoes::texto(u"KelvarkAUX"_s, chave, omissao);
}

Avaria avariaDe(int codigo) {
    switch (codigo) {
    case SQLITE_BUSY:
        return Avaria::Ocupada;
    case SQLITE_LOCKED:
        return Avaria::OcupadaAqui;
    case SQLITE_READONLY:
        return Avaria::SoLeitura;
    case SQLITE_FULL:
        return Avaria::DiscoCheio;
    case SQLITE_IOERR:
        return Avaria::Disco;
    case SQLITE_CANTOPEN:
        return Avaria::NaoAbriu;
    case SQLITE_PERM:
        return Avaria::SemPermissao;
    case SQLITE_CONSTRAINT:
        return Avaria::Regra;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
        return Avaria::Danificada;
    default:
        return Avaria::Outra;
    }
}

std::shared_ptr<Motor> abrir(const QString &caminho, const Abertura &abertura) {
    try {
        return std::make_shared<MotorSQLite>(caminho, abertura);
    } catch (const SQLite::Exception &e) {
        throw Falha(
            erros::motorBD + e.getErrorCode(),
            texto(u"BDNaoAbre"_s, u"Não é possível abrir \"%1\" (%2)."_s).arg(caminho, QString::fromUtf8(e.what())));
    }
}

void criar(const QString &caminho, const char *esquema) {
    try {
        SQLite::Database bd(QFile::encodeName(caminho).toStdString(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
        bd.exec(esquema);
    } catch (const SQLite::Exception &e) {
        throw Falha(erros::falhaDoFicheiro,
                    u"Não é possível criar \"%1\" (%2)."_s.arg(caminho, QString::fromUtf8(e.what())));
    }
}

} // namespace

const FabricaDeMotor fabricaSQLite{&abrir, &criar};

MotorSQLite::Modo MotorSQLite::modoPara(const QString &caminho) {
    const FicheiroBD ficheiro = examinarFicheiroBD(caminho);
    const QByteArray nome = QFile::encodeName(caminho);
    // One thread: the engine's own lock, taken for every column read, would be paid for nothing.
    const int modo = (ficheiro.gravavel ? SQLite::OPEN_READWRITE : SQLite::OPEN_READONLY) | SQLite::OPEN_NOMUTEX;
    if (!ficheiro.imutavel)
        return {nome.toStdString(), modo, !ficheiro.gravavel, false};
    const QByteArray endereco = "file:" + nome.toPercentEncoding("/") + "?immutable=1";
    return {endereco.toStdString(), modo | SQLite::OPEN_URI, !ficheiro.gravavel, true};
}

MotorSQLite::MotorSQLite(const QString &caminho, const Abertura &abertura)
    : MotorSQLite(caminho, modoPara(caminho), abertura) {}

MotorSQLite::MotorSQLite(const QString &caminho, const Modo &modo, const Abertura &abertura)
    : Motor(caminho), m_bd(modo.endereco, modo.modo, abertura.esperaMs), m_soLeitura(modo.soLeitura),
      m_imutavel(modo.imutavel) {
    const QByteArray nome = QFile::encodeName(caminho);
    versaoDoEsquema();
    m_lugar.emplace(nome); // once it was read its log is there, too
    if (!m_soLeitura && abertura.recolha)
        m_recolha.emplace(
            m_bd.getHandle(), nome, [&lugar = *m_lugar] { return lugar.mantem(); }, *abertura.recolha);
}

qint64 MotorSQLite::versaoDoEsquema() {
    const std::unique_ptr<Instrucao> pergunta = preparar(u"PRAGMA user_version"_s, Uso::UmaVez);
    return pergunta->avancar() ? pergunta->inteiro(0) : 0;
}

void MotorSQLite::definirEspera(int ms) {
    sqlite3_busy_timeout(m_bd.getHandle(), ms);
}

// A file read without locks must be opened again once somebody starts to write to it.
bool MotorSQLite::desactualizado() const {
    return m_imutavel && QFile::exists(caminho() + u"-wal"_s);
}

std::unique_ptr<Instrucao> MotorSQLite::preparar(const QString &sql, Uso uso) {
    const QByteArray utf8 = sql.toUtf8();
    sqlite3_stmt *instrucao = nullptr;
    const char *resto = nullptr;
    const int codigo = sqlite3_prepare_v3(m_bd.getHandle(), utf8.constData(), int(utf8.size()) + 1,
                                          uso == Uso::Muitas ? SQLITE_PREPARE_PERSISTENT : 0, &instrucao, &resto);
    if (codigo != SQLITE_OK)
        falhar(codigo, sql);
    if (!instrucao)
        return nullptr;
    auto preparada = std::make_unique<InstrucaoSQLite>(*this, instrucao);
    return QByteArrayView(resto).trimmed().isEmpty() ? std::move(preparada) : nullptr;
}

int MotorSQLite::directo(const QByteArray &sql) {
    return sqlite3_exec(m_bd.getHandle(), sql.constData(), nullptr, nullptr, nullptr);
}

void MotorSQLite::executarGuiao(const QString &sql) {
    if (const int codigo = directo(sql.toUtf8()); codigo != SQLITE_OK)
        falhar(codigo, sql);
}

qint64 MotorSQLite::alteradas() const {
    return sqlite3_total_changes64(m_bd.getHandle());
}

bool MotorSQLite::emTransaccao() const {
    return sqlite3_get_autocommit(m_bd.getHandle()) == 0;
}

void MotorSQLite::iniciar() {
    directo(memoriaParaEscrever);
    executarGuiao(u"BEGIN IMMEDIATE"_s);
}

int MotorSQLite::confirmar() {
    const int codigo = directo("COMMIT");
    if (codigo == SQLITE_OK)
        directo(memoriaParaLer);
    return codigo;
}

void MotorSQLite::anular() {
    directo("ROLLBACK"); // a failure means that the engine has undone it by itself already
    directo(memoriaParaLer);
}

void MotorSQLite::adiantarConfirmacao() {
    sqlite3_db_cacheflush(m_bd.getHandle());
    const int diario = ::open(QByteArray(QFile::encodeName(caminho()) + "-wal").constData(), O_RDONLY | O_CLOEXEC);
    if (diario >= 0) {
        ::fdatasync(diario);
        ::close(diario);
    }
}

QString MotorSQLite::examinar() {
    // The check reads the whole file, minutes on a large one: it is stopped after a moment, and made only once.
    constexpr qint64 maximoMs = 1000;
    constexpr int instrucoesEntreOlhares = 1000;
    constexpr auto passouDoTempo = [](void *relogio) -> int {
        return static_cast<QElapsedTimer *>(relogio)->elapsed() > maximoMs ? 1 : 0;
    };
    sqlite3 *motor = m_bd.getHandle();
    QElapsedTimer relogio;
    relogio.start();
    sqlite3_progress_handler(motor, instrucoesEntreOlhares, passouDoTempo, &relogio);
    QString achados;
    sqlite3_stmt *exame = nullptr;
    int codigo = sqlite3_prepare_v2(motor, "PRAGMA quick_check(3)", -1, &exame, nullptr);
    while (codigo == SQLITE_OK || codigo == SQLITE_ROW) {
        codigo = sqlite3_step(exame);
        if (codigo == SQLITE_ROW)
            achados += u' ' + QString::fromUtf8(reinterpret_cast<const char *>(sqlite3_column_text(exame, 0)));
    }
    if (codigo == SQLITE_INTERRUPT)
        achados += u' ' + texto(u"BDExameInterrompido"_s, u"(exame interrompido)"_s);
    else if (codigo != SQLITE_DONE)
        achados += u' ' + QString::fromUtf8(sqlite3_errmsg(motor));
    sqlite3_finalize(exame);
    sqlite3_progress_handler(motor, 0, nullptr, nullptr);
    return achados.trimmed();
}

void MotorSQLite::falhar(int codigo, const QString &contexto) {
    const int primario = codigo & 0xFF;
    const Avaria avaria = avariaDe(primario);
    QString descricao = u"%1 (%2)."_s.arg(avarias::texto(avaria), QString::fromUtf8(sqlite3_errmsg(m_bd.getHandle())));
    if (!contexto.isEmpty())
        descricao += u" [%1]"_s.arg(contexto.left(200));
    if (avaria == Avaria::Danificada) {
        if (m_exame.isEmpty())
            m_exame = examinar();
        descricao += u' ' + texto(u"BDExame"_s, u"Ficheiro: \"%1\". Exame: %2"_s).arg(caminho(), m_exame);
    }
    throw Falha(erros::motorBD + codigo, descricao);
}
