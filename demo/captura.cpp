#include "demo/captura.h"

#include "core/datas.h"
#include "core/literais.h"
#include "core/modDoubleTratamento.h"
#include "data/recordset.h"
#include "demo/historia.h"

#include <cmath>

namespace demonstracao {

namespace {

constexpr int leiturasEntreAlarmes = 45;

std::optional<double> limiteDe(const Recordset &rs, int coluna) {
    if (rs.eNumero(coluna))
        return rs.real(coluna);
    const QString texto = rs.texto(coluna).trimmed();
    if (texto.isEmpty() || texto == u"NA")
        return std::nullopt;
    return modDoubleTratamento::TextoParaDouble(texto);
}

} // namespace

Captura::Captura(const QString &caminho, quint64 semente) : m_clima(semente) {
    m_bd.abrir(caminho);
    // A reading a second need not reach the disk one by one, and a slow disk must not keep the others waiting.
    m_bd.executar(u"PRAGMA synchronous = NORMAL"_s);
    carregarSensores(semente);
}

void Captura::carregarSensores(quint64 semente) {
    const std::vector<Sensor> catalogo = demonstracao::sensores(semente);
    Recordset rs = m_bd.consultar(
        u"SELECT S.SensorID, S.Descricao, S.Tipo, S.PoseidonIP, C.Maximo, C.Minimo, C.MaximoHum, C.MinimoHum "
        "FROM Sensores S LEFT JOIN Calibracoes C ON C.SondaID = S.SensorID WHERE S.Seleccionado = 'SIM' "
        "ORDER BY S.Nlinha"_s);
    while (rs.avancar()) {
        const QChar letra = rs.texto(2).trimmed().right(1).isEmpty() ? QChar() : rs.texto(2).trimmed().back();
        const Medida *mede = medidaDe(letra);
        if (!mede || !mede->captada)
            continue;
        const int limites = mede->limitesDaHumidade ? 6 : 4;
        Canal c{.id = rs.texto(0),
                .nome = rs.texto(1),
                .mede = mede,
                .maximo = limiteDe(rs, limites),
                .minimo = limiteDe(rs, limites + 1),
                .observacoes = {},
                .separador = rs.texto(3).startsWith(u'2') ? u',' : u'.',
                .local = Local::Laboratorio,
                .lugar = 500 + int(m_sensores.size())};
        const auto texto = [&c](const std::optional<double> &v) {
            return v ? QString::fromLatin1(textoNumero(*v, 2, c.separador)) : u"NA"_s;
        };
        c.observacoes = texto(c.maximo) + u"XXX"_s + texto(c.minimo);
        for (const Sensor &s : catalogo) // a sensor of the demonstration goes on as its history did
            if (s.SensorID == c.id) {
                c.local = s.local;
                c.lugar = s.lugar;
            }
        m_sensores.push_back(std::move(c));
    }
}

double Captura::valorDe(const Canal &c, const QDateTime &agora) const {
    const Momento m = m_clima.momento(qint64(datas::segundosDe(agora)));
    return std::round(c.mede->valor(m_clima, c.local, c.lugar, m) * c.mede->porUnidade) / c.mede->porUnidade;
}

void Captura::passo(const QDateTime &agora) {
    if (m_sensores.empty())
        return;
    const Canal &c = m_sensores[m_proximo++ % m_sensores.size()];
    double valor = valorDe(c, agora);
    if (c.maximo && m_proximo % leiturasEntreAlarmes == 0)
        valor = *c.maximo + 0.7;
    QByteArray aviso = " ";
    if (c.maximo && valor > *c.maximo)
        aviso = "Máximo de  " + textoNumero(valor - *c.maximo, 2, c.separador);
    else if (c.minimo && valor < *c.minimo)
        aviso = "Mínimo de  " + textoNumero(valor - *c.minimo, 2, c.separador);
    const auto ou = [](const std::optional<double> &v) { return v ? QVariant(*v) : QVariant(u"NA"_s); };

    Transaccao tudo(m_bd);
    const Grandeza &g = c.mede->grandeza;
    const bool comMedias = g.filtroDeMedias; // and this is none
    m_bd.executar(u"INSERT INTO "_s + g.leituras + u" (Data, Sensor, NomeSensor, " + g.valor + u", Observacoes, flag" +
                      (comMedias ? u", MediaSync) VALUES (?, ?, ?, ?, ?, ?, ' ')" : u") VALUES (?, ?, ?, ?, ?, ?)"),
                  {agora, c.id, c.nome, valor, c.observacoes, QString::fromUtf8(aviso)});
    m_bd.executar(u"UPDATE Sensores SET UltTemp = ? WHERE SensorID = ?"_s, {valor, c.id});
    if (aviso != " ")
        m_bd.executar(u"INSERT INTO "_s + g.alarmes +
                          u" (SondaID, Nome, Data, Maximo, Minimo, Valor) VALUES (?, ?, ?, ?, ?, ?)",
                      {c.id, c.nome, agora, ou(c.maximo), ou(c.minimo), valor});
    tudo.confirmar();
    ++m_leituras;
    m_alarmes += aviso != " " ? 1 : 0;
}

} // namespace demonstracao
