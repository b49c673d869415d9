#pragma once

#include "data/celula.h"

#include <QByteArrayView>
#include <QString>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>

// What the connection needs of an engine; each engine is a folder of its own beside this. Statements are written in the
// words of dialecto.h and mark their values by "?" or "?1"; an engine with other marks exchanges them. Failures are
// Falha with the engine's text.

// One prepared statement. Positions of values count from 1, columns from 0.
class Instrucao {
public:
    Instrucao() = default;
    virtual ~Instrucao() = default;
    Instrucao(const Instrucao &) = delete;
    Instrucao &operator=(const Instrucao &) = delete;

    virtual int valores() const = 0;                // that it wants
    virtual bool escreve() const = 0;               // it changes the database
    virtual int colunas() const = 0;                // 0: it has no rows
    virtual const char *nome(int coluna) const = 0; // UTF-8
    virtual bool avancar() = 0;                     // to the next row; not to be called after the last
    virtual qint64 executar() = 0;                  // all of it, and back to its beginning; rows changed

    // Values stay bound until they are bound anew. What is borrowed has to stand until the statement has run.
    enum class Bytes : quint8 { Copiados, Emprestados };
    virtual void ligarNulo(int posicao) = 0;
    virtual void ligarInteiro(int posicao, qint64 valor) = 0;
    virtual void ligarReal(int posicao, double valor) = 0; // NaN is Null
    virtual void ligarTexto(int posicao, QByteArrayView utf8, Bytes bytes) = 0;
    virtual void ligarBloco(int posicao, QByteArrayView valor) = 0; // copied

    // Of the present row; a column that is none is Null.
    virtual Celula::Tipo tipo(int coluna) const = 0;
    virtual qint64 inteiro(int coluna) const = 0;
    virtual double real(int coluna) const = 0;
    virtual bool numero(int coluna, double &valor) const = 0;      // whether it is stored as one, and which
    virtual const char *texto(int coluna) const = 0;               // up to its first zero; no address for Null
    virtual const char *texto(int coluna, int &tamanho) const = 0; // of every type; no address for Null
    virtual QByteArrayView bloco(int coluna) const = 0;
};

// When an engine takes what it keeps beside the database into the database, where it does so by itself.
struct MedidasDeRecolha {
    int paginas = 1000;                           // waiting after a commit: worth a turn
    qint64 bytes = 16 << 20;                      // of the file they wait in: worth being cut
    std::chrono::milliseconds entreOlhares{1000}; // at what other programs, too, let grow
};

struct Abertura {
    int esperaMs = 5000;                     // for another program's lock
    std::optional<MedidasDeRecolha> recolha; // absent: left to whoever else has the database open
};

// Who follows a copy; may throw to end it.
struct AoCopiar {
    std::function<void(qint64)> tamanho;     // bytes, before the first is written
    std::function<void(int, int)> progresso; // parts done of a whole, often
};

// One opened database, shared by the connection and its cursors. A cursor keeps it alive, so that a window in the
// middle of its rows survives the connection being closed or pointed elsewhere.
class Motor {
public:
    explicit Motor(QString caminho) : m_caminho(std::move(caminho)) {}
    virtual ~Motor() = default;
    Motor(const Motor &) = delete;
    Motor &operator=(const Motor &) = delete;

    const QString &caminho() const { return m_caminho; }
    virtual bool soLeitura() const = 0;
    virtual qint64 versaoDoEsquema() = 0;
    virtual void definirEspera(int ms) = 0;
    virtual bool desactualizado() const { return false; } // has to be opened again to see what others write

    enum class Uso : quint8 { UmaVez, Muitas };
    virtual std::unique_ptr<Instrucao> preparar(const QString &sql, Uso uso) = 0; // none: not exactly one statement
    virtual void executarGuiao(const QString &sql) = 0;                           // several, without values

    // The outermost transaction. An engine may undo one by itself, and whoever follows must not store without it.
    virtual bool emTransaccao() const = 0;
    virtual void iniciar() = 0;           // with the right to write, so that it cannot fail half way for want of it
    virtual int confirmar() = 0;          // 0, or what falhar() explains; on any thread, throws nothing
    virtual void anular() = 0;            // throws nothing
    virtual void adiantarConfirmacao() {} // what can be done before others are kept waiting; as confirmar()
    virtual bool porRecolher() const { return false; } // a large batch still is; the next one does well to wait
    [[noreturn]] virtual void falhar(int codigo, const QString &contexto = {}) = 0;

    // Whether what is written still goes to what was opened; asked around everything that writes.
    virtual bool noLugar() const = 0;
    void exigirNoLugar();

    // Before everything that writes: what the user does while events run within a transaction is not part of it, and
    // would be undone with it. It cannot wait either, since the transaction goes on only when it has ended.
    void exigirSemPasso() const;

    // The state of one moment to a new file, also while others write.
    virtual void copiarPara(const QString &destino, const AoCopiar &acompanhar) = 0;

    // A large batch is confirmed on a thread of its own; whoever wants the engine meanwhile waits for the end.
    std::atomic<bool> emConfirmacao{false};
    void esperar() const {
        if (emConfirmacao) [[unlikely]]
            emConfirmacao.wait(true);
    }
    int transaccoes = 0;  // begun and neither confirmed nor undone, one within the other
    int profundidade = 0; // of the events in which the outermost one began
    bool avisada = false; // the user knows that the database is no longer in its place

private:
    QString m_caminho;
};

// How databases of an engine come to be.
struct FabricaDeMotor {
    std::shared_ptr<Motor> (*abrir)(const QString &caminho, const Abertura &abertura); // a missing one is never created
    void (*criar)(const QString &caminho, const char *esquema);                        // a new one; none is there
};

// The one for this database.
const FabricaDeMotor &fabricaDe(const QString &caminho);
