#include "shell/menu.h"

#include "views/nomesDasVistas.h"

#include <algorithm>

namespace {

// The branches of the measured quantities ---------------------------------------------------------------------

using grandezas::origens;

struct TextosDeEntrada {
    TextoComposto pai, chave, chaveLingua, omissao, form;
    bool comEstado = false;
    QStringView icone{};
};

// Entries in the order of building: what has a table for each origin comes once for each that there is.
class Ramos {
public:
    static constexpr size_t maximo = 16 * std::size(grandezas::tabela);

    constexpr void juntar(const TextosDeEntrada &entrada) { m_entradas.at(m_quantas++) = entrada; }
    constexpr size_t quantas() const { return m_quantas; }
    constexpr const TextosDeEntrada &operator[](size_t i) const { return m_entradas[i]; }

private:
    std::array<TextosDeEntrada, maximo> m_entradas{};
    size_t m_quantas = 0;
};

constexpr TextoComposto ou(QStringView excepcao, const TextoComposto &regra) {
    return nomesDasVistas::ou(excepcao, regra);
}

constexpr QStringView nomeDaOrigem(Origem o, QStringView leituras, QStringView medias) {
    return o == Origem::Leituras ? leituras : o == Origem::Medias ? medias : QStringView(u"Pull");
}

constexpr void juntarGraficos(Ramos &ramos, const Grandeza &g) {
    const auto &m = g.menuGraficos;
    const TextoComposto ramo = nomesDasVistas::ramoDosGraficos(g);
    const QStringView prefixo = m.prefixo.isEmpty() ? g.sufixo : m.prefixo;
    ramos.juntar({{u"Graficos"},
                  ramo,
                  ou(m.ramo.chaveLingua, {u"mnuGraficos", g.sufixo}),
                  ou(m.ramo.omissao, {g.nome}),
                  {},
                  true,
                  g.icone});
    for (const Origem o : origens)
        if (const QStringView nome = nomeDaOrigem(o, u"Leituras", u"Medias"); g.tem(o))
            ramos.juntar({ramo,
                          {prefixo, nome},
                          {m.prefixoLingua, nome},
                          {nomeDaOrigem(o, u"Leituras totais", u"Médias")},
                          nomesDasVistas::formGrafico(g, o)});
    const TextoComposto histograma{prefixo, u"Histograma"};
    ramos.juntar({ramo, histograma, {m.prefixoLingua, u"Histograma"}, {u"Histogramas"}, {}, false, u"histograma"});
    for (const Origem o : origens)
        if (const QStringView nome = nomeDaOrigem(o, u"Leituras", u"Media"); g.tem(o)) {
            const NomesDeEntrada excepcao = o == Origem::Leituras ? m.histogramaLeituras : NomesDeEntrada();
            ramos.juntar({histograma,
                          ou(excepcao.chave, {histograma, nome}),
                          ou(excepcao.chaveLingua, {m.prefixoLingua, u"Histograma", nome}),
                          {nomeDaOrigem(o, u"Leituras", u"Média")},
                          nomesDasVistas::formHistograma(g, o)});
        }
}

constexpr void juntarListagens(Ramos &ramos, const Grandeza &g) {
    const auto &m = g.menuListagens;
    const TextoComposto ramo = nomesDasVistas::ramoDasListagens(g);
    ramos.juntar({{u"Listagens"},
                  ramo,
                  ou(m.ramo.chaveLingua, {u"mnuListagens", g.sufixo}),
                  ou(m.ramo.omissao, {g.nome}),
                  {},
                  true,
                  g.icone});
    for (const Origem o : origens)
        if (const NomesDeEntrada &excepcao = m.listagens[o]; g.tem(o))
            ramos.juntar({ramo,
                          ou(excepcao.chave, {g.sufixo, u"Listagem", nomeDaOrigem(o, {}, u"Medias")}),
                          ou(excepcao.chaveLingua, {u"mnuListagensHumidade", nomeDaOrigem(o, u"Humidades", u"Medias")}),
                          {nomeDaOrigem(o, u"Leituras totais", u"Médias")},
                          nomesDasVistas::formListagem(g, o)});
    ramos.juntar({ramo, ou(m.alarmes.chave, {g.sufixo, u"ListagemAlarmes"}),
                  ou(m.alarmes.chaveLingua, {u"mnuListagens", g.sufixo, u"Alarmes"}),
                  ou(m.alarmes.omissao, {u"Alarmes ", g.nomeSingular}), nomesDasVistas::formAlarmes(g)});
}

template <auto Juntar>
constexpr Ramos deTodas() {
    Ramos ramos;
    for (const Grandeza &g : grandezas::tabela)
        Juntar(ramos, g);
    return ramos;
}
constexpr Ramos ramosDosGraficos = deTodas<juntarGraficos>();
constexpr Ramos ramosDasListagens = deTodas<juntarListagens>();

// The whole tree, in order of building ------------------------------------------------------------------------

constexpr EntradaMenu atePrimeiraGrandeza[] = {
    {u"", u"P2251", u"P2251", u"Descarregar", false, u"", u"descarregar", AccaoMenu::Form},
    {u"P2251", u"DLoggerDownload", u"mnuDataLoggerDWN", u"Registador", false, u"frmDS1921", u"registador",
     AccaoMenu::Logger},
    {u"P2251", u"Descarregar2251", u"P2251D", u"Descarregar 2251", false, u"frmDescarregar2251", u"descarregar",
     AccaoMenu::Form},
    {u"", u"Graficos", u"mnuGraficos", u"Gráficos", true, u"", u"graficos", AccaoMenu::Form},
};
constexpr EntradaMenu ateAsListagens[] = {
    {u"Graficos", u"SensUi", u"mnuGraficosSensUi", u"Sens-Ui", true, u"", u"sensui", AccaoMenu::Form},
    {u"SensUi", u"SensUiLeituras", u"mnuGraficosSensUiLeituras", u"Leituras totais", false, u"frmGraficoSensUI", u"",
     AccaoMenu::Form},
    {u"SensUi", u"SensUiPull", u"mnuGraficosSensUiPull", u"Pull", false, u"frmGraficoSensUIPull", u"", AccaoMenu::Form},
    {u"SensUi", u"SensUiHistograma", u"mnuGraficosSensUiHistograma", u"Histogramas", false, u"", u"histograma",
     AccaoMenu::Form},
    {u"SensUiHistograma", u"SensUiHistogramaLeituras", u"mnuGraficosSensUiHistogramaLeituras", u"Leituras", false,
     u"frmGraficoHistogramaSensUI", u"", AccaoMenu::Form},
    {u"SensUiHistograma", u"SensUiHistogramaPull", u"mnuGraficosSensUiHistogramaPull", u"Pull", false,
     u"frmGraficoHistogramaSensUIPull", u"", AccaoMenu::Form},
    {u"Graficos", u"Registador", u"mnuGraficosRegistador", u"Registadores", true, u"", u"registador", AccaoMenu::Form},
    {u"Registador", u"GrafRegistadores", u"mnuGraficosRegistadorRegist", u"Registador", false, u"frmGraficoLoggers",
     u"", AccaoMenu::Form},
    {u"Registador", u"RegistadorHistograma", u"mnuRegistadorHistograma", u"Histogramas", false, u"", u"histograma",
     AccaoMenu::Form},
    {u"RegistadorHistograma", u"RegistadorHistogramaLeituras", u"mnuRegistadorHistogramaLeituras", u"Leituras", false,
     u"frmHistogramaLoggers", u"", AccaoMenu::Form},
    {u"Graficos", u"mnuInputsOutputs", u"mnuInputsOutputs", u"Inputs/Outputs", true, u"", u"entradas", AccaoMenu::Form},
    {u"mnuInputsOutputs", u"mnuInputsOutputsInputs", u"mnuInputsOutputsInputs", u"Inputs", true, u"frmGraficoInputs",
     u"", AccaoMenu::Form},
    {u"mnuInputsOutputs", u"mnuInputsOutputsOutputs", u"mnuInputsOutputsOutputs", u"Outputs", true,
     u"frmGraficoOutputs", u"", AccaoMenu::Form},
    {u"Graficos", u"mnuCondicoes", u"mnuCondicoes", u"Condições", true, u"", u"condicoes", AccaoMenu::Form},
    {u"mnuCondicoes", u"mnuCondicoesGrupCond", u"mnuCondicoesGrupCond", u"Grupo de condições", true,
     u"frmGraficoREGISTO_C_GroupCond", u"", AccaoMenu::Form},
    {u"mnuCondicoes", u"mnuCondicoesInputs", u"mnuCondicoesInputs", u"Inputs", true, u"frmGraficoREGISTO_C_Inputs", u"",
     AccaoMenu::Form},
    {u"mnuCondicoes", u"mnuCondicoesSensores", u"mnuCondicoesSensores", u"Sensores", true,
     u"frmGraficoREGISTO_C_Sensores", u"", AccaoMenu::Form},
    {u"", u"Listagens", u"mnuListagens", u"Listagens", true, u"", u"listagens", AccaoMenu::Form},
};
constexpr EntradaMenu ateAoFim[] = {
    {u"Listagens", u"ListagensSensUI", u"mnuListagensSensUi", u"Sens-Ui", true, u"", u"sensui", AccaoMenu::Form},
    {u"ListagensSensUI", u"ListagensSensUILeituras", u"mnuListagensSensUiLeituras", u"Leituras totais", false,
     u"frmListagemObservacoesSensUI", u"", AccaoMenu::Form},
    {u"ListagensSensUI", u"ListagemSensUIPull", u"mnuListagensSensUiPull", u"Pull", false,
     u"frmListagemObservacoesSensUIPull", u"", AccaoMenu::Form},
    {u"ListagensSensUI", u"ListagensSensUIAlarmesLeituras", u"mnuListagensSensUiAlarmesLeituras", u"Alarmes Leituras",
     false, u"frmListagemAlarmesSensUi", u"", AccaoMenu::Form},
    {u"Listagens", u"Registadores", u"mnuRegistadores", u"Registadores", true, u"", u"registador", AccaoMenu::Form},
    {u"Registadores", u"RegistadoresLeituras", u"mnuRegistadoresLeituras", u"Leituras", false,
     u"frmListagemObservacoesLogger", u"", AccaoMenu::Form},
    {u"Registadores", u"RegistadoresAlarmes", u"mnuRegistadoresAlarmesLeituras", u"Alarmes Leituras", false,
     u"frmListagemAlarmesLogger", u"", AccaoMenu::Form},
    {u"Listagens", u"Alarmes", u"mnuAlarm", u"Alarmes", true, u"", u"alarmes", AccaoMenu::Form},
    {u"Alarmes", u"ListagensAlarmes", u"mnuAlarmList", u"Listar", false, u"frmListagemAlarmesMask", u"",
     AccaoMenu::Form},
    {u"", u"RegistadorControl", u"mnuListagensRegistadores", u"Registadores", true, u"", u"registador",
     AccaoMenu::Form},
    {u"RegistadorControl", u"RegistadorControlMissoes", u"mnuListagensMissoes", u"Missoes", false,
     u"frmListagemLoggers", u"missoes", AccaoMenu::Form},
    {u"", u"Geral", u"mnuGeral", u"Geral", false, u"", u"geral", AccaoMenu::Form},
    {u"Geral", u"Sensores", u"mnuGeralSensores", u"Sensores", false, u"frmPassWord", u"sensores", AccaoMenu::Sensores},
    {u"Geral", u"Configuracoes", u"mnuListagensConfiguracoes", u"Configurações", false, u"frmConfiguracoes", u"geral",
     AccaoMenu::Configuracoes},
    {u"Geral", u"Ajuda", u"mnuGeralAjuda", u"Procurar adaptador", false, u"frmAjuda", u"procurar", AccaoMenu::Form},
};

constexpr auto tabela = [] {
    constexpr size_t quantas = std::size(atePrimeiraGrandeza) + ramosDosGraficos.quantas() + std::size(ateAsListagens) +
                               ramosDasListagens.quantas() + std::size(ateAoFim);
    std::array<EntradaMenu, quantas> todas{};
    auto onde = todas.begin();
    const auto ramos = [&onde](const Ramos &r) {
        for (size_t i = 0; i < r.quantas(); ++i)
            *onde++ = {r[i].pai,       r[i].chave, r[i].chaveLingua, r[i].omissao,
                       r[i].comEstado, r[i].form,  r[i].icone,       AccaoMenu::Form};
    };
    onde = std::ranges::copy(atePrimeiraGrandeza, onde).out;
    ramos(ramosDosGraficos);
    onde = std::ranges::copy(ateAsListagens, onde).out;
    ramos(ramosDasListagens);
    std::ranges::copy(ateAoFim, onde);
    return todas;
}();

} // namespace

std::span<const EntradaMenu> menuPrincipal() {
    return tabela;
}
