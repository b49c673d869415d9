// The labels of points, and what is said inside the plot.
#include "platform/chart/quadro.h"

#include <algorithm>

namespace {

constexpr double acimaDoPonto = 5; // pixels
constexpr int quebra = Qt::AlignCenter | Qt::TextWordWrap;

bool tocam(const QRectF &a, const QRectF &b) {
    return a.adjusted(-1, 0, 1, 0).intersects(b.adjusted(-1, 0, 1, 0));
}

} // namespace

QRect Aviso::clipRect() const {
    return parentPlot()->axisRect()->rect();
}

void Aviso::draw(QCPPainter *pintor) {
    if (m_texto.isEmpty())
        return;
    const QRectF area = clipRect().adjusted(12, 8, -12, -8);
    QFont fonte = m_tema.fonte;
    fonte.setPixelSize(fonte.pixelSize() + 3);
    const QRectF texto = QFontMetricsF(fonte).boundingRect(area, quebra, m_texto).adjusted(-10, -6, 10, 6);
    pintor->setPen(Qt::NoPen);
    pintor->setBrush(m_tema.fundo); // no line of the grid runs through it
    pintor->drawRect(texto);
    pintor->setFont(fonte);
    pintor->setPen(m_tema.secundario);
    pintor->drawText(area, quebra, m_texto);
}

// Gathers marks where a lone one would stand on top of another. Lone ones are all of one size, so that a grid of that
// size holds at most one group in a cell, and nine cells tell what a new one would touch.
class Marcas::Agrupador {
public:
    Agrupador(const QRectF &area, const QSizeF &lado)
        : m_canto(area.topLeft() - QPointF(2 * lado.width(), 4 * lado.height())), m_lado(lado),
          m_colunas(int(area.width() / lado.width()) + 6), m_linhas(int(area.height() / lado.height()) + 8),
          m_celulas(size_t(m_colunas) * size_t(m_linhas), -1) {}

    void juntar(const QPointF &p, const QString &texto, qint64 quantas, const PlotSerie &serie) {
        const int coluna = std::clamp(int((p.x() - m_canto.x()) / m_lado.width()), 1, m_colunas - 2);
        const int linha = std::clamp(int((p.y() - m_canto.y()) / m_lado.height()), 1, m_linhas - 2);
        for (int l = linha - 1; l <= linha + 1; ++l)
            for (int c = coluna - 1; c <= coluna + 1; ++c)
                if (const int g = celula(c, l); g >= 0 && toca(grupos[size_t(g)].ponto, p)) {
                    Grupo &grupo = grupos[size_t(g)];
                    grupo.quantas += quantas;
                    if (grupo.serie != &serie)
                        grupo.serie = nullptr;
                    return;
                }
        celula(coluna, linha) = int(grupos.size());
        grupos.push_back({p, texto, quantas, &serie, {}});
    }
    std::vector<Grupo> grupos;

private:
    bool toca(const QPointF &a, const QPointF &b) const {
        return std::abs(a.x() - b.x()) < m_lado.width() && std::abs(a.y() - b.y()) < m_lado.height();
    }
    int &celula(int coluna, int linha) { return m_celulas[size_t(linha) * size_t(m_colunas) + size_t(coluna)]; }
    QPointF m_canto;
    QSizeF m_lado;
    int m_colunas, m_linhas;
    std::vector<int> m_celulas;
};

QRect Marcas::clipRect() const {
    return parentPlot()->axisRect()->rect();
}

QFont Marcas::letraDoTexto() const {
    QFont fonte = m_tema.fonte;
    fonte.setBold(true);
    fonte.setPixelSize(fonte.pixelSize() + 2);
    return fonte;
}

QFont Marcas::letraDoNumero() const {
    QFont fonte = m_tema.fonte;
    fonte.setPixelSize(std::max(9, fonte.pixelSize() - 2));
    return fonte;
}

void Marcas::situar(Grupo &g) const {
    const QRectF area = clipRect();
    const QFontMetricsF letra(letraDoTexto());
    double largura = letra.horizontalAdvance(g.texto);
    if (g.quantas > 1)
        largura += 1 + QFontMetricsF(letraDoNumero()).horizontalAdvance(QString::number(g.quantas));
    const double altura = letra.ascent();
    // What it says must be read in full, also at the edges.
    const double esquerda = std::min(g.ponto.x() - largura / 2, area.right() - largura - 1);
    const double topo = g.ponto.y() - acimaDoPonto - altura;
    g.lugar = QRectF(std::max(esquerda, area.left() + 1), std::max(topo, area.top() + 1), largura, altura);
}

void Marcas::recolher(const PlotSerie &plot, Agrupador &agrupador) const {
    const TSerie &serie = plot.serie();
    const QRectF area = clipRect();
    const QCPRange alturas = plot.valueAxis()->range();
    const auto [inicio, fim] = plot.visiveis();
    const bool porOrdem = !serie.ordem();
    for (qsizetype k = inicio; k < fim; ++k) {
        if (porOrdem)
            k = serie.proximaMarca(k, fim);
        if (k >= fim)
            break;
        const qsizetype i = plot.indiceDe(k);
        if (!serie.temMarca(i))
            continue;
        const bool semValor = std::isnan(serie.YValue(i));
        QPointF p = plot.posicao(i);
        if (semValor)
            p.setY(area.bottom());
        if (!area.contains(p))
            continue;
        qint64 quantas = 1;
        // A block that is all within one column of pixels, and seen from its lowest to its highest point, counts as
        // one.
        const qsizetype bloco = i / TSerie::bloco;
        const qsizetype ultimo = (bloco + 1) * TSerie::bloco - 1;
        if (porOrdem && !semValor && bloco < serie.resumos().size() && ultimo < fim &&
            serie.resumos()[bloco].marcas > 1 && i == serie.proximaMarca(bloco * TSerie::bloco, ultimo) &&
            plot.posicao(ultimo).x() - p.x() < 1) {
            const TSerie::Resumo &r = serie.resumos()[bloco];
            const qsizetype base = bloco * TSerie::bloco;
            if (alturas.contains(serie.YValue(base + r.menor)) && alturas.contains(serie.YValue(base + r.maior))) {
                quantas = r.marcas;
                k = ultimo;
            }
        }
        agrupador.juntar(p, serie.PointLabel(i), quantas, plot);
    }
}

// Numbers make groups wider than lone marks: those that touch now become one, until none does.
void Marcas::fundir(std::vector<Grupo> &grupos) const {
    const auto aEsquerda = [](const Grupo &a, const Grupo &b) { return a.lugar.left() < b.lugar.left(); };
    for (bool mudou = true; mudou;) {
        mudou = false;
        std::stable_sort(grupos.begin(), grupos.end(), aEsquerda);
        double maisLarga = 0;
        for (const Grupo &g : grupos)
            maisLarga = std::max(maisLarga, g.lugar.width());
        std::vector<Grupo> ficam;
        for (const Grupo &g : grupos) {
            auto outro = ficam.rbegin();
            while (outro != ficam.rend() && outro->lugar.left() + maisLarga + 2 >= g.lugar.left() &&
                   !tocam(outro->lugar, g.lugar))
                ++outro;
            if (outro == ficam.rend() || !tocam(outro->lugar, g.lugar)) {
                ficam.push_back(g);
                continue;
            }
            outro->quantas += g.quantas;
            if (outro->serie != g.serie)
                outro->serie = nullptr;
            mudou = true;
        }
        grupos = std::move(ficam);
        for (Grupo &g : grupos)
            situar(g);
    }
}

std::vector<Marcas::Grupo> Marcas::grupos() const {
    const QFontMetricsF letra(letraDoTexto());
    Agrupador agrupador(clipRect(), QSizeF(letra.horizontalAdvance(u'!') + 2, letra.ascent()));
    for (const PlotSerie *p : m_series)
        if (p->serie().Active && p->serie().estilo != TSerie::Estilo::Barra)
            recolher(*p, agrupador);
    for (Grupo &g : agrupador.grupos)
        situar(g);
    fundir(agrupador.grupos);
    return std::move(agrupador.grupos);
}

void Marcas::draw(QCPPainter *pintor) {
    for (const Grupo &g : grupos()) {
        QPainterPath texto;
        texto.addText(g.lugar.bottomLeft(), letraDoTexto(), g.texto);
        pintor->setAntialiasing(true);
        // On top of lines of its own colour it can only be read on a ground.
        pintor->setPen(Qt::NoPen);
        pintor->setBrush(m_tema.fundo);
        pintor->drawRoundedRect(g.lugar.adjusted(-1, 0, 1, 2), 3, 3);
        pintor->fillPath(texto, g.serie ? g.serie->corDaSerie() : m_tema.texto);
        if (g.quantas == 1)
            continue;
        // Small figures need more contrast than a colour may have.
        const double adiante = QFontMetricsF(letraDoTexto()).horizontalAdvance(g.texto) + 1;
        QPainterPath numero;
        numero.addText(g.lugar.bottomLeft() + QPointF(adiante, 0), letraDoNumero(), QString::number(g.quantas));
        pintor->fillPath(numero, m_tema.texto);
    }
}
