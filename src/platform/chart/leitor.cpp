#include "platform/chart/leitor.h"

#include <QPainter>

#include <algorithm>

namespace {
constexpr int folga = 6;
constexpr int afastamento = 12;
constexpr int larguraMaxima = 360;
} // namespace

LeitorDePonto::LeitorDePonto(QWidget *pai) : QWidget(pai), m_tema(TemaGrafico::doEcra(palette())) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_NoSystemBackground);
}

void LeitorDePonto::mostrar(const QPointF &ponto, const QString &texto, const QColor &cor, const QRect &area) {
    m_ponto = ponto;
    m_texto = texto;
    m_cor = cor;
    m_area = area;
    update();
}

void LeitorDePonto::esconder() {
    if (m_texto.isEmpty())
        return;
    m_texto.clear();
    update();
}

void LeitorDePonto::setTema(const TemaGrafico &tema) {
    m_tema = tema;
    update();
}

void LeitorDePonto::setFoco(bool foco) {
    m_foco = foco;
    update();
}

void LeitorDePonto::paintEvent(QPaintEvent *) {
    QPainter pintor(this);
    if (m_foco) {
        QColor c = m_tema.destaque;
        c.setAlpha(150);
        pintor.setPen(QPen(c, 2));
        pintor.drawRect(rect().adjusted(1, 1, -1, -1));
    }
    if (m_texto.isEmpty())
        return;
    pintor.setRenderHint(QPainter::Antialiasing);
    pintor.setPen(QPen(m_tema.texto, 1.5));
    pintor.setBrush(m_cor);
    pintor.drawEllipse(m_ponto, 4.5, 4.5);

    const QRect textoLivre =
        pintor.fontMetrics().boundingRect(QRect(0, 0, larguraMaxima, 4000), Qt::AlignLeft | Qt::TextWordWrap, m_texto);
    QRectF caixa(m_ponto + QPointF(afastamento, -afastamento - textoLivre.height() - 2 * folga),
                 QSizeF(textoLivre.width() + 2 * folga + 2, textoLivre.height() + 2 * folga));
    if (caixa.right() > m_area.right())
        caixa.moveRight(m_ponto.x() - afastamento);
    if (caixa.top() < m_area.top())
        caixa.moveTop(m_ponto.y() + afastamento);
    caixa.moveLeft(std::clamp(caixa.left(), 0.0, std::max(0.0, width() - caixa.width())));
    caixa.moveTop(std::clamp(caixa.top(), 0.0, std::max(0.0, height() - caixa.height())));
    QColor papel = m_tema.fundo;
    papel.setAlpha(240);
    pintor.setPen(QPen(m_tema.eixo, 1));
    pintor.setBrush(papel);
    pintor.drawRoundedRect(caixa, 4, 4);
    pintor.setPen(m_tema.texto);
    pintor.drawText(caixa.adjusted(folga, folga, -folga, -folga), Qt::AlignLeft | Qt::TextWordWrap, m_texto);
}
