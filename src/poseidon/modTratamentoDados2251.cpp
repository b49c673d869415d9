#include "poseidon/modTratamentoDados2251.h"

#include "core/falha.h"
#include "core/literais.h"
#include "core/modDoubleTratamento.h"
#include "poseidon/dataLog.h"
#include "poseidon/mensagens2251.h"
#include "poseidon/substituidas2251.h"

#include <cmath>

using namespace modTratamentoDados2251;

namespace {

constexpr int primeiroCampo = 5; // of the pairs
constexpr int campoTipo = 3;
constexpr int campoContagem = 4;
constexpr int primeiraSaida = 150; // outputs are numbered from behind this one
constexpr int maximoDeNumeros = std::numeric_limits<qint16>::max();
constexpr int algarismosExactos = 15;

// The beginning of a text of the log, for a message.
QString amostra(QStringView texto) {
    QString t = texto.left(40).toString();
    std::replace_if(
        t.begin(), t.end(), [](QChar c) { return !c.isPrint(); }, u'?');
    return u'"' + t + u'"';
}

[[noreturn]] void falharTipo(QStringView texto) {
    throw Falha(erros::tipoIncompativel, mensagens2251::valorIlegivel.texto(amostra(texto)));
}

// 0 for what is no number.
int numeroDe(QStringView identificador, QString &ilegivel) {
    bool ok = false;
    const int n = identificador.trimmed().toInt(&ok);
    if (!ok)
        ilegivel = identificador.toString();
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

// Beyond the count that the log tells the row stands, and the rest of the line is lost.
qint16 &estadoDe(std::vector<qint16> &estados, int numero, QStringView identificador) {
    if (size_t(numero) > estados.size())
        throw Falha(erros::tipoIncompativel, mensagens2251::alemDaContagem.texto(amostra(identificador)));
    return estados[size_t(numero) - 1];
}

// Calls <fazer>(identifier, value) for every whole pair of a line.
template <typename Accao>
void cadaPar(qsizetype campos, const QStringView *campo, Accao &&fazer) {
    for (qsizetype i = primeiroCampo; i + 1 < campos; i += 2)
        fazer(campo[i], campo[i + 1]);
}

} // namespace

TratamentoDados2251::TratamentoDados2251(std::function<void()> passar) : m_passar(std::move(passar)) {}
TratamentoDados2251::~TratamentoDados2251() = default;
TratamentoDados2251::TratamentoDados2251(TratamentoDados2251 &&) = default;
TratamentoDados2251 &TratamentoDados2251::operator=(TratamentoDados2251 &&) = default;

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
        if (campos.size() <= primeiroCampo)
            throw Falha(erros::tipoIncompativel, mensagens2251::linhaCurta.texto(amostra(linha)));
        m_parIlegivel.clear();
        tratarLinha(campos);
        if (!m_parIlegivel.isEmpty())
            falharTipo(m_parIlegivel);
        if (campos.size() % 2 == 0 && !campos.last().trimmed().isEmpty())
            throw Falha(erros::tipoIncompativel, mensagens2251::semValor.texto(amostra(campos.last())));
        ++m_balanco.lidas;
    } catch (const Falha &f) { // the rest of this line only
        naoLida(f.descricao());
    } catch (const std::exception &e) {
        naoLida(QString::fromUtf8(e.what()));
    }
    passar();
}

void TratamentoDados2251::naoLida(const QString &causa) {
    ++m_balanco.naoLidas;
    if (m_balanco.ilegiveis.size() < maximoDeIlegiveis)
        m_balanco.ilegiveis.push_back({m_balanco.lidas + m_balanco.naoLidas, causa});
}

void TratamentoDados2251::tratarLinha(const Campos &campos) {
    const bool entradas = campos[campoTipo] == u"3";
    const bool saidas = campos[campoTipo] == u"4";
    const double data = dataLog::segundosDe(campos[0], campos[1]);
    if (entradas)
        dimensionar(vInputs, campos[campoContagem], estadoDesconhecido);
    if (saidas)
        dimensionar(vOutputs, campos[campoContagem], estadoDesconhecido);
    if (std::isnan(data))
        throw Falha(erros::tipoIncompativel,
                    mensagens2251::dataIlegivel.texto(amostra(QString(campos[0] + u' ' + campos[1]))));
    if (entradas)
        TratarLinhaInputs(campos, data);
    else if (saidas)
        TratarLinhaOutputs(campos, data);
    else
        TratarLinha_SensoresESpider(campos, data);
}

void TratamentoDados2251::TratarLinhaInputs(const Campos &campos, double data) {
    cadaPar(campos.size(), campos.data(), [&](QStringView identificador, QStringView valor) {
        const int numero = numeroDe(identificador, m_parIlegivel);
        if (numero <= 0)
            return;
        const bool ligado = booleanoDe(valor);
        if (numero > maximoDeNumeros)
            falharTipo(identificador);
        vRegInputs.push_back({qint64(data), numero, ligado});
        estadoDe(vInputs, numero, identificador) = numeroCurto(valor);
    });
}

void TratamentoDados2251::TratarLinhaOutputs(const Campos &campos, double data) {
    cadaPar(campos.size(), campos.data(), [&](QStringView identificador, QStringView valor) {
        const int numero = numeroDe(identificador, m_parIlegivel);
        if (numero <= primeiraSaida)
            return;
        const bool ligado = booleanoDe(valor);
        if (numero > maximoDeNumeros)
            falharTipo(identificador);
        vRegOutputs.push_back({qint64(data), numero, ligado});
        estadoDe(vOutputs, numero - primeiraSaida, identificador) = numeroCurto(valor);
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
        if (entrada.texto != identificador || bruto == semLeitura)
            continue;
        if (bruto != u"10" && bruto != u"0") {
            m_parIlegivel = bruto.toString();
            continue;
        }
        if (entrada.InputID < std::numeric_limits<qint16>::min() || entrada.InputID > maximoDeNumeros)
            falharTipo(identificador);
        const int estado = TratarValorRecebidoSpider(bruto);
        vRegSpider.push_back({qint64(data), entrada.InputID, estado});
        entrada.estado = qint16(estado);
    }
}

double TratamentoDados2251::valorCalibrado(const Sensor &sensor, QStringView bruto) {
    double valor = 0;
    const bool simples = decimosDe(bruto, valor);
    if (!simples) {
        // The normaliser takes whatever stands between digits for their separator; damage is none.
        if (!std::all_of(bruto.cbegin(), bruto.cend(),
                         [](QChar c) { return c.isDigit() || QStringView(u"-+., ").contains(c); }))
            falharTipo(bruto);
        try {
            valor = modDoubleTratamento::TextoParaDouble(TratarValor(bruto));
        } catch (const Falha &) {
            falharTipo(bruto);
        }
    }
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
        vTemperaturas.push_back({valor, qint64(data), indice});
        if (lido)
            AdicionarValorParaMediaTemperatura(sensor, indice, valor, data);
        break;
    case Especie::Humidade:
        vHumidades.push_back({valor, qint64(data), indice});
        break;
    case Especie::SensUI:
        if (lido)
            valor = CalibrarSensUI(sensor, valor);
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
