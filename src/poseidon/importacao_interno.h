#pragma once

#include "data/nomes.h"

#include <QString>

#include <optional>

// The parts of the import; all throw Falha.
namespace importacao {

// What is known of the installation while one document is followed; made within its transaction.
struct Conhecido {
    nomes::Registo nomes;
    int sensores;                // rows of Sensores
    std::optional<int> inputNum; // the highest of the unit's Spider inputs

    Conhecido();
};

struct Sensor {
    QString SensorID, ID, Tipo, Nome;
    bool activa = true; // something is connected
    double minimo = 0;
    double maximo = 0;
    QString PoseidonIP; // with the mode digit
};

// False when the sensor belongs to another unit that still stands in the list.
bool AdicionarLinhaHub(Sensor sensor, Conhecido &conhecido);
void AdicionarSpiderInputs(const QString &ip, int id, const QString &nome, Conhecido &conhecido);
void CarregarPoseidonInputsBD(const QString &ip);
void CarregarPoseidonOutputsBD(const QString &ip);

// A name of at most 20 characters that nothing else bears.
QString CriarNovaDescricao2(const QString &nome, nomes::Registo &nomes);

} // namespace importacao
