#pragma once

#include "views/grandezas.h"
#include "views/textoComposto.h"

// The rules by which the views of a quantity are named where its row does not say otherwise.
namespace nomesDasVistas {

constexpr QStringView pull(Origem o) {
    return o == Origem::Pull ? QStringView(u"Pull") : QStringView();
}
constexpr TextoComposto ou(QStringView excepcao, const TextoComposto &regra) {
    return excepcao.isEmpty() ? regra : TextoComposto{excepcao};
}

constexpr TextoComposto tabela(const Grandeza &g, Origem o) {
    return o == Origem::Medias ? TextoComposto{g.medias} : TextoComposto{g.leituras, pull(o)};
}
constexpr TextoComposto formGrafico(const Grandeza &g, Origem o) {
    return ou(g.graficos[o].form, {u"frmGraficoPrincipal", g.sufixo, pull(o)});
}
constexpr TextoComposto formHistograma(const Grandeza &g, Origem o) {
    return ou(g.histogramas[o].form, {u"frmGrafico", g.sufixo, u"Histograma", pull(o)});
}
constexpr TextoComposto formListagem(const Grandeza &g, Origem o) {
    return o == Origem::Medias ? TextoComposto{u"frmListagemObservacoesMedias"}
                               : TextoComposto{u"frmListagemObservacoes", g.sufixo, pull(o)};
}
constexpr TextoComposto formAlarmes(const Grandeza &g) {
    return ou(g.listagemAlarmes.form, {u"frmListagemAlarmes", g.sufixo});
}
constexpr TextoComposto formPontos(const Grandeza &g, Origem o) {
    return o == Origem::Medias ? TextoComposto{u"frmOpccoesMediasPontos"}
                               : TextoComposto{u"frmOpccoes", g.sufixo, u"Pontos", pull(o)};
}

// Titles on the screen and on paper: what the view is, and of what.
constexpr TextoComposto titulo(QStringView vista, const Grandeza &g, Origem o, QStringView nome) {
    return o == Origem::Medias ? TextoComposto{vista, u"Médias de ", nome}
                               : TextoComposto{vista, nome, o == Origem::Pull ? g.fimPull : QStringView()};
}
constexpr TextoComposto tituloImpresso(QStringView vista, const Grandeza &g, Origem o, QStringView nome) {
    return o == Origem::Pull ? TextoComposto{vista, nome, g.fimPullImpresso} : titulo(vista, g, o, nome);
}
// Names of files: averages bear "Avg".
constexpr TextoComposto base(QStringView vista, const Grandeza &g, Origem o) {
    return {vista, o == Origem::Medias ? QStringView(u"Avg") : QStringView(), g.baseFicheiros, pull(o)};
}

// Keys of the branches in the menu, and of the states that show them.
constexpr TextoComposto ramoDosGraficos(const Grandeza &g) {
    return ou(g.menuGraficos.ramo.chave, {g.sufixo});
}
constexpr TextoComposto ramoDasListagens(const Grandeza &g) {
    return ou(g.menuListagens.ramo.chave, {g.sufixo, u"L"});
}

} // namespace nomesDasVistas
