#include "demo/gerador.h"

#include "core/datas.h"
#include "core/estado.h"
#include "core/falha.h"
#include "core/literais.h"
#include "data/criarBD.h"
#include "data/dialecto.h"
#include "data/ligacao.h"
#include "data/recordset.h"
#include "demo/historia.h"

#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>

namespace demonstracao {

namespace {

qint64 fimDaHistoria(const Pedido &p) {
    const QDateTime fim = p.fim.isValid() ? p.fim : estado().ambiente.agora();
    const qint64 t = qint64(datas::segundosDe(fim));
    return t - t % 300;
}

// Tables and rows of the base, for the totals told at the end.
qint64 contarLinhas(Ligacao &bd) {
    QStringList tabelas;
    Recordset nomes = bd.consultar(dialecto::tabelas.toString());
    while (nomes.avancar())
        tabelas.append(nomes.texto(0));
    qint64 n = 0;
    for (const QString &t : std::as_const(tabelas)) {
        Recordset rs = bd.consultar(u"SELECT Max("_s + dialecto::ordem + u") FROM " + t); // nothing was deleted
        n += rs.avancar() ? rs.inteiro(0) : 0;
    }
    return n;
}

// The indexes are made in one go at the end: sooner done than kept up row by row, and without half-empty pages.
QStringList largarIndices(Ligacao &bd) {
    QStringList nomes, guiao;
    {
        Recordset rs = bd.consultar(dialecto::indices.toString());
        while (rs.avancar()) {
            nomes.append(rs.texto(0));
            guiao.append(rs.texto(1));
        }
    }
    for (const QString &nome : std::as_const(nomes))
        bd.executar(u"DROP INDEX "_s + nome);
    return guiao;
}

void apagarComDiarios(const QString &caminho) {
    for (const QString &fim : {u""_s, u"-wal"_s, u"-shm"_s, u"-journal"_s})
        QFile::remove(caminho + fim);
}

qint64 preencher(const QString &caminho, const Pedido &pedido, qint64 fim) {
    Ligacao bd;
    bd.abrir(caminho);
    // Nobody else sees the file before it is renamed, and a maker that dies leaves nothing to recover. Opened again, as
    // the log that goes would pass for one that somebody took away.
    bd.consultar(u"PRAGMA journal_mode = DELETE"_s).avancar();
    bd.fechar();
    bd.abrir(caminho);
    bd.executar(u"PRAGMA journal_mode = OFF"_s);
    bd.executar(u"PRAGMA synchronous = OFF"_s);
    bd.executar(u"PRAGMA cache_size = -65536"_s);
    std::vector<Sensor> todos = sensores(pedido.semente);
    const Prazos prazos = prazosPara(pedido.linhas, todos);
    Historia h{.bd = bd,
               .clima = Clima(pedido.semente),
               .sensores = std::move(todos),
               .fim = fim,
               .prazos = prazos,
               .aoAvancar = pedido.aoAvancar};
    Transaccao tudo(bd);
    const QStringList indices = largarIndices(bd);
    gravarLeituras(h);
    if (h.aoAvancar)
        h.aoAvancar(u"alarmes, registos e missões"_s);
    gravarCadastro(h);
    gravarAlarmes(h);
    gravarRegistos(h);
    gravarMissoes(h);
    if (h.aoAvancar)
        h.aoAvancar(u"índices"_s);
    for (const QString &sql : indices)
        bd.executar(sql);
    tudo.confirmar();
    bd.executar(u"PRAGMA journal_mode = WAL"_s);
    return contarLinhas(bd);
}

} // namespace

Resultado fazerBase(const QString &caminho, const Pedido &pedido) {
    if (QFile::exists(caminho))
        throw Falha(erros::falhaDoFicheiro, u"\"%1\" já existe."_s.arg(caminho));
    QElapsedTimer relogio;
    relogio.start();
    const QString provisorio = caminho + u".novo"_s;
    apagarComDiarios(provisorio);
    criarBD(provisorio);
    Resultado r;
    r.fim = fimDaHistoria(pedido);
    try {
        r.linhas = preencher(provisorio, pedido, r.fim);
    } catch (...) {
        apagarComDiarios(provisorio);
        throw;
    }
    if (!QFile::rename(provisorio, caminho))
        throw Falha(erros::falhaDoFicheiro, u"Não é possível criar \"%1\"."_s.arg(caminho));
    r.bytes = QFileInfo(caminho).size();
    r.segundos = double(relogio.elapsed()) / 1000;
    return r;
}

} // namespace demonstracao
