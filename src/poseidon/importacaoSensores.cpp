#include "poseidon/importacao_interno.h"

#include "core/literais.h"
#include "core/modTraducoes.h"
#include "data/ligacao.h"
#include "data/recordset.h"
#include "poseidon/importacao.h"
#include "poseidon/listaPoseidons.h"
#include "poseidon/tipos2251.h"

namespace {

using importacao::Conhecido;
using importacao::Sensor;

struct TipoAntigo {
    QStringView de, para;
};
constexpr TipoAntigo tiposAntigos[] = {
    {u"RS485 %", u"P 485 %"},
    {u"RS485", u"P RS485"},
    {u"1-Wire", u"P 1WIRE"},
};

// Limits of a quantity: which pair of columns holds them, and how the calibration row calls it.
struct Limites {
    QChar letra; // last of Tipo
    bool humidade;
    QStringView tipoSensor;
};
constexpr Limites limites[] = {
    {u'%', true, u"HUMTMP"},
    {u'V', false, u"SENSUI"},
    {u'A', false, u"SENSUI"},
    {QChar(), false, u"TMP"},
};

QString nomeDeOmissao() {
    return modTraducoes::texto(u"frmDescarregar2251"_s, u"Sensor"_s, u"Sensor"_s);
}

QString nomeUnico(const QString &nome, nomes::Registo &nomes) {
    return nomes.existe(nome) ? nomes.comNumero([&](int) { return QString(nome + u' '); }) : nome;
}

// The document's name, told apart from all others but the sensor's own: a document that comes again changes nothing.
void SondaEstaActivaGuardar2(const Sensor &sensor, const QString &antes, nomes::Registo &nomes) {
    nomes.tirar(antes);
    const QString nome = nomeUnico(sensor.Nome, nomes);
    nomes.juntar(nome);
    if (nome != antes)
        cnBD().executar(u"UPDATE Sensores SET Descricao = ? WHERE SensorID = ?"_s, {nome, sensor.SensorID});
}

int NSensoresNaBD() {
    Recordset rs = cnBD().consultar(u"SELECT COUNT(*) FROM Sensores"_s);
    return rs.avancar() ? int(rs.inteiro(0)) : 0;
}

void SondaEstaActivaGuardar(const Sensor &sensor, Conhecido &conhecido) {
    const auto info = modTratamentoDados2251::infoDoTipo(sensor.Tipo);
    const QString nome = nomeUnico(sensor.Nome, conhecido.nomes);
    cnBD().executar(u"INSERT INTO Sensores (SensorID, ID, Nlinha, Tipo, Descricao, Seleccionado, Grupo, Fonte, "
                    "PoseidonIP, UltTemp, SensUIMax, SensUIMin) VALUES (?,?,?,?,?,'SIM',0,'POSEIDON',?,-999.9,?,?)"_s,
                    {sensor.SensorID, sensor.ID.isEmpty() ? u" "_s : sensor.ID, ++conhecido.sensores, sensor.Tipo, nome,
                     sensor.PoseidonIP, info.sensUIMax, info.sensUIMin});
    conhecido.nomes.juntar(nome);
}

void AdicionarCalibracoesDoSensor(const Sensor &sensor) {
    const Limites *l = limites;
    while (!l->letra.isNull() && !sensor.Tipo.endsWith(l->letra))
        ++l;
    const QVariant na = u"NA"_s;
    const QVariant maximo = sensor.maximo;
    const QVariant minimo = sensor.minimo;
    const QVariantList valores{l->humidade ? na : maximo, l->humidade ? na : minimo, l->humidade ? maximo : na,
                               l->humidade ? minimo : na, l->tipoSensor.toString(),  sensor.SensorID};
    if (cnBD().executar(u"UPDATE Calibracoes SET Maximo = ?, Minimo = ?, MaximoHum = ?, MinimoHum = ?, TipoSensor = ?, "
                        "VDD = 'NA', VAD = 'NA', Calibracao = '0' WHERE SondaID = ?"_s,
                        valores) == 0)
        cnBD().executar(u"INSERT INTO Calibracoes (Maximo, Minimo, MaximoHum, MinimoHum, TipoSensor, SondaID, VDD, "
                        "VAD, Calibracao) VALUES (?,?,?,?,?,?,'NA','NA','0')"_s,
                        valores);
}

// A sensor made here whose unit left the list, as after a change of its address, goes over to the unit that has it now.
bool tomarPosse(const Sensor &sensor, const QString &dono) {
    if (dono.mid(1).compare(sensor.PoseidonIP.mid(1), Qt::CaseInsensitive) == 0)
        return true;
    if (!dono.startsWith(QString::number(importacao::modoDaqui)) || listaPoseidons::existeNaBD(dono.mid(1)))
        return false;
    cnBD().executar(u"UPDATE Sensores SET PoseidonIP = ? WHERE SensorID = ?"_s, {sensor.PoseidonIP, sensor.SensorID});
    return true;
}

} // namespace

namespace importacao {

Conhecido::Conhecido() : sensores(NSensoresNaBD()) {}

bool AdicionarLinhaHub(Sensor sensor, Conhecido &conhecido) {
    for (const TipoAntigo &t : tiposAntigos)
        if (sensor.Tipo == t.de)
            sensor.Tipo = t.para.toString();
    if (sensor.Nome.isEmpty())
        sensor.Nome = nomeDeOmissao();
    Recordset rs =
        cnBD().consultar(u"SELECT Descricao, PoseidonIP FROM Sensores WHERE SensorID = ?"_s, {sensor.SensorID});
    const bool existe = rs.avancar();
    const QString descricao = existe ? rs.texto(0) : QString();
    const QString dono = existe ? rs.texto(1) : QString();
    rs.fechar();
    if (!existe)
        SondaEstaActivaGuardar(sensor, conhecido);
    else if (!tomarPosse(sensor, dono))
        return false;
    else if (sensor.activa && sensor.Nome != descricao)
        SondaEstaActivaGuardar2(sensor, descricao, conhecido.nomes);
    AdicionarCalibracoesDoSensor(sensor);
    return true;
}

} // namespace importacao
