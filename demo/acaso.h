#pragma once

#include <QtGlobal>

// Chance without state: every number is a function of a key and a place in time, so that any stretch of the history
// can be made alone and always comes out the same.
namespace demonstracao {

inline quint64 misturar(quint64 x) {
    x += 0x9E3779B97F4A7C15ULL;
    x = (x ^ (x >> 30)) * 0xBF58476D1CE4E5B9ULL;
    x = (x ^ (x >> 27)) * 0x94D049BB133111EBULL;
    return x ^ (x >> 31);
}

inline quint64 misturar(quint64 chave, qint64 lugar) {
    return misturar(chave ^ misturar(quint64(lugar)));
}

// Within [0, 1).
inline double fraccao(quint64 x) {
    return double(x >> 11) * 0x1.0p-53;
}

inline double sorte(quint64 chave, qint64 lugar) {
    return fraccao(misturar(chave, lugar));
}

// A smooth curve within [-1, 1] that turns about once a period.
inline double ondulacao(quint64 chave, qint64 t, int periodo) {
    const qint64 n = t / periodo;
    const double x = double(t - n * periodo) / periodo;
    const double a = sorte(chave, n);
    const double b = sorte(chave, n + 1);
    return 2 * (a + (b - a) * x * x * (3 - 2 * x)) - 1;
}

} // namespace demonstracao
