#include "platform/chart/quadro.h"

#include "core/textoMostrado.h"

#include <algorithm>
#include <numeric>

namespace {

constexpr int entreColunas = 18;
constexpr int larguraDoSimbolo = 22;
constexpr int entreSimboloETexto = 6;
constexpr double parteMaxima = 0.4; // of the height, for the legend
constexpr int ladosDaFrase = 12;
constexpr int quebra = Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap;
constexpr qsizetype letrasDoNome = 200;

QString nomeDe(const PlotSerie &plot) {
    return textoMostrado::linha(plot.serie().Title, letrasDoNome);
}

} // namespace

void Marcador::generate(const QCPRange &limites, const QLocale &, QChar, int, QVector<double> &marcas,
                        QVector<double> *finas, QVector<QString> *rotulos) {
    const QCPAxisRect *area = m_eixo->axisRect();
    const bool deitado = m_eixo->orientation() == Qt::Horizontal;
    const Graduacao g = m_graduar(limites.lower, limites.upper, deitado ? area->width() : area->height());
    m_eixo->setTickLabelRotation(g.deitados ? -90 : 0);
    marcas = g.marcas;
    if (finas)
        *finas = g.finas;
    if (rotulos)
        *rotulos = g.rotulos;
}

void Legenda::dispor(int largura, int altura) {
    m_alturaFrase = 0;
    if (m_tema && !m_frase.isEmpty()) {
        const QFontMetricsF letra(m_tema->fonte);
        const QRectF lugar(0, 0, largura - 2.0 * ladosDaFrase, altura * parteMaxima);
        const double precisa = letra.boundingRect(lugar, quebra, m_frase).height();
        m_alturaFrase = int(std::ceil(std::min(precisa, lugar.height()))) + 6;
    }
    const int alto = m_alturaFrase + (m_series.empty() || !m_tema ? 0 : disporNomes(largura, altura));
    setMinimumSize(0, alto);
    setMaximumSize(QWIDGETSIZE_MAX, alto);
}

int Legenda::disporNomes(int largura, int altura) {
    const QFontMetricsF letra(m_tema->fonte);
    const int n = int(m_series.size());
    m_alturaLinha = std::ceil(letra.height()) + 3;
    m_larguras.clear();
    double todas = 0;
    for (const PlotSerie *p : m_series) {
        m_larguras.push_back(larguraDoSimbolo + entreSimboloETexto + letra.horizontalAdvance(nomeDe(*p)) +
                             entreColunas);
        todas += m_larguras.back();
    }
    if (todas <= largura) { // one line, each name as wide as it is
        m_linhas = 1;
    } else {
        const double completa = *std::max_element(m_larguras.begin(), m_larguras.end());
        const int maximoDeLinhas = std::max(1, int(altura * parteMaxima / m_alturaLinha));
        // A list too long for the place gets narrower columns, its names cut short.
        const int colunas =
            std::max(std::clamp(int(largura / completa), 1, n), (n + maximoDeLinhas - 1) / maximoDeLinhas);
        m_linhas = (n + colunas - 1) / colunas;
        const int usadas = (n + m_linhas - 1) / m_linhas;
        m_larguras.assign(size_t(usadas), std::min(completa, double(largura) / usadas));
    }
    return int(m_linhas * m_alturaLinha) + 8;
}

void Legenda::draw(QCPPainter *pintor) {
    if (m_tema && m_alturaFrase > 0) {
        pintor->setFont(m_tema->fonte);
        pintor->setPen(m_tema->secundario);
        pintor->drawText(QRectF(rect().left() + ladosDaFrase, rect().top() + 1, rect().width() - 2.0 * ladosDaFrase,
                                m_alturaFrase - 4),
                         quebra, m_frase);
    }
    if (m_series.empty() || !m_tema || m_larguras.empty())
        return;
    const QFontMetricsF letra(m_tema->fonte);
    const double todas = std::accumulate(m_larguras.begin(), m_larguras.end(), 0.0);
    double x = rect().left() + std::max(0.0, (rect().width() - todas + entreColunas) / 2);
    pintor->setFont(m_tema->fonte);
    for (size_t i = 0; i < m_series.size(); ++i) {
        const size_t coluna = i / size_t(m_linhas);
        const double y = rect().top() + m_alturaFrase + 2 + double(i % size_t(m_linhas)) * m_alturaLinha;
        const QRectF simbolo(x, y, larguraDoSimbolo, m_alturaLinha);
        m_series[i]->desenharSimbolo(pintor, simbolo);
        const QRectF lugar(simbolo.right() + entreSimboloETexto, y,
                           m_larguras[coluna] - larguraDoSimbolo - entreSimboloETexto - entreColunas / 2.0,
                           m_alturaLinha);
        pintor->setPen(m_tema->texto);
        pintor->drawText(lugar, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                         letra.elidedText(nomeDe(*m_series[i]), Qt::ElideMiddle, lugar.width()));
        if ((i + 1) % size_t(m_linhas) == 0)
            x += m_larguras[coluna];
    }
}

Quadro::Quadro(QWidget *pai) : QCustomPlot(pai), m_legenda(new Legenda(this)) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    setAutoAddPlottableToLegend(false);
    setPlottingHints(QCP::phCacheLabels);
    plotLayout()->setRowSpacing(2);
    plotLayout()->addElement(1, 0, m_legenda);
    plotLayout()->setRowStretchFactor(1, 0.001);
    axisRect()->setMinimumMargins(QMargins(10, 12, 26, 6));
    for (QCPAxis *eixo : {xAxis2, yAxis2}) {
        eixo->setVisible(true);
        eixo->setTicks(false);
        eixo->setTickLabels(false);
    }
    for (QCPAxis *eixo : {xAxis, yAxis}) {
        eixo->setTickLength(0, 5);
        eixo->setSubTickLength(0, 3);
        eixo->grid()->setSubGridVisible(false);
        eixo->setTickLabelPadding(5);
        eixo->setLabelPadding(6);
    }
    xAxis->grid()->setZeroLinePen(Qt::NoPen);
}

void Quadro::pedir() {
    m_sujo = true;
    update();
}

void Quadro::dispor() {
    if (m_sujo)
        updateLayout();
}

void Quadro::vestir(const Tema &tema) {
    setBackground(QBrush(tema.fundo));
    m_legenda->vestir(tema);
    for (QCPAxis *eixo : {xAxis, yAxis}) {
        eixo->setBasePen(QPen(tema.eixo, 1));
        eixo->setTickPen(QPen(tema.eixo, 1));
        eixo->setSubTickPen(QPen(tema.eixo, 1));
        eixo->setTickLabelColor(tema.secundario);
        eixo->setTickLabelFont(tema.fonte);
        eixo->setLabelColor(tema.texto);
        eixo->setLabelFont(tema.fonte);
        eixo->grid()->setPen(QPen(tema.grelha, 1));
        eixo->grid()->setSubGridPen(QPen(tema.grelhaFina, 1));
    }
    yAxis->grid()->setZeroLinePen(QPen(tema.eixo, 1));
    for (QCPAxis *eixo : {xAxis2, yAxis2})
        eixo->setBasePen(QPen(tema.grelha, 1));
}

void Quadro::paintEvent(QPaintEvent *evento) {
    if (m_sujo) {
        m_sujo = false;
        replot(rpQueuedRefresh);
    }
    QCustomPlot::paintEvent(evento);
}

void Quadro::resizeEvent(QResizeEvent *) {
    setViewport(rect());
    pedir();
}

// The marks depend on the lengths of the axes, and these on the widths of the labels.
void Quadro::updateLayout() {
    m_legenda->dispor(viewport().width(), viewport().height());
    for (int volta = 0; volta < 4; ++volta) {
        const QRect antes = axisRect()->rect();
        QCustomPlot::updateLayout();
        if (axisRect()->rect() == antes)
            return;
    }
}
