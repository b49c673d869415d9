// A million readings of one sensor among twenty, read as a chart reads them, against a bare loop over the engine's C
// interface that runs the same query and fills two vectors.
#include "benchmarks/medidas.h"
#include "benchmarks/sqlite/nu.h"
#include "core/datas.h"
#include "core/falha.h"
#include "core/literais.h"
#include "data/criarBD.h"
#include "data/insercao.h"
#include "data/ligacao.h"
#include "data/recordset.h"
#include "demo/acaso.h"
#include "demo/historia.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <cstdlib>
namespace {

constexpr int sensores = 20;
constexpr qint64 porSensor = 1'000'000;
constexpr qint64 primeira = 1'500'000'000;
constexpr int passo = 60;

QByteArray idDe(int sensor) {
    return QByteArray("001000000000") + QByteArray::number(1000 + sensor);
}

void encher(const QString &caminho, qint64 quantas) {
    criarBD(caminho);
    Ligacao bd;
    bd.abrir(caminho);
    // Opened again, as the log that goes would pass for one that somebody took away.
    bd.consultar(u"PRAGMA journal_mode = DELETE"_s).avancar();
    bd.fechar();
    bd.abrir(caminho);
    bd.executar(u"PRAGMA synchronous = OFF"_s);
    bd.executar(u"PRAGMA cache_size = -262144"_s);
    bd.executar(u"PRAGMA journal_mode = OFF"_s);
    {
        Transaccao tudo(bd);
        bd.executar(u"DROP INDEX ixTemperaturas"_s);
        Insercao i(bd, u"Temperaturas"_s,
                   {u"Data"_s, u"Sensor"_s, u"NomeSensor"_s, u"Temperatura"_s, u"Observacoes"_s, u"flag"_s});
        std::vector<QByteArray> ids;
        for (int s = 0; s < sensores; ++s)
            ids.push_back(idDe(s));
        i.texto(2, u"Câmara de teste"_s);
        i.texto(4, u"8XXX2"_s);
        for (qint64 n = 0; n < quantas; ++n) {
            const QByteArray data = demonstracao::textoData(primeira + n * passo);
            i.utf8(0, data);
            for (int s = 0; s < sensores; ++s) {
                const quint64 acaso = demonstracao::misturar(quint64(s), n);
                i.utf8(1, ids[size_t(s)]);
                i.real(3, double(acaso % 130 + 10) / 10);
                i.utf8(5, acaso % 2000 == 0 ? "Porta aberta" : " ", acaso % 2000 == 0 ? 12 : 1);
                i.gravar();
            }
        }
        bd.executar(u"CREATE INDEX ixTemperaturas ON Temperaturas (Sensor, Data, Temperatura, Observacoes, flag)"_s);
        tudo.confirmar();
    }
    bd.executar(u"PRAGMA journal_mode = WAL"_s);
}

struct Pontos {
    std::vector<double> x, y;
    qint64 comNota = 0;
};

const QString consulta = u"SELECT Data, Temperatura, Observacoes, flag FROM Temperaturas WHERE Data BETWEEN ? AND ? "
                         "AND Sensor = ? ORDER BY Data"_s;

Pontos comRecordset(Ligacao &bd, const QByteArray &inicio, const QByteArray &fim, const QByteArray &id) {
    Pontos p;
    Recordset rs =
        bd.consultar(consulta, {QString::fromLatin1(inicio), QString::fromLatin1(fim), QString::fromLatin1(id)});
    while (rs.avancar()) {
        p.x.push_back(rs.segundos(0));
        p.y.push_back(rs.numero(1));
        int n = 0;
        const char *observacoes = rs.utf8(2, n);
        int m = 0;
        const char *flag = rs.utf8(3, m);
        p.comNota += observacoes && (m > 1 || (m == 1 && *flag != ' ')) ? 1 : 0;
    }
    return p;
}

// Days since 1970 of a civil date, as any such loop would work it out.
qint64 dias(int a, int m, int d) {
    a -= m <= 2;
    const int era = a / 400, ano = a - era * 400, dia = (153 * (m + (m > 2 ? -3 : 9)) + 2) / 5 + d - 1;
    return era * 146097LL + ano * 365 + ano / 4 - ano / 100 + dia - 719468;
}

int dois(const char *t) {
    return (t[0] - '0') * 10 + t[1] - '0';
}

Pontos comC(const QByteArray &caminho, const QByteArray &inicio, const QByteArray &fim, const QByteArray &id) {
    Pontos p;
    nu::Base bd(caminho);
    nu::Instrucao s = bd.preparar(consulta.toUtf8().constData());
    s.ligar(1, inicio.constData());
    s.ligar(2, fim.constData());
    s.ligar(3, id.constData());
    while (s.avancar()) {
        const char *t = s.texto(0);
        const qint64 d = dias(dois(t) * 100 + dois(t + 2), dois(t + 5), dois(t + 8));
        p.x.push_back(double(d * 86400 + dois(t + 11) * 3600 + dois(t + 14) * 60 + dois(t + 17)));
        p.y.push_back(s.real(1));
    }
    return p;
}

} // namespace

// Arguments: the file to use (made when missing), readings a sensor.
int main(int argc, char **argv) {
    QCoreApplication app(argc, argv);
    QTemporaryDir pasta;
    const QString caminho = argc > 1 ? QString::fromLocal8Bit(argv[1]) : pasta.filePath(u"carga.mdb"_s);
    const qint64 quantas = argc > 2 ? std::atoll(argv[2]) : porSensor;
    try {
        if (!QFile::exists(caminho)) {
            const double s = medidas::segundosDe([&] { encher(caminho, quantas); });
            std::printf("base de %lld leituras feita em %.1f s, %lld MB\n", quantas * sensores, s,
                        QFileInfo(caminho).size() / 1'000'000);
        }
        Ligacao bd;
        bd.abrir(caminho);
        const QByteArray inicio = demonstracao::textoData(primeira);
        const QByteArray fim = demonstracao::textoData(primeira + quantas * passo);
        const QByteArray id = idDe(7);
        size_t nosso = 0, simples = 0;
        const auto par = medidas::comparar(
            7, [&] { return medidas::segundosDe([&] { nosso = comRecordset(bd, inicio, fim, id).x.size(); }); },
            [&] {
                return medidas::segundosDe(
                    [&] { simples = comC(QFile::encodeName(caminho), inicio, fim, id).x.size(); });
            });
        if (nosso != size_t(quantas) || simples != nosso) {
            std::printf("leituras: %zu e %zu\n", nosso, simples);
            return 1;
        }
        return medidas::dizer("ler 1 sensor de 20, Recordset / C", par, 1.5) ? 0 : 1;
    } catch (const Falha &f) {
        std::fprintf(stderr, "%s\n", f.what());
        return 1;
    }
}
