#include "demo/clima.h"
#include "demo/gerador.h"
#include "demo/missoes.h"

#include "core/falha.h"
#include "core/ficheiroInteiro.h"
#include "core/literais.h"
#include "demo/unidadesVirtuais.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

namespace demonstracao {

namespace {

void escrever(const QString &caminho, const QString &texto) {
    FicheiroInteiro f(caminho);
    const QByteArray bytes = QString(texto).replace(u"\n"_s, u"\r\n"_s).toUtf8();
    if (!f.abrir() || f.write(bytes) != bytes.size() || !f.concluir())
        throw Falha(erros::falhaDoFicheiro, u"Não é possível escrever \"%1\": %2."_s.arg(caminho, f.errorString()));
}

// The language files of the source tree or beside the program, whichever there are.
void copiarLinguas(const QDir &definicoes) {
    const QDir programa(QCoreApplication::applicationDirPath());
    for (const QString &pasta : QStringList{programa.path(), programa.filePath(u"languages"_s), u"languages"_s}) {
        const QDir origem(pasta);
        for (const QString &nome : origem.entryList({u"Kelvark-*.ini"_s}, QDir::Files)) {
            const QString destino = definicoes.filePath(nome);
            if (QFileInfo(destino) == QFileInfo(origem.filePath(nome)))
                continue;
            QFile::remove(destino);
            QFile::copy(origem.filePath(nome), destino);
        }
    }
}

} // namespace

Resultado fazerInstalacao(const QString &pasta, const Pedido &pedido) {
    const QDir raiz(QDir(pasta).absolutePath());
    for (const QString &sub : {u"."_s, u"BD"_s, u"JPG"_s, u"definicoes"_s})
        if (!raiz.mkpath(sub))
            throw Falha(erros::falhaDoFicheiro, u"Não é possível criar a pasta \"%1\"."_s.arg(raiz.filePath(sub)));
    const QString base = raiz.filePath(u"BD/Kelvark.mdb"_s);
    const QString nova = base + u".nova"_s;
    for (const QString &fim : {u""_s, u"-wal"_s, u"-shm"_s})
        QFile::remove(nova + fim);
    const Resultado r = fazerBase(nova, pedido);
    for (const QString &fim : {u""_s, u"-wal"_s, u"-shm"_s})
        QFile::remove(base + fim);
    if (!QFile::rename(nova, base))
        throw Falha(erros::falhaDoFicheiro, u"Não é possível substituir \"%1\"."_s.arg(base));

    const QDir definicoes(raiz.filePath(u"definicoes"_s));
    escrever(raiz.filePath(u"Kelvark.ini"_s), u"[INI]\nPath=%1\n"_s.arg(definicoes.path()));
    escrever(definicoes.filePath(u"Vistrel.ini"_s),
             u"[BD]\nMAIN=%1\n\n[JPG]\nMAIN=%2\n\n"
             "[Lingua]\nACT=1\n1=Português\nL1=PT\n2=English\nL2=EN\n"
             "3=Čeština\nL3=CZ\n\n"
             "[D2251]\nPesquisa=127.0.0.2 127.0.0.3 127.0.0.4 127.0.0.5 "
             "127.0.0.6 127.0.0.7\nPortaConsola=%3\n"_s.arg(base, raiz.filePath(u"JPG"_s))
                 .arg(portaConsolaDasUnidades));
    escrever(raiz.filePath(u"unidades.txt"_s), argumentosDasUnidades(pedido.semente));
    // The settings shared with the capture service: the reader is a drawer of virtual buttons.
    const QString gaveta = raiz.filePath(u"gaveta"_s);
    const Leitor leitor = fazerGaveta(gaveta, Clima(pedido.semente), r.fim);
    escrever(definicoes.filePath(u"Kelvark.ini"_s),
             u"[LIAGACAOHARDWARE]\nPortType=%1\nPortNum=%2\nDispositivo=%3\n1WireDeviceID=%4\nCaminho%1.%2=%5\n"_s
                 .arg(portaTipo)
                 .arg(portaNumero)
                 .arg(leitor.adaptador, leitor.adaptadorID, gaveta));
    copiarLinguas(definicoes);
    return r;
}

} // namespace demonstracao
