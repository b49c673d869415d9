#include "shell/frmErro.h"

#include "core/literais.h"
#include "core/modTraducoes.h"
#include "core/textoMostrado.h"
#include "platform/forms/icones.h"
#include "platform/forms/lugar.h"
#include "platform/forms/registoForms.h"
#include "shell/desenhos.h"

#include <QApplication>
#include <QFontDatabase>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollArea>
#include <QStyle>
#include <QTimer>

#include <cstdlib>

namespace {

constexpr int alturaFechada = 2310; // twips
constexpr int alturaAberta = 4305;
constexpr int larguraMinima = 7200;
constexpr qsizetype letrasDaFrase = 500;
constexpr qsizetype linhasDaFrase = 8;
constexpr qsizetype letrasDoDetalhe = 8000;

QString texto(const QString &chave, const QString &omissao) {
    return modTraducoes::texto(u"frmErro"_s, chave, omissao);
}

} // namespace

frmErro::frmErro(QWidget *dono) : QDialog(dono) {
    setObjectName(u"frmErro"_s);
    setAttribute(Qt::WA_DeleteOnClose);
    setModal(false);
    setWindowTitle(texto(u"frmErro.Caption"_s, u"Erro"_s));
    // A routine that failed may have left the hourglass.
    while (QApplication::overrideCursor())
        QApplication::restoreOverrideCursor();

    auto *imagem = new QLabel;
    const int lado = style()->pixelMetric(QStyle::PM_MessageBoxIconSize);
    juntarDesenhos();
    imagem->setPixmap(icones::icone(u"erro"_s).pixmap(QSize(lado, lado), devicePixelRatioF()));
    auto *titulo = new QLabel(texto(u"LabelErro.Caption"_s, u"Este programa executou um erro:"_s));
    titulo->setObjectName(u"LabelErro"_s);
    titulo->setWordWrap(true);
    QFont forte = titulo->font();
    forte.setBold(true);
    titulo->setFont(forte);

    m_lblFrase = new QLabel; // what went wrong, also for who does not open the details
    m_lblFrase->setObjectName(u"lblFrase"_s);
    m_lblFrase->setWordWrap(true);
    m_lblFrase->setTextInteractionFlags(Qt::TextSelectableByMouse);

    const auto botao = [this](const QString &nome, const QString &omissao) {
        auto *b = new QPushButton(texto(nome + u".Caption", omissao));
        b->setObjectName(nome);
        b->setAccessibleName(b->text());
        b->setAutoDefault(false);
        return b;
    };
    QPushButton *continuar = botao(u"cmdContinuar"_s, u"Continuar"_s);
    QPushButton *encerrar = botao(u"cmdEncerrar"_s, u"Encerrar"_s);
    m_cmdDetalhe = botao(u"cmdDetalhe"_s, u"Detalhes >>>"_s);
    continuar->setDefault(true);
    connect(continuar, &QPushButton::clicked, this, &QWidget::close);
    connect(encerrar, &QPushButton::clicked, this, [] { std::_Exit(1); });
    connect(m_cmdDetalhe, &QPushButton::clicked, this, &frmErro::cmdDetalhe_Click);

    m_lblDetalhe = new QLabel;
    m_lblDetalhe->setObjectName(u"lblDetalhe"_s);
    m_lblDetalhe->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont)); // its labels are filled up with points
    m_lblDetalhe->setTextFormat(Qt::PlainText);
    m_lblDetalhe->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_lblDetalhe->setWordWrap(true);
    m_lblDetalhe->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_lblDetalhe->setMargin(6);
    m_rolo = new QScrollArea;
    m_rolo->setWidgetResizable(true);
    m_rolo->setWidget(m_lblDetalhe);

    auto *cabeca = new QHBoxLayout;
    cabeca->addWidget(imagem, 0, Qt::AlignTop);
    auto *dito = new QVBoxLayout;
    dito->addWidget(titulo);
    dito->addWidget(m_lblFrase);
    cabeca->addLayout(dito, 1);
    auto *botoes = new QHBoxLayout;
    botoes->addWidget(m_cmdDetalhe);
    botoes->addStretch();
    botoes->addWidget(continuar);
    botoes->addWidget(encerrar);
    auto *disposicao = new QVBoxLayout(this);
    disposicao->addLayout(cabeca);
    disposicao->addStretch();
    disposicao->addLayout(botoes);
    disposicao->addWidget(m_rolo, 1);
    aplicarAltura();
    continuar->setFocus();
    if (dono && dono->isModal())
        dono->installEventFilter(this);
}

// A modal owner takes its children along when it goes. What went wrong has to stay in sight, so the dialog moves to
// the main window, or stands alone while there is none yet.
bool frmErro::eventFilter(QObject *alvo, QEvent *evento) {
    if (evento->type() == QEvent::Hide && alvo == parentWidget()) {
        alvo->removeEventFilter(this);
        mudarDono(registoForms().dono);
    }
    return QDialog::eventFilter(alvo, evento);
}

// A form that failed while it loaded comes up modal afterwards, and would keep its own report from being answered.
bool frmErro::event(QEvent *evento) {
    if (evento->type() == QEvent::WindowBlocked)
        QTimer::singleShot(0, this, &frmErro::seguirModal);
    return QDialog::event(evento);
}

void frmErro::seguirModal() {
    QWidget *modal = QApplication::activeModalWidget();
    if (!modal || modal == parentWidget() || qobject_cast<QMessageBox *>(modal)) // a box is answered first
        return;
    mudarDono(modal);
    modal->installEventFilter(this);
    raise();
    activateWindow();
}

void frmErro::mudarDono(QWidget *dono) {
    const bool mostrado = isVisible();
    const QPoint onde = pos();
    setParent(dono, windowFlags());
    move(onde);
    setVisible(mostrado);
}

void frmErro::definirFrase(const QString &frase) {
    m_lblFrase->setText(textoMostrado::paragrafos(frase, letrasDaFrase, linhasDaFrase));
    m_lblFrase->setVisible(!frase.isEmpty());
    setAccessibleDescription(m_lblFrase->text());
    aplicarAltura();
}

void frmErro::definirDetalhe(const QString &mensagem) {
    m_lblDetalhe->setText(textoMostrado::paragrafos(mensagem, letrasDoDetalhe).replace(u"\n"_s, u"\r\n"_s));
}

void frmErro::cmdDetalhe_Click() {
    m_aberto = !m_aberto;
    aplicarAltura();
}

void frmErro::aplicarAltura() {
    m_rolo->setVisible(m_aberto);
    m_cmdDetalhe->setText(m_aberto ? texto(u"cmdDetalhe2.Caption"_s, u"<<< Esconder"_s)
                                   : texto(u"cmdDetalhe.Caption"_s, u"Detalhes >>>"_s));
    m_cmdDetalhe->setAccessibleName(m_cmdDetalhe->text());
    layout()->activate();
    const int altura = lugar::pixeis(m_aberto ? alturaAberta : alturaFechada);
    const int largura = std::max(lugar::pixeis(larguraMinima), minimumSizeHint().width());
    const int necessaria = std::max(minimumSizeHint().height(), layout()->totalHeightForWidth(largura));
    setFixedSize(largura, std::max(altura, necessaria + (m_aberto ? 6 * fontMetrics().height() : 0)));
}

void frmErro::keyPressEvent(QKeyEvent *evento) {
    if (evento->key() == Qt::Key_Escape)
        close();
    else
        QDialog::keyPressEvent(evento);
}
