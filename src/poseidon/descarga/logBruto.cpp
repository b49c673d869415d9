#include "poseidon/descarga/logBruto.h"

#include "core/estado.h"
#include "core/falha.h"
#include "core/literais.h"
#include "core/modINI.h"
#include "platform/unit/PosLog.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <fcntl.h>
#include <unistd.h>

namespace {

// Goes to the disk piece by piece, so that no single wait is long.
class FicheiroSeguro : public QIODevice {
public:
    FicheiroSeguro(const QString &caminho, const std::function<void()> &passar)
        : m_ficheiro(caminho), m_passar(passar) {}
    ~FicheiroSeguro() override {
        if (m_ficheiro.isOpen())
            m_ficheiro.remove();
    }
    bool abrir() {
        return m_ficheiro.open(QIODevice::WriteOnly | QIODevice::NewOnly | QIODevice::Unbuffered) &&
               open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    }
    QString erro() const { return m_ficheiro.errorString(); }
    bool acabar(const QString &nome) {
        if (!sincronizar() || !m_ficheiro.rename(nome))
            return false;
        m_ficheiro.close();
        return true;
    }

protected:
    qint64 readData(char *, qint64) override { return -1; }
    qint64 writeData(const char *dados, qint64 total) override {
        constexpr qint64 pedaco = 256 * 1024;
        for (qint64 feito = 0; feito < total;) {
            const qint64 agora = std::min(pedaco, total - feito);
            if (m_ficheiro.write(dados + feito, agora) != agora || !sincronizar())
                return -1;
            feito += agora;
            m_passar();
        }
        return total;
    }

private:
    bool sincronizar() { return m_ficheiro.flush() && ::fdatasync(m_ficheiro.handle()) == 0; }

    QFile m_ficheiro;
    const std::function<void()> &m_passar;
};

// A new name lasts only once its folder is on the disk.
bool sincronizarPasta(const QString &caminho) {
    const int pasta = ::open(QFile::encodeName(caminho).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (pasta < 0)
        return false;
    const bool feito = ::fsync(pasta) == 0;
    ::close(pasta);
    return feito;
}

QString nomeLivre(const QDir &pasta, const QString &base) {
    QString nome = pasta.filePath(base + u".log"_s);
    for (int n = 2; QFile::exists(nome) || QFile::exists(nome + u".parte"_s); ++n)
        nome = pasta.filePath(u"%1 (%2).log"_s.arg(base).arg(n));
    return nome;
}

} // namespace

namespace logBruto {

QString pasta() {
    return modINI::GetINIPATH() + u"Logs2251"_s;
}

QString gravar(const PosLog &log, const QString &ip, qint32 porta, const std::function<void()> &passar) {
    const QDateTime agora = estado().ambiente.agora();
    const QDir destino(pasta() + agora.toString(u"/yyyy/MM"_s));
    if (!destino.mkpath(u"."_s))
        throw Falha(erros::falhaDoFicheiro, destino.path());
    QString unidade = ip + u'_' + QString::number(porta);
    std::replace_if(
        unidade.begin(), unidade.end(),
        [](QChar c) { return !c.isLetterOrNumber() && c != u'.' && c != u'-' && c != u'_'; }, u'_');
    const QString nome = nomeLivre(destino, unidade + agora.toString(u" yyyy-MM-dd HH-mm-ss"_s));

    FicheiroSeguro ficheiro(nome + u".parte"_s, passar);
    if (!ficheiro.abrir() || !log.gravarLinhas(ficheiro) || !ficheiro.acabar(nome) || !sincronizarPasta(destino.path()))
        throw Falha(erros::falhaDoFicheiro, nome + u": "_s + ficheiro.erro());
    return nome;
}

} // namespace logBruto
