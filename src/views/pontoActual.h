#pragma once

#include <QString>

// The point that was clicked, as a chart hands it to the form of its points. All text, as shown.
struct PontoActual {
    QString indice;
    QString x; // date and time
    QString y;
    QString sensor;
    QString descricao;
    QString serie;
};
