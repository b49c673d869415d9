#pragma once

#include "core/estado.h"
#include "data/motor.h"

#include <QDateTime>
#include <QString>
#include <QVariant>

#include <functional>
#include <initializer_list>
#include <memory>

class Recordset;

// The values of a statement, in the order of its "?". Written in place, {a, b}, or a list made before.
class Parametros {
public:
    Parametros() = default;
    Parametros(std::initializer_list<QVariant> valores) : m_valores(valores) {}
    Parametros(const QVariantList &valores) : m_valores(valores) {}
    auto begin() const { return m_valores.cbegin(); }
    auto end() const { return m_valores.cend(); }
    qsizetype size() const { return m_valores.size(); }

private:
    QVariantList m_valores;
};

// The one connection to the shared file. It is created once and opened and closed as the settings say; a missing
// file is never created. All failures are Falha, with the engine's text and what is known about the file.
class Ligacao : public Servico {
public:
    Ligacao();
    ~Ligacao() override;

    void abrir(const QString &caminho); // Falha objectoAberto when open, falhaGeralBD when the file is missing
    void fechar();                      // undoes a pending transaction; open cursors finish on what they began
    bool aberta() const;
    bool soLeitura() const;
    QString caminho() const;
    void definirEspera(int ms); // how long a statement waits for another program's lock; 5 s unless set

    // What is written goes to the file that was opened. Once that file is no longer the one under its path, nothing is
    // acknowledged any more: whatever writes throws Falha, looking before and after.
    void exigirNoLugar() const;
    // What the user has to be told when the file was deleted or replaced meanwhile; once, and empty otherwise.
    QString novidadeDoLugar();
    void definirRecolha(const MedidasDeRecolha &medidas); // for the next opening

    Recordset consultar(const QString &sql, const Parametros &valores = {});
    qint64 executar(const QString &sql, const Parametros &valores = {}); // rows changed
    void executarGuiao(const QString &sql);                              // several statements, no values
    void copiarPara(const QString &destino, const AoCopiar &acompanhar); // the state of one moment

private:
    friend class Transaccao;
    friend class Comando;
    Motor &motor() const;
    static std::unique_ptr<Instrucao> preparar(Motor &motor, const QString &sql, Motor::Uso uso,
                                               const Parametros *valores = nullptr);
    std::shared_ptr<Motor> m_motor;
    QString m_caminho;
    Abertura m_abertura{.recolha = MedidasDeRecolha()};
};

// A batch that clears and rewrites: undone as a whole unless confirmar() is reached. May be nested.
class Transaccao {
public:
    explicit Transaccao(Ligacao &ligacao);
    ~Transaccao();
    Transaccao(const Transaccao &) = delete;
    Transaccao &operator=(const Transaccao &) = delete;
    void confirmar();
    // The same while events run, for a batch that may be large. Done or undone as a whole also when passar() throws.
    void confirmar(const std::function<void()> &passar);

private:
    Ligacao &m_ligacao;
    std::weak_ptr<Motor> m_motor; // the file it began on
    bool m_pendente = true;
};

// The open shared connection; Falha objectoFechado when there is none.
Ligacao &cnBD();
// The connection object itself, open or not; made on first use.
Ligacao &ligacaoPartilhada();
