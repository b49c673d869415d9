// What of the model is seen: the whole picture, the zoom, the marks of the axes, the theme.
#include "core/datas.h"
#include "core/literais.h"
#include "platform/chart/interno.h"

#include <cmath>

namespace {

constexpr double meiaHora = 1800;
constexpr double margemDosLados = 0.005; // of the whole picture

bool usavel(const TEixo &eixo) {
    return !eixo.Automatic && std::isfinite(eixo.Minimum) && std::isfinite(eixo.Maximum) && eixo.Maximum > eixo.Minimum;
}

QCPRange juntar(const QCPRange &a, const QCPRange &b) {
    return {std::min(a.lower, b.lower), std::max(a.upper, b.upper)};
}

// Not larger than the limits, not smaller than what can be told apart, and inside.
QCPRange dentro(QCPRange r, const QCPRange &limite, double menor) {
    if (r.size() < menor) {
        const double centro = r.center();
        r = QCPRange(centro - menor / 2, centro + menor / 2);
    }
    if (r.size() >= limite.size())
        return limite;
    if (r.lower < limite.lower)
        r = QCPRange(limite.lower, limite.lower + r.size());
    if (r.upper > limite.upper)
        r = QCPRange(limite.upper - r.size(), limite.upper);
    return r;
}

bool iguais(const QCPRange &a, const QCPRange &b) {
    const double folga = 1e-9 * std::max(a.size(), b.size());
    return std::fabs(a.lower - b.lower) <= folga && std::fabs(a.upper - b.upper) <= folga;
}

QCPRange escalado(const QCPRange &r, double centro, double factor) {
    return {centro + (r.lower - centro) * factor, centro + (r.upper - centro) * factor};
}

} // namespace

void TChart::Interno::vestir() {
    tema = Tema::doEcra(q->palette(), q->font());
    quadro->vestir(tema);
    sobre->vestir(tema);
    quadro->pedir();
    sobre->update();
}

bool TChart::Interno::temBarras() const {
    return std::any_of(series.begin(), series.end(),
                       [](const auto &s) { return s->Active && s->estilo == TSerie::Estilo::Barra; });
}

bool TChart::Interno::temDados() const {
    return std::any_of(series.begin(), series.end(),
                       [](const auto &s) { return s->Active && s->menorX() <= s->maiorX(); });
}

void TChart::Interno::calcularLimites() {
    const bool barras = temBarras();
    QCPRange dadosX(q->MinXValue(), q->MaxXValue());
    if (barras)
        dadosX = QCPRange(dadosX.lower - 0.6, dadosX.upper + 0.6);
    else if (!(dadosX.size() > 0))
        dadosX = QCPRange(dadosX.lower - meiaHora, dadosX.lower + meiaHora);
    todoX = usavel(baixo) && !barras ? QCPRange(baixo.Minimum, baixo.Maximum) : dadosX;
    if (!barras) { // the first and the last reading stand clear of the frame
        const double margem = todoX.size() * margemDosLados;
        todoX = QCPRange(todoX.lower - margem, todoX.upper + margem);
    }

    QCPRange dadosY(q->MinYValue(), q->MaxYValue());
    if (barras)
        dadosY = QCPRange(std::min(0.0, dadosY.lower * 1.08), std::max(0.0, dadosY.upper * 1.08));
    else
        dadosY = QCPRange(dadosY.lower - dadosY.size() * 0.05, dadosY.upper + dadosY.size() * 0.05);
    if (!(dadosY.size() > 0))
        dadosY = QCPRange(dadosY.lower - 1, dadosY.lower + 1);
    todoY = usavel(esquerdo) ? QCPRange(esquerdo.Minimum, esquerdo.Maximum) : dadosY;
    limiteX = temDados() ? juntar(todoX, dadosX) : todoX;
    limiteY = temDados() ? juntar(todoY, dadosY) : todoY;
}

void TChart::Interno::definirVista(QCPRange x, QCPRange y) {
    const double menorX = temBarras() ? 1 : std::min(2.0, limiteX.size());
    x = dentro(x, limiteX, menorX);
    y = dentro(y, limiteY, limiteY.size() * 1e-6);
    const bool antes = comZoom;
    comZoom = !iguais(x, todoX) || !iguais(y, todoY);
    quadro->xAxis->setRange(comZoom ? x : todoX);
    quadro->yAxis->setRange(comZoom ? y : todoY);
    quadro->pedir();
    if (valido(alvo))
        mostrarLeitura();
    if (comZoom && !antes)
        Q_EMIT q->OnZoom();
    else if (!comZoom && antes)
        Q_EMIT q->OnUndoZoom();
}

// About a place that keeps where it is; never out beyond the whole picture.
void TChart::Interno::ampliar(const QPointF &centro, double factorX, double factorY) {
    const auto novo = [](QCPAxis *eixo, double pixel, double factor, const QCPRange &todo) {
        const QCPRange r = escalado(eixo->range(), eixo->pixelToCoord(pixel), factor);
        if (factor <= 1)
            return r;
        return r.size() >= todo.size() * (1 - 1e-9) ? todo : dentro(r, todo, 0);
    };
    definirVista(novo(quadro->xAxis, centro.x(), factorX, todoX), novo(quadro->yAxis, centro.y(), factorY, todoY));
}

void TChart::Interno::ampliarPara(const QRect &faixa) {
    constexpr int plana = 6; // a flat band means one axis only
    const QCPRange x(quadro->xAxis->pixelToCoord(faixa.left()), quadro->xAxis->pixelToCoord(faixa.right()));
    const QCPRange y(quadro->yAxis->pixelToCoord(faixa.bottom()), quadro->yAxis->pixelToCoord(faixa.top()));
    definirVista(faixa.width() < plana ? quadro->xAxis->range() : x,
                 faixa.height() < plana ? quadro->yAxis->range() : y);
}

Graduacao TChart::Interno::graduarBaixo(double minimo, double maximo, double comprimento) const {
    const QFontMetricsF letra(quadro->xAxis->tickLabelFont());
    if (!temBarras())
        return graduarTempo(minimo, maximo, comprimento, letra, baixo.Increment);
    QVector<QString> textos;
    for (const auto &s : series) {
        if (!s->Active || s->estilo != TSerie::Estilo::Barra)
            continue;
        for (qsizetype i = 0; i < s->Count(); ++i)
            textos.append(s->PointLabel(i));
        break;
    }
    return graduarBarras(minimo, maximo, comprimento, letra, textos);
}

Graduacao TChart::Interno::graduarEsquerdo(double minimo, double maximo, double comprimento) const {
    const QFontMetricsF letra(quadro->yAxis->tickLabelFont());
    return graduarValores(minimo, maximo, comprimento, letra, esquerdo.Increment, esquerdo.SoInteiros);
}

void TChart::Interno::desenhar(QCPPainter *pintor, QSize tamanho) {
    const Tema ecra = tema;
    const QRect janela = quadro->viewport();
    tema = Tema::doPapel(q->font());
    quadro->vestir(tema);
    quadro->toPainter(pintor, tamanho.width(), tamanho.height());
    tema = ecra;
    quadro->vestir(tema);
    quadro->setViewport(janela);
    quadro->pedir(); // the layout is that of the other size now
}
