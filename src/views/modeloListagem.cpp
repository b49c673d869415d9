#include "views/modeloListagem.h"

#include "core/eventos.h"
#include "core/rotina.h"
#include "core/textoMostrado.h"
#include "data/dialecto.h"
#include "data/ligacao.h"
#include "views/ilegiveis.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace {

constexpr int linhasPorPagina = 100;
constexpr size_t paginasGuardadas = 24;
constexpr int fatiaMs = 12;
// A filter may pass few rows: a page also ends after so many rows read, so that any page is read in a few milliseconds.
constexpr int lidasPorPagina = 20000;
constexpr qint64 porAnotar = std::numeric_limits<qint64>::max();

} // namespace

// The count in the background: its cursor stands where the last slice ended.
struct ModeloListagem::Contagem {
    CursorListagem rs;
    bool ha; // stands on a row
    int linhas = 0;
    int lidasNaPagina = 0;
    QByteArray ultimaData;
    int iguais = 0;
    bool largada = false; // the cursor was closed and has to find its place again
    Ilegiveis ilegiveis;
};

namespace {

QByteArrayView bytesDe(const Recordset &rs, int coluna) {
    int tamanho = 0;
    const char *bytes = rs.utf8(coluna, tamanho);
    return {bytes, tamanho};
}

} // namespace

QByteArrayView ModeloListagem::Linha::celula(int coluna) const {
    const int inicio = coluna > 0 ? fins[coluna - 1] : 0;
    return QByteArrayView(bytes).sliced(inicio, fins[coluna] - inicio);
}

void ModeloListagem::Linha::setCelula(int coluna, const QByteArray &conteudo) {
    const int inicio = coluna > 0 ? fins[coluna - 1] : 0;
    const int crescimento = int(conteudo.size()) - (fins[coluna] - inicio);
    bytes.replace(inicio, fins[coluna] - inicio, conteudo);
    for (qsizetype i = coluna; i < fins.size(); ++i)
        fins[i] += crescimento;
}

ModeloListagem::ModeloListagem(QObject *pai) : QAbstractTableModel(pai) {
    m_relogio.setInterval(0);
    connect(&m_relogio, &QTimer::timeout, this,
            [this] { Rotina("ModeloListagem.contarFatia", [this] { contarFatia(std::numeric_limits<int>::max()); }); });
}

ModeloListagem::~ModeloListagem() = default;

void ModeloListagem::fechar() {
    m_relogio.stop();
    beginResetModel();
    m_contagem.reset();
    m_primeira.reset();
    m_linhas = 0;
    m_ancoras.clear();
    m_paginas.clear();
    m_recentes.clear();
    m_aberta.reset();
    endResetModel();
}

// The query gives the rows of one date as its index has them.
void ModeloListagem::ordenar(Pagina &pagina, size_t primeira, size_t fim) const {
    if (fim - primeira > 1)
        std::stable_sort(pagina.begin() + qsizetype(primeira), pagina.begin() + qsizetype(fim),
                         [this](const Linha &a, const Linha &b) {
                             return posterior(a) != posterior(b) ? posterior(b) : a.numero > b.numero;
                         });
}

// Not before the first rows are there, which it would delay.
void ModeloListagem::anotarUltima() {
    if (m_ultima != porAnotar)
        return;
    Recordset rs = cnBD().consultar(u"SELECT Max("_s + dialecto::ordem + u") FROM " + m_consulta.tabela);
    m_ultima = rs.avancar() ? rs.inteiro(0) : 0;
}

// What was stored since would move the rows that follow; it only fills the places of rows that have gone, since a row
// that was stored anew has another number.
void ModeloListagem::retirarPosteriores(Pagina &pagina, size_t quantas) const {
    const auto novas = size_t(std::ranges::count_if(pagina, [this](const Linha &l) { return posterior(l); }));
    size_t ficam = quantas - std::min(quantas, pagina.size() - novas);
    if (novas > ficam)
        std::erase_if(pagina, [&](const Linha &l) {
            const bool sai = posterior(l) && ficam == 0;
            ficam -= posterior(l) && !sai ? 1 : 0;
            return sai;
        });
    if (pagina.size() > quantas)
        pagina.resize(quantas);
}

bool ModeloListagem::aceita(const Recordset &rs) const {
    return rs.inteiro(m_colunaDoNumero) <= m_ultima && (!m_consulta.aceita || m_consulta.aceita(rs));
}

void ModeloListagem::abrir(const ConsultaListagem &consulta) {
    fechar();
    m_consulta = consulta;
    if (consulta.ramos.isEmpty())
        return;
    m_ultima = porAnotar;
    CursorListagem rs(m_consulta);
    const bool ha = rs.avancar();
    m_contagem.reset(new Contagem{std::move(rs), ha, 0, 0, {}, 0, false, {}});
    beginResetModel();
    m_colunas = consulta.visiveis;
    m_colunaDoNumero = m_contagem->rs.colunas() - 1; // a star may stand for any number of columns
    endResetModel();
    m_primeira.emplace().reserve(linhasPorPagina);
    contarFatia(linhasPorPagina);
    if (m_contagem)
        m_relogio.start();
}

void ModeloListagem::linhasConhecidas(int linhas) {
    if (linhas <= m_linhas)
        return;
    // A page may have been read before it was full.
    for (auto p = m_paginas.begin(); p != m_paginas.end();) {
        const size_t proxima = p.key() + 1;
        const bool cheia =
            proxima < m_ancoras.size() && m_ancoras[proxima].linha - m_ancoras[p.key()].linha == int(p->size());
        p = cheia || p->size() >= size_t(linhasPorPagina) ? std::next(p) : m_paginas.erase(p);
    }
    beginInsertRows({}, m_linhas, linhas - 1);
    m_linhas = linhas;
    endInsertRows();
}

// So many rows at the most: the first ones must be there at once, the others may take turns with the events.
void ModeloListagem::contarFatia(int linhas) {
    Fatia fatia(fatiaMs);
    Contagem &c = *m_contagem;
    if (c.largada)
        retomarContagem();
    if (!m_primeira)
        anotarUltima();
    const int ate = linhas < std::numeric_limits<int>::max() - c.linhas ? c.linhas + linhas : linhas;
    while (c.ha && c.linhas < ate && !fatia.gasta(linhasPorPagina)) {
        for (int i = 0; c.ha && i < linhasPorPagina; ++i) {
            contarLinha();
            c.ha = c.rs.avancar();
        }
    }
    if (m_primeira)
        acabarPrimeira(fatia);
    const int total = c.linhas;
    const bool terminada = !c.ha;
    Ilegiveis ilegiveis;
    if (terminada) {
        m_relogio.stop();
        ilegiveis = c.ilegiveis;
        anotarUltima();
        m_contagem.reset(); // gives the read lock back
    }
    linhasConhecidas(total);
    if (!terminada)
        return;
    Q_EMIT contagemTerminada(total);
    ilegiveis.relatar("ModeloListagem.contarFatia");
}

// The first page is wanted at once, and its rows are at hand: all of its last date, whose order is known only then.
// When that would take too long, the page is read as any other.
void ModeloListagem::acabarPrimeira(Fatia &fatia) {
    Contagem &c = *m_contagem;
    const auto meioDeUmaData = [&] { return c.ha && bytesDe(c.rs.linha(), m_consulta.colunaData) == c.ultimaData; };
    while (meioDeUmaData() && !fatia.gasta(1)) {
        contarLinha();
        c.ha = c.rs.avancar();
    }
    if (!m_primeira->empty() && !meioDeUmaData()) {
        Pagina &primeira = *m_primeira;
        const auto data = [&](size_t i) { return primeira[i].celula(m_consulta.colunaData); };
        for (size_t i = 1, grupo = 0; i <= primeira.size(); ++i)
            if (i == primeira.size() || data(i) != data(grupo))
                ordenar(primeira, std::exchange(grupo, i), i);
        if (m_ancoras.size() > 1)
            primeira.resize(size_t(m_ancoras[1].linha));
        m_paginas.insert(0, std::move(primeira));
        m_recentes.push_back(0);
    }
    m_primeira.reset();
}

void ModeloListagem::contarLinha() {
    Contagem &c = *m_contagem;
    const Recordset &rs = c.rs.linha();
    ++c.lidasNaPagina;
    if (!aceita(rs))
        return;
    if (m_consulta.examinar)
        m_consulta.examinar(rs, c.ilegiveis);
    const QByteArrayView data = bytesDe(rs, m_consulta.colunaData);
    const bool igual = c.linhas > 0 && data == c.ultimaData;
    c.iguais = igual ? c.iguais + 1 : 0;
    if (!igual)
        c.ultimaData = data.toByteArray();
    if (m_ancoras.empty() || c.linhas - m_ancoras.back().linha >= linhasPorPagina || c.lidasNaPagina > lidasPorPagina) {
        m_ancoras.push_back({c.linhas, c.ultimaData, c.iguais});
        c.lidasNaPagina = 0;
    }
    if (m_primeira)
        m_primeira->push_back(lerLinha(rs));
    ++c.linhas;
}

// From the last row that was counted.
void ModeloListagem::retomarContagem() {
    Contagem &c = *m_contagem;
    c.rs = CursorListagem(m_consulta, QString::fromUtf8(c.ultimaData));
    c.largada = false;
    c.ha = c.rs.avancar();
    for (int iguais = c.linhas > 0 ? c.iguais + 1 : 0; c.ha && iguais > 0; c.ha = c.rs.avancar()) {
        if (bytesDe(c.rs.linha(), m_consulta.colunaData) != c.ultimaData)
            break;
        iguais -= aceita(c.rs.linha()) ? 1 : 0;
    }
}

ModeloListagem::Linha ModeloListagem::lerLinha(const Recordset &rs) const {
    constexpr qsizetype quaseSempre = 128;
    Linha linha;
    linha.bytes.reserve(quaseSempre);
    for (int i = 0; i < m_colunas; ++i) {
        // A number is a text of the system's own; the shown form of the others is made when it is asked for.
        if (rs.eNumero(i))
            linha.bytes.append(rs.texto(i).toUtf8());
        else
            linha.bytes.append(bytesDe(rs, i));
        linha.fins.append(int(linha.bytes.size()));
    }
    linha.numero = rs.inteiro(m_colunaDoNumero);
    if (m_consulta.colunaEditavel >= 0) {
        const auto guardar = [&](int c) {
            const bool numero = rs.eNumero(c);
            const auto especie = numero ? Guardado::Numero : rs.nulo(c) ? Guardado::Nulo : Guardado::Texto;
            linha.guardados.append({especie, numero ? rs.real(c) : 0});
        };
        for (const auto &[coluna, nome] : m_consulta.identidade)
            guardar(coluna);
        guardar(m_consulta.colunaEditavel);
    }
    return linha;
}

// Never beyond where the next page begins, also when rows have gone since they were counted.
ModeloListagem::Pagina ModeloListagem::lerPagina(size_t numero) const {
    const Ancora &ancora = m_ancoras.at(numero);
    const Ancora *proxima = numero + 1 < m_ancoras.size() ? &m_ancoras[numero + 1] : nullptr;
    const auto linhas = size_t((proxima ? proxima->linha : m_linhas) - ancora.linha);
    Pagina lida;
    lida.reserve(linhas);
    QByteArray data = ancora.data;
    size_t grupo = 0; // where the rows of the date begin
    size_t saltar = 0, daContagem = 0;
    const auto fecharGrupo = [&] {
        ordenar(lida, grupo, lida.size());
        if (proxima && data == proxima->data)
            lida.resize(std::min(lida.size(), grupo + size_t(proxima->iguais)));
        if (data == ancora.data)
            saltar = std::min(lida.size(), size_t(ancora.iguais));
        grupo = lida.size();
    };
    CursorListagem cursor(m_consulta, QString::fromUtf8(ancora.data));
    while (cursor.avancar()) {
        const Recordset &rs = cursor.linha();
        if (m_consulta.aceita && !m_consulta.aceita(rs))
            continue;
        if (const QByteArrayView desta = bytesDe(rs, m_consulta.colunaData); desta != data) {
            fecharGrupo();
            if (daContagem >= linhas + saltar || (proxima && desta < proxima->data))
                break;
            data = desta.toByteArray();
        }
        lida.push_back(lerLinha(rs));
        daContagem += posterior(lida.back()) ? 0 : 1;
    }
    fecharGrupo();
    lida.erase(lida.begin(), lida.begin() + qsizetype(saltar));
    retirarPosteriores(lida, linhas);
    return lida;
}

ModeloListagem::Pagina &ModeloListagem::pagina(size_t numero) const {
    if (const auto achada = m_paginas.find(numero); achada != m_paginas.end())
        return *achada;
    Pagina nova = lerPagina(numero);
    std::erase(m_recentes, numero);
    m_recentes.push_back(numero);
    if (m_recentes.size() > paginasGuardadas) {
        m_paginas.remove(m_recentes.front());
        m_recentes.erase(m_recentes.begin());
    }
    return *m_paginas.insert(numero, std::move(nova));
}

ModeloListagem::Linha *ModeloListagem::linha(int numero) const {
    const auto depois = std::upper_bound(m_ancoras.begin(), m_ancoras.end(), numero,
                                         [](int n, const Ancora &a) { return n < a.linha; });
    if (depois == m_ancoras.begin())
        return nullptr;
    const auto indice = size_t(depois - m_ancoras.begin()) - 1;
    Pagina &p = pagina(indice);
    const auto naPagina = size_t(numero - m_ancoras[indice].linha);
    return naPagina < p.size() ? &p[naPagina] : nullptr;
}

int ModeloListagem::rowCount(const QModelIndex &pai) const {
    return pai.isValid() ? 0 : m_linhas;
}

int ModeloListagem::columnCount(const QModelIndex &pai) const {
    return pai.isValid() ? 0 : m_colunas;
}

QVariant ModeloListagem::data(const QModelIndex &indice, int papel) const {
    if (papel == Qt::TextAlignmentRole)
        return int(indice.column() == m_consulta.colunaAEsquerda ? Qt::AlignLeft | Qt::AlignVCenter : Qt::AlignCenter);
    if (papel != Qt::DisplayRole && papel != Qt::EditRole && papel != Qt::ToolTipRole)
        return {};
    return Rotina("ModeloListagem.data", [&]() -> QVariant {
        const Linha *l = linha(indice.row());
        if (!l)
            return {};
        const QString guardado = QString::fromUtf8(l->celula(indice.column()));
        if (papel == Qt::EditRole) {
            if (indice.column() == m_consulta.colunaEditavel)
                m_aberta = {indice.row(), *l};
            return guardado;
        }
        return m_consulta.mostrado(papel == Qt::DisplayRole ? textoMostrado::linha(guardado) : guardado,
                                   indice.column());
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

notas::Linha ModeloListagem::comoMostrada(const Linha &l) const {
    const auto valor = [&l](const Guardado &g, int coluna) -> QVariant {
        if (g.especie == Guardado::Nulo)
            return {};
        if (g.especie == Guardado::Numero)
            return g.numero;
        const QString texto = QString::fromUtf8(l.celula(coluna));
        return texto.toUtf8() == l.celula(coluna) ? QVariant(texto)
                                                  : QVariant::fromValue(Cru{l.celula(coluna).toByteArray(), false});
    };
    notas::Linha linha{m_consulta.tabela, {}, {}, {}, l.numero};
    qsizetype i = 0;
    for (const auto &[coluna, nome] : m_consulta.identidade) {
        linha.colunas.append(nome);
        linha.valores.append(valor(l.guardados[i++], coluna));
    }
    linha.nota = valor(l.guardados[i], m_consulta.colunaEditavel);
    return linha;
}

// False when the note was not stored, and the user knows; nothing happens when it is the one that was shown.
bool ModeloListagem::setData(const QModelIndex &indice, const QVariant &valor, int papel) {
    if (papel != Qt::EditRole || indice.column() != m_consulta.colunaEditavel || m_consulta.colunaEditavel < 0)
        return false;
    return Rotina("ModeloListagem.setData", [&] {
        const Linha *l = m_aberta && m_aberta->first == indice.row() ? &m_aberta->second : linha(indice.row());
        if (!l)
            return false;
        const Linha mostrada = *l;
        const QString nota = valor.toString();
        if (nota == QString::fromUtf8(mostrada.celula(indice.column())))
            return true;
        // An open cursor sees the database as it was when it began, and the engine refuses to write from there once
        // another program has written since.
        if (m_contagem) {
            m_contagem->rs.fechar();
            m_contagem->largada = true;
        }
        const notas::Linha aGravar = comoMostrada(mostrada);
        const notas::Resultado resultado = notas::gravar(aGravar, nota);
        const bool gravada = resultado == notas::Resultado::Gravada;
        Linha *naGrelha = linha(indice.row());
        if (gravada && naGrelha && comoMostrada(*naGrelha) == aGravar) {
            naGrelha->setCelula(indice.column(), nota.toUtf8());
            naGrelha->guardados.last() = {Guardado::Texto, 0};
        } else { // what is held is behind the database: it is read again when it is looked at
            m_paginas.clear();
            m_recentes.clear();
        }
        if (gravada) {
            m_aberta.reset();
            Q_EMIT dataChanged(indice, indice);
        } else {
            notas::avisar(resultado, aGravar);
        }
        return gravada;
    });
}

Qt::ItemFlags ModeloListagem::flags(const QModelIndex &indice) const {
    const Qt::ItemFlags base = QAbstractTableModel::flags(indice);
    const bool editavel = m_consulta.colunaEditavel >= 0 && indice.column() == m_consulta.colunaEditavel;
    return editavel ? base | Qt::ItemIsEditable : base;
}
