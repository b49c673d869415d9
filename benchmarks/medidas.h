#pragma once

#include <QElapsedTimer>
#include <QFile>
#include <QString>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <malloc.h>
#include <vector>

// Paired runs: both sides in turn, so that what else the machine does hits both; medians and the median of ratios.
namespace medidas {

inline double mediana(std::vector<double> v) {
    std::sort(v.begin(), v.end());
    return v.empty() ? 0 : (v[(v.size() - 1) / 2] + v[v.size() / 2]) / 2;
}

// Bytes that the process holds now; what was freed has been given back.
inline double memoria() {
    malloc_trim(0);
    QFile f(QStringLiteral("/proc/self/statm"));
    if (!f.open(QIODevice::ReadOnly))
        return 0;
    return f.readAll().split(' ').value(1).toDouble() * 4096;
}

inline double segundosDe(const std::function<void()> &trabalho) {
    QElapsedTimer relogio;
    relogio.start();
    trabalho();
    return double(relogio.nsecsElapsed()) * 1e-9;
}

struct Par {
    double nosso, simples, razao;
};

inline Par comparar(int voltas, const std::function<double()> &nosso, const std::function<double()> &simples) {
    std::vector<double> a, b, r;
    for (int i = 0; i < voltas; ++i) {
        // Who goes first changes from turn to turn.
        if (i % 2 == 0) {
            a.push_back(nosso());
            b.push_back(simples());
        } else {
            b.push_back(simples());
            a.push_back(nosso());
        }
        r.push_back(a.back() / b.back());
    }
    return {mediana(a), mediana(b), mediana(r)};
}

// One line a comparison; false when the bar is missed.
inline bool dizer(const char *titulo, const Par &p, double limite) {
    const bool bem = p.razao <= limite;
    std::printf("%-58s %9.1f ms %9.1f ms  razão %5.2f  (até %.2f)  %s\n", titulo, p.nosso * 1e3, p.simples * 1e3,
                p.razao, limite, bem ? "bem" : "MAL");
    std::fflush(stdout);
    return bem;
}

inline bool dizer(const char *titulo, double valor, double limite) {
    const bool bem = valor <= limite;
    std::printf("%-58s %9.1f  (até %.0f)  %s\n", titulo, valor, limite, bem ? "bem" : "MAL");
    std::fflush(stdout);
    return bem;
}

} // namespace medidas
