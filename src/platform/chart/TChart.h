#pragma once

#include "platform/chart/TSerie.h"

#include <QWidget>

#include <functional>
#include <memory>
#include <vector>

// One axis of the chart. Values of the bottom axis are wall-clock seconds (core/datas.h).
struct TEixo {
    bool Automatic = true;
    bool Visible = true;
    double Minimum = 0;
    double Maximum = 0;
    double Increment = 0; // smallest distance between labels; labels are thinned so that they never overlap
    QString Title{};
    bool SoInteiros = false; // of values: nothing stands between whole numbers
};

// The chart control: a list of series over two axes, marks, click -> point. One painter serves screen, preview, PDF
// and JPEG. Changes of the model show after actualizar(); nothing is repainted point by point.
//
// Mouse: dragging to the right with the left button zooms, dragging to the left undoes it, as does a double click; the
// other buttons pan; the wheel zooms along the time axis, with Shift along the other.
// Keyboard: Left, Right, Home and End read point by point (Shift: 10 points; Page keys: a tenth of the picture), Up and
// Down change the series, Enter or Space clicks, + and - zoom, Ctrl and the arrows pan (10 points when there is
// nothing to pan), Escape undoes the zoom.
class TChart : public QWidget {
    Q_OBJECT
public:
    explicit TChart(QWidget *pai = nullptr);
    ~TChart() override;

    int SeriesCount() const;
    TSerie &AddSeries(TSerie::Estilo estilo = TSerie::Estilo::Linha);
    void RemoveSeries(int indice);
    TSerie &Series(int indice);
    const TSerie &Series(int indice) const;

    TEixo &Left();
    TEixo &Bottom();
    // Extremes over the active series, limit lines included; NaN points count nowhere; 0 when there are none.
    double MinXValue() const;
    double MaxXValue() const;
    double MinYValue() const;
    double MaxYValue() const;
    bool temDados() const; // an active series has a point with a value

    // Zoom by the user; Zoom.Enable of the model. The axes' Minimum and Maximum stay those of the whole picture.
    bool ZoomEnable() const;
    void setZoomEnable(bool permitido);
    bool comZoom() const;
    void anularZoom();

    void setUnidade(const QString &unidade); // behind values in the readout, such as " °C"
    void setCasas(int casas);                // decimals of values in the readout; negative: as many as there are
    // A sentence in the middle of the plot, such as why nothing is drawn, and one under the picture; both are part of
    // the picture, on paper too. Empty: none.
    void setAviso(const QString &aviso);
    QString aviso() const;
    void setRodape(const QString &rodape);
    QString rodape() const;
    // Names under the picture when there are so many series or more; on from the beginning.
    void setLegenda(bool visivel, int aPartirDe = 2);
    // Text of a marked point for the readout, asked for only when the pointer rests on one.
    void setNota(std::function<QString(int serie, int indice)> nota);

    // Takes over what changed in the model and repaints.
    void actualizar();

    // The point nearest to a position among the active series, as {series, index}; {-1, -1} when none is near.
    std::pair<int, int> pontoMaisProximo(const QPointF &posicao) const;

    // The picture as now shown (zoom included) on white paper with a light theme, whatever the screen's. On a painter
    // the size of the letters follows the area alone, so that preview and print are the same.
    void pintar(QPainter &pintor, const QRect &destino) const;
    QImage imagem(int largura, int altura) const;

    QSize sizeHint() const override { return {700, 340}; }
    QSize minimumSizeHint() const override { return {160, 110}; }

Q_SIGNALS:
    void OnClickSeries(int serie, int indice, Qt::MouseButton botao, Qt::KeyboardModifiers teclas, QPoint posicao);
    void OnZoom();
    void OnUndoZoom();

protected:
    void resizeEvent(QResizeEvent *evento) override;
    void changeEvent(QEvent *evento) override;
    void mousePressEvent(QMouseEvent *evento) override;
    void mouseMoveEvent(QMouseEvent *evento) override;
    void mouseReleaseEvent(QMouseEvent *evento) override;
    void mouseDoubleClickEvent(QMouseEvent *evento) override;
    void wheelEvent(QWheelEvent *evento) override;
    void leaveEvent(QEvent *evento) override;
    void keyPressEvent(QKeyEvent *evento) override;
    void focusInEvent(QFocusEvent *evento) override;
    void focusOutEvent(QFocusEvent *evento) override;

private:
    struct Interno;
    std::unique_ptr<Interno> m;
};
