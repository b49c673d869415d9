#pragma once

#include "platform/onewire/causas.h"

#include <QString>

#include <functional>

// Finds the port on which the 1-Wire adapter sits, and what lies on its net.
namespace modPesquisa1Wire {

constexpr int maximoDaBarra = 91;

struct Vista {
    std::function<void(int)> barra;                 // ports refused so far
    std::function<bool(const QString &)> contem;    // is the device in the list already?
    std::function<void(const QString &)> adicionar; // a new one
};

struct Resultado {
    QString texto = QStringLiteral("ERROR"); // type, number and adapter joined by "X"; "0X0X0": none found
    QString adaptadorID;                     // the device that named the adapter
    onewire::Motivo motivo;                  // a port that could not be tried: without rights, or held
};

// Tries every port. Throws Falha when the library fails; <resultado> then still says "ERROR".
void Pesquisar1WireAuto(const Vista &vista, Resultado &resultado);

// Saves what was found, or empties the settings. False: the text is neither.
struct Porta {
    QString tipo, numero, adaptador;
};
bool guardarResultado(const Resultado &resultado, Porta &porta);

QString nomeDoAdaptador(const QString &adaptadorID);

} // namespace modPesquisa1Wire
