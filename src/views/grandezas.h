#pragma once

#include "views/regras.h"

#include <QStringView>

#include <array>

// Where the readings of a quantity come from: each is a table and a set of views of its own.
enum class Origem { Leituras, Medias, Pull };
template <typename T>
struct PorOrigem {
    T leituras{};
    T pull{};
    T medias{};
    constexpr const T &operator[](Origem o) const {
        return o == Origem::Leituras ? leituras : o == Origem::Pull ? pull : medias;
    }
};

// How the left axis is fitted once there is data.
enum class EixoEsquerdo { Folga, Percentagem, Estados };

// What a quantity takes away from temperature, which measures with whatever no other claims: every sensor of its
// letter, or only channels whose whole type is tipoDaUnidade.
enum class Reclama { ALetra, SoOTipoDaUnidade };

// What the installations call a view otherwise than the rule does. Empty: as the rule does.
struct NomesDeVista {
    QStringView form{};
    QStringView titulo{};
    QStringView tituloImpressao{};
    QStringView chaveTitulo{};
    QStringView baseCSV{};
    QStringView baseJPG{};
};

// The head of the column of values: the key of its text, the text, and that on paper.
struct CabecalhoValor {
    QStringView chave = u"TempF.Caption";
    QStringView omissao{};
    QStringView rotulo{};
};

// Heads of an alarm listing: maximum, minimum, value. Empty texts: made from the unit.
struct CabecalhosAlarme {
    std::array<QStringView, 3> chaves{u"maxF.Caption", u"MinF.Caption", u"TempF.Caption"};
    std::array<QStringView, 3> omissoes{u"", u"", u""};
    std::array<QStringView, 6> chavesRotulos{u"L1", u"L2", u"L3", u"L4", u"L5", u"L6"};
    std::array<QStringView, 3> rotulos{u"", u"", u""};
};

// The name and the caption key of the label before a value.
struct EtiquetaValor {
    QStringView nome = u"lblTemp";
    QStringView omissao{}; // empty: the singular name
};

// A menu entry: its own key, the key of its text in the language files, and the text.
struct NomesDeEntrada {
    QStringView chave{};
    QStringView chaveLingua{};
    QStringView omissao{};
};

// One measured quantity. A row says what cannot be told by rule; every view, menu entry and file name is made from it
// (familia*.cpp, shell/menu.cpp).
struct Grandeza {
    QStringView sufixo;       // in the names of forms and entries
    QStringView nome;         // in titles
    QStringView nomeSingular; // of one reading
    QStringView unidade;
    int decimais;              // of a shown average
    RegraTipo regra;           // which sensors
    QStringView tipoDaUnidade; // whole type of the network units' channels
    Reclama reclama = Reclama::ALetra;
    QStringView leituras; // tables; that of pull readings is called the same with "Pull" behind
    QStringView medias{}; // empty: there are none
    QStringView alarmes;
    QStringView valor; // column
    EixoEsquerdo eixo = EixoEsquerdo::Folga;
    QStringView baseFicheiros;
    QStringView icone;
    PorOrigem<bool> notaNaGrelha{true, true, true}; // the listing lets notes be written in place

    // From here on: what the installations have otherwise than by rule, each with its reason in the table.
    QStringView tituloEixo{};
    QStringView eixoDoHistograma{};
    QStringView fimPull = u" - Ler"; // behind the titles of pull views
    QStringView fimPullImpresso = u" - Ler";
    PorOrigem<NomesDeVista> graficos{};
    PorOrigem<NomesDeVista> histogramas{};
    PorOrigem<NomesDeVista> listagens{};
    NomesDeVista listagemAlarmes{};
    QStringView textosDosPontosPull{};              // form whose texts the points of the pull chart use
    QStringView formMedia = u"frmGraficoPrincipal"; // whose section holds the text of the average
    EtiquetaValor etiqueta{};
    CabecalhoValor cabecalho{};
    CabecalhosAlarme cabecalhosAlarme{};
    QStringView gruposDasListagens{}; // form whose section names the row of all sensors
    QStringView gruposDosAlarmes{};
    QStringView lugarDosAlarmes{}; // form whose saved place the alarm listing shares
    bool filtroDeMedias = false;   // the listing of readings can show the averaged ones alone

    struct {
        NomesDeEntrada ramo{};
        QStringView prefixo{};                              // of the keys of the branch's entries
        QStringView prefixoLingua = u"mnuGraficosHumidade"; // the words are those of the humidity's entries
        NomesDeEntrada histogramaLeituras{};
    } menuGraficos{};
    struct {
        NomesDeEntrada ramo{};
        PorOrigem<NomesDeEntrada> listagens{};
        NomesDeEntrada alarmes{};
    } menuListagens{};

    constexpr bool tem(Origem o) const { return o != Origem::Medias || !medias.isEmpty(); }
};

namespace grandezas {

inline constexpr Origem origens[] = {Origem::Leituras, Origem::Medias, Origem::Pull};

// Humidity lent its texts to the quantities that came later; the keys of their own that stand here are as the language
// files were written.
inline constexpr Grandeza tabela[] = {
    {
        .sufixo = u"Temp",
        .nome = u"Temperaturas",
        .nomeSingular = u"Temperatura",
        .unidade = u"°C",
        .decimais = 2,
        .regra = {.letras = u"CT05E", .oQueSobra = true},
        .tipoDaUnidade = u"P 1250C",
        .leituras = u"Temperaturas",
        .medias = u"Medias",
        .alarmes = u"Alarmes",
        .valor = u"Temperatura",
        .baseFicheiros = u"Temp",
        .icone = u"temperatura",
        .notaNaGrelha = {.leituras = false, .pull = true, .medias = true},
        // The oldest quantity: its names were given before there was a rule, those of the averages first.
        .tituloEixo = u"Temperaturas °C",
        .fimPull = u" Pull",
        .fimPullImpresso = {},
        .graficos = {.medias = {.form = u"frmGraficoPrincipal", .baseCSV = u"AvgTemp"}},
        .histogramas = {.leituras = {.form = u"frmGraficoPrincipalHistogramaTemp"},
                        .pull = {.form = u"frmGraficoPrincipalHistogramaPull"},
                        .medias = {.form = u"frmGraficoPrincipalHistograma"}},
        .listagens = {.pull = {.titulo = u"Listagem de Observações de Temperaturas Pull",
                               .tituloImpressao = u"Listagem de Descrições Médias de Temperatura"},
                      .medias = {.titulo = u"Listagem de Observações de Médias de Temperatura",
                                 .tituloImpressao = u"Listagem de Descrições Médias de Temperatura"}},
        .listagemAlarmes = {.form = u"frmListagemAlarmesMediasTemp",
                            .titulo = u"Listagem de Alarmes das Médias de Temperatura"},
        .cabecalho = {.omissao = u"Temperatura (°C)", .rotulo = u"Temp °C"},
        .cabecalhosAlarme = {.omissoes = {u"Maximo (°C)", u"Minimo (°C)", u"Temperatura (°C)"},
                             .rotulos = {u"Max °C", u"Min °C", u"Temp °C"}},
        .menuGraficos = {.ramo = {u"Temperaturas", u"mnuGraficosTemperaturas", {}},
                         .prefixo = u"Tmp",
                         .prefixoLingua = u"mnuGraficosTemperaturas",
                         .histogramaLeituras = {u"TmpHistogramaTemp", u"mnuGraficosTemperaturasHistogramaTemp", {}}},
        .menuListagens = {.ramo = {u"Temperatura", u"mnuListagensTemperatura", {}},
                          .listagens = {.leituras = {u"ListagensTemperaturas", u"mnuListagensTemperaturaLeituras", {}},
                                        .pull = {u"ListagemTempPull", u"mnuListagensTemperaturaPull", {}},
                                        .medias = {u"Medias", u"mnuListagensTemperaturaMedias", {}}},
                          .alarmes = {u"AlarmesMedias", u"mnuListagensTemperaturaAlarmesMedias", u"Alarmes médias"}},
    },
    {
        .sufixo = u"Humidade",
        .nome = u"Humidade",
        .nomeSingular = u"Humidade",
        .unidade = u"%",
        .decimais = 2,
        .regra = {.letras = u"%"},
        .tipoDaUnidade = u"P 1250%",
        .leituras = u"Humidade",
        .alarmes = u"AlarmesHum",
        .valor = u"Percentagem",
        .eixo = EixoEsquerdo::Percentagem,
        .baseFicheiros = u"Hum",
        .icone = u"humidade",
        .tituloEixo = u"R/H %",
        .eixoDoHistograma = u"Temperaturas °C", // made from the histogram of temperatures, title and all
        .fimPull = u" Pull",
        .fimPullImpresso = {},
        .graficos = {.leituras = {.titulo = u"Gráfico Humidade"},
                     .pull = {.titulo = u"Gráfico Humidade Pull",
                              .chaveTitulo =
                                  u"frmGraficoPrincipalHumidayruredePull.Caption"}}, // so in the language files
        .listagens = {.leituras = {.titulo = u"Listagem de Observações de Médias de Humidade"},
                      .pull = {.titulo = u"Listagem de Observações de Humidades Pull"}},
        .listagemAlarmes = {.form = u"frmListagemAlarmesHum"},
        .textosDosPontosPull = u"frmOpccoesHumidadePontos",
        .etiqueta = {.nome = u"lblHum"},
        .cabecalho = {u"Rh.Caption", u"RH %", u"RH %"},
        .cabecalhosAlarme = {{u"maxrh.Caption", u"Minrh.Caption", u"Rh.Caption"},
                             {u"Max (RH %)", u"Min (RH %)", u"RH %"},
                             {u"L1", u"NSensor", u"DH", u"MRH", u"MINRH", u"RHP"},
                             {u"Max RH%", u"Min RH%", u"RH %"}},
        // The language files have the word under these forms alone.
        .gruposDasListagens = u"frmGraficoHistogramaSensUIPull",
        .gruposDosAlarmes = u"frmListagemObservacoesTemp",
        .filtroDeMedias = true,
        .menuGraficos = {.prefixo = u"Hum"},
        .menuListagens = {.ramo = {u"Humidades", u"mnuListagensHumidade", {}},
                          .listagens = {.leituras = {u"HumHumidades", {}, {}}, .pull = {u"ListagemHumPull", {}, {}}},
                          .alarmes = {u"HumAlarmesHumidade", u"mnuListagensHumidadeAlarmesHumidade", {}}},
    },
    {
        .sufixo = u"Pressao",
        .nome = u"Pressão",
        .nomeSingular = u"Pressão",
        .unidade = u"kPa",
        .decimais = 2,
        .regra = {.letras = u"K"},
        .tipoDaUnidade = u"P 1250K",
        .reclama = Reclama::SoOTipoDaUnidade, // such a sensor on a bus of its own stands among the temperatures, too
        .leituras = u"Pressao",
        .alarmes = u"AlarmesPressao",
        .valor = u"Leitura",
        .baseFicheiros = u"Temp",
        .icone = u"pressao",
        .notaNaGrelha = {},
        // Made from the charts of temperatures, whose files' names they kept.
        .graficos = {.pull = {.titulo = u"Gráfico de Pressão-Ler",
                              .tituloImpressao = u"Gráfico de Pressão-Ler",
                              .baseCSV = u"GraphTemp",
                              .baseJPG = u"GraphTemp"}},
        .histogramas = {.leituras = {.baseJPG = u"GraphHistAvgTemp"},
                        .pull = {.titulo = u"Histograma de Pressão-Ler",
                                 .tituloImpressao = u"Histograma de Pressão-Ler",
                                 .baseJPG = u"GraphHistAvgTemp"}},
        .formMedia = u"frmGraficoPrincipalPressao",
        .cabecalho = {.omissao = u"Pressão (kPa)", .rotulo = u"Pressão kPa"},
        .lugarDosAlarmes = u"frmListagemAlarmesMediasTemp", // the two youngest share the place of the first
        .menuGraficos = {.ramo = {{}, u"mnuGraficosKpa", {}}},
        .menuListagens = {.ramo = {{}, u"mnuListagensKPA", {}},
                          .alarmes = {{}, u"mnuListagensHumidadeAlarmesHude", {}}},
    },
    {
        .sufixo = u"DPC",
        .nome = u"Ponto de Orvalho",
        .nomeSingular = u"Ponto de Orvalho",
        .unidade = u"DP C",
        .decimais = 2,
        .regra = {.letras = u"D"},
        .tipoDaUnidade = u"P 1250D",
        .reclama = Reclama::SoOTipoDaUnidade,
        .leituras = u"Pontoorvalho",
        .alarmes = u"AlarmesPOrv",
        .valor = u"Leitura",
        .baseFicheiros = u"Temp",
        .icone = u"orvalho",
        .notaNaGrelha = {},
        .graficos = {.pull = {.baseCSV = u"GraphTemp", .baseJPG = u"GraphTemp"}}, // as pressure
        .histogramas = {.leituras = {.baseJPG = u"GraphHistAvgTemp"}, .pull = {.baseJPG = u"GraphHistAvgTemp"}},
        .etiqueta = {.omissao = u"P. Orvalho"},
        .cabecalho = {.omissao = u"P.Orv. (DP C)", .rotulo = u"P.Orv. DP C"},
        .cabecalhosAlarme = {.rotulos = {u"Max DP C", u"Min DP C", u"Leit. DP C"}},
        .lugarDosAlarmes = u"frmListagemAlarmesMediasTemp",
        .menuGraficos = {.ramo = {{}, {}, u"Ponto Orvalho"}},
        .menuListagens = {.ramo = {{}, {}, u"Ponto orvalho"},
                          .alarmes = {{}, u"mnuListagensHumidadeArme", u"Alarmes Ponto orvalho"}},
    },
};

// A quantity and one of the tables that it has: what a chart, a histogram, a listing and a point form are made for.
struct Vista {
    const Grandeza *grandeza = nullptr;
    Origem origem = Origem::Leituras;
};
inline constexpr size_t quantasVistas = [] {
    size_t n = 0;
    for (const Grandeza &g : tabela)
        n += 2 + (g.tem(Origem::Medias) ? 1 : 0);
    return n;
}();
inline constexpr auto vistas = [] {
    std::array<Vista, quantasVistas> todas{};
    size_t n = 0;
    for (const Grandeza &g : tabela)
        for (const Origem o : origens)
            if (g.tem(o))
                todas[n++] = {&g, o};
    return todas;
}();

// True when a quantity has a claim of its own on sensors of this type.
bool reclamado(QStringView tipo);

} // namespace grandezas
