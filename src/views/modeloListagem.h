#pragma once

#include "views/cursorListagem.h"
#include "views/notas.h"

#include <QAbstractTableModel>
#include <QHash>
#include <QTimer>
#include <QVarLengthArray>

#include <memory>
#include <optional>
#include <vector>

class Fatia;

// A listing that holds only the pages in sight and one anchor a page; rows are found and counted in the background, a
// slice at a time. They are ordered by date, those of one date by when they were stored, newest first. What is stored
// after it was opened moves none of its rows.
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
    const ConsultaListagem &consulta() const { return m_consulta; }

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
    // Where a page begins: at its first row, reached by skipping the rows of the same date before it.
    struct Ancora {
        int linha = 0;
        QByteArray data;
        int iguais = 0;
    };
    // What stands behind a cell: its text is in the row already.
    struct Guardado {
        enum Especie : char { Nulo, Numero, Texto } especie = Nulo;
        double numero = 0;
    };
    // The cells as they are stored, end to end: most are never shown, and a text each would cost more than the query.
    struct Linha {
        QByteArray bytes;
        QVarLengthArray<int, 12> fins;
        qint64 numero = 0;
        QVarLengthArray<Guardado, 4> guardados; // of the columns it is known by, then the note
        QByteArrayView celula(int coluna) const;
        void setCelula(int coluna, const QByteArray &conteudo);
    };
    using Pagina = std::vector<Linha>;
    struct Contagem;

    bool aceita(const Recordset &rs) const;
    bool posterior(const Linha &linha) const { return linha.numero > m_ultima; }
    void ordenar(Pagina &pagina, size_t primeira, size_t fim) const;
    void anotarUltima();
    void retirarPosteriores(Pagina &pagina, size_t quantas) const;
    notas::Linha comoMostrada(const Linha &linha) const;
    void retomarContagem();
    Pagina lerPagina(size_t numero) const;
    Pagina &pagina(size_t numero) const;
    Linha *linha(int numero) const;
    Linha lerLinha(const Recordset &rs) const;
    void contarFatia(int linhas);
    void contarLinha();
    void acabarPrimeira(Fatia &fatia);
    void linhasConhecidas(int linhas);

    ConsultaListagem m_consulta;
    int m_linhas = 0;
    int m_colunas = 0;
    int m_colunaDoNumero = 0;
    qint64 m_ultima = 0; // the row stored last when the listing was opened; the largest number until it is asked for
    std::vector<Ancora> m_ancoras;
    std::optional<Pagina> m_primeira; // while the first rows are counted: the page that is wanted at once
    mutable QHash<size_t, Pagina> m_paginas;
    mutable std::vector<size_t> m_recentes;                // pages held, oldest first
    mutable std::optional<std::pair<int, Linha>> m_aberta; // the row whose note was last given out to be edited
    QHash<int, QVariant> m_titulos;
    std::unique_ptr<Contagem> m_contagem;
    QTimer m_relogio;
};
