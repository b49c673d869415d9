#include "views/familiaListagens.h"

#include "core/datas.h"
#include "core/falha.h"
#include "core/literais.h"
#include "core/modDoubleTratamento.h"
#include "data/recordset.h"
#include "views/ilegiveis.h"

#include <array>
#include <cmath>
#include <limits>

namespace {

// Observation listings ---------------------------------------------------------------------------------------

struct CabecalhoValor {
    QStringView campo;
    QStringView chave;
    QStringView omissao;
    QStringView rotulo; // on paper
    int casas = -1;
};

constexpr CabecalhoValor media{u"Temperatura", u"TempF.Caption", u"Temperatura (°C)", u"Temp °C", 2};
constexpr CabecalhoValor temperatura{u"Temperatura", u"TempF.Caption", u"Temperatura (°C)", u"Temp °C"};
constexpr CabecalhoValor percentagem{u"Percentagem", u"Rh.Caption", u"RH %", u"RH %"};
constexpr CabecalhoValor kpa{u"Leitura", u"TempF.Caption", u"Pressão (kPa)", u"Pressão kPa"};
constexpr CabecalhoValor orvalho{u"Leitura", u"TempF.Caption", u"P.Orv. (DP C)", u"P.Orv. DP C"};

constexpr ColunaListagem sensorEscondido{u"Sensor", 0, {}, {}, {}, {}, {}, {}};

constexpr std::array<ColunaListagem, 4> quatroColunas(const CabecalhoValor &valor) {
    return {{{u"NomeSensor", 2515, u"Nome.Caption", u"Nome", u"lblNome", u"L1", u"Sensor", u"txtNome"},
             {u"Data", 1740, u"Data.Caption", u"Data", u"lblData", u"L2", u"Data Hora", u"txtData"},
             {valor.campo, 1330, valor.chave, valor.omissao, u"lblTemperatura", u"L3", valor.rotulo, u"txtTemperatura",
              ColunaListagem::Forma::ComoEsta, valor.casas},
             {u"Flag", 3780, u"DescF.Caption", u"Descrição", u"lblDescricao250", u"L4", u"Descrição", u"txtDesc"}}};
}

constexpr std::array<ColunaListagem, 5> cincoColunas(const CabecalhoValor &valor) {
    const auto c = quatroColunas(valor);
    return {{sensorEscondido, c[0], c[1], c[2], c[3]}};
}

constexpr auto quatroTemperatura = quatroColunas(temperatura);
constexpr auto quatroKpa = quatroColunas(kpa);
constexpr auto quatroOrvalho = quatroColunas(orvalho);
constexpr auto cincoMedia = cincoColunas(media);
constexpr auto cincoTemperatura = cincoColunas(temperatura);
constexpr auto cincoPercentagem = cincoColunas(percentagem);

constexpr QStringView relatorioTemp = u"DataReportListagemTemp";
constexpr QStringView relatorioMedias = u"DataReportListagemMedias";
constexpr QStringView gruposDeOutroForm = u"frmGraficoHistogramaSensUIPull";

// Alarm listings ---------------------------------------------------------------------------------------------

struct CabecalhosAlarme {
    std::array<QStringView, 3> chaves; // maximum, minimum, value
    std::array<QStringView, 3> omissoes;
    std::array<QStringView, 6> chavesRotulos;
    std::array<QStringView, 3> rotulos;
};

constexpr std::array<QStringView, 3> chavesComuns{u"maxF.Caption", u"MinF.Caption", u"TempF.Caption"};
constexpr std::array<QStringView, 6> rotulosComuns{u"L1", u"L2", u"L3", u"L4", u"L5", u"L6"};

constexpr std::array<ColunaListagem, 6> colunasAlarme(const CabecalhosAlarme &c) {
    return {{{u"SondaID", 1740, u"ID.Caption", u"Sensor ID", u"lblSensor", c.chavesRotulos[0], u"Sensor", u"txtSensor"},
             {u"Nome", 2810, u"Nome.Caption", u"Nome", u"lblSensorNome", c.chavesRotulos[1], u"Nome do Sensor",
              u"txtSensorNome"},
             {u"Data", 1740, u"Data.Caption", u"Data", u"lblData", c.chavesRotulos[2], u"Data Hora", u"txtData"},
             {u"Maximo", 1000, c.chaves[0], c.omissoes[0], u"lblMax", c.chavesRotulos[3], c.rotulos[0], u"txtMax"},
             {u"Minimo", 1000, c.chaves[1], c.omissoes[1], u"lblMin", c.chavesRotulos[4], c.rotulos[1], u"txtMin"},
             {u"Valor", 1080, c.chaves[2], c.omissoes[2], u"lblTemperatura", c.chavesRotulos[5], c.rotulos[2],
              u"txtTemperatura"}}};
}

constexpr auto alarmesTemperatura = colunasAlarme({chavesComuns,
                                                   {u"Maximo (°C)", u"Minimo (°C)", u"Temperatura (°C)"},
                                                   rotulosComuns,
                                                   {u"Max °C", u"Min °C", u"Temp °C"}});
constexpr auto alarmesHumidade = colunasAlarme({{u"maxrh.Caption", u"Minrh.Caption", u"Rh.Caption"},
                                                {u"Max (RH %)", u"Min (RH %)", u"RH %"},
                                                {u"L1", u"NSensor", u"DH", u"MRH", u"MINRH", u"RHP"},
                                                {u"Max RH%", u"Min RH%", u"RH %"}});
constexpr auto alarmesPressao = colunasAlarme({chavesComuns,
                                               {u"Max. (kPa)", u"Min. (kPa)", u"Leituras (kPa)"},
                                               rotulosComuns,
                                               {u"Max kPa", u"Min kPa", u"Leitura kPa"}});
constexpr auto alarmesOrvalho = colunasAlarme({chavesComuns,
                                               {u"Max. (DP C)", u"Min. (DP C)", u"Leituras (DP C)"},
                                               rotulosComuns,
                                               {u"Max DP C", u"Min DP C", u"Leit. DP C"}});
constexpr QStringView relatorioAlarmes = u"DataReportAlarmes";
constexpr ColunasChave sonda{u"SondaID"};
constexpr QStringView lugarDosAlarmes = u"frmListagemAlarmesMediasTemp";

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

constexpr MembroListagem tabela[] = {
    {.form = u"frmListagemObservacoesTemp",
     .tabela = u"Temperaturas",
     .regra = &regras::temperatura,
     .colunas = quatroTemperatura,
     .titulo = u"Listagem de Descrições de Temperatura",
     .tituloImpressao = u"Listagem de Descrições de Temperatura",
     .relatorio = relatorioTemp},
    {.form = u"frmListagemObservacoesMedias",
     .tabela = u"Medias",
     .regra = &regras::temperatura,
     .colunas = cincoMedia,
     .titulo = u"Listagem de Observações de Médias de Temperatura",
     .tituloImpressao = u"Listagem de Descrições Médias de Temperatura",
     .relatorio = relatorioMedias,
     .edita = true},
    {.form = u"frmListagemObservacoesHumidade",
     .tabela = u"Humidade",
     .regra = &regras::humidade,
     .colunas = cincoPercentagem,
     .titulo = u"Listagem de Observações de Médias de Humidade",
     .tituloImpressao = u"Listagem de Descrições de Humidade",
     .relatorio = relatorioMedias,
     .edita = true,
     .comMedias = true,
     .formGrupos = gruposDeOutroForm},
    {.form = u"frmListagemObservacoesTempPull",
     .tabela = u"TemperaturasPull",
     .regra = &regras::temperatura,
     .colunas = cincoTemperatura,
     .titulo = u"Listagem de Observações de Temperaturas Pull",
     .tituloImpressao = u"Listagem de Descrições Médias de Temperatura",
     .relatorio = relatorioMedias,
     .edita = true},
    {.form = u"frmListagemObservacoesHumidadePull",
     .tabela = u"HumidadePull",
     .regra = &regras::humidade,
     .colunas = cincoPercentagem,
     .titulo = u"Listagem de Observações de Humidades Pull",
     .tituloImpressao = u"Listagem de Descrições de Humidade",
     .relatorio = relatorioMedias,
     .edita = true,
     .formGrupos = gruposDeOutroForm},
    {.form = u"frmListagemObservacoesPressao",
     .tabela = u"Pressao",
     .regra = &regras::pressao,
     .colunas = quatroKpa,
     .titulo = u"Listagem de Descrições de Pressão",
     .tituloImpressao = u"Listagem de Descrições de Pressão",
     .relatorio = relatorioTemp},
    {.form = u"frmListagemObservacoesPressaoPull",
     .tabela = u"PressaoPull",
     .regra = &regras::pressao,
     .colunas = quatroKpa,
     .titulo = u"Listagem de Descrições de Pressão - Ler",
     .tituloImpressao = u"Listagem de Descrições de Pressão - Ler",
     .relatorio = relatorioTemp},
    {.form = u"frmListagemObservacoesDPC",
     .tabela = u"Pontoorvalho",
     .regra = &regras::pontoDeOrvalho,
     .colunas = quatroOrvalho,
     .titulo = u"Listagem de Descrições de Ponto de Orvalho",
     .tituloImpressao = u"Listagem de Descrições de Ponto de Orvalho",
     .relatorio = relatorioTemp},
    {.form = u"frmListagemObservacoesDPCPull",
     .tabela = u"PontoorvalhoPull",
     .regra = &regras::pontoDeOrvalho,
     .colunas = quatroOrvalho,
     .titulo = u"Listagem de Descrições de Ponto de Orvalho - Ler",
     .tituloImpressao = u"Listagem de Descrições de Ponto de Orvalho - Ler",
     .relatorio = relatorioTemp},
    {.form = u"frmListagemAlarmesMediasTemp",
     .tabela = u"Alarmes",
     .regra = &regras::temperatura,
     .colunas = alarmesTemperatura,
     .titulo = u"Listagem de Alarmes das Médias de Temperatura",
     .tituloImpressao = u"Listagem de Alarmes de Temperatura",
     .relatorio = relatorioAlarmes,
     .ligacao = LigacaoListagem::Alarmes,
     .comFiltro = false,
     .chave = sonda},
    {.form = u"frmListagemAlarmesHum",
     .tabela = u"AlarmesHum",
     .regra = &regras::humidade,
     .colunas = alarmesHumidade,
     .titulo = u"Listagem de Alarmes de Humidade",
     .tituloImpressao = u"Listagem de Alarmes de Humidade",
     .relatorio = relatorioAlarmes,
     .ligacao = LigacaoListagem::Alarmes,
     .comFiltro = false,
     .formGrupos = u"frmListagemObservacoesTemp",
     .chave = sonda},
    // These two share the saved place of the temperatures' alarms.
    {.form = u"frmListagemAlarmesPressao",
     .tabela = u"AlarmesPressao",
     .regra = &regras::pressao,
     .colunas = alarmesPressao,
     .titulo = u"Listagem de Alarmes de Pressão",
     .tituloImpressao = u"Listagem de Alarmes de Pressão",
     .relatorio = relatorioAlarmes,
     .ligacao = LigacaoListagem::Alarmes,
     .comFiltro = false,
     .formLugar = lugarDosAlarmes,
     .chave = sonda},
    {.form = u"frmListagemAlarmesDPC",
     .tabela = u"AlarmesPOrv",
     .regra = &regras::pontoDeOrvalho,
     .colunas = alarmesOrvalho,
     .titulo = u"Listagem de Alarmes de Ponto de Orvalho",
     .tituloImpressao = u"Listagem de Alarmes de Ponto de Orvalho",
     .relatorio = relatorioAlarmes,
     .ligacao = LigacaoListagem::Alarmes,
     .comFiltro = false,
     .formLugar = lugarDosAlarmes,
     .chave = sonda},
    {.form = u"frmListagemAlarmesMask",
     .tabela = u"MaskListaAlarmes",
     .regra = nullptr,
     .colunas = alarmesVerificados,
     .titulo = u"Listagem de Alarmes",
     .tituloImpressao = u"Listagem de Alarmes",
     .relatorio = u"DataReportListagemAlarmesMask",
     .ligacao = LigacaoListagem::Verificados,
     .comFiltro = false,
     .chaveImpressao = u"frmListagemAlarmesMask.Caption"},
};

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
    try {
        return modDoubleTratamento::NumeroParaTexto(modDoubleTratamento::TextoParaDouble(guardado), casas);
    } catch (const Falha &) {
        return guardado;
    }
}

} // namespace

std::span<const MembroListagem> familiaListagens() {
    return tabela;
}

namespace listagens {

ConsultaListagem consulta(const MembroListagem &membro, const Pedido &pedido) {
    ConsultaListagem c;
    const QString nome = membro.tabela.toString();
    QStringList colunas;
    for (const ColunaListagem &coluna : membro.colunas)
        colunas.append(coluna.campo.toString());
    if (membro.comMedias)
        colunas.append(u"MediaSync"_s);
    // The capture service owns the tables of alarms: what stands beside sensor and date is known by its place alone.
    if (membro.ligacao == LigacaoListagem::Alarmes)
        colunas = {u"*"_s};
    colunas.append(u"rowid"_s);
    c.colunas = colunas.join(u", "_s);
    c.visiveis = int(membro.colunas.size());
    c.data = u"Data"_s;
    c.colunaData = posicaoDe(membro, u"Data");

    const QString filtro = membro.filtro.isEmpty() ? QString() : u" AND "_s + membro.filtro;
    const QString onde = nome + u" WHERE " + escolhas::condicao(membro.chave) + filtro;
    for (const QStringList &chave : pedido.chaves) {
        // Without parentheses round the sensors, the date test of the alarms binds the first one only. It stays so.
        if (membro.ligacao == LigacaoListagem::Alarmes && !c.ramos.isEmpty())
            c.ramos.append({onde, escolhas::valores(chave), {}, {}});
        else
            c.ramos.append({onde, escolhas::valores(chave), pedido.intervalo.inicio, pedido.intervalo.fim});
    }

    const int nota = posicaoDe(membro, u"Flag");
    const int medias = membro.comMedias ? c.visiveis : -1;
    // Tested row by row: a search for rare notes inside the engine would hold the window still.
    c.aceita = [nota, medias, soComNota = pedido.soComNota && nota >= 0, soAlarmes = membro.soComNota && nota >= 0,
                soMedias = pedido.soMedias && medias >= 0](const Recordset &rs) {
        // To the check box a lone blank is a note too. It is no alarm: most readings are stored with one.
        int tamanho = 0;
        if ((soComNota && (rs.utf8(nota, tamanho), tamanho == 0)) || (soAlarmes && !temNota(rs, nota)))
            return false;
        return !soMedias || rs.texto(medias).compare(u"TRUE", Qt::CaseInsensitive) == 0;
    };
    c.celula = [&membro, data = c.colunaData](const QString &guardado, int coluna) {
        const ColunaListagem::Forma forma = membro.colunas[size_t(coluna)].forma;
        if (const int casas = membro.colunas[size_t(coluna)].casas; casas >= 0)
            return textoDoValor(guardado, casas);
        if (forma != ColunaListagem::Forma::ComoEsta)
            return textoDoLimite(guardado, forma);
        const double instante = coluna == data ? datas::segundosDe(guardado) : semData;
        return std::isnan(instante) ? guardado : datas::textoDataHora(datas::instanteDe(instante));
    };
    for (size_t i = 0; i < membro.colunas.size() && !c.examinar; ++i)
        if (membro.colunas[i].forma != ColunaListagem::Forma::ComoEsta)
            c.examinar = [&membro, i = int(i), data = c.colunaData,
                          cache = CacheLimites()](const Recordset &rs, Ilegiveis &ilegiveis) mutable {
                int tamanho = 0;
                const char *bytes = rs.utf8(i, tamanho);
                if (cache.de(bytes, tamanho).ilegivel)
                    ilegiveis.juntar(membro.tabela, rs.texto(0), rs.texto(data), rs.texto(i));
            };
    if (membro.edita) {
        c.colunaEditavel = nota;
        c.tabela = nome;
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
    QStringList colunas;
    for (const ColunaListagem &coluna : membro.colunas)
        colunas.append(coluna.campo == campoDescricao && ip.isEmpty()
                           ? u"'[' || ifnull(IP_Nome, '') || '] > ' || ifnull(Descricao, '')"_s
                           : coluna.campo.toString());
    colunas.append(u"rowid"_s);
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
