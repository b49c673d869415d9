#include "poseidon/modPoseidons.h"

#include "core/estado.h"
#include "core/literais.h"
#include "core/rotina.h"
#include "data/ligacao.h"

#include <QStringList>

#include <algorithm>

namespace {

const QString prefixo = u"http://"_s;

QString semBarraFinal(QString texto) {
    if (texto.endsWith(u'/'))
        texto.chop(1);
    return texto;
}

QString anfitriao(const QString &endereco) {
    const bool comPrefixo = endereco.startsWith(prefixo, Qt::CaseInsensitive);
    const QStringList partes = semBarraFinal(comPrefixo ? endereco.mid(prefixo.size()) : endereco).split(u':');
    return partes.size() == 1 ? partes.first() : partes[partes.size() - 2];
}

} // namespace

namespace modPoseidons {

quint16 TratarPortaDoEndereco(const QString &endereco) {
    const QStringList partes = semBarraFinal(endereco).split(u':');
    bool numero = false;
    const quint16 porta = partes.last().toUShort(&numero);
    return partes.size() > 1 && numero && porta > 0 ? porta : portaPorOmissao;
}

QString TratarEndereco(const QString &endereco, bool comHTTP) {
    const QString nome = anfitriao(endereco);
    return comHTTP ? TratarEnderecoHTTP(nome) : nome;
}

QString TratarEnderecoComPorta(const QString &endereco, bool comHTTP, quint16 porta) {
    return TratarEndereco(endereco, comHTTP) + u':' + QString::number(porta);
}

QString TratarEnderecoHTTP(const QString &endereco) {
    return endereco.startsWith(prefixo, Qt::CaseInsensitive) ? endereco : prefixo + endereco;
}

bool EnderecoENumerico(const QString &texto) {
    return texto.count(u'.') == 3 &&
           std::all_of(texto.begin(), texto.end(), [](QChar c) { return c == u'.' || (c >= u'0' && c <= u'9'); });
}

QString TratarIP(const QString &ip) {
    return ip.section(u':', 0, 0);
}

QString TratarEnderecoRemoto(const QString &endereco, quint16 porta) {
    return QString(endereco).remove(u':' + QString::number(porta));
}

QString enderecoDoSetup(const QString &endereco) {
    return TratarEndereco(endereco, true) + u"/setup.xml";
}

void AlterarEstadoSensorNaBD(const QString &sensorID, const QString &estado) {
    Rotina("modPoseidons.AlterarEstadoSensorNaBD", [&] {
        cnBD().executar(u"UPDATE Sensores SET Seleccionado = ? WHERE SensorID = ?"_s, {estado, sensorID});
    });
}

} // namespace modPoseidons

namespace modNetworkStatus {

bool NetworkIsAlive() {
    return estado().ambiente.redeLigada && estado().ambiente.redeLigada();
}

} // namespace modNetworkStatus
