#include "demo/historia.h"

#include "core/datas.h"
#include "core/literais.h"
#include "core/modDoubleTratamento.h"
#include "data/insercao.h"
#include "data/ligacao.h"
#include "demo/acaso.h"
#include "views/nomesDasVistas.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <memory>

namespace demonstracao {

namespace {

constexpr int passoDoPull = 3600; // seconds

// One table of readings: those of a quantity that come by themselves, or those that were asked for.
struct Tabela {
    const Medida &medida;
    bool pull;

    QString nome() const {
        return QStringView(nomesDasVistas::tabela(medida.grandeza, pull ? Origem::Pull : Origem::Leituras)).toString();
    }
    int passo() const { return pull ? passoDoPull : medida.passo; }
    bool comMedias() const { return !pull && medida.grandeza.tem(Origem::Medias); }
    bool tem(const Sensor &s) const { return s.mede == &medida && !s.semLeituras; }
};

std::vector<Tabela> tabelas() {
    std::vector<Tabela> todas;
    for (const bool pull : {false, true})
        for (const Medida &m : medidas())
            todas.push_back({m, pull});
    return todas;
}

constexpr int leiturasPorMedia = 6;
constexpr double perdidas = 0.985; // the share of readings that gaps leave

constexpr const char *notas[] = {
    "Porta aberta para carga",         "Descongelação manual", "Sonda verificada com padrão",
    "Manutenção do compressor",        "Limpeza semanal",      "Confirmado por telefone",
    "Entrega de mercadoria d'armazém", "Teste do gerador",     "Reposição de stock",
    "Ver relatório; aguarda técnico"};

qint64 linhasPorSensor(const Tabela &t, double dias) {
    double n = dias * 86400 / t.passo();
    if (t.comMedias())
        n += n / leiturasPorMedia;
    return qint64(n * perdidas);
}

double arredondar(double v, double porUnidade) {
    return std::round(v * porUnidade) / porUnidade;
}

// The records of its log are of full minutes, and bring again what the history holds.
bool daUnidadeComLog(const Sensor &s) {
    return std::ranges::any_of(unidades(), [&s](const Unidade &u) {
        return u.endereco == QStringView(s.PoseidonIP).mid(1) && (u.modelo == 4 || u.modelo == 34);
    });
}

double amostra(const Clima &clima, const Sensor &s, const Momento &m) {
    const double v = s.mede->valor(clima, s.local, s.lugar, m);
    const double de = s.escala ? s.escala->minimo : s.SensUIMin;
    const double ate = s.escala ? s.escala->maximo : s.SensUIMax;
    return arredondar(s.mede->comEscala ? de + v * (ate - de) : v, s.mede->porUnidade);
}

// One sensor's rows in one table.
struct Serie {
    const Sensor *sensor;
    size_t indice;
    quint64 chave;
    QByteArray id, nome, antigo, observacoes, observacoesAntigas, escala, ident;
    qint64 inicio, fim, mudancaDeNome, mudancaDeLimites;
    double maximo, minimo;
    int desvio;
    double soma = 0;
    int quantas = 0;
    qint64 ultimoAlarme = 0;
    int episodio = -1;
};

struct Juizo {
    bool fora = false;
    QByteArray texto;
};

class Escritor {
public:
    Escritor(Historia &h, const Tabela &t) : m_h(h), m_t(t) {
        QStringList colunas{u"Data"_s,        u"Sensor"_s, u"NomeSensor"_s, t.medida.grandeza.valor.toString(),
                            u"Observacoes"_s, u"flag"_s};
        if (t.medida.grandeza.filtroDeMedias)
            colunas.append(u"MediaSync"_s);
        if (t.medida.comEscala)
            colunas.append({u"Escala"_s, u"Ident"_s});
        m_linhas = std::make_unique<Insercao>(h.bd, t.nome(), colunas);
        if (t.comMedias())
            m_medias = std::make_unique<Insercao>(h.bd, t.medida.grandeza.medias.toString(), colunas);
        for (size_t i = 0; i < h.sensores.size(); ++i)
            if (t.tem(h.sensores[i]))
                m_series.push_back(serieDe(h.sensores[i], i));
    }

    void escrever() {
        qint64 t = m_h.fim;
        for (const Serie &s : m_series)
            t = std::min(t, s.inicio);
        const int passo = m_t.passo();
        for (t -= t % passo; t < m_h.fim; t += passo) {
            const Momento m = m_h.clima.momento(t);
            if (m.semCorrente)
                continue;
            datarMinuto(t);
            for (Serie &s : m_series)
                if (t >= s.inicio && t + s.desvio < s.fim)
                    escreverLeitura(s, m);
        }
    }

private:
    enum Coluna {
        colData,
        colSensor,
        colNome,
        colValor,
        colObservacoes,
        colFlag,
        colMediaSync,
        colEscala = 6,
        colIdent
    };

    Serie serieDe(const Sensor &s, size_t indice) const {
        Serie r;
        r.sensor = &s;
        r.indice = indice;
        r.chave = misturar(m_h.clima.chaveDe(s.lugar), s.letra * 16 + (m_t.pull ? 1 : 0));
        r.id = s.SensorID.toUtf8();
        r.nome = s.Descricao.toUtf8();
        r.antigo = s.antigo.toUtf8();
        const double dias = s.principal ? m_h.prazos.diasPrincipais : m_h.prazos.diasOutros;
        // Newly installed ones began late, deactivated ones stopped early.
        r.inicio = m_h.fim - qint64(dias * (s.recente ? 0.4 : 1) * 86400);
        r.fim = m_h.fim - (s.activo ? 0 : qint64(dias * 0.3 * 86400));
        r.mudancaDeNome = m_h.fim - qint64(dias * 0.6 * 86400);
        r.mudancaDeLimites = s.ordem == 0 ? m_h.fim - qint64(dias * 0.25 * 86400) : 0;
        constexpr double sem = std::numeric_limits<double>::infinity();
        r.maximo = s.temMaximo() ? s.maximo : sem;
        r.minimo = s.temMinimo() ? s.minimo : -sem;
        r.observacoes = observacoesDe(s, 0);
        r.observacoesAntigas = observacoesDe(s, 1);
        r.desvio = (daUnidadeComLog(s) ? 0 : int((s.ordem * 7 + s.letra) % 60)) + (m_t.pull ? 120 : 0);
        if (s.mede->comEscala) {
            r.escala = s.escala ? s.escala->nome.toUtf8() : s.unidade.toUtf8();
            for (const double v : {s.SensUIMax, s.SensUIMin, s.escala ? s.escala->maximo : s.SensUIMax,
                                   s.escala ? s.escala->minimo : s.SensUIMin})
                r.ident += (r.ident.isEmpty() ? "" : "X") + textoNumero(v, 2, s.separador());
        }
        return r;
    }

    // The limits as stored with each reading; the main sensors' maximum was once higher.
    static QByteArray observacoesDe(const Sensor &s, double folga) {
        if (s.limite == Limite::Nulo)
            return {};
        const QByteArray maximo = s.temMaximo() ? textoNumero(s.maximo + folga, 2, s.separador()) : QByteArray("NA");
        const QByteArray minimo = s.temMinimo() ? textoNumero(s.minimo, 2, s.separador()) : QByteArray("NA");
        return maximo + "XXX" + minimo;
    }

    void datarMinuto(qint64 t) {
        m_minuto = t;
        m_data = textoData(t);
    }
    void datar(int desvio) {
        if (desvio >= 60)
            m_data = textoData(m_minuto + desvio);
        m_data[17] = char('0' + desvio % 60 / 10);
        m_data[18] = char('0' + desvio % 10);
    }

    static double maximoEm(const Serie &s, qint64 t) { return s.maximo + (t < s.mudancaDeLimites ? 1 : 0); }

    Juizo julgar(const Serie &s, qint64 t, double valor) const {
        const double maximo = maximoEm(s, t);
        Juizo j;
        if (valor > maximo)
            j.texto = "Máximo de  " + textoNumero(valor - maximo, 2, s.sensor->separador());
        else if (valor < s.minimo)
            j.texto = "Mínimo de  " + textoNumero(valor - s.minimo, 2, s.sensor->separador());
        j.fora = !j.texto.isEmpty();
        return j;
    }

    void escreverLeitura(Serie &s, const Momento &m) {
        const qint64 t = m.t + s.desvio;
        if (m_h.clima.sensorDesligado(s.sensor->lugar, t).em(t))
            return;
        datar(s.desvio);
        Insercao &i = *m_linhas;
        i.utf8(colData, m_data);
        i.utf8(colSensor, s.id);
        i.utf8(colNome, !s.antigo.isEmpty() && t < s.mudancaDeNome ? s.antigo : s.nome);
        if (m_t.medida.comEscala) {
            i.utf8(colEscala, s.escala);
            if (m_t.pull || s.sensor->separador() == u'.') // the import of a log does not write it
                i.utf8(colIdent, s.ident);
            else
                i.nulo(colIdent);
        }
        if (m_t.medida.grandeza.filtroDeMedias) {
            // The capture service's own readings and averages stand in one table; a log holds no averages.
            const bool media =
                !m_t.pull && s.sensor->separador() == u'.' && m.t % (leiturasPorMedia * m_t.passo()) == 0;
            i.utf8(colMediaSync, media ? "TRUE" : " ", media ? 4 : 1);
        }
        const quint64 acaso = misturar(s.chave, t);
        if (acaso % 3000 == 0) { // a value that could not be read; nothing else is known of it
            i.utf8(colValor, "ND", 2);
            i.nulo(colObservacoes);
            i.nulo(colFlag);
            i.gravar();
            return;
        }
        const double valor = amostra(m_h.clima, *s.sensor, m);
        if (!m_t.pull)
            m_h.ultimos[s.indice] = valor;
        const Juizo juizo = julgar(s, t, valor);
        const bool comNota = acaso % 4001 == 1 || (juizo.fora && acaso % 12 == 1);
        const QByteArray nota = comNota ? QByteArray(notas[(acaso >> 20) % std::size(notas)]) : juizo.texto;
        i.real(colValor, valor);
        gravarComLimites(i, s, t, nota);
        if (m_medias)
            mediar(s, t, valor, acaso);
        else if (!m_t.pull)
            seguirAlarme(s, t, valor, juizo.fora);
    }

    static void gravarComLimites(Insercao &i, const Serie &s, qint64 t, const QByteArray &nota) {
        const QByteArray &limites = t < s.mudancaDeLimites ? s.observacoesAntigas : s.observacoes;
        if (limites.isNull())
            i.nulo(colObservacoes);
        else
            i.utf8(colObservacoes, limites);
        if (nota.isEmpty())
            i.utf8(colFlag, " ", 1);
        else
            i.utf8(colFlag, nota);
        i.gravar();
    }

    void mediar(Serie &s, qint64 t, double valor, quint64 acaso) {
        s.soma += valor;
        if (++s.quantas < leiturasPorMedia)
            return;
        const double media = arredondar(s.soma / leiturasPorMedia, 100);
        s.soma = 0;
        s.quantas = 0;
        const Juizo juizo = julgar(s, t, media);
        Insercao &i = *m_medias;
        i.utf8(colData, m_data);
        i.utf8(colSensor, s.id);
        i.utf8(colNome, s.nome);
        i.real(colValor, media);
        gravarComLimites(i, s, t,
                         acaso % 1500 == 7 ? QByteArray(notas[(acaso >> 30) % std::size(notas)]) : juizo.texto);
        seguirAlarme(s, t, media, juizo.fora);
    }

    void seguirAlarme(Serie &s, qint64 t, double valor, bool fora) {
        constexpr qint64 entreAvisos = 1800;
        if (fora && t - s.ultimoAlarme >= entreAvisos) {
            m_h.alarmes[&m_t.medida].push_back({s.sensor, t, valor, maximoEm(s, t)});
            s.ultimoAlarme = t;
        }
        if (fora && s.episodio < 0) {
            s.episodio = int(m_h.episodios.size());
            m_h.episodios.push_back({s.sensor, t, 0});
        } else if (!fora && s.episodio >= 0) {
            m_h.episodios[size_t(s.episodio)].fim = t;
            s.episodio = -1;
        }
    }

    Historia &m_h;
    const Tabela &m_t;
    std::unique_ptr<Insercao> m_linhas, m_medias;
    std::vector<Serie> m_series;
    QByteArray m_data;
    qint64 m_minuto = 0;
};

} // namespace

Prazos prazosPara(qint64 linhas, const std::vector<Sensor> &sensores) {
    // Below 1 all stretches shrink together, up to 2 the lesser sensors catch up, beyond it all grow.
    const auto prazos = [](double grau) {
        Prazos p;
        if (grau <= 1)
            return Prazos{p.diasPrincipais * grau, p.diasOutros * grau};
        if (grau <= 2)
            return Prazos{p.diasPrincipais, p.diasOutros + (p.diasPrincipais - p.diasOutros) * (grau - 1)};
        return Prazos{p.diasPrincipais * (grau - 1), p.diasPrincipais * (grau - 1)};
    };
    const auto total = [&](const Prazos &p) {
        qint64 n = 0;
        for (const Tabela &t : tabelas())
            for (const Sensor &s : sensores)
                if (t.tem(s))
                    n += linhasPorSensor(t, s.principal ? p.diasPrincipais
                                                        : p.diasOutros * (s.recente  ? 0.4
                                                                          : s.activo ? 1
                                                                                     : 0.7));
        return n;
    };
    if (linhas <= 0)
        return prazos(1);
    double menos = 0, mais = 100;
    for (int i = 0; i < 50; ++i) {
        const double grau = (menos + mais) / 2;
        (total(prazos(grau)) < linhas ? menos : mais) = grau;
    }
    return prazos(mais);
}

void gravarLeituras(Historia &h) {
    h.ultimos.assign(h.sensores.size(), std::numeric_limits<double>::quiet_NaN());
    for (const Tabela &t : tabelas()) {
        if (h.aoAvancar)
            h.aoAvancar(t.nome());
        Escritor(h, t).escrever();
    }
}

QByteArray textoData(qint64 t) {
    return datas::textoBD(double(t)).toLatin1();
}

QByteArray textoNumero(double valor, int casas, QChar separador) {
    QByteArray texto = modDoubleTratamento::NumeroComPonto(modDoubleTratamento::Arredondar(valor, casas));
    return separador == u'.' ? texto : texto.replace('.', separador.toLatin1());
}

} // namespace demonstracao
