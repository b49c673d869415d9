#include "data/fusaoSensores.h"

#include "core/eventos.h"
#include "core/literais.h"
#include "data/dialecto.h"
#include "data/ligacao.h"
#include "data/recordset.h"

#include <QHash>

#include <utility>

namespace {

using fusaoSensores::AlteracaoSensor;
using fusaoSensores::ContagemTabela;
using fusaoSensores::Progresso;
using fusaoSensores::temEfeito;

struct TabelaComSensor {
    QStringView tabela;
    QStringView coluna;
    bool muda = true; // false: a merge deletes the row instead of changing it
};

// In the order in which they are changed. The register comes last, so that nothing ever names a sensor it lacks.
constexpr TabelaComSensor tabelasComSensor[] = {
    {u"VisoresSensores", u"SensorID"},
    {u"TemperaturasPull", u"Sensor"},
    {u"Temperaturas", u"Sensor"},
    {u"Alarmes", u"SondaID"},
    {u"AlarmesHum", u"SondaID"},
    {u"Calibracoes", u"SondaID"},
    {u"Humidade", u"Sensor"},
    {u"HumidadePull", u"Sensor"},
    {u"Medias", u"Sensor"},
    {u"SensoresInputs", u"SensorID"},
    {u"REGRAS_CondicoesSensores", u"SensorID"},
    {u"SensoresLeiturasOutput", u"SensorID"},
    {u"SensUI_Leituras", u"Sensor"},
    {u"SensUI_LeiturasPull", u"Sensor"},
    {u"Sensores", u"SensorID", false},
};

// A statement over millions of rows would hold up the event loop for as long; a batch of this size takes some 10 ms.
constexpr qint64 linhasPorLote = 1000;

QString novoIdentificador(const AlteracaoSensor &a) {
    const QString novo = a.novo.trimmed();
    return novo.compare(a.antigo, Qt::CaseInsensitive) == 0 ? QString() : novo;
}

// Runs a statement for all rows of the old sensor, batch by batch. Each batch has to take its rows out of the
// condition, or there would be no end.
class Lotes {
public:
    Lotes(const Vigia &vigia, const Progresso &progresso) : m_vigia(vigia), m_progresso(progresso) {}

    void correr(const QString &instrucao, const TabelaComSensor &t, const QString &antigo, const QString &novo = {}) {
        const QString sql = instrucao + u" WHERE "_s +
                            dialecto::algumas(t.tabela, t.coluna + u" = "_s + dialecto::marca(1), linhasPorLote);
        qint64 linhas = 0;
        do {
            linhas = novo.isEmpty() ? cnBD().executar(sql, {antigo}) : cnBD().executar(sql, {antigo, novo});
            m_feitas += linhas;
            if (m_progresso)
                m_progresso(m_feitas);
            m_vigia.passar();
        } while (linhas == linhasPorLote);
    }

    void fundir(const TabelaComSensor &t, const QString &antigo, const QString &novo) {
        if (t.muda)
            correr(u"UPDATE %1 SET %2 = %3"_s.arg(t.tabela, t.coluna, dialecto::marca(2)), t, antigo, novo);
        else
            eliminar(t, antigo);
    }

    void eliminar(const TabelaComSensor &t, const QString &antigo) {
        correr(u"DELETE FROM %1"_s.arg(t.tabela), t, antigo);
    }

private:
    const Vigia &m_vigia;
    const Progresso &m_progresso;
    qint64 m_feitas = 0;
};

// Row by row, since one count over millions could not be divided.
qint64 contar(const TabelaComSensor &t, const QString &sensor, const Vigia &vigia) {
    Recordset rs = cnBD().consultar(u"SELECT 1 FROM %1 WHERE %2 = ?"_s.arg(t.tabela, t.coluna), {sensor});
    qint64 linhas = 0;
    while (rs.avancar()) {
        ++linhas;
        vigia.passar();
    }
    return linhas;
}

// Follows the rows of one table through the whole list.
ContagemTabela contarTabela(const TabelaComSensor &t, const std::vector<AlteracaoSensor> &alteracoes,
                            const Vigia &vigia) {
    ContagemTabela c{t.tabela.toString()};
    QHash<QString, qint64> linhasDe;
    for (const AlteracaoSensor &a : alteracoes)
        if (const QString chave = a.antigo.toLower(); temEfeito(a) && !linhasDe.contains(chave))
            linhasDe[chave] = contar(t, a.antigo, vigia);
    for (const AlteracaoSensor &a : alteracoes) {
        const QString antigo = a.antigo.toLower();
        if (const QString novo = novoIdentificador(a).toLower(); !novo.isEmpty()) {
            const qint64 linhas = std::exchange(linhasDe[antigo], 0);
            (t.muda ? c.movidas : c.eliminadas) += linhas;
            if (t.muda)
                linhasDe[novo] += linhas;
        }
        if (a.eliminar)
            c.eliminadas += std::exchange(linhasDe[antigo], 0);
    }
    return c;
}

} // namespace

namespace fusaoSensores {

bool temEfeito(const AlteracaoSensor &a) {
    return a.eliminar || !novoIdentificador(a).isEmpty();
}

std::vector<ContagemTabela> contarAlteracoes(const std::vector<AlteracaoSensor> &alteracoes, const Vigia &vigia) {
    std::vector<ContagemTabela> contagens;
    for (const TabelaComSensor &t : tabelasComSensor) {
        const ContagemTabela c = contarTabela(t, alteracoes, vigia);
        if (c.movidas || c.eliminadas)
            contagens.push_back(c);
    }
    return contagens;
}

void executarAlteracao(const AlteracaoSensor &alteracao, const Vigia &vigia, const Progresso &progresso) {
    if (!temEfeito(alteracao))
        return;
    const QString novo = novoIdentificador(alteracao);
    Transaccao transaccao(cnBD());
    Lotes lotes(vigia, progresso);
    if (!novo.isEmpty())
        for (const TabelaComSensor &t : tabelasComSensor)
            lotes.fundir(t, alteracao.antigo, novo);
    if (alteracao.eliminar)
        for (const TabelaComSensor &t : tabelasComSensor)
            lotes.eliminar(t, alteracao.antigo);
    transaccao.confirmar([&vigia] { vigia.passar(); });
}

} // namespace fusaoSensores
