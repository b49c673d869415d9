#include "demo/grandezas.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

namespace demonstracao {

namespace {

// By its table; it does not compile when there is none.
consteval const Grandeza &daCasa(std::u16string_view leituras) {
    return *std::ranges::find(grandezas::tabela, leituras, [](const Grandeza &g) {
        return std::u16string_view(g.leituras.utf16(), size_t(g.leituras.size()));
    });
}

// Scaled inputs are no quantity of the program, and are stored like one.
constexpr Grandeza sensUI{.sufixo = u"SensUI",
                          .nome = u"Sens-UI",
                          .nomeSingular = u"Sens-UI",
                          .unidade = {},
                          .decimais = 2,
                          .regra = {.letras = u"VA"},
                          .tipoDaUnidade = {},
                          .leituras = u"SensUI_Leituras",
                          .alarmes = {},
                          .valor = u"Leitura",
                          .baseFicheiros = {},
                          .icone = {}};

double meio(double v) {
    return std::round(v * 2) / 2;
}

// In the order in which their tables are filled.
constexpr std::array asMedidas{
    Medida{.grandeza = daCasa(u"Temperaturas"),
           .passo = 300,
           .porUnidade = 10,
           .valor = [](const Clima &c, Local local, int lugar,
                       const Momento &m) { return c.temperatura(local, lugar, m); },
           .limites =
               [](const PerfilLocal &p) {
                   return Extremos{p.maximo, p.minimo};
               },
           .importada = true,
           .captada = true},
    Medida{
        .grandeza = daCasa(u"Humidade"),
        .passo = 300,
        .porUnidade = 10,
        .valor = [](const Clima &c, Local local, int lugar, const Momento &m) { return c.humidade(local, lugar, m); },
        .limites =
            [](const PerfilLocal &p) {
                return Extremos{p.hrMax, p.hrMin};
            },
        .importada = true,
        .captada = true,
        .calibracao = u"HUMTMP",
        .limitesDaHumidade = true},
    Medida{.grandeza = daCasa(u"Pressao"),
           .passo = 900,
           .porUnidade = 100,
           .valor = [](const Clima &c, Local, int lugar, const Momento &m) { return c.pressao(lugar, m); },
           .limites =
               [](const PerfilLocal &) {
                   return Extremos{102.2, 100.5};
               }},
    Medida{.grandeza = daCasa(u"Pontoorvalho"),
           .passo = 900,
           .porUnidade = 10,
           .valor =
               [](const Clima &c, Local local, int lugar, const Momento &m) {
                   return pontoDeOrvalho(c.temperatura(local, lugar, m), c.humidade(local, lugar, m));
               },
           .limites =
               [](const PerfilLocal &p) {
                   const double humido = std::min(99.0, p.humidade + p.humidadeVariacao * 0.6);
                   return Extremos{meio(pontoDeOrvalho(p.maximo - 0.5, humido)),
                                   meio(pontoDeOrvalho(p.base - p.epoca - p.dia, p.humidade - p.humidadeVariacao))};
               }},
    Medida{
        .grandeza = sensUI,
        .passo = 900,
        .porUnidade = 100,
        .valor = [](const Clima &c, Local local, int lugar, const Momento &m) { return c.processo(local, lugar, m); },
        .limites =
            [](const PerfilLocal &p) {
                return Extremos{p.hrMax, p.hrMin};
            },
        .importada = true,
        .comEscala = true,
        .calibracao = u"SENSUI"},
};

} // namespace

std::span<const Medida> medidas() {
    return asMedidas;
}

const Medida *medidaDe(QChar letra) {
    const auto m =
        std::ranges::find_if(asMedidas, [&](const Medida &r) { return r.grandeza.regra.letras.contains(letra); });
    return m == asMedidas.end() ? nullptr : &*m;
}

} // namespace demonstracao
