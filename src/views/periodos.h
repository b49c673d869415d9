#pragma once

#include <QDate>
#include <QStringView>

#include <array>
#include <utility>

// Ranges of whole days that end today, for the menu beside the dates.
struct Periodo {
    QStringView chave; // name of the menu entry and key of its text
    QStringView texto;
    QDate (*inicio)(const QDate &hoje);
};

namespace periodos {

inline constexpr std::array<Periodo, 5> lista{{
    {u"mnuHoje", u"Hoje", [](const QDate &h) { return h; }},
    {u"mnuSeteDias", u"Últimos 7 dias", [](const QDate &h) { return h.addDays(-6); }},
    {u"mnuTrintaDias", u"Últimos 30 dias", [](const QDate &h) { return h.addDays(-29); }},
    {u"mnuEsteMes", u"Este mês", [](const QDate &h) { return QDate(h.year(), h.month(), 1); }},
    {u"mnuTrezeMeses", u"Últimos 13 meses", [](const QDate &h) { return h.addMonths(-13); }},
}};

} // namespace periodos
