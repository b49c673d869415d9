#include "devicestate/familiaSensUI.h"

#include "core/literais.h"
#include "data/ligacao.h"
#include "data/recordset.h"
#include "devicestate/modSensUI.h"

namespace {

constexpr const RegraTipo &tipos = regras::sensUI;

constexpr TabelaLeituras leituras{u"SensUI_Leituras", u"Leitura"};
constexpr TabelaLeituras leiturasPull{u"SensUI_LeiturasPull", u"Leitura"};

// Charts -----------------------------------------------------------------------------------------------------------

constexpr EtiquetaValor valor{u"lblTemp", u"Leitura"};
constexpr MembroPontos pontos{u"frmOpccoesPontosSensUI", u"frmGraficoSensUI", leituras.nome, valor};
constexpr MembroPontos pontosPull{u"frmOpccoesPontosSensUIPull", u"frmGraficoSensUIPull", leiturasPull.nome, valor};

using exportacao::FormaCSV;
constexpr exportacao::ColunaCSV colunasCSV[] = {{u"Data", FormaCSV::Data},        {u"Sensor", FormaCSV::Texto},
                                                {u"NomeSensor", FormaCSV::Texto}, {u"Leitura", FormaCSV::Numero},
                                                {u"Ident", FormaCSV::Texto},      {u"Observacoes", FormaCSV::Limites}};
constexpr exportacao::FormatoCSV csv{colunasCSV};

// The left axis has no title of its own: each sensor may have another unit.
constexpr MembroGrafico tabelaGraficos[] = {
    {.form = u"frmGraficoSensUI",
     .tabela = leituras,
     .regra = &tipos,
     .unidade = u"",
     .tituloEixo = u"",
     .titulo = u"Gráfico de Leituras Sens-UI",
     .tituloImpressao = u"Gráfico de Leituras Sens-UI",
     .baseCSV = u"GraphSensUI",
     .baseJPG = u"GraphSensUI",
     .pontos = &pontos,
     .csv = &csv,
     .casas = 2},
    {.form = u"frmGraficoSensUIPull",
     .tabela = leiturasPull,
     .regra = &tipos,
     .unidade = u"",
     .tituloEixo = u"",
     .titulo = u"Gráfico de Leituras Sens-UI Pull",
     .tituloImpressao = u"Gráfico de Leituras Sens-UI Pull",
     .baseCSV = u"GraphSensUIPull",
     .baseJPG = u"GraphSensUIPull",
     .pontos = &pontosPull,
     .csv = &csv,
     .casas = 2},
};

// Histograms -------------------------------------------------------------------------------------------------------

// The scale of the sensor's last reading in the range.
QString escalaDe(const TabelaLeituras &tabela, const Escolha &escolha, const Intervalo &intervalo) {
    const QString sql = u"SELECT Leitura, Data, Ident, Observacoes, Escala FROM "_s + tabela.nome +
                        u" WHERE Data BETWEEN ? AND ? AND " + escolhas::condicao(tabela.chave) +
                        u" ORDER BY Data DESC LIMIT 1";
    Recordset rs =
        cnBD().consultar(sql, QVariantList{intervalo.inicio, intervalo.fim} + escolhas::valores(escolha.chave));
    if (!rs.avancar())
        return {};
    return modSensUI::BuscarDadosSensUI(rs.texto(0), rs.dataHora(1), rs.texto(2), rs.texto(3), rs.texto(4),
                                        escolha.chave.first())
        .escala;
}

constexpr MembroHistograma tabelaHistogramas[] = {
    {.form = u"frmGraficoHistogramaSensUI",
     .tabela = leituras,
     .regra = &tipos,
     .titulo = u"Histograma de leituras Sens-Ui",
     .tituloImpressao = u"Histograma de leituras Sens-Ui",
     .baseJPG = u"GraphHistSensUI",
     .parenteses = escalaDe},
    {.form = u"frmGraficoHistogramaSensUIPull",
     .tabela = leiturasPull,
     .regra = &tipos,
     .titulo = u"Histograma Sens-Ui Pull",
     .tituloImpressao = u"Histograma Sens-Ui Pull",
     .baseJPG = u"GraphHistSensUIPull",
     .parenteses = escalaDe},
};

// Listings ---------------------------------------------------------------------------------------------------------

using Forma = ColunaListagem::Forma;
constexpr ColunaListagem colunasNotas[] = {
    {u"Sensor", 0, {}, {}, {}, {}, {}, {}},
    {u"NomeSensor", 2515, u"Nome.Caption", u"Nome", u"lblNome", u"L1", u"Sensor", u"txtNome"},
    {u"Data", 1740, u"Data.Caption", u"Data", u"lblData", u"L2", u"Data Hora", u"txtData"},
    {u"Leitura", 1330, u"TempF.Caption", u"Leitura", u"lblTemperatura", u"L3", u"Leitura", u"txtTemperatura",
     Forma::ComoEsta, 2},
    {u"Escala", 2200, u"Escala.Caption", u"Escala", u"lblEscala", u"L5", u"Escala", u"txtEscala"},
    {u"Flag", 3780, u"DescF.Caption", u"Descrição", u"lblDescricao250", u"L4", u"Descrição", u"txtDesc"}};

// The last column, unseen, is the one that the filter looks at.
constexpr ColunaListagem colunasAlarmes[] = {
    {u"Sensor", 1740, u"ID.Caption", u"Sensor ID", u"lblSensor", u"L1", u"Sensor", u"txtSensor"},
    {u"NomeSensor", 2810, u"Nome.Caption", u"Nome", u"lblSensorNome", u"L2", u"Nome do Sensor", u"txtSensorNome"},
    {u"Data", 1740, u"Data.Caption", u"Data", u"lblData", u"L3", u"Data Hora", u"txtData"},
    {u"Observacoes AS Maximo", 1000, u"maxF.Caption", u"Maximo", u"lblMax", u"L4", u"Max", u"txtMax",
     Forma::LimiteMaximo},
    {u"Observacoes AS Minimo", 1000, u"MinF.Caption", u"Minimo", u"lblMin", u"L5", u"Min", u"txtMin",
     Forma::LimiteMinimo},
    {u"Leitura", 1080, u"TempF.Caption", u"Leitura", u"lblTemperatura", u"L6", u"Leitura", u"txtTemperatura",
     Forma::ComoEsta, 2},
    {u"Escala", 2200, u"Escala.Caption", u"Escala", u"lblEscala", u"L7", u"Escala", u"txtEscala"},
    {u"Observacoes", 1740, u"Obs.Caption", u"Observacoes", {}, {}, {}, {}},
    {u"Flag", 0, {}, {}, {}, {}, {}, {}}};

constexpr MembroListagem tabelaListagens[] = {
    {.form = u"frmListagemObservacoesSensUI",
     .tabela = leituras.nome,
     .regra = &tipos,
     .colunas = colunasNotas,
     .titulo = u"Listagem de Descrições Sens-UI",
     .tituloImpressao = u"Listagem de Descrições Sens-UI",
     .relatorio = u"DataReportListagemSensUI",
     .edita = true},
    {.form = u"frmListagemObservacoesSensUIPull",
     .tabela = leiturasPull.nome,
     .regra = &tipos,
     .colunas = colunasNotas,
     .titulo = u"Listagem de Descrições Sens-UI Pull",
     .tituloImpressao = u"Listagem de Descrições Sens-UI Pull",
     .relatorio = u"DataReportListagemSensUI",
     .edita = true},
    {.form = u"frmListagemAlarmesSensUi",
     .tabela = leituras.nome,
     .regra = &tipos,
     .colunas = colunasAlarmes,
     .titulo = u"Listagem de Alarmes Sens-UI",
     .tituloImpressao = u"Listagem de Alarmes Sens-UI",
     .relatorio = u"DataReportAlarmesSensUI",
     .comFiltro = false,
     .soComNota = true},
};

} // namespace

namespace familiaSensUI {

std::span<const MembroGrafico> graficos() {
    return tabelaGraficos;
}

std::span<const MembroHistograma> histogramas() {
    return tabelaHistogramas;
}

std::span<const MembroListagem> listagens() {
    return tabelaListagens;
}

} // namespace familiaSensUI
