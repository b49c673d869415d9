#pragma once

#include <QDateTime>
#include <QString>
#include <QVariantList>

#include <functional>
#include <vector>

// What tells one mission from all others. The same button holds many, and a number recurs under other names.
struct ChaveMissao {
    QString LoggerID, Nomelogger, DescricaoMissao, Nmissao;

    bool completa() const;
    bool vazia() const { return LoggerID.isEmpty(); }
    static QString onde(); // the condition that valores() fill
    QVariantList valores() const;
    bool operator==(const ChaveMissao &) const = default;
};

// The missions in the database: a header each, and a row a sample.
namespace missoes {

struct Cabeca {
    ChaveMissao chave;
    QDateTime DataProg, DataFimMissao;
    double Max = 0, Min = 0;
    QString Calibracoes;
};
struct Amostra {
    QDateTime Data;
    double Temperatura = 0;
};

bool emAlarme(double temperatura, double maximo, double minimo);

// Adds the header, or brings it up to date; its flag and its calibrations stay as first stored. <passar> runs
// meanwhile.
void guardarCabeca(
    const Cabeca &cabeca, const std::function<void()> &passar = [] {});

// The newest stored minute; without any, a moment before the mission's first sample.
QDateTime VerificaDataMaximaPraSensor(const ChaveMissao &chave, const QDateTime &inicioMissao);

// Adds the samples whose minute is later than the newest stored one, all or none; <passar> runs meanwhile. Gives back
// how many.
int juntarAmostras(
    const ChaveMissao &chave, const std::vector<Amostra> &amostras, double maximo, double minimo,
    const QDateTime &DataUltimaLeitura, const std::function<void()> &passar = [] {});

// The highest stored number of this button under these names, 0 without any.
int UltimoNumeroMissaoDoRegistador(const QString &LoggerID, const QString &Nomelogger, const QString &DescricaoMissao);

bool temAmostras(const ChaveMissao &chave);
int contarAmostras(const ChaveMissao &chave);
// The minutes of the range that are stored: of the mission, or of its button under any name when the key has no other.
int minutosGuardados(const ChaveMissao &chave, const QDateTime &de, const QDateTime &ate);
bool temCabeca(const ChaveMissao &chave);
void fechar(const ChaveMissao &chave, const QDateTime &fim);

// Samples and header in one transaction.
void EliminarMissao(const ChaveMissao &chave);

} // namespace missoes
