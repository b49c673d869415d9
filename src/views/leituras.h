#pragma once

#include "views/escolha.h"
#include "views/limites.h"

#include <QDateTime>
#include <QString>

#include <functional>

// Bounds of a query in the database's form. A range is symmetric: the earlier bound comes first.
struct Intervalo {
    QString inicio;
    QString fim;

    Intervalo() = default;
    Intervalo(const QDateTime &a, const QDateTime &b);
};

// One stored reading on its way to a chart or a file.
struct Leitura {
    double data;  // wall-clock seconds
    double valor; // NaN: the reading could not be taken
    Limites limites;
    bool comNota;
};
using AoLer = std::function<void(const Leitura &)>;

// Where the readings of a view are stored.
struct TabelaLeituras {
    QStringView nome;
    QStringView valor; // column
    QStringView data = u"Data";
    ColunasChave chave{u"Sensor"};
    QStringView limites = u"Observacoes"; // column or expression that gives them as lerLimites reads them
};

struct PedidoLeituras {
    TabelaLeituras tabela;
    QStringList chave;
    Intervalo intervalo;
    bool comLimites = true;
};

class Recordset;
// Nothing and one blank are no note.
bool temNota(const Recordset &rs, int coluna);

// Walks the readings by date and gives back their average; readings without a value do not weigh, and no reading
// at all gives 0. The callback may throw to stop.
double lerLeituras(const PedidoLeituras &pedido, const AoLer &aoLer);
