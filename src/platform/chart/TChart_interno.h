#pragma once

#include "platform/chart/PlotSerie.h"
#include "platform/chart/TChart.h"
#include "platform/chart/eixos.h"
#include "platform/chart/leitor.h"

#include <QRubberBand>

#include <qcustomplot.h>

// One series and what draws it.
struct SerieDoGrafico {
    std::unique_ptr<TSerie> serie;
    PlotSerie *plot; // owned by the plot
};

struct TChart::Interno {
    explicit Interno(TChart *chart);

    TChart *q;
    QCustomPlot *plot;
    LeitorDePonto *leitor;
    QRubberBand *elastico;
    std::vector<SerieDoGrafico> series;
    TEixo esquerdo;
    TEixo baixo;
    QSharedPointer<EixoTempo> eixoTempo;
    QSharedPointer<EixoNumeros> eixoNumeros;
    QSharedPointer<EixoBarras> eixoBarras;
    QCPLayoutGrid *rodape; // under the plot: the legend
    QString unidade;
    bool legenda = false;
    std::function<QString(int, int)> nota;

    bool zoomPermitido = true;
    bool comZoom = false;
    enum class Arrasto { Nenhum, Zoom, Mover } arrasto = Arrasto::Nenhum;
    QPoint inicioArrasto;
    QCPRange xNoInicio, yNoInicio;
    int cursorSerie = -1; // keyboard
    int cursorIndice = -1;
    std::pair<int, int> notaPedida{-1, -1};
    QString ultimaNota;

    // Model to plot
    bool comBarras() const;
    PlotSerie::Extremos extremos() const;
    QCPRange vistaX() const;
    QCPRange vistaY() const;
    void aplicarTema(const TemaGrafico &tema);
    void aplicarEixos();
    void aplicarLegenda(int largura);
    void rodarRotulos();
    void repintar();

    // Zoom
    void verZona(QCPRange x, QCPRange y);
    void verTudo();
    void ampliar(double factor, const QPointF &centro, bool eixoX, bool eixoY);
    void deslocar(double partesX, double partesY);

    // Mouse and keyboard
    bool rato(QEvent *evento);
    void premir(QMouseEvent *e);
    void mover(QMouseEvent *e);
    void largar(QMouseEvent *e);
    void roda(QWheelEvent *e);
    void clicar(QMouseEvent *e);
    bool tecla(QKeyEvent *e);
    void moverCursor(int passos);
    void mudarSerie(int sentido);
    void cursorEm(int serie, int indice);
    void apontar(const QPointF &posicao);
    void lerPonto(int serie, int indice);
    std::pair<int, int> proximo(const QPointF &posicao, double alcance) const;
    QPointF pixelDe(int serie, int indice) const;
};
