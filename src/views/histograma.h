#pragma once

#include "views/alarme.h"

#include <QString>

#include <functional>
#include <optional>
#include <span>
#include <vector>

// The interval arithmetic of the histograms. Values are read once and counted in memory, with the counts that one
// query an interval would give.
namespace histograma {

struct Balde {
    double baixo; // bounds as they travelled: 15 significant digits, closed on both sides
    double alto;
    qint64 total;
    EstadoDoPonto estado;
    QString rotulo() const;
};

// The width typed by the user: either separator, sign ignored. Falha when it is no number above zero, or so small that
// the lower bound of a bucket, which stands 0.1 above the shared edge, would pass the upper one.
double lerIntervalo(const QString &texto);
// The entries of the combo: "0.5", "1.0", ... "50.0".
QStringList entradasDoCombo();

// Buckets with at least one value and a state (alarme::doBalde, by the nudged lower bound), in order. The first is
// [min, min + width], each further one starts 0.1 above the shared edge, so that values between two buckets are counted
// nowhere. NaN values count nowhere. passar is called now and then, so that events run. The buckets run from the least
// to the greatest value, or between the extremes given, outside of which nothing counts.
struct Extremos {
    double menor, maior;
};
std::vector<Balde> contar(std::span<const double> valores, double intervalo, const Limites &limites,
                          const std::function<void()> &passar = {}, const std::optional<Extremos> &extremos = {});

} // namespace histograma
