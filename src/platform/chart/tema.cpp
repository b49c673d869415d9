#include "platform/chart/tema.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr double contrasteMinimo = 2.0;

double luminancia(const QColor &cor) {
    const auto linear = [](double c) { return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4); };
    return 0.2126 * linear(cor.redF()) + 0.7152 * linear(cor.greenF()) + 0.0722 * linear(cor.blueF());
}

double contraste(const QColor &a, const QColor &b) {
    const auto [menor, maior] = std::minmax(luminancia(a), luminancia(b));
    return (maior + 0.05) / (menor + 0.05);
}

QColor mistura(const QColor &a, const QColor &b, double parteDeB) {
    const auto meio = [parteDeB](double x, double y) { return float(x + (y - x) * parteDeB); };
    return QColor::fromRgbF(meio(a.redF(), b.redF()), meio(a.greenF(), b.greenF()), meio(a.blueF(), b.blueF()));
}

} // namespace

TemaGrafico TemaGrafico::doEcra(const QPalette &paleta) {
    const QColor fundo = paleta.color(QPalette::Base);
    const QColor texto = paleta.color(QPalette::Text);
    return {fundo, texto, mistura(texto, fundo, 0.45), mistura(texto, fundo, 0.86), paleta.color(QPalette::Highlight)};
}

TemaGrafico TemaGrafico::doPapel() {
    return {Qt::white, Qt::black, QColor(90, 90, 90), QColor(222, 222, 222), QColor(48, 120, 200)};
}

QColor TemaGrafico::visivel(const QColor &cor) const {
    const QColor alvo = luminancia(fundo) > 0.4 ? QColor(Qt::black) : QColor(Qt::white);
    QColor resultado = cor;
    for (double parte = 0.08; contraste(resultado, fundo) < contrasteMinimo && parte < 1; parte += 0.08)
        resultado = mistura(cor, alvo, parte);
    return resultado;
}
