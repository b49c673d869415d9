#pragma once

#include <QByteArray>
#include <QStringView>

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
