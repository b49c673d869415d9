#include "poseidon/descarga/logBruto.h"

#include "core/estado.h"
#include "core/falha.h"
#include "core/literais.h"
#include "core/modINI.h"
#include "platform/unit/PosLog.h"
#include "poseidon/ficheiroSeguro.h"
#include "poseidon/substituidas2251.h"

#include <QDir>
#include <QDirIterator>
#include <QFileInfo>

#include <algorithm>

namespace {

QString nomeDaUnidade(const QString &ip, qint32 porta) {
    QString unidade = ip + u'_' + QString::number(porta);
    std::replace_if(
        unidade.begin(), unidade.end(),
        [](QChar c) { return !c.isLetterOrNumber() && c != u'.' && c != u'-' && c != u'_'; }, u'_');
    return unidade;
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
    const QString unidade = nomeDaUnidade(ip, porta);
    const QString nome =
        FicheiroSeguro::nomeLivre(destino.filePath(unidade + agora.toString(u" yyyy-MM-dd HH-mm-ss"_s)), u".log"_s);

    FicheiroSeguro ficheiro(nome, passar);
    if (!ficheiro.abrir() || !log.gravarLinhas(ficheiro) || !ficheiro.manter())
        throw Falha(erros::falhaDoFicheiro, nome + u": "_s + ficheiro.erro());
    return nome;
}

bool guardado(const QString &caminho) {
    const QString pastaReal = QFileInfo(pasta()).canonicalFilePath();
    return !pastaReal.isEmpty() && QFileInfo(caminho).canonicalFilePath().startsWith(pastaReal + u'/');
}

QString ultimasSubstituidas(const QString &ip, qint32 porta) {
    QFileInfo ultima;
    QDirIterator i(pasta(), {nomeDaUnidade(ip, porta) + u" *"_s + substituidas2251::fimDoNome}, QDir::Files,
                   QDirIterator::Subdirectories);
    while (i.hasNext()) {
        i.next();
        if (!ultima.exists() || ultima.lastModified() < i.fileInfo().lastModified())
            ultima = i.fileInfo();
    }
    return ultima.filePath();
}

} // namespace logBruto
