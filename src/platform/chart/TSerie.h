#pragma once

#include "core/estadoDoPonto.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

// One series of a chart: points in order of adding. A NaN value is a gap. Costs 18 bytes a point when states and labels
// differ, 16 otherwise, and one summary of 8 bytes for every 256 points.
class TSerie {
public:
    enum class Estilo { Linha, Degrau, Barra };
    // Limit lines are told apart by their dashes, also without colour.
    enum class Traco { Cheio, Longo, Curto };

    // What 256 points in a row hold, so that a redraw need not look at each.
    struct Resumo {
        quint8 estados = 0; // a bit for each
        quint8 menor = 0;   // where the smallest and the largest value are, from the block's first point
        quint8 maior = 0;
        quint16 comValores : 1 = 0;
        quint16 marcas : 15 = 0; // labels that show
    };
    static constexpr qsizetype bloco = 256;

    explicit TSerie(Estilo estilo = Estilo::Linha);

    void Clear();
    void reservar(qsizetype pontos);
    // Returns the point's index.
    qsizetype AddXY(double x, double y, const QString &rotulo, EstadoDoPonto estado = EstadoDoPonto::Normal);
    qsizetype Add(double y, const QString &rotulo, EstadoDoPonto estado); // bars: x is the index

    qsizetype Count() const { return qsizetype(m_x.size()); }
    double XValue(qsizetype i) const { return m_x[size_t(i)]; }
    double YValue(qsizetype i) const { return m_y[size_t(i)]; }
    QString PointLabel(qsizetype i) const;
    void setPointLabel(qsizetype i, const QString &rotulo);
    EstadoDoPonto estado(qsizetype i) const { return m_estados.empty() ? EstadoDoPonto::Normal : m_estados[size_t(i)]; }
    bool temMarca(qsizetype i) const; // a label that shows: neither empty nor one blank

    bool Active = true;
    Traco traco = Traco::Cheio;
    bool tracejada() const { return traco != Traco::Cheio; }
    quint32 Color = 0; // of normal points; an OLE number, blue in the high byte
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

    // For drawing. Null: all points are normal.
    const EstadoDoPonto *estados() const { return m_estados.empty() ? nullptr : m_estados.data(); }
    // What others stand out from: normal, or, where no point is, what the first one is.
    EstadoDoPonto usual() const { return m_haNormais || m_estados.empty() ? EstadoDoPonto::Normal : m_estados.front(); }
    const QList<Resumo> &resumos() const { return m_resumos; }
    // The first point from i on, before fim, with a label that shows; fim when there is none.
    qsizetype proximaMarca(qsizetype i, qsizetype fim) const;

private:
    void juntarEstado(EstadoDoPonto estado);
    void juntarRotulo(const QString &rotulo);
    void escreverRotulo(qsizetype i, const QString &rotulo);
    void separarRotulos();
    void resumir();

    std::vector<double> m_x;
    std::vector<double> m_y;
    std::vector<EstadoDoPonto> m_estados; // empty while all points are normal
    QList<quint8> m_rotulos;              // index into m_textos; empty while all labels are the same
    QStringList m_textos;
    QStringList m_rotulosProprios; // a text for each point, once there are too many different ones
    QList<Resumo> m_resumos;       // of full blocks
    mutable QList<quint32> m_ordem;
    mutable qsizetype m_ordenados = 0; // points that m_ordem knows
    bool m_porOrdem = true;
    bool m_haNormais = false;
    double m_ultimoX = -std::numeric_limits<double>::infinity();
    double m_menorX = std::numeric_limits<double>::infinity();
    double m_maiorX = -std::numeric_limits<double>::infinity();
    double m_menorY = std::numeric_limits<double>::infinity();
    double m_maiorY = -std::numeric_limits<double>::infinity();
};

// Inline, and the usual point first: in order, normal, with the label of all before it. A load adds millions.
inline qsizetype TSerie::AddXY(double x, double y, const QString &rotulo, EstadoDoPonto estado) {
    const qsizetype i = Count();
    m_porOrdem = m_porOrdem && x >= m_ultimoX; // a NaN has no place in any order
    m_ultimoX = x;
    m_x.push_back(x);
    m_y.push_back(y);
    m_haNormais = m_haNormais || estado == EstadoDoPonto::Normal;
    if (estado != EstadoDoPonto::Normal || !m_estados.empty())
        juntarEstado(estado);
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
