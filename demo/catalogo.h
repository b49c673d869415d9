#pragma once

#include "demo/grandezas.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <span>
#include <vector>

// What the demonstration installation consists of: units, groups, scales and sensors.
namespace demonstracao {

struct Unidade {
    QStringView endereco; // loopback only
    QStringView nome;
    int modelo; // 4 and 34 keep a log
    int firmware;
    QStringView mac;
    char modo; // leading digit of a sensor's PoseidonIP: '2' imported by the workstation, '1' by the capture service
};
std::span<const Unidade> unidades();

// An input of a unit's extension.
struct EntradaSpider {
    QStringView endereco;
    int identificador;
    QStringView nome;
};
std::span<const EntradaSpider> entradasSpider();

struct Grupo {
    int codigo;
    QStringView nome;
    int unidade; // where its sensors hang
};
std::span<const Grupo> grupos();

struct Escala {
    int codigo; // 0: none
    QStringView nome;
    double maximo, minimo;
};
std::span<const Escala> escalas();

enum class Limite { Ambos, SoMaximo, SoMinimo, Nenhum, Nulo };

struct Sensor {
    QString SensorID, ID, Tipo, Descricao, Fonte, PoseidonIP;
    QString antigo; // the name it once had; empty: none
    char letra = 'C';
    const Medida *mede = nullptr;
    QStringView unidade; // as a network unit calls it
    int ordem = 0;       // among those of its letter
    int grupo = 0;
    int lugar = 0;
    Local local = Local::Armazem;
    bool principal = false; // carries the full history
    bool activo = true;
    bool semLeituras = false;
    bool recente = false; // installed long after the others
    Limite limite = Limite::Ambos;
    double maximo = 0, minimo = 0; // as the kind of limit leaves them
    double SensUIMax = 20, SensUIMin = 4;
    const Escala *escala = nullptr;

    bool temMaximo() const { return limite == Limite::Ambos || limite == Limite::SoMaximo; }
    bool temMinimo() const { return limite == Limite::Ambos || limite == Limite::SoMinimo; }
    QChar separador() const { return PoseidonIP.startsWith(u'2') ? u',' : u'.'; } // of the program that stores it
};
std::vector<Sensor> sensores(quint64 semente);

// Identifier of a 1-Wire device as 16 digits with a true check byte, family last ("5E...28") or first.
QString rom1Wire(quint8 familia, quint64 serie, bool familiaPrimeiro);

} // namespace demonstracao
