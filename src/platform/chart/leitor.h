#pragma once

#include "platform/chart/tema.h"

#include <QWidget>

// The readout that follows the pointer or the keyboard's cursor: a ring round the point and a box beside it that never
// leaves the chart. Lies over the plot, so that moving it does not redraw the points.
class LeitorDePonto : public QWidget {
public:
    explicit LeitorDePonto(QWidget *pai);

    void mostrar(const QPointF &ponto, const QString &texto, const QColor &cor, const QRect &area);
    void esconder();
    void setTema(const TemaGrafico &tema);
    QString texto() const { return m_texto; }
    // The frame that tells where the keyboard goes.
    void setFoco(bool foco);

protected:
    void paintEvent(QPaintEvent *evento) override;

private:
    QPointF m_ponto;
    QString m_texto;
    QColor m_cor;
    QRect m_area;
    TemaGrafico m_tema;
    bool m_foco = false;
};
