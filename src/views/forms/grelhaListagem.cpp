#include "views/forms/grelhaListagem.h"

#include <QMetaProperty>
#include <QScopedValueRollback>
#include <QStyledItemDelegate>

#include <utility>

// Keeps what the model said to the last text.
class GrelhaListagem::Delegado : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    void setModelData(QWidget *caixa, QAbstractItemModel *modelo, const QModelIndex &indice) const override {
        recusada = !modelo->setData(indice, caixa->metaObject()->userProperty().read(caixa), Qt::EditRole);
    }
    mutable bool recusada = false;
    bool aGuardar = false;
};

GrelhaListagem::GrelhaListagem(QWidget *pai) : QTableView(pai), m_delegado(new Delegado(this)) {
    setItemDelegate(m_delegado);
}

// The message of a refusal takes the keyboard from the box, which would then store once more.
void GrelhaListagem::commitData(QWidget *caixa) {
    if (m_delegado->aGuardar)
        return;
    const QScopedValueRollback aGuardar(m_delegado->aGuardar, true);
    m_delegado->recusada = false;
    QTableView::commitData(caixa);
}

void GrelhaListagem::closeEditor(QWidget *caixa, QAbstractItemDelegate::EndEditHint como) {
    const bool fica = m_delegado->aGuardar || std::exchange(m_delegado->recusada, false);
    if (!fica || como == QAbstractItemDelegate::RevertModelCache)
        return QTableView::closeEditor(caixa, como);
    caixa->setFocus();
    viewport()->update();
}
