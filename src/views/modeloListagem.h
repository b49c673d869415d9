#pragma once

#include "data/ligacao.h"

#include <QAbstractTableModel>
#include <QHash>
#include <QTimer>
#include <QVarLengthArray>

#include <functional>
#include <vector>

class Recordset;

// What a listing asks of the database. Each branch delivers its rows newest first from an index, so that the first
// page of a million rows costs no more than that of a hundred; the branches are merged by the engine.
struct ConsultaListagem {
    struct Ramo {
        QString tabelaOnde; // "Medias WHERE Sensor = ?"
        QVariantList valores;
        QString inicio; // range of dates, both ends included; empty: no bound
        QString fim;
    };
    QString colunas;  // select list; its last column is the row's number in its table
    int visiveis = 0; // how many of them the listing shows, from the first
    QString data;     // name of the date column that orders the rows, newest first
    int colunaData = 0;
    QList<Ramo> ramos;
    std::function<bool(const Recordset &)> aceita;                      // applied to each row; none: all pass
    std::function<QString(const QString &guardado, int coluna)> celula; // how a cell is shown; none: as stored
    int colunaAEsquerda = -1;                                           // aligned to the left; all others are centred
    int colunaEditavel = -1;                                            // -1: none
    std::function<void(qint64 linha, const QString &texto)> gravar;     // writes the editable cell of a row
};

// A listing that holds only the pages in sight and one anchor a page; rows are found and counted in the background, a
// slice at a time. What is written after it was opened does not move its rows.
class ModeloListagem : public QAbstractTableModel {
    Q_OBJECT
public:
    explicit ModeloListagem(QObject *pai = nullptr);
    ~ModeloListagem() override;

    // Finds the first rows; Falha when the query fails. An earlier query is dropped.
    void abrir(const ConsultaListagem &consulta);
    void fechar();
    bool vazio() const { return m_linhas == 0; }
    bool contado() const { return !m_contagem; } // all rows are known
    // All rows in order, for printing: a cursor of its own, and its next row that the listing shows.
    Recordset cursorProprio() const;
    bool seguinte(Recordset &rs) const;
    const ConsultaListagem &consulta() const { return m_consulta; }
    QString textoDaCelula(const Recordset &rs, int coluna) const;

    int rowCount(const QModelIndex &pai = {}) const override;
    int columnCount(const QModelIndex &pai = {}) const override;
    QVariant data(const QModelIndex &indice, int papel) const override;
    QVariant headerData(int seccao, Qt::Orientation orientacao, int papel) const override;
    bool setHeaderData(int seccao, Qt::Orientation orientacao, const QVariant &valor, int papel) override;
    bool setData(const QModelIndex &indice, const QVariant &valor, int papel) override;
    Qt::ItemFlags flags(const QModelIndex &indice) const override;

Q_SIGNALS:
    void contagemTerminada(int linhas);

private:
    // Where a page begins: at its first row, reached by skipping the accepted rows of the same date before it.
    struct Ancora {
        int linha = 0;
        QByteArray data;
        int iguais = 0;
    };
    // The cells as they are stored, end to end: most are never shown, and a text each would cost more than the query.
    struct Linha {
        QByteArray bytes;
        QVarLengthArray<int, 12> fins;
        qint64 numero = 0;
        QByteArrayView celula(int coluna) const;
        void setCelula(int coluna, const QByteArray &conteudo);
    };
    using Pagina = std::vector<Linha>;
    struct Contagem;

    Recordset cursor(const QByteArray &desde) const;
    void retomarContagem();
    Pagina lerPagina(size_t numero) const;
    Pagina &pagina(size_t numero) const;
    Linha *linha(int numero) const;
    Linha lerLinha(const Recordset &rs) const;
    void contarFatia(int linhas);
    QString mostrado(const QString &guardado, int coluna) const;
    void contarLinha();
    void linhasConhecidas(int linhas);

    ConsultaListagem m_consulta;
    int m_linhas = 0;
    int m_colunas = 0;
    int m_colunaDoNumero = 0;
    std::vector<Ancora> m_ancoras;
    mutable QHash<size_t, Pagina> m_paginas;
    mutable std::vector<size_t> m_recentes; // pages held, oldest first
    QHash<int, QVariant> m_titulos;
    std::unique_ptr<Contagem> m_contagem;
    QTimer m_relogio;
};
