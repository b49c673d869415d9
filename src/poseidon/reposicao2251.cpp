#include "poseidon/reposicao2251.h"

#include "core/falha.h"
#include "core/literais.h"
#include "data/comando.h"
#include "data/dialecto.h"
#include "data/ligacao.h"
#include "data/recordset.h"
#include "poseidon/mensagens2251.h"
#include "poseidon/notasDoLog.h"
#include "poseidon/substituidas2251.h"

#include <QCryptographicHash>
#include <QFile>
#include <QSet>

#include <algorithm>
#include <array>
#include <memory>
#include <optional>

namespace reposicao2251 {

namespace {

using substituidas2251::Especie;

// The tables that a log is written to, and what makes a channel of them.
struct Tabela {
    QStringView nome, valor;
    std::array<QStringView, 2> canal; // the second may be empty
};
constexpr Tabela tabelas[] = {
    {u"Temperaturas", u"Temperatura", {u"Sensor", u""}},
    {u"Humidade", u"Percentagem", {u"Sensor", u""}},
    {u"Medias", u"Temperatura", {u"Sensor", u""}},
    {u"SensUI_Leituras", u"Leitura", {u"Sensor", u""}},
    {u"REGISTO_Inputs", u"Estado", {u"DispositivoIP", u"InputNum"}},
    {u"REGISTO_Outputs", u"Estado", {u"DispositivoIP", u"OutputNum"}},
};

struct Linha {
    Especie especie = Especie::Ficou;
    qint64 lugar = 0; // in the order of storing
    std::optional<Celula> flag;
    std::vector<Celula> celulas;
};

[[noreturn]] void recusar(const mensagens2251::Mensagem &motivo, const QString &caminho) {
    throw Falha(erros::falhaDoFicheiro, motivo.texto(caminho));
}

// Walks through the file. A section without its end was never confirmed, and can only be the last one.
class Leitor {
public:
    explicit Leitor(const QString &caminho) : m_ficheiro(caminho) {
        if (!m_ficheiro.open(QIODevice::ReadOnly))
            recusar(mensagens2251::substituidasNaoAbre, caminho + u": "_s + m_ficheiro.errorString());
        const QList<QByteArray> cabeca = campos(m_ficheiro.readLine());
        if (cabeca.size() != 3 || cabeca[0] != substituidas2251::forma)
            recusar(mensagens2251::substituidasOutra, caminho);
        conteudo.unidade = QString::fromUtf8(cabeca[1]);
        conteudo.momento = QString::fromUtf8(cabeca[2]);
    }
    // False behind the last whole section.
    bool seccao(const std::function<void(const QList<QByteArray> &)> &tabela,
                const std::function<void(const Linha &)> &linha, const std::function<void()> &grupo) {
        const QByteArray cabeca = m_ficheiro.readLine();
        if (!cabeca.endsWith('\n'))
            return false;
        QCryptographicHash soma(QCryptographicHash::Sha256);
        soma.addData(cabeca);
        QList<QByteArray> c = campos(cabeca);
        if (c.size() < 3 || c.takeFirst() != substituidas2251::cabecaDaTabela)
            estragado();
        tabela(c);
        for (qint64 linhas = 0;;) {
            const QByteArray bytes = m_ficheiro.readLine();
            if (!bytes.endsWith('\n'))
                return false;
            c = campos(bytes);
            if (c[0] == substituidas2251::fim) {
                if (c.size() != 3 || c[1].toLongLong() != linhas || c[2] != soma.result().toHex())
                    estragado();
                return true;
            }
            soma.addData(bytes);
            if (c[0] == substituidas2251::grupo) {
                grupo();
                continue;
            }
            linha(lerLinha(c));
            ++linhas;
        }
    }
    [[noreturn]] void estragado() const { recusar(mensagens2251::substituidasEstragado, m_ficheiro.fileName()); }
    Conteudo conteudo;

private:
    static QList<QByteArray> campos(QByteArray linha) {
        if (linha.endsWith('\n'))
            linha.chop(1);
        return linha.split('\t');
    }
    Linha lerLinha(const QList<QByteArray> &c) const {
        static constexpr QByteArrayView especies = "FSAJ";
        bool numero = false;
        Linha l;
        if (c.size() < 2 || c[0].size() != 1 || !especies.contains(c[0][0]))
            estragado();
        l.especie = Especie(c[0][0]);
        l.lugar = c[1].toLongLong(&numero);
        qsizetype primeira = 2;
        const auto celula = [&](qsizetype i) {
            Celula lida;
            if (i >= c.size() || !substituidas2251::lida(c[i], lida))
                estragado();
            return lida;
        };
        if (l.especie == Especie::Substituida)
            l.flag = celula(primeira++);
        for (qsizetype i = primeira; i < c.size(); ++i)
            l.celulas.push_back(celula(i));
        if (!numero)
            estragado();
        return l;
    }
    QFile m_ficheiro;
};

// Puts back the rows of one section.
class Seccao {
public:
    Seccao(const Leitor &leitor, const QList<QByteArray> &cabeca, Resultado &resultado, NotasDoLog &notas)
        : m_leitor(leitor), m_resultado(resultado), m_notas(notas) {
        const auto tabela = std::find_if(std::begin(tabelas), std::end(tabelas),
                                         [&](const Tabela &t) { return t.nome == QString::fromUtf8(cabeca[0]); });
        if (tabela == std::end(tabelas))
            leitor.estragado();
        m_nome = tabela->nome.toString();
        // The columns are those of the table as it is now: their names come from nowhere else.
        Recordset rs = cnBD().consultar(u"SELECT * FROM "_s + m_nome + u" LIMIT 0");
        QStringList marcas, atribuicoes;
        for (int i = 0; i < rs.colunas(); ++i) {
            m_colunas += rs.nome(i);
            marcas += dialecto::marca(i + 2);
            atribuicoes += m_colunas.last() + u" = "_s + marcas.last();
            if (i + 1 >= cabeca.size() || QString::fromUtf8(cabeca[i + 1]) != m_colunas.last())
                leitor.estragado();
        }
        m_data = lugar(u"Data");
        m_flag = lugar(u"flag");
        m_valor = lugar(tabela->valor);
        m_limites = lugar(u"Observacoes");
        for (const QStringView c : tabela->canal)
            if (!c.isEmpty())
                m_canal.push_back(lugar(c));
        const QString colunas = m_colunas.join(u", "_s);
        m_inserir.emplace(cnBD(), u"INSERT INTO %1 (%2, %3) VALUES (%4, %5)"_s.arg(
                                      m_nome, dialecto::ordem, colunas, dialecto::marca(1), marcas.join(u", "_s)));
        const QString esta = u" WHERE "_s + dialecto::ordem + u" = " + dialecto::marca(1);
        m_mudar.emplace(cnBD(), u"UPDATE %1 SET %2"_s.arg(m_nome, atribuicoes.join(u", "_s)) + esta);
        m_apagar.emplace(cnBD(), u"DELETE FROM "_s + m_nome + esta);
    }

    void iniciarGrupo() { m_contadas.clear(); }

    void repor(const Linha &l) {
        if (l.especie == Especie::Ficou) {
            m_contadas.insert(l.lugar);
            return;
        }
        if (l.celulas.size() != size_t(m_colunas.size()))
            m_leitor.estragado();
        const std::optional<std::vector<Celula>> agora = ler(l.lugar);
        if (l.especie == Especie::Junta)
            return retirar(l, agora);
        if (agora && mesmoLugar(*agora, l.celulas) && !m_contadas.contains(l.lugar))
            return devolver(l, *agora);
        if (jaLa(l))
            return;
        escrever(*m_inserir, agora ? std::nullopt : std::optional(l.lugar), l.celulas);
        ++m_resultado.repostas;
        if (!agora)
            m_contadas.insert(l.lugar);
    }

private:
    int lugar(QStringView coluna) const {
        for (int i = 0; i < m_colunas.size(); ++i)
            if (m_colunas[i].compare(coluna, Qt::CaseInsensitive) == 0)
                return i;
        return -1;
    }
    std::optional<std::vector<Celula>> ler(qint64 lugar) const {
        Recordset rs = cnBD().consultar(u"SELECT * FROM "_s + m_nome + u" WHERE " + dialecto::ordem + u" = ?", {lugar});
        if (!rs.avancar())
            return std::nullopt;
        return linha(rs, 0);
    }
    static std::vector<Celula> linha(const Recordset &rs, int primeira) {
        std::vector<Celula> celulas;
        for (int i = primeira; i < rs.colunas(); ++i)
            celulas.push_back(rs.celula(i));
        return celulas;
    }
    bool mesmoLugar(const std::vector<Celula> &a, const std::vector<Celula> &b) const {
        constexpr qsizetype ateAoSegundo = 19;
        return a[size_t(m_data)].bytes.left(ateAoSegundo) == b[size_t(m_data)].bytes.left(ateAoSegundo) &&
               std::all_of(m_canal.begin(), m_canal.end(), [&](int c) {
                   const Celula &x = a[size_t(c)], &y = b[size_t(c)];
                   return x == y || (!x.numero() && x.bytes.compare(y.bytes, Qt::CaseInsensitive) == 0);
               });
    }
    bool igualSemFlag(const std::vector<Celula> &a, const std::vector<Celula> &b) const {
        for (size_t i = 0; i < a.size(); ++i)
            if (int(i) != m_flag && a[i] != b[i])
                return false;
        return true;
    }
    bool anotada(const std::vector<Celula> &l) const {
        static const Celula semLimites;
        return m_notas.eNota(l[size_t(m_flag)], l[size_t(m_valor)], m_limites < 0 ? semLimites : l[size_t(m_limites)]);
    }
    // What stands in the row's place becomes the row again.
    void devolver(const Linha &l, const std::vector<Celula> &agora) {
        m_contadas.insert(l.lugar);
        std::vector<Celula> antes = l.celulas;
        const Celula &flag = agora[size_t(m_flag)];
        const bool desdeEntao = flag != antes[size_t(m_flag)] && !(l.flag && flag == *l.flag) && anotada(agora);
        if (desdeEntao) {
            antes[size_t(m_flag)] = flag;
            ++m_resultado.notas;
        }
        if (agora == antes) {
            ++m_resultado.jaEstavam;
            return;
        }
        escrever(*m_mudar, l.lugar, antes);
        ++m_resultado.repostas;
    }
    // True when the row stands elsewhere, as after the log that first brought it was imported again.
    bool jaLa(const Linha &l) {
        QString onde = u"Data = ?"_s;
        for (const int c : m_canal)
            onde += u" AND "_s + m_colunas[c] + u" = ?";
        QVariantList valores{QString::fromUtf8(l.celulas[size_t(m_data)].bytes)};
        for (const int c : m_canal) {
            const Celula &v = l.celulas[size_t(c)];
            valores += v.numero() ? QVariant(v.inteiro) : QVariant(QString::fromUtf8(v.bytes));
        }
        Recordset rs =
            cnBD().consultar(u"SELECT "_s + dialecto::ordem + u", * FROM " + m_nome + u" WHERE " + onde, valores);
        while (rs.avancar())
            if (!m_contadas.contains(rs.inteiro(0)) && igualSemFlag(linha(rs, 1), l.celulas)) {
                m_contadas.insert(rs.inteiro(0));
                ++m_resultado.jaEstavam;
                return true;
            }
        return false;
    }
    void retirar(const Linha &l, const std::optional<std::vector<Celula>> &agora) {
        if (!agora || m_contadas.contains(l.lugar) || !igualSemFlag(*agora, l.celulas))
            return;
        if (anotada(*agora)) {
            ++m_resultado.notas;
            return;
        }
        m_apagar->inteiro(1, l.lugar);
        m_apagar->executar();
        ++m_resultado.retiradas;
    }
    static void escrever(Comando &comando, std::optional<qint64> lugar, const std::vector<Celula> &celulas) {
        if (lugar)
            comando.inteiro(1, *lugar);
        else
            comando.nulo(1);
        for (size_t i = 0; i < celulas.size(); ++i)
            comando.celula(int(i) + 2, celulas[i]);
        comando.executar();
    }

    const Leitor &m_leitor;
    Resultado &m_resultado;
    NotasDoLog &m_notas;
    QString m_nome;
    QStringList m_colunas;
    int m_data = -1, m_flag = -1, m_valor = -1, m_limites = -1;
    std::vector<int> m_canal;
    QSet<qint64> m_contadas; // rows of the group that are what they were
    std::optional<Comando> m_inserir, m_mudar, m_apagar;
};

} // namespace

Conteudo examinar(const QString &caminho, const std::function<void()> &passar) {
    Leitor leitor(caminho);
    for (qint64 leituras = 0;; leituras = 0) {
        const bool inteira =
            leitor.seccao([](const auto &) {},
                          [&](const Linha &l) {
                              leituras += l.especie == Especie::Substituida || l.especie == Especie::Apagada ? 1 : 0;
                              passar();
                          },
                          [] {});
        if (!inteira)
            return leitor.conteudo;
        leitor.conteudo.leituras += leituras;
    }
}

Resultado repor(const QString &caminho, const std::function<void()> &passar) {
    // Nothing is touched before the whole of it was proved.
    const qint64 leituras = examinar(caminho, passar).leituras;
    Resultado resultado;
    NotasDoLog notas;
    Transaccao transaccao(cnBD());
    {
        Leitor leitor(caminho);
        qint64 feitas = 0;
        std::unique_ptr<Seccao> seccao;
        while (feitas < leituras &&
               leitor.seccao(
                   [&](const QList<QByteArray> &cabeca) {
                       seccao = std::make_unique<Seccao>(leitor, cabeca, resultado, notas);
                   },
                   [&](const Linha &l) {
                       feitas += l.especie == Especie::Substituida || l.especie == Especie::Apagada ? 1 : 0;
                       seccao->repor(l);
                       passar();
                   },
                   [&] { seccao->iniciarGrupo(); })) {
        }
        seccao.reset();
    }
    transaccao.confirmar(passar);
    return resultado;
}

} // namespace reposicao2251
