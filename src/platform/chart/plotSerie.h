#pragma once

#include "platform/chart/TSerie.h"
#include "platform/chart/tema.h"

#include "platform/chart/plotBase.h"

// Draws a TSerie from its own vectors.
class PlotSerie : public QCPAbstractPlottable {
    Q_OBJECT
public:
    PlotSerie(QCPAxis *x, QCPAxis *y, const TSerie &serie, const Tema &tema);

    const TSerie &serie() const { return m_serie; }
    // Takes over what changed: which distances between points are gaps.
    void actualizar();

    QPointF posicao(qsizetype indice) const; // in pixels
    struct Achado {
        qsizetype indice = -1;
        double distancia2 = 0; // squared, in pixels
    };
    Achado maisProximo(const QPointF &posicao, double raio) const;

    // Places in the order of x: the visible ones, with one neighbour on each side.
    std::pair<qsizetype, qsizetype> visiveis() const;
    qsizetype lugares() const;
    qsizetype indiceDe(qsizetype lugar) const;
    qsizetype lugarDe(double x) const; // the first place not before x

    QColor corDoPonto(qsizetype indice) const; // as drawn
    QColor corDaSerie() const;
    void desenharSimbolo(QCPPainter *pintor, const QRectF &area) const;

    double selectTest(const QPointF &, bool, QVariant * = nullptr) const override { return -1; }
    QCPRange getKeyRange(bool &ha, QCP::SignDomain dominio = QCP::sdBoth) const override;
    QCPRange getValueRange(bool &ha, QCP::SignDomain dominio = QCP::sdBoth,
                           const QCPRange &chaves = QCPRange()) const override;

    static void desenharMarcador(QPainter *pintor, QPointF p, double raio, Tema::Forma forma);

protected:
    void draw(QCPPainter *pintor) override;
    void drawLegendIcon(QCPPainter *pintor, const QRectF &area) const override { desenharSimbolo(pintor, area); }

private:
    void desenharLinhas(QCPPainter *pintor);
    void desenharMarcadores(QCPPainter *pintor, qsizetype inicio, qsizetype fim);
    void desenharBarras(QCPPainter *pintor);
    void desenharBarra(QCPPainter *pintor, const QRectF &barra, qsizetype indice) const;
    Achado barraEm(const QPointF &posicao) const;
    QRectF barra(qsizetype indice) const;

    const TSerie &m_serie;
    const Tema &m_tema;
    double m_lacuna;
};
