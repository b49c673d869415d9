#include "data/copiaDatada.h"

#include "core/eventos.h"
#include "core/falha.h"
#include "core/ficheiroInteiro.h"
#include "core/literais.h"
#include "core/modTraducoes.h"
#include "data/ligacao_interno.h"

#include <SQLiteCpp/Backup.h>
#include <SQLiteCpp/Exception.h>

#include <QFile>
#include <QFileInfo>
#include <QStorageInfo>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr int paginasPorPasso = 128; // half a megabyte: a few milliseconds on a slow disk
constexpr int esperaOcupadaMs = 5000;

QString texto(const QString &chave, const QString &omissao) {
    return modTraducoes::texto(u"KelvarkAUX"_s, chave, omissao);
}

// The file while it grows, under a name that nobody takes for a finished copy. Kept open, and so locked, to its end.
class FicheiroParcial {
public:
    FicheiroParcial(const QFileInfo &original, const QString &nome) : m_nome(nome) {
        parciais::limpar(original.absolutePath());
        struct stat st {};
        const bool lido = ::stat(QFile::encodeName(original.absoluteFilePath()).constData(), &st) == 0;
        m_ficheiro = lido ? parciais::criar(m_caminho, original.absolutePath(), st.st_mode & 0777) : -1;
        if (m_ficheiro < 0)
            falhar();
        ::fchmod(m_ficheiro, st.st_mode & 0777); // also what the mask took
    }
    ~FicheiroParcial() {
        QFile::remove(m_caminho);
        QFile::remove(m_caminho + u"-journal"_s);
        ::close(m_ficheiro);
    }
    FicheiroParcial(const FicheiroParcial &) = delete;
    FicheiroParcial &operator=(const FicheiroParcial &) = delete;

    void concluir(const Vigia &vigia) { // does not replace
        if (!parciais::levarAoDisco(m_ficheiro, [&vigia] { vigia.passar(); }))
            throw Falha(erros::falhaDoFicheiro,
                        texto(u"CopiaNaoGuardada"_s, u"A cópia \"%1\" não ficou guardada no disco: %2."_s)
                            .arg(m_nome, qt_error_string()));
        if (::renameat2(AT_FDCWD, QFile::encodeName(m_caminho).constData(), AT_FDCWD,
                        QFile::encodeName(m_nome).constData(), RENAME_NOREPLACE) != 0 &&
            !(errno == EINVAL && QFile::rename(m_caminho, m_nome)))
            falhar();
    }
    QString caminho() const { return m_caminho; }

private:
    [[noreturn]] void falhar() {
        throw Falha(
            erros::falhaDoFicheiro,
            texto(u"CopiaNaoCriada"_s, u"Não é possível criar a cópia \"%1\": %2."_s).arg(m_nome, qt_error_string()));
    }
    QString m_nome;
    QString m_caminho;
    int m_ficheiro = -1;
};

QString nomeLivre(const QFileInfo &original) {
    const QString inicio = original.absolutePath() + u'/' + original.completeBaseName() + u'-' +
                           estado().ambiente.agora().toString(u"yyyy-MM-dd_HH-mm-ss");
    const QString fim = original.suffix().isEmpty() ? QString() : QString(u'.' + original.suffix());
    QString nome = inicio + fim;
    for (int n = 2; QFile::exists(nome); ++n)
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
    copia.exec("PRAGMA synchronous = OFF"); // concluir() does it in pieces
    SQLite::Backup passos(copia, origem);
    int codigo = SQLITE_OK;
    while (codigo != SQLITE_DONE) {
        codigo = passos.executeStep(paginasPorPasso);
        if (codigo == SQLITE_BUSY || codigo == SQLITE_LOCKED)
            throw Falha(erros::motorBD + codigo,
                        texto(u"BDOcupada"_s, u"A base de dados está bloqueada por outro programa"_s) + u'.');
        const int total = passos.getTotalPageCount();
        if (progresso)
            progresso(total - passos.getRemainingPageCount(), total);
        vigia.passar();
    }
}

} // namespace

QString copiaDatada(const Vigia &vigia, const std::function<void(int, int)> &progresso) {
    const QFileInfo original(cnBD().caminho());
    const QString nome = nomeLivre(original);
    cnBD().exigirNoLugar(); // a copy of another file would be no copy
    FicheiroParcial parcial(original, nome);
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
        throw Falha(e.getErrorCode() > 0 ? erros::motorBD + e.getErrorCode() : erros::falhaDoFicheiro,
                    texto(u"CopiaFalhou"_s, u"A cópia da base de dados em \"%1\" falhou: %2."_s)
                        .arg(original.absolutePath(), motivo));
    }
    parcial.concluir(vigia);
    return nome;
}
