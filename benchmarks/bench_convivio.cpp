// Two processes at one file: the capture companion writes while this one reads as the views do and changes a note now
// and then. Not one lock error is allowed.
#include "benchmarks/medidas.h"
#include "core/datas.h"
#include "core/estado.h"
#include "core/falha.h"
#include "core/literais.h"
#include "data/dialecto.h"
#include "data/ligacao.h"
#include "data/recordset.h"
#include "demo/acaso.h"

#include <QCoreApplication>
#include <QProcess>
#include <QThread>

#include <cstdlib>

namespace {

constexpr int pausaMs = 20;

struct Contas {
    qint64 consultas = 0, linhas = 0, notas = 0, falhas = 0;
    std::vector<double> temposDeNota;
    double maiorConsulta = 0;
};

QStringList sensoresComLeituras(Ligacao &bd) {
    QStringList ids;
    Recordset rs =
        bd.consultar(u"SELECT SensorID FROM Sensores WHERE Tipo LIKE '%C' OR Tipo LIKE '%\\%' ESCAPE '\\'"_s);
    while (rs.avancar())
        ids.append(rs.texto(0));
    return ids;
}

// A month of one sensor, then the note of its last reading.
void umaVolta(Ligacao &bd, const QString &id, qint64 volta, Contas &c) {
    const QString fim = datas::textoBD(estado().ambiente.agora());
    const QString inicio = datas::textoBD(estado().ambiente.agora().addDays(-30));
    QString ultima;
    c.maiorConsulta =
        std::max(c.maiorConsulta, medidas::segundosDe([&] {
                     Recordset rs = bd.consultar(
                         u"SELECT Data, Temperatura, Observacoes, flag FROM Temperaturas WHERE Data BETWEEN ? "
                         "AND ? AND Sensor = ? ORDER BY Data"_s,
                         {inicio, fim, id});
                     while (rs.avancar()) {
                         ++c.linhas;
                         ultima = rs.texto(0);
                     }
                 }));
    ++c.consultas;
    constexpr int entreNotas = 5;
    if (ultima.isEmpty() || volta % entreNotas != 0)
        return;
    c.temposDeNota.push_back(medidas::segundosDe([&] {
        bd.executar(u"UPDATE Temperaturas SET flag = ? WHERE %1 = (SELECT %1 FROM Temperaturas WHERE Data = ? AND "
                    "Sensor = ? ORDER BY %1 LIMIT 1)"_s.arg(dialecto::ordem),
                    {u"nota %1"_s.arg(volta), ultima, id});
    }));
    ++c.notas;
}

} // namespace

// Arguments: the database, seconds, milliseconds between the companion's readings.
int main(int argc, char **argv) {
    QCoreApplication app(argc, argv);
    if (argc < 2) {
        std::fprintf(stderr, "bench_convivio BASE [SEGUNDOS [MS]]\n");
        return 2;
    }
    const QString base = QString::fromLocal8Bit(argv[1]);
    const int segundos = argc > 2 ? std::atoi(argv[2]) : 20;
    QProcess captura;
    captura.setProcessChannelMode(QProcess::ForwardedChannels);
    captura.start(QCoreApplication::applicationDirPath() + u"/../Kelvark-captura"_s,
                  {u"--intervalo"_s, argc > 3 ? QString::fromLocal8Bit(argv[3]) : u"100"_s, base});
    if (!captura.waitForStarted()) {
        std::fprintf(stderr, "%s\n", qPrintable(captura.errorString()));
        return 1;
    }
    Contas c;
    try {
        Ligacao bd;
        bd.abrir(base);
        const QStringList ids = sensoresComLeituras(bd);
        QElapsedTimer relogio;
        relogio.start();
        for (qint64 volta = 0; !ids.isEmpty() && relogio.elapsed() < segundos * 1000; ++volta) {
            QThread::msleep(pausaMs); // leaves the processor to others
            try {
                umaVolta(bd, ids[qsizetype(demonstracao::misturar(quint64(volta)) % quint64(ids.size()))], volta, c);
            } catch (const Falha &f) {
                ++c.falhas;
                std::fprintf(stderr, "%s\n", f.what());
            }
        }
    } catch (const Falha &f) {
        ++c.falhas;
        std::fprintf(stderr, "%s\n", f.what());
    }
    captura.terminate();
    const bool bemAcabada =
        captura.waitForFinished(10000) && captura.exitStatus() == QProcess::NormalExit && captura.exitCode() == 0;
    const double maiorNota =
        c.temposDeNota.empty() ? 0 : *std::max_element(c.temposDeNota.begin(), c.temposDeNota.end());
    std::printf("%d s lado a lado: %lld consultas, %lld linhas lidas, %lld notas, %lld falhas; maior consulta %.1f ms, "
                "nota %.1f ms (mediana %.1f)\n",
                segundos, c.consultas, c.linhas, c.notas, c.falhas, c.maiorConsulta * 1e3, maiorNota * 1e3,
                medidas::mediana(c.temposDeNota) * 1e3);
    const bool bem = bemAcabada && c.falhas == 0 && c.consultas > 0;
    std::printf("%-58s %s\n", "dois processos no mesmo ficheiro", bem ? "bem" : "MAL");
    return bem ? 0 : 1;
}
