#include "views/familiaHistogramas.h"

namespace {

// The humidity members keep the axis title of the temperatures they were made from.
constexpr QStringView eixoTemperaturas = u"Temperaturas °C";

constexpr MembroHistograma tabela[] = {
    {u"frmGraficoPrincipalHistograma",
     {u"Medias", u"Temperatura"},
     &regras::temperatura,
     u"Histograma de Médias de Temperaturas",
     u"Histograma de Médias de Temperaturas",
     u"GraphHistAvgTemp"},
    {u"frmGraficoPrincipalHistogramaTemp",
     {u"Temperaturas", u"Temperatura"},
     &regras::temperatura,
     u"Histograma de Temperaturas",
     u"Histograma de Temperaturas",
     u"GraphHistTemp"},
    {u"frmGraficoHumidadeHistograma",
     {u"Humidade", u"Percentagem"},
     &regras::humidade,
     u"Histograma de Humidade",
     u"Histograma de Humidade",
     u"GraphHistHum",
     eixoTemperaturas},
    {u"frmGraficoPressaoHistograma",
     {u"Pressao", u"Leitura"},
     &regras::pressao,
     u"Histograma de Pressão",
     u"Histograma de Pressão",
     u"GraphHistAvgTemp"},
    {u"frmGraficoDPCHistograma",
     {u"Pontoorvalho", u"Leitura"},
     &regras::pontoDeOrvalho,
     u"Histograma de Ponto de Orvalho",
     u"Histograma de Ponto de Orvalho",
     u"GraphHistAvgTemp"},
    {u"frmGraficoPrincipalHistogramaPull",
     {u"TemperaturasPull", u"Temperatura"},
     &regras::temperatura,
     u"Histograma de Temperaturas Pull",
     u"Histograma de Temperaturas",
     u"GraphHistTempPull"},
    {u"frmGraficoHumidadeHistogramaPull",
     {u"HumidadePull", u"Percentagem"},
     &regras::humidade,
     u"Histograma de Humidade Pull",
     u"Histograma de Humidade",
     u"GraphHistHumPull",
     eixoTemperaturas},
    {u"frmGraficoPressaoHistogramaPull",
     {u"PressaoPull", u"Leitura"},
     &regras::pressao,
     u"Histograma de Pressão-Ler",
     u"Histograma de Pressão-Ler",
     u"GraphHistAvgTemp"},
    {u"frmGraficoDPCHistogramaPull",
     {u"PontoorvalhoPull", u"Leitura"},
     &regras::pontoDeOrvalho,
     u"Histograma de Ponto de Orvalho - Ler",
     u"Histograma de Ponto de Orvalho - Ler",
     u"GraphHistAvgTemp"},
};

} // namespace

std::span<const MembroHistograma> familiaHistogramas() {
    return tabela;
}
