#include "manutencao/estadoCaminhos.h"

#include "core/estado.h"
#include "core/falha.h"
#include "core/modINI.h"
#include "core/modTraducoes.h"
#include "data/ligacao.h"

#include <QDir>
#include <QFileInfo>

namespace {

using estadoCaminhos::EstadoCaminho;
using estadoCaminhos::Grau;

QString texto(const QString &chave, const QString &omissao) {
    return modTraducoes::texto(u"VISTREL_frmConfiguracoes"_s, chave, omissao);
}

EstadoCaminho bom() {
    return {Grau::Bom, texto(u"EstadoBom"_s, u"Em condições"_s)};
}

EstadoCaminho porPreencher() {
    return {Grau::Mau, texto(u"EstadoVazio"_s, u"Por preencher"_s)};
}

// The nearest folder above that is there decides whether the missing ones can be made.
EstadoCaminho daPasta(const QString &caminho) {
    QFileInfo info(caminho);
    if (info.exists() && !info.isDir())
        return {Grau::Mau, texto(u"EstadoNaoPasta"_s, u"Não é uma pasta"_s)};
    const bool existe = info.exists();
    while (!info.exists() && !info.isRoot() && info.absolutePath() != info.absoluteFilePath())
        info = QFileInfo(info.absolutePath());
    if (!info.isDir() || !info.isWritable())
        return {Grau::Mau, texto(u"EstadoSemEscrita"_s, u"Não é possível escrever nesta pasta"_s)};
    return existe ? bom() : EstadoCaminho{Grau::Aviso, texto(u"EstadoPorCriar"_s, u"A pasta será criada"_s)};
}

QString semFim(const QString &pasta) {
    return QDir::cleanPath(QDir(pasta).absolutePath());
}

} // namespace

namespace estadoCaminhos {

EstadoCaminho daBD(const QString &caminho) {
    if (caminho.isEmpty())
        return porPreencher();
    try {
        Ligacao sonda;
        sonda.definirEspera(0); // a locked database is not waited for
        sonda.abrir(caminho);
        if (sonda.soLeitura())
            return {Grau::Aviso, texto(u"EstadoSoLeitura"_s, u"Só pode ser lida"_s)};
        return bom();
    } catch (const Falha &f) {
        return {Grau::Mau, f.descricao()};
    }
}

EstadoCaminho daExportacao(const QString &caminho) {
    if (caminho.trimmed().isEmpty())
        return porPreencher();
    return daPasta(caminho.startsWith(u'.') ? estado().PastaPrograma + caminho.mid(1) : caminho);
}

EstadoCaminho dosINIs(const QString &caminho) {
    if (caminho.isEmpty())
        return porPreencher();
    const EstadoCaminho pasta = daPasta(caminho);
    const QString emVigor = modINI::GetINIPATH();
    if (pasta.grau == Grau::Mau || semFim(caminho) == semFim(emVigor))
        return pasta;
    // What is stored here is not what the programs of the installation read.
    return {Grau::Aviso, texto(u"EstadoOutraPasta"_s, u"Em vigor: %1 (Kelvark.ini)"_s).arg(emVigor)};
}

} // namespace estadoCaminhos
