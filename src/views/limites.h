#pragma once

#include <QByteArray>
#include <QStringView>

#include <array>
#include <cmath>
#include <limits>

// The alarm limits in force when a reading was stored; NaN where there was none.
struct Limites {
    double maximo = std::numeric_limits<double>::quiet_NaN();
    double minimo = std::numeric_limits<double>::quiet_NaN();
    bool ilegivel = false; // one of them was there and is no number

    bool temMaximo() const { return !std::isnan(maximo); }
    bool temMinimo() const { return !std::isnan(minimo); }
};

// Reads "maximum XXX minimum" in one text; "NA" or nothing means no limit. A part that is no
// number is left out and told.
Limites lerLimites(QStringView observacoes);

// Readings of one sensor carry the same limits for months: the last text is kept with its result.
class CacheLimites {
public:
    const Limites &de(const char *bytes, int tamanho);

private:
    QByteArray m_ultimo;
    Limites m_limites; // those of an empty text
};

// Colours as OLE numbers, blue in the high byte.
namespace cores {
inline constexpr quint32 vermelho = 255;
inline constexpr quint32 azul = 16711680;
inline constexpr quint32 verde = 65280;

// Series colours when several entries are drawn, in order of use.
inline constexpr std::array<quint32, 16> paleta{255, 33023,   65535,   65408,   16711808, 16711680, 16744448, 16776960,
                                                0,   8047359, 4210816, 8388863, 39372,    6750182,  9091072,  9408399};

// A reading on a limit is an alarm already, and the maximum is tested first.
quint32 doPonto(const Limites &limites, double valor);
} // namespace cores
