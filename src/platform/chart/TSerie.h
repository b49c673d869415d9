#pragma once

#include <QColor>
#include <QList>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

// One series of a chart: points in order of adding. A NaN value is a gap. Costs 18 bytes a point when coloured and
// labelled point by point, 16 otherwise, and one summary of 8 bytes for every 256 points.
class TSerie {
public:
    enum class Estilo { Linha, Degrau, Barra };
    // Limit lines are told apart by their dashes, also without colour.
    enum class Traco { Cheio, Longo, Curto };

    // What 256 points in a row hold, so that a redraw need not look at each.
    struct Resumo {
        quint32 cores = 0; // a bit for each colour; the last bit stands for all further ones
        quint8 menor = 0;  // where the smallest and the largest value are, from the block's first point
        quint8 maior = 0;
        quint16 comValores : 1 = 0;
        quint16 marcas : 15 = 0; // labels that show
    };
    static constexpr qsizetype bloco = 256;

    explicit TSerie(Estilo estilo = Estilo::Linha);

    void Clear();
    void reservar(qsizetype pontos);
    // Colours are OLE numbers (blue in the high byte). Returns the point's index.
    qsizetype AddXY(double x, double y, const QString &rotulo, quint32 cor);
    qsizetype Add(double y, const QString &rotulo, quint32 cor); // bars: x is the index

    qsizetype Count() const { return qsizetype(m_x.size()); }
    double XValue(qsizetype i) const { return m_x[size_t(i)]; }
    double YValue(qsizetype i) const { return m_y[size_t(i)]; }
    QString PointLabel(qsizetype i) const;
    void setPointLabel(qsizetype i, const QString &rotulo);
    quint32 PointColor(qsizetype i) const;
    bool temMarca(qsizetype i) const; // a label that shows: neither empty nor one blank

    bool Active = true;
    bool ColorEachPoint = false;
    Traco traco = Traco::Cheio;
    bool tracejada() const { return traco != Traco::Cheio; }
    quint32 Color = 0;
    QString Title;
    QString Name;
    Estilo estilo;

    const std::vector<double> &x() const { return m_x; }
    const std::vector<double> &y() const { return m_y; }

    // Extremes; NaN counts nowhere. Infinite the wrong way round when there are none.
    double menorX() const { return m_menorX; }
    double maiorX() const { return m_maiorX; }
    double menorY() const { return m_menorY; }
    double maiorY() const { return m_maiorY; }

    // Points in order of x: null when they were added so. Points without an x are in no order.
    const QList<quint32> *ordem() const;

    // For drawing: colour numbers as bytes (null: all have the first colour) and what they stand for.
    const quint8 *indicesDeCor() const { return m_cores.empty() ? nullptr : m_cores.data(); }
    const QList<quint32> &paleta() const { return m_paleta; }
    const QList<Resumo> &resumos() const { return m_resumos; }
    // The first point from i on, before fim, with a label that shows; fim when there is none.
    qsizetype proximaMarca(qsizetype i, qsizetype fim) const;

private:
    quint8 indiceDeCor(quint32 cor);
    void novaCor(quint32 cor);
    void juntarRotulo(const QString &rotulo);
    void escreverRotulo(qsizetype i, const QString &rotulo);
    void separarRotulos();
    void resumir();

    std::vector<double> m_x;
    std::vector<double> m_y;
    std::vector<quint8> m_cores; // index into m_paleta; empty while all points have the same colour
    QList<quint8> m_rotulos;     // index into m_textos; empty while all labels are the same
    QList<quint32> m_paleta;
    QStringList m_textos;
    QStringList m_rotulosProprios; // a text for each point, once there are too many different ones
    QList<Resumo> m_resumos;       // of full blocks
    mutable QList<quint32> m_ordem;
    mutable qsizetype m_ordenados = 0; // points that m_ordem knows
    bool m_porOrdem = true;
    quint32 m_ultimaCor = 0;
    double m_ultimoX = -std::numeric_limits<double>::infinity();
    double m_menorX = std::numeric_limits<double>::infinity();
    double m_maiorX = -std::numeric_limits<double>::infinity();
    double m_menorY = std::numeric_limits<double>::infinity();
    double m_maiorY = -std::numeric_limits<double>::infinity();
};

// Inline, and the usual point first: in order, with the colour and the label of all before it. A load adds millions.
inline qsizetype TSerie::AddXY(double x, double y, const QString &rotulo, quint32 cor) {
    const qsizetype i = Count();
    m_porOrdem = m_porOrdem && x >= m_ultimoX; // a NaN has no place in any order
    m_ultimoX = x;
    m_x.push_back(x);
    m_y.push_back(y);
    if (cor != m_ultimaCor || i == 0)
        novaCor(cor);
    else if (!m_cores.empty())
        m_cores.push_back(m_cores.back());
    const bool soUmRotulo = m_rotulos.isEmpty() && !m_textos.isEmpty();
    if (!soUmRotulo || rotulo.constData() != m_textos.constFirst().constData())
        juntarRotulo(rotulo);
    if (!std::isnan(x) && !std::isnan(y)) {
        m_menorX = std::min(m_menorX, x);
        m_maiorX = std::max(m_maiorX, x);
        m_menorY = std::min(m_menorY, y);
        m_maiorY = std::max(m_maiorY, y);
    }
    if ((i + 1) % bloco == 0)
        resumir();
    return i;
}

inline QColor corOLE(quint32 cor) {
    return QColor(int(cor & 0xFF), int((cor >> 8) & 0xFF), int((cor >> 16) & 0xFF));
}
