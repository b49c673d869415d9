#include "views/cursorListagem.h"

#include "core/literais.h"
#include "data/ligacao.h"

#include <algorithm>
#include <span>

namespace {

constexpr size_t maximoDeRamos = 100; // the engine merges 500 at the most, and takes its time over that many

Recordset consultar(const ConsultaListagem &consulta, std::span<const ConsultaListagem::Ramo> ramos,
                    const QString &desde) {
    QStringList selecoes;
    QVariantList valores;
    for (const ConsultaListagem::Ramo &ramo : ramos) {
        QString sql = u"SELECT " + consulta.colunas + u" FROM " + ramo.tabelaOnde;
        valores += ramo.valores;
        if (!ramo.inicio.isEmpty()) {
            sql += u" AND " + consulta.data + u" >= ?";
            valores += ramo.inicio;
        }
        // One upper bound only: with two, the engine may start from the wrong one and skip a million rows.
        const QString &fim = desde.isEmpty() || (!ramo.fim.isEmpty() && ramo.fim < desde) ? ramo.fim : desde;
        if (!fim.isEmpty()) {
            sql += u" AND " + consulta.data + u" <= ?";
            valores += fim;
        }
        selecoes.append(sql);
    }
    const QString ordem = u" ORDER BY %1 DESC"_s.arg(consulta.colunaData + 1);
    return cnBD().consultar(selecoes.join(u" UNION ALL "_s) + ordem, valores);
}

// As the engine orders them: nothing, numbers, texts.
int comparar(const Recordset &a, const Recordset &b, int coluna) {
    const auto especie = [coluna](const Recordset &rs) { return rs.nulo(coluna) ? 0 : rs.eNumero(coluna) ? 1 : 2; };
    const int deA = especie(a);
    const int deB = especie(b);
    if (deA != deB || deA == 0)
        return deA - deB;
    if (deA == 1)
        return a.real(coluna) < b.real(coluna) ? -1 : a.real(coluna) > b.real(coluna) ? 1 : 0;
    int tamanhoA = 0;
    int tamanhoB = 0;
    const char *bytesA = a.utf8(coluna, tamanhoA);
    const char *bytesB = b.utf8(coluna, tamanhoB);
    return QByteArrayView(bytesA, tamanhoA).compare(QByteArrayView(bytesB, tamanhoB));
}

} // namespace

CursorListagem::CursorListagem(const ConsultaListagem &consulta, const QString &desde)
    : m_colunaData(consulta.colunaData) {
    const std::span todos(consulta.ramos.cbegin(), consulta.ramos.cend());
    for (size_t i = 0; i < todos.size(); i += maximoDeRamos)
        m_cursores.push_back(consultar(consulta, todos.subspan(i, std::min(maximoDeRamos, todos.size() - i)), desde));
}

bool CursorListagem::depois(size_t a, size_t b) const {
    return comparar(m_cursores[a], m_cursores[b], m_colunaData) < 0;
}

bool CursorListagem::avancar() {
    const auto ordem = [this](size_t a, size_t b) { return depois(a, b); };
    if (!m_comecado) {
        m_comecado = true;
        for (size_t i = 0; i < m_cursores.size(); ++i)
            if (m_cursores[i].avancar())
                m_fila.push_back(i);
        std::ranges::make_heap(m_fila, ordem);
    } else if (!m_fila.empty()) {
        std::ranges::pop_heap(m_fila, ordem);
        if (m_cursores[m_fila.back()].avancar())
            std::ranges::push_heap(m_fila, ordem);
        else
            m_fila.pop_back();
    }
    return !m_fila.empty();
}

void CursorListagem::fechar() {
    for (Recordset &cursor : m_cursores)
        cursor.fechar();
    m_fila.clear();
}
