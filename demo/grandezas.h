#pragma once

#include "demo/clima.h"
#include "views/grandezas.h"

#include <span>

namespace demonstracao {

struct Extremos {
    double maximo, minimo;
};

// What the demonstration does with a quantity beyond what the program's own row says.
struct Medida {
    const Grandeza &grandeza;
    int passo;         // seconds between readings that come by themselves
    double porUnidade; // such readings are multiples of its reciprocal
    // What is measured somewhere, unrounded; of a voltage or a current the share of its range.
    double (*valor)(const Clima &clima, Local local, int lugar, const Momento &m);
    // The limits a person would set there, as a share likewise.
    Extremos (*limites)(const PerfilLocal &perfil);

    bool importada = false; // the workstation reads it out of a unit's configuration and log
    bool captada = false;   // the capture companion goes on with it
    bool comEscala = false; // readings bear the scale of their sensor
    QStringView calibracao = u"TMP";
    bool limitesDaHumidade = false; // columns of their own in Calibracoes
};

std::span<const Medida> medidas();
// By the last letter of a sensor's type; none: nobody measures it.
const Medida *medidaDe(QChar letra);

} // namespace demonstracao
