#include "platform/chart/TChart.h"

#include "core/estado.h"
#include "platform/chart/TChart_interno.h"

#include <QPicture>
#include <QVBoxLayout>

#include <cmath>

namespace {

constexpr int maximoNaLegenda = 28; // characters of a name
constexpr double distanciaDeClique = 8;
constexpr int pontosPorMetro96dpi = 3780;

} // namespace

TChart::Interno::Interno(TChart *chart)
    : q(chart), plot(new QCustomPlot(chart)), leitor(new LeitorDePonto(chart)),
      elastico(new QRubberBand(QRubberBand::Rectangle, plot)), eixoTempo(new EixoTempo(plot->xAxis)),
      eixoNumeros(new EixoNumeros), eixoBarras(new EixoBarras(plot->xAxis)), rodape(new QCPLayoutGrid) {
    plot->setPlottingHint(QCP::phCacheLabels, false);
    plot->setNoAntialiasingOnDrag(true);
    plot->setFocusPolicy(Qt::NoFocus);
    plot->setMouseTracking(true);
    plot->xAxis->setTicker(eixoTempo);
    plot->yAxis->setTicker(eixoNumeros);
    plot->xAxis2->setVisible(true);
    plot->yAxis2->setVisible(true);
    for (QCPAxis *a : {plot->xAxis2, plot->yAxis2}) {
        a->setTicks(false);
        a->setTickLabels(false);
    }
    plot->plotLayout()->addElement(1, 0, rodape);
    plot->plotLayout()->setRowStretchFactor(1, 0.001);
    plot->plotLayout()->setRowSpacing(0);
    rodape->setMargins(QMargins(8, 0, 8, 6));
    rodape->addElement(0, 0, plot->legend);
    plot->legend->setFillOrder(QCPLayoutGrid::foColumnsFirst);
    plot->legend->setBorderPen(Qt::NoPen);
    plot->legend->setBrush(Qt::NoBrush);
    plot->legend->setMargins(QMargins(0, 2, 0, 0));
    plot->legend->setRowSpacing(0);
    plot->legend->setVisible(false);
}

TChart::TChart(QWidget *pai) : QWidget(pai), m(std::make_unique<Interno>(this)) {
    setFocusPolicy(Qt::StrongFocus);
    auto *disposicao = new QVBoxLayout(this);
    disposicao->setContentsMargins(0, 0, 0, 0);
    disposicao->addWidget(m->plot);
    m->leitor->raise();
    m->plot->installEventFilter(this);
    m->aplicarTema(TemaGrafico::doEcra(palette()));
    actualizar();
}

TChart::~TChart() = default;

int TChart::SeriesCount() const {
    return int(m->series.size());
}

TSerie &TChart::AddSeries(TSerie::Estilo estilo) {
    auto serie = std::make_unique<TSerie>(estilo);
    auto *plot = new PlotSerie(m->plot->xAxis, m->plot->yAxis, *serie);
    plot->setTema(TemaGrafico::doEcra(palette()));
    plot->removeFromLegend();
    m->series.push_back({std::move(serie), plot});
    return *m->series.back().serie;
}

void TChart::RemoveSeries(int indice) {
    m->leitor->esconder();
    m->cursorSerie = m->cursorIndice = -1;
    m->plot->removePlottable(m->series.at(size_t(indice)).plot);
    m->series.erase(m->series.begin() + indice);
}

TSerie &TChart::Series(int indice) {
    return *m->series.at(size_t(indice)).serie;
}
const TSerie &TChart::Series(int indice) const {
    return *m->series.at(size_t(indice)).serie;
}
TEixo &TChart::Left() {
    return m->esquerdo;
}
TEixo &TChart::Bottom() {
    return m->baixo;
}

double TChart::MinXValue() const {
    const auto e = m->extremos();
    return e.validos ? e.xMinimo : 0;
}
double TChart::MaxXValue() const {
    const auto e = m->extremos();
    return e.validos ? e.xMaximo : 0;
}
double TChart::MinYValue() const {
    const auto e = m->extremos();
    return e.validos ? e.yMinimo : 0;
}
double TChart::MaxYValue() const {
    const auto e = m->extremos();
    return e.validos ? e.yMaximo : 0;
}

bool TChart::ZoomEnable() const {
    return m->zoomPermitido;
}
void TChart::setZoomEnable(bool permitido) {
    m->zoomPermitido = permitido;
}
bool TChart::comZoom() const {
    return m->comZoom;
}
void TChart::anularZoom() {
    m->verTudo();
}
void TChart::setUnidade(const QString &unidade) {
    m->unidade = unidade;
}
void TChart::setLegenda(bool visivel) {
    m->legenda = visivel;
}
void TChart::setNota(std::function<QString(int, int)> nota) {
    m->nota = std::move(nota);
}

std::pair<int, int> TChart::pontoMaisProximo(const QPointF &posicao) const {
    return m->proximo(posicao, distanciaDeClique);
}

void TChart::actualizar() {
    for (const SerieDoGrafico &s : m->series) {
        s.plot->setVisible(s.serie->Active);
        s.plot->examinar();
    }
    m->notaPedida = {-1, -1};
    m->leitor->esconder();
    m->aplicarEixos();
    m->aplicarLegenda(width());
    m->repintar();
}

bool TChart::Interno::comBarras() const {
    for (const SerieDoGrafico &s : series)
        if (s.serie->Active && s.serie->estilo == TSerie::Estilo::Barra)
            return true;
    return false;
}

// Asked for before actualizar() as well, so it looks at the points themselves.
PlotSerie::Extremos TChart::Interno::extremos() const {
    PlotSerie::Extremos todos{INFINITY, -INFINITY, INFINITY, -INFINITY, false};
    for (const SerieDoGrafico &s : series) {
        if (!s.serie->Active)
            continue;
        const QList<double> &x = s.serie->x();
        const QList<double> &y = s.serie->y();
        for (qsizetype i = 0; i < x.size(); ++i) {
            if (std::isnan(y[i]))
                continue;
            todos.xMinimo = std::min(todos.xMinimo, x[i]);
            todos.xMaximo = std::max(todos.xMaximo, x[i]);
            todos.yMinimo = std::min(todos.yMinimo, y[i]);
            todos.yMaximo = std::max(todos.yMaximo, y[i]);
            todos.validos = true;
        }
    }
    return todos;
}

QCPRange TChart::Interno::vistaX() const {
    QCPRange vista(baixo.Minimum, baixo.Maximum);
    if (comBarras()) {
        qsizetype barras = 1;
        for (const SerieDoGrafico &s : series)
            barras = std::max(barras, s.serie->Count());
        return {-0.75, double(barras) - 0.25};
    }
    if (baixo.Automatic) {
        const auto e = extremos();
        vista = e.validos ? QCPRange(e.xMinimo, e.xMaximo) : QCPRange(0, 1);
    }
    // A single moment still needs some width to be drawn in.
    return vista.size() > 0 ? vista : QCPRange(vista.lower - 1800, vista.lower + 1800);
}

QCPRange TChart::Interno::vistaY() const {
    QCPRange vista(esquerdo.Minimum, esquerdo.Maximum);
    if (esquerdo.Automatic) {
        const auto e = extremos();
        const double folga = e.validos ? std::max(0.5, (e.yMaximo - e.yMinimo) * 0.05) : 0;
        vista = e.validos ? QCPRange(e.yMinimo - folga, e.yMaximo + folga) : QCPRange(0, 1);
    }
    return vista.size() > 0 ? vista : QCPRange(vista.lower - 1, vista.lower + 1);
}

void TChart::Interno::aplicarTema(const TemaGrafico &tema) {
    plot->setBackground(QBrush(tema.fundo));
    for (QCPAxis *eixo : {plot->xAxis, plot->yAxis, plot->xAxis2, plot->yAxis2}) {
        eixo->setBasePen(QPen(tema.eixo, 1));
        eixo->setTickPen(QPen(tema.eixo, 1));
        eixo->setSubTickPen(QPen(tema.eixo, 1));
        eixo->setTickLabelColor(tema.texto);
        eixo->setLabelColor(tema.texto);
        eixo->grid()->setPen(QPen(tema.grelha, 1));
        eixo->grid()->setZeroLinePen(QPen(tema.grelha.darker(115), 1));
    }
    plot->legend->setTextColor(tema.texto);
    for (const SerieDoGrafico &s : series)
        s.plot->setTema(tema);
}

void TChart::Interno::aplicarEixos() {
    const bool barras = comBarras();
    plot->setLocale(estado().ambiente.locale);
    eixoTempo->passoMinimo = baixo.Increment;
    eixoNumeros->passoMinimo = esquerdo.Increment;
    if (barras) {
        eixoBarras->rotulos.clear();
        for (const SerieDoGrafico &s : series)
            for (qsizetype i = 0; s.serie->Active && i < s.serie->Count(); ++i)
                eixoBarras->rotulos.append(s.serie->PointLabel(i));
        plot->xAxis->setTicker(eixoBarras);
    } else {
        plot->xAxis->setTicker(eixoTempo);
    }
    plot->xAxis->setTickLabels(baixo.Visible);
    plot->xAxis->setTicks(baixo.Visible);
    plot->yAxis->setVisible(esquerdo.Visible);
    plot->xAxis->grid()->setVisible(baixo.Visible && !barras);
    plot->xAxis->setLabel(baixo.Title);
    plot->yAxis->setLabel(esquerdo.Title);
    if (!comZoom) {
        plot->xAxis->setRange(vistaX());
        plot->yAxis->setRange(vistaY());
    }
    rodarRotulos();
}

// Labels of bars stand upright when they do not fit side by side.
void TChart::Interno::rodarRotulos() {
    double rotacao = 0;
    if (comBarras()) {
        const QFontMetricsF metrica(plot->xAxis->tickLabelFont());
        const double porBarra = plot->xAxis->axisRect()->width() / std::max(1e-9, plot->xAxis->range().size());
        for (const QString &rotulo : std::as_const(eixoBarras->rotulos))
            if (metrica.horizontalAdvance(rotulo) + 10 > porBarra)
                rotacao = -90;
    }
    plot->xAxis->setTickLabelRotation(rotacao);
}

void TChart::Interno::aplicarLegenda(int largura) {
    QCPLegend *caixa = plot->legend;
    caixa->clearItems();
    const QFontMetricsF metrica(caixa->font());
    double maior = 1;
    for (const SerieDoGrafico &s : series) {
        if (!legenda || !s.serie->Active || s.serie->Count() == 0)
            continue;
        const QString nome = s.serie->Title.size() > maximoNaLegenda
                                 ? s.serie->Title.left(maximoNaLegenda - 1) + QChar(u'…')
                                 : s.serie->Title;
        s.plot->setName(nome);
        s.plot->addToLegend();
        maior = std::max(maior, metrica.horizontalAdvance(nome));
    }
    const double item = maior + caixa->iconSize().width() + caixa->iconTextPadding() + caixa->columnSpacing() + 8;
    caixa->setWrap(std::max(1, int((largura - 24) / item)));
    // Wrapping counts from what is added, so the items are laid out anew.
    caixa->setFillOrder(QCPLayoutGrid::foColumnsFirst, true);
    caixa->setVisible(caixa->itemCount() > 0);
}

void TChart::Interno::repintar() {
    plot->replot(QCustomPlot::rpQueuedReplot);
}

// The same plot drawn once more at another size and on white paper; the screen's state is put back afterwards.
QImage TChart::imagem(int largura, int altura) const {
    QImage imagem(largura, altura, QImage::Format_RGB32);
    imagem.setDotsPerMeterX(pontosPorMetro96dpi);
    imagem.setDotsPerMeterY(pontosPorMetro96dpi);
    imagem.fill(Qt::white);
    const QSize antes = m->plot->viewport().size();
    m->aplicarTema(TemaGrafico::doPapel());
    m->aplicarLegenda(largura);
    {
        QCPPainter pintor(&imagem);
        m->plot->toPainter(&pintor, largura, altura);
    }
    m->aplicarTema(TemaGrafico::doEcra(palette()));
    m->aplicarLegenda(antes.width());
    return imagem;
}

void TChart::pintar(QPainter &pintor, const QRect &destino) const {
    pintor.drawImage(destino, imagem(destino.width(), destino.height()));
}

void TChart::changeEvent(QEvent *evento) {
    QWidget::changeEvent(evento);
    if (evento->type() == QEvent::PaletteChange || evento->type() == QEvent::StyleChange) {
        const TemaGrafico tema = TemaGrafico::doEcra(palette());
        m->aplicarTema(tema);
        m->leitor->setTema(tema);
        m->repintar();
    }
}

void TChart::resizeEvent(QResizeEvent *evento) {
    QWidget::resizeEvent(evento);
    m->leitor->setGeometry(rect());
    m->leitor->esconder();
    m->aplicarLegenda(width());
    m->rodarRotulos();
}

void TChart::focusInEvent(QFocusEvent *evento) {
    QWidget::focusInEvent(evento);
    m->leitor->setFoco(evento->reason() == Qt::TabFocusReason || evento->reason() == Qt::BacktabFocusReason);
}

void TChart::focusOutEvent(QFocusEvent *evento) {
    QWidget::focusOutEvent(evento);
    m->leitor->setFoco(false);
}

void TChart::keyPressEvent(QKeyEvent *evento) {
    if (!m->tecla(evento))
        QWidget::keyPressEvent(evento);
}

bool TChart::eventFilter(QObject *objecto, QEvent *evento) {
    return objecto == m->plot && m->rato(evento) ? true : QWidget::eventFilter(objecto, evento);
}
