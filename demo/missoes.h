#pragma once

#include <QString>

#include <functional>
#include <vector>

namespace demonstracao {

class Clima;

// A mission that a button still carries: not closed in the database.
struct MissaoNoBotao {
    QString id; // the number as the database keeps it, the CRC first
    QString nome, descricao;
    int numero;
    qint64 inicio;
    int intervalo; // minutes
    double maximo, minimo, base, calibracao;
    std::function<double(qint64 t)> bruta; // as the button measures
};
std::vector<MissaoNoBotao> missoesNosBotoes(const Clima &clima, qint64 fim);

// The virtual reader of the demonstration: buttons with the open missions, others of each kind, a blank one.
constexpr int portaTipo = 5;
constexpr int portaNumero = 1;
struct Leitor {
    QString adaptadorID, adaptador;
};
Leitor fazerGaveta(const QString &pasta, const Clima &clima, qint64 fim);

} // namespace demonstracao
