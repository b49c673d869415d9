#include "devicestate/condicoes.h"

#include "core/literais.h"
#include "data/ligacao.h"
#include "data/recordset.h"
#include "devicestate/chavesDoRegisto.h"
#include "views/estados.h"

namespace condicoes {

namespace {

constexpr MembroPontos pontos(QStringView form, QStringView grafico, QStringView tabela, QStringView chave) {
    return {.form = form,
            .grafico = grafico,
            .tabela = tabela,
            .valor = {u"lblTemp", u"Estado"},
            .legendaChave = u"Condição",
            .chave = {chave},
            .data = u"DataON",
            .dataDoZero = u"DataOFF"};
}
constexpr MembroPontos pontosInputs =
    pontos(u"frmOpccoesPontosREGISTO_C_Inputs", u"frmGraficoREGISTO_C_Inputs", u"REGISTO_C_Inputs", u"CondicaoID");
constexpr MembroPontos pontosSensores = pontos(u"frmOpccoesPontosREGISTO_C_Sensores", u"frmGraficoREGISTO_C_Sensores",
                                               u"REGISTO_C_Sensores", u"CondicaoID");
constexpr MembroPontos pontosGrupos =
    pontos(u"frmOpccoesPontosREGISTO_C_GroupCond", u"frmGraficoREGISTO_C_GroupCond", u"REGISTO_C_Grupos", u"GrupoID");

constexpr MembroGrafico grafico(const MembroPontos &deQue, QStringView titulo, QStringView baseJPG) {
    return {.form = deQue.grafico,
            .tabela = {deQue.tabela, u"DataOFF", u"DataON", deQue.chave},
            .regra = nullptr,
            .unidade = u"",
            .tituloEixo = u"ON / OFF",
            .titulo = titulo,
            .tituloImpressao = u"Gráfico de Médias de Temperaturas", // of the form they were made from
            .baseCSV = {},
            .baseJPG = baseJPG,
            .pontos = &deQue,
            .eixo = EixoEsquerdo::Estados,
            .ler = estados::lerPeriodos,
            .eDoPonto = nullptr,
            .linhaUnica = LinhaUnica::ComoVarias,
            .comCSV = false};
}

// The sensors' form has the title of the inputs' form.
constexpr Especie tabela[] = {
    {grafico(pontosInputs, u"Gráfico de Inputs", u"GraphCondInputs"), u"REGRAS_CondicoesInputs", u"NomeCondicao"},
    {grafico(pontosSensores, u"Gráfico de Inputs", u"GraphCondSensors"), u"REGRAS_CondicoesSensores", u"NomeCondicao"},
    {grafico(pontosGrupos, u"Gráfico de grupos de condições", u"GraphGroupCond"), u"REGRAS_CondicoesGruposHead",
     u"Nome"},
};

} // namespace

std::span<const Especie> especies() {
    return tabela;
}

QList<Escolha> listar(const Especie &especie, const Vigia &vigia) {
    QStringList nomes;
    Recordset rs =
        cnBD().consultar(u"SELECT DISTINCT "_s + especie.campo + u" FROM " + especie.tabelaDeNomes + u" ORDER BY 1");
    while (rs.avancar())
        nomes.append(rs.texto(0));
    const TabelaLeituras &t = especie.grafico.tabela;
    QList<Escolha> lista;
    for (const QString &chave : chavesDoRegisto::distintas(t.nome, t.chave[0], vigia))
        for (const QString &nome : nomes) {
            lista.append({{chave}, nome});
            vigia.passar();
        }
    return lista;
}

} // namespace condicoes
