#include "views/familiaListagens.h"

#include "core/datas.h"
#include "core/falha.h"
#include "core/literais.h"
#include "core/modDoubleTratamento.h"
#include "data/dialecto.h"
#include "data/recordset.h"
#include "views/ilegiveis.h"
#include "views/nomesDasVistas.h"

#include <array>
#include <cmath>
#include <limits>

namespace {

using namespace nomesDasVistas;
using grandezas::quantasVistas;
using grandezas::vistas;

// Observation listings ---------------------------------------------------------------------------------------

// The sensor's own column is there, unseen, where notes can be written in the grid.
using ColunasNotas = std::array<ColunaListagem, 5>;

constexpr ColunasNotas colunasNotas(const Grandeza &g, Origem o) {
    const CabecalhoValor &valor = g.cabecalho;
    return {{{u"Sensor", 0, {}, {}, {}, {}, {}, {}},
             {u"NomeSensor", 2515, u"Nome.Caption", u"Nome", u"lblNome", u"L1", u"Sensor", u"txtNome"},
             {u"Data", 1740, u"Data.Caption", u"Data", u"lblData", u"L2", u"Data Hora", u"txtData"},
             {g.valor, 1330, valor.chave, valor.omissao, u"lblTemperatura", u"L3", valor.rotulo, u"txtTemperatura",
              ColunaListagem::Forma::ComoEsta, o == Origem::Medias ? g.decimais : -1},
             {u"Flag", 3780, u"DescF.Caption", u"Descrição", u"lblDescricao250", u"L4", u"Descrição", u"txtDesc"}}};
}

// Alarm listings ---------------------------------------------------------------------------------------------

using ColunasAlarme = std::array<ColunaListagem, 6>;

constexpr ColunasAlarme colunasAlarme(const CabecalhosAlarme &c) {
    return {{{u"SondaID", 1740, u"ID.Caption", u"Sensor ID", u"lblSensor", c.chavesRotulos[0], u"Sensor", u"txtSensor"},
             {u"Nome", 2810, u"Nome.Caption", u"Nome", u"lblSensorNome", c.chavesRotulos[1], u"Nome do Sensor",
              u"txtSensorNome"},
             {u"Data", 1740, u"Data.Caption", u"Data", u"lblData", c.chavesRotulos[2], u"Data Hora", u"txtData"},
             {u"Maximo", 1000, c.chaves[0], c.omissoes[0], u"lblMax", c.chavesRotulos[3], c.rotulos[0], u"txtMax"},
             {u"Minimo", 1000, c.chaves[1], c.omissoes[1], u"lblMin", c.chavesRotulos[4], c.rotulos[1], u"txtMin"},
             {u"Valor", 1080, c.chaves[2], c.omissoes[2], u"lblTemperatura", c.chavesRotulos[5], c.rotulos[2],
              u"txtTemperatura"}}};
}

// Both kinds, one row a table or a quantity ------------------------------------------------------------------

struct TextosNotas {
    TextoComposto form, tabela, titulo, tituloImpressao;
};

constexpr auto textosNotas = [] {
    constexpr QStringView listagem = u"Listagem de Descrições de ";
    std::array<TextosNotas, quantasVistas> todos{};
    for (size_t i = 0; i < quantasVistas; ++i) {
        const auto &[g, o] = vistas[i];
        const NomesDeVista &excepcao = g->listagens[o];
        todos[i] = {.form = formListagem(*g, o),
                    .tabela = nomesDasVistas::tabela(*g, o),
                    .titulo = ou(excepcao.titulo, titulo(listagem, *g, o, g->nomeSingular)),
                    .tituloImpressao = ou(excepcao.tituloImpressao, tituloImpresso(listagem, *g, o, g->nomeSingular))};
    }
    return todos;
}();

struct TextosAlarme {
    TextoComposto form, titulo, tituloImpressao;
    std::array<TextoComposto, 3> omissoes{}, rotulos{};
};

constexpr auto textosAlarme = [] {
    constexpr std::array<std::pair<QStringView, QStringView>, 3> ecra{
        {{u"Max. (", u")"}, {u"Min. (", u")"}, {u"Leituras (", u")"}}};
    constexpr std::array<QStringView, 3> papel{u"Max ", u"Min ", u"Leitura "};
    std::array<TextosAlarme, std::size(grandezas::tabela)> todos{};
    for (size_t i = 0; i < todos.size(); ++i) {
        const Grandeza &g = grandezas::tabela[i];
        const TextoComposto regra{u"Listagem de Alarmes de ", g.nomeSingular};
        todos[i] = {.form = formAlarmes(g), .titulo = ou(g.listagemAlarmes.titulo, regra), .tituloImpressao = regra};
        for (size_t c = 0; c < papel.size(); ++c) {
            todos[i].omissoes[c] = ou(g.cabecalhosAlarme.omissoes[c], {ecra[c].first, g.unidade, ecra[c].second});
            todos[i].rotulos[c] = ou(g.cabecalhosAlarme.rotulos[c], {papel[c], g.unidade});
        }
    }
    return todos;
}();

constexpr auto colunasDasNotas = [] {
    std::array<ColunasNotas, quantasVistas> todas{};
    for (size_t i = 0; i < todas.size(); ++i)
        todas[i] = colunasNotas(*vistas[i].grandeza, vistas[i].origem);
    return todas;
}();

constexpr auto colunasDosAlarmes = [] {
    std::array<ColunasAlarme, std::size(grandezas::tabela)> todas{};
    for (size_t i = 0; i < todas.size(); ++i) {
        CabecalhosAlarme c = grandezas::tabela[i].cabecalhosAlarme;
        for (size_t j = 0; j < c.omissoes.size(); ++j) {
            c.omissoes[j] = textosAlarme[i].omissoes[j];
            c.rotulos[j] = textosAlarme[i].rotulos[j];
        }
        todas[i] = colunasAlarme(c);
    }
    return todas;
}();

constexpr MembroListagem listagemDeNotas(size_t i) {
    const auto &[g, o] = vistas[i];
    const bool edita = g->notaNaGrelha[o];
    const std::span<const ColunaListagem> colunas = colunasDasNotas[i];
    return {.form = textosNotas[i].form,
            .tabela = textosNotas[i].tabela,
            .regra = &g->regra,
            .colunas = edita ? colunas : colunas.subspan(1),
            .titulo = textosNotas[i].titulo,
            .tituloImpressao = textosNotas[i].tituloImpressao,
            .relatorio = edita ? u"DataReportListagemMedias" : u"DataReportListagemTemp",
            .edita = edita,
            .comMedias = g->filtroDeMedias && o == Origem::Leituras,
            .formGrupos = g->gruposDasListagens};
}

constexpr MembroListagem listagemDeAlarmes(size_t i) {
    const Grandeza &g = grandezas::tabela[i];
    return {.form = textosAlarme[i].form,
            .tabela = g.alarmes,
            .regra = &g.regra,
            .colunas = colunasDosAlarmes[i],
            .titulo = textosAlarme[i].titulo,
            .tituloImpressao = textosAlarme[i].tituloImpressao,
            .relatorio = u"DataReportAlarmes",
            .ligacao = LigacaoListagem::Alarmes,
            .comFiltro = false,
            .formLugar = g.lugarDosAlarmes,
            .formGrupos = g.gruposDosAlarmes,
            .chave = {u"SondaID"}};
}

// Verified alarms ----------------------------------------------------------------------------------------------

constexpr QStringView quemVerificou = u"(SELECT Nome FROM MaskUtilizadores WHERE ID = VerefPor)";
constexpr QStringView campoDescricao = u"Descricao";
constexpr ColunaListagem alarmesVerificados[] = {
    {u"DataI", 1550, u"Data.Caption", u"Data Inicio", u"lblDataI", u"Data.Caption", u"Data Inicio", u"txtDataI"},
    {u"DataF", 1550, u"lblDataFim", u"Data Fim", u"lblDataF", u"lblDataFim", u"Data Fim", u"txtDataF"},
    {u"VerefData", 1550, u"lblDataVerif", u"Data Verificação", u"lblDataV", u"lblDataVerif", u"Data Verificação",
     u"txtDataV"},
    {quemVerificou, 1750, u"lblVerifPor", u"Verificado Por", u"lblVerifPor", u"lblVerifPor", u"Verificado Por",
     u"txtVerifPor"},
    {campoDescricao, 5170, u"lblDesc", u"Descrição", u"lblDesc", u"lblDesc", u"Descrição", u"txtDesc"}};

constexpr MembroListagem verificados{.form = u"frmListagemAlarmesMask",
                                     .tabela = u"MaskListaAlarmes",
                                     .regra = nullptr,
                                     .colunas = alarmesVerificados,
                                     .titulo = u"Listagem de Alarmes",
                                     .tituloImpressao = u"Listagem de Alarmes",
                                     .relatorio = u"DataReportListagemAlarmesMask",
                                     .ligacao = LigacaoListagem::Verificados,
                                     .comFiltro = false,
                                     .chaveImpressao = u"frmListagemAlarmesMask.Caption"};

constexpr auto membros = [] {
    std::array<MembroListagem, quantasVistas + std::size(grandezas::tabela) + 1> todas{};
    size_t n = 0;
    for (size_t i = 0; i < quantasVistas; ++i)
        todas[n++] = listagemDeNotas(i);
    for (size_t i = 0; i < std::size(grandezas::tabela); ++i)
        todas[n++] = listagemDeAlarmes(i);
    todas[n] = verificados;
    return todas;
}();

constexpr double semData = std::numeric_limits<double>::quiet_NaN();

int posicaoDe(const MembroListagem &membro, QStringView campo) {
    for (size_t i = 0; i < membro.colunas.size(); ++i)
        if (membro.colunas[i].campo == campo)
            return int(i);
    return -1;
}

// It stands behind the date.
int posicaoDoValor(const MembroListagem &membro) {
    return posicaoDe(membro, u"Data") + 1;
}

QString textoDoLimite(const QString &observacoes, ColunaListagem::Forma forma) {
    const Limites limites = lerLimites(observacoes);
    const double limite = forma == ColunaListagem::Forma::LimiteMaximo ? limites.maximo : limites.minimo;
    return std::isnan(limite) ? u"NA"_s : modDoubleTratamento::NumeroParaTexto(limite);
}

// What is no number is shown as it is stored.
QString textoDoValor(const QString &guardado, int casas) {
    if (guardado.isEmpty() || modDoubleTratamento::eND(guardado))
        return guardado;
    const std::optional<double> valor = modDoubleTratamento::LerDouble(guardado);
    return valor ? modDoubleTratamento::NumeroParaTexto(*valor, casas) : guardado;
}

QString colunasDe(const MembroListagem &membro) {
    QStringList colunas;
    for (const ColunaListagem &coluna : membro.colunas)
        colunas.append(coluna.campo.toString());
    if (membro.comMedias)
        colunas.append(u"MediaSync"_s);
    // The capture service owns the tables of alarms: what stands beside sensor and date is known by its place alone.
    if (membro.ligacao == LigacaoListagem::Alarmes)
        colunas = {u"*"_s};
    colunas.append(dialecto::ordem.toString());
    return colunas.join(u", "_s);
}

QList<ConsultaListagem::Ramo> ramosDe(const MembroListagem &membro, const listagens::Pedido &pedido) {
    const QString filtro = membro.filtro.isEmpty() ? QString() : u" AND "_s + membro.filtro;
    const QString onde = membro.tabela + u" WHERE "_s + escolhas::condicao(membro.chave) + filtro;
    QList<ConsultaListagem::Ramo> ramos;
    for (const QStringList &chave : pedido.chaves) {
        // Without parentheses round the sensors, the date test of the alarms binds the first one only. It stays so.
        if (membro.ligacao == LigacaoListagem::Alarmes && !ramos.isEmpty())
            ramos.append({onde, escolhas::valores(chave), {}, {}});
        else
            ramos.append({onde, escolhas::valores(chave), pedido.intervalo.inicio, pedido.intervalo.fim});
    }
    return ramos;
}

// Tested row by row: a search for rare notes inside the engine would hold the window still.
std::function<bool(const Recordset &)> filtroDe(const MembroListagem &membro, const listagens::Pedido &pedido) {
    const int nota = posicaoDe(membro, u"Flag");
    const int medias = membro.comMedias ? int(membro.colunas.size()) : -1;
    return [nota, medias, soComNota = pedido.soComNota && nota >= 0, soAlarmes = membro.soComNota && nota >= 0,
            soMedias = pedido.soMedias && medias >= 0](const Recordset &rs) {
        // To the check box a lone blank is a note too. It is no alarm: most readings are stored with one.
        int tamanho = 0;
        if ((soComNota && (rs.utf8(nota, tamanho), tamanho == 0)) || (soAlarmes && !temNota(rs, nota)))
            return false;
        return !soMedias || rs.texto(medias).compare(u"TRUE", Qt::CaseInsensitive) == 0;
    };
}

// For the first column of limits.
std::function<void(const Recordset &, Ilegiveis &)> exameDe(const MembroListagem &membro, int data) {
    for (size_t i = 0; i < membro.colunas.size(); ++i)
        if (membro.colunas[i].forma != ColunaListagem::Forma::ComoEsta)
            return
                [&membro, i = int(i), data, cache = CacheLimites()](const Recordset &rs, Ilegiveis &ilegiveis) mutable {
                    int tamanho = 0;
                    const char *bytes = rs.utf8(i, tamanho);
                    if (cache.de(bytes, tamanho).ilegivel)
                        ilegiveis.juntar(membro.tabela, rs.texto(0), rs.texto(data), rs.texto(i));
                };
    return {};
}

} // namespace

std::span<const MembroListagem> familiaListagens() {
    return membros;
}

namespace listagens {

ConsultaListagem consulta(const MembroListagem &membro, const Pedido &pedido) {
    ConsultaListagem c;
    c.tabela = membro.tabela.toString();
    c.colunas = colunasDe(membro);
    c.visiveis = int(membro.colunas.size());
    c.data = u"Data"_s;
    c.colunaData = posicaoDe(membro, u"Data");
    c.ramos = ramosDe(membro, pedido);
    c.aceita = filtroDe(membro, pedido);
    c.celula = [&membro, data = c.colunaData](const QString &guardado, int coluna) {
        const ColunaListagem::Forma forma = membro.colunas[size_t(coluna)].forma;
        if (const int casas = membro.colunas[size_t(coluna)].casas; casas >= 0)
            return textoDoValor(guardado, casas);
        if (forma != ColunaListagem::Forma::ComoEsta)
            return textoDoLimite(guardado, forma);
        const double instante = coluna == data ? datas::segundosDe(guardado) : semData;
        return std::isnan(instante) ? guardado : datas::textoDataHora(datas::instanteDe(instante));
    };
    c.examinar = exameDe(membro, c.colunaData);
    if (membro.edita) {
        c.colunaEditavel = posicaoDe(membro, u"Flag");
        for (const QStringView campo : membro.chave)
            if (const int posicao = posicaoDe(membro, campo); posicao >= 0 && !campo.isEmpty())
                c.identidade.append({posicao, campo.toString()});
        for (const int posicao : {c.colunaData, posicaoDoValor(membro)})
            c.identidade.append({posicao, membro.colunas[size_t(posicao)].campo.toString()});
    }
    return c;
}

ConsultaListagem consultaVerificados(const MembroListagem &membro, const Intervalo &intervalo, const QString &ip) {
    ConsultaListagem c;
    c.tabela = membro.tabela.toString();
    QStringList colunas;
    for (const ColunaListagem &coluna : membro.colunas)
        colunas.append(coluna.campo == campoDescricao && ip.isEmpty()
                           ? u"'[' || coalesce(IP_Nome, '') || '] > ' || coalesce(Descricao, '')"_s
                           : coluna.campo.toString());
    colunas.append(dialecto::ordem.toString());
    c.colunas = colunas.join(u", "_s);
    c.visiveis = int(membro.colunas.size());
    c.data = u"DataI"_s;
    c.colunaData = posicaoDe(membro, c.data);
    c.colunaAEsquerda = posicaoDe(membro, campoDescricao);
    const QString deQuem = membro.tabela + (ip.isEmpty() ? u" WHERE 1 = 1"_s : u" WHERE IP = ?"_s);
    c.ramos.append({deQuem, ip.isEmpty() ? QVariantList() : QVariantList{ip}, intervalo.inicio, intervalo.fim});
    c.celula = [](const QString &guardado, int coluna) {
        constexpr int colunasDeDatas = 3;
        const double instante = coluna < colunasDeDatas ? datas::segundosDe(guardado) : semData;
        return std::isnan(instante) ? guardado : datas::instanteDe(instante).toString(u"dd-MM-yy HH:mm:ss"_s);
    };
    return c;
}

} // namespace listagens
