// A log of a million lines with 8 channels, averaging on: from lines to committed rows, against a bare loop that
// inserts the same rows, prepared, in one transaction into the same schema. Also the same log once more, and one with
// other values over it, whose replaced readings are kept in a file; the memory of a gathered row and the longest time
// without a pass of events.
#include "benchmarks/logGrande.h"
#include "benchmarks/medidas.h"
#include "benchmarks/sqlite/nu.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <cstdlib>
#include <malloc.h>
#include <unistd.h>

using namespace logGrande;

namespace {

constexpr double limiteDaRazao = 2.0;
constexpr double limiteDaTroca = 4.0;
constexpr double limiteDaMemoria = 200; // bytes a row
constexpr double limiteDaParagem = 50;  // ms

struct Medicao {
    double segundos = 0;
    double bytesPorLinha = 0;
    double paragemMs = 0;
    qint64 linhas = 0;
};

Medicao nosso(const QByteArray &log, const QString &guarda) {
    Medicao m;
    QElapsedTimer desdeAUltima;
    double paragem = 0;
    const auto passar = [&] {
        if (desdeAUltima.isValid())
            paragem = std::max(paragem, double(desdeAUltima.nsecsElapsed()) * 1e-6);
        desdeAUltima.start();
    };
    m.segundos = medidas::segundosDe([&] {
        const size_t antes = mallinfo2().uordblks + mallinfo2().hblkhd;
        m.linhas = importar(log, guarda, passar, [&](qint64 linhas) {
            m.bytesPorLinha = double(mallinfo2().uordblks + mallinfo2().hblkhd - antes) / double(linhas);
        });
        if (desdeAUltima.isValid())
            paragem = std::max(paragem, double(desdeAUltima.nsecsElapsed()) * 1e-6);
    });
    m.paragemMs = paragem;
    return m;
}

// The statements and the order of the rows are those of the log, table by table.
struct Tabela {
    const char *sql;
    int primeiro, ultimo, passo;
};
constexpr Tabela tabelas[] = {
    {"INSERT INTO Temperaturas VALUES (?1,?2,?3,?4,?5,?6)", 0, 4, 1},
    {"INSERT INTO Humidade VALUES (?1,?2,?3,?4,?5,?6,' ')", 4, 6, 1},
    {"INSERT INTO Medias VALUES (?1,?2,?3,?4,?5,?6)", 0, 4, leiturasPorMedia},
    {"INSERT INTO SensUI_Leituras VALUES (?1,?2,?3,?4,?5,'bar',NULL,?6)", 6, 8, 1},
};

qint64 cicloSimples(const QString &caminho, qint64 linhas) {
    nu::Base bd(QFile::encodeName(caminho), nu::Base::Modo::Escrever);
    bd.executar("BEGIN");
    qint64 inseridas = 0;
    for (const Tabela &tabela : tabelas) {
        nu::Instrucao s = bd.preparar(tabela.sql);
        char id[] = "0020000000000000";
        char data[20] = {};
        for (qint64 n = tabela.passo - 1; n < linhas; n += tabela.passo) {
            const time_t quando = primeira + n * 60;
            tm partes{};
            gmtime_r(&quando, &partes);
            strftime(data, sizeof data, "%Y-%m-%d %H:%M:%S", &partes);
            for (int c = tabela.primeiro; c < tabela.ultimo; ++c) {
                id[15] = char('0' + c);
                s.ligar(1, data, 19);
                s.ligar(2, id, 16);
                s.ligar(3, "Frigorífico 0");
                s.ligar(4, decimosDe(n, c) / 10.0 + 0.5);
                s.ligar(5, "30XXX5", 6);
                s.nulo(6);
                s.gravar();
                ++inseridas;
            }
        }
    }
    bd.executar("COMMIT");
    return inseridas;
}

} // namespace

// Arguments: lines of the log, turns.
int main(int argc, char **argv) {
    QCoreApplication app(argc, argv);
    const qint64 linhas = argc > 1 ? std::atoll(argv[1]) : 1'000'000;
    const int voltas = argc > 2 ? std::atoi(argv[2]) : 1;
    QTemporaryDir pasta;
    const QByteArray log = fazerLog(linhas, 0), outro = fazerLog(linhas, 1);
    Medicao pior;
    std::vector<double> outraVez, outroPorCima;
    try {
        qint64 deles = 0;
        const auto par = medidas::comparar(
            voltas,
            [&] {
                const QString caminho = pasta.filePath(u"nossa.mdb"_s);
                QFile::remove(caminho);
                prepararUnidade(caminho);
                const Medicao m = nosso(log, {});
                const Medicao segunda = nosso(log, pasta.filePath(u"mesmo"_s));
                const Medicao terceira = nosso(outro, pasta.filePath(u"outro"_s));
                ligacaoPartilhada().fechar();
                outraVez.push_back(segunda.segundos);
                outroPorCima.push_back(terceira.segundos);
                pior = {m.segundos, std::max(pior.bytesPorLinha, m.bytesPorLinha),
                        std::max({pior.paragemMs, m.paragemMs, segunda.paragemMs, terceira.paragemMs}), m.linhas};
                return m.segundos;
            },
            [&] {
                const QString caminho = pasta.filePath(u"simples.mdb"_s);
                QFile::remove(caminho);
                criarBD(caminho);
                return medidas::segundosDe([&] { deles = cicloSimples(caminho, linhas); });
            });
        if (deles != pior.linhas) {
            std::fprintf(stderr, "%lld rows, the bare loop has %lld\n", pior.linhas, deles);
            return 1;
        }
        const bool tempo = medidas::dizer("log até às tabelas / INSERT simples", par, limiteDaRazao);
        const auto porCima = [&](const char *titulo, std::vector<double> &segundos, double limite) {
            const double s = medidas::mediana(segundos);
            return medidas::dizer(titulo, {s, par.simples, s / par.simples}, limite);
        };
        const bool mesmo = porCima("o mesmo log outra vez / INSERT simples", outraVez, limiteDaRazao);
        const bool trocado = porCima("outros valores por cima / INSERT simples", outroPorCima, limiteDaTroca);
        const bool memoria = medidas::dizer("bytes de memória por linha reunida", pior.bytesPorLinha, limiteDaMemoria);
        const bool paragem = medidas::dizer("maior paragem dos eventos, ms", pior.paragemMs, limiteDaParagem);
        return tempo && mesmo && trocado && memoria && paragem ? 0 : 1;
    } catch (const std::exception &e) {
        std::fprintf(stderr, "%s\n", e.what());
        return 1;
    }
}
