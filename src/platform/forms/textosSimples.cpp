#include "platform/forms/textosSimples.h"

#include "core/literais.h"
#include "core/textoMostrado.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QHelpEvent>
#include <QLabel>
#include <QToolTip>

namespace {

constexpr qsizetype maximoDaDica = 1000;
constexpr qsizetype linhasDaDica = 25;

QString dica(const QString &texto) {
    return textoMostrado::paragrafos(texto, maximoDaDica, linhasDaDica);
}

class Filtro : public QObject {
public:
    using QObject::QObject;

    bool eventFilter(QObject *objecto, QEvent *evento) override {
        if (evento->type() == QEvent::Polish)
            simplificar(objecto);
        else if (evento->type() == QEvent::ToolTip)
            return encurtarDica(objecto, static_cast<QHelpEvent *>(evento));
        return false;
    }

private:
    // A label is polished before its text is measured or painted for the first time.
    static void simplificar(QObject *objecto) {
        if (auto *etiqueta = qobject_cast<QLabel *>(objecto))
            etiqueta->setTextFormat(Qt::PlainText);
    }

    static bool encurtarDica(QObject *objecto, const QHelpEvent *evento) {
        auto *w = qobject_cast<QWidget *>(objecto);
        if (!w)
            return false;
        if (const QString curta = dica(w->toolTip()); curta != w->toolTip())
            w->setToolTip(curta);
        auto *vista = qobject_cast<QAbstractItemView *>(w->parentWidget());
        if (!vista || vista->viewport() != w)
            return false;
        const QModelIndex indice = vista->indexAt(evento->pos());
        const QString texto = indice.data(Qt::ToolTipRole).toString();
        const QString curta = dica(texto);
        if (curta == texto)
            return false;
        QToolTip::showText(evento->globalPos(), curta, w, vista->visualRect(indice));
        return true;
    }
};

} // namespace

namespace textosSimples {

void instalar() {
    const QString nome = u"textosSimples"_s;
    if (!qApp || qApp->findChild<QObject *>(nome, Qt::FindDirectChildrenOnly))
        return;
    auto *filtro = new Filtro(qApp);
    filtro->setObjectName(nome);
    qApp->installEventFilter(filtro);
}

} // namespace textosSimples
