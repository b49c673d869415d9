// The maker of the demonstration against a bare loop of one prepared INSERT in one transaction into the same schema,
// both without a journal, per row.
#include "benchmarks/medidas.h"
#include "core/falha.h"
#include "core/literais.h"
#include "data/criarBD.h"
#include "demo/gerador.h"
#include "demo/historia.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <cstdlib>
#include <sqlite3.h>

namespace {

void verificar(bool bem, sqlite3 *bd) {
    if (bem)
        return;
    std::fprintf(stderr, "%s\n", sqlite3_errmsg(bd));
    std::exit(1);
}

void cicloSimples(const QString &caminho, qint64 linhas) {
    criarBD(caminho);
    sqlite3 *bd = nullptr;
    sqlite3_stmt *s = nullptr;
    verificar(sqlite3_open(QFile::encodeName(caminho).constData(), &bd) == SQLITE_OK, bd);
    for (const char *sql :
         {"PRAGMA journal_mode = OFF", "PRAGMA synchronous = OFF", "PRAGMA cache_size = -65536", "BEGIN"})
        verificar(sqlite3_exec(bd, sql, nullptr, nullptr, nullptr) == SQLITE_OK, bd);
    verificar(
        sqlite3_prepare_v2(bd, "INSERT INTO Temperaturas VALUES (?, ?, ?, ?, ?, ?)", -1, &s, nullptr) == SQLITE_OK, bd);
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
        sqlite3_bind_text(s, 1, data.constData(), 19, SQLITE_STATIC);
        sqlite3_bind_text(s, 2, id, 16, SQLITE_STATIC);
        sqlite3_bind_text(s, 3, "Frigorifico Vacinas", 19, SQLITE_STATIC);
        sqlite3_bind_double(s, 4, double(n * 7919 % 130) / 10);
        sqlite3_bind_text(s, 5, "8XXX2", 5, SQLITE_STATIC);
        sqlite3_bind_text(s, 6, " ", 1, SQLITE_STATIC);
        verificar(sqlite3_step(s) == SQLITE_DONE, bd);
        sqlite3_reset(s);
    }
    sqlite3_finalize(s);
    verificar(sqlite3_exec(bd, "COMMIT", nullptr, nullptr, nullptr) == SQLITE_OK, bd);
    sqlite3_close(bd);
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
