#include "views/forms/painelVista.h"

#include "core/datas.h"
#include "core/estado.h"
#include "core/modTraducoes.h"
#include "data/modMain.h"
#include "platform/forms/lugar.h"
#include "platform/forms/momento.h"
#include "views/periodos.h"

#include <QDateEdit>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QTimer>
#include <QToolButton>
#include <QVariantAnimation>

#include <functional>

namespace {

constexpr int larguraAberta = 9005; // twips
constexpr int alturaAberta = 5280;
constexpr int piscadelas = 40;
constexpr int intervaloPiscar = 200;
constexpr int duracaoDoDeslize = 130;

QDateEdit *criarData(const QString &nome, const QString &acessivel) {
    auto *data = new QDateEdit;
    data->setObjectName(nome);
    data->setAccessibleName(acessivel);
    data->setLocale(estado().ambiente.locale);
    data->setDisplayFormat(datas::formatoData());
    momento::comCalendario(data);
    data->setDate(estado().ambiente.agora().date());
    momento::escolherParteAoClicar(data);
    return data;
}

QTimeEdit *criarHora(const QString &nome, const QString &acessivel, const QTime &hora) {
    auto *edicao = new QTimeEdit(hora);
    edicao->setObjectName(nome);
    edicao->setAccessibleName(acessivel);
    edicao->setLocale(estado().ambiente.locale);
    edicao->setDisplayFormat(datas::formatoHora());
    momento::escolherParteAoClicar(edicao);
    return edicao;
}

QLabel *criarEtiqueta(const QString &nome, const QString &texto, QWidget *parceiro) {
    auto *etiqueta = new QLabel(texto);
    etiqueta->setObjectName(nome);
    etiqueta->setBuddy(parceiro);
    return etiqueta;
}

} // namespace

PainelVista::PainelVista(const QString &form, QWidget *pai, const QString &titulo)
    : QFrame(pai), m_form(form), m_escolha(new QVBoxLayout), m_opcoes(new QVBoxLayout),
      m_cmdOpccoes(new QToolButton(pai)), m_deslize(new QVariantAnimation(this)) {
    setObjectName(u"PictOpccoes"_s);
    setFrameStyle(QFrame::StyledPanel | QFrame::Raised);
    setAutoFillBackground(true);
    hide();

    m_cmdOpccoes->setObjectName(u"cmdOpccoes"_s);
    m_cmdOpccoes->setText(texto(u"Opccoes.Caption"_s, titulo));
    m_cmdOpccoes->setAccessibleName(m_cmdOpccoes->text());
    m_cmdOpccoes->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_cmdOpccoes->setArrowType(Qt::DownArrow);
    m_cmdOpccoes->setShortcut(QKeySequence(Qt::Key_F4));
    m_cmdOpccoes->setToolTip(u"F4"_s);
    connect(m_cmdOpccoes, &QToolButton::clicked, this, &PainelVista::cmdOpccoes_Click);

    auto *disposicao = new QVBoxLayout(this);
    disposicao->addLayout(m_escolha, 1);
    criarDatas(disposicao);

    m_deslize->setDuration(duracaoDoDeslize);
    m_deslize->setEasingCurve(QEasingCurve::OutCubic);
    connect(m_deslize, &QVariantAnimation::valueChanged, this, [this](const QVariant &v) { colocar(v.toInt()); });
    connect(m_deslize, &QVariantAnimation::finished, this, [this] { setVisible(m_aberto); });
}

QString PainelVista::texto(const QString &chave, const QString &omissao) const {
    return modTraducoes::texto(modTraducoes::seccaoDe(m_form), chave, omissao);
}

void PainelVista::criarDatas(QVBoxLayout *disposicao) {
    const QString inicio = texto(u"lblInicio.Caption"_s, u"Inicio:"_s);
    const QString fim = texto(u"lblFim.Caption"_s, u"Fim:"_s);
    m_dataInicio = criarData(u"DTPdataInicio"_s, inicio);
    m_horaInicio = criarHora(u"DTPhoraInicio"_s, inicio, QTime(0, 0));
    m_dataFim = criarData(u"DTPdataFim"_s, fim);
    m_horaFim = criarHora(u"DTPHoraFim"_s, fim, QTime(23, 59, 59));

    const QString erro = texto(u"imgErrorDate.ToolTip"_s, u"O início tem de ser anterior ao fim."_s);
    m_imgErrorDate = new QLabel;
    m_imgErrorDate->setObjectName(u"imgErrorDate"_s);
    m_imgErrorDate->setAccessibleName(erro);
    m_imgErrorDate->setToolTip(erro);
    const int lado = fontMetrics().height() + 2;
    const QIcon aviso = style()->standardIcon(QStyle::SP_MessageBoxWarning);
    m_imgErrorDate->setPixmap(aviso.pixmap(QSize(lado, lado), devicePixelRatioF()));
    QSizePolicy politica = m_imgErrorDate->sizePolicy();
    politica.setRetainSizeWhenHidden(true); // blinking must not move its neighbours
    m_imgErrorDate->setSizePolicy(politica);
    m_imgErrorDate->hide();
    m_timerErrorDate = new QTimer(this);
    m_timerErrorDate->setObjectName(u"TimerErrorDate"_s);
    m_timerErrorDate->setInterval(intervaloPiscar);
    connect(m_timerErrorDate, &QTimer::timeout, this, &PainelVista::TimerErrorDate_Timer);

    auto *confirmar = new QPushButton(texto(u"cmdConfirmar.Caption"_s, u"Confirmar"_s));
    confirmar->setObjectName(u"cmdConfirmar"_s);
    confirmar->setAccessibleName(confirmar->text());
    confirmar->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_Return));
    confirmar->setToolTip(QKeySequence(Qt::CTRL | Qt::Key_Return).toString(QKeySequence::NativeText));
    confirmar->setAutoDefault(true);
    connect(confirmar, &QPushButton::clicked, this, &PainelVista::cmdConfirmar_Click);

    auto *grelha = new QGridLayout;
    grelha->addWidget(criarEtiqueta(u"lblInicio"_s, inicio, m_dataInicio), 0, 0);
    grelha->addWidget(m_dataInicio, 0, 1);
    grelha->addWidget(m_horaInicio, 0, 2);
    grelha->addWidget(m_imgErrorDate, 0, 3, 2, 1);
    grelha->addWidget(criarEtiqueta(u"lblFim"_s, fim, m_dataFim), 1, 0);
    grelha->addWidget(m_dataFim, 1, 1);
    grelha->addWidget(m_horaFim, 1, 2);
    grelha->addWidget(criarPeriodos(), 0, 5);
    grelha->addWidget(confirmar, 1, 5);
    grelha->addLayout(m_opcoes, 0, 4, 2, 1);
    grelha->setColumnStretch(4, 1);
    disposicao->addLayout(grelha);
}

QPushButton *PainelVista::criarPeriodos() {
    auto *botao = new QPushButton;
    botao->setObjectName(u"cmdPeriodos"_s);
    botao->setText(texto(u"cmdPeriodos.Caption"_s, u"Período"_s));
    botao->setAccessibleName(botao->text());
    auto *menu = new QMenu(botao);
    for (const Periodo &periodo : periodos::lista) {
        QAction *entrada = menu->addAction(texto(periodo.chave.toString(), periodo.texto.toString()));
        entrada->setObjectName(periodo.chave.toString());
        connect(entrada, &QAction::triggered, this, [this, &periodo] {
            const QDate hoje = estado().ambiente.agora().date();
            setPeriodo(periodo.inicio(hoje), hoje);
        });
    }
    botao->setMenu(menu);
    return botao;
}

void PainelVista::setPeriodo(const QDate &de, const QDate &ate) {
    m_dataInicio->setDate(de);
    m_horaInicio->setTime(QTime(0, 0));
    m_dataFim->setDate(ate);
    m_horaFim->setTime(QTime(23, 59, 59));
}

void PainelVista::setIntervalo(const QDateTime &de, const QDateTime &ate) {
    m_dataInicio->setDate(de.date());
    m_horaInicio->setTime(de.time());
    m_dataFim->setDate(ate.date());
    m_horaFim->setTime(ate.time());
}

QString PainelVista::descricao(const QString &inicio, const QString &fim) const {
    return inicio + u" <> " + fim;
}

Confirmado PainelVista::confirmado() const {
    return {escolhas(), inicio(), fim(), descricao(textoInicio(), textoFim())};
}

QString PainelVista::textoInicio() const {
    return datas::textoDataHora(inicio());
}

QString PainelVista::textoFim() const {
    return datas::textoDataHora(fim());
}

QDateTime PainelVista::inicio() const {
    return {m_dataInicio->date(), m_horaInicio->time(), Qt::UTC};
}

QDateTime PainelVista::fim() const {
    return {m_dataFim->date(), m_horaFim->time(), Qt::UTC};
}

// The Tab key follows the eye: what is chosen from stands above the range, though it was made after it.
void PainelVista::ordenarFoco() {
    QWidget *anterior = m_cmdOpccoes;
    const std::function<void(QLayout *)> percorrer = [&](QLayout *disposicao) {
        for (int i = 0; i < disposicao->count(); ++i) {
            QWidget *controlo = disposicao->itemAt(i)->widget();
            if (controlo && controlo->focusPolicy() & Qt::TabFocus)
                setTabOrder(std::exchange(anterior, controlo), controlo);
            else if (QLayout *dentro = controlo ? controlo->layout() : disposicao->itemAt(i)->layout())
                percorrer(dentro);
        }
    };
    percorrer(m_escolha);
    setTabOrder(anterior, m_dataInicio);
    anterior = m_horaFim;
    percorrer(m_opcoes);
}

void PainelVista::juntarOpcao(const QList<QWidget *> &controlos) {
    auto *linha = new QHBoxLayout;
    linha->addSpacing(fontMetrics().averageCharWidth() * 2);
    for (QWidget *controlo : controlos)
        linha->addWidget(controlo);
    linha->addStretch();
    m_opcoes->addLayout(linha);
}

void PainelVista::cmdConfirmar_Click() {
    m_timerErrorDate->stop();
    m_imgErrorDate->hide();
    if (modMain::VerificaDatas(textoInicio(), textoFim()) == u"TRUE") {
        if (comSeleccao())
            Q_EMIT carregar();
    } else {
        m_piscadelas = 0;
        m_timerErrorDate->start();
    }
}

void PainelVista::TimerErrorDate_Timer() {
    m_imgErrorDate->setVisible(m_imgErrorDate->isHidden());
    if (++m_piscadelas >= piscadelas) {
        m_imgErrorDate->hide();
        m_timerErrorDate->stop();
    }
}

QSize PainelVista::tamanhoMinimo() const {
    return QSize(lugar::pixeis(larguraAberta), lugar::pixeis(alturaAberta)).expandedTo(minimumSizeHint());
}

// The design size, and more of a larger view, so that names are read in full and long lists need less scrolling.
QSize PainelVista::tamanhoAberto() const {
    const QSize preferido(larguraPreferida(), m_area.height() * 2 / 3);
    return tamanhoMinimo().expandedTo(preferido).boundedTo(m_area.size());
}

void PainelVista::setArea(const QRect &area) {
    m_area = area;
    if (m_aberto && m_deslize->state() != QAbstractAnimation::Running)
        colocar(tamanhoAberto().height());
}

// Slides out from behind the strip above it; only moving, so that nothing inside is laid out again.
void PainelVista::colocar(int alturaVisivel) {
    const QSize cheio = tamanhoAberto();
    const int escondido = std::max(0, cheio.height() - alturaVisivel);
    setGeometry(QRect(m_area.topLeft() - QPoint(0, escondido), cheio));
}

void PainelVista::abrir() {
    if (m_aberto)
        return;
    fecharSubpaineis();
    ordenarFoco();
    m_aberto = true;
    m_cmdOpccoes->setArrowType(Qt::UpArrow);
    colocar(tamanhoAberto().height());
    show();
    Q_EMIT aberturaMudou(true);
    // The choice starts here; the view gets the focus back on closing.
    primeiroControlo()->setFocus();
    m_deslize->stop();
    if (isVisible()) {
        m_deslize->setStartValue(0);
        m_deslize->setEndValue(tamanhoAberto().height());
        m_deslize->start();
    }
}

void PainelVista::fechar(bool deslizar) {
    if (!m_aberto)
        return;
    fecharSubpaineis();
    m_aberto = false;
    m_cmdOpccoes->setArrowType(Qt::DownArrow);
    Q_EMIT aberturaMudou(false);
    m_deslize->stop();
    if (deslizar && isVisible()) {
        m_deslize->setStartValue(height());
        m_deslize->setEndValue(0);
        m_deslize->start();
    } else {
        hide();
    }
    Q_EMIT focoParaVista();
}

void PainelVista::cmdOpccoes_Click() {
    if (m_aberto)
        fechar();
    else
        abrir();
}

void PainelVista::keyPressEvent(QKeyEvent *evento) {
    if (evento->key() == Qt::Key_Escape)
        fechar();
    else if (evento->key() == Qt::Key_Return || evento->key() == Qt::Key_Enter)
        cmdConfirmar_Click();
    else
        QFrame::keyPressEvent(evento);
}
