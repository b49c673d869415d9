#pragma once

#include <QStringView>

#include <array>
#include <initializer_list>

// A text put together while compiling. Views of one that stands in a constant table live as long as the program.
class TextoComposto {
public:
    constexpr TextoComposto() = default;
    constexpr TextoComposto(std::initializer_list<QStringView> partes) {
        for (const QStringView parte : partes)
            for (qsizetype i = 0; i < parte.size(); ++i)
                m_letras.at(size_t(m_tamanho++)) = parte.utf16()[i];
    }
    constexpr operator QStringView() const { return QStringView(m_letras.data(), m_tamanho); }

private:
    std::array<char16_t, 96> m_letras{};
    qsizetype m_tamanho = 0;
};
