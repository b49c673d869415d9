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
    if (!canal.Units)
        return u"Units"_s;
    const Unidade *unidade = unidadeDe(canal);
    if (!unidade)
        return {};
    bool inteiro = true;
    if (unidade->tipo.isEmpty() && canal.ID)
        canal.ID->toInt(&inteiro);
    if (!canal.ID || canal.ID->isEmpty() || !inteiro)
        return u"ID"_s;
    if (!canal.Name)
        return u"Name"_s;
    if (unidade->tipo.isEmpty())
        return {};
    if (unidade->semLigacaoDesactiva && !canal.Value)
        return u"Value"_s;
    if (!canal.Min || !eNumero(*canal.Min))
        return u"Min"_s;
    return !canal.Max || !eNumero(*canal.Max) ? u"Max"_s : QString();
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
    for (qsizetype i = 0; i < documento.canais.size(); ++i)
        if (const QString falta = faltaNoCanal(documento.canais[i]); !falta.isEmpty())
            return u"SenSet[%1]/%2"_s.arg(i + 1).arg(falta);
    return {};
}

// Names of channels whose identifier is another unit's.
QStringList importarCanais(const DocumentoSetup &documento, const QString &ip, const QString &endereco, int modo) {
    QStringList alheios;
    for (const DocumentoSetup::Canal &canal : documento.canais) {
        const Unidade *unidade = unidadeDe(canal);
        if (!unidade)
            continue;
        const QString nome = canal.Name->left(maximoDoNome);
        if (unidade->tipo.isEmpty()) {
            AdicionarSpiderInputs(ip, canal.ID->toInt(), nome);
            continue;
        }
        const bool activa = !unidade->semLigacaoDesactiva || canal.Value != nadaLigado;
        if (!AdicionarLinhaHub({criarSensorID(*canal.ID, endereco, documento.MAC), *canal.ID, unidade->tipo.toString(),
                                nome, activa, modDoubleTratamento::TextoParaDouble(*canal.Min),
                                modDoubleTratamento::TextoParaDouble(*canal.Max), QString::number(modo) + ip}))
            alheios += nome;
    }
    return alheios;
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

Resultado LerSetupXML(const QString &xml, const QString &ip, const QString &endereco, int modo) {
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
        const QStringList alheios = importarCanais(documento, ip, endereco, modo);
        CarregarPoseidonInputsBD(ip);
        CarregarPoseidonOutputsBD(ip);
        transaccao.confirmar();
        resultado.importado = true;
        if (!alheios.isEmpty())
            resultado.motivo = mensagens2251::sensorAlheio.texto(alheios.join(u", "));
    } catch (const Falha &f) {
        resultado.motivo = f.descricao();
    }
    return resultado;
}

Resultado CarregarPoseidonParaBD(const QString &ip, const QString &tipoN, const QString &udp, const QString &mac,
                                 const QString &nome, const QString &porta, const QString &seleccionado,
                                 const QString &apagar, const QString &nLeituras, const Descarregador &DescarregarXML) {
    bool numero = false;
    const int leituras = nLeituras.toInt(&numero);
    try {
        listaPoseidons::AdicionarBDPoseidons({ip, tipoN.toInt(), mac, nome, porta.toInt(), udp, seleccionado == u"SIM",
                                              apagar == u"SIM", numero && leituras >= 1 ? leituras : 1});
    } catch (const Falha &f) {
        return {false, f.descricao(), {}, {}, {}};
    }
    const QString xml = DescarregarXML(ip, porta);
    return LerSetupXML(xml, ip, ip, modoDaqui);
}

} // namespace importacao
