#include "core/falha.h"
#include "core/literais.h"
#include "core/modTraducoes.h"
#include "data/avarias.h"
#include "data/sqlite/motorSQLite.h"

#include <SQLiteCpp/Backup.h>
#include <SQLiteCpp/Exception.h>

#include <QFile>
#include <QFileInfo>

#include <sqlite3.h>

namespace {

constexpr int paginasPorPasso = 128; // half a megabyte: a few milliseconds on a slow disk
constexpr int esperaOcupadaMs = 5000;

QString texto(const QString &chave, const QString &omissao) {
    return modTraducoes::texto(u"KelvarkAUX"_s, chave, omissao);
}

std::string nomeNativo(const QString &caminho) {
    return QFile::encodeName(caminho).toStdString();
}

// What the engine keeps beside a file that it did not finish.
class SemRestos {
public:
    explicit SemRestos(QString caminho) : m_caminho(std::move(caminho)) {}
    ~SemRestos() { QFile::remove(m_caminho + u"-journal"_s); }
    SemRestos(const SemRestos &) = delete;
    SemRestos &operator=(const SemRestos &) = delete;

private:
    QString m_caminho;
};

void copiar(SQLite::Database &origem, const QString &destino, const AoCopiar &acompanhar) {
    const SemRestos limpo(destino);
    SQLite::Database copia(nomeNativo(destino), SQLite::OPEN_READWRITE, esperaOcupadaMs);
    copia.exec("PRAGMA synchronous = OFF"); // whoever asked brings it to the disk in pieces
    SQLite::Backup passos(copia, origem);
    int codigo = SQLITE_OK;
    while (codigo != SQLITE_DONE) {
        codigo = passos.executeStep(paginasPorPasso);
        if (codigo == SQLITE_BUSY || codigo == SQLITE_LOCKED)
            throw Falha(erros::motorBD + codigo, avarias::texto(Avaria::Ocupada) + u'.');
        const int total = passos.getTotalPageCount();
        acompanhar.progresso(total - passos.getRemainingPageCount(), total);
    }
}

} // namespace

void MotorSQLite::copiarPara(const QString &destino, const AoCopiar &acompanhar) {
    const QFileInfo original(caminho());
    try {
        // A connection of its own, whose read transaction holds one moment of the database for the whole copy:
        // otherwise each write of another program would start it over again, perhaps for ever.
        SQLite::Database origem(nomeNativo(original.absoluteFilePath()), SQLite::OPEN_READONLY, esperaOcupadaMs);
        origem.exec("BEGIN");
        const qint64 paginas = origem.execAndGet("PRAGMA page_count").getInt64();
        acompanhar.tamanho(paginas * origem.execAndGet("PRAGMA page_size").getInt64());
        copiar(origem, destino, acompanhar);
    } catch (const SQLite::Exception &e) {
        const QString motivo = e.getErrorCode() == SQLITE_FULL ? texto(u"CopiaDiscoCheio"_s, u"o disco está cheio"_s)
                                                               : QString::fromUtf8(e.what());
        throw Falha(e.getErrorCode() > 0 ? erros::motorBD + e.getErrorCode() : erros::falhaDoFicheiro,
                    texto(u"CopiaFalhou"_s, u"A cópia da base de dados em \"%1\" falhou: %2."_s)
                        .arg(original.absolutePath(), motivo));
    }
}
