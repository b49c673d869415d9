#pragma once

#include "data/motor.h"

#include <QByteArray>
#include <QDateTime>
#include <QMetaType>
#include <QString>
#include <QStringView>
#include <QVariant>

#include <memory>

class Ligacao;

// A stored value that no text can carry there and back: a blob, or a text whose bytes are no UTF-8.
struct Cru {
    QByteArray bytes;
    bool blob = false;
    bool operator==(const Cru &) const = default;
};
Q_DECLARE_METATYPE(Cru)

// A forward-only cursor over one query; closes itself. Starts before the first row.
class Recordset {
public:
    Recordset(Recordset &&outro) noexcept;
    Recordset &operator=(Recordset &&outro) noexcept;
    ~Recordset();

    bool avancar(); // false after the last row and ever after; Falha when the engine fails
    void fechar();

    bool escreve() const; // the statement changes the database
    int colunas() const;
    QString nome(int coluna) const;
    int coluna(const QString &nome) const; // compared without case; Falha when absent

    // A column that is none, and any of a closed cursor, reads as Null.
    bool nulo(int coluna) const { return tipo(coluna) == Celula::Tipo::Nulo; }
    bool eNumero(int coluna) const; // stored as a number
    double real(int coluna) const { // the stored number, no conversion of texts
        const Instrucao *linha = actual();
        return linha ? linha->real(coluna) : 0;
    }
    qint64 inteiro(int coluna) const {
        const Instrucao *linha = actual();
        return linha ? linha->inteiro(coluna) : 0;
    }
    QVariant guardado(int coluna) const;               // exactly what is stored; bound again, it finds its like
    QString texto(int coluna) const;                   // "" for Null
    double numero(int coluna) const;                   // through the number normaliser; NaN for "ND"
    double segundos(int coluna) const;                 // a date as datas::segundosDe; NaN when it is none
    QDateTime dataHora(int coluna) const;              // invalid when it is none
    const char *utf8(int coluna, int &tamanho) const { // the raw bytes; valid until the next step
        tamanho = 0;
        const Instrucao *linha = actual();
        return linha ? linha->texto(coluna, tamanho) : nullptr;
    }
    const char *utf8(int coluna) const { // the same up to their first zero; "" for Null
        const Instrucao *linha = actual();
        const char *bytes = linha ? linha->texto(coluna) : nullptr;
        return bytes ? bytes : "";
    }
    Celula celula(int coluna) const; // no conversion of any kind

    bool nulo(const QString &c) const { return nulo(coluna(c)); }
    QString texto(const QString &c) const { return texto(coluna(c)); }
    double numero(const QString &c) const { return numero(coluna(c)); }
    qint64 inteiro(const QString &c) const { return inteiro(coluna(c)); }

private:
    friend class Ligacao;
    Recordset(std::shared_ptr<Motor> motor, std::unique_ptr<Instrucao> instrucao);

    // None once it was closed. Reading a value may convert it in place, so that, too, waits for a commit on the other
    // thread.
    const Instrucao *actual() const {
        if (m_instrucao)
            m_motor->esperar();
        return m_instrucao.get();
    }
    Celula::Tipo tipo(int coluna) const {
        const Instrucao *linha = actual();
        return linha ? linha->tipo(coluna) : Celula::Tipo::Nulo;
    }

    std::shared_ptr<Motor> m_motor;
    std::unique_ptr<Instrucao> m_instrucao; // gone before its engine
    bool m_fim = false;
};
