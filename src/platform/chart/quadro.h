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

// The names of the series under the picture, in as many columns as fit, and a sentence above them.
class Legenda : public QCPLayoutElement {
    Q_OBJECT
public:
    explicit Legenda(QCustomPlot *quadro) : QCPLayoutElement(quadro) { setMargins({}); }
    void definir(std::vector<const PlotSerie *> series, const QString &frase) {
        m_series = std::move(series);
        m_frase = frase;
    }
    void vestir(const Tema &tema) { m_tema = &tema; }
    void dispor(int largura, int altura); // settles how high it is

protected:
    void draw(QCPPainter *pintor) override;

private:
    int disporNomes(int largura, int altura); // how high they are
    std::vector<const PlotSerie *> m_series;
    QString m_frase;
    int m_alturaFrase = 0;
    const Tema *m_tema = nullptr;
    int m_linhas = 1;
    std::vector<double> m_larguras; // of the columns
    double m_alturaLinha = 0;
};

// A sentence in the middle of the plot.
class Aviso : public QCPLayerable {
    Q_OBJECT
public:
    Aviso(QCustomPlot *quadro, const QString &texto, const Tema &tema)
        : QCPLayerable(quadro, QStringLiteral("axes")), m_texto(texto), m_tema(tema) {}

protected:
    void applyDefaultAntialiasingHint(QCPPainter *) const override {}
    QRect clipRect() const override;
    void draw(QCPPainter *pintor) override;

private:
    const QString &m_texto;
    const Tema &m_tema;
};

// The labels of points, above them, in the colour of their series. Those that would overlap become one, with their
// number; labels of readings without a value stand at the foot of the plot.
class Marcas : public QCPLayerable {
    Q_OBJECT
public:
    struct Grupo {
        QPointF ponto; // of the first
        QString texto;
        qint64 quantas = 1;
        const PlotSerie *serie; // null: of several
        QRectF lugar;           // of texto and the number
    };
    Marcas(QCustomPlot *quadro, const std::vector<PlotSerie *> &series, const Tema &tema)
        : QCPLayerable(quadro, QStringLiteral("axes")), m_series(series), m_tema(tema) {}
    std::vector<Grupo> grupos() const; // as they are drawn

protected:
    void applyDefaultAntialiasingHint(QCPPainter *) const override {}
    QRect clipRect() const override;
    void draw(QCPPainter *pintor) override;

private:
    class Agrupador;
    void recolher(const PlotSerie &plot, Agrupador &agrupador) const;
    void situar(Grupo &grupo) const;
    void fundir(std::vector<Grupo> &grupos) const;
    QFont letraDoTexto() const;
    QFont letraDoNumero() const;
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
