#include "views/familiaHistogramas.h"

#include "views/nomesDasVistas.h"

namespace {

using namespace nomesDasVistas;
using grandezas::quantasVistas;
using grandezas::vistas;

struct Textos {
    TextoComposto form, tabela, titulo, tituloImpressao, baseJPG;
};

constexpr auto textos = [] {
    constexpr QStringView histograma = u"Histograma de ";
    std::array<Textos, quantasVistas> todos{};
    for (size_t i = 0; i < quantasVistas; ++i) {
        const auto &[g, o] = vistas[i];
        const NomesDeVista &excepcao = g->histogramas[o];
        todos[i] = {.form = formHistograma(*g, o),
                    .tabela = tabela(*g, o),
                    .titulo = ou(excepcao.titulo, titulo(histograma, *g, o, g->nome)),
                    .tituloImpressao = ou(excepcao.tituloImpressao, tituloImpresso(histograma, *g, o, g->nome)),
                    .baseJPG = ou(excepcao.baseJPG, base(u"GraphHist", *g, o))};
    }
    return todos;
}();

constexpr auto membros = [] {
    std::array<MembroHistograma, quantasVistas> todos{};
    for (size_t i = 0; i < quantasVistas; ++i) {
        const auto &[g, o] = vistas[i];
        todos[i] = {.form = textos[i].form,
                    .tabela = {textos[i].tabela, g->valor},
                    .regra = &g->regra,
                    .titulo = textos[i].titulo,
                    .tituloImpressao = textos[i].tituloImpressao,
                    .baseJPG = textos[i].baseJPG,
                    .tituloEixo = g->eixoDoHistograma};
    }
    return todos;
}();

} // namespace

std::span<const MembroHistograma> familiaHistogramas() {
    return membros;
}
