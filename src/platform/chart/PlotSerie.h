#pragma once

#include "platform/chart/TSerie.h"
#include "platform/chart/tema.h"

#include <qcustomplot.h>

// Draws one series straight from its vectors: minimum and maximum per pixel column where points crowd, runs of one
// colour, gaps, marks. Nothing is copied into the plot.
class PlotSerie : public QCPAbstractPlottable {
public:
    PlotSerie(QCPAxis *x, QCPAxis *y, const TSerie &serie);

    void setTema(const TemaGrafico &tema) { m_tema = tema; }
    // What is derived from the points: extremes, order, usual spacing.
    void examinar();
    bool ordenada() const { return m_ordenada; }
    bool lacuna(qsizetype i) const; // no line leads to point i
    struct Extremos {
        double xMinimo, xMaximo, yMinimo, yMaximo;
        bool validos;
    };
    const Extremos &extremos() const { return m_extremos; }
    // Points of an ordered series within a range of x.
    std::pair<qsizetype, qsizetype> indices(double de, double ate) const;

    double selectTest(const QPointF &, bool, QVariant *) const override { return -1; }
    QCPRange getKeyRange(bool &achado, QCP::SignDomain) const override;
    QCPRange getValueRange(bool &achado, QCP::SignDomain, const QCPRange &) const override;

protected:
    void draw(QCPPainter *pintor) override;
    void drawLegendIcon(QCPPainter *pintor, const QRectF &area) const override;

private:
    struct Traco; // collects lines by colour
    QColor cor(qsizetype i) const;
    quint8 indiceCor(qsizetype i) const;
    void desenharBarras(QCPPainter *pintor) const;
    void desenharPontos(QCPPainter *pintor, qsizetype de, qsizetype ate) const;
    void desenharColunas(QCPPainter *pintor, qsizetype de, qsizetype ate) const;
    void desenharMarcas(QCPPainter *pintor, qsizetype de, qsizetype ate) const;
    void marcador(QCPPainter *pintor, const QPointF &p, quint32 ole) const;
    QPen caneta(const QColor &c) const;

    const TSerie &m_serie;
    TemaGrafico m_tema;
    Extremos m_extremos{};
    bool m_ordenada = true;
    double m_espacoMaximo = 0; // seconds between neighbours above which readings are missing
};
