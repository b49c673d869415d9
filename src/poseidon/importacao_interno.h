#pragma once

#include <QString>

// The parts of the import; all throw Falha.
namespace importacao {

struct Sensor {
    QString SensorID, ID, Tipo, Nome;
    bool activa = true; // something is connected
    double minimo = 0;
    double maximo = 0;
    QString PoseidonIP; // with the mode digit
};

// False when the sensor belongs to another unit that still stands in the list.
bool AdicionarLinhaHub(Sensor sensor);
void AdicionarSpiderInputs(const QString &ip, int id, const QString &nome);
void CarregarPoseidonInputsBD(const QString &ip);
void CarregarPoseidonOutputsBD(const QString &ip);

// A name of at most 20 characters that nothing else bears.
QString CriarNovaDescricao2(const QString &nome);

} // namespace importacao
