#pragma once

#include "poseidon/listaPoseidons.h"

#include <QAbstractTableModel>
#include <QHash>
#include <QPalette>
#include <QSet>
#include <QStyledItemDelegate>
#include <QTableView>

#include <functional>

// Columns of the list, numbered as the system has always numbered them.
enum class Coluna {
    SELECT = 1,
    UDP,
    IP,
    MAC,
    PORTA,
    TIPO,
    DESCRICAO,
    TIPON,
    MODO,
    ACT,
    NLEITURAS,
    BLNERASELOG,
    DSTAT,
    Total = DSTAT
};

// The rows of the list, as a view wants them. Rows are numbered from 1 in the list and from 0 in the view.
class ModeloDispositivos : public QAbstractTableModel {
    Q_OBJECT
public:
    ModeloDispositivos(listaPoseidons::Lista &lista, QObject *pai);

    int rowCount(const QModelIndex &pai = {}) const override { return pai.isValid() ? 0 : m_mostradas; }
    int columnCount(const QModelIndex &pai = {}) const override { return pai.isValid() ? 0 : int(Coluna::Total); }
    QVariant data(const QModelIndex &i, int papel) const override;
    QVariant headerData(int seccao, Qt::Orientation orientacao, int papel) const override;
    Qt::ItemFlags flags(const QModelIndex &i) const override;
    bool setData(const QModelIndex &i, const QVariant &valor, int papel) override;

    void renovar();          // rows were added, or many changed
    void renovar(int linha); // one row
    void setVistos(const QSet<QString> &macs) { m_vistos = macs; }
    // An edited cell; red while it holds neither the value before its edits nor the unit's own.
    void setEditada(int linha, Coluna coluna, const QString &antes, bool difere);
    void esquecerEdicoes() { m_editadas.clear(); } // a search has told what the units are

    // What a row says in its last column, and whether it is a failure.
    struct Dito {
        QString texto;
        QString pormenor;
    };
    std::function<Dito(int linha)> dito;
    // A value for the cell is to be stored; true when it was.
    std::function<bool(int linha, Coluna coluna, const QString &texto)> guardar;
    QPalette paleta;

    static bool editavel(int coluna);

private:
    QString texto(const listaPoseidons::Linha &l, Coluna coluna, int numero) const;
    QVariant icone(const listaPoseidons::Linha &l, Coluna coluna) const;

    listaPoseidons::Lista &m_lista;
    int m_mostradas = 0;
    QSet<QString> m_vistos;
    struct Edicao {
        QString antes; // of the first one
        bool difere = false;
    };
    QHash<int, Edicao> m_editadas; // by celula()
    static int celula(int linha, Coluna coluna) { return linha * (int(Coluna::Total) + 1) + int(coluna); }
};

// Edits a cell in txtEdit: digits only for a port, a name of the list's length.
class DelegadoDispositivos : public QStyledItemDelegate {
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    QWidget *createEditor(QWidget *pai, const QStyleOptionViewItem &opcao, const QModelIndex &i) const override;

protected:
    void initStyleOption(QStyleOptionViewItem *opcao, const QModelIndex &i) const override;
};

// grdDispositivos: rows of units. A click or the space bar ticks, F2, Enter or a double click edits, the menu key and
// the right button ask for the menu of a row.
class GrelhaDispositivos : public QTableView {
    Q_OBJECT
public:
    explicit GrelhaDispositivos(ModeloDispositivos *modelo, QWidget *pai = nullptr);

    int linhaActual() const; // from 1; 0: none
    void setLinhaActual(int linha);
    void ajustarColunas();

Q_SIGNALS:
    void marcar(int linha);
    void pedirMenu(int linha, const QPoint &global);
    void linhaMudou(int linha);

protected:
    void keyPressEvent(QKeyEvent *evento) override;
    void mouseReleaseEvent(QMouseEvent *evento) override;
    void contextMenuEvent(QContextMenuEvent *evento) override;
    void currentChanged(const QModelIndex &actual, const QModelIndex &anterior) override;
    void changeEvent(QEvent *evento) override;
};
