#include "platform/chart/TChart.h"

#include "core/literais.h"
#include "core/textoMostrado.h"
#include "platform/chart/interno.h"

#include <QPicture>

#include <cmath>

TChart::Interno::Interno(TChart *chart) : q(chart), quadro(new Quadro(chart)), sobre(new Sobreposicao(chart)) {
    new Marcas(quadro, plots, tema); // the plot owns them
    new Aviso(quadro, aviso, tema);
    const auto marcador = [](QCPAxis *eixo, Marcador::Graduar graduar) {
        eixo->setTicker(QSharedPointer<Marcador>::create(eixo, std::move(graduar)));
    };
    marcador(quadro->xAxis, [this](double a, double b, double c) { return graduarBaixo(a, b, c); });
    marcador(quadro->yAxis, [this](double a, double b, double c) { return graduarEsquerdo(a, b, c); });
    repouso.setSingleShot(true);
    repouso.setInterval(150);
    QObject::connect(&repouso, &QTimer::timeout, chart, [this] { pedirNota(); });
}

TChart::TChart(QWidget *pai) : QWidget(pai), m(std::make_unique<Interno>(this)) {
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setContextMenuPolicy(Qt::PreventContextMenu); // the right button pans; no menu of what lies around may open
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    m->vestir();
    actualizar();
}

// The plottables refer to the series: they go first.
TChart::~TChart() {
    delete m->quadro;
}

int TChart::SeriesCount() const {
    return int(m->series.size());
}

TSerie &TChart::AddSeries(TSerie::Estilo estilo) {
    m->series.push_back(std::make_unique<TSerie>(estilo));
    m->plots.push_back(new PlotSerie(m->quadro->xAxis, m->quadro->yAxis, *m->series.back(), m->tema));
    return *m->series.back();
}

void TChart::RemoveSeries(int indice) {
    m->quadro->legenda()->definir({}, m->rodape);
    m->quadro->removePlottable(m->plots[size_t(indice)]);
    m->plots.erase(m->plots.begin() + indice);
    m->series.erase(m->series.begin() + indice);
    m->serieRetirada(indice);
}

TSerie &TChart::Series(int indice) {
    return *m->series[size_t(indice)];
}

const TSerie &TChart::Series(int indice) const {
    return *m->series[size_t(indice)];
}

TEixo &TChart::Left() {
    return m->esquerdo;
}

TEixo &TChart::Bottom() {
    return m->baixo;
}

namespace {

// The extreme over the active series, 0 when no series has any.
template <typename Serie, typename Valor, typename Melhor>
double extremo(const std::vector<Serie> &series, Valor valor, Melhor melhor) {
    double achado = 0;
    bool ha = false;
    for (const auto &s : series) {
        const double v = ((*s).*valor)();
        if (!s->Active || !std::isfinite(v))
            continue;
        achado = ha ? melhor(achado, v) : v;
        ha = true;
    }
    return achado;
}

constexpr auto menor = [](double a, double b) { return std::min(a, b); };
constexpr auto maior = [](double a, double b) { return std::max(a, b); };

} // namespace

double TChart::MinXValue() const {
    return extremo(m->series, &TSerie::menorX, menor);
}

double TChart::MaxXValue() const {
    return extremo(m->series, &TSerie::maiorX, maior);
}

double TChart::MinYValue() const {
    return extremo(m->series, &TSerie::menorY, menor);
}

double TChart::MaxYValue() const {
    return extremo(m->series, &TSerie::maiorY, maior);
}

bool TChart::temDados() const {
    return m->temDados();
}

bool TChart::ZoomEnable() const {
    return m->zoomPermitido;
}

void TChart::setZoomEnable(bool permitido) {
    m->zoomPermitido = permitido;
    if (!permitido && m->gesto.botao == Qt::LeftButton) {
        m->gesto = {};
        m->sobre->esconderFaixa();
    }
}

bool TChart::comZoom() const {
    return m->comZoom;
}

void TChart::anularZoom() {
    m->definirVista(m->todoX, m->todoY);
}

void TChart::setUnidade(const QString &unidade) {
    m->unidade = unidade;
}

void TChart::setCasas(int casas) {
    m->casas = casas;
}

void TChart::setAviso(const QString &aviso) {
    m->aviso = aviso;
    m->contar();
}

QString TChart::aviso() const {
    return m->aviso;
}

void TChart::setRodape(const QString &rodape) {
    m->rodape = rodape;
    m->contar();
}

QString TChart::rodape() const {
    return m->rodape;
}

void TChart::setLegenda(bool visivel, int aPartirDe) {
    m->comLegenda = visivel;
    m->nomesAPartirDe = aPartirDe;
}

void TChart::setNota(std::function<QString(int, int)> nota) {
    m->nota = std::move(nota);
}

void TChart::actualizar() {
    for (PlotSerie *p : m->plots)
        p->actualizar();
    std::vector<const PlotSerie *> nomeadas;
    for (const PlotSerie *p : m->plots)
        if (p->serie().Active && !p->serie().Title.isEmpty())
            nomeadas.push_back(p);
    if (!m->comLegenda || int(nomeadas.size()) < m->nomesAPartirDe)
        nomeadas.clear();
    m->quadro->legenda()->definir(std::move(nomeadas), m->rodape);

    Quadro *quadro = m->quadro;
    quadro->xAxis->setVisible(m->baixo.Visible);
    quadro->yAxis->setVisible(m->esquerdo.Visible);
    quadro->xAxis->setLabel(textoMostrado::linha(m->baixo.Title));
    quadro->yAxis->setLabel(textoMostrado::linha(m->esquerdo.Title));
    const auto graduado = [&](QCPAxis *eixo, const TEixo &modelo) {
        const bool sim = m->temDados() || !modelo.Automatic; // else there is nothing to measure
        eixo->setTicks(sim);
        eixo->setTickLabels(sim);
        eixo->grid()->setVisible(sim);
    };
    graduado(quadro->xAxis, m->baixo);
    graduado(quadro->yAxis, m->esquerdo);
    if (m->temBarras())
        quadro->xAxis->grid()->setVisible(false);
    m->calcularLimites();
    m->definirVista(m->comZoom ? quadro->xAxis->range() : m->todoX, m->comZoom ? quadro->yAxis->range() : m->todoY);
    m->notaPedida = false; // may have changed too
    m->notaDoAlvo.clear();
    if (m->valido(m->alvo))
        m->mostrarLeitura();
    else
        m->apontar({});
    quadro->pedir();
}

std::pair<int, int> TChart::pontoMaisProximo(const QPointF &posicao) const {
    constexpr double raio = 8;
    m->quadro->dispor();
    const Interno::Alvo a = m->procurar(posicao, raio);
    return {a.serie, int(a.indice)};
}

QImage TChart::imagem(int largura, int altura) const {
    QImage imagem(largura, altura, QImage::Format_RGB32);
    imagem.setDevicePixelRatio(1);
    imagem.fill(Qt::white);
    QCPPainter pintor(&imagem);
    m->desenhar(&pintor, imagem.size());
    return imagem;
}

void TChart::pintar(QPainter &pintor, const QRect &destino) const {
    if (destino.isEmpty())
        return;
    // So many pixels as a picture of this shape has on a middling screen.
    constexpr double pontosDaImagem = 800 * 500;
    const double escala = std::sqrt(double(destino.width()) * destino.height() / pontosDaImagem);
    const QSize tamanho((QSizeF(destino.size()) / escala).toSize());
    QPicture gravado;
    {
        QCPPainter meio(&gravado);
        meio.setModes(QCPPainter::pmVectorized | QCPPainter::pmNoCaching);
        m->desenhar(&meio, tamanho);
    }
    pintor.save();
    pintor.translate(destino.topLeft());
    pintor.scale(double(destino.width()) / tamanho.width(), double(destino.height()) / tamanho.height());
    // A picture is played to its size on paper; here it is to fill the area.
    const QPaintDevice *papel = pintor.device();
    pintor.scale(double(gravado.logicalDpiX()) / papel->logicalDpiX(),
                 double(gravado.logicalDpiY()) / papel->logicalDpiY());
    pintor.drawPicture(0, 0, gravado);
    pintor.restore();
}

void TChart::resizeEvent(QResizeEvent *evento) {
    m->quadro->setGeometry(rect());
    m->sobre->setGeometry(rect());
    m->sobre->raise();
    if (m->valido(m->alvo))
        m->mostrarLeitura();
    QWidget::resizeEvent(evento);
}

void TChart::changeEvent(QEvent *evento) {
    switch (evento->type()) {
    case QEvent::PaletteChange:
    case QEvent::FontChange:
    case QEvent::StyleChange:
        m->vestir();
        break;
    default:
        break;
    }
    QWidget::changeEvent(evento);
}
