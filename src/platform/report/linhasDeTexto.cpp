#include "platform/report/linhasDeTexto.h"

#include <QFontMetricsF>
#include <QTextLayout>

namespace {

constexpr qsizetype tamanhoDoPedaco = 1024;

} // namespace

LinhasDeTexto::LinhasDeTexto(const QString &texto, const QFont &fonte, double largura, qsizetype inicio)
    : m_texto(texto), m_fonte(fonte), m_largura(largura), m_lido(inicio) {}

bool LinhasDeTexto::seguinte(Linha &linha) {
    if (m_prontas.isEmpty() && m_lido < m_texto.size())
        disporPedaco();
    if (m_prontas.isEmpty())
        return false;
    linha = m_prontas.dequeue();
    return true;
}

// A piece that does not reach the end of its paragraph leaves its last line, which may be too short, to the next.
void LinhasDeTexto::disporPedaco() {
    qsizetype fim = m_texto.indexOf(u'\n', m_lido);
    if (fim < 0)
        fim = m_texto.size();
    const bool ultimo = fim - m_lido <= tamanhoDoPedaco;
    const qsizetype tamanho = ultimo ? fim - m_lido : tamanhoDoPedaco;
    QTextLayout disposicao(m_texto.mid(m_lido, tamanho), m_fonte);
    QTextOption opcao(Qt::AlignLeft | Qt::AlignTop);
    opcao.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    disposicao.setTextOption(opcao);
    disposicao.beginLayout();
    for (QTextLine l = disposicao.createLine(); l.isValid(); l = disposicao.createLine()) {
        l.setLineWidth(m_largura);
        m_prontas.enqueue({m_lido + l.textStart(), l.textLength(), l.height()});
    }
    disposicao.endLayout();
    if (m_prontas.isEmpty()) // an empty paragraph
        m_prontas.enqueue({m_lido, 0, QFontMetricsF(m_fonte).height()});
    if (!ultimo && m_prontas.size() > 1)
        m_prontas.removeLast();
    m_lido = ultimo ? fim + 1 : m_prontas.last().inicio + m_prontas.last().tamanho;
}
