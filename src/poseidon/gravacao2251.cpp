#include "poseidon/modTratamentoDados2251.h"

// The second half of the treatment of a log: what was gathered takes its place in the tables.

#include "core/datas.h"
#include "core/falha.h"
#include "core/literais.h"
#include "data/comando.h"
#include "data/ligacao.h"
#include "poseidon/ficheiroSeguro.h"
#include "poseidon/substituicao2251.h"
#include "poseidon/substituidas2251.h"

#include <cmath>

using namespace modTratamentoDados2251;
using substituicao2251::Antiga;
using substituicao2251::Colunas;

namespace {

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

// "30XXX10,5" and "30XXX10.5" are the same limits, and nothing is as good as a blank.
bool mesmosLimites(const QByteArray &a, const QByteArray &b) {
    const auto normal = [](const QByteArray &t) { return QByteArray(t).replace(',', '.').trimmed(); };
    return a == b || normal(a) == normal(b);
}

bool mesmoTexto(const Celula &celula, QByteArrayView texto) {
    return celula.emBranco() ? texto.trimmed().isEmpty() : celula.bytes == texto;
}

} // namespace

// Readings of one table, as they are stored.
class TratamentoDados2251::NovasLeituras final : public substituicao2251::Novas {
public:
    NovasLeituras(const std::deque<Leitura> &linhas, const std::vector<Sensor> &sensores, bool sensUI)
        : m_linhas(linhas), m_sensores(sensores), m_sensUI(sensUI) {}
    size_t total() const override { return m_linhas.size(); }
    size_t canais() const override { return m_sensores.size(); }
    size_t canal(size_t i) const override { return size_t(sensor(i).canal); }
    qint64 data(size_t i) const override { return m_linhas[i].data; }
    QVariantList chave(size_t canal) const override { return {m_sensores[canal].SensorID}; }
    bool igual(size_t i, const Antiga &a, const Colunas &c) const override {
        const Celula &valor = a.celulas[size_t(c.valor)];
        const bool mesmo = lido(i) ? numeroGuardado(valor) == m_linhas[i].valor
                                   : valor.bytes.trimmed().compare("ND", Qt::CaseInsensitive) == 0;
        return mesmo && mesmosLimites(a.celulas[size_t(c.limites)].bytes, observacoes(i)) &&
               (c.escala < 0 || mesmoTexto(a.celulas[size_t(c.escala)], sensor(i).utf8Escala));
    }
    bool identica(size_t i, const Antiga &a, const Colunas &c) const override {
        return mesmoTexto(a.celulas[size_t(c.nome)], sensor(i).utf8Descricao) &&
               (!lido(i) || a.celulas[size_t(c.valor)].numero());
    }
    Celula flag(size_t i) override {
        if (const QByteArray &t = alarme(i); !t.isEmpty())
            return Celula::deTexto(t);
        return m_sensUI ? Celula::deTexto(" ") : Celula();
    }
    void ligar(Comando &comando, size_t i, const Celula *flagDada) override {
        const Sensor &s = sensor(i);
        comando.texto(1, m_data(m_linhas[i].data));
        comando.texto(2, s.utf8ID);
        comando.texto(3, s.utf8Descricao);
        if (lido(i))
            comando.numero(4, m_linhas[i].valor);
        else
            comando.texto(4, "ND");
        textoOuNulo(comando, 5, observacoes(i));
        if (flagDada)
            comando.celula(6, *flagDada);
        else if (const QByteArray &t = alarme(i); t.isEmpty() && m_sensUI)
            comando.texto(6, " ");
        else
            textoOuNulo(comando, 6, t);
        if (m_sensUI)
            comando.texto(7, s.utf8Escala);
    }

private:
    const Sensor &sensor(size_t i) const { return m_sensores[m_linhas[i].sensor]; }
    bool lido(size_t i) const { return !std::isnan(m_linhas[i].valor); }
    const QByteArray &observacoes(size_t i) const { return lido(i) ? sensor(i).utf8Observacoes : m_nada; }
    const QByteArray &alarme(size_t i) {
        const Sensor &s = sensor(i);
        const double valor = m_linhas[i].valor;
        if (!lido(i) || s.limites.dentro(valor))
            return lido(i) && !s.limites.existem() ? m_branco : m_nada;
        return m_alarmes.de(m_linhas[i].sensor, valor, [&] { return s.limites.texto(valor).toUtf8(); });
    }
    void textoOuNulo(Comando &comando, int posicao, const QByteArray &texto) const {
        if (texto.isEmpty() && !m_sensUI)
            comando.nulo(posicao);
        else
            comando.texto(posicao, texto);
    }

    const std::deque<Leitura> &m_linhas;
    const std::vector<Sensor> &m_sensores;
    const bool m_sensUI; // its texts are never Null
    TextoDaData m_data;
    TextosDeAlarme m_alarmes;
    const QByteArray m_nada, m_branco = " ";
};

// States of inputs or outputs.
class TratamentoDados2251::NovosRegistos final : public substituicao2251::Novas {
public:
    NovosRegistos(const QString &ip, const std::deque<Registo> &linhas, int desconto)
        : m_ip(ip), m_utf8IP(ip.toUtf8()), m_linhas(linhas), m_desconto(desconto) {
        for (const Registo &r : linhas)
            if (const int n = int(r.numero); !m_canais.contains(n)) {
                m_canais.insert(n, size_t(m_numeros.size()));
                m_numeros.push_back(n);
            }
    }
    size_t total() const override { return m_linhas.size(); }
    size_t canais() const override { return m_numeros.size(); }
    size_t canal(size_t i) const override { return m_canais.value(int(m_linhas[i].numero)); }
    qint64 data(size_t i) const override { return m_linhas[i].data; }
    QVariantList chave(size_t canal) const override { return {m_ip, m_numeros[canal] - m_desconto}; }
    bool igual(size_t i, const Antiga &a, const Colunas &c) const override {
        return a.celulas[size_t(c.valor)].bytes.compare(estado(i), Qt::CaseInsensitive) == 0;
    }
    bool identica(size_t, const Antiga &, const Colunas &) const override { return true; }
    Celula flag(size_t) override { return Celula::deTexto(" "); }
    void ligar(Comando &comando, size_t i, const Celula *flagDada) override {
        comando.texto(1, m_data(m_linhas[i].data));
        comando.texto(2, m_utf8IP);
        comando.inteiro(3, m_linhas[i].numero - m_desconto);
        comando.texto(4, estado(i));
        if (flagDada)
            comando.celula(5, *flagDada);
        else
            comando.texto(5, " ");
    }

private:
    QByteArrayView estado(size_t i) const { return m_linhas[i].ligado ? "True" : "False"; }

    const QString m_ip;
    const QByteArray m_utf8IP;
    const std::deque<Registo> &m_linhas;
    const int m_desconto;
    TextoDaData m_data;
    QHash<int, size_t> m_canais;
    std::vector<int> m_numeros;
};

bool TratamentoDados2251::GuardarDados(const QString &ip) {
    if (m_semSensores)
        return false;
    m_motivo.clear();
    m_falhouFicheiro = false;
    m_balanco.guardadas = {};
    m_balanco.substituidas = m_balanco.notas = m_balanco.ficaram = 0;
    m_guarda = m_nomeDaGuarda.isEmpty()
                   ? nullptr
                   : std::make_unique<substituidas2251::Escritor>(
                         FicheiroSeguro::nomeLivre(m_nomeDaGuarda, substituidas2251::fimDoNome), ip, m_passar);
    bool feito = false;
    try {
        LimparDadosTemperaturas();
        LimparDadosHumidade();
        LimparDadosMedias();
        LimparDadosInputs(ip);
        LimparDadosSpider(ip);
        LimparDadosOutputs(ip);
        LimparDadosSensUI();
        feito = true;
    } catch (const Falha &f) {
        m_motivo = f.descricao();
        m_falhouFicheiro = m_guarda && f.numero() == erros::falhaDoFicheiro && m_guarda->falhou();
    } catch (const std::exception &e) {
        m_motivo = QString::fromUtf8(e.what());
    }
    m_balanco.ficheiro = m_guarda ? m_guarda->nome() : QString();
    m_guarda.reset();
    return feito;
}

// Of the passage of events only a copy is used: it may take this object away.
void TratamentoDados2251::darLugar(Especies especie, const substituicao2251::Passo &passo,
                                   substituicao2251::Novas &novas) {
    if (novas.total() == 0)
        return;
    const auto passar = m_passar;
    Transaccao transaccao(cnBD());
    substituicao2251::Balanco b;
    {
        substituicao2251::Substituicao substituicao(passo, novas, m_balanco.naoLidas == 0, m_guarda.get(), passar);
        b = substituicao.correr();
    }
    // What goes is on the disk before it goes.
    if (m_guarda)
        m_guarda->terminarSeccao();
    transaccao.confirmar(passar);
    m_balanco.guardadas[especie] += qint64(novas.total());
    m_balanco.substituidas += b.substituidas;
    m_balanco.notas += b.notas;
    m_balanco.ficaram += b.ficaram;
}

namespace {

using substituicao2251::Coluna;
using substituicao2251::Passo;

// ?1 date, ?2 identifier, ?3 name, ?4 value, ?5 limits, ?6 alarm, ?7 scale.
Passo passoDasLeituras(QStringView tabela, QStringView valor, std::vector<Coluna> fixas) {
    return {tabela,
            valor,
            {{u"Data", u"?1"}, {u"Sensor", u"?2"}},
            {{valor, u"?4"}, {u"NomeSensor", u"?3"}, {u"Observacoes", u"?5"}, {u"flag", u"?6"}},
            std::move(fixas)};
}

// ?1 date, ?2 address, ?3 number, ?4 state, ?5 flag.
Passo passoDosRegistos(QStringView tabela, QStringView numero) {
    return {tabela,
            u"Estado",
            {{u"Data", u"?1"}, {u"DispositivoIP", u"?2"}, {numero, u"?3"}},
            {{u"Estado", u"?4"}, {u"flag", u"?5"}},
            {}};
}

} // namespace

void TratamentoDados2251::LimparDadosTemperaturas() {
    NovasLeituras novas(vTemperaturas, vSensores, false);
    darLugar(Temperaturas, passoDasLeituras(u"Temperaturas", u"Temperatura", {}), novas);
}

void TratamentoDados2251::LimparDadosHumidade() {
    NovasLeituras novas(vHumidades, vSensores, false);
    darLugar(Humidades, passoDasLeituras(u"Humidade", u"Percentagem", {{u"MediaSync", u"' '"}}), novas);
}

void TratamentoDados2251::LimparDadosMedias() {
    NovasLeituras novas(vMedias, vSensores, false);
    darLugar(Medias, passoDasLeituras(u"Medias", u"Temperatura", {}), novas);
}

void TratamentoDados2251::LimparDadosSensUI() {
    NovasLeituras novas(vSensUI, vSensores, true);
    Passo passo = passoDasLeituras(u"SensUI_Leituras", u"Leitura", {{u"Ident", u"NULL"}});
    passo.valores.push_back({u"Escala", u"?7"});
    darLugar(SensUI, passo, novas);
}

void TratamentoDados2251::LimparDadosInputs(const QString &ip) {
    NovosRegistos novos(ip, vRegInputs, 0);
    darLugar(Entradas, passoDosRegistos(u"REGISTO_Inputs", u"InputNum"), novos);
}

void TratamentoDados2251::LimparDadosSpider(const QString &ip) {
    NovosRegistos novos(ip, vRegSpider, 0);
    darLugar(Entradas, passoDosRegistos(u"REGISTO_Inputs", u"InputNum"), novos);
}

void TratamentoDados2251::LimparDadosOutputs(const QString &ip) {
    NovosRegistos novos(ip, vRegOutputs, primeiraSaida);
    darLugar(Saidas, passoDosRegistos(u"REGISTO_Outputs", u"OutputNum"), novos);
}
