#include "views/forms/formVista.h"

#include "core/literais.h"
#include "core/modTraducoes.h"
#include "views/forms/painelVista.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

constexpr int larguraOpccoesFechada = 2515; // twips

QPushButton *criarBotao(const QString &nome, const QString &texto) {
    auto *botao = new QPushButton(texto);
    botao->setObjectName(nome);
    botao->setAccessibleName(texto);
    botao->setEnabled(false);
    return botao;
}

} // namespace

FormVista::FormVista(const Config &config, QWidget *pai) : QWidget(pai), m_config(config) {
    setObjectName(config.form);
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(texto(config.chaveTitulo, config.titulo));
    setAccessibleName(windowTitle());
    criarFaixa();
}

QString FormVista::texto(const QString &chave, const QString &omissao) const {
    return modTraducoes::texto(modTraducoes::seccaoDe(m_config.form), chave, omissao);
}

void FormVista::criarFaixa() {
    m_picBorder = new QWidget(this);
    m_picBorder->setObjectName(u"picBorder"_s);
    m_picBorder->setAutoFillBackground(true);
    m_lblMedia = new QLabel;
    m_lblMedia->setObjectName(u"lblMedia"_s);
    m_lblMedia->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    m_lblMedia->setTextFormat(Qt::PlainText);
    m_lblMedia->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    QFont forte = m_lblMedia->font();
    forte.setBold(true);
    m_lblMedia->setFont(forte);
    m_cmdImprimir = criarBotao(u"cmdImprimir"_s, texto(u"ReyFrameImprimir.Caption"_s, u"Imprimir"_s));
    // Histograms know one form of export only.
    const bool imagem = m_config.exportacao == Exportacao::Imagem;
    m_cmdExport = criarBotao(imagem ? u"cmdJPG"_s : u"cmdExport"_s,
                             modTraducoes::texto(u"VISTREL_frmMain"_s, imagem ? u"mnuExportJPG"_s : u"cmdExport"_s,
                                                 imagem ? u"JPG"_s : u"Exportação"_s));
    m_cmdExport->setVisible(m_config.exportacao != Exportacao::Nenhuma);
}

void FormVista::montar(PainelVista *painel, QWidget *vista) {
    m_painel = painel;
    auto *faixa = new QHBoxLayout(m_picBorder);
    faixa->setContentsMargins(4, 3, 4, 3);
    painel->cmdOpccoes()->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    faixa->addWidget(painel->cmdOpccoes(), 1000);
    faixa->addWidget(m_lblMedia, 1);
    faixa->addWidget(m_cmdImprimir);
    faixa->addWidget(m_cmdExport);

    auto *disposicao = new QVBoxLayout(this);
    disposicao->setContentsMargins(0, 0, 0, 0);
    disposicao->setSpacing(0);
    disposicao->addWidget(m_picBorder);
    disposicao->addWidget(vista, 1);

    // The strip lies above the panel, which slides out from behind it.
    painel->raise();
    m_picBorder->raise();
    connect(painel, &PainelVista::aberturaMudou, this, [this] {
        arrumar();
        respeitarMinimo();
    });
    connect(painel, &PainelVista::focoParaVista, vista, [vista] { vista->setFocus(); });
    arrumar();
}

void FormVista::arrumar() {
    const QMargins margens = m_picBorder->layout()->contentsMargins();
    const int topo = m_picBorder->sizeHint().height();
    m_painel->setArea({margens.left(), topo, width() - 2 * margens.left(), std::max(0, height() - topo)});
    // As wide as the open panel, as far as the other buttons let it; it must not keep the window from shrinking.
    QToolButton *opccoes = m_painel->cmdOpccoes();
    const int fechada = std::max(lugar::pixeis(larguraOpccoesFechada), opccoes->sizeHint().width());
    opccoes->setMinimumWidth(fechada);
    opccoes->setMaximumWidth(m_painel->aberto() ? std::max(fechada, m_painel->tamanhoAberto().width()) : fechada);
}

// The design size holds for usual fonts; with larger ones the open panel must still fit.
QSize FormVista::tamanhoMinimo() {
    const QSize moldura = lugar::janelaDe(this)->size() - size();
    const QSize painel = m_painel->tamanhoMinimo() + QSize(8, m_picBorder->sizeHint().height()) + moldura;
    return QSize(lugar::pixeis(m_config.minimo.width()), lugar::pixeis(m_config.minimo.height())).expandedTo(painel);
}

void FormVista::respeitarMinimo() {
    QWidget *janela = lugar::janelaDe(this);
    if (!m_reposto || !isVisible() ||
        janela->windowState() & (Qt::WindowMaximized | Qt::WindowMinimized | Qt::WindowFullScreen))
        return;
    const QSize minimo = tamanhoMinimo();
    if (janela->width() < minimo.width() || janela->height() < minimo.height())
        janela->resize(minimo);
}

void FormVista::showEvent(QShowEvent *evento) {
    QWidget::showEvent(evento);
    if (!std::exchange(m_reposto, true)) {
        // A width that is not read back is the design's; too small a one would take the stored height with it.
        QWidget *janela = lugar::janelaDe(this);
        const lugar::SemMaximizar livre(janela);
        const int moldura = janela->width() - width();
        janela->resize(tamanhoMinimo().expandedTo(QSize(larguraDeDesenho() + moldura, 0)));
        lugar::repor(this, m_config.lugar);
        respeitarMinimo();
    }
}

void FormVista::closeEvent(QCloseEvent *evento) {
    lugar::guardar(this, m_config.lugar);
    QWidget::closeEvent(evento);
}

void FormVista::resizeEvent(QResizeEvent *evento) {
    QWidget::resizeEvent(evento);
    if (!m_painel)
        return;
    arrumar();
    respeitarMinimo();
}
