#pragma once

#include "views/escolha.h"
#include "views/limites.h"

#include <QDateTime>
#include <QString>

#include <functional>
#include <optional>

class Ilegiveis;

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
    Ilegiveis *ilegiveis = nullptr; // gets what is left out

    void deFora(const QString &data, const QString &texto) const;
};

class Recordset;
// The value of a row: NaN for Null and "ND", nothing when it cannot be read.
std::optional<double> valorDe(const Recordset &rs, int coluna);
// Nothing and one blank are no note.
bool temNota(const Recordset &rs, int coluna);

// Whether a chart draws this value at this height.
bool valorNaAltura(const Recordset &rs, int coluna, double y);

// Walks the readings by date, those of one second as they were written, and gives back their average; readings without
// a value do not weigh, and no reading at all gives 0. What cannot be read is left out. The callback may throw to stop.
double lerLeituras(const PedidoLeituras &pedido, const AoLer &aoLer);
