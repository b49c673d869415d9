// Bars: one at each x, from 0, each in the colour of its state.
#include "platform/chart/plotSerie.h"

#include "core/modDoubleTratamento.h"

namespace {

constexpr double larguraDaBarra = 0.8; // of the distance from one to the next

} // namespace

QRectF PlotSerie::barra(qsizetype i) const {
    const double x = m_serie.XValue(i);
    const QRectF limite = QRectF(mKeyAxis->axisRect()->rect()).adjusted(-50, -50, 50, 50);
    const double esquerda = mKeyAxis->coordToPixel(x - larguraDaBarra / 2);
    const double direita = mKeyAxis->coordToPixel(x + larguraDaBarra / 2);
    const double base = std::clamp(mValueAxis->coordToPixel(0), limite.top(), limite.bottom());
    const double topo = std::clamp(mValueAxis->coordToPixel(m_serie.YValue(i)), limite.top(), limite.bottom());
    return QRectF(QPointF(esquerda, std::min(base, topo)), QPointF(direita, std::max(base, topo)));
}

PlotSerie::Achado PlotSerie::barraEm(const QPointF &p) const {
    constexpr double tolerancia = 8; // also above a bar too low to be hit
    Achado achado;
    const double x = mKeyAxis->pixelToCoord(p.x());
    for (qsizetype k = lugarDe(x - 1); k < lugares() && m_serie.XValue(indiceDe(k)) <= x + 1; ++k) {
        const qsizetype i = indiceDe(k);
        if (std::isnan(m_serie.YValue(i)) || !barra(i).adjusted(0, -tolerancia, 0, tolerancia).contains(p))
            continue;
        const double d = p.x() - mKeyAxis->coordToPixel(m_serie.XValue(i));
        if (achado.indice < 0 || d * d < achado.distancia2)
            achado = {i, d * d};
    }
    // Inside is as near as can be.
    achado.distancia2 = 0;
    return achado;
}

void PlotSerie::desenharBarras(QCPPainter *pintor) {
    const auto [inicio, fim] = visiveis();
    // No more than one bar a pixel: the tallest of those that share it.
    qsizetype maior = -1;
    double coluna = -1e9;
    const auto acabar = [&] {
        if (maior >= 0)
            desenharBarra(pintor, barra(maior), maior);
        maior = -1;
    };
    for (qsizetype k = inicio; k < fim; ++k) {
        const qsizetype i = indiceDe(k);
        if (std::isnan(m_serie.YValue(i)))
            continue;
        const double c = std::floor(mKeyAxis->coordToPixel(m_serie.XValue(i)));
        if (c != coluna)
            acabar();
        coluna = c;
        if (maior < 0 || m_serie.YValue(i) > m_serie.YValue(maior))
            maior = i;
    }
    acabar();
}

void PlotSerie::desenharBarra(QCPPainter *pintor, const QRectF &area, qsizetype i) const {
    const QColor cor = corDoPonto(i);
    const QRectF b(area.left(), area.top(), std::max(1.0, area.width()), std::max(1.0, area.height()));
    pintor->setAntialiasing(true);
    pintor->setPen(Qt::NoPen);
    pintor->setBrush(misturar(cor, m_tema.fundo, 0.15));
    pintor->drawRect(b);
    const Tema::Forma forma = Tema::forma(m_serie.estado(i));
    if (m_tema.papel && forma != Tema::Forma::Circulo) { // told apart without colours
        pintor->setBrush(QBrush(Qt::white, forma == Tema::Forma::Cima ? Qt::BDiagPattern : Qt::FDiagPattern));
        pintor->drawRect(b);
    }
    if (b.width() >= 4) {
        pintor->setBrush(Qt::NoBrush);
        pintor->setPen(QPen(cor, 1));
        pintor->drawRect(b);
    }
    const QString valor = modDoubleTratamento::NumeroParaTexto(m_serie.YValue(i));
    QFont fonte = m_tema.fonte;
    const QFontMetricsF letra(fonte);
    if (letra.horizontalAdvance(valor) + 4 > b.width() / larguraDaBarra)
        return;
    const bool acima = m_serie.YValue(i) >= 0;
    const QRectF lugar(b.center().x() - 100, acima ? b.top() - letra.height() - 1 : b.bottom() + 1, 200,
                       letra.height());
    pintor->setAntialiasing(false);
    pintor->setFont(fonte);
    pintor->setPen(m_tema.texto);
    pintor->drawText(lugar, Qt::AlignHCenter | Qt::AlignVCenter, valor);
}
