#include "logger/views/familiaLoggers.h"

#include "core/literais.h"
#include "data/dialecto.h"
#include "data/ligacao.h"
#include "data/recordset.h"

namespace familiaLoggers {

namespace {

constexpr ColunasChave chave{u"LoggerID", u"Nomelogger", u"DescricaoMissao", u"NMissao"};
// The limits in force stand in columns of their own.
constexpr QStringView limites = u"coalesce(Max, 'NA') || 'XXX' || coalesce(Min, 'NA')";
constexpr TabelaLeituras amostras{u"DS1921", u"Temperatura", u"Data", chave, limites};

constexpr MembroPontos pontos{.form = u"frmOpccoesLoggersPontos",
                              .grafico = u"frmGraficoLoggers",
                              .tabela = amostras.nome,
                              .valor = familiaPontos::temperatura,
                              .legendaChave = u"Registador",
                              .chave = chave};

using exportacao::FormaCSV;
constexpr exportacao::ColunaCSV colunasCSV[] = {{u"Data", FormaCSV::Data},
                                                {u"LoggerID", FormaCSV::Texto},
                                                {u"Nomelogger", FormaCSV::Texto},
                                                {u"Temperatura", FormaCSV::Numero},
                                                {limites, FormaCSV::Limites}};
constexpr exportacao::FormatoCSV csv{colunasCSV, exportacao::OrdemCSV::DoFim};

constexpr MembroGrafico tabelaGraficos[] = {
    {.form = u"frmGraficoLoggers",
     .tabela = amostras,
     .regra = nullptr,
     .unidade = u" °C",
     .tituloEixo = u"Temperaturas °C",
     .titulo = u"Gráfico de Temperaturas do Registador",
     .tituloImpressao = u"Gráfico de Temperaturas do Registador",
     .baseCSV = u"GraphLoggers",
     .baseJPG = u"GraphLoggers",
     .pontos = &pontos,
     .csv = &csv,
     .formLimites = u"frmGraficoHumidadeHistograma"}, // so written in the language files
};

// The name says the rest of the key.
QString idDoRegistador(const TabelaLeituras &, const Escolha &escolha, const Intervalo &) {
    return escolha.chave.first();
}

constexpr MembroHistograma tabelaHistogramas[] = {
    {.form = u"frmHistogramaLoggers",
     .tabela = amostras,
     .regra = nullptr,
     .titulo = u"Histograma do Registador",
     .tituloImpressao = u"Histograma do Registador",
     .baseJPG = u"GraphHistLoggers",
     .parenteses = idDoRegistador,
     .extremosSemDatas = true},
};

constexpr CabecalhoListagem cabecalhos[] = {{u"lblLoggerID", u"L1", u"Logger ID: "},
                                            {u"lblNome", u"L2", u"Nome: "},
                                            {u"lblMissao", u"L3", u"Descriçao da Missão: "},
                                            {u"lblNMissao", u"L4", u"N° da Missão: "}};
constexpr ColunaListagem data{u"Data", 1740, u"Data.Caption", u"Data", u"lblData", u"L5", u"Data", u"txtData"};
constexpr ColunaListagem maximo{u"Max", 1200, u"maxF.Caption", u"Maximo (°C)", u"lblMax", u"L6", u"Max °C", u"txtMax"};
constexpr ColunaListagem minimo{u"Min", 1200, u"MinF.Caption", u"Minimo (°C)", u"lblMin", u"L7", u"Min °C", u"txtMin"};
constexpr ColunaListagem temperatura{u"Temperatura",    1330,  u"TempF.Caption", u"Temperatura (°C)",
                                     u"lblTemperatura", u"L8", u"Temp °C",       u"txtTemperatura"};
constexpr ColunaListagem colunasNotas[] = {
    data,
    maximo,
    minimo,
    temperatura,
    {u"Flag", 3780, u"DescF.Caption", u"Descrição", u"lblDescricao250", u"L9", u"Descrição", u"txtDesc"}};
constexpr ColunaListagem colunasAlarmes[] = {
    {u"LoggerID", 1740, u"ID.Caption", u"ID", {}, {}, {}, {}},
    {u"Nomelogger", 2200, u"Nome.Caption", u"Nome", {}, {}, {}, {}},
    {u"DescricaoMissao", 2200, u"DescMiss.Caption", u"Descrição da Missão", {}, {}, {}, {}},
    {u"NMissao", 700, u"DescN.Caption", u"N°", {}, {}, {}, {}},
    data,
    maximo,
    minimo,
    temperatura};

constexpr MembroListagem tabelaListagens[] = {
    {.form = u"frmListagemObservacoesLogger",
     .tabela = amostras.nome,
     .regra = nullptr,
     .colunas = colunasNotas,
     .titulo = u"Listagem de Descrições do Registador",
     .tituloImpressao = u"Listagem de Descrições do Registador",
     .relatorio = u"DataReportListagemLogger",
     .comFiltro = false,
     .chave = chave,
     .filtro = u"flag <> ''",
     .cabecalhos = cabecalhos},
    {.form = u"frmListagemAlarmesLogger",
     .tabela = amostras.nome,
     .regra = nullptr,
     .colunas = colunasAlarmes,
     .titulo = u"Listagem de Alarmes do Registador",
     .tituloImpressao = u"Listagem de Alarmes do Registador",
     .relatorio = u"DataReportAlarmesLogger",
     .comFiltro = false,
     .chave = chave,
     .filtro = u"Alarm = 'TRUE'",
     .cabecalhos = cabecalhos},
};

} // namespace

std::span<const MembroGrafico> graficos() {
    return tabelaGraficos;
}

std::span<const MembroHistograma> histogramas() {
    return tabelaHistogramas;
}

std::span<const MembroListagem> listagens() {
    return tabelaListagens;
}

// A button that was given a new name stands there once under each.
QList<Registador> registadores(const Vigia &vigia) {
    QList<Registador> lista;
    Recordset rs = cnBD().consultar(u"SELECT DISTINCT LoggerID, DS1921head.Nomelogger FROM "
                                    "(SELECT DISTINCT Nomelogger FROM DS1921head) AS Nomes, DS1921head"_s);
    while (rs.avancar()) {
        lista.append({rs.texto(0), rs.texto(1)});
        vigia.passar();
    }
    return lista;
}

QList<Missao> missoesDe(const Registador &registador, const Vigia &vigia) {
    QList<Missao> lista;
    Recordset rs = cnBD().consultar(
        u"SELECT DescricaoMissao, NMissao FROM DS1921head WHERE LoggerID = ? AND Nomelogger = ? ORDER BY "_s +
            dialecto::ordem,
        {registador.LoggerID, registador.Nomelogger});
    while (rs.avancar()) {
        lista.append({rs.texto(0), rs.texto(1)});
        vigia.passar();
    }
    return lista;
}

std::optional<std::pair<QDateTime, QDateTime>> intervaloDe(const ChaveMissao &chaveMissao) {
    Recordset rs =
        cnBD().consultar(u"SELECT MAX(Data) AS Maxi, MIN(Data) AS Mini FROM DS1921 WHERE "_s + ChaveMissao::onde(),
                         chaveMissao.valores());
    if (!rs.avancar() || rs.nulo(0))
        return std::nullopt;
    const QDateTime de = rs.dataHora(1);
    const QDateTime ate = rs.dataHora(0);
    return de.isValid() && ate.isValid() ? std::optional(std::pair(de, ate)) : std::nullopt;
}

} // namespace familiaLoggers
