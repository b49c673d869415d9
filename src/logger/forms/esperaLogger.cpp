#include "logger/forms/esperaLogger.h"

#include "core/literais.h"
#include "core/modTraducoes.h"
#include "platform/forms/registoForms.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>

#include <algorithm>

namespace {

constexpr int atrasoMs = 350; // a window that flashes by is worse than none

QString texto(const QString &chave, const QString &omissao) {
    return modTraducoes::texto(u"DSfrmDS1921"_s, chave, omissao);
}

} // namespace

frmEsperaLogger::frmEsperaLogger(QWidget *dono)
    : QDialog(dono, Qt::Dialog | Qt::FramelessWindowHint), m_mensagem(new QLabel), m_porque(new QLabel),
      m_barra(new QProgressBar), m_cancelar(new QPushButton(texto(u"cmdCancelar.Caption"_s, u"Cancelar"_s))) {
    setObjectName(u"frmEsperaLogger"_s);
    setModal(false);
    m_mensagem->setObjectName(u"lblEspera"_s);
    m_cancelar->setObjectName(u"cmdCancelar"_s);
    m_cancelar->setAccessibleName(m_cancelar->text());
    connect(m_cancelar, &QPushButton::clicked, this, &frmEsperaLogger::reject);
    m_porque->setObjectName(u"lblPorque"_s);
    m_porque->setTextFormat(Qt::PlainText);
    m_porque->setWordWrap(true);
    m_porque->hide();
    m_barra->setObjectName(u"ProgressBarEspera"_s);
    m_barra->setRange(0, 0);
    m_barra->setTextVisible(false);
    m_barra->setMinimumWidth(20 * fontMetrics().height());
    auto *moldura = new QFrame;
    moldura->setFrameStyle(QFrame::StyledPanel | QFrame::Raised);
    auto *linha = new QHBoxLayout;
    linha->addWidget(m_barra, 1);
    linha->addWidget(m_cancelar);
    auto *interior = new QVBoxLayout(moldura);
    interior->addWidget(m_mensagem);
    interior->addWidget(m_porque);
    interior->addLayout(linha);
    auto *exterior = new QVBoxLayout(this);
    exterior->setContentsMargins(0, 0, 0, 0);
    exterior->addWidget(moldura);
}

void frmEsperaLogger::setMensagem(const QString &texto) {
    m_mensagem->setText(texto);
    setWindowTitle(texto);
}

void frmEsperaLogger::setPorque(const QString &texto) {
    if (m_porque->text() == texto)
        return;
    m_porque->setText(texto);
    m_porque->setVisible(!texto.isEmpty());
    adjustSize();
}

void frmEsperaLogger::setParte(int feito, int tudo) {
    m_barra->setRange(0, std::max(tudo, 1));
    m_barra->setValue(feito);
    m_barra->setTextVisible(true);
}

void frmEsperaLogger::setCancelavel(bool sim) {
    m_cancelar->setEnabled(sim);
}

void frmEsperaLogger::reject() {
    if (m_cancelar->isEnabled())
        Q_EMIT cancelar();
}

EsperaLogger::EsperaLogger(QWidget *form, bool desactivarPrincipal) {
    RegistoForms &forms = registoForms();
    QWidget *principal = forms.dono ? forms.dono.data() : form->window();
    m_janela = new frmEsperaLogger(principal);
    forms.anunciar(m_janela);
    if (desactivarPrincipal)
        m_desactivado = principal;
    const QPointer<QWidget> sobre(form);
    m_atraso = new QTimer(m_janela);
    m_atraso->setSingleShot(true);
    m_atraso->setInterval(atrasoMs);
    QObject::connect(m_atraso, &QTimer::timeout, m_janela, [espera = m_janela.data(), sobre] {
        espera->adjustSize();
        if (sobre)
            espera->move(sobre->mapToGlobal(sobre->rect().center()) - espera->rect().center());
        espera->show();
        espera->activateWindow();
    });
    retomar();
}

EsperaLogger::~EsperaLogger() {
    delete m_janela;
    if (m_desactivado)
        m_desactivado->setEnabled(true);
}

void EsperaLogger::suspender() {
    if (m_janela) {
        m_atraso->stop();
        m_janela->hide();
    }
    if (m_desactivado)
        m_desactivado->setEnabled(true);
}

void EsperaLogger::retomar() {
    if (m_desactivado)
        m_desactivado->setEnabled(false);
    if (m_janela) {
        m_janela->setEnabled(true);
        m_atraso->start();
    }
}
