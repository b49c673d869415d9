#include "core/modINI.h"

#include "core/estado.h"
#include "core/literais.h"
#include "core/perfil.h"
#include "core/rotina.h"

#include <QFile>
#include <QSaveFile>

#include <ctime>
#include <sys/stat.h>

namespace {

// Identity of a file's content as far as its metadata tells; empty when missing or too fresh to be trusted
// (a rewrite within one tick of the file system's clock would not show).
QByteArray assinaturaDe(const QString &caminho) {
    struct stat st {};
    if (::stat(QFile::encodeName(caminho).constData(), &st) != 0)
        return {};
    timespec agora{};
    clock_gettime(CLOCK_REALTIME, &agora);
    const qint64 idadeNs = (agora.tv_sec - st.st_ctim.tv_sec) * 1'000'000'000LL + agora.tv_nsec - st.st_ctim.tv_nsec;
    if (idadeNs < 50'000'000)
        return {};
    return QByteArray::number(qulonglong(st.st_ino)) + ':' + QByteArray::number(qlonglong(st.st_size)) + ':' +
           QByteArray::number(qlonglong(st.st_ctim.tv_sec)) + '.' + QByteArray::number(qlonglong(st.st_ctim.tv_nsec));
}

std::shared_ptr<const Perfil> lerPerfil(const QString &caminho) {
    const QByteArray assinatura = assinaturaDe(caminho);
    Estado::PerfilLido &lido = estado().perfis[caminho];
    if (!assinatura.isEmpty() && lido.assinatura == assinatura)
        return lido.perfil;
    QFile ficheiro(caminho);
    const QByteArray bytes = ficheiro.open(QIODevice::ReadOnly) ? ficheiro.readAll() : QByteArray();
    lido = {assinatura, std::make_shared<const Perfil>(bytes)};
    return lido.perfil;
}

// A missing folder makes the write fail silently: the profile calls' result was never looked at.
void gravarValor(const QString &seccao, const QString &chave, const QString &valor, const QString &caminho) {
    QByteArray antes;
    if (QFile atual(caminho); atual.exists()) {
        if (!atual.open(QIODevice::ReadOnly))
            return; // never replace a file whose other lines could not be read
        antes = atual.readAll();
    }
    Perfil perfil(antes);
    perfil.definir(seccao, chave, valor);
    const QByteArray depois = perfil.bytes();
    if (depois == antes)
        return;
    QSaveFile ficheiro(caminho);
    if (ficheiro.open(QIODevice::WriteOnly) && ficheiro.write(depois) == depois.size())
        ficheiro.commit();
    estado().perfis.remove(caminho);
}

QString caminhoDoFicheiro(const QString &ficheiro) {
    return modINI::GetINIPATH() + ficheiro + u".ini";
}

} // namespace

namespace modINI {

QString LerValorINI(const QString &seccao, const QString &chave, const QString &omissao, const QString &caminho) {
    return Rotina("modINI.LerValorINI",
                  [&] { return lerPerfil(caminho)->valor(seccao, chave).value_or(omissao).left(maximoDeCaracteres); });
}

QString GetSetting(const QString &ficheiro, const QString &seccao, const QString &chave, const QString &omissao) {
    return Rotina("modINI.GetSetting",
                  [&] { return LerValorINI(seccao, chave, omissao, caminhoDoFicheiro(ficheiro)); });
}

bool SaveSetting(const QString &ficheiro, const QString &seccao, const QString &chave, const QString &valor) {
    return Rotina("modINI.SaveSetting", [&] {
        gravarValor(seccao, chave, valor, caminhoDoFicheiro(ficheiro));
        return true;
    });
}

QString GetSettingINIPATH(const QString &seccao, const QString &chave, const QString &omissao) {
    return Rotina("modINI.GetSettingINIPATH",
                  [&] { return LerValorINI(seccao, chave, omissao, estado().PastaPrograma + u"/Kelvark.ini"); });
}

bool SaveSettingINIPATH(const QString &seccao, const QString &chave, const QString &valor) {
    return Rotina("modINI.SaveSettingINIPATH", [&] {
        gravarValor(seccao, chave, valor, estado().PastaPrograma + u"/Vistrel.ini");
        return true;
    });
}

QString GetINIPATH() {
    return Rotina("modINI.GetINIPATH", [&] {
        QString pasta = GetSettingINIPATH(u"INI"_s, u"Path"_s);
        if (pasta.isEmpty())
            pasta = estado().PastaPrograma;
        return pasta.endsWith(u'/') || pasta.endsWith(u'\\') ? pasta : pasta + u'/';
    });
}

} // namespace modINI
