#include "poseidon/importacao_interno.h"

#include "core/estado.h"
#include "core/literais.h"
#include "data/ligacao.h"
#include "data/modMain.h"
#include "data/recordset.h"

namespace {

constexpr qsizetype maximoDaDescricao = 20;

// The name of a unit, as its inputs and outputs begin with it.
QString nomeDoDispositivo(const QString &ip) {
    Recordset rs = cnBD().consultar(u"SELECT Nome FROM Poseidons WHERE PoseidonIP = ?"_s, {ip});
    return rs.avancar() && !rs.nulo(0) ? rs.texto(0) : ip;
}

// True when a unit has rows in a table already.
bool temLinhas(QStringView tabela, const QString &ip) {
    Recordset rs = cnBD().consultar(u"SELECT 1 FROM %1 WHERE PoseidonIP = ?"_s.arg(tabela), {ip});
    return rs.avancar();
}

int CriarIDinputsSpider(const QString &ip) {
    Recordset rs = cnBD().consultar(u"SELECT MAX(InputNum) FROM PoseidonInputsSpider WHERE PoseidonIP = ?"_s, {ip});
    return rs.avancar() && !rs.nulo(0) ? int(rs.numero(0)) + 1 : 1;
}

void mudarDescricao(const QString &ip, int id, const QVariant &descricao) {
    cnBD().executar(u"UPDATE PoseidonInputsSpider SET Descricao = ? WHERE PoseidonIP = ? AND InputID = ?"_s,
                    {descricao, ip, id});
}

void AdicionarInputSpiderBD(const QString &ip, int id, const QString &nome) {
    cnBD().executar(u"INSERT INTO PoseidonInputsSpider (PoseidonIP, InputID, InputNum, Seleccionado, opOutputIP, "
                    "opOutputID, InputState, OutputState, Estado, Descricao) VALUES (?,?,?,'SIM',' ',' ',0,0,0,?)"_s,
                    {ip, id, CriarIDinputsSpider(ip), importacao::CriarNovaDescricao2(nome)});
}

} // namespace

namespace importacao {

QString CriarNovaDescricao2(const QString &nome) {
    QString candidato = nome.left(maximoDaDescricao);
    for (int n = 1; modMain::VerificarSeDescricaoJaExiste(candidato); ++n) {
        const QString fim = u" (%1)"_s.arg(n);
        candidato = nome.left(maximoDaDescricao - fim.size()) + fim;
    }
    return candidato;
}

void AdicionarSpiderInputs(const QString &ip, int id, const QString &nome) {
    Recordset rs = cnBD().consultar(
        u"SELECT Descricao FROM PoseidonInputsSpider WHERE PoseidonIP = ? AND InputID = ?"_s, {ip, id});
    if (!rs.avancar()) {
        AdicionarInputSpiderBD(ip, id, nome);
    } else if (rs.texto(0) != nome) {
        rs.fechar();
        mudarDescricao(ip, id, {}); // its own name never stands in its way
        mudarDescricao(ip, id, CriarNovaDescricao2(nome));
    }
}

void CarregarPoseidonInputsBD(const QString &ip) {
    if (temLinhas(u"PoseidonInputs", ip))
        return;
    const QString nome = nomeDoDispositivo(ip);
    for (int n = 1; n <= 3; ++n)
        cnBD().executar(u"INSERT INTO PoseidonInputs (PoseidonIP, InputNum, InputID, codFuncao, InputState, "
                        "OutputState, Estado, Descricao) VALUES (?,?,?,0,0,0,0,?)"_s,
                        {ip, n, n, modMain::CriarNovaDescricao(nome, u'P' + QString::number(n))});
}

void CarregarPoseidonOutputsBD(const QString &ip) {
    if (temLinhas(u"PoseidonOutputs", ip))
        return;
    const QString nome = nomeDoDispositivo(ip);
    for (int n = 1; n <= 2; ++n)
        cnBD().executar(
            u"INSERT INTO PoseidonOutputs (PoseidonIP, OutputNum, OutputID, codFuncao, DataUltimaMod, "
            "Intervalo, Estado, EstadoPoseidon, Descricao) VALUES (?,?,?,0,?,'00:00:00',0,0,?)"_s,
            {ip, n, n + 150, estado().ambiente.agora(), modMain::CriarNovaDescricao(nome, u'O' + QString::number(n))});
}

} // namespace importacao
