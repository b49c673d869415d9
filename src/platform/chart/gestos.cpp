// Mouse and wheel.
#include "platform/chart/interno.h"

#include <QMouseEvent>
#include <QWheelEvent>

namespace {

constexpr int limiarDeArrasto = 4;   // pixels
constexpr double raioDaLeitura = 28; // round the pointer
constexpr double porEntalhe = 1.25;  // zoom of one notch of the wheel

bool longe(QPoint a, QPoint b) {
    return std::max(std::abs(a.x() - b.x()), std::abs(a.y() - b.y())) >= limiarDeArrasto;
}

// Dragging back means back to the whole picture.
bool paraTras(QPoint inicio, QPoint fim) {
    const QPoint d = fim - inicio;
    return std::abs(d.x()) >= limiarDeArrasto ? d.x() < 0 : d.y() < 0;
}

QPoint presoA(QPoint p, const QRect &r) {
    return {std::clamp(p.x(), r.left(), r.right()), std::clamp(p.y(), r.top(), r.bottom())};
}

QCPRange deslocado(const QCPRange &r, double quanto) {
    return {r.lower + quanto, r.upper + quanto};
}

} // namespace

void TChart::mousePressEvent(QMouseEvent *evento) {
    evento->accept();
    if (m->gesto.botao != Qt::NoButton)
        return;
    m->quadro->dispor();
    m->gesto = {evento->button(), evento->pos(), false, m->quadro->xAxis->range(), m->quadro->yAxis->range()};
}

void TChart::mouseMoveEvent(QMouseEvent *evento) {
    Interno::Gesto &g = m->gesto;
    const QPoint agora = evento->pos();
    if (g.botao == Qt::NoButton || !(evento->buttons() & g.botao)) {
        if (g.botao != Qt::NoButton) { // the release went elsewhere
            g = {};
            m->sobre->esconderFaixa();
            unsetCursor();
        }
        m->quadro->dispor();
        m->apontar(m->procurar(evento->position(), raioDaLeitura));
        return;
    }
    if (!g.arrasto && !longe(agora, g.inicio))
        return;
    if (!g.arrasto)
        m->apontar({});
    g.arrasto = true;
    if (g.botao == Qt::LeftButton) {
        if (m->zoomPermitido)
            m->sobre->mostrarFaixa(QRect(presoA(g.inicio, m->area()), presoA(agora, m->area())).normalized(),
                                   paraTras(g.inicio, agora));
        return;
    }
    setCursor(Qt::ClosedHandCursor);
    const QRect area = m->area();
    const QPointF d = agora - g.inicio;
    m->definirVista(deslocado(g.x, -d.x() / area.width() * g.x.size()),
                    deslocado(g.y, d.y() / area.height() * g.y.size()));
}

void TChart::mouseReleaseEvent(QMouseEvent *evento) {
    if (evento->button() != m->gesto.botao)
        return;
    const Interno::Gesto g = m->gesto;
    m->gesto = {};
    m->sobre->esconderFaixa();
    unsetCursor();
    if (!g.arrasto) {
        const auto [serie, indice] = pontoMaisProximo(evento->position());
        if (serie >= 0)
            Q_EMIT OnClickSeries(serie, indice, g.botao, evento->modifiers(), evento->pos());
        return;
    }
    if (g.botao != Qt::LeftButton || !m->zoomPermitido)
        return;
    if (paraTras(g.inicio, evento->pos()))
        anularZoom();
    else
        m->ampliarPara(QRect(presoA(g.inicio, m->area()), presoA(evento->pos(), m->area())).normalized());
}

// Its release is no click of its own: no gesture has begun.
void TChart::mouseDoubleClickEvent(QMouseEvent *evento) {
    evento->accept();
    m->gesto = {};
    if (evento->button() == Qt::LeftButton && m->zoomPermitido)
        anularZoom();
}

void TChart::wheelEvent(QWheelEvent *evento) {
    const QPoint angulo = evento->angleDelta();
    const int passos = angulo.y() != 0 ? angulo.y() : angulo.x();
    if (!m->zoomPermitido || passos == 0) {
        evento->ignore();
        return;
    }
    evento->accept();
    m->quadro->dispor();
    const double factor = std::pow(porEntalhe, -passos / 120.0);
    const QPoint onde = evento->position().toPoint();
    // Over the numbers of the left axis the wheel means that axis.
    const bool vertical = evento->modifiers().testFlag(Qt::ShiftModifier) || onde.x() < m->area().left();
    m->ampliar(presoA(onde, m->area()), vertical ? 1 : factor, vertical ? factor : 1);
    if (m->gesto.botao == Qt::NoButton)
        m->apontar(m->procurar(evento->position(), raioDaLeitura));
}

void TChart::leaveEvent(QEvent *evento) {
    if (m->gesto.botao == Qt::NoButton)
        m->apontar({});
    QWidget::leaveEvent(evento);
}
