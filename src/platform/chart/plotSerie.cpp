#include "platform/chart/plotSerie.h"

#include "platform/chart/tracos.h"

#include <algorithm>

namespace {

constexpr double espessura = 1.5;
constexpr double espessuraAlarme = 2.2;
constexpr double espacoParaMarcadores = 8; // pixels from point to point
constexpr double raioDoMarcador = 2.6;

// The distance that counts as a gap: several times the usual one.
double lacunaDe(const TSerie &serie) {
    constexpr double factor = 5;
    constexpr qsizetype amostras = 20000;
    const QList<quint32> *ordem = serie.ordem();
    const qsizetype n = ordem ? ordem->size() : serie.Count();
    const auto x = [&](qsizetype k) { return serie.XValue(ordem ? qsizetype((*ordem)[k]) : k); };
    std::vector<double> distancias;
    const qsizetype passo = std::max<qsizetype>(1, n / amostras);
    for (qsizetype k = 1; k < n; k += passo)
        if (const double d = x(k) - x(k - 1); d > 0)
            distancias.push_back(d);
    if (distancias.size() < 3 || serie.estilo != TSerie::Estilo::Linha)
        return std::numeric_limits<double>::infinity();
    const auto meio = distancias.begin() + qsizetype(distancias.size() / 2);
    std::nth_element(distancias.begin(), meio, distancias.end());
    return factor * *meio;
}

void tracejar(QPen &caneta, TSerie::Traco traco, double escala = 1) {
    caneta.setCapStyle(Qt::FlatCap);
    const double comprimento = traco == TSerie::Traco::Longo ? 5 : 1.8;
    caneta.setDashPattern({comprimento * escala, (traco == TSerie::Traco::Longo ? 3 : 1.8) * escala});
}

void riscar(QPainter *pintor, const Tracos &t) {
    for (size_t k = 0; k < t.inicios.size(); ++k) {
        const size_t ate = k + 1 < t.inicios.size() ? t.inicios[k + 1] : t.pontos.size();
        pintor->drawPolyline(&t.pontos[t.inicios[k]], int(ate - t.inicios[k]));
    }
}

// The raster engine draws single lines several times faster than it strokes polylines; square caps close the joints.
void riscarDepressa(QPainter *pintor, const Tracos &t) {
    QVector<QLineF> linhas;
    linhas.reserve(qsizetype(t.pontos.size()));
    for (size_t k = 0; k < t.inicios.size(); ++k) {
        const size_t ate = k + 1 < t.inicios.size() ? t.inicios[k + 1] : t.pontos.size();
        for (size_t p = t.inicios[k]; p + 1 < ate; ++p)
            linhas.append({t.pontos[p], t.pontos[p + 1]});
    }
    pintor->drawLines(linhas);
}

} // namespace

PlotSerie::PlotSerie(QCPAxis *x, QCPAxis *y, const TSerie &serie, const Tema &tema)
    : QCPAbstractPlottable(x, y), m_serie(serie), m_tema(tema), m_lacuna(std::numeric_limits<double>::infinity()) {
    setSelectable(QCP::stNone);
}

void PlotSerie::actualizar() {
    m_lacuna = lacunaDe(m_serie);
}

QPointF PlotSerie::posicao(qsizetype i) const {
    return {mKeyAxis->coordToPixel(m_serie.XValue(i)), mValueAxis->coordToPixel(m_serie.YValue(i))};
}

qsizetype PlotSerie::lugares() const {
    const QList<quint32> *ordem = m_serie.ordem();
    return ordem ? ordem->size() : m_serie.Count();
}

qsizetype PlotSerie::indiceDe(qsizetype lugar) const {
    const QList<quint32> *ordem = m_serie.ordem();
    return ordem ? qsizetype((*ordem)[lugar]) : lugar;
}

qsizetype PlotSerie::lugarDe(double x) const {
    const auto &xs = m_serie.x();
    if (const QList<quint32> *ordem = m_serie.ordem())
        return std::lower_bound(ordem->cbegin(), ordem->cend(), x, [&](quint32 i, double v) { return xs[i] < v; }) -
               ordem->cbegin();
    return std::lower_bound(xs.cbegin(), xs.cend(), x) - xs.cbegin();
}

std::pair<qsizetype, qsizetype> PlotSerie::visiveis() const {
    const QCPRange &r = mKeyAxis->range();
    const qsizetype inicio = lugarDe(r.lower);
    const qsizetype fim = lugarDe(std::nextafter(r.upper, std::numeric_limits<double>::infinity()));
    return {std::max<qsizetype>(0, inicio - 1), std::min(lugares(), fim + 1)};
}

PlotSerie::Achado PlotSerie::maisProximo(const QPointF &p, double raio) const {
    if (m_serie.estilo == TSerie::Estilo::Barra)
        return barraEm(p);
    Achado achado;
    achado.distancia2 = raio * raio;
    const qsizetype inicio = lugarDe(mKeyAxis->pixelToCoord(p.x() - raio));
    const qsizetype fim = lugarDe(mKeyAxis->pixelToCoord(p.x() + raio));
    const double ax = mKeyAxis->coordToPixel(mKeyAxis->range().upper) - mKeyAxis->coordToPixel(mKeyAxis->range().lower);
    const double px = ax / mKeyAxis->range().size();
    const double ay =
        mValueAxis->coordToPixel(mValueAxis->range().upper) - mValueAxis->coordToPixel(mValueAxis->range().lower);
    const double py = ay / mValueAxis->range().size();
    const double x0 = mKeyAxis->pixelToCoord(p.x());
    const double y0 = mValueAxis->pixelToCoord(p.y());
    const double *y = m_serie.y().data();
    const double *x = m_serie.x().data();
    const QList<quint32> *ordem = m_serie.ordem();
    for (qsizetype k = inicio; k < fim; ++k) {
        const qsizetype i = ordem ? qsizetype((*ordem)[k]) : k;
        const double dy = (y[i] - y0) * py;
        if (!(dy * dy <= achado.distancia2)) // also a NaN
            continue;
        const double dx = (x[i] - x0) * px;
        const double d2 = dx * dx + dy * dy;
        if (d2 < achado.distancia2 || (achado.indice < 0 && d2 <= achado.distancia2))
            achado = {i, d2};
    }
    return achado;
}

QCPRange PlotSerie::getKeyRange(bool &ha, QCP::SignDomain) const {
    ha = m_serie.menorX() <= m_serie.maiorX();
    return ha ? QCPRange(m_serie.menorX(), m_serie.maiorX()) : QCPRange();
}

QCPRange PlotSerie::getValueRange(bool &ha, QCP::SignDomain, const QCPRange &) const {
    ha = m_serie.menorY() <= m_serie.maiorY();
    return ha ? QCPRange(m_serie.menorY(), m_serie.maiorY()) : QCPRange();
}

QColor PlotSerie::corDaSerie() const {
    return m_tema.doPonto(EstadoDoPonto::Normal, m_serie.Color);
}

QColor PlotSerie::corDoPonto(qsizetype i) const {
    return m_tema.doPonto(m_serie.estado(i), m_serie.Color);
}

void PlotSerie::desenharMarcador(QPainter *pintor, QPointF p, double r, Tema::Forma forma) {
    if (forma == Tema::Forma::Circulo) {
        pintor->drawEllipse(p, r, r);
        return;
    }
    const double s = forma == Tema::Forma::Cima ? -1 : 1;
    const double a = r * 1.45;
    const QPointF triangulo[] = {p + QPointF(0, s * a), p + QPointF(-a, -s * a * 0.7), p + QPointF(a, -s * a * 0.7)};
    pintor->drawPolygon(triangulo, 3);
}

void PlotSerie::draw(QCPPainter *pintor) {
    if (!m_serie.Active || m_serie.Count() == 0 || !mKeyAxis || !(mKeyAxis->range().size() > 0) ||
        !(mValueAxis->range().size() > 0))
        return;
    if (m_serie.estilo == TSerie::Estilo::Barra)
        desenharBarras(pintor);
    else
        desenharLinhas(pintor);
}

void PlotSerie::desenharLinhas(QCPPainter *pintor) {
    const QCPRange &rx = mKeyAxis->range();
    const QCPRange &ry = mValueAxis->range();
    Escala e;
    e.ax = (mKeyAxis->coordToPixel(rx.upper) - mKeyAxis->coordToPixel(rx.lower)) / rx.size();
    e.bx = mKeyAxis->coordToPixel(rx.lower) - e.ax * rx.lower;
    e.ay = (mValueAxis->coordToPixel(ry.upper) - mValueAxis->coordToPixel(ry.lower)) / ry.size();
    e.by = mValueAxis->coordToPixel(ry.lower) - e.ay * ry.lower;
    e.coluna = pintor->modes().testFlag(QCPPainter::pmVectorized) ? 0.5 : 1 / pintor->device()->devicePixelRatioF();
    e.limite = QRectF(mKeyAxis->axisRect()->rect()).adjusted(-500, -500, 500, 500);

    const auto [inicio, fim] = visiveis();
    Redutor redutor(m_serie, e, m_lacuna);
    redutor.reduzir(inicio, fim);
    auto &tracos = redutor.tracos();

    // The usual state lowest, the rarest on top.
    std::vector<size_t> ordem(tracos.size());
    for (size_t c = 0; c < ordem.size(); ++c)
        ordem[c] = c;
    std::sort(ordem.begin(), ordem.end(), [&](size_t a, size_t b) {
        if (const auto base = size_t(redutor.base()); (a == base) != (b == base))
            return a == base;
        return tracos[a].peso > tracos[b].peso;
    });

    pintor->setAntialiasing(true);
    pintor->setBrush(Qt::NoBrush);
    for (size_t c : ordem) {
        const Tracos &t = tracos[c];
        const bool usual = EstadoDoPonto(c) == redutor.base();
        const QColor cor = m_tema.doPonto(EstadoDoPonto(c), m_serie.Color);
        QPen caneta(cor, usual ? espessura : espessuraAlarme, Qt::SolidLine, Qt::SquareCap, Qt::BevelJoin);
        if (m_serie.tracejada())
            tracejar(caneta, m_serie.traco);
        pintor->setPen(caneta);
        if (m_serie.tracejada() || pintor->modes().testFlag(QCPPainter::pmVectorized))
            riscar(pintor, t);
        else
            riscarDepressa(pintor, t);
        if (t.sozinhos.empty())
            continue;
        pintor->setPen(Qt::NoPen);
        pintor->setBrush(cor);
        for (const QPointF &p : t.sozinhos)
            desenharMarcador(pintor, p, espessura, Tema::Forma::Circulo);
        pintor->setBrush(Qt::NoBrush);
    }
    desenharMarcadores(pintor, inicio, fim);
}

// Every point where there is room; on paper also a few of the alarms where there is none, since their colour may be
// lost there.
void PlotSerie::desenharMarcadores(QCPPainter *pintor, qsizetype inicio, qsizetype fim) {
    if (m_serie.tracejada())
        return;
    const double largura = mKeyAxis->axisRect()->width();
    const bool todos = largura / double(fim - inicio) >= espacoParaMarcadores;
    const bool soAlarmes = !todos && m_tema.papel && m_serie.estados();
    if (!todos && !soAlarmes)
        return;
    constexpr double entreAlarmes = 11;
    double ultimo[2] = {-1e9, -1e9};
    pintor->setPen(QPen(m_tema.fundo, 0.8));
    for (qsizetype k = inicio; k < fim; ++k) {
        const qsizetype i = indiceDe(k);
        const Tema::Forma forma = Tema::forma(m_serie.estado(i));
        if (std::isnan(m_serie.YValue(i)) || (!todos && forma == Tema::Forma::Circulo))
            continue;
        const QPointF p = posicao(i);
        if (!todos) {
            double &antes = ultimo[forma == Tema::Forma::Cima ? 0 : 1];
            if (p.x() - antes < entreAlarmes)
                continue;
            antes = p.x();
        }
        pintor->setBrush(corDoPonto(i));
        desenharMarcador(pintor, p, raioDoMarcador, forma);
    }
}

void PlotSerie::desenharSimbolo(QCPPainter *pintor, const QRectF &area) const {
    pintor->save();
    pintor->setAntialiasing(true);
    if (m_serie.estilo == TSerie::Estilo::Barra) {
        pintor->setAntialiasing(false);
        pintor->fillRect(area.adjusted(area.width() / 4, 1, -area.width() / 4, -1), corDaSerie());
    } else {
        QPen caneta(corDaSerie(), 2.2, Qt::SolidLine, Qt::FlatCap);
        if (m_serie.tracejada())
            tracejar(caneta, m_serie.traco, 0.53);
        pintor->setPen(caneta);
        pintor->drawLine(QPointF(area.left(), area.center().y()), QPointF(area.right(), area.center().y()));
    }
    pintor->restore();
}
