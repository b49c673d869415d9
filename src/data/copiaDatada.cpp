#include "data/copiaDatada.h"

#include "core/eventos.h"
#include "core/falha.h"
#include "core/ficheiroInteiro.h"
#include "core/literais.h"
#include "core/modTraducoes.h"
#include "data/ligacao.h"
#include "data/motor.h"

#include <QFile>
#include <QFileInfo>
#include <QStorageInfo>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

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

} // namespace

QString copiaDatada(const Vigia &vigia, const std::function<void(int, int)> &progresso) {
    const QFileInfo original(cnBD().caminho());
    const QString nome = nomeLivre(original);
    cnBD().exigirNoLugar(); // a copy of another file would be no copy
    FicheiroParcial parcial(original, nome);
    cnBD().copiarPara(parcial.caminho(), {[&](qint64 bytes) { verificarEspaco(original.absolutePath(), bytes); },
                                          [&](int feitas, int total) {
                                              if (progresso)
                                                  progresso(feitas, total);
                                              vigia.passar();
                                          }});
    parcial.concluir(vigia);
    return nome;
}
