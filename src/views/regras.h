#pragma once

#include <QStringView>

#include <array>

// Which sensors a view offers, by the text of their type.
struct RegraTipo {
    QStringView letras{};                // the last character of the trimmed type is one of these
    std::array<QStringView, 2> unicos{}; // or the whole type is one of these
    bool oQueSobra = false;              // or no other quantity claims the type (grandezas.h)

    bool aceita(QStringView tipo) const;
};

namespace regras {
// Scaled inputs have views of their own (devicestate).
inline constexpr RegraTipo sensUI{.unicos = {u"P 1250V", u"P 1250A"}};
} // namespace regras
