// What is done with a million readings once they are seen: counting, writing out, listing; each against a bare loop
// over the engine's C interface in the same run.
#include "benchmarks/medidas.h"
#include "benchmarks/sqlite/nu.h"
#include "core/datas.h"
#include "core/estado.h"
#include "core/falha.h"
#include "core/literais.h"
#include "data/criarBD.h"
#include "data/dialecto.h"
#include "data/insercao.h"
#include "data/ligacao.h"
#include "data/recordset.h"
#include "views/exportacao.h"
#include "views/familiaListagens.h"
#include "views/histograma.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>

#include <cstdlib>
#include <cstring>
namespace {

constexpr int linhas = 1'000'000;
constexpr double primeira = 1'500'000'000;
const QString sensor = u"0010000000001000"_s;

void encher(const QString &caminho) {
    criarBD(caminho);
    Ligacao bd;
    bd.abrir(caminho);
    Transaccao tudo(bd);
    Insercao i(bd, u"Medias"_s,
               {u"Data"_s, u"Sensor"_s, u"NomeSensor"_s, u"Temperatura"_s, u"Observacoes"_s, u"flag"_s});
    i.texto(1, sensor);
    i.texto(2, u"Câmara de teste"_s);
    i.texto(4, u"8XXX2"_s);
    i.texto(5, u" "_s);
    for (int n = 0; n < linhas; ++n) {
        i.utf8(0, datas::textoBD(primeira + n * 60.0).toLatin1());
        i.real(3, double((quint64(n) * 2654435761U >> 7) % 130 + 10) / 10);
        i.gravar();
    }
    tudo.confirmar();
}

constexpr const char *porSensor = "SELECT Temperatura FROM Medias WHERE Data BETWEEN '2000' AND '2100' AND "
                                  "Sensor = '0010000000001000'";
constexpr const char *paraCSV = "SELECT Data, Sensor, NomeSensor, Temperatura, Observacoes FROM Medias WHERE Data "
                                "BETWEEN '2000' AND '2100' AND Sensor = '0010000000001000' ORDER BY Data";
const QByteArray cem = "SELECT Sensor, NomeSensor, Data, Temperatura, Flag, " + dialecto::ordem.toLatin1() +
                       " FROM Medias WHERE Data BETWEEN '2000' AND '2100' AND Sensor = '0010000000001000' "
                       "ORDER BY Data DESC LIMIT 100";

double varrer(nu::Base &m) {
    double soma = 0;
    nu::Instrucao s = m.preparar(porSensor);
    while (s.avancar())
        soma += s.real(0);
    return soma;
}

size_t contar(const QString &passo) {
    std::vector<double> valores;
    Recordset rs = cnBD().consultar(QString::fromLatin1(porSensor));
    while (rs.avancar())
        valores.push_back(rs.numero(0));
    return histograma::contar(valores, histograma::lerIntervalo(passo), {.maximo = 8, .minimo = 2}).size();
}

// The same bytes with stdio: day, month and year swapped, a comma for the point.
void csvSimples(nu::Base &m, const QString &caminho) {
    std::FILE *f = std::fopen(QFile::encodeName(caminho).constData(), "wb");
    nu::Instrucao s = m.preparar(paraCSV);
    while (s.avancar()) {
        const char *d = s.texto(0);
        char numero[32];
        std::snprintf(numero, sizeof numero, "%.15g", s.real(3));
        if (char *ponto = std::strchr(numero, '.'))
            *ponto = ',';
        const char *o = s.texto(4);
        const char *x = std::strstr(o, "XXX");
        std::fprintf(f, "%.2s/%.2s/%.4s %s;%s;%s;%s;%.*s;%s\r\n", d + 8, d + 5, d, d + 11, s.texto(1), s.texto(2),
                     numero, int(x - o), o, x + 3);
    }
    std::fclose(f);
}

QByteArray bytesDe(const QString &caminho) {
    QFile f(caminho);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

} // namespace

int main(int argc, char **argv) {
    QCoreApplication app(argc, argv);
    estado().ambiente.locale = QLocale(u"pt_PT"_s);
    QTemporaryDir pasta;
    const QString caminho = pasta.filePath(u"listagens.mdb"_s);
    bool bem = true;
    try {
        encher(caminho);
        ligacaoPartilhada().abrir(caminho);
        nu::Base motor(QFile::encodeName(caminho));
        for (const QString &passo : {u"0.5"_s, u"0.11"_s, u"50.0"_s}) {
            const auto par = medidas::comparar(
                7, [&] { return medidas::segundosDe([&] { contar(passo); }); },
                [&] { return medidas::segundosDe([&] { varrer(motor); }); });
            bem &= medidas::dizer(qPrintable(u"histograma de 1 M, intervalo %1 / leitura"_s.arg(passo)), par, 1.5);
        }
        const QString nosso = pasta.filePath(u"a.csv"_s);
        const QString simples = pasta.filePath(u"b.csv"_s);
        const Intervalo tudo(QDateTime(QDate(2000, 1, 1), QTime(), Qt::UTC),
                             QDateTime(QDate(2100, 1, 1), QTime(), Qt::UTC));
        const auto csv = medidas::comparar(
            5,
            [&] {
                return medidas::segundosDe([&] {
                    exportacao::escreverCSV({nosso, {u"Medias", u"Temperatura"}, {{sensor}}, tudo}, [] {});
                });
            },
            [&] { return medidas::segundosDe([&] { csvSimples(motor, simples); }); });
        if (bytesDe(nosso) != bytesDe(simples)) {
            std::printf("os ficheiros CSV diferem\n");
            bem = false;
        }
        bem &= medidas::dizer("CSV de 1 M / C com stdio, mesmos bytes", csv, 2.0);

        const MembroListagem *membro = nullptr;
        for (const MembroListagem &m : familiaListagens())
            membro = m.form == u"frmListagemObservacoesMedias" ? &m : membro;
        const auto pagina = medidas::comparar(
            31,
            [&] {
                return medidas::segundosDe([&] {
                    ModeloListagem modelo;
                    modelo.abrir(listagens::consulta(*membro, {tudo, {{sensor}}}));
                    for (int i = 0; i < 100; ++i)
                        if (modelo.data(modelo.index(i, 3), Qt::DisplayRole).toString().isEmpty())
                            std::abort();
                });
            },
            [&] {
                return medidas::segundosDe([&] {
                    nu::Instrucao s = motor.preparar(cem.constData());
                    while (s.avancar())
                        for (int c = 0; c < 6; ++c)
                            s.texto(c);
                });
            });
        bem &= medidas::dizer("listagem de 1 M, 100 linhas / consulta de 100", pagina, 2.0);
    } catch (const Falha &f) {
        std::fprintf(stderr, "%s\n", f.what());
        return 1;
    }
    return bem ? 0 : 1;
}
