// Zoom, pointer and keyboard of the chart.
#include "platform/chart/TChart_interno.h"

#include "core/datas.h"
#include "core/literais.h"
#include "core/modDoubleTratamento.h"

#include <QMouseEvent>

#include <cmath>

namespace {

constexpr int arrastoMinimo = 4;
constexpr double alcanceDoPonteiro = 40;
constexpr double passoDaRoda = 0.85;
constexpr double passoDaTecla = 0.7;
constexpr double parteDeslocada = 0.1;
constexpr qsizetype maximoDeVizinhos = 200'000;
constexpr double menorZona = 5; // seconds or a few bars

} // namespace

void TChart::Interno::verZona(QCPRange x, QCPRange y) {
    if (x.size() < (comBarras() ? 1 : menorZona) || !(y.size() > 1e-9))
        return;
    // The whole picture is as far as one can go.
    const QCPRange todoX = vistaX();
    const QCPRange todoY = vistaY();
    x = x.bounded(todoX.lower, todoX.upper);
    y = y.bounded(todoY.lower, todoY.upper);
    plot->xAxis->setRange(x);
    plot->yAxis->setRange(y);
    leitor->esconder();
    rodarRotulos();
    repintar();
    const bool tudo = x.size() >= todoX.size() * 0.999999 && y.size() >= todoY.size() * 0.999999;
    if (tudo && comZoom) {
        comZoom = false;
        Q_EMIT q->OnUndoZoom();
    } else if (!tudo) {
        comZoom = true;
        Q_EMIT q->OnZoom();
    }
}

void TChart::Interno::verTudo() {
    const bool havia = std::exchange(comZoom, false);
    plot->xAxis->setRange(vistaX());
    plot->yAxis->setRange(vistaY());
    leitor->esconder();
    rodarRotulos();
    repintar();
    if (havia)
        Q_EMIT q->OnUndoZoom();
}

void TChart::Interno::ampliar(double factor, const QPointF &centro, bool eixoX, bool eixoY) {
    const auto zona = [factor](const QCPRange &r, double c) {
        return QCPRange(c - (c - r.lower) * factor, c + (r.upper - c) * factor);
    };
    const QCPRange x = plot->xAxis->range();
    const QCPRange y = plot->yAxis->range();
    verZona(eixoX ? zona(x, plot->xAxis->pixelToCoord(centro.x())) : x,
            eixoY ? zona(y, plot->yAxis->pixelToCoord(centro.y())) : y);
}

void TChart::Interno::deslocar(double partesX, double partesY) {
    if (!comZoom)
        return;
    verZona(plot->xAxis->range() + plot->xAxis->range().size() * partesX,
            plot->yAxis->range() + plot->yAxis->range().size() * partesY);
}

bool TChart::Interno::rato(QEvent *evento) {
    switch (evento->type()) {
    case QEvent::MouseButtonPress:
        premir(static_cast<QMouseEvent *>(evento));
        return true;
    case QEvent::MouseMove:
        mover(static_cast<QMouseEvent *>(evento));
        return true;
    case QEvent::MouseButtonRelease:
        largar(static_cast<QMouseEvent *>(evento));
        return true;
    case QEvent::MouseButtonDblClick:
        verTudo();
        return true;
    case QEvent::Wheel:
        roda(static_cast<QWheelEvent *>(evento));
        return true;
    case QEvent::Leave:
        leitor->esconder();
        return false;
    default:
        return false;
    }
}

void TChart::Interno::premir(QMouseEvent *e) {
    q->setFocus(Qt::MouseFocusReason);
    inicioArrasto = e->pos();
    xNoInicio = plot->xAxis->range();
    yNoInicio = plot->yAxis->range();
    arrasto = e->button() == Qt::LeftButton ? Arrasto::Zoom : Arrasto::Mover;
}

void TChart::Interno::mover(QMouseEvent *e) {
    const QPoint d = e->pos() - inicioArrasto;
    if (arrasto == Arrasto::Nenhum) {
        apontar(e->position());
        return;
    }
    if (d.manhattanLength() < arrastoMinimo)
        return;
    leitor->esconder();
    if (arrasto == Arrasto::Zoom && zoomPermitido) {
        elastico->setGeometry(QRect(inicioArrasto, e->pos()).normalized().intersected(plot->axisRect()->rect()));
        elastico->show();
    } else if (arrasto == Arrasto::Mover && comZoom) {
        const double porX = xNoInicio.size() / std::max(1, plot->axisRect()->width());
        const double porY = yNoInicio.size() / std::max(1, plot->axisRect()->height());
        verZona(xNoInicio - d.x() * porX, yNoInicio + d.y() * porY);
    }
}

void TChart::Interno::largar(QMouseEvent *e) {
    const Arrasto era = std::exchange(arrasto, Arrasto::Nenhum);
    elastico->hide();
    const QPoint d = e->pos() - inicioArrasto;
    if (era == Arrasto::Nenhum)
        return;
    if (d.manhattanLength() < arrastoMinimo) {
        clicar(e);
        return;
    }
    if (era != Arrasto::Zoom || !zoomPermitido)
        return;
    // To the lower right zooms in, back to the upper left shows everything again.
    if (d.x() < 0 || d.y() < 0) {
        verTudo();
        return;
    }
    if (d.x() < arrastoMinimo || d.y() < arrastoMinimo)
        return;
    const QRect zona = QRect(inicioArrasto, e->pos()).intersected(plot->axisRect()->rect());
    verZona(QCPRange(plot->xAxis->pixelToCoord(zona.left()), plot->xAxis->pixelToCoord(zona.right())),
            QCPRange(plot->yAxis->pixelToCoord(zona.bottom()), plot->yAxis->pixelToCoord(zona.top())));
}

void TChart::Interno::clicar(QMouseEvent *e) {
    const auto [serie, indice] = q->pontoMaisProximo(e->position());
    if (serie >= 0)
        Q_EMIT q->OnClickSeries(serie, indice, e->button(), e->modifiers(), e->pos());
}

void TChart::Interno::roda(QWheelEvent *e) {
    const double passos = e->angleDelta().y() != 0 ? e->angleDelta().y() / 120.0 : e->angleDelta().x() / 120.0;
    const bool soY = e->modifiers() & Qt::ShiftModifier;
    if (passos != 0 && plot->axisRect()->rect().contains(e->position().toPoint()))
        ampliar(std::pow(passoDaRoda, passos), e->position(), !soY, soY);
    e->accept();
}

// The nearest point by distance on the screen. Ordered series are searched round the pointer only.
std::pair<int, int> TChart::Interno::proximo(const QPointF &posicao, double alcance) const {
    std::pair<int, int> melhor{-1, -1};
    double menor = alcance * alcance;
    const double de = plot->xAxis->pixelToCoord(posicao.x() - alcance);
    const double ate = plot->xAxis->pixelToCoord(posicao.x() + alcance);
    for (size_t s = 0; s < series.size(); ++s) {
        const TSerie &serie = *series[s].serie;
        if (!serie.Active || serie.Count() == 0)
            continue;
        if (serie.estilo == TSerie::Estilo::Barra) {
            const auto i = qsizetype(std::lround(plot->xAxis->pixelToCoord(posicao.x())));
            if (i >= 0 && i < serie.Count() && plot->axisRect()->rect().contains(posicao.toPoint()) &&
                posicao.y() >= pixelDe(int(s), int(i)).y() - alcance)
                return {int(s), int(i)};
            continue;
        }
        qsizetype i = 0;
        qsizetype fim = serie.Count();
        if (series[s].plot->ordenada())
            std::tie(i, fim) = series[s].plot->indices(de, ate);
        const qsizetype passo = std::max<qsizetype>(1, (fim - i) / maximoDeVizinhos);
        for (; i < fim; i += passo) {
            const QPointF p = pixelDe(int(s), int(i)) - posicao;
            const double d = p.x() * p.x() + p.y() * p.y();
            if (d < menor) {
                menor = d;
                melhor = {int(s), int(i)};
            }
        }
    }
    return melhor;
}

QPointF TChart::Interno::pixelDe(int serie, int indice) const {
    const TSerie &s = *series[size_t(serie)].serie;
    return {plot->xAxis->coordToPixel(s.XValue(indice)), plot->yAxis->coordToPixel(s.YValue(indice))};
}

void TChart::Interno::apontar(const QPointF &posicao) {
    const auto [serie, indice] = proximo(posicao, alcanceDoPonteiro);
    if (serie < 0) {
        leitor->esconder();
        return;
    }
    cursorSerie = serie;
    cursorIndice = indice;
    lerPonto(serie, indice);
}

void TChart::Interno::lerPonto(int serie, int indice) {
    const TSerie &s = *series[size_t(serie)].serie;
    const QString valor = modDoubleTratamento::NumeroParaTexto(s.YValue(indice));
    QString texto;
    if (s.estilo == TSerie::Estilo::Barra) {
        texto = s.PointLabel(indice) + u'\n' + valor;
    } else {
        texto = s.Title + u'\n' + datas::textoDataHora(datas::instanteDe(s.XValue(indice))) + u'\n' + valor + unidade;
        if (nota && TSerie::eMarca(s.PointLabel(indice))) {
            if (notaPedida != std::pair(serie, indice)) {
                notaPedida = {serie, indice};
                ultimaNota = nota(serie, indice);
            }
            if (!ultimaNota.isEmpty())
                texto += u'\n' + ultimaNota;
        }
    }
    const QColor cor = TemaGrafico::doEcra(q->palette()).visivel(corOLE(s.PointColor(indice)));
    leitor->mostrar(pixelDe(serie, indice), texto, cor, plot->axisRect()->rect());
    q->setAccessibleDescription(texto);
}

bool TChart::Interno::tecla(QKeyEvent *e) {
    const bool ctrl = e->modifiers() & Qt::ControlModifier;
    const QPointF centro = leitor->texto().isEmpty() || cursorSerie < 0 ? QPointF(plot->axisRect()->center())
                                                                        : pixelDe(cursorSerie, cursorIndice);
    switch (e->key()) {
    case Qt::Key_Left:
    case Qt::Key_Right: {
        const int sentido = e->key() == Qt::Key_Right ? 1 : -1;
        if (ctrl)
            deslocar(sentido * parteDeslocada, 0);
        else
            moverCursor(sentido * (e->modifiers() & Qt::ShiftModifier ? 10 : 1));
        return true;
    }
    case Qt::Key_Up:
    case Qt::Key_Down: {
        const int sentido = e->key() == Qt::Key_Up ? 1 : -1;
        if (ctrl)
            deslocar(0, sentido * parteDeslocada);
        else
            mudarSerie(-sentido);
        return true;
    }
    case Qt::Key_Home:
    case Qt::Key_End:
        moverCursor(e->key() == Qt::Key_End ? std::numeric_limits<int>::max() / 2
                                            : std::numeric_limits<int>::min() / 2);
        return true;
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        ampliar(passoDaTecla, centro, true, e->modifiers() & Qt::AltModifier);
        return true;
    case Qt::Key_Minus:
        ampliar(1 / passoDaTecla, centro, true, true);
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        if (cursorSerie >= 0 && !leitor->texto().isEmpty())
            Q_EMIT q->OnClickSeries(cursorSerie, cursorIndice, Qt::LeftButton, e->modifiers(),
                                    pixelDe(cursorSerie, cursorIndice).toPoint());
        return true;
    case Qt::Key_Escape:
        if (!comZoom)
            return false;
        verTudo();
        return true;
    default:
        return false;
    }
}

// Along the current series, over its gaps; the view follows when it is zoomed.
void TChart::Interno::moverCursor(int passos) {
    if (cursorSerie < 0 || size_t(cursorSerie) >= series.size() || !series[size_t(cursorSerie)].serie->Active) {
        mudarSerie(1);
        return;
    }
    const TSerie &s = *series[size_t(cursorSerie)].serie;
    const int sentido = passos < 0 ? -1 : 1;
    const qint64 alvo = std::clamp<qint64>(qint64(cursorIndice) + passos, 0, s.Count() - 1);
    int i = int(alvo);
    while (i >= 0 && i < s.Count() && std::isnan(s.YValue(i)))
        i += sentido;
    if (i >= 0 && i < s.Count())
        cursorEm(cursorSerie, i);
}

void TChart::Interno::mudarSerie(int sentido) {
    const int total = int(series.size());
    const double x =
        cursorSerie >= 0 && cursorSerie < total && cursorIndice < series[size_t(cursorSerie)].serie->Count()
            ? series[size_t(cursorSerie)].serie->XValue(cursorIndice)
            : plot->xAxis->range().center();
    const int primeira = cursorSerie < 0 ? (sentido > 0 ? -1 : total) : cursorSerie;
    for (int n = 1; n <= total; ++n) {
        const int s = ((primeira + n * sentido) % total + total) % total;
        const TSerie &serie = *series[size_t(s)].serie;
        if (!serie.Active || serie.Count() == 0)
            continue;
        const auto [i, fim] = series[size_t(s)].plot->indices(x, x);
        cursorSerie = s;
        cursorIndice = int(std::min(i, serie.Count() - 1));
        moverCursor(0);
        return;
    }
}

void TChart::Interno::cursorEm(int serie, int indice) {
    cursorSerie = serie;
    cursorIndice = indice;
    const double x = series[size_t(serie)].serie->XValue(indice);
    const QCPRange vista = plot->xAxis->range();
    if (!vista.contains(x))
        verZona(QCPRange(x - vista.size() / 2, x + vista.size() / 2), plot->yAxis->range());
    lerPonto(serie, indice);
}
