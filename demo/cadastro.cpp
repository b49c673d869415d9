#include "demo/historia.h"

#include "core/literais.h"
#include "data/insercao.h"
#include "data/ligacao.h"
#include "demo/unidadesVirtuais.h"

#include <QVariant>

#include <cmath>

// Everything that is not history: units, groups, sensors, scales, rules and people.
namespace demonstracao {

namespace {

// Rows of short tables: texts and numbers as they stand.
void inserir(Ligacao &bd, const QString &tabela, const QStringList &colunas, const QList<QVariantList> &linhas) {
    Insercao i(bd, tabela, colunas);
    for (const QVariantList &linha : linhas) {
        for (int c = 0; c < linha.size(); ++c) {
            const QVariant &v = linha[c];
            if (v.isNull())
                i.nulo(c);
            else if (v.typeId() == QMetaType::Int)
                i.inteiro(c, v.toInt());
            else if (v.typeId() == QMetaType::Double)
                i.real(c, v.toDouble());
            else
                i.texto(c, v.toString());
        }
        i.gravar();
    }
}

void gravarUnidades(Historia &h) {
    QList<QVariantList> linhas;
    for (const Unidade &u : unidades())
        linhas.append({u.endereco.toString(), u.nome.toString(), u.firmware, double(u.modelo), u.mac.toString(),
                       portaWebDasUnidades, u.modo == '2' ? u"AUT"_s : u"MAN"_s, 2000, 1,
                       unidadeVirtual(u.endereco) ? 1 : 0, 0, 6});
    inserir(h.bd, u"Poseidons"_s,
            {u"PoseidonIP"_s, u"Nome"_s, u"FirmwareV"_s, u"Modelo"_s, u"Mac"_s, u"Porta"_s, u"m"_s, u"Timeout"_s,
             u"Estado"_s, u"VistrelS"_s, u"ApagarLog"_s, u"NLeiturasM"_s},
            linhas);
    linhas.clear();
    for (const Grupo &g : grupos())
        linhas.append({g.codigo, g.nome.toString()});
    inserir(h.bd, u"Grupos"_s, {u"codGrupo"_s, u"Descricao"_s}, linhas);
    inserir(h.bd, u"CMDGrupos"_s, {u"Descricao"_s}, {{u"Comandos Frio"_s}, {u"Comandos AVAC"_s}});
    inserir(h.bd, u"PortBox"_s, {u"Descricao"_s}, {{u"PortBox Portaria"_s}, {u"PortBox Armazém"_s}});

    inserir(h.bd, u"Damocles"_s, {u"DamoclesIP"_s, u"Nome"_s}, {{u"127.0.0.21"_s, u"Damocles Portaria"_s}});
    inserir(h.bd, u"DamoclesInputs"_s, {u"DamoclesIP"_s, u"InputNum"_s, u"Descricao"_s},
            {{u"127.0.0.21"_s, 1, u"Portão Norte"_s},
             {u"127.0.0.21"_s, 2, u"Portão Sul"_s},
             {u"127.0.0.21"_s, 3, u"Inundação Cave"_s}});
    inserir(h.bd, u"DamoclesOutputs"_s, {u"DamoclesIP"_s, u"OutputNum"_s, u"Descricao"_s},
            {{u"127.0.0.21"_s, 1, u"Sirene Portaria"_s}});
    inserir(h.bd, u"IOcontrollers"_s, {u"ioip"_s, u"Descricao"_s}, {{u"127.0.0.31"_s, u"Controlador AVAC"_s}});
    inserir(h.bd, u"IOcontrollersInputs"_s, {u"ioip"_s, u"InputNum"_s, u"Descricao"_s},
            {{u"127.0.0.31"_s, 1, u"Filtro Colmatado"_s}, {u"127.0.0.31"_s, 2, u"Falha de Fase"_s}});
    inserir(h.bd, u"IOcontrollersOutputs"_s, {u"ioip"_s, u"OutputNum"_s, u"Descricao"_s},
            {{u"127.0.0.31"_s, 1, u"Ventilador Cave"_s}, {u"127.0.0.31"_s, 2, u"Bomba de Água"_s}});
}

void gravarCanais(Historia &h) {
    const QString data = QString::fromLatin1(textoData(h.fim - 3600));
    QList<QVariantList> entradas;
    const QStringList portas{u"Porta Câmara 1"_s, u"Porta Câmara 2"_s, u"Porta Congelados"_s};
    for (int n = 1; n <= portas.size(); ++n)
        entradas.append({u"127.0.0.2"_s, n, n, 1, u"0"_s, u"0"_s, u"False"_s, portas[n - 1]});
    entradas.append({u"127.0.0.3"_s, 1, 1, 1, u"0"_s, u"0"_s, u"False"_s, u"Porta Laboratório"_s});
    entradas.append({u"127.0.0.3"_s, 2, 2, 2, u"0"_s, u"0"_s, u"False"_s, u"Rede Eléctrica"_s});
    entradas.append({u"127.0.0.6"_s, 1, 1, 1, u"0"_s, u"0"_s, u"False"_s, u"Porta do Cais"_s});
    inserir(h.bd, u"PoseidonInputs"_s,
            {u"PoseidonIP"_s, u"InputNum"_s, u"InputID"_s, u"codFuncao"_s, u"InputState"_s, u"OutputState"_s,
             u"Estado"_s, u"Descricao"_s},
            entradas);
    QList<QVariantList> spider;
    for (const EntradaSpider &e : entradasSpider())
        spider.append({e.endereco.toString(), e.identificador, int(spider.size()) + 1, u"SIM"_s,
                       spider.isEmpty() ? e.endereco.toString() : QString(), spider.isEmpty() ? u"1"_s : QString(),
                       u"0"_s, u"0"_s, u"0"_s, e.nome.toString()});
    inserir(h.bd, u"PoseidonInputsSpider"_s,
            {u"PoseidonIP"_s, u"InputID"_s, u"InputNum"_s, u"Seleccionado"_s, u"opOutputIP"_s, u"opOutputID"_s,
             u"InputState"_s, u"OutputState"_s, u"Estado"_s, u"Descricao"_s},
            spider);
    inserir(h.bd, u"PoseidonOutputs"_s,
            {u"PoseidonIP"_s, u"OutputNum"_s, u"OutputID"_s, u"codFuncao"_s, u"DataUltimaMod"_s, u"Intervalo"_s,
             u"Estado"_s, u"EstadoPoseidon"_s, u"Descricao"_s},
            {{u"127.0.0.2"_s, 1, 151, 1, data, 0, u"False"_s, u"0"_s, u"Sirene Frio"_s},
             {u"127.0.0.2"_s, 2, 152, 2, data, 30, u"False"_s, u"0"_s, u"Luz de Alarme"_s},
             {u"127.0.0.3"_s, 1, 151, 1, data, 0, u"False"_s, u"0"_s, u"Sirene Laboratório"_s}});
}

void gravarEscalas(Historia &h) {
    QList<QVariantList> linhas, relacoes;
    for (const Escala &e : escalas())
        linhas.append({e.codigo, QString::number(e.codigo), u"20X4X%1X%2"_s.arg(e.maximo).arg(e.minimo),
                       e.nome.toString(), e.maximo, e.minimo});
    inserir(h.bd, u"SensUI_Escalas"_s, {u"EscalaID"_s, u"ID"_s, u"Ident"_s, u"NomeEscala"_s, u"Maximo"_s, u"Minimo"_s},
            linhas);
    for (const Sensor &s : h.sensores)
        if (s.escala)
            relacoes.append({s.SensorID, s.escala->codigo});
    inserir(h.bd, u"SensUI_Relacoes"_s, {u"SensorID"_s, u"EscalaID"_s}, relacoes);
}

void gravarRegras(Historia &h) {
    inserir(h.bd, u"REGRAS_CondicoesGruposHead"_s, {u"GrupoID"_s, u"Descricao"_s, u"Nome"_s},
            {{u"G1"_s, u"Frio fora de limites"_s, u"Alerta Cadeia Frio"_s},
             {u"G2"_s, u"Porta e temperatura"_s, u"Alerta Portas"_s}});
    inserir(h.bd, u"REGRAS_CondicoesInputs"_s, {u"CondicaoID"_s, u"NomeCondicao"_s},
            {{u"CI1"_s, u"Porta aberta 5 min"_s}, {u"CI2"_s, u"Porta lab. aberta"_s}, {u"CI3"_s, u"Falha de rede"_s}});
    QList<QVariantList> condicoes; // of the first four cold rooms
    const QStringList frio{u"T Câmara Frio 1"_s, u"T Câmara Frio 2"_s, u"T Vacinas"_s, u"T Congelados 1"_s};
    for (int i = 0; i < frio.size(); ++i)
        condicoes.append({u"CS%1"_s.arg(i + 1), frio[i], h.sensores[size_t(i)].SensorID});
    inserir(h.bd, u"REGRAS_CondicoesSensores"_s, {u"CondicaoID"_s, u"NomeCondicao"_s, u"SensorID"_s}, condicoes);
    inserir(h.bd, u"REGRAS_Emails"_s, {u"Descricao"_s}, {{u"Email Qualidade"_s}, {u"Email Manutenção"_s}});
    inserir(h.bd, u"REGRAS_Outputs"_s, {u"Descricao"_s}, {{u"Accionar sirene"_s}});
    inserir(h.bd, u"REGRAS_Sms"_s, {u"Descricao"_s}, {{u"SMS Piquete"_s}, {u"SMS Direcção"_s}});
    QList<QVariantList> pessoas;
    const QStringList nomes{u"Ana Ferreira"_s, u"Bruno Carvalho"_s, u"Carla Antunes"_s,
                            u"Duarte Melo"_s,  u"Eva Nogueira"_s,   u"Filipe Sá"_s};
    for (int i = 0; i < nomes.size(); ++i)
        pessoas.append({i + 1, nomes[i]});
    inserir(h.bd, u"MaskUtilizadores"_s, {u"ID"_s, u"Nome"_s}, pessoas);
}

void gravarSensores(Historia &h) {
    QList<QVariantList> linhas, calibracoes, visores, comEntradas, comSaidas;
    const QVariant nenhum;
    for (size_t i = 0; i < h.sensores.size(); ++i) {
        const Sensor &s = h.sensores[i];
        const double ultimo = std::isnan(h.ultimos[i]) ? -999.9 : h.ultimos[i];
        linhas.append({s.SensorID, s.ID, int(i) + 1, s.Tipo, s.Descricao, s.activo ? u"SIM"_s : u"NAO"_s, s.grupo,
                       s.Fonte, s.PoseidonIP, ultimo, s.SensUIMax, s.SensUIMin});
        const bool humidade = s.mede->limitesDaHumidade;
        const QVariant maximo = s.temMaximo() ? QVariant(s.maximo) : QVariant(u"NA"_s);
        const QVariant minimo = s.temMinimo() ? QVariant(s.minimo) : QVariant(u"NA"_s);
        calibracoes.append({s.SensorID, humidade ? nenhum : maximo, humidade ? nenhum : minimo,
                            humidade ? maximo : nenhum, humidade ? minimo : nenhum, s.mede->calibracao.toString(),
                            u"NA"_s, u"NA"_s, i % 5 == 3 ? QString(u"-0"_s + s.separador() + u"3"_s) : u"0"_s});
        if (s.ordem < 2)
            visores.append({s.SensorID});
        if (s.letra == 'C' && s.ordem < 4)
            comEntradas.append({s.SensorID});
        if (s.mede->comEscala && s.ordem == 0)
            comSaidas.append({s.SensorID});
    }
    inserir(h.bd, u"Sensores"_s,
            {u"SensorID"_s, u"ID"_s, u"Nlinha"_s, u"Tipo"_s, u"Descricao"_s, u"Seleccionado"_s, u"Grupo"_s, u"Fonte"_s,
             u"PoseidonIP"_s, u"UltTemp"_s, u"SensUIMax"_s, u"SensUIMin"_s},
            linhas);
    inserir(h.bd, u"Calibracoes"_s,
            {u"SondaID"_s, u"Maximo"_s, u"Minimo"_s, u"MaximoHum"_s, u"MinimoHum"_s, u"TipoSensor"_s, u"VDD"_s,
             u"VAD"_s, u"Calibracao"_s},
            calibracoes);
    inserir(h.bd, u"VisoresSensores"_s, {u"SensorID"_s}, visores);
    inserir(h.bd, u"SensoresInputs"_s, {u"SensorID"_s}, comEntradas);
    inserir(h.bd, u"SensoresLeiturasOutput"_s, {u"SensorID"_s}, comSaidas);
}

} // namespace

void gravarCadastro(Historia &h) {
    gravarUnidades(h);
    gravarCanais(h);
    gravarEscalas(h);
    gravarRegras(h);
    gravarSensores(h);
}

} // namespace demonstracao
