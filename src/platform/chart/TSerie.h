#pragma once

#include <QColor>
#include <QList>
#include <QString>

// One series of a chart: points in order of adding. A NaN value is a gap. Costs 18 bytes a point when coloured and
// labelled point by point, 16 otherwise.
class TSerie {
public:
    enum class Estilo { Linha, Degrau, Barra };

    explicit TSerie(Estilo estilo = Estilo::Linha);

    void Clear();
    void reservar(qsizetype pontos);
    // Colours are OLE numbers (blue in the high byte). Returns the point's index.
    qsizetype AddXY(double x, double y, const QString &rotulo, quint32 cor);
    qsizetype Add(double y, const QString &rotulo, quint32 cor); // bars: x is the index

    qsizetype Count() const { return m_x.size(); }
    double XValue(qsizetype i) const { return m_x[i]; }
    double YValue(qsizetype i) const { return m_y[i]; }
    QString PointLabel(qsizetype i) const;
    void setPointLabel(qsizetype i, const QString &rotulo);
    quint32 PointColor(qsizetype i) const;

    bool Active = true;
    bool ColorEachPoint = false;
    quint32 Color = 0;
    QString Title;
    QString Name;
    Estilo estilo;

    const QList<double> &x() const { return m_x; }
    const QList<double> &y() const { return m_y; }

    bool Tracejado = false; // limit lines: told apart without colours too
    bool comMarcas() const; // some point has a label to be shown
    static bool eMarca(const QString &rotulo);

private:
    friend class PlotSerie;
    QList<double> m_x;
    QList<double> m_y;
    QList<quint8> m_cores;   // index into m_paleta; empty while all points have the same colour
    QList<quint8> m_rotulos; // index into m_textos; empty while all labels are the same
    QList<quint32> m_paleta;
    QStringList m_textos;
    QStringList m_rotulosBarra; // bars have a text each
};

inline QColor corOLE(quint32 cor) {
    return {int(cor & 0xFF), int((cor >> 8) & 0xFF), int((cor >> 16) & 0xFF)};
}
