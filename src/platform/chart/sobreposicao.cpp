#include "platform/chart/sobreposicao.h"

#include "core/textoMostrado.h"

#include <QPainter>

namespace {

constexpr int margem = 8;
constexpr int distancia = 14;    // from the point
constexpr int larguraNota = 260; // then it is wrapped
constexpr qsizetype letrasDoTitulo = 200;
constexpr qsizetype letrasDaNota = 600;
constexpr qsizetype linhasDaNota = 12;

struct Linha {
    QString texto;
    QRect area; // from the box's corner
    bool forte;
};

struct Composicao {
    QList<Linha> linhas;
    QSize tamanho;
};

QFont forte(const QFont &fonte) {
    QFont f = fonte;
    f.setBold(true);
    return f;
}

Composicao compor(const Sobreposicao::Leitura &l, const QFont &fonte, int larguraMaxima) {
    Composicao c;
    int y = margem;
    int largura = 0;
    const int limite = std::clamp(larguraMaxima - 2 * margem, 40, larguraNota);
    const auto juntar = [&](const QString &texto, bool negrito, int antes) {
        if (texto.isEmpty())
            return;
        const QFontMetrics letra(negrito ? forte(fonte) : fonte);
        const QRect r = letra.boundingRect(QRect(0, 0, limite, 400), Qt::AlignLeft | Qt::TextWordWrap, texto);
        y += antes;
        c.linhas.append({texto, QRect(margem, y, std::min(r.width() + 1, limite), r.height()), negrito});
        y += r.height();
        largura = std::max(largura, c.linhas.constLast().area.width());
    };
    juntar(l.titulo, false, 0);
    juntar(l.valor, true, 1);
    juntar(l.instante, false, 1);
    juntar(l.nota, false, 6);
    c.tamanho = QSize(largura + 2 * margem, y + margem);
    return c;
}

} // namespace

Sobreposicao::Sobreposicao(QWidget *pai) : QWidget(pai) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_NoSystemBackground);
    setFocusPolicy(Qt::NoFocus);
}

void Sobreposicao::mostrarLeitura(const Leitura &leitura) {
    m_leitura = leitura;
    m_leitura.titulo = textoMostrado::linha(leitura.titulo, letrasDoTitulo);
    m_leitura.nota = textoMostrado::paragrafos(leitura.nota, letrasDaNota, linhasDaNota);
    m_comLeitura = true;
    update();
}

void Sobreposicao::esconderLeitura() {
    if (m_comLeitura)
        update();
    m_comLeitura = false;
}

void Sobreposicao::mostrarFaixa(const QRect &faixa, bool anula) {
    m_faixa = faixa;
    m_faixaAnula = anula;
    update();
}

void Sobreposicao::esconderFaixa() {
    if (!m_faixa.isNull())
        update();
    m_faixa = {};
}

void Sobreposicao::mostrarFoco(bool visivel) {
    m_foco = visivel;
    update();
}

QRect Sobreposicao::caixa() const {
    if (!m_comLeitura)
        return {};
    const QSize tamanho = compor(m_leitura, m_tema.fonte, width() - 4).tamanho;
    const QPoint p = m_leitura.ponto.toPoint();
    QPoint canto(p.x() + distancia, p.y() - distancia - tamanho.height());
    if (canto.x() + tamanho.width() > width() - 2)
        canto.setX(p.x() - distancia - tamanho.width());
    if (canto.y() < 2)
        canto.setY(p.y() + distancia);
    canto.setX(std::clamp(canto.x(), 2, std::max(2, width() - tamanho.width() - 2)));
    canto.setY(std::clamp(canto.y(), 2, std::max(2, height() - tamanho.height() - 2)));
    return {canto, tamanho};
}

void Sobreposicao::paintEvent(QPaintEvent *) {
    QPainter pintor(this);
    if (m_comLeitura)
        desenharLeitura(pintor);
    if (!m_faixa.isNull()) {
        QColor cor = m_faixaAnula ? m_tema.secundario : m_tema.realce;
        pintor.setPen(QPen(cor, 1, m_faixaAnula ? Qt::DashLine : Qt::SolidLine));
        cor.setAlpha(m_faixaAnula ? 0 : 40);
        pintor.setBrush(cor);
        pintor.drawRect(m_faixa.adjusted(0, 0, -1, -1));
    }
    if (m_foco) {
        pintor.setBrush(Qt::NoBrush);
        pintor.setPen(QPen(m_tema.realce, 2));
        pintor.drawRect(QRectF(rect()).adjusted(1, 1, -1, -1));
    }
}

void Sobreposicao::desenharLeitura(QPainter &pintor) const {
    const QPointF p = m_leitura.ponto;
    pintor.setRenderHint(QPainter::Antialiasing);
    if (m_area.adjusted(-1, -1, 1, 1).contains(p.toPoint())) {
        QColor fio = m_tema.secundario;
        fio.setAlpha(110);
        pintor.setPen(QPen(fio, 1));
        const double x = std::floor(p.x()) + 0.5;
        pintor.drawLine(QPointF(x, m_area.top()), QPointF(x, m_area.bottom() + 1));
        pintor.setPen(QPen(m_tema.fundo, 4));
        pintor.setBrush(Qt::NoBrush);
        pintor.drawEllipse(p, 5.5, 5.5);
        pintor.setPen(QPen(m_leitura.cor, 2));
        pintor.drawEllipse(p, 5.5, 5.5);
    }
    desenharCaixa(pintor);
}

void Sobreposicao::desenharCaixa(QPainter &pintor) const {
    const QRect area = caixa();
    const Composicao c = compor(m_leitura, m_tema.fonte, width() - 4);
    pintor.setPen(Qt::NoPen);
    pintor.setBrush(QColor(0, 0, 0, 30));
    pintor.drawRoundedRect(QRectF(area).translated(0, 1.5), 4, 4);
    pintor.setPen(QPen(m_tema.grelha, 1));
    pintor.setBrush(m_tema.caixa);
    pintor.drawRoundedRect(QRectF(area).adjusted(0.5, 0.5, -0.5, -0.5), 4, 4);
    pintor.setPen(Qt::NoPen);
    pintor.setBrush(m_leitura.cor);
    pintor.drawRoundedRect(QRectF(area.left() + 2.5, area.top() + 4, 3, area.height() - 8), 1.5, 1.5);
    for (const Linha &linha : c.linhas) {
        pintor.setFont(linha.forte ? forte(m_tema.fonte) : m_tema.fonte);
        pintor.setPen(m_tema.texto);
        pintor.drawText(linha.area.translated(area.topLeft()), Qt::AlignLeft | Qt::TextWordWrap, linha.texto);
    }
}
