#include "core/modINI.h"

#include "core/estado.h"
#include "core/falha.h"
#include "core/ficheiroInteiro.h"
#include "core/literais.h"
#include "core/modTraducoes.h"
#include "core/perfil.h"
#include "core/rotina.h"

#include <QFile>
#include <QFileInfo>
#include <QThread>

#include <cerrno>
#include <ctime>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

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

using Valores = QList<modINI::Definicao>;

// One writer at a time among the programs that share the settings folder. Whoever cannot have it (no permission, a
// file system without locks, a stopped neighbour) goes on without: the file stays whole in any case.
class Vez {
public:
    explicit Vez(const QString &caminho) {
        const QByteArray pasta = QFile::encodeName(QFileInfo(caminho).absolutePath());
        m_pasta = ::open(pasta.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        // Looked for often: a neighbour that writes on and on leaves only short gaps.
        constexpr int tentativas = 8000;
        constexpr unsigned long pausaUs = 250;
        for (int i = 0; m_pasta >= 0 && i < tentativas && ::flock(m_pasta, LOCK_EX | LOCK_NB) != 0; ++i) {
            if (errno != EWOULDBLOCK && errno != EINTR)
                break;
            QThread::usleep(pausaUs);
        }
    }
    ~Vez() {
        if (m_pasta >= 0)
            ::close(m_pasta);
    }
    Vez(const Vez &) = delete;
    Vez &operator=(const Vez &) = delete;

private:
    int m_pasta = -1;
};

bool mesmoFicheiro(const struct stat &a, const struct stat &b) {
    return a.st_ino == b.st_ino && a.st_size == b.st_size && a.st_ctim.tv_sec == b.st_ctim.tv_sec &&
           a.st_ctim.tv_nsec == b.st_ctim.tv_nsec;
}

QString caminhoDoFicheiro(const QString &ficheiro) {
    return modINI::GetINIPATH() + ficheiro + u".ini";
}

[[noreturn]] void falhar(const QString &caminho, const QString &motivo) {
    throw Falha(
        erros::falhaDoFicheiro,
        modTraducoes::texto(u"KelvarkAUX"_s, u"DefinicoesNaoGuardadas"_s,
                            u"Não foi possível guardar as definições em \"%1\": %2. O ficheiro ficou como estava."_s)
            .arg(caminho, motivo));
}

// False when another program has written meanwhile.
bool tentarGravar(const Valores &valores, const QString &caminho) {
    const QByteArray nome = QFile::encodeName(caminho);
    struct stat lido {};
    const bool existia = ::stat(nome.constData(), &lido) == 0;
    QByteArray antes;
    if (existia) {
        QFile actual(caminho); // never replace a file whose other lines could not be read
        if (!actual.open(QIODevice::ReadOnly))
            falhar(caminho, actual.errorString());
        antes = actual.readAll();
        if (actual.error() != QFileDevice::NoError)
            falhar(caminho, actual.errorString());
    }
    Perfil perfil(antes);
    if (existia && perfil.seccoes().isEmpty() && caminho == caminhoDoFicheiro(estado().NomePrograma))
        perfil.definir(u"CONFIGURACOES"_s, u"PWD"_s, modINI::valorPerdido.toString());
    for (const modINI::Definicao &v : valores)
        perfil.definir(v.seccao, v.chave, v.valor);
    const QByteArray depois = perfil.bytes();
    if (depois == antes)
        return true;
    FicheiroInteiro ficheiro(caminho);
    if (!ficheiro.abrir() || ficheiro.write(depois) != depois.size())
        falhar(caminho, ficheiro.errorString());
    // Where the system allows it, the group that shares the file keeps it.
    if (existia && ::fchown(ficheiro.handle(), lido.st_uid, lido.st_gid) != 0 &&
        ::fchown(ficheiro.handle(), static_cast<uid_t>(-1), lido.st_gid) != 0)
        errno = 0;
    // Another program, which knows nothing of the turns, may have written since.
    struct stat agora {};
    const bool existe = ::stat(nome.constData(), &agora) == 0;
    if (existe != existia || (existe && !mesmoFicheiro(agora, lido)))
        return false;
    if (!ficheiro.concluir())
        falhar(caminho, ficheiro.errorString());
    return true;
}

void gravarValores(const Valores &valores, const QString &caminho) {
    const Vez vez(caminho);
    bool feito = false;
    constexpr int tentativas = 20;
    for (int i = 0; i < tentativas && !feito; ++i)
        feito = tentarGravar(valores, caminho);
    estado().perfis.remove(caminho);
    if (!feito)
        falhar(caminho, modTraducoes::texto(u"KelvarkAUX"_s, u"DefinicoesMudam"_s,
                                            u"outro programa altera o ficheiro sem parar"_s));
}

// For the many writes that nobody is told of (places of windows, the ring of errors itself): not reported.
template <typename Gravacao>
bool conseguiu(const char *fonte, Gravacao &&gravar) {
    return Rotina(fonte, [&] {
        try {
            gravar();
            return true;
        } catch (const Falha &) {
            return false;
        }
    });
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
    return SaveSettings(ficheiro, {{seccao, chave, valor}});
}

bool SaveSettings(const QString &ficheiro, const QList<Definicao> &valores) {
    return conseguiu("modINI.SaveSetting", [&] { Guardar(ficheiro, valores); });
}

void Guardar(const QString &ficheiro, const QList<Definicao> &valores) {
    gravarValores(valores, caminhoDoFicheiro(ficheiro));
}

QString GetSettingINIPATH(const QString &seccao, const QString &chave, const QString &omissao) {
    return Rotina("modINI.GetSettingINIPATH",
                  [&] { return LerValorINI(seccao, chave, omissao, estado().PastaPrograma + u"/Kelvark.ini"); });
}

bool SaveSettingINIPATH(const QString &seccao, const QString &chave, const QString &valor) {
    return conseguiu("modINI.SaveSettingINIPATH", [&] { GuardarINIPATH(seccao, chave, valor); });
}

void GuardarINIPATH(const QString &seccao, const QString &chave, const QString &valor) {
    gravarValores({{seccao, chave, valor}}, estado().PastaPrograma + u"/Vistrel.ini");
}

bool danificado(const QString &caminho) {
    QFile ficheiro(caminho);
    if (!ficheiro.exists())
        return false;
    if (!ficheiro.open(QIODevice::ReadOnly))
        return true;
    const QByteArray bytes = ficheiro.readAll();
    return ficheiro.error() != QFileDevice::NoError || Perfil(bytes).seccoes().isEmpty();
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
