#include "core/ficheiroInteiro.h"

#include "core/literais.h"

#include <QDir>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QSysInfo>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr mode_t modoPorOmissao = 0666;

QString inicioDoNome() {
    return u".vistrel-%1-"_s.arg(qChecksum(QSysInfo::machineUniqueId()), 4, 16, QChar(u'0'));
}
constexpr QStringView fimDoNome = u".parcial";

int trancar(int ficheiro, int como) {
    int r = 0;
    do
        r = ::flock(ficheiro, como);
    while (r != 0 && errno == EINTR);
    return r;
}

int semNome(const QString &pasta, mode_t modo) {
    if (::access("/proc/self/fd", X_OK) != 0) // the way by which it gets its name
        return -1;
    return ::open(QFile::encodeName(pasta).constData(), O_TMPFILE | O_RDWR | O_CLOEXEC, modo);
}

} // namespace

namespace parciais {

QString nomeNovo(const QString &pasta) {
    const auto acaso = QRandomGenerator::global()->generate64();
    return pasta + u'/' + inicioDoNome() + u"%1"_s.arg(acaso, 16, 16, QChar(u'0')) + fimDoNome;
}

int criar(QString &caminho, const QString &pasta, unsigned modo) {
    for (;;) {
        caminho = nomeNovo(pasta);
        const int ficheiro =
            ::open(QFile::encodeName(caminho).constData(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, mode_t(modo));
        if (ficheiro < 0 && errno == EEXIST)
            continue;
        if (ficheiro < 0)
            return -1;
        trancar(ficheiro, LOCK_EX); // without locks nobody can take it for a left one either
        struct stat st {};
        if (::fstat(ficheiro, &st) != 0 || st.st_nlink > 0)
            return ficheiro;
        ::close(ficheiro); // taken for a left one before it was locked
    }
}

void limpar(const QString &pasta) {
    const auto filtro = QStringList{QString(inicioDoNome() + u'*' + fimDoNome)};
    for (const QString &nome : QDir(pasta).entryList(filtro, QDir::Files | QDir::Hidden)) {
        const QByteArray caminho = QFile::encodeName(pasta + u'/' + nome);
        const int ficheiro = ::open(caminho.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
        if (ficheiro < 0)
            continue;
        struct stat st {};
        if (::fstat(ficheiro, &st) == 0 && st.st_uid == ::geteuid() && trancar(ficheiro, LOCK_EX | LOCK_NB) == 0) {
            ::unlink(caminho.constData());
            ::unlink(QByteArray(caminho + "-journal").constData()); // of a copy of the database
        }
        ::close(ficheiro);
    }
}

bool levarAoDisco(int ficheiro, const std::function<void()> &passar) {
    constexpr qint64 bytesPorEscoamento = 4 << 20;
    struct stat st {};
    for (qint64 i = 0; passar && ::fstat(ficheiro, &st) == 0 && i < st.st_size; i += bytesPorEscoamento) {
        // Not known to every file system; the last call decides.
        sync_file_range(ficheiro, i, bytesPorEscoamento,
                        SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE | SYNC_FILE_RANGE_WAIT_AFTER);
        passar();
    }
    return ::fsync(ficheiro) == 0 || errno == EINVAL; // EINVAL: a file system that cannot
}

} // namespace parciais

FicheiroInteiro::FicheiroInteiro(const QString &destino) {
    constexpr int maximoDeLigacoes = 40; // the system's own measure of a ring of links
    QFileInfo info(destino);
    for (int i = 0; i < maximoDeLigacoes && info.isSymLink(); ++i) // canonical paths need a file that is there
        info.setFile(info.symLinkTarget());
    m_destino = info.absoluteFilePath();
}

FicheiroInteiro::~FicheiroInteiro() {
    if (!m_parcial.isEmpty())
        ::unlink(m_parcial.constData());
}

bool FicheiroInteiro::falhar(int codigo) {
    setErrorString(qt_error_string(codigo));
    return false;
}

bool FicheiroInteiro::abrir(bool comNome) {
    const QString pasta = QFileInfo(m_destino).absolutePath();
    const QByteArray nome = QFile::encodeName(m_destino);
    struct stat antes {};
    const bool existe = ::stat(nome.constData(), &antes) == 0;
    if (existe && !S_ISREG(antes.st_mode))
        return falhar(S_ISDIR(antes.st_mode) ? EISDIR : EINVAL);
    if (existe && ::access(nome.constData(), W_OK) != 0)
        return falhar(errno);
    parciais::limpar(pasta);
    int ficheiro = comNome ? -1 : semNome(pasta, modoPorOmissao);
    if (ficheiro < 0) {
        QString parcial;
        ficheiro = parciais::criar(parcial, pasta, modoPorOmissao);
        if (ficheiro < 0)
            return falhar(errno);
        m_parcial = QFile::encodeName(parcial);
    }
    if (existe && ::fchmod(ficheiro, antes.st_mode & 07777) != 0)
        errno = 0; // as far as the system allows it
    return open(ficheiro, QIODevice::WriteOnly | QIODevice::Unbuffered, QFileDevice::AutoCloseHandle);
}

bool FicheiroInteiro::darNome(const QByteArray &nome) {
    if (m_parcial.isEmpty()) {
        const QByteArray aberto = "/proc/self/fd/" + QByteArray::number(handle());
        const QByteArray parcial = QFile::encodeName(parciais::nomeNovo(QFileInfo(m_destino).absolutePath()));
        trancar(handle(), LOCK_EX | LOCK_NB);
        if (::linkat(AT_FDCWD, aberto.constData(), AT_FDCWD, parcial.constData(), AT_SYMLINK_FOLLOW) != 0)
            return false;
        m_parcial = parcial;
    }
    return ::rename(m_parcial.constData(), nome.constData()) == 0;
}

bool FicheiroInteiro::concluir(const std::function<void()> &passar) {
    if (!isOpen() || error() != QFileDevice::NoError) // what a write has said already
        return false;
    if (!parciais::levarAoDisco(handle(), passar) || !darNome(QFile::encodeName(m_destino)))
        return falhar(errno);
    m_parcial.clear();
    close();
    return true;
}
