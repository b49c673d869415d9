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

int CriarIDinputsSpider(const QString &ip, std::optional<int> &inputNum) {
    if (!inputNum) {
        Recordset rs = cnBD().consultar(u"SELECT MAX(InputNum) FROM PoseidonInputsSpider WHERE PoseidonIP = ?"_s, {ip});
        inputNum = rs.avancar() && !rs.nulo(0) ? int(rs.numero(0)) : 0;
    }
    return ++*inputNum;
}

void AdicionarInputSpiderBD(const QString &ip, int id, const QString &nome, importacao::Conhecido &conhecido) {
    const QString descricao = importacao::CriarNovaDescricao2(nome, conhecido.nomes);
    cnBD().executar(u"INSERT INTO PoseidonInputsSpider (PoseidonIP, InputID, InputNum, Seleccionado, opOutputIP, "
                    "opOutputID, InputState, OutputState, Estado, Descricao) VALUES (?,?,?,'SIM',' ',' ',0,0,0,?)"_s,
                    {ip, id, CriarIDinputsSpider(ip, conhecido.inputNum), descricao});
    conhecido.nomes.juntar(descricao);
}

} // namespace

namespace importacao {

QString CriarNovaDescricao2(const QString &nome, nomes::Registo &nomes) {
    const QString candidato = nomes::inicio(nome, maximoDaDescricao);
    if (!nomes.existe(candidato))
        return candidato;
    return nomes.comNumero(
        [&](int n) {
            const qsizetype fim = u" ()"_s.size() + QString::number(n).size();
            return QString(nomes::inicio(nome, maximoDaDescricao - fim) + u" (");
        },
        u")");
}

void AdicionarSpiderInputs(const QString &ip, int id, const QString &nome, Conhecido &conhecido) {
    Recordset rs = cnBD().consultar(
        u"SELECT Descricao FROM PoseidonInputsSpider WHERE PoseidonIP = ? AND InputID = ?"_s, {ip, id});
    if (!rs.avancar())
        return AdicionarInputSpiderBD(ip, id, nome, conhecido);
    QStringList antes; // every row of the input takes the name
    do
        antes += rs.texto(0);
    while (rs.avancar());
    if (antes.first() == nome)
        return;
    for (const QString &descricao : antes) // its own name never stands in its way
        conhecido.nomes.tirar(descricao);
    const QString descricao = CriarNovaDescricao2(nome, conhecido.nomes);
    for (qsizetype i = cnBD().executar(u"UPDATE PoseidonInputsSpider SET Descricao = ? WHERE PoseidonIP = ? AND "
                                       "InputID = ?"_s,
                                       {descricao, ip, id});
         i > 0; --i)
        conhecido.nomes.juntar(descricao);
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
