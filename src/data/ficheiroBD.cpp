#include "data/ficheiroBD.h"

#include "core/falha.h"
#include "core/literais.h"
#include "core/modTraducoes.h"

#include <QFile>
#include <QFileInfo>

namespace {

constexpr int tamanhoDoCabecalho = 100;

// Positions in the file's header.
constexpr int posPagina = 16, posVersaoEscrita = 18, posContador = 24, posPaginas = 28, posContadorDasPaginas = 92;
constexpr int versaoDiario = 2; // written with a log beside the file

quint32 inteiroBE(const QByteArray &b, int posicao) {
    quint32 n = 0;
    for (int i = 0; i < 4; ++i)
        n = (n << 8) | static_cast<uchar>(b[posicao + i]);
    return n;
}

QString texto(const QString &chave, const QString &omissao) {
    return modTraducoes::texto(u"KelvarkAUX"_s, chave, omissao);
}

[[noreturn]] void recusar(const QString &caminho, const QString &motivo) {
    throw Falha(erros::falhaDoFicheiro,
                texto(u"BDRecusada"_s, u"\"%1\" %2 O ficheiro não foi alterado."_s).arg(caminho, motivo));
}

} // namespace

FicheiroBD examinarFicheiroBD(const QString &caminho) {
    const QFileInfo info(caminho);
    if (info.isDir())
        throw Falha(erros::falhaDoFicheiro,
                    texto(u"BDPasta"_s, u"\"%1\" é uma pasta, não uma base de dados."_s).arg(caminho));
    if (!info.exists())
        throw Falha(erros::falhaGeralBD, texto(u"BDNaoExiste"_s, u"Não existe o ficheiro \"%1\"."_s).arg(caminho));
    if (!info.isFile()) // a pipe or a device would be waited for
        throw Falha(erros::falhaDoFicheiro, texto(u"BDNaoFicheiro"_s, u"\"%1\" não é um ficheiro."_s).arg(caminho));
    QFile ficheiro(caminho);
    if (!ficheiro.open(QIODevice::ReadOnly))
        throw Falha(erros::falhaDoFicheiro,
                    texto(u"BDIlegivel"_s, u"Não é possível ler \"%1\": %2."_s).arg(caminho, ficheiro.errorString()));
    const QByteArray cabecalho = ficheiro.read(tamanhoDoCabecalho);
    const QByteArray motorAntigo = cabecalho.mid(4, 15);
    if (motorAntigo == "Standard Jet DB" || motorAntigo == "Standard ACE DB")
        recusar(caminho,
                texto(u"BDMotorAntigo"_s, u"está no formato do motor de base de dados antigo (Jet) e tem de ser "
                                          "convertido antes de ser usado."_s));
    if (cabecalho.isEmpty())
        recusar(caminho, texto(u"BDVazia"_s, u"está vazio."_s));
    if (cabecalho.size() < tamanhoDoCabecalho || !cabecalho.startsWith(QByteArray("SQLite format 3\0", 16)))
        recusar(caminho, texto(u"BDNaoBase"_s, u"não é uma base de dados."_s));

    // The number of pages counts only if the last writer kept it, and a log beside the file may hold the rest.
    const QFileInfo diario(caminho + u"-wal"_s);
    const bool temDiario = diario.exists() && diario.size() > 0;
    const int pagina = (static_cast<uchar>(cabecalho[posPagina]) << 8) | static_cast<uchar>(cabecalho[posPagina + 1]);
    const qint64 esperado = qint64(inteiroBE(cabecalho, posPaginas)) * (pagina == 1 ? 65536 : pagina);
    const bool contado = inteiroBE(cabecalho, posContador) == inteiroBE(cabecalho, posContadorDasPaginas);
    if (contado && ficheiro.size() < esperado && !temDiario)
        recusar(caminho, texto(u"BDTruncada"_s, u"está truncado: tem %1 bytes e devia ter %2."_s)
                             .arg(ficheiro.size())
                             .arg(esperado));

    const bool pastaGravavel = QFileInfo(info.absolutePath()).isWritable();
    const bool usaDiario = cabecalho[posVersaoEscrita] == versaoDiario;
    const QFileInfo indice(caminho + u"-shm"_s);
    if (usaDiario && !pastaGravavel && temDiario && !(indice.exists() && indice.isReadable()))
        throw Falha(
            erros::falhaDoFicheiro,
            texto(u"BDPorRecolher"_s,
                  u"\"%1\" tem alterações por recolher e a pasta não permite a escrita. Dê permissão de escrita "
                  "na pasta ou abra a base de dados uma vez com o programa que a alterou."_s)
                .arg(caminho));
    FicheiroBD f;
    f.gravavel = info.isWritable() && (pastaGravavel || (diario.isWritable() && indice.isWritable()));
    f.imutavel = !f.gravavel && usaDiario && !pastaGravavel && !indice.exists();
    return f;
}
