// From confirm to painted chart, against a bare loop over the same query that fills two vectors; memory by point.
#include "benchmarks/medidas.h"
#include "benchmarks/sqlite/nu.h"
#include "core/datas.h"
#include "core/estado.h"
#include "core/modINI.h"
#include "data/esquema.h"
#include "data/modMain.h"
#include "platform/chart/TChart.h"
#include "platform/forms/grelha.h"
#include "platform/forms/registoForms.h"
#include "views/forms/formGrafico.h"
#include "views/forms/registar.h"

#include <QApplication>
#include <QDateEdit>
#include <QElapsedTimer>
#include <QFile>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

constexpr int sensoresIntercalados = 20;
constexpr int voltas = 7;
constexpr double inicio = 1577836800; // 2020-01-01
constexpr int passo = 60;

QByteArray id(int n) {
    return "28A00000000000" + QByteArray::number(n).rightJustified(2, '0');
}

[[noreturn]] void parar(const char *porque) {
    std::fprintf(stderr, "bench_grafico: %s\n", porque);
    std::exit(1);
}

// The other sensors have a tenth of the readings, or making them would take longer than everything else.
void criarBase(const QByteArray &caminho, int leituras) {
    nu::Base bd(caminho, nu::Base::Modo::Escrever);
    bd.executar(esquemaSQL);
    bd.executar("PRAGMA synchronous = OFF");
    bd.executar("BEGIN");
    for (int s = 1; s <= sensoresIntercalados; ++s)
        bd.executar(QByteArray("INSERT INTO Sensores (SensorID, Tipo, Descricao, Seleccionado) VALUES ('" + id(s) +
                               "', 'P 1250C', 'Sensor', 'SIM')")
                        .constData());
    nu::Instrucao st = bd.preparar("INSERT INTO Temperaturas VALUES (?, ?, 'Sensor', ?, '30XXX5', ' ')");
    for (int i = 0; i < leituras; ++i)
        for (int s = 1; s <= (i % 10 == 0 ? sensoresIntercalados : 1); ++s) {
            const QByteArray data = datas::textoBD(inicio + double(i) * passo).toLatin1();
            const QByteArray sensor = id(s);
            st.copiar(1, data);
            st.copiar(2, sensor);
            st.ligar(3, 20 + (i % 997) / 50.0);
            st.gravar();
        }
    bd.executar("COMMIT");
}

double lacoSimples(const QByteArray &caminho, int leituras) {
    nu::Base bd(caminho);
    QElapsedTimer relogio;
    relogio.start();
    const QByteArray sql = "SELECT Data, Temperatura, flag, Observacoes FROM Temperaturas WHERE Data BETWEEN "
                           "'2000-01-01 00:00:00' AND '2099-12-31 23:59:59' AND Sensor = '" +
                           id(1) + "' ORDER BY Data";
    nu::Instrucao st = bd.preparar(sql.constData());
    std::vector<double> x;
    std::vector<double> y;
    while (st.avancar()) {
        const char *texto = st.texto(0);
        x.push_back(datas::segundosDe(texto, st.tamanho(0)));
        y.push_back(st.real(1));
    }
    const double ms = double(relogio.nsecsElapsed()) / 1e6;
    if (int(y.size()) != leituras)
        parar("the bare loop read another number of rows");
    return ms;
}

double mediana(std::vector<double> v) {
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

} // namespace

int main(int argc, char *argv[]) {
    QApplication app(argc, argv);
    const int leituras = argc > 1 ? std::max(1000, QByteArray(argv[1]).toInt()) : 1'000'000;
    const QTemporaryDir pasta;
    const QByteArray caminho = QFile::encodeName(pasta.filePath(QStringLiteral("Kelvark.mdb")));
    criarBase(caminho, leituras);
    estado().PastaPrograma = pasta.path();
    modINI::SaveSetting(estado().NomePrograma, u"BD"_s, u"MAIN"_s, QFile::decodeName(caminho));
    if (!modMain::carregaGlobaisBD())
        parar("the database does not open");

    QWidget principal;
    registoForms().dono = &principal;
    registarVistas(registoForms());
    QWidget *form = registoForms().abrir(u"frmGraficoPrincipalTemp"_s);
    form->resize(1050, 560);
    for (int i = 0; i < 20; ++i)
        QApplication::processEvents(QEventLoop::AllEvents, 20);
    form->findChild<QDateEdit *>(u"DTPdataInicio"_s)->setDate(QDate(2000, 1, 1));
    form->findChild<QDateEdit *>(u"DTPdataFim"_s)->setDate(QDate(2099, 12, 31));
    auto *todos = form->findChild<Grelha *>(u"grdSensoresAll"_s);
    todos->setLinhaActual(0);
    Q_EMIT todos->RequestEdit(0);
    auto *chart = form->findChild<TChart *>(u"TChart"_s);
    auto *confirmar = form->findChild<QPushButton *>(u"cmdConfirmar"_s);

    // The longest time between two turns of the event loop during a load.
    qint64 pausa = 0;
    QElapsedTimer desdeTurno;
    QTimer pulso;
    pulso.setInterval(0);
    QObject::connect(&pulso, &QTimer::timeout, [&] { pausa = std::max(pausa, desdeTurno.restart()); });

    const double antes = medidas::memoria();
    double depois = 0;
    std::vector<double> razoes;
    std::vector<double> tempos;
    std::vector<double> lacos;
    std::vector<double> pausas;
    for (int volta = 0; volta < voltas; ++volta) {
        lacos.push_back(lacoSimples(caminho, leituras));
        pausa = 0;
        desdeTurno.start();
        pulso.start();
        QElapsedTimer relogio;
        relogio.start();
        confirmar->click();
        chart->repaint();
        tempos.push_back(double(relogio.nsecsElapsed()) / 1e6);
        pulso.stop();
        pausas.push_back(double(pausa));
        razoes.push_back(tempos.back() / lacos.back());
        if (chart->Series(0).Count() != leituras)
            parar("the chart holds another number of points");
        if (volta == 0)
            depois = medidas::memoria();
    }
    std::printf("load of %d readings: %.0f ms, bare loop %.0f ms, ratio %.2f (at most 1.5)\n", leituras,
                mediana(tempos), mediana(lacos), mediana(razoes));
    std::printf("memory of the loaded form: %.1f bytes a point (at most 64)\n", (depois - antes) / leituras);
    std::printf("longest stall of the event loop: %.0f ms (at most 50)\n", mediana(pausas));
    delete form;
    const bool dentro = mediana(razoes) <= 1.5 && (depois - antes) / leituras <= 64 && mediana(pausas) <= 50;
    return dentro ? 0 : 1;
}
