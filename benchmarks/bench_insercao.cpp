// The maker of the demonstration against a bare loop of one prepared INSERT in one transaction into the same schema,
// both without a journal, per row.
#include "benchmarks/medidas.h"
#include "benchmarks/sqlite/nu.h"
#include "core/falha.h"
#include "core/literais.h"
#include "data/criarBD.h"
#include "demo/gerador.h"
#include "demo/historia.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <cstdlib>
namespace {

void cicloSimples(const QString &caminho, qint64 linhas) {
    criarBD(caminho);
    nu::Base bd(QFile::encodeName(caminho), nu::Base::Modo::Escrever);
    for (const char *sql :
         {"PRAGMA journal_mode = OFF", "PRAGMA synchronous = OFF", "PRAGMA cache_size = -65536", "BEGIN"})
        bd.executar(sql);
    nu::Instrucao s = bd.preparar("INSERT INTO Temperaturas VALUES (?, ?, ?, ?, ?, ?)");
    constexpr int sensores = 60;
    constexpr qint64 primeira = 1'600'000'000;
    QByteArray data;
    char id[] = "0010000000000000";
    for (qint64 n = 0; n < linhas; ++n) {
        const int sensor = int(n % sensores);
        if (sensor == 0)
            data = demonstracao::textoData(primeira + n / sensores * 300);
        id[14] = char('0' + sensor / 10);
        id[15] = char('0' + sensor % 10);
        s.ligar(1, data.constData(), 19);
        s.ligar(2, id, 16);
        s.ligar(3, "Frigorifico Vacinas", 19);
        s.ligar(4, double(n * 7919 % 130) / 10);
        s.ligar(5, "8XXX2", 5);
        s.ligar(6, " ", 1);
        s.gravar();
    }
    bd.executar("COMMIT");
}

} // namespace

// Argument: rows.
int main(int argc, char **argv) {
    QCoreApplication app(argc, argv);
    const qint64 linhas = argc > 1 ? std::atoll(argv[1]) : 1'000'000;
    QTemporaryDir pasta;
    const auto livre = [&pasta](const QString &nome) {
        const QString caminho = pasta.filePath(nome);
        QFile::remove(caminho);
        return caminho;
    };
    demonstracao::Pedido pedido;
    pedido.linhas = linhas;
    pedido.fim = QDateTime(QDate(2025, 6, 30), QTime(12, 0), Qt::UTC);
    try {
        qint64 feitas = 0;
        const auto par = medidas::comparar(
            5,
            [&] {
                const QString caminho = livre(u"feita.mdb"_s);
                const double s = medidas::segundosDe([&] { feitas = demonstracao::fazerBase(caminho, pedido).linhas; });
                return s * double(linhas) / double(feitas);
            },
            [&] {
                const QString caminho = livre(u"simples.mdb"_s);
                return medidas::segundosDe([&] { cicloSimples(caminho, linhas); });
            });
        std::printf("gerador: %.0f linhas/s; ciclo simples: %.0f linhas/s\n", double(linhas) / par.nosso,
                    double(linhas) / par.simples);
        return medidas::dizer("gerar a demonstração / INSERT simples", par, 2.0) ? 0 : 1;
    } catch (const Falha &f) {
        std::fprintf(stderr, "%s\n", f.what());
        return 1;
    }
}
