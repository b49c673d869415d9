#pragma once

#include "core/ficheiroDirecto.h"

#include <QFile>

#include <functional>

// A file that is written whole or not at all: what stood under its name stays until concluir() has seen every byte on
// the disk. Symbolic links are followed, the permissions of the file that is replaced are kept. Meanwhile the bytes
// have no name where the file system can do that, and nothing is left of a program that is killed; elsewhere they have
// one of those names below that the next such write recognises (parciais).
class FicheiroInteiro : public FicheiroDirecto<QFile> {
public:
    explicit FicheiroInteiro(const QString &destino);
    ~FicheiroInteiro() override;

    // False with errorString(), also when the file that stands there must not be written to. `comNome` asks for what is
    // done on file systems that know no files without a name.
    bool abrir(bool comNome = false);
    // False with errorString(): the old file stands. `passar` is called between the pieces that go to the disk, and may
    // throw.
    bool concluir(const std::function<void()> &passar = {});
    QString destino() const { return m_destino; }

private:
    bool falhar(int codigo);
    bool darNome(const QByteArray &nome);
    QString m_destino; // behind all links
    QByteArray m_parcial;
};

// Files that grow in a folder until they get their names. Each is locked by the program that writes to it, so that a
// later one can tell what was left behind by one that was killed.
namespace parciais {

QString nomeNovo(const QString &pasta); // of a file that is not there yet
// Makes the file and locks it; -1 with errno. The lock lasts as long as the descriptor.
int criar(QString &caminho, const QString &pasta, unsigned modo);
// Removes what killed programs of this user and this computer have left.
void limpar(const QString &pasta);

// Brings a file to the disk in pieces: one call would hold up the event loop for seconds. False with errno.
bool levarAoDisco(int ficheiro, const std::function<void()> &passar);

} // namespace parciais
