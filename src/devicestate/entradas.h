#pragma once

#include "core/eventos.h"
#include "views/familiaGraficos.h"

#include <QList>
#include <QStringList>

// Digital inputs and relay outputs of the devices: their charts, and the names of devices and channels.
namespace entradas {

// Where the name of a device or of a channel may stand.
struct TabelaDeNomes {
    QStringView tabela;
    QStringView campo;
    ColunasChave chave; // address, and for a channel its number
};

// What differs between inputs and outputs beside their chart's row.
struct Especie {
    MembroGrafico grafico;
    std::span<const TabelaDeNomes> nomesDosCanais; // in the order they are asked
    QStringView chaveNumero;                       // of the columns in the list of channels
    QStringView omissaoNome;
};
std::span<const Especie> especies();

struct Canal {
    QString ip;
    QString numero;
    QString nome;
};

// The devices that the register knows, in order of address, each with its name; empty when no table has it.
QList<Canal> dispositivos(const Especie &especie, const Vigia &vigia);
QList<Canal> canais(const Especie &especie, const QString &ip, const Vigia &vigia);

QString BuscarNomeDispositivosPorID(const QString &ip);
// Of an input or an output, by the tables of its kind.
QString BuscarNomePorCodigo(const Especie &especie, const QString &ip, const QString &numero);

} // namespace entradas
