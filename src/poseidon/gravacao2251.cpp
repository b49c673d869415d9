#include "poseidon/modTratamentoDados2251.h"

// The second half of the treatment of a log: clearing the period and writing what was gathered.

#include "core/datas.h"
#include "core/falha.h"
#include "core/literais.h"
#include "data/comando.h"
#include "data/dialecto.h"
#include "data/ligacao.h"
#include "data/recordset.h"

#include <QSet>

#include <cmath>

using namespace modTratamentoDados2251;

namespace {

constexpr int apagarDeCadaVez = 500; // rows between two passes of events
constexpr qint64 segundosDoDia = 86400;
constexpr int primeiraSaida = 150;

// "YYYY-MM-DD HH:MM:SS" of whole seconds; the day's text is kept, since a log goes on day by day.
class TextoDaData {
public:
    QByteArrayView operator()(qint64 segundos) {
        qint64 dia = segundos / segundosDoDia;
        qint64 resto = segundos % segundosDoDia;
        if (resto < 0) {
            resto += segundosDoDia;
            --dia;
        }
        if (dia != m_dia || m_texto.isEmpty()) {
            m_texto = datas::textoBD(double(dia * segundosDoDia)).toLatin1();
            m_dia = dia;
        }
        doisAlgarismos(11, resto / 3600);
        doisAlgarismos(14, resto / 60 % 60);
        doisAlgarismos(17, resto % 60);
        return m_texto;
    }

private:
    void doisAlgarismos(qsizetype posicao, qint64 n) {
        m_texto[posicao] = char('0' + n / 10);
        m_texto[posicao + 1] = char('0' + n % 10);
    }
    QByteArray m_texto;
    qint64 m_dia = 0;
};

void textoOuNulo(Comando &comando, int posicao, QByteArrayView texto) {
    if (texto.isEmpty())
        comando.nulo(posicao);
    else
        comando.texto(posicao, texto);
}

// The wording of an alarm asks for the language, which costs more than the row itself; units measure in tenths, so the
// same few texts come again and again.
class TextosDeAlarme {
public:
    template <typename Fazer>
    const QByteArray &de(quint32 sensor, double valor, const Fazer &fazer) {
        if (m_textos.size() > maximo)
            m_textos.clear();
        const auto chave = std::make_pair(sensor, valor);
        auto achado = m_textos.find(chave);
        if (achado == m_textos.end())
            achado = m_textos.insert(chave, fazer());
        return *achado;
    }

private:
    static constexpr qsizetype maximo = 4096;
    QHash<std::pair<quint32, double>, QByteArray> m_textos;
};

} // namespace

bool TratamentoDados2251::GuardarDados(const QString &ip) {
    using T = TratamentoDados2251;
    // ?1 date, ?2 identifier, ?3 name, ?4 value, ?5 limits, ?6 alarm, ?7 scale.
    static constexpr PassoLeituras temperaturas{
        u"Temperaturas",
        &T::vTemperaturas,
        &T::LimparDadosTemperaturas,
        &T::m_periodoTemperaturas,
        false,
        u"(Data, Sensor, Temperatura, NomeSensor, Observacoes, flag) VALUES (?1,?2,?4,?3,?5,?6)",
        false};
    static constexpr PassoLeituras humidades{
        u"Humidade",
        &T::vHumidades,
        &T::LimparDadosHumidade,
        &T::m_periodoHumidade,
        false,
        u"(Data, Sensor, Percentagem, NomeSensor, Observacoes, flag, MediaSync) VALUES (?1,?2,?4,?3,?5,?6,' ')",
        false};
    static constexpr PassoLeituras medias{
        u"Medias",
        &T::vMedias,
        &T::LimparDadosMedias,
        &T::m_periodoTemperaturas,
        false,
        u"(Data, Sensor, Temperatura, NomeSensor, Observacoes, flag) VALUES (?1,?2,?4,?3,?5,?6)",
        false};
    static constexpr PassoLeituras sensUI{
        u"SensUI_Leituras",
        &T::vSensUI,
        &T::LimparDadosSensUI,
        &T::m_periodoSensUI,
        true,
        u"(Data, Sensor, NomeSensor, Leitura, Observacoes, Escala, flag) VALUES (?1,?2,?3,?4,?5,?7,?6)",
        true};
    static constexpr QStringView entradas =
        u"INSERT INTO REGISTO_Inputs (DispositivoIP, InputNum, Data, Estado, flag) VALUES (?1,?2,?3,?4,' ')";
    static constexpr QStringView saidas =
        u"INSERT INTO REGISTO_Outputs (DispositivoIP, OutputNum, Data, Estado, flag) VALUES (?1,?2,?3,?4,' ')";
    if (m_semSensores)
        return false;
    m_motivo.clear();
    try {
        for (const PassoLeituras *passo : {&temperaturas, &humidades, &medias})
            guardarLeituras(ip, *passo);
        guardarRegistos(ip, vRegInputs, entradas, 0, [&] {
            // Also the numbers that the unit's own count leaves out: their rows stand too.
            QSet<int> numeros;
            for (size_t n = 1; n <= vInputs.size(); ++n)
                numeros.insert(int(n));
            for (const Registo &r : vRegInputs)
                numeros.insert(int(r.numero));
            for (const int n : std::as_const(numeros))
                LimparDadosInputs(ip, n, m_periodoInputs.primeira, m_periodoInputs.ultima);
        });
        guardarRegistos(ip, vRegSpider, entradas, 0, [&] {
            for (const InputSpider &e : vInputsSpider)
                LimparDadosInputs(ip, e.InputID, m_periodoSpider.primeira, m_periodoSpider.ultima);
        });
        guardarRegistos(ip, vRegOutputs, saidas, primeiraSaida,
                        [&] { LimparDadosOutputs(ip, m_periodoOutputs.primeira, m_periodoOutputs.ultima); });
        guardarLeituras(ip, sensUI);
        return true;
    } catch (const std::exception &e) {
        m_motivo = QString::fromUtf8(e.what());
        return false;
    }
}

void TratamentoDados2251::guardarLeituras(const QString &ip, const PassoLeituras &passo) {
    const std::deque<Leitura> &linhas = this->*passo.linhas;
    if (linhas.empty())
        return;
    const auto passar = m_passar;
    const Periodo &p = this->*passo.periodo;
    Transaccao transaccao(cnBD());
    (this->*passo.limpar)(ip, passo.ultimaPrimeiro ? p.ultima : p.primeira,
                          passo.ultimaPrimeiro ? p.primeira : p.ultima);
    Comando inserir(cnBD(), u"INSERT INTO "_s + passo.tabela + u' ' + passo.insercao);
    TextoDaData texto;
    QByteArray alarme;
    TextosDeAlarme alarmes;
    for (const Leitura &linha : linhas) {
        const Sensor &sensor = vSensores[linha.sensor];
        const bool lido = !std::isnan(linha.valor);
        inserir.texto(1, texto(linha.data));
        inserir.texto(2, sensor.utf8ID);
        inserir.texto(3, sensor.utf8Descricao);
        if (lido)
            inserir.numero(4, linha.valor);
        else
            inserir.texto(4, "ND");
        alarme.clear();
        if (lido && !sensor.limites.existem())
            alarme = " ";
        else if (lido && !sensor.limites.dentro(linha.valor))
            alarme = alarmes.de(linha.sensor, linha.valor, [&] { return sensor.limites.texto(linha.valor).toUtf8(); });
        const QByteArrayView observacoes = lido ? QByteArrayView(sensor.utf8Observacoes) : QByteArrayView("");
        if (passo.textosSempre) {
            inserir.texto(5, observacoes);
            inserir.texto(6, alarme.isEmpty() ? QByteArrayView(" ") : QByteArrayView(alarme));
            inserir.texto(7, sensor.utf8Escala);
        } else {
            textoOuNulo(inserir, 5, observacoes);
            textoOuNulo(inserir, 6, alarme);
        }
        inserir.executar();
        passar();
    }
    transaccao.confirmar(passar);
}

void TratamentoDados2251::guardarRegistos(const QString &ip, const std::deque<Registo> &linhas, QStringView insercao,
                                          int desconto, const std::function<void()> &limpar) {
    if (linhas.empty())
        return;
    const auto passar = m_passar;
    Transaccao transaccao(cnBD());
    limpar();
    Comando inserir(cnBD(), insercao.toString());
    const QByteArray utf8IP = ip.toUtf8();
    TextoDaData texto;
    for (const Registo &linha : linhas) {
        inserir.texto(1, utf8IP);
        inserir.inteiro(2, linha.numero - desconto);
        inserir.texto(3, texto(linha.data));
        inserir.texto(4, linha.ligado ? "True" : "False");
        inserir.executar();
        passar();
    }
    transaccao.confirmar(passar);
}

void TratamentoDados2251::apagarAosPoucos(QStringView tabela, const QString &onde, const QList<QByteArray> &textos,
                                          qint64 numero, double primeira, double segunda) {
    if (std::isnan(primeira) || std::isnan(segunda))
        return;
    const auto passar = m_passar;
    // A range holds the same days whichever of its bounds is told first.
    const QByteArray inicio = datas::textoBD(std::min(primeira, segunda)).toLatin1();
    const QByteArray fim = datas::textoBD(std::max(primeira, segunda)).toLatin1();
    Comando apagar(cnBD(), dialecto::apagarAlgumas(tabela, u"Data BETWEEN ?1 AND ?2 AND "_s + onde, apagarDeCadaVez));
    apagar.texto(1, inicio);
    apagar.texto(2, fim);
    if (onde.contains(u"?4"))
        apagar.inteiro(4, numero);
    for (const QByteArray &t : textos) {
        apagar.texto(3, t);
        while (apagar.executar() == apagarDeCadaVez)
            passar();
        passar();
    }
}

void TratamentoDados2251::limparLeituras(QStringView tabela, const QString &ip, double primeira, double segunda,
                                         const std::deque<Leitura> &linhas) {
    QList<QByteArray> sensores;
    Recordset rs = cnBD().consultar(u"SELECT SensorID FROM Sensores WHERE PoseidonIP = ? OR PoseidonIP = ?"_s,
                                    {QString(u'1' + ip), QString(u'2' + ip)});
    while (rs.avancar())
        sensores.append(rs.texto(0).toUtf8());
    rs.fechar();
    // A sensor with any other mode digit would gather one copy of its rows a download.
    std::vector<bool> reunidos(vSensores.size());
    for (const Leitura &l : linhas)
        reunidos[l.sensor] = true;
    for (size_t i = 0; i < vSensores.size(); ++i)
        if (reunidos[i] && !sensores.contains(vSensores[i].utf8ID))
            sensores.append(vSensores[i].utf8ID);
    apagarAosPoucos(tabela, u"Sensor = ?3"_s, sensores, 0, primeira, segunda);
}

void TratamentoDados2251::LimparDadosTemperaturas(const QString &ip, double primeira, double segunda) {
    limparLeituras(u"Temperaturas", ip, primeira, segunda, vTemperaturas);
}

void TratamentoDados2251::LimparDadosHumidade(const QString &ip, double primeira, double segunda) {
    limparLeituras(u"Humidade", ip, primeira, segunda, vHumidades);
}

void TratamentoDados2251::LimparDadosMedias(const QString &ip, double primeira, double segunda) {
    limparLeituras(u"Medias", ip, primeira, segunda, vMedias);
}

void TratamentoDados2251::LimparDadosSensUI(const QString &ip, double primeira, double segunda) {
    limparLeituras(u"SensUI_Leituras", ip, primeira, segunda, vSensUI);
}

void TratamentoDados2251::LimparDadosInputs(const QString &ip, int numero, double primeira, double segunda) {
    apagarAosPoucos(u"REGISTO_Inputs", u"DispositivoIP = ?3 AND InputNum = ?4"_s, {ip.toUtf8()}, numero, primeira,
                    segunda);
}

void TratamentoDados2251::LimparDadosOutputs(const QString &ip, double primeira, double segunda) {
    apagarAosPoucos(u"REGISTO_Outputs", u"DispositivoIP = ?3"_s, {ip.toUtf8()}, 0, primeira, segunda);
}
