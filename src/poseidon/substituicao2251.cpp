#include "poseidon/substituicao2251.h"

#include "core/datas.h"
#include "core/literais.h"
#include "data/comando.h"
#include "data/dialecto.h"
#include "data/ligacao.h"
#include "data/recordset.h"
#include "poseidon/substituidas2251.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace substituicao2251 {

namespace {

constexpr int linhasPorPagina = 512; // between two passes of events
constexpr size_t linhasPorPasse = 4096;
constexpr int posicaoDaLinha = 8;

QString lista(const std::vector<const std::vector<Coluna> *> &colunas,
              const std::function<QString(const Coluna &)> &de) {
    QStringList partes;
    for (const auto *grupo : colunas)
        for (const Coluna &c : *grupo)
            partes += de(c);
    return partes.join(u", "_s);
}

QString nomeDe(const Coluna &c) {
    return c.nome.toString();
}
QString valorDe(const Coluna &c) {
    return c.valor.toString();
}
QString atribuicao(const Coluna &c) {
    return c.nome + u" = "_s + c.valor;
}

qint64 segundoDe(const Celula &data) {
    const double s = datas::segundosDe(data.bytes.constData(), int(std::min<qsizetype>(data.bytes.size(), 20)));
    return std::isnan(s) ? std::numeric_limits<qint64>::min() : qint64(std::floor(s));
}

} // namespace

Substituicao::Substituicao(const Passo &passo, Novas &novas, bool completo, substituidas2251::Escritor *guarda,
                           const std::function<void()> &passar)
    : m_passo(passo), m_novas(novas), m_completo(completo), m_guarda(guarda), m_passar(passar) {
    const QString onde = u" WHERE "_s + dialecto::ordem + u" = " + dialecto::marca(posicaoDaLinha);
    const QString mudar = u"UPDATE "_s + passo.tabela + u" SET ";
    const auto comando = [](const QString &sql) { return std::make_unique<Comando>(cnBD(), sql); };
    m_inserir = comando(u"INSERT INTO %1 (%4, %2) VALUES (%5, %3)"_s.arg(
        passo.tabela, lista({&passo.chaves, &passo.valores, &passo.fixas}, nomeDe),
        lista({&passo.chaves, &passo.valores, &passo.fixas}, valorDe), dialecto::ordem,
        dialecto::marca(posicaoDaLinha)));
    m_actualizar = comando(mudar + lista({&passo.valores}, atribuicao) + onde);
    m_substituir = comando(mudar + lista({&passo.chaves, &passo.valores, &passo.fixas}, atribuicao) + onde);
    m_apagar = comando(u"DELETE FROM "_s + passo.tabela + onde);
}

Substituicao::~Substituicao() = default;

QString Substituicao::onde() const {
    QString condicao;
    for (const Coluna &c : m_passo.chaves)
        if (c.valor != u"?1")
            condicao += c.nome + u" = ? AND "_s;
    return condicao;
}

Balanco Substituicao::correr() {
    ordenar();
    for (size_t canal = 0; canal < m_periodos.size(); ++canal)
        if (m_periodos[canal].quantas > 0)
            fundir(canal);
    inserirRestantes();
    return m_balanco;
}

bool Substituicao::haAntigas(size_t canal) const {
    const Periodo &p = m_periodos[canal];
    const QVariantList valores =
        m_novas.chave(canal) + QVariantList{datas::textoBD(double(p.primeira)), datas::textoBD(double(p.ultima))};
    return cnBD()
        .consultar(u"SELECT 1 FROM "_s + m_passo.tabela + u" WHERE " + onde() + u"Data BETWEEN ? AND ? LIMIT 1",
                   valores)
        .avancar();
}

void Substituicao::ordenar() {
    const size_t total = m_novas.total();
    m_feitas.assign(total, false);
    m_periodos.assign(m_novas.canais(), {});
    for (size_t i = 0; i < total; ++i) {
        Periodo &p = m_periodos[m_novas.canal(i)];
        const qint64 data = m_novas.data(i);
        p.primeira = p.quantas == 0 ? data : std::min(p.primeira, data);
        p.ultima = p.quantas == 0 ? data : std::max(p.ultima, data);
        ++p.quantas;
        if (i % linhasPorPasse == 0)
            m_passar();
    }
    size_t lugares = 0;
    for (size_t canal = 0; canal < m_periodos.size(); ++canal) {
        Periodo &p = m_periodos[canal];
        if (p.quantas > 0 && !haAntigas(canal))
            p.quantas = 0;
        m_passar();
        p.inicio = lugares;
        lugares += p.quantas;
    }
    if (lugares == 0)
        return;
    Recordset rs = cnBD().consultar(u"SELECT MAX("_s + dialecto::ordem + u") FROM " + m_passo.tabela);
    if (rs.avancar())
        m_atrasDe = rs.inteiro(0);
    rs.fechar();
    m_porCanal.resize(lugares);
    std::vector<size_t> proximo;
    for (const Periodo &p : m_periodos)
        proximo.push_back(p.inicio);
    for (size_t i = 0; i < total; ++i) {
        const size_t canal = m_novas.canal(i);
        if (m_periodos[canal].quantas > 0)
            m_porCanal[proximo[canal]++] = quint32(i);
        if (i % linhasPorPasse == 0)
            m_passar();
    }
}

void Substituicao::fundir(size_t canal) {
    const Periodo &p = m_periodos[canal];
    const std::span<quint32> novas(m_porCanal.data() + p.inicio, p.quantas);
    const auto antes = [this](quint32 a, quint32 b) { return m_novas.data(a) < m_novas.data(b); };
    if (!std::is_sorted(novas.begin(), novas.end(), antes))
        std::stable_sort(novas.begin(), novas.end(), antes);
    const QVariantList chave = m_novas.chave(canal);
    const QByteArray ate = datas::textoBD(double(p.ultima)).toLatin1();
    QByteArray desde = datas::textoBD(double(p.primeira)).toLatin1();
    bool inclusive = true;
    int quantas = linhasPorPagina;
    size_t n = 0;
    for (;;) {
        std::vector<Antiga> pagina = lerPagina(chave, desde, inclusive, ate, quantas);
        const bool ultima = pagina.size() < size_t(quantas);
        const auto data = [&](size_t i) -> const Celula & { return pagina[i].celulas[size_t(m_colunas.data)]; };
        size_t feitas = 0;
        QByteArray ultimaData;
        for (size_t inicio = 0, fim = 0; inicio < pagina.size(); inicio = fim) {
            const qint64 segundo = segundoDe(data(inicio));
            for (fim = inicio + 1; fim < pagina.size() && segundoDe(data(fim)) == segundo; ++fim) {
            }
            if (fim == pagina.size() && !ultima)
                break; // the rest of this second comes with the next page
            feitas = fim;
            ultimaData = data(fim - 1).bytes;
            if (segundo == std::numeric_limits<qint64>::min())
                continue;
            while (n < novas.size() && m_novas.data(novas[n]) < segundo)
                ++n;
            const size_t primeira = n;
            while (n < novas.size() && m_novas.data(novas[n]) == segundo)
                ++n;
            tratarGrupo(Grupo(pagina).subspan(inicio, fim - inicio), Indices(novas).subspan(primeira, n - primeira));
        }
        if (feitas > 0) {
            desde = ultimaData;
            inclusive = false;
            quantas = linhasPorPagina;
        } else {
            quantas *= 2;
        }
        if (m_guarda)
            m_guarda->despejar();
        m_passar();
        if (ultima)
            return;
    }
}

void Substituicao::lerColunas(const Recordset &rs) {
    const std::pair<QStringView, int *> conhecidas[] = {
        {u"Data", &m_colunas.data}, {m_passo.valor, &m_colunas.valor}, {u"Observacoes", &m_colunas.limites},
        {u"flag", &m_colunas.flag}, {u"NomeSensor", &m_colunas.nome},  {u"Escala", &m_colunas.escala},
    };
    for (int i = 1; i < rs.colunas(); ++i) {
        m_nomes += rs.nome(i);
        for (const auto &[nome, lugar] : conhecidas)
            if (nome.compare(m_nomes.last(), Qt::CaseInsensitive) == 0)
                *lugar = i - 1;
    }
    if (m_guarda)
        m_guarda->iniciarSeccao(m_passo.tabela.toString(), m_nomes);
}

// Rows of one channel by their moment. No event runs between this and what is done to them.
std::vector<Antiga> Substituicao::lerPagina(const QVariantList &chave, const QByteArray &desde, bool inclusive,
                                            const QByteArray &ate, int quantas) {
    Recordset rs = cnBD().consultar(u"SELECT "_s + dialecto::ordem + u", * FROM " + m_passo.tabela + u" WHERE " +
                                        onde() + u"Data " + (inclusive ? u">= ?" : u"> ?") +
                                        u" AND Data <= ? ORDER BY Data LIMIT " + QString::number(quantas),
                                    chave + QVariantList{QString::fromUtf8(desde), QString::fromUtf8(ate)});
    if (m_nomes.isEmpty())
        lerColunas(rs);
    std::vector<Antiga> pagina;
    while (rs.avancar()) {
        Antiga &a = pagina.emplace_back();
        a.lugar = rs.inteiro(0);
        a.celulas.reserve(size_t(rs.colunas()) - 1);
        for (int i = 1; i < rs.colunas(); ++i)
            a.celulas.push_back(rs.celula(i));
        const Celula &flag = a.celulas[size_t(m_colunas.flag)];
        static const Celula semLimites;
        a.nota = !flag.emBranco() &&
                 m_notas.eNota(flag, a.celulas[size_t(m_colunas.valor)],
                               m_colunas.limites < 0 ? semLimites : a.celulas[size_t(m_colunas.limites)]);
    }
    return pagina;
}

// What happens to the old rows of one second, decided as a whole before the first of them changes.
std::vector<Substituicao::Accao> Substituicao::decidir(Grupo antigas, Indices novas,
                                                       std::deque<quint32> &sobram) const {
    std::vector<Accao> accoes;
    for (const quint32 nova : novas) {
        Antiga *par = nullptr;
        for (Antiga &a : antigas)
            if (!a.tomada && (!par || (a.nota && !par->nota)) && m_novas.igual(nova, a, m_colunas))
                par = &a;
        if (par) {
            par->tomada = true;
            accoes.push_back({Que::Ficar, par, nova, nullptr});
        } else {
            sobram.push_back(nova);
        }
    }
    const auto tirar = [&sobram] {
        const quint32 nova = sobram.front();
        sobram.pop_front();
        return nova;
    };
    for (Antiga &a : antigas) {
        if (a.tomada || !a.nota)
            continue;
        a.tomada = true;
        const Celula *nota = &a.celulas[size_t(m_colunas.flag)];
        if (!sobram.empty()) {
            accoes.push_back({Que::Substituir, &a, tirar(), nota});
            continue;
        }
        const auto semNota = std::find_if(accoes.begin(), accoes.end(),
                                          [](const Accao &o) { return o.que == Que::Ficar && !o.antiga->nota; });
        if (semNota == accoes.end()) {
            accoes.push_back({Que::FicarSo, &a, 0, nullptr});
            continue;
        }
        semNota->que = Que::Anotar;
        semNota->nota = nota;
        accoes.push_back({Que::Apagar, &a, 0, nullptr});
    }
    for (Antiga &a : antigas) {
        if (a.tomada)
            continue;
        if (sobram.empty())
            accoes.push_back({Que::Apagar, &a, 0, nullptr});
        else
            accoes.push_back({Que::Substituir, &a, tirar(), nullptr});
    }
    return accoes;
}

void Substituicao::tratarGrupo(Grupo antigas, Indices novas) {
    if (novas.empty() && !m_completo)
        return;
    std::sort(antigas.begin(), antigas.end(), [](const Antiga &a, const Antiga &b) { return a.lugar < b.lugar; });
    std::deque<quint32> sobram;
    const std::vector<Accao> accoes = decidir(antigas, novas, sobram);
    const auto fica = [](const Accao &a) { return a.que == Que::Ficar || a.que == Que::FicarSo; };
    const bool guardar = m_guarda && !std::all_of(accoes.begin(), accoes.end(), fica);
    if (guardar) {
        m_guarda->iniciarGrupo();
        for (const Accao &a : accoes)
            if (fica(a))
                m_guarda->linha(substituidas2251::Ficou, a.antiga->lugar, {});
    }
    for (const Accao &a : accoes)
        executar(a);
    if (guardar)
        for (const quint32 nova : sobram)
            juntar(nova);
}

void Substituicao::executar(const Accao &accao) {
    const Antiga &antiga = *accao.antiga;
    const auto mudar = [&](Comando &comando, const Celula *flag) {
        comando.inteiro(posicaoDaLinha, antiga.lugar);
        m_novas.ligar(comando, accao.nova, flag);
        comando.executar();
        m_feitas[accao.nova] = true;
    };
    const auto guardarSubstituida = [&] {
        const Celula flag = accao.nota ? *accao.nota : m_novas.flag(accao.nova);
        if (m_guarda)
            m_guarda->linha(substituidas2251::Substituida, antiga.lugar, antiga.celulas, &flag);
    };
    m_balanco.substituidas += accao.que == Que::Substituir || accao.que == Que::Apagar ? 1 : 0;
    m_balanco.notas += accao.nota || (accao.que == Que::Ficar && antiga.nota) ? 1 : 0;
    m_balanco.ficaram += accao.que == Que::FicarSo ? 1 : 0;
    switch (accao.que) {
    case Que::Ficar: {
        const Celula &flag = antiga.celulas[size_t(m_colunas.flag)];
        const Celula nova = m_novas.flag(accao.nova);
        m_feitas[accao.nova] = true;
        const bool mesmaFlag = antiga.nota || flag == nova || (flag.emBranco() && nova.emBranco());
        if (!mesmaFlag || !m_novas.identica(accao.nova, antiga, m_colunas))
            mudar(*m_actualizar, mesmaFlag ? &flag : nullptr);
        return;
    }
    case Que::Anotar:
        guardarSubstituida();
        return mudar(*m_actualizar, accao.nota);
    case Que::Substituir:
        guardarSubstituida();
        return mudar(*m_substituir, accao.nota);
    case Que::Apagar:
        if (m_guarda)
            m_guarda->linha(substituidas2251::Apagada, antiga.lugar, antiga.celulas);
        m_apagar->inteiro(posicaoDaLinha, antiga.lugar);
        m_apagar->executar();
        return;
    case Que::FicarSo:
        return;
    }
}

// A reading that comes beside those that were replaced: it goes again when they are put back.
void Substituicao::juntar(quint32 nova) {
    inserir(nova);
    m_feitas[nova] = true;
    Recordset rs = cnBD().consultar(u"SELECT "_s + dialecto::ordem + u", * FROM " + m_passo.tabela + u" WHERE " +
                                    dialecto::ultimaGuardada());
    if (!rs.avancar())
        return;
    std::vector<Celula> celulas;
    for (int i = 1; i < rs.colunas(); ++i)
        celulas.push_back(rs.celula(i));
    m_guarda->linha(substituidas2251::Junta, rs.inteiro(0), celulas);
}

void Substituicao::inserirRestantes() {
    const size_t total = m_novas.total();
    for (size_t i = 0; i < total; ++i) {
        if (m_feitas[i])
            continue;
        inserir(i);
        m_passar();
    }
}

// Never in the place of a row that was taken away: it may come back.
void Substituicao::inserir(size_t i) {
    if (m_atrasDe)
        m_inserir->inteiro(posicaoDaLinha, *m_atrasDe + 1);
    m_novas.ligar(*m_inserir, i, nullptr);
    m_inserir->executar();
    if (std::exchange(m_atrasDe, std::nullopt))
        m_inserir->nulo(posicaoDaLinha);
}

} // namespace substituicao2251
