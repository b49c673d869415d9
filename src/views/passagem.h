#pragma once

#include "data/dialecto.h"
#include "data/recordset.h"
#include "views/leituras.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

// The rows of a load by date.
Recordset linhasPorData(const PedidoLeituras &pedido, const QString &colunas);

// A walk over the rows of a load by date, those of one second in the order in which they were written. They come out of
// the index by their values; the number that tells their order costs a fifth of the reading, so it is asked for only
// from the first second on that has two of them.
class Passagem {
public:
    // `colunas`: what is selected, the date first.
    Passagem(const PedidoLeituras &pedido, const QString &colunas) : m_pedido(pedido), m_colunas(colunas) {}

    // `ler(rs, deFora)` makes a reading of a row, or nothing; it tells deFora(text) what it cannot read.
    template <typename Ler>
    void percorrer(const Ler &ler, const AoLer &aoLer);

private:
    using Numerada = std::pair<qint64, Leitura>;

    // Those before this date have been passed for good; the others may be met again.
    void relatarAntesDe(const QString &data);
    template <typename Ler>
    bool semNumeros(const Ler &ler, const AoLer &aoLer);
    template <typename Ler>
    void comNumeros(const Ler &ler, const AoLer &aoLer);
    static void dar(std::vector<Numerada> &doSegundo, const AoLer &aoLer);

    PedidoLeituras m_pedido;
    QString m_colunas;
    std::string m_desde;                               // date of the last reading, as stored
    std::vector<std::pair<QString, QString>> m_deFora; // date and text
};

template <typename Ler>
void Passagem::percorrer(const Ler &ler, const AoLer &aoLer) {
    if (!semNumeros(ler, aoLer))
        comNumeros(ler, aoLer);
}

// False when a second with two readings was met; none of it has been given then.
template <typename Ler>
bool Passagem::semNumeros(const Ler &ler, const AoLer &aoLer) {
    std::optional<Leitura> ultima; // another one of its second may follow
    Recordset rs = linhasPorData(m_pedido, m_colunas);
    const auto deFora = [&](const QString &texto) { m_deFora.emplace_back(rs.texto(0), texto); };
    while (rs.avancar()) {
        const std::optional<Leitura> leitura = ler(rs, deFora);
        if (!leitura)
            continue;
        if (ultima) {
            if (ultima->data == leitura->data) {
                relatarAntesDe(QString::fromStdString(m_desde));
                m_deFora.clear();
                return false;
            }
            aoLer(*ultima);
        }
        ultima = leitura;
        m_desde = rs.utf8(0);
        if (!m_deFora.empty())
            relatarAntesDe(QString::fromStdString(m_desde));
    }
    relatarAntesDe({});
    if (ultima)
        aoLer(*ultima);
    return true;
}

template <typename Ler>
void Passagem::comNumeros(const Ler &ler, const AoLer &aoLer) {
    std::vector<Numerada> doSegundo;
    m_pedido.intervalo.inicio = QString::fromStdString(m_desde);
    Recordset rs = linhasPorData(m_pedido, m_colunas + u", "_s + dialecto::ordem);
    const auto deFora = [&](const QString &texto) { m_pedido.deFora(rs.texto(0), texto); };
    const int numero = rs.colunas() - 1;
    while (rs.avancar()) {
        const std::optional<Leitura> leitura = ler(rs, deFora);
        if (!leitura)
            continue;
        if (!doSegundo.empty() && doSegundo.back().second.data != leitura->data)
            dar(doSegundo, aoLer);
        doSegundo.emplace_back(rs.inteiro(numero), *leitura);
    }
    dar(doSegundo, aoLer);
}
