#include "platform/chart/PlotSerie.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double factorDaLacuna = 5;
constexpr qsizetype amostraDeEspacos = 20001;
constexpr double pixeisPorMarcador = 7;
constexpr double raioDoMarcador = 2.6;
constexpr double distanciaDeMarcas = 8;
constexpr quint32 vermelho = 255;
constexpr quint32 azul = 16711680;

} // namespace

// Lines gathered by colour, so that each colour is one call of the painter. Connected pieces of a colour stay one
// polyline, so that dashes run on.
struct PlotSerie::Traco {
    std::array<QList<QPolygonF>, 256> porCor;
    int ultimaCor = -1;
    QPointF ultimo;

    void linha(const QPointF &de, const QPointF &ate, quint8 cor) {
        QList<QPolygonF> &lista = porCor[cor];
        if (ultimaCor == cor && !lista.isEmpty() && ultimo == de) {
            QPolygonF &p = lista.last();
            const qsizetype n = p.size();
            // A level run needs its ends only.
            if (n >= 2 && p[n - 1].y() == ate.y() && p[n - 2].y() == ate.y() && p[n - 1].x() <= ate.x())
                p[n - 1] = ate;
            else
                p.append(ate);
        } else {
            lista.append(QPolygonF{de, ate});
        }
        ultimaCor = cor;
        ultimo = ate;
    }
};

PlotSerie::PlotSerie(QCPAxis *x, QCPAxis *y, const TSerie &serie)
    : QCPAbstractPlottable(x, y), m_serie(serie), m_tema(TemaGrafico::doPapel()) {
    setSelectable(QCP::stNone);
}

void PlotSerie::examinar() {
    const QList<double> &x = m_serie.x();
    const QList<double> &y = m_serie.y();
    m_extremos = {INFINITY, -INFINITY, INFINITY, -INFINITY, false};
    m_ordenada = true;
    double anterior = -INFINITY;
    for (qsizetype i = 0; i < x.size(); ++i) {
        m_ordenada &= x[i] >= anterior;
        anterior = x[i];
        if (std::isnan(y[i]))
            continue;
        m_extremos.xMinimo = std::min(m_extremos.xMinimo, x[i]);
        m_extremos.xMaximo = std::max(m_extremos.xMaximo, x[i]);
        m_extremos.yMinimo = std::min(m_extremos.yMinimo, y[i]);
        m_extremos.yMaximo = std::max(m_extremos.yMaximo, y[i]);
        m_extremos.validos = true;
    }
    // The usual spacing: the middle of evenly taken distances. Equal dates say nothing about it.
    std::vector<double> distancias;
    const qsizetype passo = std::max<qsizetype>(1, x.size() / amostraDeEspacos);
    for (qsizetype i = 1; i < x.size(); i += passo)
        if (x[i] > x[i - 1])
            distancias.push_back(x[i] - x[i - 1]);
    m_espacoMaximo = INFINITY;
    if (distancias.size() >= 3 && m_serie.estilo == TSerie::Estilo::Linha) {
        const auto meio = distancias.begin() + std::ptrdiff_t(distancias.size() / 2);
        std::nth_element(distancias.begin(), meio, distancias.end());
        m_espacoMaximo = *meio * factorDaLacuna;
    }
}

bool PlotSerie::lacuna(qsizetype i) const {
    return i == 0 || m_serie.x()[i] - m_serie.x()[i - 1] > m_espacoMaximo || std::isnan(m_serie.y()[i - 1]) ||
           std::isnan(m_serie.y()[i]);
}

std::pair<qsizetype, qsizetype> PlotSerie::indices(double de, double ate) const {
    const QList<double> &x = m_serie.x();
    const auto primeiro = std::lower_bound(x.begin(), x.end(), de) - x.begin();
    const auto fim = std::upper_bound(x.begin() + primeiro, x.end(), ate) - x.begin();
    return {primeiro, fim};
}

QCPRange PlotSerie::getKeyRange(bool &achado, QCP::SignDomain) const {
    achado = m_extremos.validos;
    return achado ? QCPRange(m_extremos.xMinimo, m_extremos.xMaximo) : QCPRange();
}

QCPRange PlotSerie::getValueRange(bool &achado, QCP::SignDomain, const QCPRange &) const {
    achado = m_extremos.validos;
    return achado ? QCPRange(m_extremos.yMinimo, m_extremos.yMaximo) : QCPRange();
}

quint8 PlotSerie::indiceCor(qsizetype i) const {
    return m_serie.ColorEachPoint && !m_serie.m_cores.isEmpty() ? m_serie.m_cores[i] : 0;
}

QColor PlotSerie::cor(qsizetype i) const {
    return m_tema.visivel(corOLE(m_serie.PointColor(i)));
}

QPen PlotSerie::caneta(const QColor &c) const {
    QPen p(c, m_serie.Tracejado ? 1.4 : 1.2, m_serie.Tracejado ? Qt::DashLine : Qt::SolidLine);
    p.setJoinStyle(Qt::BevelJoin);
    p.setCapStyle(Qt::FlatCap);
    return p;
}

void PlotSerie::draw(QCPPainter *pintor) {
    if (m_serie.Count() == 0 || !m_extremos.validos)
        return;
    if (m_serie.estilo == TSerie::Estilo::Barra) {
        desenharBarras(pintor);
        return;
    }
    const QCPRange vista = mKeyAxis->range();
    qsizetype de = 0;
    qsizetype ate = m_serie.Count();
    if (m_ordenada) {
        // One neighbour beyond each edge, so that lines leave the picture where they really go.
        std::tie(de, ate) = indices(vista.lower, vista.upper);
        de = std::max<qsizetype>(0, de - 1);
        ate = std::min(m_serie.Count(), ate + 1);
    }
    if (de >= ate)
        return;
    if (m_ordenada && ate - de > 2 * mKeyAxis->axisRect()->width())
        desenharColunas(pintor, de, ate);
    else
        desenharPontos(pintor, de, ate);
    desenharMarcas(pintor, de, ate);
}

void PlotSerie::desenharPontos(QCPPainter *pintor, qsizetype de, qsizetype ate) const {
    const auto traco = std::make_unique<Traco>();
    const bool degrau = m_serie.estilo == TSerie::Estilo::Degrau;
    for (qsizetype i = de + 1; i < ate; ++i) {
        if (lacuna(i))
            continue;
        const QPointF a = coordsToPixels(m_serie.x()[i - 1], m_serie.y()[i - 1]);
        const QPointF b = coordsToPixels(m_serie.x()[i], m_serie.y()[i]);
        const quint8 c = indiceCor(i);
        if (degrau) {
            traco->linha(a, QPointF(b.x(), a.y()), c);
            traco->linha(QPointF(b.x(), a.y()), b, c);
        } else {
            traco->linha(a, b, c);
        }
    }
    pintor->setAntialiasing(true);
    for (size_t c = 0; c < traco->porCor.size(); ++c) {
        if (traco->porCor[c].isEmpty())
            continue;
        const quint32 ole = m_serie.ColorEachPoint ? m_serie.m_paleta[qsizetype(c)] : m_serie.Color;
        pintor->setPen(caneta(m_tema.visivel(corOLE(ole))));
        for (const QPolygonF &p : std::as_const(traco->porCor[c]))
            pintor->drawPolyline(p);
    }
    const double espaco = double(mKeyAxis->axisRect()->width()) / double(std::max<qsizetype>(1, ate - de));
    for (qsizetype i = de; i < ate; ++i) {
        if (std::isnan(m_serie.y()[i]))
            continue;
        // A lone point between gaps would not be seen at all without a marker.
        const bool so = lacuna(i) && (i + 1 >= m_serie.Count() || lacuna(i + 1));
        if (so || (espaco >= pixeisPorMarcador && !m_serie.Tracejado))
            marcador(pintor, coordsToPixels(m_serie.x()[i], m_serie.y()[i]), m_serie.PointColor(i));
    }
}

// Alarms point up or down, so that they are told apart on paper without colours too.
void PlotSerie::marcador(QCPPainter *pintor, const QPointF &p, quint32 ole) const {
    const QColor c = m_tema.visivel(corOLE(ole));
    pintor->setPen(QPen(c, 1));
    pintor->setBrush(c);
    const double r = raioDoMarcador;
    if (m_serie.ColorEachPoint && ole == vermelho)
        pintor->drawConvexPolygon(
            QPolygonF{p + QPointF(0, -1.5 * r), p + QPointF(1.3 * r, r), p + QPointF(-1.3 * r, r)});
    else if (m_serie.ColorEachPoint && ole == azul)
        pintor->drawConvexPolygon(
            QPolygonF{p + QPointF(0, 1.5 * r), p + QPointF(1.3 * r, -r), p + QPointF(-1.3 * r, -r)});
    else
        pintor->drawEllipse(p, r, r);
    pintor->setBrush(Qt::NoBrush);
}

void PlotSerie::desenharColunas(QCPPainter *pintor, qsizetype de, qsizetype ate) const {
    const double *x = m_serie.x().constData();
    const double *y = m_serie.y().constData();
    const int esquerda = mKeyAxis->axisRect()->left();
    const int largura = mKeyAxis->axisRect()->width();
    const double inicio = mKeyAxis->range().lower;
    const double porPixel = mKeyAxis->range().size() / largura;
    const auto traco = std::make_unique<Traco>();
    QList<QPointF> sos; // columns that nothing leads to
    qsizetype i = de;
    qsizetype anterior = -1; // last point with a value before this column
    for (int coluna = -1; coluna <= largura && i < ate; ++coluna) {
        const double limite = coluna == largura ? INFINITY : inicio + (coluna + 1) * porPixel;
        qsizetype fim = std::lower_bound(x + i, x + ate, limite) - x;
        if (fim == i)
            continue;
        const double px = esquerda + coluna + 0.5;
        qsizetype primeiro = -1;
        qsizetype ultimo = -1;
        while (i < fim) {
            // One run of a colour: its extremes are one upright line.
            const quint8 c = indiceCor(i);
            double menor = INFINITY;
            double maior = -INFINITY;
            const qsizetype desde = i;
            for (; i < fim && (m_serie.m_cores.isEmpty() || indiceCor(i) == c); ++i) {
                const double v = y[i];
                menor = v < menor ? v : menor;
                maior = v > maior ? v : maior;
            }
            if (!(menor <= maior))
                continue;
            qsizetype a = desde;
            while (std::isnan(y[a]))
                ++a;
            qsizetype z = i - 1;
            while (std::isnan(y[z]))
                --z;
            if (anterior >= 0 && x[a] - x[anterior] <= m_espacoMaximo && !(a > 0 && std::isnan(y[a - 1])))
                traco->linha(traco->ultimo, QPointF(px, mValueAxis->coordToPixel(y[a])), c);
            else
                traco->ultimaCor = -1;
            const double alto = mValueAxis->coordToPixel(maior);
            const double baixo = mValueAxis->coordToPixel(menor);
            const double sai = mValueAxis->coordToPixel(y[z]);
            const double entra = mValueAxis->coordToPixel(y[a]);
            if (alto != baixo) {
                traco->linha(QPointF(px, entra), QPointF(px, alto), c);
                traco->linha(QPointF(px, alto), QPointF(px, baixo), c);
                traco->linha(QPointF(px, baixo), QPointF(px, sai), c);
            }
            traco->ultimo = QPointF(px, sai);
            traco->ultimaCor = traco->ultimaCor == c ? c : -1;
            primeiro = primeiro < 0 ? a : primeiro;
            ultimo = z;
            anterior = z;
        }
        if (primeiro >= 0 && primeiro == ultimo && lacuna(primeiro) &&
            (ultimo + 1 >= m_serie.Count() || lacuna(ultimo + 1)))
            sos.append(traco->ultimo);
    }
    pintor->setAntialiasing(false);
    // Rare colours last: an alarm in a crowded column stays on top.
    std::vector<size_t> ordem;
    for (size_t c = 0; c < traco->porCor.size(); ++c)
        if (!traco->porCor[c].isEmpty())
            ordem.push_back(c);
    std::sort(ordem.begin(), ordem.end(),
              [&](size_t a, size_t b) { return traco->porCor[a].size() > traco->porCor[b].size(); });
    for (const size_t c : ordem) {
        const quint32 ole = m_serie.ColorEachPoint ? m_serie.m_paleta[qsizetype(c)] : m_serie.Color;
        pintor->setPen(QPen(m_tema.visivel(corOLE(ole)), 0, m_serie.Tracejado ? Qt::DashLine : Qt::SolidLine));
        for (const QPolygonF &p : std::as_const(traco->porCor[c]))
            pintor->drawPolyline(p);
    }
    for (const QPointF &p : std::as_const(sos))
        pintor->drawLine(p - QPointF(1, 0), p + QPointF(1, 0));
}

void PlotSerie::desenharMarcas(QCPPainter *pintor, qsizetype de, qsizetype ate) const {
    if (!m_serie.comMarcas())
        return;
    std::vector<bool> mostra;
    for (const QString &texto : m_serie.m_textos)
        mostra.push_back(TSerie::eMarca(texto));
    QFont fonte = mParentPlot->font();
    fonte.setBold(true);
    pintor->setFont(fonte);
    const double altura = QFontMetricsF(fonte).height();
    double livre = -INFINITY;
    for (qsizetype i = de; i < ate; ++i) {
        const quint8 rotulo = m_serie.m_rotulos.isEmpty() ? 0 : m_serie.m_rotulos[i];
        if (!mostra[rotulo] || std::isnan(m_serie.y()[i]))
            continue;
        const QPointF p = coordsToPixels(m_serie.x()[i], m_serie.y()[i]);
        if (m_ordenada && p.x() < livre)
            continue;
        livre = p.x() + distanciaDeMarcas;
        pintor->setPen(m_serie.ColorEachPoint ? m_tema.texto : cor(i));
        const QRectF caixa(p.x() - 20, p.y() - altura - 3, 40, altura);
        pintor->drawText(caixa, Qt::AlignHCenter | Qt::AlignBottom, m_serie.m_textos[rotulo]);
    }
}

void PlotSerie::desenharBarras(QCPPainter *pintor) const {
    constexpr double meiaBarra = 0.4;
    pintor->setAntialiasing(false);
    for (qsizetype i = 0; i < m_serie.Count(); ++i) {
        const QRectF barra = QRectF(coordsToPixels(m_serie.x()[i] - meiaBarra, m_serie.y()[i]),
                                    coordsToPixels(m_serie.x()[i] + meiaBarra, 0))
                                 .normalized();
        const QColor c = cor(i);
        pintor->fillRect(barra, c);
        if (barra.width() >= 4) {
            pintor->setPen(QPen(c.darker(140), 0));
            pintor->setBrush(Qt::NoBrush);
            pintor->drawRect(barra);
        }
    }
}

void PlotSerie::drawLegendIcon(QCPPainter *pintor, const QRectF &area) const {
    QPen p = caneta(m_tema.visivel(corOLE(m_serie.Color)));
    p.setWidthF(2);
    pintor->setAntialiasing(true);
    pintor->setPen(p);
    pintor->drawLine(QLineF(area.left(), area.center().y(), area.right(), area.center().y()));
}
