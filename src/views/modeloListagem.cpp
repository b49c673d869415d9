#include "views/modeloListagem.h"

#include "core/falha.h"
#include "core/literais.h"
#include "core/rotina.h"
#include "data/recordset.h"

#include <QElapsedTimer>

#include <algorithm>

namespace {

constexpr int linhasPorPagina = 256;
constexpr size_t paginasGuardadas = 24;
constexpr int fatiaMs = 12;
constexpr int maximoDeRamos = 400; // the engine merges no more than 500 selections at once

} // namespace

// The count in the background: its cursor stands where the last slice ended.
struct ModeloListagem::Contagem {
    Recordset rs;
    int linhas = 0;
    QString ultimaData;
    int iguais = 0;
};

ModeloListagem::ModeloListagem(QObject *pai) : QAbstractTableModel(pai) {
    m_relogio.setInterval(0);
    connect(&m_relogio, &QTimer::timeout, this,
            [this] { Rotina("ModeloListagem.contarFatia", [this] { contarFatia(); }); });
}

ModeloListagem::~ModeloListagem() = default;

Recordset ModeloListagem::cursor(const Ancora &ancora) const {
    QStringList selecoes;
    QVariantList valores;
    for (const ConsultaListagem::Ramo &ramo : m_consulta.ramos) {
        QString sql = u"SELECT " + m_consulta.colunas + u" FROM " + ramo.tabelaOndeE;
        valores += ramo.valores;
        if (!ancora.data.isEmpty()) {
            sql += u" AND " + m_consulta.data + u" <= ?";
            valores += ancora.data;
        }
        selecoes.append(sql);
    }
    if (selecoes.size() > maximoDeRamos)
        throw Falha(erros::chamadaInvalida,
                    u"Demasiados sensores numa listagem (%1; máximo %2)."_s.arg(selecoes.size()).arg(maximoDeRamos));
    const QString ordem = u" ORDER BY %1 DESC"_s.arg(m_consulta.colunaData + 1);
    return cnBD().consultar(selecoes.join(u" UNION ALL "_s) + ordem, valores);
}

bool ModeloListagem::saltar(Recordset &rs, const Ancora &ancora) const {
    int iguais = ancora.iguais;
    while (rs.avancar()) {
        if (m_consulta.aceita && !m_consulta.aceita(rs))
            continue;
        if (iguais > 0 && rs.texto(m_consulta.colunaData) == ancora.data) {
            --iguais;
            continue;
        }
        return true;
    }
    return false;
}

void ModeloListagem::fechar() {
    m_relogio.stop();
    beginResetModel();
    m_contagem.reset();
    m_linhas = 0;
    m_ancoras.clear();
    m_paginas.clear();
    m_recentes.clear();
    endResetModel();
}

void ModeloListagem::abrir(const ConsultaListagem &consulta) {
    fechar();
    m_consulta = consulta;
    if (consulta.ramos.isEmpty())
        return;
    beginResetModel();
    try {
        m_contagem.reset(new Contagem{cursor({}), 0, {}, 0});
        m_colunas = m_contagem->rs.colunas() - 1;
        // The first page is tied to the newest row of now: later readings must not push its rows down.
        Recordset primeiro = cursor({});
        m_ancoras.push_back({saltar(primeiro, {}) ? primeiro.texto(consulta.colunaData) : QString(), 0});
        m_linhas = int(pagina(0).size());
    } catch (...) {
        m_contagem.reset();
        endResetModel();
        throw;
    }
    endResetModel();
    if (m_linhas < linhasPorPagina)
        m_contagem.reset();
    else
        m_relogio.start();
}

void ModeloListagem::linhasConhecidas(int linhas) {
    if (linhas <= m_linhas)
        return;
    beginInsertRows({}, m_linhas, linhas - 1);
    m_linhas = linhas;
    endInsertRows();
}

void ModeloListagem::contarFatia() {
    QElapsedTimer tempo;
    tempo.start();
    Contagem &c = *m_contagem;
    while (!tempo.hasExpired(fatiaMs)) {
        for (int i = 0; i < linhasPorPagina; ++i) {
            if (!c.rs.avancar()) {
                const int total = c.linhas;
                m_relogio.stop();
                m_contagem.reset(); // gives the read lock back
                linhasConhecidas(total);
                Q_EMIT contagemTerminada(total);
                return;
            }
            if (m_consulta.aceita && !m_consulta.aceita(c.rs))
                continue;
            const QString data = c.rs.texto(m_consulta.colunaData);
            c.iguais = data == c.ultimaData ? c.iguais + 1 : 0;
            c.ultimaData = data;
            if (c.linhas > 0 && c.linhas % linhasPorPagina == 0)
                m_ancoras.push_back({data, c.iguais});
            ++c.linhas;
        }
    }
    linhasConhecidas(c.linhas);
}

ModeloListagem::Linha ModeloListagem::lerLinha(const Recordset &rs) const {
    Linha linha;
    for (int i = 0; i < m_colunas; ++i)
        linha.celulas.append(textoDaCelula(rs, i));
    linha.numero = rs.inteiro(m_colunas);
    return linha;
}

QString ModeloListagem::textoDaCelula(const Recordset &rs, int coluna) const {
    return m_consulta.celula ? m_consulta.celula(rs, coluna).toString() : rs.texto(coluna);
}

const ModeloListagem::Pagina &ModeloListagem::pagina(int numero) const {
    if (const auto achada = m_paginas.constFind(numero); achada != m_paginas.constEnd())
        return *achada;
    Pagina nova;
    const Ancora &ancora = m_ancoras.at(size_t(numero));
    Recordset rs = cursor(ancora);
    bool ha = saltar(rs, ancora);
    while (ha && nova.size() < linhasPorPagina) {
        nova.push_back(lerLinha(rs));
        ha = saltar(rs, {});
    }
    m_recentes.push_back(numero);
    if (m_recentes.size() > paginasGuardadas) {
        m_paginas.remove(m_recentes.front());
        m_recentes.erase(m_recentes.begin());
    }
    return *m_paginas.insert(numero, std::move(nova));
}

void ModeloListagem::percorrer(const std::function<bool(const Recordset &)> &linha) const {
    if (m_consulta.ramos.isEmpty())
        return;
    Recordset rs = cursor({});
    while (saltar(rs, {}))
        if (!linha(rs))
            return;
}

int ModeloListagem::rowCount(const QModelIndex &pai) const {
    return pai.isValid() ? 0 : m_linhas;
}

int ModeloListagem::columnCount(const QModelIndex &pai) const {
    return pai.isValid() ? 0 : m_colunas;
}

QVariant ModeloListagem::data(const QModelIndex &indice, int papel) const {
    if (papel == Qt::TextAlignmentRole)
        return int(Qt::AlignCenter);
    if (papel != Qt::DisplayRole && papel != Qt::EditRole && papel != Qt::ToolTipRole)
        return {};
    return Rotina("ModeloListagem.data", [&]() -> QVariant {
        const Pagina &p = pagina(indice.row() / linhasPorPagina);
        const auto naPagina = size_t(indice.row() % linhasPorPagina);
        // Rows may have gone since they were counted.
        return naPagina < p.size() ? p[naPagina].celulas.at(indice.column()) : QVariant();
    });
}

QVariant ModeloListagem::headerData(int seccao, Qt::Orientation orientacao, int papel) const {
    if (orientacao == Qt::Horizontal && papel == Qt::DisplayRole && m_titulos.contains(seccao))
        return m_titulos.value(seccao);
    return QAbstractTableModel::headerData(seccao, orientacao, papel);
}

bool ModeloListagem::setHeaderData(int seccao, Qt::Orientation orientacao, const QVariant &valor, int papel) {
    if (orientacao != Qt::Horizontal || papel != Qt::DisplayRole)
        return false;
    m_titulos.insert(seccao, valor);
    Q_EMIT headerDataChanged(orientacao, seccao, seccao);
    return true;
}

bool ModeloListagem::setData(const QModelIndex &indice, const QVariant &valor, int papel) {
    if (papel != Qt::EditRole || indice.column() != m_consulta.colunaEditavel || !m_consulta.gravar)
        return false;
    return Rotina("ModeloListagem.setData", [&] {
        Pagina &p = const_cast<Pagina &>(pagina(indice.row() / linhasPorPagina));
        Linha &linha = p.at(size_t(indice.row() % linhasPorPagina));
        m_consulta.gravar(linha.numero, valor.toString());
        linha.celulas[indice.column()] = valor.toString();
        Q_EMIT dataChanged(indice, indice);
        return true;
    });
}

Qt::ItemFlags ModeloListagem::flags(const QModelIndex &indice) const {
    const Qt::ItemFlags base = QAbstractTableModel::flags(indice);
    return m_consulta.gravar && indice.column() == m_consulta.colunaEditavel ? base | Qt::ItemIsEditable : base;
}
