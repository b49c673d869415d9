#include "data/sqlite/ficheiroBD.h"

#include "core/falha.h"
#include "core/literais.h"
#include "core/modTraducoes.h"

#include <QFile>
#include <QFileInfo>

#include <sqlite3.h>

#include <memory>

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

// The header and the size, read with the engine's own means: closing the file after opening it by any other way would
// take away the locks that the open connections of this process hold on it. Another program would then believe itself
// alone and remove the log that is still written to.
struct Inicio {
    QByteArray cabecalho; // shorter when the file is
    qint64 tamanho = 0;
};

Inicio lerInicio(const QString &caminho) {
    sqlite3 *bd = nullptr;
    const int codigo = sqlite3_open_v2(QFile::encodeName(caminho).constData(), &bd,
                                       SQLITE_OPEN_READONLY | SQLITE_OPEN_NOMUTEX, nullptr);
    const std::unique_ptr<sqlite3, int (*)(sqlite3 *)> fecho(bd, &sqlite3_close);
    const auto exigir = [&](bool lido) {
        if (!lido)
            throw Falha(erros::falhaDoFicheiro, texto(u"BDIlegivel"_s, u"Não é possível ler \"%1\": %2."_s)
                                                    .arg(caminho, qt_error_string(sqlite3_system_errno(bd))));
    };
    exigir(codigo == SQLITE_OK);
    sqlite3_file *ficheiro = nullptr;
    exigir(sqlite3_file_control(bd, "main", SQLITE_FCNTL_FILE_POINTER, &ficheiro) == SQLITE_OK && ficheiro->pMethods);
    const qint64 tamanho = QFileInfo(caminho).size();
    QByteArray cabecalho(int(qMin<qint64>(tamanho, tamanhoDoCabecalho)), '\0');
    exigir(cabecalho.isEmpty() ||
           ficheiro->pMethods->xRead(ficheiro, cabecalho.data(), int(cabecalho.size()), 0) == SQLITE_OK);
    return {cabecalho, tamanho};
}

FicheiroBD permissoesDe(const QString &caminho, bool usaDiario) {
    const QFileInfo info(caminho), diario(caminho + u"-wal"_s), indice(caminho + u"-shm"_s);
    const bool pastaGravavel = QFileInfo(info.absolutePath()).isWritable();
    const bool temDiario = diario.exists() && diario.size() > 0;
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
    const auto [cabecalho, tamanho] = lerInicio(caminho);
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
    if (contado && tamanho < esperado && !temDiario)
        recusar(caminho,
                texto(u"BDTruncada"_s, u"está truncado: tem %1 bytes e devia ter %2."_s).arg(tamanho).arg(esperado));
    return permissoesDe(caminho, cabecalho[posVersaoEscrita] == versaoDiario);
}
