#pragma once

#include "platform/onewire/memoria1921.h"

#include <QDateTime>

#include <vector>

// The register page of a DS1921 as values, and the values as bytes. Everything here is pure.
namespace onewire {

enum class Variante1921 { G, H, Z };
Variante1921 variante1921(const Rom &rom); // any other range code reads as G
double graus1921(Variante1921 variante, quint8 codigo);
quint8 codigo1921(Variante1921 variante, double graus); // the nearest, held within 00h to FFh

constexpr int capacidadeDoLog = 2048;

// Addresses and bits that the control needs.
namespace registo {
constexpr int pagina = 16;
constexpr int relogio = 0x200;
constexpr int limiteBaixo = 0x20B;
constexpr int controlo = 0x20E;
constexpr int estado = 0x214;
constexpr int paginaDoLog = 128;
constexpr quint8 osciladorParado = 0x80;
constexpr quint8 armarLimpeza = 0x40;
constexpr quint8 missaoImpedida = 0x10;
constexpr quint8 continuo = 0x08;
constexpr quint8 limpa = 0x40;
constexpr quint8 emCurso = 0x20;
constexpr quint8 amostraEmCurso = 0x10;
} // namespace registo

struct Registos1921 {
    QDateTime relogio; // invalid when the registers hold no date
    quint8 limiteBaixo = 0;
    quint8 limiteAlto = 0;
    int intervalo = 0; // minutes
    quint8 controlo = 0;
    int atraso = 0; // minutes that are left of it
    quint8 estado = 0;
    QDateTime carimbo; // invalid: no sample was taken
    quint32 amostras = 0;
    quint32 amostrasDoChip = 0;

    bool missao() const { return estado & registo::emCurso; }
    bool continuo() const { return controlo & registo::continuo; }
};
Registos1921 descodificarRegistos(const BytesDaPagina &pagina);

// The seven clock registers, 24-hour form, weekday 1 = Sunday.
std::array<quint8, 7> codificarRelogio(const QDateTime &instante);

// Which entry of the log, and when. Oldest first.
struct Entrada1921 {
    int indice;
    QDateTime data;
};
std::vector<Entrada1921> entradasDoLog(const Registos1921 &registos);

} // namespace onewire
