// The layout of the list's window.
#include "core/literais.h"
#include "core/modTraducoes.h"
#include "poseidon/forms/frmDescarregar2251.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

namespace {

constexpr int intervaloDaBarra = 50; // ms
constexpr int maximoDaBarra = 100;
constexpr int esperaDoFim = 500;
constexpr int maximoDeLeituras = 32767;
constexpr int linhasDaInfo = 5;

QString texto(const QString &chave, const QString &omissao) {
    return modTraducoes::texto(u"frmDescarregar2251"_s, chave, omissao);
}

// Keeps its colours while the window is disabled, which is when it is seen.
class Luz : public QLabel {
public:
    using QLabel::QLabel;

protected:
    void paintEvent(QPaintEvent *) override {
        QPainter pintor(this);
        const QPixmap imagem = pixmap();
        const QSizeF tamanho = imagem.deviceIndependentSize();
        pintor.drawPixmap(QPointF((width() - tamanho.width()) / 2, (height() - tamanho.height()) / 2), imagem);
    }
};

// The place stays when the widget goes, so that nothing beside it moves.
void manterLugar(QWidget *w) {
    QSizePolicy politica = w->sizePolicy();
    politica.setRetainSizeWhenHidden(true);
    w->setSizePolicy(politica);
}

QLabel *criarImagem(const QString &nome, QWidget *pai) {
    auto *imagem = new Luz(pai);
    imagem->setObjectName(nome);
    const int lado = imagem->fontMetrics().height() + 2;
    imagem->setFixedSize(lado, lado);
    manterLugar(imagem);
    imagem->hide();
    return imagem;
}

} // namespace

frmDescarregar2251::frmDescarregar2251(QWidget *pai)
    : QWidget(pai), m_pesquisa(new Pesquisa2251(m_lista, this)), m_descarga(new Descarga2251(m_lista, this)),
      m_acerto(new Acerto2251(this)), m_modelo(new ModeloDispositivos(m_lista, this)),
      m_grelha(new GrelhaDispositivos(m_modelo, this)) {
    setObjectName(u"frmDescarregar2251"_s);
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(texto(u"frmDescarregar2251.Caption"_s, u"Descarregador 2251"_s));
    setAccessibleName(windowTitle());
    m_grelha->setAccessibleName(windowTitle());

    auto *disposicao = new QVBoxLayout(this);
    disposicao->addLayout(montarTopo());
    disposicao->addWidget(m_grelha, 1);
    disposicao->addLayout(montarInfo());
    disposicao->addLayout(montarOpcoes());
    resize(sizeHint());

    m_TimerProgressBar.setInterval(intervaloDaBarra);
    connect(&m_TimerProgressBar, &QTimer::timeout, this, [this] {
        m_ProgressBar->setValue(m_ProgressBar->value() >= maximoDaBarra ? 1 : m_ProgressBar->value() + 1);
    });
    m_TimerFim.setSingleShot(true);
    m_TimerFim.setInterval(esperaDoFim);
    connect(&m_TimerFim, &QTimer::timeout, this, &frmDescarregar2251::TimerFim_Timer);
    ligarLogica();
    ActDesactMediasEApagarLog(false);
    esconderInfo();
}

QPushButton *frmDescarregar2251::criarBotao(const QString &nome, const QString &legenda,
                                            void (frmDescarregar2251::*accao)()) {
    auto *botao = new QPushButton(legenda, this);
    botao->setObjectName(nome);
    botao->setAccessibleName(legenda);
    connect(botao, &QPushButton::clicked, this, accao);
    return botao;
}

QLabel *frmDescarregar2251::criarEtiqueta(const QString &nome, const QString &legenda, QWidget *parceiro) {
    auto *etiqueta = new QLabel(legenda, this);
    etiqueta->setObjectName(nome);
    etiqueta->setTextFormat(Qt::PlainText);
    etiqueta->setBuddy(parceiro);
    return etiqueta;
}

QBoxLayout *frmDescarregar2251::montarTopo() {
    m_cmdPesquisar = criarBotao(u"cmdPesquisar"_s, texto(u"cmdPesquisar.Caption"_s, u"Pesquisar Dispositivos"_s),
                                &frmDescarregar2251::cmdPesquisar_Click);
    m_imgPesquisa = criarImagem(u"imgPesquisa"_s, this);
    // Units are never set up from here, so this one has nothing to announce yet.
    QLabel *lblUDPSETUP =
        criarEtiqueta(u"lblUDPSETUP"_s, texto(u"lblUDPSETUP.Caption"_s, u"A actualizar dispositivos"_s));
    lblUDPSETUP->hide();
    m_cmdConectar = criarBotao(u"cmdConectar"_s, texto(u"cmdConectar.Caption"_s, u"Adicionar IP remoto"_s),
                               &frmDescarregar2251::cmdConectar_Click);
    m_imgConnect = criarImagem(u"imgConnect"_s, this);
    m_txtTexto = new QLineEdit(this);
    m_txtTexto->setObjectName(u"txtTexto"_s);
    m_txtTexto->setAccessibleName(m_cmdConectar->text());
    m_txtTexto->setPlaceholderText(texto(u"txtTexto.Exemplo"_s, u"192.168.1.20:80"_s));
    m_txtTexto->setClearButtonEnabled(true);
    m_txtTexto->setMaxLength(255);
    m_txtTexto->setMinimumWidth(fontMetrics().horizontalAdvance(QString(24, u'0')));
    connect(m_txtTexto, &QLineEdit::returnPressed, m_cmdConectar, &QPushButton::click);

    auto *topo = new QHBoxLayout;
    topo->addWidget(m_cmdPesquisar);
    topo->addWidget(m_imgPesquisa);
    topo->addWidget(lblUDPSETUP);
    topo->addStretch();
    topo->addWidget(m_imgConnect);
    topo->addWidget(m_txtTexto);
    topo->addWidget(m_cmdConectar);
    return topo;
}

QLayout *frmDescarregar2251::montarInfo() {
    m_lblInfo = criarEtiqueta(u"lblInfo"_s, texto(u"lblInfo.Caption"_s, u"Info:"_s));
    m_lblInfoDesc = criarEtiqueta(u"lblInfoDesc"_s, {});
    m_lblInfoDesc->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_ProgressBar = new QProgressBar(this);
    m_ProgressBar->setObjectName(u"ProgressBar"_s);
    m_ProgressBar->setRange(0, maximoDaBarra);
    m_ProgressBar->setTextVisible(false);
    m_ProgressBar->setFixedHeight(fontMetrics().height() / 2 + 2);
    m_ProgressBar->setFixedWidth(fontMetrics().averageCharWidth() * 30);
    m_ProgressBar->setAccessibleName(windowTitle());
    QPalette cores = m_ProgressBar->palette();
    cores.setColor(QPalette::Disabled, QPalette::Highlight, cores.color(QPalette::Active, QPalette::Highlight));
    m_ProgressBar->setPalette(cores);
    m_ProgressBar->hide();

    m_lblPormenor = criarEtiqueta(u"lblPormenor"_s, {});
    m_lblPormenor->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_lblPormenor->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_lblPormenor->setWordWrap(true);
    m_lblPormenor->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    auto *rolo = new QScrollArea(this);
    rolo->setFrameShape(QFrame::NoFrame);
    rolo->setWidgetResizable(true);
    rolo->setWidget(m_lblPormenor);
    rolo->setFixedHeight(fontMetrics().lineSpacing() * linhasDaInfo);
    rolo->viewport()->setAutoFillBackground(false);
    m_lblPormenor->setAutoFillBackground(false);
    m_lblInfoDesc->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);

    auto *info = new QGridLayout;
    info->setVerticalSpacing(1);
    info->addWidget(m_lblInfo, 0, 0);
    info->addWidget(m_lblInfoDesc, 0, 1);
    info->addWidget(rolo, 1, 1, 1, 2);
    info->addWidget(m_ProgressBar, 0, 2, Qt::AlignVCenter);
    info->setColumnStretch(1, 1);
    // Both lines keep their room, so that the list does not jump when a row has something to say.
    manterLugar(m_lblInfo);
    return info;
}

QBoxLayout *frmDescarregar2251::montarOpcoes() {
    m_txtNMedias = new QLineEdit(this);
    m_txtNMedias->setObjectName(u"txtNMedias"_s);
    m_txtNMedias->setValidator(new QIntValidator(0, maximoDeLeituras, m_txtNMedias));
    m_txtNMedias->setFixedWidth(fontMetrics().horizontalAdvance(u"000000"_s) + 16);
    m_txtNMedias->setAlignment(Qt::AlignRight);
    m_txtNMedias->installEventFilter(this);
    m_lblNLeituras =
        criarEtiqueta(u"lblNLeituras"_s, texto(u"lblNLeituras.Caption"_s, u"Gerar média a cada"_s), m_txtNMedias);
    m_lblMedias = criarEtiqueta(u"lblMedias"_s, texto(u"lblMedias.Caption"_s, u"leituras"_s));
    m_txtNMedias->setAccessibleName(m_lblNLeituras->text());
    m_chkClearMemory = new QCheckBox(texto(u"chkClearMemory.Caption"_s, u"N° leituras"_s), this);
    m_chkClearMemory->setObjectName(u"chkClearMemory"_s);
    m_chkClearMemory->setAccessibleName(m_chkClearMemory->text());
    // The caption that language files know does not tell what the box does.
    m_lblClearMemory = criarEtiqueta(u"lblClearMemory"_s,
                                     texto(u"lblClearMemory.Caption"_s, u"(apagar a memória depois de descarregar)"_s));
    m_chkClearMemory->setAccessibleDescription(m_lblClearMemory->text());
    connect(m_chkClearMemory, &QCheckBox::clicked, this, &frmDescarregar2251::chkClearMemory_Click);
    m_cmdActualizar = criarBotao(u"cmdActualizar"_s, texto(u"cmdActualizar.Caption"_s, u"Act. Data/Hora"_s),
                                 &frmDescarregar2251::cmdActualizar_Click);
    m_cmdDescarregar = criarBotao(u"cmdDescarregar"_s, texto(u"cmdDescarregar.Caption"_s, u"Descarregar"_s),
                                  &frmDescarregar2251::cmdDescarregar_Click);

    auto *opcoes = new QHBoxLayout;
    opcoes->addWidget(m_lblNLeituras);
    opcoes->addWidget(m_txtNMedias);
    opcoes->addWidget(m_lblMedias);
    opcoes->addSpacing(2 * fontMetrics().averageCharWidth() + 8);
    opcoes->addWidget(m_chkClearMemory);
    opcoes->addWidget(m_lblClearMemory);
    opcoes->addStretch();
    opcoes->addWidget(m_cmdActualizar);
    opcoes->addWidget(m_cmdDescarregar);
    return opcoes;
}

void frmDescarregar2251::ligarLogica() {
    m_modelo->dito = [this](int linha) { return dizer(linha); };
    m_modelo->guardar = [this](int linha, Coluna coluna, const QString &novo) {
        return guardarCelula(linha, coluna, novo);
    };
    connect(m_grelha, &GrelhaDispositivos::marcar, this, &frmDescarregar2251::marcar);
    connect(m_grelha, &GrelhaDispositivos::linhaMudou, this, &frmDescarregar2251::mostrarLinha);
    connect(m_grelha, &GrelhaDispositivos::pedirMenu, this, &frmDescarregar2251::abrirMenu);
    connect(m_pesquisa, &Pesquisa2251::tique, this, [this](int numero) { mostrarLuz(m_imgPesquisa, numero % 2 == 0); });
    connect(m_pesquisa, &Pesquisa2251::antesDeJuntar, this, [this] { m_grelha->setUpdatesEnabled(false); });
    connect(m_pesquisa, &Pesquisa2251::terminou, this, &frmDescarregar2251::fimDaPesquisa);
    connect(m_descarga, &Descarga2251::comecou, this, [this] {
        bloquear(true);
        LigarDesligarBarraDeslizante(true);
    });
    connect(m_descarga, &Descarga2251::linhaMudou, this, [this](int linha) {
        m_modelo->renovar(linha);
        if (linha == m_grelha->linhaActual())
            mostrarResultado(linha);
    });
    connect(m_descarga, &Descarga2251::terminou, this, &frmDescarregar2251::terminarDescarga);
}
