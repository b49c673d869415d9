#include "manutencao/frmPassWord.h"

#include "core/estado.h"
#include "core/eventos.h"
#include "core/modPassWord.h"
#include "core/modTraducoes.h"
#include "core/rotina.h"
#include "platform/forms/cantos.h"
#include "platform/forms/registoForms.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPainter>
#include <QPainterPath>
#include <QVBoxLayout>

namespace {

constexpr QSize tamanho(330, 132);
constexpr int larguraDoCadeado = 84;
enum Objectivo : qint16 { eliminarMissao = 1, sensores = 2, eliminarMissoes = 3 };

// The dialog is dark under every palette, like the splash.
const QColor fundoEmCima(24, 58, 84);
const QColor fundoEmBaixo(12, 34, 54);
const QColor traco(110, 220, 150);

void desenharCadeado(QPainter &p, const QPointF &centro) {
    QPainterPath arco;
    arco.moveTo(centro + QPointF(-11, -4));
    arco.lineTo(centro + QPointF(-11, -14));
    arco.arcTo(QRectF(centro + QPointF(-11, -25), QSizeF(22, 22)), 180, -180);
    arco.lineTo(centro + QPointF(11, -4));
    p.setPen(QPen(traco, 3, Qt::SolidLine, Qt::RoundCap));
    p.setBrush(Qt::NoBrush);
    p.drawPath(arco);
    p.setBrush(traco);
    p.setPen(Qt::NoPen);
    p.drawRoundedRect(QRectF(centro + QPointF(-18, -4), QSizeF(36, 27)), 4, 4);
    p.setBrush(fundoEmBaixo);
    p.drawEllipse(centro + QPointF(0, 7), 3.5, 3.5);
    p.drawRoundedRect(QRectF(centro + QPointF(-1.5, 7), QSizeF(3, 9)), 1.5, 1.5);
}

// The word is taken with its last letter, and many people end it with Enter all the same: that one is not for whatever
// window comes up next. Anything else that the user does first ends the wait for it.
class EnterDaPalavra : public QObject {
public:
    EnterDaPalavra() : QObject(qApp) { qApp->installEventFilter(this); }

protected:
    bool eventFilter(QObject *, QEvent *evento) override {
        const bool tecla = evento->type() == QEvent::KeyPress;
        if (m_visto || (!tecla && evento->type() != QEvent::MouseButtonPress))
            return false;
        m_visto = true;
        deleteLater();
        const int qual = tecla ? static_cast<QKeyEvent *>(evento)->key() : 0;
        return qual == Qt::Key_Return || qual == Qt::Key_Enter;
    }

private:
    bool m_visto = false;
};

} // namespace

frmPassWord::frmPassWord(QWidget *dono)
    : QDialog(dono, Qt::Dialog | Qt::FramelessWindowHint), m_txtPassWord(new QLineEdit) {
    estado().EliminarConfirmado = false;
    setAttribute(Qt::WA_TranslucentBackground);
    setFixedSize(tamanho);
    cantos::arredondar(this);
    auto *legenda =
        new QLabel(modTraducoes::texto(u"VISTREL_frmConfiguracoes"_s, u"lblPassWord.Caption"_s, u"Password"_s));
    legenda->setObjectName(u"lblPassWord"_s);
    legenda->setBuddy(m_txtPassWord);
    QPalette clara = legenda->palette();
    clara.setColor(QPalette::WindowText, Qt::white);
    legenda->setPalette(clara);
    setWindowTitle(legenda->text());
    m_txtPassWord->setObjectName(u"txtPassWord"_s);
    m_txtPassWord->setAccessibleName(legenda->text());
    m_txtPassWord->setEchoMode(QLineEdit::Password);
    m_txtPassWord->setInputMethodHints(Qt::ImhHiddenText | Qt::ImhSensitiveData | Qt::ImhNoPredictiveText);
    m_txtPassWord->setContextMenuPolicy(Qt::NoContextMenu);
    m_txtPassWord->installEventFilter(this);
    auto *disposicao = new QVBoxLayout(this);
    disposicao->setContentsMargins(larguraDoCadeado, 0, 28, 0);
    disposicao->addStretch();
    disposicao->addWidget(legenda);
    disposicao->addWidget(m_txtPassWord);
    disposicao->addStretch();
    m_txtPassWord->setFocus();
}

frmPassWord::~frmPassWord() {
    m_txtPassWord->clear();
}

bool frmPassWord::eventFilter(QObject *objecto, QEvent *evento) {
    if (objecto == m_txtPassWord && evento->type() == QEvent::KeyPress) {
        const int tecla = static_cast<QKeyEvent *>(evento)->key();
        if (tecla == Qt::Key_Escape) {
            forcarEventos();
            close();
            return true;
        }
        // There is nothing to confirm with; the key must not reach a default button of the owner either.
        if (tecla == Qt::Key_Return || tecla == Qt::Key_Enter)
            return true;
    }
    if (objecto == m_txtPassWord && evento->type() == QEvent::KeyRelease)
        txtPassWord_KeyUp();
    return QDialog::eventFilter(objecto, evento);
}

// Every key tries; a wrong text says nothing, the user is still typing.
void frmPassWord::txtPassWord_KeyUp() {
    if (m_aceite) // a key that was held down is let go after the match
        return;
    const std::optional<bool> certa = Rotina("frmPassWord.txtPassWord_KeyUp", [this] {
        return std::optional(modPassWord::PassWordCorrecta(m_txtPassWord->text()));
    });
    if (!certa) // no text would be right, and the next key would say so again
        close();
    else if (*certa)
        acertou();
}

void frmPassWord::acertou() {
    m_aceite = true;
    new EnterDaPalavra;
    m_txtPassWord->clear();
    const qint16 objectivo = estado().ObjectivoPassWord;
    if (objectivo == eliminarMissao || objectivo == eliminarMissoes)
        estado().EliminarConfirmado = true;
    hide();
    if (objectivo == sensores)
        Rotina("frmPassWord.txtPassWord_KeyUp", [] { registoForms().abrir(u"frmSensoresEdit"_s); });
    close();
}

void frmPassWord::paintEvent(QPaintEvent *) {
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const QRectF area = QRectF(rect()).adjusted(1, 1, -1, -1);
    QLinearGradient fundo(area.topLeft(), area.bottomLeft());
    fundo.setColorAt(0, fundoEmCima);
    fundo.setColorAt(1, fundoEmBaixo);
    p.setPen(QPen(QColor(70, 120, 160), 1));
    p.setBrush(fundo);
    p.drawRoundedRect(area, cantos::raio, cantos::raio);
    desenharCadeado(p, QPointF(larguraDoCadeado / 2.0, area.center().y()));
}
