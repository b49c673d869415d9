// Remakes the pictures of docs/imagens from an installation: vistrel-capturas <installation> <target folder>
// [--escuro] [--so <group>].
// Forms are worked by their controls' names, as a user works them.
#include "core/datas.h"
#include "core/estado.h"
#include "core/literais.h"
#include "core/modErros.h"
#include "core/modTraducoes.h"
#include "data/ligacao.h"
#include "data/modMain.h"
#include "data/recordset.h"
#include "devicestate/forms/listaMarcada.h"
#include "platform/chart/TChart.h"
#include "platform/forms/dialogosQt.h"
#include "platform/forms/grelha.h"
#include "platform/forms/registoForms.h"
#include "platform/unit/rede.h"
#include "shell/apresentadorQt.h"
#include "shell/arranque.h"
#include "shell/frmMain.h"
#include "simulator/botao/transporteVirtual.h"

#include <QApplication>
#include <QCheckBox>
#include <QDateEdit>
#include <QDir>
#include <QElapsedTimer>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPushButton>
#include <QTabWidget>
#include <QTableView>
#include <QTest>
#include <QTimer>
#include <QToolButton>

namespace {

QString destino;

void passar(int ms) {
    QTest::qWait(ms);
}

void guardar(QWidget *w, const QString &nome) {
    passar(250);
    w->grab().save(destino + u'/' + nome + u".png");
}

template <typename T>
T *controlo(QWidget *form, const QString &nome) {
    return form->findChild<T *>(nome);
}

// Chooses the first sensors, the last days and confirms.
QWidget *vista(const QString &form, int sensores, int dias) {
    QWidget *w = registoForms().abrir(form);
    if (auto *janela = qobject_cast<QMdiSubWindow *>(w->parentWidget()))
        janela->showMaximized();
    passar(400);
    for (int i = 0; i < sensores; ++i)
        if (auto *botao = controlo<QToolButton>(w, u"cmdAdicionar"_s))
            botao->click();
    if (auto *inicio = controlo<QDateEdit>(w, u"DTPdataInicio"_s))
        inicio->setDate(inicio->date().addDays(-dias));
    return w;
}

void confirmar(QWidget *w) {
    QElapsedTimer tempo;
    tempo.start();
    controlo<QPushButton>(w, u"cmdConfirmar"_s)->click();
    passar(100);
    while (!registoForms().dono->isEnabled())
        passar(20);
    qInfo("%s: %lld ms", qPrintable(w->objectName()), tempo.elapsed());
    passar(500);
}

void fechar(QWidget *w) {
    w->parentWidget() && !w->isWindow() ? w->parentWidget()->close() : w->close();
    passar(50);
}

void imprimir(QWidget *w, const QString &nome) {
    controlo<QPushButton>(w, u"cmdImprimir"_s)->click();
    passar(500);
    for (QWidget *topo : QApplication::topLevelWidgets())
        if (topo->objectName().startsWith(u"DataReport")) {
            guardar(topo, nome);
            topo->close();
        }
}

void graficos(QWidget &principal) {
    QWidget *w = vista(u"frmGraficoPrincipalTemp"_s, 1, 30);
    guardar(&principal, u"painel"_s);
    confirmar(w);
    guardar(&principal, u"grafico"_s);
    auto *chart = controlo<TChart>(w, u"TChart"_s);
    const QPoint de(chart->width() / 2, chart->height() / 6);
    const QPoint ate(chart->width() / 2 + 120, chart->height() * 2 / 3);
    QTest::mousePress(chart, Qt::LeftButton, {}, de);
    QTest::mouseMove(chart, ate);
    passar(50);
    QTest::mouseRelease(chart, Qt::LeftButton, {}, ate);
    passar(100);
    QTest::keyClick(chart, Qt::Key_Right);
    guardar(&principal, u"grafico-zoom"_s);
    chart->imagem(1050, 506).save(destino + u"/exportado.jpg");
    QTest::keyClick(chart, Qt::Key_Return);
    passar(300);
    if (QWidget *pontos = registoForms().form(u"frmOpccoesTempPontos"_s)) {
        guardar(pontos, u"ponto"_s);
        pontos->close();
    }
    imprimir(w, u"impressao-grafico"_s);
    fechar(w);
    w = vista(u"frmGraficoPrincipalHumidade"_s, 5, 3);
    confirmar(w);
    guardar(&principal, u"grafico-varios"_s);
    fechar(w);
}

void outras(QWidget &principal) {
    QWidget *w = vista(u"frmGraficoPrincipalHistogramaTemp"_s, 1, 200);
    confirmar(w);
    guardar(&principal, u"histograma"_s);
    imprimir(w, u"impressao-histograma"_s);
    fechar(w);
    w = vista(u"frmListagemObservacoesTemp"_s, 3, 300);
    guardar(&principal, u"listagem-painel"_s);
    confirmar(w);
    guardar(&principal, u"listagem"_s);
    imprimir(w, u"impressao-listagem"_s);
    fechar(w);
    w = vista(u"frmListagemAlarmesHum"_s, 3, 390);
    confirmar(w);
    guardar(&principal, u"listagem-alarmes"_s);
    imprimir(w, u"impressao-listagem-alarmes"_s);
    fechar(w);
    w = vista(u"frmListagemAlarmesMask"_s, 0, 390);
    guardar(&principal, u"verificados-painel"_s);
    confirmar(w);
    guardar(&principal, u"verificados"_s);
    imprimir(w, u"impressao-verificados"_s);
    fechar(w);
}

void marcar(QWidget *w, const QString &lista, const QList<int> &linhas) {
    auto *grelha = controlo<ListaMarcada>(w, lista);
    for (const int linha : linhas)
        if (linha < grelha->linhas())
            grelha->marcar(linha, true);
}

void pontoDe(QWidget *w, const QString &form, const QString &nome) {
    auto *chart = controlo<TChart>(w, u"TChart"_s);
    QTest::keyClick(chart, Qt::Key_Home);
    QTest::keyClick(chart, Qt::Key_Return);
    passar(300);
    if (QWidget *pontos = registoForms().form(form)) {
        guardar(pontos, nome);
        pontos->close();
    }
}

void sensUI(QWidget &principal) {
    QWidget *w = vista(u"frmGraficoSensUI"_s, 1, 30);
    confirmar(w);
    guardar(&principal, u"sensui-grafico"_s);
    fechar(w);
    w = vista(u"frmGraficoHistogramaSensUI"_s, 1, 30);
    confirmar(w);
    guardar(&principal, u"sensui-histograma"_s);
    imprimir(w, u"impressao-sensui-histograma"_s);
    fechar(w);
    w = vista(u"frmListagemObservacoesSensUI"_s, 2, 300);
    confirmar(w);
    guardar(&principal, u"sensui-listagem"_s);
    imprimir(w, u"impressao-sensui-listagem"_s);
    fechar(w);
    w = vista(u"frmListagemAlarmesSensUi"_s, 3, 390);
    confirmar(w);
    guardar(&principal, u"sensui-alarmes"_s);
    imprimir(w, u"impressao-sensui-alarmes"_s);
    fechar(w);
}

void estados(QWidget &principal) {
    QWidget *w = vista(u"frmGraficoInputs"_s, 0, 3);
    marcar(w, u"grdDispositivos"_s, {0, 1});
    marcar(w, u"grdInputs"_s, {0, 2});
    guardar(&principal, u"inputs-painel"_s);
    confirmar(w);
    guardar(&principal, u"inputs"_s);
    pontoDe(w, u"frmOpccoesPontosInputs"_s, u"inputs-ponto"_s);
    imprimir(w, u"impressao-inputs"_s);
    fechar(w);
    w = vista(u"frmGraficoOutputs"_s, 0, 7);
    marcar(w, u"grdDispositivos"_s, {0});
    marcar(w, u"grdInputs"_s, {0});
    confirmar(w);
    guardar(&principal, u"outputs"_s);
    fechar(w);
    for (const QString &form :
         {u"frmGraficoREGISTO_C_Inputs"_s, u"frmGraficoREGISTO_C_Sensores"_s, u"frmGraficoREGISTO_C_GroupCond"_s}) {
        w = vista(form, 0, 30);
        marcar(w, u"grdCondicoes"_s, {0});
        guardar(&principal, form + u"-painel");
        confirmar(w);
        guardar(&principal, form);
        pontoDe(w, u"frmOpccoesPontos"_s + form.mid(10), form + u"-ponto");
        fechar(w);
    }
}

void registadores(QWidget &principal) {
    for (const QString &form : {u"frmGraficoLoggers"_s, u"frmHistogramaLoggers"_s, u"frmListagemObservacoesLogger"_s,
                                u"frmListagemAlarmesLogger"_s}) {
        QWidget *w = vista(form, 0, 0);
        controlo<Grelha>(w, u"grdSensoresAll"_s)->setLinhaActual(4);
        controlo<Grelha>(w, u"grdSensoresMissao"_s)->setLinhaActual(2);
        guardar(&principal, form + u"-painel");
        confirmar(w);
        guardar(&principal, form);
        imprimir(w, form + u"-impressao");
        if (form == u"frmGraficoLoggers")
            pontoDe(w, u"frmOpccoesLoggersPontos"_s, form + u"-ponto");
        fechar(w);
    }
    QWidget *w = registoForms().abrir(u"frmListagemLoggers"_s);
    controlo<QCheckBox>(w, u"chkConcluidas"_s)->click();
    guardar(&principal, u"frmListagemLoggers"_s);
    fechar(w);
}

void menus(QWidget &principal) {
    for (const QString &chave : {u"Graficos"_s, u"Listagens"_s, u"Geral"_s})
        if (auto *menu = principal.findChild<QMenu *>(u"menu"_s + chave); menu && menu->menuAction()->isVisible()) {
            menu->popup(principal.mapToGlobal(QPoint(60, 30)));
            guardar(menu, u"menu-"_s + chave);
            menu->close();
        }
}

// A modal form is pictured while it is open; `trabalho` may make more pictures of it.
void modal(const QString &nome, const std::function<void(QWidget *)> &trabalho) {
    QTimer espera;
    QObject::connect(&espera, &QTimer::timeout, qApp, [&] {
        QWidget *w = registoForms().form(nome);
        if (!w || !w->isVisible())
            return;
        espera.stop();
        trabalho(w);
        w->close();
    });
    espera.start(10);
    registoForms().abrir(nome);
}

void manutencao(QWidget &) {
    modal(u"frmPassWord"_s, [](QWidget *w) { guardar(w, u"password"_s); });
    const QString lingua = estado().Lingua; // the dialog goes back to the one of the settings
    modal(u"frmConfiguracoes"_s, [](QWidget *w) {
        auto *tiras = controlo<QTabWidget>(w, u"Tiras"_s);
        for (int i = 0; i < tiras->count(); ++i) {
            tiras->setCurrentIndex(i);
            guardar(w, u"configuracoes-%1"_s.arg(i + 1));
        }
    });
    estado().Lingua = lingua;
    modal(u"frmSensoresEdit"_s, [](QWidget *w) {
        auto *grelha = controlo<Grelha>(w, u"grdSensores"_s);
        grelha->setCelula(0, 2, grelha->celula(1, 1));
        grelha->setLinhaActual(2);
        QTest::keyClick(grelha, Qt::Key_Delete);
        passar(3000);
        guardar(w, u"sensores"_s);
    });
}

void botao(QWidget &principal) {
    QWidget *ajuda = registoForms().abrir(u"frmAjuda"_s);
    guardar(ajuda->isWindow() ? ajuda : &principal, u"adaptador"_s);
    fechar(ajuda);
    QWidget *w = registoForms().abrir(u"frmDS1921"_s);
    passar(300);
    guardar(w, u"botao-inicio"_s);
    controlo<QPushButton>(w, u"cmdLerDados"_s)->click();
    (void)QTest::qWaitFor([&] { return registoForms().dono->isEnabled(); }, 60000);
    for (const QString &tira : {u"lblEstado"_s, u"lblResultados"_s, u"lblGrafico"_s, u"lblAssistente"_s}) {
        QTest::mouseClick(controlo<QWidget>(w, tira), Qt::LeftButton);
        guardar(w, u"botao-"_s + tira.mid(3));
    }
    for (int passo = 1; passo <= 5; ++passo) {
        controlo<QPushButton>(w, u"cmdAvancar"_s)->click();
        guardar(w, u"botao-passo-%1"_s.arg(passo));
    }
    fechar(w);
}

// Wants the virtual units of the installation to be running.
void unidades(QWidget &principal) {
    QWidget *w = registoForms().abrir(u"frmDescarregar2251"_s);
    passar(1500);
    guardar(&principal, u"unidades-pesquisa"_s);
    (void)QTest::qWaitFor([&] { return w->isEnabled(); }, 30000);
    guardar(&principal, u"unidades"_s);
    controlo<QPushButton>(w, u"cmdDescarregar"_s)->click();
    passar(400);
    guardar(&principal, u"unidades-a-descarregar"_s);
    (void)QTest::qWaitFor([&] { return w->isEnabled() && controlo<QPushButton>(w, u"cmdDescarregar"_s)->isEnabled(); },
                          120000);
    guardar(&principal, u"unidades-descarregadas"_s);
    fechar(w);
}

} // namespace

int main(int argc, char *argv[]) {
    QApplication aplicacao(argc, argv);
    QApplication::setApplicationVersion(u"1.0.0"_s);
    DialogosQt dialogos;
    ApresentadorQt apresentador;
    const QStringList argumentos = QApplication::arguments();
    if (argumentos.size() < 3)
        return 2;
    estado().PastaPrograma = QDir(argumentos[1]).absolutePath();
    destino = argumentos[2];
    QDir().mkpath(destino);
    if (argumentos.contains(u"--escuro"_s)) {
        QPalette escura(QColor(45, 48, 52), QColor(45, 48, 52));
        escura.setColor(QPalette::Base, QColor(30, 32, 35));
        escura.setColor(QPalette::AlternateBase, QColor(38, 40, 44));
        escura.setColor(QPalette::Text, QColor(225, 228, 232));
        QApplication::setPalette(escura);
    }
    estado().ambiente.locale = QLocale(u"pt_PT"_s);
    estado().ambiente.dialogos = &dialogos;
    estado().ambiente.apresentador = &apresentador;
    const qsizetype lingua = argumentos.indexOf(u"--lingua"_s);
    estado().Lingua = lingua > 0 ? argumentos.value(lingua + 1) : modTraducoes::linguaDasDefinicoes();
    modMain::carregaGlobaisBD();
    simulador::oferecerGavetas();
    rede::instalar();
    modMain::registarForms(registoForms());
    {
        frmMain principal;
        principal.resize(1180, 760); // the offscreen platform's screen is smaller
        principal.show();
        guardar(&principal, u"principal"_s);
        menus(principal);
        const qsizetype so = argumentos.indexOf(u"--so"_s);
        const QList<std::pair<QString, void (*)(QWidget &)>> grupos{{u"graficos"_s, graficos},
                                                                    {u"outras"_s, outras},
                                                                    {u"sensui"_s, sensUI},
                                                                    {u"estados"_s, estados},
                                                                    {u"registadores"_s, registadores},
                                                                    {u"manutencao"_s, manutencao},
                                                                    {u"botao"_s, botao},
                                                                    {u"unidades"_s, unidades}};
        for (const auto &[nome, fazer] : grupos)
            if (so < 0 || argumentos.value(so + 1) == nome)
                fazer(principal);
        modErros::TratarErro(u"frmMain.Exemplo"_s, u"A base de dados está bloqueada por outro programa."_s, u"5"_s);
        if (QWidget *erro = registoForms().form(u"frmErro"_s)) {
            guardar(erro, u"erro"_s);
            erro->findChild<QPushButton *>(u"cmdDetalhe"_s)->click();
            guardar(erro, u"erro-detalhes"_s);
        }
        principal.close();
        passar(50);
    }
    renovarEstado();
    return 0;
}
