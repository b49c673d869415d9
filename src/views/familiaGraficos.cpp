#include "views/familiaGraficos.h"

#include "views/nomesDasVistas.h"

namespace {

using namespace nomesDasVistas;
using grandezas::quantasVistas;
using grandezas::vistas;

struct Textos {
    TextoComposto form, formPontos, tabela, unidade, tituloEixo, titulo, tituloImpressao, baseCSV, baseJPG;
};

constexpr auto textos = [] {
    constexpr QStringView grafico = u"Gráfico de ";
    std::array<Textos, quantasVistas> todos{};
    for (size_t i = 0; i < quantasVistas; ++i) {
        const auto &[g, o] = vistas[i];
        const NomesDeVista &excepcao = g->graficos[o];
        todos[i] = {.form = formGrafico(*g, o),
                    .formPontos = formPontos(*g, o),
                    .tabela = tabela(*g, o),
                    .unidade = {u" ", g->unidade},
                    .tituloEixo = ou(g->tituloEixo, {g->nome, u" - ", g->unidade}),
                    .titulo = ou(excepcao.titulo, titulo(grafico, *g, o, g->nome)),
                    .tituloImpressao = ou(excepcao.tituloImpressao, tituloImpresso(grafico, *g, o, g->nome)),
                    .baseCSV = ou(excepcao.baseCSV, base(u"Graph", *g, o)),
                    .baseJPG = ou(excepcao.baseJPG, base(u"Graph", *g, o))};
    }
    return todos;
}();

constexpr auto pontos = [] {
    std::array<MembroPontos, quantasVistas> todos{};
    for (size_t i = 0; i < quantasVistas; ++i) {
        const auto &[g, o] = vistas[i];
        todos[i] = {.form = textos[i].formPontos,
                    .grafico = textos[i].form,
                    .tabela = textos[i].tabela,
                    .valor = {g->etiqueta.nome, g->etiqueta.omissao.isEmpty() ? g->nomeSingular : g->etiqueta.omissao},
                    .seccaoDe = o == Origem::Pull ? g->textosDosPontosPull : QStringView()};
    }
    return todos;
}();

constexpr auto membros = [] {
    std::array<MembroGrafico, quantasVistas> todos{};
    for (size_t i = 0; i < quantasVistas; ++i) {
        const auto &[g, o] = vistas[i];
        todos[i] = {.form = textos[i].form,
                    .tabela = {textos[i].tabela, g->valor},
                    .regra = &g->regra,
                    .unidade = textos[i].unidade,
                    .decimais = g->decimais,
                    .tituloEixo = textos[i].tituloEixo,
                    .titulo = textos[i].titulo,
                    .tituloImpressao = textos[i].tituloImpressao,
                    .baseCSV = textos[i].baseCSV,
                    .baseJPG = textos[i].baseJPG,
                    .pontos = &pontos[i],
                    .eixo = g->eixo,
                    .chaveTitulo = g->graficos[o].chaveTitulo,
                    .formMedia = o == Origem::Leituras ? g->formMedia : QStringView(u"frmGraficoPrincipal"),
                    .casas = o == Origem::Medias ? g->decimais : -1};
    }
    return todos;
}();

} // namespace

std::span<const MembroGrafico> familiaGraficos() {
    return membros;
}

const MembroGrafico *membroGrafico(QStringView form) {
    for (const MembroGrafico &membro : membros)
        if (membro.form == form)
            return &membro;
    return nullptr;
}
