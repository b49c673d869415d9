#include "core/literais.h"
#include "core/modINI.h"
#include "data/ligacao.h"
#include "platform/chart/TChart.h"
#include "platform/forms/grelha.h"
#include "platform/forms/registoForms.h"
#include "tests/apoio/instalacao.h"
#include "tests/apoio/widgets.h"
#include "views/familiaGraficos.h"
#include "views/forms/formGrafico.h"
#include "views/forms/registar.h"

#include <QAbstractButton>
#include <QDateEdit>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPointer>
#include <QTest>
#include <QTimer>

#include <cmath>

namespace {

using utilizador::clicar;
using utilizador::controlo;

const QString graficoTemp = u"frmGraficoPrincipalTemp"_s;
const QString dia = u"2024-03-15 "_s;

QString id(int n) {
    return u"28A00000000000%1"_s.arg(n, 2, 10, QChar(u'0'));
}

// A chart as the menu opens it, beside a main window that owns dialogs.
struct Grafico {
    explicit Grafico(const QString &nome = graficoTemp) {
        registoForms().dono = &principal;
        principal.show();
        registarVistas(registoForms());
        form = qobject_cast<FormGrafico *>(registoForms().abrir(nome));
        utilizador::mostrar(form);
        QTest::qWait(20); // the chart is set up a moment after the form
    }
    ~Grafico() { delete form; }

    void carregar(const QList<int> &quais) const {
        auto *todos = controlo<Grelha>(form, u"grdSensoresAll"_s);
        if (!todos->isVisible())
            clicar(form, u"cmdOpccoes"_s);
        clicar(form, u"cmdRemoverAll"_s);
        for (const int n : quais)
            for (int linha = 0; linha < todos->linhas(); ++linha)
                if (todos->celula(linha, 0) == id(n)) {
                    todos->setLinhaActual(linha);
                    clicar(form, u"cmdAdicionar"_s);
                    break;
                }
        clicar(form, u"cmdConfirmar"_s);
    }
    TChart &chart() const { return *controlo<TChart>(form, u"TChart"_s); }
    QString media() const { return controlo<QLabel>(form, u"lblMedia"_s)->text(); }
    void clicarPonto(int serie, int indice, Qt::MouseButton botao = Qt::LeftButton) const {
        Q_EMIT chart().OnClickSeries(serie, indice, botao, Qt::NoModifier, QPoint(-1000, -1000));
    }
    QDialog *pontos() const { return qobject_cast<QDialog *>(registoForms().form(u"frmOpccoesTempPontos"_s)); }

    QWidget principal;
    QPointer<FormGrafico> form;
};

struct Instalada : Instalacao {
    explicit Instalada(int quantos = 3, const QString &tipo = u"P 1250C"_s) {
        for (int n = 1; n <= quantos; ++n)
            sensor({id(n), u"Sensor %1"_s.arg(n), tipo});
    }
};

QList<quint32> coresDe(const TSerie &serie) {
    QList<quint32> lista;
    for (qsizetype i = 0; i < serie.Count(); ++i)
        lista.append(serie.PointColor(i));
    return lista;
}

QStringList rotulosDe(const TSerie &serie) {
    QStringList lista;
    for (qsizetype i = 0; i < serie.Count(); ++i)
        lista.append(serie.PointLabel(i));
    return lista;
}

} // namespace

class tst_grafico : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void emBranco();
    void umSensor();
    void variosSensores();
    void dezasseteSensores();
    void semLeituras();
    void soND();
    void media_data();
    void media();
    void eixos_data();
    void eixos();
    void actualizarGrafico();
    void recarregar();
    void fecharDuranteCarga();
    void cancelarCarga();
    void falhaDuranteCarga();
    void falhaDaConsulta();
    void formDePontos();
    void formDePontosEscape();
    void notaApagada();
    void notaSemLeitura();
    void notaQueFalha();
    void cliqueEmLimite();
    void botaoDireito();
    void membrosDePontos_data();
    void membrosDePontos();
    void tamanhoMinimo();
};

void tst_grafico::emBranco() {
    const Instalada inst;
    const Grafico g;
    QCOMPARE(g.chart().SeriesCount(), 3);
    QCOMPARE(g.chart().Series(0).Name, u"A1"_s);
    QVERIFY(!g.chart().Series(0).Active);
    QCOMPARE(g.chart().Left().Minimum, 1.0); // not the settings' 0
    QCOMPARE(g.chart().Left().Maximum, 40.0);
    QVERIFY(!g.chart().Bottom().Visible);
    QVERIFY(!controlo<QWidget>(g.form, u"cmdImprimir"_s)->isEnabled());
}

void tst_grafico::umSensor() {
    const Instalada inst;
    inst.leituras(u"Temperaturas"_s, id(1),
                  {{dia + u"10:00:00"_s, 30.0, u"30XXX5"_s, u"porta"_s},
                   {dia + u"10:05:00"_s, 5.0, u"30XXX5"_s},
                   {dia + u"10:10:00"_s, u"5,1"_s, u"30XXX5"_s},
                   {dia + u"10:15:00"_s, 90.0, u"NAXXXNA"_s},
                   {dia + u"10:20:00"_s, 4.0, u" NA XXX4,5"_s, u" "_s},
                   {dia + u"10:25:00"_s, 80.0, QVariant(), QVariant()}});
    const Grafico g;
    g.carregar({1});
    TChart &c = g.chart();
    QCOMPARE(c.SeriesCount(), 3);
    const TSerie &s = c.Series(0);
    QCOMPARE(s.Title, u"Sensor 1"_s);
    QVERIFY(s.Active && s.ColorEachPoint);
    QCOMPARE(coresDe(s), QList<quint32>({255, 16711680, 65280, 65280, 16711680, 65280}));
    QCOMPARE(rotulosDe(s), QStringList({u"!"_s, u" "_s, u" "_s, u" "_s, u" "_s, u" "_s}));
    QCOMPARE(c.Series(1).y(), (std::vector<double>{30, 30, 30}));
    QCOMPARE(c.Series(2).y(), (std::vector<double>{5, 5, 5, 4.5}));
    QCOMPARE(c.Series(1).PointColor(0), quint32(255));
    QCOMPARE(c.Series(2).PointColor(0), quint32(16711680));
    for (int i = 0; i < 3; ++i)
        QCOMPARE(c.Series(i).Name.right(16), id(1));
    QCOMPARE(g.media(), u"Média = 35,68 °C"_s);
    QVERIFY(!controlo<QWidget>(g.form, u"PictOpccoes"_s)->isVisible());
    QVERIFY(c.isVisible());
    QVERIFY(!controlo<QWidget>(g.form, u"TChartBackGround"_s)->isVisible());
    QVERIFY(g.principal.isEnabled());
    QVERIFY(controlo<QWidget>(g.form, u"cmdImprimir"_s)->isEnabled());
    QVERIFY(!registoForms().form(u"frmEsperaPraCriarGrafico"_s));
}

void tst_grafico::variosSensores() {
    const Instalada inst;
    inst.leituras(u"Temperaturas"_s, id(1), {{dia + u"10:00:00"_s, 10.0, u"30XXXcinco"_s, u"x"_s}});
    inst.leituras(u"Temperaturas"_s, id(3), {{dia + u"10:00:00"_s, 40.0, u"30XXX5"_s}});
    const Grafico g;
    g.carregar({1, 2, 3}); // the second one has no readings: no weight, but its colour is used up
    TChart &c = g.chart();
    QCOMPARE(c.SeriesCount(), 6);
    for (int i = 0; i < 3; ++i) {
        QVERIFY(!c.Series(i).Active);
        QCOMPARE(c.Series(i).Count(), 0);
        QCOMPARE(c.Series(3 + i).Name, QString(u'A' + id(i + 1)));
        QVERIFY(c.Series(3 + i).Active);
    }
    QCOMPARE(c.Series(3).Color, quint32(255));
    QCOMPARE(c.Series(3).PointLabel(0), u"!"_s);
    QCOMPARE(c.Series(4).Count(), 0);
    QCOMPARE(coresDe(c.Series(5)), QList<quint32>{65535}); // no alarm colours here
    QCOMPARE(g.media(), u"Média = 25 °C"_s);
}

void tst_grafico::dezasseteSensores() {
    const Instalada inst(18);
    QList<int> todos;
    for (int n = 1; n <= 18; ++n)
        todos.append(n);
    const Grafico g;
    g.carregar(todos);
    QCOMPARE(g.chart().Series(3 + 15).Color, quint32(9408399));
    QCOMPARE(g.chart().Series(3 + 16).Color, quint32(255));
    QCOMPARE(g.chart().Series(3 + 17).Color, quint32(33023));
    g.carregar({1}); // and back to the three that stand
    QCOMPARE(g.chart().SeriesCount(), 3);
}

void tst_grafico::semLeituras() {
    const Instalada inst;
    const Grafico g;
    g.carregar({1});
    QCOMPARE(g.media(), QString());
    QCOMPARE(g.chart().Left().Minimum, 1.0);
    QVERIFY(g.chart().Bottom().Minimum > 0); // the day that was asked for
    QCOMPARE(g.chart().Bottom().Maximum - g.chart().Bottom().Minimum, 86399.0);
    QVERIFY(g.principal.isEnabled());
}

void tst_grafico::soND() {
    const Instalada inst;
    inst.leituras(u"Temperaturas"_s, id(1),
                  {{dia + u"10:00:00"_s, u"ND"_s, u"30XXX5"_s}, {dia + u"10:05:00"_s, u"ND"_s, u"30XXX5"_s}});
    const Grafico g;
    g.carregar({1});
    QCOMPARE(g.media(), QString());
    QVERIFY(std::isnan(g.chart().Series(0).YValue(1)));
    QCOMPARE(g.chart().MaxXValue(), 0.0); // nothing is drawn, the axes stay
    QCOMPARE(g.chart().Left().Maximum, 40.0);
}

void tst_grafico::media_data() {
    QTest::addColumn<QList<double>>("valores");
    QTest::addColumn<QString>("legenda");
    QTest::newRow("half to even") << QList<double>{0.125} << u"Média = 0,12 °C"_s;
    QTest::newRow("half to even, up") << QList<double>{0.135} << u"Média = 0,14 °C"_s;
    QTest::newRow("never minus nought") << QList<double>{-0.001} << u"Média = 0 °C"_s;
    QTest::newRow("exactly nought is not shown") << QList<double>{-1, 1} << QString();
    QTest::newRow("no noughts behind") << QList<double>{21.5} << u"Média = 21,5 °C"_s;
}

void tst_grafico::media() {
    const Instalada inst;
    QFETCH(QList<double>, valores);
    inst.leituras(u"Temperaturas"_s, id(1), dia + u"10:00:00"_s, 60, valores);
    const Grafico g;
    g.carregar({1});
    QTEST(g.media(), "legenda");
}

void tst_grafico::eixos_data() {
    QTest::addColumn<QString>("form");
    QTest::addColumn<QString>("tipo");
    QTest::addColumn<double>("minimo");
    QTest::addColumn<double>("maximo");
    QTest::newRow("limits included") << graficoTemp << u"P 1250C"_s << 5.0 - 4 << 30.0 + 4;
    QTest::newRow("humidity") << u"frmGraficoPrincipalHumidade"_s << u"P 1250%"_s << 0.0 << 100.0;
    QTest::newRow("humidity pulled") << u"frmGraficoPrincipalHumidadePull"_s << u"P 1250%"_s << 0.0 << 100.0;
    QTest::newRow("pressure") << u"frmGraficoPrincipalPressao"_s << u"K"_s << 1.0 << 34.0;
}

void tst_grafico::eixos() {
    QFETCH(QString, form);
    QFETCH(QString, tipo);
    const Instalada inst(1, tipo);
    const MembroGrafico &membro = *membroGrafico(form);
    inst.leituras(membro.tabela.nome.toString(), id(1), dia + u"10:00:00"_s, 60, {20, 22}, u"30XXX5"_s);
    const Grafico g(form);
    g.carregar({1});
    QTEST(g.chart().Left().Minimum, "minimo");
    QTEST(g.chart().Left().Maximum, "maximo");
    QVERIFY(g.chart().Bottom().Visible);
    QCOMPARE(g.chart().Bottom().Maximum - g.chart().Bottom().Minimum, 60.0);
    QCOMPARE(g.chart().Bottom().Increment, 60.0);
    QCOMPARE(g.media(), u"Média = 21"_s + membro.unidade);
}

void tst_grafico::actualizarGrafico() {
    const Instalada inst;
    const Grafico g;
    g.form->ActualizarGrafico();
    QCOMPARE(g.chart().Left().Minimum, 0.0);
    modINI::SaveSetting(u"Vistrel"_s, u"GRAFICOPRINCIPAL"_s, u"LimitesTemperaturasMin"_s, u"-20,5"_s);
    g.form->ActualizarGrafico();
    QCOMPARE(g.chart().Left().Minimum, -20.5);
    QCOMPARE(g.chart().Left().Increment, 1.0);
}

void tst_grafico::recarregar() {
    const Instalada inst;
    inst.leituras(u"Temperaturas"_s, id(1), {{dia + u"10:00:00"_s, 10.0, u"30XXX5"_s}});
    const Grafico g;
    g.carregar({1});
    inst.leituras(u"Temperaturas"_s, id(1), {{dia + u"10:05:00"_s, 20.0, u"30XXX5"_s}});
    g.carregar({1}); // read afresh
    QCOMPARE(g.chart().Series(0).Count(), 2);
    g.carregar({1, 2});
    QCOMPARE(g.chart().Series(0).Count(), 0);
    QCOMPARE(g.chart().Series(0).Name, u"A1"_s);
    QCOMPARE(g.chart().Series(3).Count(), 2);
}

// So many readings that events run in between.
void encher(const Instalacao &inst) {
    QList<double> valores(200000, 20.0);
    inst.leituras(u"Temperaturas"_s, id(1), dia + u"00:00:00"_s, 0, valores, u"30XXX5"_s);
}

void tst_grafico::fecharDuranteCarga() {
    const Instalada inst;
    encher(inst);
    const Grafico g;
    bool espera = false;
    bool desactivada = false;
    QTimer::singleShot(0, g.form, [&] {
        espera = registoForms().form(u"frmEsperaPraCriarGrafico"_s) != nullptr;
        desactivada = !g.principal.isEnabled();
        delete g.form;
    });
    g.carregar({1});
    QVERIFY(g.form.isNull());
    QVERIFY(espera && desactivada);
    QVERIFY(g.principal.isEnabled());
    QVERIFY(!registoForms().form(u"frmEsperaPraCriarGrafico"_s));
}

void tst_grafico::cancelarCarga() {
    const Instalada inst;
    encher(inst);
    const Grafico g;
    QTimer::singleShot(0, g.form,
                       [&] { QTest::keyClick(registoForms().form(u"frmEsperaPraCriarGrafico"_s), Qt::Key_Escape); });
    g.carregar({1});
    QCOMPARE(g.chart().Series(0).Count(), 0); // no part of a range is shown as the whole
    QCOMPARE(g.media(), QString());
    QVERIFY(!controlo<QWidget>(g.form, u"cmdImprimir"_s)->isEnabled());
    QVERIFY(g.principal.isEnabled());
    QVERIFY(controlo<QWidget>(g.form, u"PictOpccoes"_s)->isVisible());
    QVERIFY(g.chart().isVisible());
    g.carregar({2}); // and it works again
    QVERIFY(!controlo<QWidget>(g.form, u"PictOpccoes"_s)->isVisible());
}

// The fifth reading has a limit that is none: what was read stays, the failure is told once, everything works again.
void tst_grafico::falhaDuranteCarga() {
    Instalada inst;
    inst.leituras(u"Temperaturas"_s, id(1), dia + u"10:00:00"_s, 60, {10, 20, 30, 40}, u"50XXX5"_s);
    inst.leituras(u"Temperaturas"_s, id(1), {{dia + u"11:00:00"_s, 50.0, u"trintaXXX5"_s}});
    inst.erros.esperar(graficoTemp + u".AdicionarValorAoGrafico"_s);
    const Grafico g;
    g.carregar({1});
    QCOMPARE(inst.erros.carregamentos, 1);
    QVERIFY(g.principal.isEnabled());
    QCOMPARE(g.chart().Series(0).Count(), 4);
    QCOMPARE(g.media(), QString());
    QVERIFY(g.chart().isVisible());
}

void tst_grafico::falhaDaConsulta() {
    Instalada inst;
    const Grafico g;
    inst.executar(u"DROP TABLE Temperaturas"_s);
    inst.erros.esperar(u"Temperaturas"_s);
    g.carregar({1});
    QCOMPARE(inst.erros.carregamentos, 1);
    QVERIFY(g.principal.isEnabled());
    QVERIFY(!registoForms().form(u"frmEsperaPraCriarGrafico"_s));
    QVERIFY(g.chart().isVisible());
}

void tst_grafico::formDePontos() {
    const Instalada inst;
    inst.leituras(u"Temperaturas"_s, id(1),
                  {{dia + u"10:00:00"_s, 10.0}, {dia + u"10:00:01"_s, 21.5, QVariant(), u"velha"_s}});
    const Grafico g;
    g.carregar({1});
    g.clicarPonto(0, 1);
    QDialog *p = g.pontos();
    QVERIFY(p && p->isModal());
    QVERIFY(!g.chart().ZoomEnable());
    QCOMPARE(controlo<QLineEdit>(p, u"txtData"_s)->text(), u"15/03/2024 10:00:01"_s);
    QCOMPARE(controlo<QLineEdit>(p, u"txtTemperatura"_s)->text(), u"21,5"_s);
    QCOMPARE(controlo<QLineEdit>(p, u"txtSensor"_s)->text(), id(1));
    QCOMPARE(controlo<QLineEdit>(p, u"txtNomeSensor"_s)->text(), u"Sensor 1"_s);
    QVERIFY(controlo<QLineEdit>(p, u"txtSensor"_s)->isReadOnly());
    auto *nota = controlo<QPlainTextEdit>(p, u"txtObservacoes"_s);
    QCOMPARE(nota->toPlainText(), u"velha"_s);
    QCOMPARE(nota->textCursor().position(), 5);
    QTest::keyClicks(nota, u", it's open  "_s);
    clicar(p, u"cmdConcluir"_s);
    QCOMPARE(inst.linha(u"SELECT flag FROM Temperaturas ORDER BY Data DESC"_s).value(0).toString(),
             u"velha, it's open"_s);
    QCOMPARE(inst.linha(u"SELECT flag FROM Temperaturas ORDER BY Data"_s).value(0).toString(), u" "_s);
    QCOMPARE(rotulosDe(g.chart().Series(0)), QStringList({u" "_s, u"!"_s}));
    QVERIFY(utilizador::esperar([&] { return g.chart().ZoomEnable() && !g.pontos(); }));
}

void tst_grafico::formDePontosEscape() {
    const Instalada inst;
    inst.leituras(u"Temperaturas"_s, id(1), {{dia + u"10:00:00"_s, 10.0, QVariant(), u"fica"_s}});
    const Grafico g;
    g.carregar({1});
    g.clicarPonto(0, 0);
    auto *nota = controlo<QPlainTextEdit>(g.pontos(), u"txtObservacoes"_s);
    QTest::keyClicks(nota, u" mais"_s);
    QTest::keyClick(nota, Qt::Key_Escape);
    QVERIFY(utilizador::esperar([&] { return !g.pontos(); }));
    QCOMPARE(inst.linha(u"SELECT flag FROM Temperaturas"_s).value(0).toString(), u"fica"_s);
    QCOMPARE(rotulosDe(g.chart().Series(0)), QStringList{u"!"_s});
}

void tst_grafico::notaApagada() {
    const Instalada inst;
    inst.leituras(u"Temperaturas"_s, id(1), {{dia + u"10:00:00"_s, 10.0, QVariant(), u"sai"_s}});
    const Grafico g;
    g.carregar({1});
    g.clicarPonto(0, 0);
    auto *nota = controlo<QPlainTextEdit>(g.pontos(), u"txtObservacoes"_s);
    QTest::keyClick(nota, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(nota, Qt::Key_Delete);
    QTest::keyClick(nota, Qt::Key_Return, Qt::ControlModifier);
    QCOMPARE(inst.linha(u"SELECT flag FROM Temperaturas"_s).value(0).toString(), u" "_s);
    QCOMPARE(rotulosDe(g.chart().Series(0)), QStringList{u" "_s});
}

// The reading has gone meanwhile: nothing is stored, nothing is said, and the chart does not claim a note.
void tst_grafico::notaSemLeitura() {
    const Instalada inst;
    inst.leituras(u"Temperaturas"_s, id(1), {{dia + u"10:00:00"_s, 10.0, QVariant(), u" "_s}});
    const Grafico g;
    g.carregar({1});
    inst.executar(u"DELETE FROM Temperaturas"_s);
    g.clicarPonto(0, 0);
    auto *nota = controlo<QPlainTextEdit>(g.pontos(), u"txtObservacoes"_s);
    QCOMPARE(nota->toPlainText(), QString());
    QTest::keyClicks(nota, u"x"_s);
    clicar(g.pontos(), u"cmdConcluir"_s);
    QCOMPARE(rotulosDe(g.chart().Series(0)), QStringList{u" "_s});
    QVERIFY(utilizador::esperar([&] { return !g.pontos(); }));
}

void tst_grafico::notaQueFalha() {
    Instalada inst;
    inst.leituras(u"Temperaturas"_s, id(1), {{dia + u"10:00:00"_s, 10.0, QVariant(), u" "_s}});
    const Grafico g;
    g.carregar({1});
    g.clicarPonto(0, 0);
    QTest::keyClicks(controlo<QPlainTextEdit>(g.pontos(), u"txtObservacoes"_s), u"longa"_s);
    inst.executar(u"CREATE TRIGGER nao BEFORE UPDATE ON Temperaturas BEGIN SELECT RAISE(ABORT, 'no notes'); END"_s);
    inst.erros.esperar(u"no notes"_s);
    clicar(g.pontos(), u"cmdConcluir"_s);
    QVERIFY(g.pontos() && g.pontos()->isVisible()); // the text is not lost
    QCOMPARE(rotulosDe(g.chart().Series(0)), QStringList{u" "_s});
    g.pontos()->close();
}

void tst_grafico::cliqueEmLimite() {
    const Instalada inst;
    inst.leituras(u"Temperaturas"_s, id(1), {{dia + u"10:00:00"_s, 10.0}, {dia + u"10:05:00"_s, 11.0, u"30XXX5"_s}});
    const Grafico g;
    g.carregar({1});
    g.clicarPonto(2, 0);
    QCOMPARE(controlo<QLineEdit>(g.pontos(), u"txtTemperatura"_s)->text(), u"5"_s); // the line's own data
    QCOMPARE(controlo<QLineEdit>(g.pontos(), u"txtSensor"_s)->text(), id(1));
    QTest::keyClicks(controlo<QPlainTextEdit>(g.pontos(), u"txtObservacoes"_s), u"baixo"_s);
    clicar(g.pontos(), u"cmdConcluir"_s);
    QCOMPARE(inst.linha(u"SELECT flag FROM Temperaturas WHERE Temperatura = 11"_s).value(0).toString(), u"baixo"_s);
    QCOMPARE(g.chart().Series(2).PointLabel(0), u"!"_s);
    QCOMPARE(rotulosDe(g.chart().Series(0)), QStringList({u" "_s, u"!"_s}));
}

void tst_grafico::botaoDireito() {
    const Instalada inst;
    inst.leituras(u"Temperaturas"_s, id(1), {{dia + u"10:00:00"_s, 10.0}});
    const Grafico g;
    g.carregar({1});
    g.clicarPonto(0, 0, Qt::RightButton);
    QVERIFY(!g.pontos());
    QVERIFY(utilizador::esperar([&] { return g.chart().ZoomEnable(); }));
}

void tst_grafico::membrosDePontos_data() {
    QTest::addColumn<QString>("grafico");
    QTest::addColumn<QString>("tipo");
    QTest::addColumn<QString>("form");
    QTest::addColumn<QString>("etiqueta");
    QTest::addColumn<QString>("legenda");
    QTest::newRow("head") << u"frmGraficoPrincipal"_s << u"P 1250C"_s << u"frmOpccoesMediasPontos"_s << u"lblTemp"_s
                          << u"Temperatura"_s;
    QTest::newRow("dew point") << u"frmGraficoPrincipalDPCPull"_s << u"D"_s << u"frmOpccoesDPCPontosPull"_s
                               << u"lblTemp"_s << u"P. Orvalho"_s;
    QTest::newRow("pressure") << u"frmGraficoPrincipalPressao"_s << u"K"_s << u"frmOpccoesPressaoPontos"_s
                              << u"lblTemp"_s << u"Pressão"_s;
    // Its texts are those of the sibling that is not pulled.
    QTest::newRow("humidity pulled") << u"frmGraficoPrincipalHumidadePull"_s << u"P 1250%"_s
                                     << u"frmOpccoesHumidadePontosPull"_s << u"lblHum"_s << u"Humidity"_s;
}

void tst_grafico::membrosDePontos() {
    QFETCH(QString, grafico);
    QFETCH(QString, tipo);
    QFETCH(QString, form);
    QFETCH(QString, etiqueta);
    const Instalada inst(1, tipo);
    inst.ficheiroLingua(u"EN"_s, {{u"VISTREL_frmOpccoesHumidadePontos"_s, u"lblHum.Caption"_s, u"Humidity"_s}});
    inst.usarLingua(u"EN"_s);
    const QString tabela = membroGrafico(grafico)->tabela.nome.toString();
    inst.leituras(tabela, id(1), {{dia + u"10:00:00"_s, 10.0}});
    const Grafico g(grafico);
    g.carregar({1});
    g.clicarPonto(0, 0);
    QWidget *p = registoForms().form(form);
    QVERIFY(p);
    QTEST(controlo<QLabel>(p, etiqueta)->text(), "legenda");
    QTest::keyClicks(controlo<QPlainTextEdit>(p, u"txtObservacoes"_s), u"nota"_s);
    clicar(p, u"cmdConcluir"_s);
    QCOMPARE(inst.linha(u"SELECT flag FROM "_s + tabela).value(0).toString(), u"nota"_s);
}

void tst_grafico::tamanhoMinimo() {
    const Instalada inst;
    const Grafico g;
    QCOMPARE(g.form->size(), QSize(700, 441)); // 10500 by 6615 twips
    g.form->resize(900, 700);
    QCOMPARE(g.form->size(), QSize(900, 700));
    g.form->resize(900, 430);
    QVERIFY(utilizador::esperar([&] { return g.form->size() == QSize(700, 441); }));
}

QTEST_MAIN(tst_grafico)
#include "tst_grafico.moc"
