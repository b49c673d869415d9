#pragma once

#include "views/limites.h"

#include <QDateTime>
#include <QString>

#include <vector>

// One reading of a Sens-UI channel, taken apart. Readings are stored in the scale that they are shown in.
struct DadosSensUI {
    QString leitura; // as stored
    QString sensor;
    QString escala;
    std::vector<double> ident; // its four numbers; none when the log was imported without them
    Limites limites;
    QDateTime data;
};

namespace modSensUI {

DadosSensUI BuscarDadosSensUI(const QString &leitura, const QDateTime &data, const QString &ident,
                              const QString &observacoes, const QString &escala, const QString &sensor);

} // namespace modSensUI
