#pragma once

#include <QString>

#include <stdexcept>

// A failure on its way to the error road: a number in the system's numbering and a text for the user.
class Falha : public std::runtime_error {
public:
    Falha(int numero, const QString &descricao)
        : std::runtime_error(descricao.toStdString()), m_numero(numero), m_descricao(descricao) {}
    int numero() const { return m_numero; }
    QString descricao() const { return m_descricao; }

private:
    int m_numero;
    QString m_descricao;
};

// Unwinds a long routine whose window has gone away or that the user stopped. Never reported.
struct Interrompido {};

// Numbers that other code tests or that the ring has always shown.
namespace erros {
constexpr int chamadaInvalida = 5;
constexpr int semMemoria = 7;
constexpr int tipoIncompativel = 13;
constexpr int falhaDoFicheiro = 75;
constexpr int objectoFechado = 3704;
constexpr int objectoAberto = 3705;
constexpr int falhaGeralBD = -2147467259;
constexpr int motorBD = -2147221504; // plus the engine's own code
} // namespace erros
