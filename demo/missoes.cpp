#include "demo/missoes.h"

#include "core/literais.h"
#include "data/insercao.h"
#include "data/ligacao.h"
#include "demo/acaso.h"
#include "demo/historia.h"

#include <algorithm>
#include <cmath>

// Missions of the temperature loggers that travel with goods.
namespace demonstracao {

namespace {

constexpr int amostrasDoRegistador = 2048;

struct Missao {
    int registador;
    QStringView nome, descricao;
    int numero;
    int diasAtras; // programmed so long before the end of the history
    int intervalo; // minutes between samples
    int duracao;   // days that it was planned for
    bool concluida;
    double maximo, minimo, base, calibracao;
    int descarregadas; // per cent of the samples so far that were fetched
};
constexpr Missao missoes[] = {
    {0, u"Registador Vacinas", u"Transporte Évora", 1, 330, 10, 4, true, 8, 2, 4.6, 0, 100},
    {0, u"Registador Vacinas", u"Transporte Faro", 2, 241, 10, 6, true, 8, 2, 5.2, 0, 100},
    {0, u"Registador Vacinas", u"Campanha Gripe", 3, 96, 15, 20, true, 8, 2, 4.8, 0, 100},
    {0, u"Farmácia Central", u"Ensaio de Frio", 1, 33, 5, 5, true, 8, 2, 6.4, 0, 100}, // same button, new name
    {1, u"Registador Pescado", u"Lota de Matosinhos", 1, 180, 10, 3, true, 5, -1, 1.8, -0.5, 100},
    {1, u"Registador Pescado", u"Lota de Peniche", 2, 61, 10, 3, true, 5, -1, 2.4, -0.5, 100},
    {1, u"Registador Pescado", u"Rota Semanal", 3, 5, 10, 14, false, 5, -1, 2.1, -0.5, 90}, // on its way
    {2, u"Registador Museu", u"Sala de Reservas", 1, 150, 30, 42, true, 22, 16, 19.2, 0, 100},
    {2, u"Registador Museu", u"Exposição d'Outono", 2, 60, 30, 41, false, 22, 16, 19.8, 0, 70}, // over, not yet closed
    {3, u"Registador Sangue", u"Recolha Coimbra", 1, 12, 5, 1, true, 10, 2, 5.5, 0.5, 100},
    {3, u"Registador Sangue", u"Recolha Aveiro", 2, 0, 5, 2, false, 10, 2, 5.5, 0.5, 0}, // programmed today
};

// Half degrees, as the button measures: a journey warms the goods, each stop a little more.
double amostraDe(const Missao &m, quint64 chave, qint64 t) {
    double v = m.base + 1.1 * ondulacao(chave, t, 5 * 3600) + 0.4 * ondulacao(chave ^ 1, t, 2400);
    const double paragem = ondulacao(chave ^ 2, t, 7 * 3600);
    if (paragem > 0.55)
        v += (paragem - 0.55) * 9;
    return std::round((v + m.calibracao) * 2) / 2;
}

QString idDe(const Missao &m, const Clima &clima) {
    return rom1Wire(0x21, misturar(clima.chaveDe(800), m.registador) & 0x0FFFFFFFFFFF, false);
}

quint64 chaveDe(const Missao &m, const Clima &clima) {
    return misturar(clima.chaveDe(900 + m.registador), m.numero);
}

qint64 inicioDe(const Missao &m, qint64 fim) {
    return (fim - qint64(m.diasAtras) * 86400 - (m.registador + 2) * 3720) / 60 * 60;
}

void gravarAmostras(Historia &h, Insercao &i, const Missao &m, const QString &id, qint64 inicio, qint64 fimPrevisto) {
    const quint64 chave = chaveDe(m, h.clima);
    const QString numero = u"%1"_s.arg(m.numero, 4, 10, QChar(u'0'));
    const qint64 ate = std::min(fimPrevisto, h.fim);
    const qint64 total = std::min<qint64>((ate - inicio) / (m.intervalo * 60), amostrasDoRegistador);
    for (qint64 n = 0; n < total * m.descarregadas / 100; ++n) {
        const qint64 t = inicio + n * m.intervalo * 60;
        const double v = amostraDe(m, chave, t);
        i.texto(0, id);
        i.texto(1, m.nome.toString());
        i.texto(2, m.descricao.toString());
        i.texto(3, numero);
        i.texto(4, QString::fromLatin1(textoData(t)));
        i.real(5, v);
        i.real(6, m.maximo);
        i.real(7, m.minimo);
        i.texto(8, v >= m.maximo || v <= m.minimo ? u"TRUE"_s : u"FALSE"_s);
        i.texto(9, misturar(chave, n) % 260 == 9 ? u"Paragem para descarga"_s : u""_s);
        i.gravar();
    }
}

} // namespace

void gravarMissoes(Historia &h) {
    Insercao cabecas(h.bd, u"DS1921head"_s,
                     {u"LoggerID"_s, u"Nomelogger"_s, u"DescricaoMissao"_s, u"NMissao"_s, u"DataProg"_s,
                      u"DataFimMissao"_s, u"Max"_s, u"Min"_s, u"Flag"_s, u"Calibracoes"_s});
    Insercao amostras(h.bd, u"DS1921"_s,
                      {u"LoggerID"_s, u"Nomelogger"_s, u"DescricaoMissao"_s, u"NMissao"_s, u"Data"_s, u"Temperatura"_s,
                       u"Max"_s, u"Min"_s, u"Alarm"_s, u"flag"_s});
    for (const Missao &m : missoes) {
        const QString id = idDe(m, h.clima);
        const qint64 inicio = inicioDe(m, h.fim);
        const qint64 fimPrevisto = inicio + qint64(m.duracao) * 86400;
        cabecas.texto(0, id);
        cabecas.texto(1, m.nome.toString());
        cabecas.texto(2, m.descricao.toString());
        cabecas.texto(3, u"%1"_s.arg(m.numero, 4, 10, QChar(u'0')));
        cabecas.texto(4, QString::fromLatin1(textoData(inicio)));
        cabecas.texto(5, QString::fromLatin1(textoData(fimPrevisto)));
        cabecas.real(6, m.maximo);
        cabecas.real(7, m.minimo);
        cabecas.texto(8, m.concluida ? u"C"_s : u"NC"_s);
        cabecas.texto(9, QString::fromLatin1(textoNumero(m.calibracao, 1, u',')));
        cabecas.gravar();
        gravarAmostras(h, amostras, m, id, inicio, fimPrevisto);
    }
}

std::vector<MissaoNoBotao> missoesNosBotoes(const Clima &clima, qint64 fim) {
    std::vector<MissaoNoBotao> lista;
    for (const Missao &m : missoes)
        if (!m.concluida)
            lista.push_back(
                {idDe(m, clima), m.nome.toString(), m.descricao.toString(), m.numero, inicioDe(m, fim), m.intervalo,
                 m.maximo, m.minimo, m.base, m.calibracao,
                 [&m, chave = chaveDe(m, clima)](qint64 t) { return amostraDe(m, chave, t) - m.calibracao; }});
    return lista;
}

} // namespace demonstracao
