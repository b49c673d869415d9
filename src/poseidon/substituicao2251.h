#pragma once

#include "data/celula.h"
#include "poseidon/notasDoLog.h"

#include <QStringList>
#include <QVariant>

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <vector>

class Comando;
class Recordset;
namespace substituidas2251 {
class Escritor;
}

// How the rows of one step of a log take their place among those that the table holds.
//
// Only channels that have rows are looked at, each between the first and the last of its own. What stands there as the
// log brings it is left alone; another reading of the same second becomes the log's in its place; a reading of a second
// that the log lacks goes, but only when every line of the log was read. What goes is kept in a file. A user's note
// stays with the reading of its second, or else its own reading stays.
namespace substituicao2251 {

struct Antiga {
    qint64 lugar = 0;            // in the order of storing
    std::vector<Celula> celulas; // of all columns
    bool nota = false;
    bool tomada = false; // what becomes of it is decided
};

// Places in Antiga::celulas; -1: the table has no such column.
struct Colunas {
    int data = -1, valor = -1, limites = -1, flag = -1, nome = -1, escala = -1;
};

struct Coluna {
    QStringView nome, valor; // the value as it stands in a statement: "?4", or fixed
};
struct Passo {
    QStringView tabela;
    QStringView valor;           // the column of the value
    std::vector<Coluna> chaves;  // the columns that say which channel; with the moment, ?1
    std::vector<Coluna> valores; // what a reading is made of
    std::vector<Coluna> fixas;   // what every new row gets
};

// The rows of the step, numbered in the order of the log.
class Novas {
public:
    virtual ~Novas() = default;
    virtual size_t total() const = 0;
    virtual size_t canais() const = 0;
    virtual size_t canal(size_t i) const = 0; // below canais()
    virtual qint64 data(size_t i) const = 0;  // datas::segundosDe
    virtual QVariantList chave(size_t canal) const = 0;
    // The same value under the same limits.
    virtual bool igual(size_t i, const Antiga &antiga, const Colunas &c) const = 0;
    // Beyond that, nothing of it would be stored otherwise; the flag is looked at elsewhere.
    virtual bool identica(size_t i, const Antiga &antiga, const Colunas &c) const = 0;
    virtual Celula flag(size_t i) = 0;
    // Values stand until the next call; <flag>, when given, instead of the row's own.
    virtual void ligar(Comando &comando, size_t i, const Celula *flag) = 0;
};

struct Balanco {
    qint64 substituidas = 0; // went without an equal one coming
    qint64 notas = 0;        // are now on readings of the log
    qint64 ficaram = 0;      // readings that stayed for their note
};

class Substituicao {
public:
    // <completo>: every line of the log was read. <guarda> may be null, and then nothing is kept.
    Substituicao(const Passo &passo, Novas &novas, bool completo, substituidas2251::Escritor *guarda,
                 const std::function<void()> &passar);
    ~Substituicao();
    Balanco correr(); // in a transaction of the caller

private:
    using Grupo = std::span<Antiga>;
    using Indices = std::span<const quint32>;
    struct Periodo {
        qint64 primeira = 0, ultima = -1;
        size_t inicio = 0, quantas = 0; // in m_porCanal
    };
    // Anotar: an equal reading that takes another one's note. FicarSo: without a reading of the log.
    enum class Que { Ficar, FicarSo, Anotar, Substituir, Apagar };
    struct Accao {
        Que que;
        Antiga *antiga;
        quint32 nova;
        const Celula *nota; // that the reading takes over
    };
    bool haAntigas(size_t canal) const;
    void ordenar();
    void fundir(size_t canal);
    std::vector<Antiga> lerPagina(const QVariantList &chave, const QByteArray &desde, bool inclusive,
                                  const QByteArray &ate, int quantas);
    void lerColunas(const Recordset &rs);
    std::vector<Accao> decidir(Grupo antigas, Indices novas, std::deque<quint32> &sobram) const;
    void tratarGrupo(Grupo antigas, Indices novas);
    void executar(const Accao &accao);
    void juntar(quint32 nova);
    void inserirRestantes();
    void inserir(size_t i);
    QString onde() const;

    const Passo &m_passo;
    Novas &m_novas;
    const bool m_completo;
    substituidas2251::Escritor *m_guarda;
    const std::function<void()> &m_passar;
    Balanco m_balanco;
    NotasDoLog m_notas;
    Colunas m_colunas;
    QStringList m_nomes;
    std::vector<Periodo> m_periodos;
    std::vector<quint32> m_porCanal; // rows of channels that hold others already, by channel and moment
    std::vector<bool> m_feitas;
    std::optional<qint64> m_atrasDe; // the last row there was, until one is put behind it
    std::unique_ptr<Comando> m_inserir, m_actualizar, m_substituir, m_apagar;
};

} // namespace substituicao2251
