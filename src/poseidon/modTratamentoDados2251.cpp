#include "poseidon/modTratamentoDados2251.h"

#include "core/falha.h"
#include "core/literais.h"
#include "core/modDoubleTratamento.h"
#include "poseidon/dataLog.h"
#include "poseidon/mensagens2251.h"

#include <cmath>

using namespace modTratamentoDados2251;

namespace {

constexpr int primeiroCampo = 5; // of the pairs
constexpr int campoTipo = 3;
constexpr int campoContagem = 4;
constexpr int primeiraSaida = 150; // outputs are numbered from behind this one
constexpr int maximoDeNumeros = std::numeric_limits<qint16>::max();
constexpr int algarismosExactos = 15;

[[noreturn]] void falharTipo(QStringView texto) {
    throw Falha(erros::tipoIncompativel, u"Valor ilegível: \"%1\""_s.arg(texto.left(60)));
}

// 0 for what is no number.
int numeroDe(QStringView identificador) {
    bool ok = false;
    const int n = identificador.trimmed().toInt(&ok);
    return ok ? n : 0;
}

bool booleanoDe(QStringView texto) {
    texto = texto.trimmed();
    if (texto.compare(u"True", Qt::CaseInsensitive) == 0)
        return true;
    if (texto.compare(u"False", Qt::CaseInsensitive) == 0)
        return false;
    return modDoubleTratamento::TextoParaDouble(texto.toString()) != 0;
}

qint16 numeroCurto(QStringView texto) {
    bool ok = false;
    const qint16 n = texto.trimmed().toShort(&ok);
    if (!ok)
        falharTipo(texto);
    return n;
}

// A plain whole number of tenths, as nearly every reading is; false for anything that needs a closer look.
bool decimosDe(QStringView texto, double &valor) {
    const bool negativo = texto.startsWith(u'-');
    const QStringView algarismos = negativo ? texto.sliced(1) : texto;
    if (algarismos.isEmpty() || algarismos.size() > algarismosExactos)
        return false;
    qint64 n = 0;
    for (const QChar c : algarismos) {
        if (c < u'0' || c > u'9')
            return false;
        n = n * 10 + (c.unicode() - u'0');
    }
    valor = double(negativo ? -n : n) / 10.0; // correctly rounded, hence what the text reads as
    return true;
}

void dimensionar(std::vector<qint16> &estados, QStringView contagem, qint16 inicial) {
    if (!estados.empty())
        return;
    bool ok = false;
    const int n = contagem.trimmed().toInt(&ok);
    if (!ok || n < 0)
        falharTipo(contagem);
    estados.assign(size_t(std::min(n, maximoDeNumeros)), inicial);
}

// Calls <fazer>(identifier, value) for every whole pair of a line.
template <typename Accao>
void cadaPar(qsizetype campos, const QStringView *campo, Accao &&fazer) {
    for (qsizetype i = primeiroCampo; i + 1 < campos; i += 2)
        fazer(campo[i], campo[i + 1]);
}

} // namespace

void TratamentoDados2251::Periodo::juntar(double data) {
    if (!(primeira <= data))
        primeira = data;
    if (!(ultima >= data))
        ultima = data;
}

qint64 TratamentoDados2251::linhasReunidas() const {
    return qint64(vTemperaturas.size() + vHumidades.size() + vMedias.size() + vSensUI.size() + vRegInputs.size() +
                  vRegSpider.size() + vRegOutputs.size());
}

void TratamentoDados2251::TratarDadosRecebidos(const QString &ip, const QString &linha, int nLeiturasMedia,
                                               bool primeira) {
    const auto passar = m_passar; // outlives this object, should the pass take it away
    passar();
    try {
        if (primeira) {
            NLeiturasMedia = nLeiturasMedia;
            CarregarVariaveis(ip);
        }
        Campos campos;
        for (const QStringView campo : qTokenize(linha, u';'))
            campos.append(campo);
        if (campos.size() > primeiroCampo)
            tratarLinha(campos);
    } catch (const std::exception &) { // the rest of this line only
    }
    passar();
}

void TratamentoDados2251::tratarLinha(const Campos &campos) {
    const bool entradas = campos[campoTipo] == u"3";
    const bool saidas = campos[campoTipo] == u"4";
    if (entradas)
        dimensionar(vInputs, campos[campoContagem], estadoDesconhecido);
    if (saidas)
        dimensionar(vOutputs, campos[campoContagem], estadoDesconhecido);
    const double data = dataLog::segundosDe(campos[0], campos[1]);
    if (std::isnan(data))
        return;
    if (entradas)
        TratarLinhaInputs(campos, data);
    else if (saidas)
        TratarLinhaOutputs(campos, data);
    else
        TratarLinha_SensoresESpider(campos, data);
}

void TratamentoDados2251::TratarLinhaInputs(const Campos &campos, double data) {
    cadaPar(campos.size(), campos.data(), [&](QStringView identificador, QStringView valor) {
        const int numero = numeroDe(identificador);
        if (numero <= 0)
            return;
        const bool ligado = booleanoDe(valor);
        if (numero > maximoDeNumeros)
            falharTipo(identificador);
        m_periodoInputs.juntar(data);
        vRegInputs.push_back({qint64(data), numero, ligado});
        vInputs.at(size_t(numero) - 1) = numeroCurto(valor); // beyond the count: the row stands, the rest is lost
    });
}

void TratamentoDados2251::TratarLinhaOutputs(const Campos &campos, double data) {
    cadaPar(campos.size(), campos.data(), [&](QStringView identificador, QStringView valor) {
        const int numero = numeroDe(identificador);
        if (numero <= primeiraSaida)
            return;
        const bool ligado = booleanoDe(valor);
        if (numero > maximoDeNumeros)
            falharTipo(identificador);
        m_periodoOutputs.juntar(data);
        vRegOutputs.push_back({qint64(data), numero, ligado});
        vOutputs.at(size_t(numero - primeiraSaida) - 1) = numeroCurto(valor);
    });
}

void TratamentoDados2251::TratarLinha_SensoresESpider(const Campos &campos, double data) {
    cadaPar(campos.size(), campos.data(), [&](QStringView identificador, QStringView valor) {
        const auto sensores = m_porID.constFind(identificador);
        if (sensores == m_porID.cend())
            tratarSpider(identificador, valor, data);
        else if (valor != semLeitura)
            for (const quint32 i : *sensores)
                tratarLeitura(vSensores[i], i, valor, data);
    });
}

void TratamentoDados2251::tratarSpider(QStringView identificador, QStringView bruto, double data) {
    for (InputSpider &entrada : vInputsSpider) {
        if (entrada.texto != identificador || (bruto != u"10" && bruto != u"0"))
            continue;
        if (entrada.InputID < std::numeric_limits<qint16>::min() || entrada.InputID > maximoDeNumeros)
            falharTipo(identificador);
        const int estado = TratarValorRecebidoSpider(bruto);
        m_periodoSpider.juntar(data);
        vRegSpider.push_back({qint64(data), entrada.InputID, estado});
        entrada.estado = qint16(estado);
    }
}

double TratamentoDados2251::valorCalibrado(const Sensor &sensor, QStringView bruto) {
    double valor = 0;
    const bool simples = decimosDe(bruto, valor);
    if (!simples)
        valor = modDoubleTratamento::TextoParaDouble(TratarValor(bruto));
    if (std::isnan(sensor.Calibracao))
        throw Falha(erros::tipoIncompativel, mensagens2251::calibracaoIlegivel.texto(sensor.SensorID));
    return simples && sensor.Calibracao == 0 ? valor : comoTexto(valor + sensor.Calibracao);
}

void TratamentoDados2251::tratarLeitura(const Sensor &sensor, quint32 indice, QStringView bruto, double data) {
    if (sensor.especie == Especie::Nenhuma)
        return;
    // The value first: what cannot be read leaves no row and moves no bound.
    double valor = semData;
    if (!bruto.isEmpty())
        valor = valorCalibrado(sensor, bruto);
    const bool lido = !bruto.isEmpty();
    switch (sensor.especie) {
    case Especie::Temperatura:
        m_periodoTemperaturas.juntar(data);
        vTemperaturas.push_back({valor, qint64(data), indice});
        if (lido)
            AdicionarValorParaMediaTemperatura(sensor, indice, valor, data);
        break;
    case Especie::Humidade:
        m_periodoHumidade.juntar(data);
        vHumidades.push_back({valor, qint64(data), indice});
        break;
    case Especie::SensUI:
        if (lido)
            valor = CalibrarSensUI(sensor, valor);
        m_periodoSensUI.juntar(data);
        vSensUI.push_back({valor, qint64(data), indice});
        break;
    case Especie::Nenhuma:
        break;
    }
}

double TratamentoDados2251::CalibrarSensUI(const Sensor &sensor, double valor) const {
    if (sensor.escala < 0)
        return DuasCasas(valor);
    // A range without width puts no value on a scale: the reading stands as one that could not be had.
    if (sensor.entrada.maximo == sensor.entrada.minimo)
        return semData;
    const QString texto = TratarValorSensUI(valor, vEscalas[size_t(sensor.escala)].gama, sensor.Tipo, sensor.entrada);
    return DuasCasas(modDoubleTratamento::TextoParaDouble(texto));
}

void TratamentoDados2251::AdicionarValorParaMediaTemperatura(const Sensor &sensor, quint32 indice, double valor,
                                                             double data) {
    if (NLeiturasMedia <= 1) {
        vMedias.push_back({DuasCasas(valor), qint64(data), indice});
        return;
    }
    Acumulador &acumulador = vAcumuladores[size_t(sensor.acumulador)];
    if (!acumulador.existe) {
        acumulador = {true, NLeiturasMedia - 1, valor};
        return;
    }
    acumulador.soma += valor;
    if (acumulador.resta >= 2) {
        --acumulador.resta;
        return;
    }
    vMedias.push_back({DuasCasas(acumulador.soma / NLeiturasMedia), qint64(data), indice});
    acumulador.soma = 0;
    acumulador.resta = NLeiturasMedia;
}
