// The engine's log beside the database: how long it gets while a log of a million lines is imported and the readings of
// ten minutes are captured, with readers of older states about; what is left of it; and how long the next start takes
// when the import is killed where the log is longest.
#include "benchmarks/logGrande.h"
#include "benchmarks/medidas.h"
#include "core/estado.h"
#include "data/recordset.h"
#include "demo/captura.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <QThread>

#include <cstdlib>
#include <cstring>
#include <limits>

using namespace logGrande;

namespace {

constexpr double limiteDoDiario = 64;   // MB
constexpr double limiteDoInicio = 1000; // ms
constexpr double doPassoSeguinte = 16;  // MB: the largest step is confirmed then, and all of it is still in the log
constexpr int leiturasDeDezMinutos = 600;
constexpr int esperaMs = 20'000;

double diarioMB(const QString &base) {
    return double(QFileInfo(base + u"-wal"_s).size()) / 1e6;
}

// What a listing or a chart that is being loaded does to the log: a state that lasts, given up now and then.
class Leitor {
public:
    Leitor(const QString &base, int duracaoMs) : m_duracaoMs(duracaoMs) { m_bd.abrir(base); }
    void volta() {
        if (m_cursor && m_desde.elapsed() < m_duracaoMs)
            return;
        m_cursor.reset();
        m_cursor.emplace(m_bd.consultar(u"SELECT Data FROM Temperaturas UNION ALL SELECT SensorID FROM Sensores"_s));
        m_cursor->avancar();
        m_desde.start();
    }

private:
    const int m_duracaoMs;
    Ligacao m_bd;
    std::optional<Recordset> m_cursor;
    QElapsedTimer m_desde;
};

QString novaBase(const QTemporaryDir &pasta, const QString &nome) {
    const QString base = pasta.filePath(nome);
    prepararUnidade(base);
    cnBD().executar(u"UPDATE Sensores SET Seleccionado = 'SIM'"_s);
    return base;
}

class Leitores {
public:
    explicit Leitores(const QString &base) : m_base(base), m_grafico(base, 300), m_listagem(base, 3000) {}
    void volta() {
        m_grafico.volta();
        m_listagem.volta();
        if (const double agora = diarioMB(m_base); agora > maior)
            maior = agora;
    }
    double maior = 0; // MB of log seen

private:
    const QString m_base;
    Leitor m_grafico, m_listagem;
};

struct Comprimentos {
    double maior = 0, fim = 0;
};

Comprimentos importarECapturar(const QString &base, qint64 linhas) {
    Leitores leitores(base);
    const auto passar = [&] { leitores.volta(); };
    importar(fazerLog(linhas), {}, passar);
    demonstracao::Captura captura(base, 1);
    for (int i = 0; i < leiturasDeDezMinutos; ++i) {
        captura.passo(estado().ambiente.agora().addSecs(i));
        passar();
        QThread::msleep(10); // a hundred times as fast as the service
    }
    QElapsedTimer relogio;
    for (relogio.start(); diarioMB(base) > limiteDoDiario && relogio.elapsed() < esperaMs; QThread::msleep(10))
        passar();
    return {leitores.maior, diarioMB(base)};
}

// Kills an import once its log is that long, which it always gets: nothing of it is taken in. Gives back how long it
// was.
double matarAMeio(const QString &base, qint64 linhas, double quandoMB) {
    QProcess p;
    p.setProcessChannelMode(QProcess::ForwardedChannels);
    p.start(QCoreApplication::applicationFilePath(), {u"--importar"_s, base, QString::number(linhas)});
    while (diarioMB(base) < quandoMB && !p.waitForFinished(5)) {
    }
    p.kill();
    p.waitForFinished();
    return diarioMB(base);
}

double iniciarMs(const QString &base) {
    Ligacao bd; // closed after the measurement: that takes in what is left
    return 1e3 * medidas::segundosDe([&] {
               bd.abrir(base);
               Recordset rs = bd.consultar(u"SELECT COUNT(*) FROM Sensores"_s);
               if (!rs.avancar() || rs.inteiro(0) != canais)
                   throw std::runtime_error("the database is not what it was");
           });
}

} // namespace

// Argument: lines of the log.
int main(int argc, char **argv) {
    QCoreApplication app(argc, argv);
    try {
        if (argc == 4 && std::strcmp(argv[1], "--importar") == 0) {
            ligacaoPartilhada().definirRecolha(
                {.paginas = std::numeric_limits<int>::max(), .bytes = std::numeric_limits<qint64>::max()});
            ligacaoPartilhada().abrir(QString::fromLocal8Bit(argv[2]));
            Leitores leitores(cnBD().caminho());
            importar(fazerLog(std::atoll(argv[3])), {}, [&] { leitores.volta(); });
            return 0;
        }
        const qint64 linhas = argc > 1 ? std::atoll(argv[1]) : 1'000'000;
        QTemporaryDir pasta;
        const Comprimentos c = importarECapturar(novaBase(pasta, u"inteira.mdb"_s), linhas);
        ligacaoPartilhada().fechar();
        const QString morta = novaBase(pasta, u"morta.mdb"_s);
        ligacaoPartilhada().fechar();
        const double deixado = matarAMeio(morta, linhas, c.maior + doPassoSeguinte);
        const double inicio = iniciarMs(morta);
        std::printf("diário: o maior %.1f MB; deixado por quem foi morto %.1f MB\n", c.maior, deixado);
        const bool diario = medidas::dizer("diário depois da importação e da captura, MB", c.fim, limiteDoDiario);
        const bool rapido = medidas::dizer("início depois da morte a meio, ms", inicio, limiteDoInicio);
        return diario && rapido && deixado > c.maior ? 0 : 1;
    } catch (const std::exception &e) {
        std::fprintf(stderr, "%s\n", e.what());
        return 1;
    }
}
