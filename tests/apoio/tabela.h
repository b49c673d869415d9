#pragma once

#include <QTest>

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
