#include "data/dialecto.h"
#include "poseidon/modTratamentoDados2251.h"

// What the treatment of a log reads of the database before its first line.

#include "core/falha.h"
#include "core/literais.h"
#include "core/modDoubleTratamento.h"
#include "data/ligacao.h"
#include "data/recordset.h"
#include "poseidon/mensagens2251.h"

#include <cmath>

using namespace modTratamentoDados2251;

namespace {

constexpr size_t maximoDeSensores = (1U << 24) - 1; // what a gathered reading can tell apart

QString limiteDe(const Recordset &rs, const QString &coluna) {
    const QString texto = rs.texto(coluna).trimmed();
    return texto.isEmpty() ? u"NA"_s : texto;
}

double numeroOu(const Recordset &rs, int coluna, double omissao) {
    return rs.nulo(coluna) ? omissao : rs.numero(coluna);
}

double calibracaoDe(const QString &texto) {
    try {
        return texto.trimmed().isEmpty() ? 0 : modDoubleTratamento::TextoParaDouble(texto);
    } catch (const Falha &) {
        return std::numeric_limits<double>::quiet_NaN();
    }
}

} // namespace

void TratamentoDados2251::CarregarVariaveis(const QString &ip) {
    *this = [this] {
        TratamentoDados2251 novo(m_passar);
        novo.NLeiturasMedia = NLeiturasMedia;
        novo.m_nomeDaGuarda = m_nomeDaGuarda;
        return novo;
    }();
    try {
        CarregarSensoresDoPoseidon(ip);
        CarregarEscalasSensUI();
        CarregarInputsSpider(ip);
        ligarSensores();
    } catch (const std::exception &e) {
        m_motivo = QString::fromUtf8(e.what());
        m_semSensores = true;
        throw;
    }
}

void TratamentoDados2251::CarregarSensoresDoPoseidon(const QString &ip) {
    Recordset rs = cnBD().consultar(u"SELECT * FROM Sensores INNER JOIN Calibracoes ON Sensores.SensorID = "
                                    "Calibracoes.SondaID ORDER BY Sensores."_s +
                                    dialecto::ordem + u", Calibracoes." + dialecto::ordem);
    const int unidade = rs.coluna(u"PoseidonIP"_s);
    const int maximo = rs.coluna(u"SensUIMax"_s);
    const int minimo = rs.coluna(u"SensUIMin"_s);
    while (rs.avancar()) {
        if (rs.texto(unidade).mid(1).compare(ip, Qt::CaseInsensitive) != 0)
            continue;
        if (vSensores.size() >= maximoDeSensores)
            throw Falha(erros::semMemoria, mensagens2251::demasiadosSensores.texto(ip));
        Sensor s;
        s.SensorID = rs.texto(u"SensorID"_s);
        s.ID = rs.texto(u"ID"_s);
        s.Tipo = rs.texto(u"Tipo"_s);
        s.Descricao = rs.texto(u"Descricao"_s);
        s.Calibracao = calibracaoDe(rs.texto(u"Calibracao"_s));
        const QString sufixo = s.Tipo.endsWith(u'%') ? u"Hum"_s : QString();
        s.limites = Limites(limiteDe(rs, u"Maximo"_s + sufixo), limiteDe(rs, u"Minimo"_s + sufixo));
        s.entrada = {numeroOu(rs, maximo, 20), numeroOu(rs, minimo, 4)};
        s.especie = infoDoTipo(s.Tipo).especie;
        vSensores.push_back(std::move(s));
    }
}

void TratamentoDados2251::CarregarEscalasSensUI() {
    Recordset rs = cnBD().consultar(
        u"SELECT Sensores.SensorID, SensUI_Escalas.Maximo, SensUI_Escalas.Minimo, SensUI_Escalas.NomeEscala "
        "FROM SensUI_Relacoes INNER JOIN Sensores ON Sensores.SensorID = SensUI_Relacoes.SensorID "
        "INNER JOIN SensUI_Escalas ON SensUI_Relacoes.EscalaID = SensUI_Escalas.EscalaID "
        "ORDER BY SensUI_Relacoes."_s +
        dialecto::ordem);
    while (rs.avancar()) {
        try {
            const Gama gama{numeroOu(rs, 1, 0), numeroOu(rs, 2, 0)};
            if (!std::isnan(gama.maximo) && !std::isnan(gama.minimo))
                vEscalas.push_back({rs.texto(0), rs.texto(3), gama});
        } catch (const Falha &f) {
            if (f.numero() != erros::tipoIncompativel) // a scale without numbers is none
                throw;
        }
    }
}

void TratamentoDados2251::CarregarInputsSpider(const QString &ip) {
    Recordset rs = cnBD().consultar(
        u"SELECT InputID FROM PoseidonInputsSpider WHERE PoseidonIP = ? ORDER BY "_s + dialecto::ordem, {ip});
    while (rs.avancar())
        vInputsSpider.push_back({int(rs.inteiro(0)), QString::number(rs.inteiro(0)), estadoDesconhecido});
}

// The sensors find each other and their scales once, instead of for every value.
void TratamentoDados2251::ligarSensores() {
    QHash<QString, int> primeiro;
    QHash<QByteArray, int> canais;
    for (size_t i = 0; i < vSensores.size(); ++i) {
        Sensor &s = vSensores[i];
        if (!primeiro.contains(s.SensorID))
            primeiro.insert(s.SensorID, int(i));
        s.acumulador = primeiro.value(s.SensorID);
        const QByteArray comoNaTabela = s.SensorID.toUtf8().toLower(); // only the letters of ASCII have one case there
        if (!canais.contains(comoNaTabela))
            canais.insert(comoNaTabela, int(i));
        s.canal = canais.value(comoNaTabela);
        const auto escala = std::find_if(vEscalas.begin(), vEscalas.end(), [&](const Escala &e) {
            return e.SensorID.compare(s.SensorID, Qt::CaseInsensitive) == 0;
        });
        if (escala != vEscalas.end())
            s.escala = int(escala - vEscalas.begin());
        s.utf8ID = s.SensorID.toUtf8();
        s.utf8Descricao = s.Descricao.toUtf8();
        s.utf8Observacoes = s.limites.existem() ? s.limites.observacoes().toUtf8() : QByteArray(" ");
        s.utf8Escala =
            escala != vEscalas.end() ? escala->NomeEscala.toUtf8() : infoDoTipo(s.Tipo).escala.toString().toUtf8();
        m_porID[s.ID].append(quint32(i));
    }
    vAcumuladores.assign(vSensores.size(), {});
}
