#pragma once

#include "platform/chart/graduacao.h"
#include "platform/chart/plotSerie.h"
#include "platform/chart/tema.h"

#include "platform/chart/plotBase.h"

#include <functional>
#include <vector>

// The tick marks of an axis, as graduacao.h finds them for its present length.
class Marcador : public QCPAxisTicker {
public:
    using Graduar = std::function<Graduacao(double minimo, double maximo, double comprimento)>;
    Marcador(QCPAxis *eixo, Graduar graduar) : m_eixo(eixo), m_graduar(std::move(graduar)) {}
    void generate(const QCPRange &limites, const QLocale &, QChar, int, QVector<double> &marcas, QVector<double> *finas,
                  QVector<QString> *rotulos) override;

private:
    QCPAxis *m_eixo;
    Graduar m_graduar;
};

// The names of the series under the picture, in as many columns as fit.
class Legenda : public QCPLayoutElement {
    Q_OBJECT
public:
    explicit Legenda(QCustomPlot *quadro) : QCPLayoutElement(quadro) { setMargins({}); }
    void definir(std::vector<const PlotSerie *> series) { m_series = std::move(series); }
    void vestir(const Tema &tema) { m_tema = &tema; }
    void dispor(int largura, int altura); // settles how high it is

protected:
    void draw(QCPPainter *pintor) override;

private:
    std::vector<const PlotSerie *> m_series;
    const Tema *m_tema = nullptr;
    int m_colunas = 1;
    double m_larguraColuna = 0;
    double m_alturaLinha = 0;
};

// The labels of points, above them. One that would touch another is left out.
class Marcas : public QCPLayerable {
    Q_OBJECT
public:
    Marcas(QCustomPlot *quadro, const std::vector<PlotSerie *> &series, const Tema &tema)
        : QCPLayerable(quadro, QStringLiteral("axes")), m_series(series), m_tema(tema) {}

protected:
    void applyDefaultAntialiasingHint(QCPPainter *) const override {}
    QRect clipRect() const override;
    void draw(QCPPainter *pintor) override;

private:
    void desenhar(QCPPainter *pintor, const PlotSerie &serie, std::vector<QRectF> &ocupados) const;
    const std::vector<PlotSerie *> &m_series;
    const Tema &m_tema;
};

// The drawing surface. It draws when it is shown, not when it is told of a change.
class Quadro : public QCustomPlot {
    Q_OBJECT
public:
    explicit Quadro(QWidget *pai);
    void pedir();  // the picture has changed
    void dispor(); // the layout must be right, though nothing may have been drawn yet
    void vestir(const Tema &tema);
    Legenda *legenda() const { return m_legenda; }

protected:
    void paintEvent(QPaintEvent *evento) override;
    void resizeEvent(QResizeEvent *evento) override;
    void updateLayout() override;

private:
    Legenda *m_legenda;
    bool m_sujo = true;
};
