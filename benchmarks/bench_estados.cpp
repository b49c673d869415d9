// A mission and a register of states from confirm to painted chart, against a bare loop over the same query.
#include "benchmarks/medidas.h"
#include "benchmarks/sqlite/nu.h"
#include "core/datas.h"
#include "core/estado.h"
#include "core/literais.h"
#include "core/modINI.h"
#include "data/esquema.h"
#include "data/modMain.h"
#include "devicestate/forms/listaMarcada.h"
#include "devicestate/forms/registar.h"
#include "logger/views/forms/registar.h"
#include "platform/chart/TChart.h"
#include "platform/forms/registoForms.h"

#include <QApplication>
#include <QDateEdit>
#include <QFile>
#include <QPushButton>
#include <QTemporaryDir>

namespace {

constexpr int voltas = 7;
constexpr int amostras = 2048;
constexpr int missoesGuardadas = 200;
constexpr int outrasEntradas = 9;     // with a tenth of the rows each
constexpr double inicio = 1577836800; // 2020-01-01
constexpr double limiteDaRazao = 1.5;
constexpr double missaoAberta = 50; // ms, picture included: nobody sees it wait

[[noreturn]] void parar(const char *porque) {
    std::fprintf(stderr, "bench_estados: %s\n", porque);
    std::exit(1);
}

// Two vectors of what the query gives, as any program would fill them.
double laco(nu::Base &bd, const char *sql, int linhas) {
    return medidas::segundosDe([&] {
        nu::Instrucao st = bd.preparar(sql);
        std::vector<double> x;
        std::vector<double> y;
        while (st.avancar()) {
            const char *texto = st.texto(0);
            x.push_back(datas::segundosDe(texto, st.tamanho(0)));
            y.push_back(st.real(1));
        }
        if (int(y.size()) != linhas)
            parar("the bare loop read another number of rows");
    });
}

QByteArray data(int minuto) {
    return datas::textoBD(inicio + minuto * 60.0).toLatin1();
}

void criar(const QByteArray &caminho, int mudancas) {
    nu::Base bd(caminho, nu::Base::Modo::Escrever);
    bd.executar(esquemaSQL);
    bd.executar("PRAGMA synchronous = OFF");
    bd.executar("BEGIN");
    for (int i = 0; i < mudancas; ++i)
        for (int n = 1; n <= (i % 10 == 0 ? 1 + outrasEntradas : 1); ++n)
            bd.executar(QByteArray("INSERT INTO REGISTO_Inputs VALUES ('127.0.0.2', " + QByteArray::number(n) + ", '" +
                                   data(i) + "', '" + (i % 2 == 0 ? "True" : "False") + "', ' ')")
                            .constData());
    for (int m = 1; m <= missoesGuardadas; ++m) {
        const QByteArray chave = "'21A', 'Vacinas', 'Rota', '" + QByteArray::number(m).rightJustified(4, '0') + "'";
        bd.executar(
            QByteArray("INSERT INTO DS1921head (LoggerID, Nomelogger, DescricaoMissao, NMissao) VALUES (" + chave + ")")
                .constData());
        for (int i = 0; i < (m == missoesGuardadas ? 2 : amostras); ++i)
            bd.executar(QByteArray("INSERT INTO DS1921 VALUES (" + chave + ", '" + data(m * 20000 + i) + "', " +
                                   QByteArray::number(4 + i % 7 * 0.5) + ", 8, 2, 'FALSE', '')")
                            .constData());
    }
    bd.executar("COMMIT");
}

QWidget *abrir(const QString &nome) {
    QWidget *form = registoForms().abrir(nome);
    form->resize(1050, 560);
    for (int i = 0; i < 20; ++i)
        QApplication::processEvents(QEventLoop::AllEvents, 20);
    return form;
}

double carregar(QWidget *form, int serie, int pontos) {
    auto *chart = form->findChild<TChart *>(u"TChart"_s);
    auto *confirmar = form->findChild<QPushButton *>(u"cmdConfirmar"_s);
    const double s = medidas::segundosDe([&] {
        confirmar->click();
        chart->repaint();
    });
    if (chart->SeriesCount() <= serie || chart->Series(serie).Count() != pontos)
        parar("the chart holds another number of points");
    return s;
}

} // namespace

int main(int argc, char *argv[]) {
    QApplication app(argc, argv);
    const int mudancas = argc > 1 ? std::max(1000, QByteArray(argv[1]).toInt()) : 500'000;
    const QTemporaryDir pasta;
    const QByteArray caminho = QFile::encodeName(pasta.filePath(u"Kelvark.mdb"_s));
    criar(caminho, mudancas);
    estado().PastaPrograma = pasta.path();
    modINI::SaveSetting(estado().NomePrograma, u"BD"_s, u"MAIN"_s, QFile::decodeName(caminho));
    if (!modMain::carregaGlobaisBD())
        parar("the database does not open");
    QWidget principal;
    registoForms().dono = &principal;
    registarEstados(registoForms());
    registarVistasDosRegistadores(registoForms());
    nu::Base bd(caminho);

    QWidget *entradas = nullptr;
    const double lista = medidas::segundosDe([&] { entradas = registoForms().abrir(u"frmGraficoInputs"_s); });
    abrir(u"frmGraficoInputs"_s);
    for (const QString &nome : {u"grdDispositivos"_s, u"grdInputs"_s})
        qobject_cast<ListaMarcada *>(entradas->findChild<Grelha *>(nome))->marcar(0, true);
    entradas->findChild<QDateEdit *>(u"DTPdataInicio"_s)->setDate(QDate(2019, 1, 1));
    entradas->findChild<QDateEdit *>(u"DTPdataFim"_s)->setDate(QDate(2099, 1, 1));
    const medidas::Par registo = medidas::comparar(
        voltas, [&] { return carregar(entradas, 3, mudancas); },
        [&] {
            return laco(bd,
                        "SELECT Data, Estado, flag FROM REGISTO_Inputs WHERE Data BETWEEN '2019-01-01' AND "
                        "'2099-01-01' AND DispositivoIP = '127.0.0.2' AND InputNum = 1 ORDER BY Data",
                        mudancas);
        });
    bool bem = medidas::dizer("mudanças de uma entrada", registo, limiteDaRazao);
    std::printf("lista de dispositivos e entradas: %.1f ms (até 100)\n", lista * 1e3);
    bem = bem && lista < 0.1;
    delete entradas;

    QWidget *missao = abrir(u"frmGraficoLoggers"_s);
    // What a form costs anyway: the same chart with two samples.
    auto *missoes = missao->findChild<Grelha *>(u"grdSensoresMissao"_s);
    double consulta = 0;
    const medidas::Par deMissao = medidas::comparar(
        3 * voltas,
        [&] {
            missoes->setLinhaActual(0);
            return carregar(missao, 0, amostras);
        },
        [&] {
            missoes->setLinhaActual(missoes->linhas() - 1);
            consulta = laco(bd,
                            "SELECT Data, Temperatura, flag, Max, Min FROM DS1921 WHERE LoggerID = '21A' AND "
                            "Nomelogger = 'Vacinas' AND DescricaoMissao = 'Rota' AND NMissao = '0001' ORDER BY Data",
                            amostras);
            return carregar(missao, 0, 2);
        });
    std::printf("missão de %d amostras: %.1f ms (até %.0f), com duas %.1f ms, a consulta %.1f ms\n", amostras,
                deMissao.nosso * 1e3, missaoAberta, deMissao.simples * 1e3, consulta * 1e3);
    bem = bem && deMissao.nosso * 1e3 <= missaoAberta;
    delete missao;
    return bem ? 0 : 1;
}
