#pragma once

#include <QtTest>

// A wait ends with what is waited for; the bound ends a test that fails, however slow the machine.
#undef QTRY_VERIFY
#undef QTRY_COMPARE
#define QTRY_VERIFY(expressao) QTRY_VERIFY_WITH_TIMEOUT((expressao), 60000)
#define QTRY_COMPARE(expressao, esperado) QTRY_COMPARE_WITH_TIMEOUT((expressao), (esperado), 60000)

// The rows of a data-driven test, each one call:
//
//     const Tabela<QString, int> caso("texto", "numero");
//     caso("empty", {}, 0);
template <typename... Colunas>
class Tabela {
public:
    template <typename... Nomes>
    explicit Tabela(const Nomes &...nomes) {
        static_assert(sizeof...(Nomes) == sizeof...(Colunas));
        (QTest::addColumn<Colunas>(nomes), ...);
    }
    void operator()(const char *nome, const Colunas &...celulas) const {
        QTestData &linha = QTest::newRow(nome);
        (linha << ... << celulas);
    }
};
