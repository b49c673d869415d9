#include "data/modMain.h"

#include "core/falha.h"
#include "core/literais.h"
#include "core/modTraducoes.h"
#include "core/rotina.h"
#include "data/ligacao.h"
#include "data/nomes.h"
#include "data/recordset.h"

#include <QStringList>

namespace {

constexpr int maximoDaDescricao = 20;
constexpr int maximoDeTentativas = 1000;

// Counts as scalar subqueries: as twenty joined tables they would cost a millisecond of planning each time.
QString consultaDeNomes() {
    QStringList contagens;
    for (const nomes::Tabela &t : nomes::tabelas)
        contagens += u"(Select Count(1) From %1 Where %2=?1)"_s.arg(t.tabela, t.coluna);
    return u"SELECT "_s + contagens.join(u", "_s);
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
        for (int n = 1; n <= maximoDeTentativas; ++n) {
            const QString fim = u' ' + sufixo + u'(' + QString::number(n) + u')';
            if (fim.size() > maximoDaDescricao)
                throw Falha(erros::chamadaInvalida,
                            modTraducoes::texto(u"KelvarkAUX"_s, u"DescricaoSemLugar"_s,
                                                u"O sufixo \"%1\" não cabe numa descrição de %2 caracteres."_s)
                                .arg(sufixo)
                                .arg(maximoDaDescricao));
            candidata = nomes::inicio(base, maximoDaDescricao - fim.size()) + fim;
            if (!VerificarSeDescricaoJaExiste(candidata))
                return candidata;
        }
        return QString();
    });
}

} // namespace modMain
