#pragma once

#include <QPersistentModelIndex>
#include <QTableView>

// The grid of a listing. What was written into a cell and could not be stored stays in its box.
class GrelhaListagem : public QTableView {
    Q_OBJECT
public:
    explicit GrelhaListagem(QWidget *pai);

protected:
    void commitData(QWidget *caixa) override;
    void closeEditor(QWidget *caixa, QAbstractItemDelegate::EndEditHint como) override;

private:
    class Delegado;
    Delegado *m_delegado;
};
