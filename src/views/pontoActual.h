#pragma once

#include <QStringList>

#include <functional>

class Recordset;

// The point that was clicked, as a chart hands it to the form of its points. All text, as shown.
struct PontoActual {
    QString indice;
    QString x; // date and time
    QString y;
    QString sensor; // or what else the points belong to
    QString descricao;
    QString serie;
    QStringList chave = {}; // values that find the row
    QStringView colunaData = u"Data";
    // Which of the rows of that second is the point's; see notas::Lugar.
    QStringView colunaValor = {};
    std::function<bool(const Recordset &rs, int coluna)> eDoPonto = {};
};
