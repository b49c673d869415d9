#pragma once

#include "data/recordset.h"

#include <QList>
#include <QVariant>

#include <functional>
#include <memory>
#include <utility>
#include <vector>

class Ilegiveis;

// What a listing asks of the database. Each branch delivers its rows newest first from an index, so that the first
// page of a million rows costs no more than that of a hundred.
struct ConsultaListagem {
    struct Ramo {
        QString tabelaOnde; // "Medias WHERE Sensor = ?"
        QVariantList valores;
        QString inicio; // range of dates, both ends included; empty: no bound
        QString fim;
    };
    QString tabela;   // of all branches
    QString colunas;  // select list; its last column is the row's place in the order of storing
    int visiveis = 0; // how many of them the listing shows, from the first
    QString data;     // name of the date column that orders the rows, newest first
    int colunaData = 0;
    QList<Ramo> ramos;
    std::function<bool(const Recordset &)> aceita;                      // applied to each row; none: all pass
    std::function<QString(const QString &guardado, int coluna)> celula; // how a cell is shown; none: as stored
    std::function<void(const Recordset &, Ilegiveis &)> examinar;       // what of a row cannot be read; none: all can
    int colunaAEsquerda = -1;                                           // aligned to the left; all others are centred
    // Where notes can be written: their column (-1: nowhere), and the columns that a row is known by.
    int colunaEditavel = -1;
    QList<std::pair<int, QString>> identidade;

    QString mostrado(const QString &guardado, int coluna) const { return celula ? celula(guardado, coluna) : guardado; }
};

// The rows of a query, newest first; those of one date come in any order, since the engine would have to sort to give
// them in another than its index has. The engine merges so many branches at once; the cursors of more are merged here.
class CursorListagem {
public:
    // From the rows of that date on; without one from the newest.
    explicit CursorListagem(const ConsultaListagem &consulta, const QString &desde = {});

    bool avancar();
    const Recordset &linha() const { return m_cursores[m_fila.front()]; } // after avancar() gave true
    int colunas() const { return m_cursores.front().colunas(); }
    void fechar();

private:
    bool depois(size_t a, size_t b) const;
    std::vector<Recordset> m_cursores;
    std::vector<size_t> m_fila; // those that stand on a row, as a heap: the newest first
    int m_colunaData;
    bool m_comecado = false;
};
