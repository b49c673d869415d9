#include "views/familiaGraficos.h"

namespace {

using namespace familiaPontos;

constexpr MembroGrafico tabela[] = {
    {.form = u"frmGraficoPrincipal",
     .tabela = {u"Medias", u"Temperatura"},
     .regra = &regras::temperatura,
     .unidade = u" °C",
     .tituloEixo = u"Temperaturas °C",
     .titulo = u"Gráfico de Médias de Temperaturas",
     .tituloImpressao = u"Gráfico de Médias de Temperaturas",
     .baseCSV = u"AvgTemp",
     .baseJPG = u"GraphAvgTemp",
     .pontos = &medias,
     .casas = 2},
    {.form = u"frmGraficoPrincipalTemp",
     .tabela = {u"Temperaturas", u"Temperatura"},
     .regra = &regras::temperatura,
     .unidade = u" °C",
     .tituloEixo = u"Temperaturas °C",
     .titulo = u"Gráfico de Temperaturas",
     .tituloImpressao = u"Gráfico de Temperaturas",
     .baseCSV = u"GraphTemp",
     .baseJPG = u"GraphTemp",
     .pontos = &temperaturas},
    {.form = u"frmGraficoPrincipalHumidade",
     .tabela = {u"Humidade", u"Percentagem"},
     .regra = &regras::humidade,
     .unidade = u" %",
     .tituloEixo = u"R/H %",
     .titulo = u"Gráfico Humidade",
     .tituloImpressao = u"Gráfico de Humidade",
     .baseCSV = u"GraphHum",
     .baseJPG = u"GraphHum",
     .pontos = &humidade,
     .eixo = EixoEsquerdo::Percentagem},
    // Pressure and dew point are exported under the name of temperatures.
    {.form = u"frmGraficoPrincipalPressao",
     .tabela = {u"Pressao", u"Leitura"},
     .regra = &regras::pressao,
     .unidade = u" kPa",
     .tituloEixo = u"Pressão - kPa",
     .titulo = u"Gráfico de Pressão",
     .tituloImpressao = u"Gráfico de Pressão",
     .baseCSV = u"GraphTemp",
     .baseJPG = u"GraphTemp",
     .pontos = &pressao,
     .formMedia = u"frmGraficoPrincipalPressao"},
    {.form = u"frmGraficoPrincipalDPC",
     .tabela = {u"Pontoorvalho", u"Leitura"},
     .regra = &regras::pontoDeOrvalho,
     .unidade = u" DP C",
     .tituloEixo = u"Ponto de Orvalho - DP C",
     .titulo = u"Gráfico de Ponto de Orvalho",
     .tituloImpressao = u"Gráfico de Ponto de Orvalho",
     .baseCSV = u"GraphTemp",
     .baseJPG = u"GraphTemp",
     .pontos = &pontoDeOrvalho},
    {.form = u"frmGraficoPrincipalTempPull",
     .tabela = {u"TemperaturasPull", u"Temperatura"},
     .regra = &regras::temperatura,
     .unidade = u" °C",
     .tituloEixo = u"Temperaturas °C",
     .titulo = u"Gráfico de Temperaturas Pull",
     .tituloImpressao = u"Gráfico de Temperaturas",
     .baseCSV = u"GraphTempPull",
     .baseJPG = u"GraphTempPull",
     .pontos = &temperaturasPull},
    {.form = u"frmGraficoPrincipalHumidadePull",
     .tabela = {u"HumidadePull", u"Percentagem"},
     .regra = &regras::humidade,
     .unidade = u" %",
     .tituloEixo = u"R/H %",
     .titulo = u"Gráfico Humidade Pull",
     .tituloImpressao = u"Gráfico de Humidade",
     .baseCSV = u"GraphHumPull",
     .baseJPG = u"GraphHumPull",
     .pontos = &humidadePull,
     .eixo = EixoEsquerdo::Percentagem,
     .chaveTitulo = u"frmGraficoPrincipalHumidayruredePull.Caption"}, // so written in the language files
    {.form = u"frmGraficoPrincipalPressaoPull",
     .tabela = {u"PressaoPull", u"Leitura"},
     .regra = &regras::pressao,
     .unidade = u" kPa",
     .tituloEixo = u"Pressão - kPa",
     .titulo = u"Gráfico de Pressão-Ler",
     .tituloImpressao = u"Gráfico de Pressão-Ler",
     .baseCSV = u"GraphTemp",
     .baseJPG = u"GraphTemp",
     .pontos = &pressaoPull},
    {.form = u"frmGraficoPrincipalDPCPull",
     .tabela = {u"PontoorvalhoPull", u"Leitura"},
     .regra = &regras::pontoDeOrvalho,
     .unidade = u" DP C",
     .tituloEixo = u"Ponto de Orvalho - DP C",
     .titulo = u"Gráfico de Ponto de Orvalho - Ler",
     .tituloImpressao = u"Gráfico de Ponto de Orvalho - Ler",
     .baseCSV = u"GraphTemp",
     .baseJPG = u"GraphTemp",
     .pontos = &pontoDeOrvalhoPull},
};

} // namespace

std::span<const MembroGrafico> familiaGraficos() {
    return tabela;
}

const MembroGrafico *membroGrafico(QStringView form) {
    for (const MembroGrafico &membro : tabela)
        if (membro.form == form)
            return &membro;
    return nullptr;
}
