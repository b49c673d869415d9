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
        const bool humidade = letra == u'%';
        if (!humidade && !QStringView(u"CT05E").contains(letra))
            continue;
        Canal c{.id = rs.texto(0),
                .nome = rs.texto(1),
                .humidade = humidade,
                .maximo = limiteDe(rs, humidade ? 6 : 4),
                .minimo = limiteDe(rs, humidade ? 7 : 5),
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
    const double v = c.humidade ? m_clima.humidade(c.local, c.lugar, m) : m_clima.temperatura(c.local, c.lugar, m);
    return std::round(v * 10) / 10;
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
    if (c.humidade)
        m_bd.executar(u"INSERT INTO Humidade (Data, Sensor, NomeSensor, Percentagem, Observacoes, flag, MediaSync) "
                      "VALUES (?, ?, ?, ?, ?, ?, ' ')"_s,
                      {agora, c.id, c.nome, valor, c.observacoes, QString::fromUtf8(aviso)});
    else
        m_bd.executar(u"INSERT INTO Temperaturas (Data, Sensor, NomeSensor, Temperatura, Observacoes, flag) "
                      "VALUES (?, ?, ?, ?, ?, ?)"_s,
                      {agora, c.id, c.nome, valor, c.observacoes, QString::fromUtf8(aviso)});
    m_bd.executar(u"UPDATE Sensores SET UltTemp = ? WHERE SensorID = ?"_s, {valor, c.id});
    if (aviso != " ")
        m_bd.executar((c.humidade ? u"INSERT INTO AlarmesHum"_s : u"INSERT INTO Alarmes"_s) +
                          u" (SondaID, Nome, Data, Maximo, Minimo, Valor) VALUES (?, ?, ?, ?, ?, ?)",
                      {c.id, c.nome, agora, ou(c.maximo), ou(c.minimo), valor});
    tudo.confirmar();
    ++m_leituras;
    m_alarmes += aviso != " " ? 1 : 0;
}

} // namespace demonstracao
