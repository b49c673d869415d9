// Everything the mouse can do, by keys.
#include "platform/chart/interno.h"

#include <QKeyEvent>

namespace {

constexpr int salto = 10; // points
constexpr double porTecla = 1.6;
constexpr double parteDaVista = 0.1; // that one key pans or leaps over

bool eSeta(int tecla) {
    return tecla == Qt::Key_Left || tecla == Qt::Key_Right || tecla == Qt::Key_Up || tecla == Qt::Key_Down;
}

} // namespace

// Where the keys begin: at the point that is read, else in the middle of what is seen.
TChart::Interno::Alvo TChart::Interno::partida() const {
    for (size_t s = 0; s < plots.size(); ++s) {
        const PlotSerie &plot = *plots[s];
        if (!series[s]->Active || plot.lugares() == 0)
            continue;
        const qsizetype meio = std::min(plot.lugarDe(quadro->xAxis->range().center()), plot.lugares() - 1);
        for (qsizetype d = 0; d < plot.lugares(); ++d)
            for (qsizetype k : {meio - d, meio + d})
                if (k >= 0 && k < plot.lugares())
                    if (const Alvo a{int(s), plot.indiceDe(k)}; valido(a))
                        return a;
    }
    return {};
}

void TChart::Interno::irPara(const Alvo &a) {
    const TSerie &s = *series[size_t(a.serie)];
    const auto trazer = [](const QCPRange &r, double v) {
        if (r.contains(v))
            return r;
        return QCPRange(v - r.size() / 2, v + r.size() / 2);
    };
    definirVista(trazer(quadro->xAxis->range(), s.XValue(a.indice)),
                 trazer(quadro->yAxis->range(), s.YValue(a.indice)));
    apontar(a);
}

bool TChart::Interno::mover(int tecla, Qt::KeyboardModifiers modos) {
    if (!valido(alvo)) {
        const Alvo primeiro = partida();
        if (!valido(primeiro))
            return false;
        irPara(primeiro);
        if (tecla != Qt::Key_Home && tecla != Qt::Key_End)
            return true;
    }
    const PlotSerie &plot = *plots[size_t(alvo.serie)];
    const TSerie &s = plot.serie();
    const qsizetype n = plot.lugares();
    const auto &indices = s.ordem();
    const qsizetype aqui = indices ? indices->indexOf(quint32(alvo.indice)) : alvo.indice;
    const bool frente = tecla == Qt::Key_Right || tecla == Qt::Key_PageDown || tecla == Qt::Key_Home;
    qsizetype alvoNovo = aqui;
    if (tecla == Qt::Key_Home || tecla == Qt::Key_End) {
        alvoNovo = tecla == Qt::Key_Home ? 0 : n - 1;
    } else if (tecla == Qt::Key_PageUp || tecla == Qt::Key_PageDown) {
        const double x = s.XValue(alvo.indice) + (frente ? 1 : -1) * parteDaVista * quadro->xAxis->range().size();
        alvoNovo = frente ? std::max(plot.lugarDe(x), aqui + 1) : std::min(plot.lugarDe(x), aqui - 1);
    } else {
        const int quantos = modos & (Qt::ShiftModifier | Qt::ControlModifier) ? salto : 1;
        alvoNovo = aqui + (frente ? quantos : -quantos);
    }
    alvoNovo = std::clamp<qsizetype>(alvoNovo, 0, n - 1);
    // Over what has no value, in the direction of the move; End looks backwards.
    while (alvoNovo >= 0 && alvoNovo < n && !valido({alvo.serie, plot.indiceDe(alvoNovo)}))
        alvoNovo += frente ? 1 : -1;
    if (alvoNovo >= 0 && alvoNovo < n)
        irPara({alvo.serie, plot.indiceDe(alvoNovo)});
    return true;
}

// To the point of the next series that lies nearest in time.
bool TChart::Interno::mudarDeSerie(int passo) {
    if (!valido(alvo))
        return mover(Qt::Key_Right, {});
    const double x = series[size_t(alvo.serie)]->XValue(alvo.indice);
    const int n = int(series.size());
    for (int k = 1; k < n; ++k) {
        const int s = ((alvo.serie + passo * k) % n + n) % n;
        const PlotSerie &plot = *plots[size_t(s)];
        if (!series[size_t(s)]->Active)
            continue;
        const qsizetype meio = plot.lugarDe(x);
        for (qsizetype d = 0; d <= plot.lugares(); ++d) {
            Alvo melhor;
            for (qsizetype lugar : {meio - 1 - d, meio + d}) {
                if (lugar < 0 || lugar >= plot.lugares())
                    continue;
                const Alvo a{s, plot.indiceDe(lugar)};
                const auto distancia = [&](const Alvo &b) {
                    return std::fabs(series[size_t(s)]->XValue(b.indice) - x);
                };
                if (valido(a) && (melhor.serie < 0 || distancia(a) < distancia(melhor)))
                    melhor = a;
            }
            if (melhor.serie >= 0) {
                irPara(melhor);
                return true;
            }
        }
    }
    return true;
}

bool TChart::Interno::deslocarPorTecla(int tecla) {
    const QCPRange x = quadro->xAxis->range();
    const QCPRange y = quadro->yAxis->range();
    const double dx = tecla == Qt::Key_Left ? -1 : tecla == Qt::Key_Right ? 1 : 0;
    const double dy = tecla == Qt::Key_Down ? -1 : tecla == Qt::Key_Up ? 1 : 0;
    definirVista({x.lower + dx * parteDaVista * x.size(), x.upper + dx * parteDaVista * x.size()},
                 {y.lower + dy * parteDaVista * y.size(), y.upper + dy * parteDaVista * y.size()});
    return true;
}

void TChart::keyPressEvent(QKeyEvent *evento) {
    const int tecla = evento->key();
    const Qt::KeyboardModifiers modos = evento->modifiers() & ~Qt::KeypadModifier;
    m->quadro->dispor();
    bool feito = false;
    if (eSeta(tecla) && modos.testFlag(Qt::ControlModifier) && m->comZoom) {
        feito = m->deslocarPorTecla(tecla);
    } else if (tecla == Qt::Key_Left || tecla == Qt::Key_Right || tecla == Qt::Key_Home || tecla == Qt::Key_End ||
               tecla == Qt::Key_PageUp || tecla == Qt::Key_PageDown) {
        feito = m->mover(tecla, modos);
    } else if (tecla == Qt::Key_Up || tecla == Qt::Key_Down) {
        feito = m->mudarDeSerie(tecla == Qt::Key_Down ? 1 : -1);
    } else if (tecla == Qt::Key_Escape && m->gesto.botao != Qt::NoButton) {
        m->gesto = {};
        m->sobre->esconderFaixa();
        unsetCursor();
        feito = true;
    } else if (tecla == Qt::Key_Escape && m->comZoom) {
        anularZoom();
        feito = true;
    } else if ((tecla == Qt::Key_Plus || tecla == Qt::Key_Minus || tecla == Qt::Key_Equal) && m->zoomPermitido) {
        const QRect area = m->area();
        const bool alvoVisivel = m->valido(m->alvo);
        const QPointF centro =
            alvoVisivel ? m->plots[size_t(m->alvo.serie)]->posicao(m->alvo.indice) : QPointF(area.center());
        m->ampliar(centro, tecla == Qt::Key_Minus ? porTecla : 1 / porTecla, 1);
        feito = true;
    } else if ((tecla == Qt::Key_Return || tecla == Qt::Key_Enter || tecla == Qt::Key_Space) && m->valido(m->alvo)) {
        const Interno::Alvo a = m->alvo;
        const QPoint onde = m->plots[size_t(a.serie)]->posicao(a.indice).toPoint();
        Q_EMIT OnClickSeries(a.serie, int(a.indice), Qt::LeftButton, evento->modifiers(), onde);
        return;
    }
    if (!feito)
        QWidget::keyPressEvent(evento);
}

void TChart::focusInEvent(QFocusEvent *evento) {
    m->sobre->mostrarFoco(true);
    QWidget::focusInEvent(evento);
}

void TChart::focusOutEvent(QFocusEvent *evento) {
    m->sobre->mostrarFoco(false);
    QWidget::focusOutEvent(evento);
}
