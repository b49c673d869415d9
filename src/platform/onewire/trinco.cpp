#include "platform/onewire/trinco.h"

#include "core/literais.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace onewire {

QString Trinco::ficheiro(const QString &caminho) {
    const QString canonico = QFileInfo(caminho).canonicalFilePath();
    const QByteArray marca =
        QCryptographicHash::hash((canonico.isEmpty() ? caminho : canonico).toUtf8(), QCryptographicHash::Sha1);
    const QFileInfo comum(u"/run/lock"_s);
    const QString pasta = comum.isDir() && comum.isWritable() ? comum.filePath() : QDir::tempPath();
    return pasta + u"/vistrel-1wire-"_s + QString::fromLatin1(marca.toHex().left(16));
}

Trinco::Trinco(const QString &caminho) {
    const QByteArray nome = QFile::encodeName(ficheiro(caminho));
    // In a shared folder the system may forbid creating what another user has made, but not opening it.
    m_fd = ::open(nome.constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW);
    if (m_fd < 0)
        m_fd = ::open(nome.constData(), O_RDONLY | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0644);
    if (m_fd >= 0 && ::flock(m_fd, LOCK_EX | LOCK_NB) != 0) {
        ::close(m_fd);
        m_fd = -1;
    }
}

Trinco::~Trinco() {
    if (m_fd >= 0)
        ::close(m_fd);
}

} // namespace onewire
