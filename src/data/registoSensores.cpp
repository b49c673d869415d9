#include "data/modMain.h"

#include "core/falha.h"
#include "core/literais.h"
#include "core/modTraducoes.h"
#include "core/rotina.h"
#include "data/ligacao.h"
#include "data/recordset.h"

#include <QStringList>

namespace {

constexpr int maximoDaDescricao = 20;
constexpr int maximoDeTentativas = 1000;

// Every table whose rows bear a name that has to be unique in the installation, in the order they are asked.
struct TabelaComNome {
    QStringView tabela;
    QStringView coluna;
};
constexpr TabelaComNome tabelasComNome[] = {
    {u"Damocles", u"Nome"},
    {u"DamoclesInputs", u"Descricao"},
    {u"DamoclesOutputs", u"Descricao"},
    {u"Grupos", u"Descricao"},
    {u"IOcontrollers", u"Descricao"},
    {u"IOcontrollersInputs", u"Descricao"},
    {u"IOcontrollersOutputs", u"Descricao"},
    {u"PortBox", u"Descricao"},
    {u"PoseidonInputs", u"Descricao"},
    {u"PoseidonInputsSpider", u"Descricao"},
    {u"PoseidonOutputs", u"Descricao"},
    {u"Poseidons", u"Nome"},
    {u"REGRAS_CondicoesGruposHead", u"Descricao"},
    {u"REGRAS_CondicoesInputs", u"NomeCondicao"},
    {u"REGRAS_CondicoesSensores", u"NomeCondicao"},
    {u"REGRAS_Emails", u"Descricao"},
    {u"REGRAS_Outputs", u"Descricao"},
    {u"REGRAS_Sms", u"Descricao"},
    {u"Sensores", u"Descricao"},
    {u"SensUI_Escalas", u"NomeEscala"},
};

// Counts as scalar subqueries: as twenty joined tables they would cost a millisecond of planning each time.
QString consultaDeNomes() {
    QStringList contagens;
    for (const TabelaComNome &t : tabelasComNome)
        contagens += u"(Select Count(1) From %1 Where %2=?1)"_s.arg(t.tabela, t.coluna);
    return u"SELECT "_s + contagens.join(u", "_s);
}

QString semUltimoCaracter(QString texto) {
    const bool par = texto.size() > 1 && texto.back().isLowSurrogate() && texto[texto.size() - 2].isHighSurrogate();
    texto.chop(par ? 2 : 1);
    return texto;
}

} // namespace

namespace modMain {

void BuscarNomePoseidonPorID(const QString &ip, QString &nome, QString &mac) {
    const QString procurado = ip.trimmed(); // before the outputs are emptied: they may be the same text
    nome.clear();
    mac.clear();
    Rotina("modMain.BuscarNomePoseidonPorID", [&] {
        Recordset rs = cnBD().consultar(u"select Nome, Mac from Poseidons where PoseidonIP = ?"_s, {procurado});
        if (rs.avancar()) {
            nome = rs.texto(0);
            mac = rs.texto(1);
        }
    });
}

QString BuscarPoseidonPorIDSensor(const QString &sensorId) {
    return Rotina("modMain.BuscarPoseidonPorIDSensor", [&] {
        Recordset rs = cnBD().consultar(u"select PoseidonIP from Sensores where SensorID = ?"_s, {sensorId.trimmed()});
        return rs.avancar() ? rs.texto(0) : QString();
    });
}

bool VerificarSeDescricaoJaExiste(const QString &descricao) {
    return Rotina("modMain.VerificarSeDescricaoJaExiste", [&] {
        static const QString consulta = consultaDeNomes();
        Recordset rs = cnBD().consultar(consulta, {descricao});
        if (!rs.avancar())
            return false;
        for (int i = 0; i < rs.colunas(); ++i)
            if (rs.inteiro(i) != 0)
                return true;
        return false;
    });
}

QString CriarNovaDescricao(const QString &base, const QString &sufixo) {
    return Rotina("modMain.CriarNovaDescricao", [&] {
        QString candidata = base + u' ' + sufixo;
        if (!VerificarSeDescricaoJaExiste(candidata))
            return candidata;
        QString inicio = base;
        for (int n = 1; n <= maximoDeTentativas; ++n) {
            const auto compor = [&] { return QString(inicio + u' ' + sufixo + u'(' + QString::number(n) + u')'); };
            candidata = compor();
            while (candidata.size() > maximoDaDescricao) {
                if (inicio.isEmpty())
                    throw Falha(erros::chamadaInvalida,
                                modTraducoes::texto(u"KelvarkAUX"_s, u"DescricaoSemLugar"_s,
                                                    u"O sufixo \"%1\" não cabe numa descrição de %2 caracteres."_s)
                                    .arg(sufixo)
                                    .arg(maximoDaDescricao));
                inicio = semUltimoCaracter(inicio);
                candidata = compor();
            }
            if (!VerificarSeDescricaoJaExiste(candidata))
                return candidata;
        }
        return QString();
    });
}

} // namespace modMain
