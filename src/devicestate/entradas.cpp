#include "devicestate/entradas.h"

#include "core/literais.h"
#include "data/ligacao.h"
#include "data/recordset.h"
#include "devicestate/chavesDoRegisto.h"
#include "views/estados.h"

namespace entradas {

namespace {

constexpr TabelaDeNomes nomesDosDispositivos[] = {
    {u"Poseidons", u"Nome", {u"PoseidonIP"}},
    {u"Damocles", u"Nome", {u"DamoclesIP"}},
    {u"IOcontrollers", u"Descricao", {u"ioip"}},
};
// A Spider input stands in the register under its InputID.
constexpr TabelaDeNomes nomesDasEntradas[] = {
    {u"PoseidonInputs", u"Descricao", {u"PoseidonIP", u"InputNum"}},
    {u"DamoclesInputs", u"Descricao", {u"DamoclesIP", u"InputNum"}},
    {u"IOcontrollersInputs", u"Descricao", {u"ioip", u"InputNum"}},
    {u"PoseidonInputsSpider", u"Descricao", {u"PoseidonIP", u"InputID"}},
};
constexpr TabelaDeNomes nomesDasSaidas[] = {
    {u"IOcontrollersOutputs", u"Descricao", {u"ioip", u"OutputNum"}},
    {u"PoseidonOutputs", u"Descricao", {u"PoseidonIP", u"OutputNum"}},
    {u"DamoclesOutputs", u"Descricao", {u"DamoclesIP", u"OutputNum"}},
};

constexpr EtiquetaValor estado{u"lblTemp", u"Estado"};
constexpr MembroPontos pontosDasEntradas{.form = u"frmOpccoesPontosInputs",
                                         .grafico = u"frmGraficoInputs",
                                         .tabela = u"REGISTO_Inputs",
                                         .valor = estado,
                                         .legendaChave = u"Input",
                                         .chave = {u"DispositivoIP", u"InputNum"}};
constexpr MembroPontos pontosDasSaidas{.form = u"frmOpccoesPontosOutputs",
                                       .grafico = u"frmGraficoOutputs",
                                       .tabela = u"REGISTO_Outputs",
                                       .valor = estado,
                                       .legendaChave = u"Output",
                                       .chave = {u"DispositivoIP", u"OutputNum"}};

using exportacao::FormaCSV;
constexpr exportacao::ColunaCSV colunasDasEntradas[] = {{u"Data", FormaCSV::Data},
                                                        {u"DispositivoIP", FormaCSV::Texto},
                                                        {u"InputNum", FormaCSV::Texto},
                                                        {u"Estado", FormaCSV::Estado}};
constexpr exportacao::ColunaCSV colunasDasSaidas[] = {{u"Data", FormaCSV::Data},
                                                      {u"DispositivoIP", FormaCSV::Texto},
                                                      {u"OutputNum", FormaCSV::Texto},
                                                      {u"Estado", FormaCSV::Estado}};
// Files keep the order of the table.
constexpr exportacao::FormatoCSV csvDasEntradas{colunasDasEntradas, exportacao::OrdemCSV::Escrita};
constexpr exportacao::FormatoCSV csvDasSaidas{colunasDasSaidas, exportacao::OrdemCSV::Escrita};

constexpr Especie tabela[] = {
    {.grafico = {.form = u"frmGraficoInputs",
                 .tabela = {u"REGISTO_Inputs", u"Estado", u"Data", {u"DispositivoIP", u"InputNum"}},
                 .regra = nullptr,
                 .unidade = u"",
                 .tituloEixo = u"ON / OFF",
                 .titulo = u"Gráfico de Inputs",
                 .tituloImpressao = u"Gráfico de Inputs",
                 .baseCSV = u"GraphInputs",
                 .baseJPG = u"GraphInputs",
                 .pontos = &pontosDasEntradas,
                 .eixo = EixoEsquerdo::Estados,
                 .ler = estados::lerMudancas,
                 .eDoPonto = estados::mudancaNaAltura,
                 .linhaUnica = LinhaUnica::ComoVarias,
                 .csv = &csvDasEntradas},
     .nomesDosCanais = nomesDasEntradas,
     .chaveNumero = u"ReyFrameInputNum.Caption",
     .omissaoNome = u"Inputs Name"},
    {.grafico = {.form = u"frmGraficoOutputs",
                 .tabela = {u"REGISTO_Outputs", u"Estado", u"Data", {u"DispositivoIP", u"OutputNum"}},
                 .regra = nullptr,
                 .unidade = u"",
                 .tituloEixo = u"ON / OFF",
                 .titulo = u"Gráfico de Outputs",
                 .tituloImpressao = u"Gráfico de Outputs",
                 .baseCSV = u"GraphOutputs",
                 .baseJPG = u"GraphOutputs",
                 .pontos = &pontosDasSaidas,
                 .eixo = EixoEsquerdo::Estados,
                 .ler = estados::lerMudancas,
                 .eDoPonto = estados::mudancaNaAltura,
                 .linhaUnica = LinhaUnica::ComoVarias,
                 .csv = &csvDasSaidas},
     .nomesDosCanais = nomesDasSaidas,
     .chaveNumero = u"ReyFrameOutputNum.Caption",
     .omissaoNome = u"Outputs Name"},
};

QString procurarNome(std::span<const TabelaDeNomes> tabelas, const QStringList &chave) {
    for (const TabelaDeNomes &t : tabelas) {
        Recordset rs = cnBD().consultar(u"SELECT "_s + t.campo + u" FROM " + t.tabela + u" WHERE " +
                                            escolhas::condicao(t.chave) + u" LIMIT 1",
                                        escolhas::valores(chave));
        if (rs.avancar())
            return rs.texto(0);
    }
    return {};
}

} // namespace

std::span<const Especie> especies() {
    return tabela;
}

QString BuscarNomeDispositivosPorID(const QString &ip) {
    return procurarNome(nomesDosDispositivos, {ip});
}

QString BuscarNomePorCodigo(const Especie &especie, const QString &ip, const QString &numero) {
    return procurarNome(especie.nomesDosCanais, {ip, numero});
}

QList<Canal> dispositivos(const Especie &especie, const Vigia &vigia) {
    const TabelaLeituras &t = especie.grafico.tabela;
    QList<Canal> lista;
    for (const QString &ip : chavesDoRegisto::distintas(t.nome, t.chave[0], vigia))
        lista.append({ip, {}, BuscarNomeDispositivosPorID(ip)});
    return lista;
}

QList<Canal> canais(const Especie &especie, const QString &ip, const Vigia &vigia) {
    const TabelaLeituras &t = especie.grafico.tabela;
    QList<Canal> lista;
    for (const QString &numero : chavesDoRegisto::distintas(t.nome, t.chave[1], vigia, t.chave[0], ip))
        lista.append({ip, numero, BuscarNomePorCodigo(especie, ip, numero)});
    return lista;
}

} // namespace entradas
