#pragma once

#include <QStringView>

#include <array>

// Which sensors a view offers, by the text of their type.
struct RegraTipo {
    char16_t letra = 0;                     // last character of the trimmed type
    bool contraria = false;                 // passes when the last character is any other
    std::array<QStringView, 4> excluidos{}; // whole types that never pass
    std::array<QStringView, 2> unicos{};    // when there are any, only these whole types pass

    bool aceita(QStringView tipo) const;
};

namespace regras {
inline constexpr RegraTipo temperatura{u'%', true, {u"P 1250V", u"P 1250A", u"P 1250K", u"P 1250D"}};
inline constexpr RegraTipo humidade{u'%', false, {}};
inline constexpr RegraTipo pressao{u'K', false, {}};
inline constexpr RegraTipo pontoDeOrvalho{u'D', false, {}};
} // namespace regras
