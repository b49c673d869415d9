#include "logger/forms/pecas1921.h"

#include "core/datas.h"
#include "core/estado.h"
#include "core/literais.h"
#include "core/modTraducoes.h"
#include "logger/registoDS1921.h"
#include "platform/forms/momento.h"

#include <QComboBox>
#include <QDateEdit>
#include <QGroupBox>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QStyle>
#include <QStyleOptionFocusRect>
#include <QToolTip>

#include <algorithm>

namespace {

constexpr qreal ampliacaoDoTitulo = 1.25;
constexpr int folga = 5;
constexpr int sublinhado = 3;
constexpr int margemDaCaixa = 8;
constexpr int margemDoBotao = 12;

QString texto(const QString &chave, const QString &omissao) {
    return modTraducoes::texto(u"DSfrmDS1921"_s, chave, omissao);
}

} // namespace

namespace pecas1921 {

QLabel *etiqueta(const QString &nome, const QString &texto, QWidget *parceiro) {
    auto *e = new QLabel(texto);
    e->setObjectName(nome);
    e->setTextFormat(Qt::PlainText);
    if (parceiro) {
        e->setBuddy(parceiro);
        if (parceiro->accessibleName().isEmpty())
            parceiro->setAccessibleName(texto);
    }
    return e;
}

QLabel *titulo(const QString &nome, const QString &texto) {
    QLabel *e = etiqueta(nome, texto);
    QFont letra = e->font();
    letra.setBold(true);
    letra.setPointSizeF(letra.pointSizeF() * ampliacaoDoTitulo);
    e->setFont(letra);
    return e;
}

QLabel *paragrafo(const QString &nome, const QString &texto) {
    QLabel *e = etiqueta(nome, texto);
    e->setWordWrap(true);
    e->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    return e;
}

QPushButton *botao(const QString &nome, const QString &texto) {
    auto *b = new QPushButton(texto);
    b->setObjectName(nome);
    b->setAccessibleName(texto);
    b->setAutoDefault(true);
    b->setMinimumWidth(b->fontMetrics().horizontalAdvance(texto) + 2 * margemDoBotao);
    return b;
}

QLineEdit *caixa(const QString &nome, int caracteres) {
    auto *c = new QLineEdit;
    c->setObjectName(nome);
    c->setReadOnly(true);
    c->setMinimumWidth(c->fontMetrics().horizontalAdvance(QString(caracteres, u'0')) + 2 * margemDaCaixa);
    return c;
}

QComboBox *lista(const QString &nome, const QString &acessivel) {
    auto *l = new QComboBox;
    l->setObjectName(nome);
    l->setAccessibleName(acessivel);
    l->setMaxVisibleItems(16);
    l->setStyleSheet(u"combobox-popup: 0"_s); // else the style opens it with all its rows
    return l;
}

QDateEdit *data(const QString &nome, const QString &acessivel) {
    auto *d = new QDateEdit(estado().ambiente.agora().date());
    d->setObjectName(nome);
    d->setAccessibleName(acessivel);
    d->setLocale(estado().ambiente.locale);
    d->setDisplayFormat(datas::formatoData());
    momento::comCalendario(d);
    momento::escolherParteAoClicar(d);
    return d;
}

QTimeEdit *hora(const QString &nome, const QString &acessivel) {
    auto *h = new QTimeEdit(estado().ambiente.agora().time());
    h->setObjectName(nome);
    h->setAccessibleName(acessivel);
    h->setLocale(estado().ambiente.locale);
    h->setDisplayFormat(datas::formatoHora());
    momento::escolherParteAoClicar(h);
    return h;
}

QGroupBox *grupo(const QString &nome, const QString &texto) {
    auto *g = new QGroupBox(texto);
    g->setObjectName(nome);
    g->setAccessibleName(texto);
    return g;
}

QFrame *moldura(const QString &nome) {
    auto *m = new QFrame;
    m->setObjectName(nome);
    return m;
}

void mostrarNaLista(QComboBox *lista, const QString &texto) {
    if (lista->findText(texto) < 0)
        lista->addItem(texto);
    lista->setCurrentIndex(lista->findText(texto));
}

Separador::Separador(const QString &nome, const QString &texto) {
    setObjectName(nome);
    setText(texto);
    setAccessibleName(texto);
    setCheckable(true);
    setAutoExclusive(true);
    setFocusPolicy(Qt::TabFocus);
}

QSize Separador::sizeHint() const {
    QFont forte = font();
    forte.setBold(true);
    const QFontMetrics medidas(forte);
    return {medidas.horizontalAdvance(text()) + 6 * folga, medidas.height() + 2 * folga + sublinhado};
}

void Separador::paintEvent(QPaintEvent *) {
    QPainter p(this);
    const QPalette::ColorGroup grupo = isEnabled() ? QPalette::Active : QPalette::Disabled;
    QFont letra = font();
    letra.setBold(isChecked());
    p.setFont(letra);
    if (isEnabled() && underMouse() && !isChecked()) {
        QColor fundo = palette().color(QPalette::Highlight);
        fundo.setAlphaF(0.12f);
        p.fillRect(rect(), fundo);
    }
    p.setPen(palette().color(grupo, QPalette::WindowText));
    p.drawText(rect().adjusted(0, 0, 0, -sublinhado), Qt::AlignCenter, text());
    if (isChecked())
        p.fillRect(QRect(0, height() - sublinhado, width(), sublinhado), palette().color(grupo, QPalette::Highlight));
    if (hasFocus()) {
        QStyleOptionFocusRect foco;
        foco.initFrom(this);
        foco.rect = rect().adjusted(2, 2, -2, -sublinhado - 1);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &foco, &p, this);
    }
}

void Separador::enterEvent(QEnterEvent *evento) {
    QAbstractButton::enterEvent(evento);
    update();
}

void Separador::leaveEvent(QEvent *evento) {
    QAbstractButton::leaveEvent(evento);
    update();
}

EtiquetaCurta::EtiquetaCurta(const QString &nome) {
    setObjectName(nome);
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
}

QSize EtiquetaCurta::minimumSizeHint() const {
    return {0, QLabel::minimumSizeHint().height()};
}

void EtiquetaCurta::paintEvent(QPaintEvent *) {
    QPainter p(this);
    p.setPen(palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, foregroundRole()));
    p.drawText(rect(), Qt::AlignLeft | Qt::AlignVCenter, fontMetrics().elidedText(text(), Qt::ElideRight, width()));
}

void EtiquetaClicavel::mouseReleaseEvent(QMouseEvent *evento) {
    QLabel::mouseReleaseEvent(evento);
    if (evento->button() == Qt::LeftButton && rect().contains(evento->position().toPoint()))
        Q_EMIT Click();
}

FiltroDeRegisto::FiltroDeRegisto(const QString &recusados, QLineEdit *caixa)
    : QValidator(caixa), m_recusados(recusados) {
    connect(caixa, &QLineEdit::inputRejected, this, [this, caixa] {
        const QString porque =
            m_recusado.isEmpty()
                ? texto(u"TextoCheio"_s, u"Não cabem mais de %1 caracteres."_s).arg(caixa->maxLength())
                : texto(u"CaracterRecusado"_s, u"O registador não guarda o carácter \"%1\"."_s).arg(m_recusado);
        // Beside the box, not over the one below it.
        QToolTip::showText(caixa->mapToGlobal(QPoint(caixa->width() + folga, 0)), porque, caixa);
    });
}

void FiltroDeRegisto::por(QLineEdit *caixa, const QString &recusados) {
    caixa->setValidator(new FiltroDeRegisto(recusados, caixa));
}

bool FiltroDeRegisto::cabe(QChar c) const {
    return registoDS1921::cabeNoRegisto(c) && !m_recusados.contains(c);
}

QString FiltroDeRegisto::oQueCabe(const QLineEdit *caixa, const QString &texto) {
    const auto *filtro = qobject_cast<const FiltroDeRegisto *>(caixa->validator());
    QString cabido = texto;
    return cabido.removeIf([filtro](QChar c) { return !filtro->cabe(c); });
}

QValidator::State FiltroDeRegisto::validate(QString &texto, int &) const {
    const auto mau = std::find_if_not(texto.cbegin(), texto.cend(), [this](QChar c) { return cabe(c); });
    m_recusado = mau == texto.cend() ? QString() : QString(*mau);
    return m_recusado.isEmpty() ? Acceptable : Invalid;
}

} // namespace pecas1921
