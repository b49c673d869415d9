#include "data/copiaDatada.h"

#include "core/eventos.h"
#include "core/falha.h"
#include "core/literais.h"
#include "core/modTraducoes.h"
#include "data/ligacao_interno.h"

#include <SQLiteCpp/Backup.h>
#include <SQLiteCpp/Exception.h>

#include <QFile>
#include <QFileInfo>
#include <QStorageInfo>

#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

namespace {

constexpr int paginasPorPasso = 128; // half a megabyte: a few milliseconds on a slow disk
constexpr qint64 bytesPorEscoamento = 4 << 20;
constexpr int esperaOcupadaMs = 5000;

QString texto(const QString &chave, const QString &omissao) {
    return modTraducoes::texto(u"KelvarkAUX"_s, chave, omissao);
}

// The file while it grows, under a name that nobody takes for a finished copy.
class FicheiroParcial {
public:
    explicit FicheiroParcial(const QString &caminho) : m_ficheiro(caminho) {}
    ~FicheiroParcial() {
        if (!m_criado)
            return;
        m_ficheiro.remove();
        QFile::remove(caminho() + u"-journal"_s);
    }
    FicheiroParcial(const FicheiroParcial &) = delete;
    FicheiroParcial &operator=(const FicheiroParcial &) = delete;

    void criar(QFile::Permissions permissoes) {
        if (!m_ficheiro.open(QIODevice::WriteOnly | QIODevice::NewOnly))
            falhar();
        m_criado = true;
        m_ficheiro.setPermissions(permissoes);
        m_ficheiro.close();
    }
    void concluir(const QString &nome) { // does not replace
        if (!m_ficheiro.rename(nome))
            falhar();
        m_criado = false;
    }
    QString caminho() const { return m_ficheiro.fileName(); }

private:
    [[noreturn]] void falhar() {
        throw Falha(erros::falhaDoFicheiro, texto(u"CopiaNaoCriada"_s, u"Não é possível criar a cópia \"%1\": %2."_s)
                                                .arg(m_ficheiro.fileName(), m_ficheiro.errorString()));
    }
    QFile m_ficheiro;
    bool m_criado = false;
};

QString parcialDe(const QString &copia) {
    return copia + u".parcial"_s;
}

QString nomeLivre(const QFileInfo &original) {
    const QString inicio = original.absolutePath() + u'/' + original.completeBaseName() + u'-' +
                           estado().ambiente.agora().toString(u"yyyy-MM-dd_HH-mm-ss");
    const QString fim = original.suffix().isEmpty() ? QString() : QString(u'.' + original.suffix());
    QString nome = inicio + fim;
    for (int n = 2; QFile::exists(nome) || QFile::exists(parcialDe(nome)); ++n)
        nome = inicio + u'-' + QString::number(n) + fim;
    return nome;
}

QString megabytes(qint64 bytes) {
    return estado().ambiente.locale.toString(double(bytes) / 1048576, 'f', 1) + u" MB";
}

void verificarEspaco(const QString &pasta, qint64 necessario) {
    const QStorageInfo disco(pasta);
    if (disco.isValid() && disco.bytesAvailable() < necessario)
        throw Falha(erros::falhaDoFicheiro,
                    texto(u"CopiaSemEspaco"_s,
                          u"Não há espaço em disco para a cópia da base de dados: são precisos %1 e há %2."_s)
                        .arg(megabytes(necessario), megabytes(disco.bytesAvailable())));
}

std::string nomeNativo(const QString &caminho) {
    return QFile::encodeName(caminho).toStdString();
}

void copiar(SQLite::Database &origem, const QString &destino, const Vigia &vigia,
            const std::function<void(int, int)> &progresso) {
    SQLite::Database copia(nomeNativo(destino), SQLite::OPEN_READWRITE, esperaOcupadaMs);
    copia.exec("PRAGMA synchronous = OFF"); // levarAoDisco() does it in pieces
    SQLite::Backup passos(copia, origem);
    int codigo = SQLITE_OK;
    while (codigo != SQLITE_DONE) {
        codigo = passos.executeStep(paginasPorPasso);
        if (codigo == SQLITE_BUSY || codigo == SQLITE_LOCKED)
            throw Falha(codigo, texto(u"BDOcupada"_s, u"A base de dados está bloqueada por outro programa"_s) + u'.');
        const int total = passos.getTotalPageCount();
        if (progresso)
            progresso(total - passos.getRemainingPageCount(), total);
        vigia.passar();
    }
}

// The engine would flush a large file in one call, which holds up the event loop for seconds.
void levarAoDisco(const QString &caminho, const Vigia &vigia) {
    QFile ficheiro(caminho);
    const bool aberto = ficheiro.open(QIODevice::ReadWrite | QIODevice::ExistingOnly);
    for (qint64 i = 0; aberto && i < ficheiro.size(); i += bytesPorEscoamento) {
        // Not known to every file system; the last call decides.
        sync_file_range(ficheiro.handle(), i, bytesPorEscoamento,
                        SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE | SYNC_FILE_RANGE_WAIT_AFTER);
        vigia.passar();
    }
    if (!aberto || fsync(ficheiro.handle()) != 0)
        throw Falha(erros::falhaDoFicheiro,
                    texto(u"CopiaNaoGuardada"_s, u"A cópia \"%1\" não ficou guardada no disco: %2."_s)
                        .arg(caminho, qt_error_string()));
}

} // namespace

QString copiaDatada(const Vigia &vigia, const std::function<void(int, int)> &progresso) {
    const QFileInfo original(cnBD().caminho());
    const QString nome = nomeLivre(original);
    FicheiroParcial parcial(parcialDe(nome));
    parcial.criar(QFile::permissions(original.absoluteFilePath()));
    try {
        // A connection of its own, whose read transaction holds one moment of the database for the whole copy:
        // otherwise each write of another program would start it over again, perhaps for ever.
        SQLite::Database origem(nomeNativo(original.absoluteFilePath()), SQLite::OPEN_READONLY, esperaOcupadaMs);
        origem.exec("BEGIN");
        const qint64 paginas = origem.execAndGet("PRAGMA page_count").getInt64();
        verificarEspaco(original.absolutePath(), paginas * origem.execAndGet("PRAGMA page_size").getInt64());
        copiar(origem, parcial.caminho(), vigia, progresso);
    } catch (const SQLite::Exception &e) {
        const QString motivo = e.getErrorCode() == SQLITE_FULL ? texto(u"CopiaDiscoCheio"_s, u"o disco está cheio"_s)
                                                               : QString::fromUtf8(e.what());
        throw Falha(e.getErrorCode() > 0 ? e.getErrorCode() : erros::falhaDoFicheiro,
                    texto(u"CopiaFalhou"_s, u"A cópia da base de dados em \"%1\" falhou: %2."_s)
                        .arg(original.absolutePath(), motivo));
    }
    levarAoDisco(parcial.caminho(), vigia);
    parcial.concluir(nome);
    return nome;
}
