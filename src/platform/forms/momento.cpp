#include "platform/forms/momento.h"

#include "core/modTraducoes.h"

#include <QCalendarWidget>
#include <QDateTimeEdit>
#include <QEvent>
#include <QLineEdit>

namespace {

class EscolhaDaParte : public QObject {
public:
    EscolhaDaParte(QDateTimeEdit *edicao, QLineEdit *linha) : QObject(edicao), m_edicao(edicao), m_linha(linha) {
        linha->installEventFilter(this);
    }

    // The press has put the cursor where the click was; a drag keeps what it has selected.
    bool eventFilter(QObject *, QEvent *evento) override {
        if (evento->type() == QEvent::MouseButtonRelease && !m_linha->hasSelectedText())
            m_edicao->setSelectedSection(m_edicao->currentSection());
        return false;
    }

private:
    QDateTimeEdit *m_edicao;
    QLineEdit *m_linha;
};

} // namespace

void momento::escolherParteAoClicar(QDateTimeEdit *edicao) {
    if (auto *linha = edicao->findChild<QLineEdit *>())
        new EscolhaDaParte(edicao, linha);
}

void momento::comCalendario(QDateEdit *edicao) {
    edicao->setCalendarPopup(true);
    const QLocale nomes = modTraducoes::localeDosNomes();
    edicao->calendarWidget()->setLocale(nomes);
    edicao->calendarWidget()->setFirstDayOfWeek(nomes.firstDayOfWeek());
}
