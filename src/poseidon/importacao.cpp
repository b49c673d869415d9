#include "poseidon/importacao.h"

#include "core/falha.h"
#include "core/literais.h"
#include "core/modDoubleTratamento.h"
#include "data/ligacao.h"
#include "poseidon/documentoSetup.h"
#include "poseidon/importacao_interno.h"
#include "poseidon/listaPoseidons.h"
#include "poseidon/mensagens2251.h"
#include "poseidon/modPoseidons.h"
#include "poseidon/tipos2251.h"

namespace {

using namespace importacao;

constexpr int caracteresDoSensorID = 16;
constexpr int caracteresDoID = 13; // behind the three of the address
constexpr qsizetype maximoDoNome = 255;
constexpr qsizetype canaisDitos = 5;
constexpr qsizetype caracteresDitos = 40;
constexpr QStringView nadaLigado = u"-999.9";

// What a channel's unit makes of it.
struct Unidade {
    QStringView unidade;
    QStringView tipo;         // empty: a Spider input
    bool semLigacaoDesactiva; // a value of nothing connected counts
};
constexpr Unidade unidades[] = {
    {u"C", modTratamentoDados2251::tipoTemperatura, true},
    {u"%RH", modTratamentoDados2251::tipoHumidade, true},
    {u"V", modTratamentoDados2251::tipoTensao, false},
    {u"mA", modTratamentoDados2251::tipoCorrente, false},
    {u"s", u"", false},
};

const Unidade *unidadeDe(const DocumentoSetup::Canal &canal) {
    for (const Unidade &u : unidades)
        if (canal.Units == u.unidade)
            return &u;
    return nullptr;
}

// Of a text that an outsider wrote, for a sentence.
QString curto(const QString &texto) {
    return nomes::inicio(texto.simplified(), caracteresDitos);
}

QString ilegivel(QStringView elemento, const QString &texto) {
    return mensagens2251::canalIlegivel.texto().arg(elemento.toString(), curto(texto));
}

bool eNumero(const QString &texto) {
    try {
        modDoubleTratamento::TextoParaDouble(texto);
        return true;
    } catch (const Falha &) {
        return false;
    }
}

// What is wrong with a channel that would be imported; empty when nothing is.
QString faltaNoCanal(const DocumentoSetup::Canal &canal) {
    using mensagens2251::canalSemElemento;
    if (!canal.Units)
        return canalSemElemento.texto().arg(u"Units");
    const Unidade *unidade = unidadeDe(canal);
    if (!unidade)
        return {};
    const bool spider = unidade->tipo.isEmpty();
    const struct {
        QStringView nome;
        const std::optional<QString> &texto;
        bool preciso, numero;
    } elementos[] = {{u"ID", canal.ID, true, false},
                     {u"Name", canal.Name, true, false},
                     {u"Value", canal.Value, unidade->semLigacaoDesactiva, false},
                     {u"Min", canal.Min, !spider, true},
                     {u"Max", canal.Max, !spider, true}};
    for (const auto &e : elementos) {
        if (e.preciso && !e.texto)
            return canalSemElemento.texto().arg(e.nome);
        if (e.preciso && e.numero && !eNumero(*e.texto))
            return ilegivel(e.nome, *e.texto);
    }
    bool inteiro = true; // the inputs' own numbers are no texts
    if (spider)
        canal.ID->toInt(&inteiro);
    return inteiro ? QString() : ilegivel(u"ID", *canal.ID);
}

QString faltaNoDocumento(const DocumentoSetup &documento, bool remoto) {
    if (!documento.temAgent)
        return u"Agent"_s;
    if (!documento.temSenSet)
        return u"SenSet"_s;
    if (remoto && documento.MAC.isEmpty())
        return u"Agent/MAC"_s;
    if (documento.canais.size() > DocumentoSetup::maximoDeCanais)
        return u"SenSet (%1)"_s.arg(documento.canais.size());
    return {};
}

// The first of a list, and how many more there are.
QString asPrimeiras(const QStringList &todas, const QString &entre) {
    QString texto = todas.mid(0, canaisDitos).join(entre);
    if (todas.size() > canaisDitos)
        texto += entre + mensagens2251::eMais.texto().arg(todas.size() - canaisDitos);
    return texto;
}

// What an import could not follow.
struct PorSeguir {
    QStringList deFora;  // channels that are no channels
    QStringList alheios; // whose identifier is another unit's

    QString texto(const QString &ip) const {
        QStringList frases;
        if (!deFora.isEmpty())
            frases += mensagens2251::canaisDeFora.texto().arg(ip, asPrimeiras(deFora, u"; "_s));
        if (!alheios.isEmpty())
            frases += mensagens2251::sensorAlheio.texto(asPrimeiras(alheios, u", "_s));
        return frases.join(u". "_s);
    }
};

// A channel as a user finds it in the document.
QString nomeDoCanal(const DocumentoSetup::Canal &canal, qsizetype posicao) {
    const QString nome = canal.Name.value_or(QString());
    const QString dito = curto(nome.isEmpty() ? canal.ID.value_or(QString()) : nome);
    const QString lugar = u"SenSet[%1]"_s.arg(posicao + 1);
    return dito.isEmpty() ? lugar : QString(dito + u' ' + lugar);
}

PorSeguir importarCanais(const DocumentoSetup &documento, const QString &ip, const QString &endereco, int modo,
                         const std::function<void()> &passar) {
    PorSeguir porSeguir;
    Conhecido conhecido;
    for (qsizetype i = 0; i < documento.canais.size(); ++i) {
        const DocumentoSetup::Canal &canal = documento.canais[i];
        if (passar)
            passar();
        if (const QString falta = faltaNoCanal(canal); !falta.isEmpty()) {
            porSeguir.deFora += u"%1 (%2)"_s.arg(nomeDoCanal(canal, i), falta);
            continue;
        }
        const Unidade *unidade = unidadeDe(canal);
        if (!unidade)
            continue;
        const QString nome = nomes::inicio(*canal.Name, maximoDoNome);
        if (unidade->tipo.isEmpty()) {
            AdicionarSpiderInputs(ip, canal.ID->toInt(), nome, conhecido);
            continue;
        }
        const bool activa = !unidade->semLigacaoDesactiva || canal.Value != nadaLigado;
        if (!AdicionarLinhaHub({criarSensorID(*canal.ID, endereco, documento.MAC), *canal.ID, unidade->tipo.toString(),
                                nome, activa, modDoubleTratamento::TextoParaDouble(*canal.Min),
                                modDoubleTratamento::TextoParaDouble(*canal.Max), QString::number(modo) + ip},
                               conhecido))
            porSeguir.alheios += curto(nome);
    }
    return porSeguir;
}

} // namespace

namespace importacao {

QString criarSensorID(const QString &id, const QString &endereco, const QString &mac) {
    if (modPoseidons::EnderecoENumerico(endereco))
        return endereco.section(u'.', -1).rightJustified(caracteresDoSensorID - caracteresDoID, u'0') +
               id.right(caracteresDoID).rightJustified(caracteresDoID, u'0');
    const QString fim = (id.size() == 2 ? u'0' + id : id).right(caracteresDoSensorID);
    return QString(mac).remove(u':').leftJustified(caracteresDoSensorID - fim.size(), u'0', true) + fim;
}

Resultado LerSetupXML(const QString &xml, const QString &ip, const QString &endereco, int modo,
                      const std::function<void()> &passar) {
    const DocumentoSetup documento = DocumentoSetup::ler(xml);
    Resultado resultado;
    resultado.motivo = documento.motivo;
    if (!documento.lido())
        return resultado;
    resultado.portaTelnet = documento.TelnetPort;
    resultado.data = documento.Date;
    resultado.hora = documento.Time;
    const QString falta = faltaNoDocumento(documento, !modPoseidons::EnderecoENumerico(endereco));
    if (!falta.isEmpty()) {
        resultado.motivo = mensagens2251::xmlEstrutura.texto(falta);
        return resultado;
    }
    try {
        Transaccao transaccao(cnBD());
        const PorSeguir porSeguir = importarCanais(documento, ip, endereco, modo, passar);
        CarregarPoseidonInputsBD(ip);
        CarregarPoseidonOutputsBD(ip);
        transaccao.confirmar();
        resultado.importado = true;
        resultado.motivo = porSeguir.texto(ip);
    } catch (const Falha &f) {
        resultado.motivo = f.descricao();
    }
    return resultado;
}

Resultado CarregarPoseidonParaBD(const QString &ip, const QString &tipoN, const QString &udp, const QString &mac,
                                 const QString &nome, const QString &porta, const QString &seleccionado,
                                 const QString &apagar, const QString &nLeituras, const Descarregador &DescarregarXML,
                                 const std::function<void()> &passar) {
    bool numero = false;
    const int leituras = nLeituras.toInt(&numero);
    try {
        listaPoseidons::AdicionarBDPoseidons({ip, tipoN.toInt(), mac, nome, porta.toInt(), udp, seleccionado == u"SIM",
                                              apagar == u"SIM", numero && leituras >= 1 ? leituras : 1});
    } catch (const Falha &f) {
        return {false, f.descricao(), {}, {}, {}};
    }
    const QString xml = DescarregarXML(ip, porta);
    return LerSetupXML(xml, ip, ip, modoDaqui, passar);
}

} // namespace importacao
