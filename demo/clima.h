#pragma once

#include <QtGlobal>

// What happens in the rooms of the demonstration, as functions of time (wall-clock seconds since 1970).
namespace demonstracao {

enum class Local {
    Refrigerado,
    Congelado,
    Vacinas,
    Ultrafrio,
    Armazem,
    Laboratorio,
    Estufa,
    Tecnica,
    Servidores,
    Quente,
    Viatura,
    Exterior,
    Nivel,
    Solar,
    Processo
};

// How a kind of room behaves. Temperatures in °C, humidity in %.
struct PerfilLocal {
    double base, epoca, dia;             // mean, amplitude over the year and over the day
    double lento, rapido;                // weather and small unrest
    double ciclo;                        // the compressor
    int cicloMinutos;                    // 0: none
    double porta, aberturas;             // rise by an open door, openings an hour of work
    int degeloHoras;                     // 0: none
    double degelo, avaria;               // rise by a defrost, by a fault
    double humidade, humidadeVariacao;   // mean and amplitude
    double maximo, minimo, hrMax, hrMin; // usual limits
};
const PerfilLocal &perfilDe(Local local);

// What all sensors share at one moment.
struct Momento {
    qint64 t = 0;
    double epoca = 0;         // -1 in mid-winter to 1 in mid-summer
    double dia = 0;           // -1 before dawn to 1 in the afternoon
    double sol = 0;           // 0 at night
    double aquecimento = 0;   // 0 to 1: what a power cut left behind
    bool semCorrente = false; // nothing is recorded
};

struct Evento {
    qint64 inicio = 0;
    qint64 fim = 0; // not after inicio: none
    bool em(qint64 t) const { return t >= inicio && t < fim; }
};

class Clima {
public:
    explicit Clima(quint64 semente) : m_semente(semente) {}

    Momento momento(qint64 t) const;
    quint64 chaveDe(int lugar) const;

    double temperatura(Local local, int lugar, const Momento &m) const;
    double humidade(Local local, int lugar, const Momento &m) const;
    double pressao(int lugar, const Momento &m) const;               // kPa
    double processo(Local local, int lugar, const Momento &m) const; // 0 to 1

    // At most one of each in its slot: an opening of the door an hour, a cut every 70 days, and so on.
    Evento abertura(Local local, int lugar, qint64 hora) const; // hora: hours since 1970
    Evento degelo(Local local, int lugar, qint64 t) const;      // the one running or last ended at t
    Evento corteDeCorrente(qint64 bloco) const;                 // bloco: t / segundosPorCorte
    Evento sensorDesligado(int lugar, qint64 t) const;          // the one of t's own slot

    static constexpr qint64 segundosPorCorte = 70 * 86400;

private:
    double portas(Local local, const PerfilLocal &p, int lugar, const Momento &m) const;
    double avarias(const PerfilLocal &p, quint64 chave, qint64 t) const;
    quint64 m_semente;
};

// Dew point by the Magnus formula.
double pontoDeOrvalho(double temperatura, double humidade);

} // namespace demonstracao
