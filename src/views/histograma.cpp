#include "views/histograma.h"

#include "core/falha.h"
#include "core/literais.h"
#include "core/modDoubleTratamento.h"
#include "core/modTraducoes.h"

#include <QStringList>

#include <algorithm>
#include <charconv>
#include <cmath>

namespace histograma {

namespace {

constexpr double desvio = 0.1;
constexpr double menorIntervalo = desvio + 0.01;
constexpr qint64 maximoDeBaldes = 2'000'000;
constexpr size_t valoresPorPasse = 65536;

// A bound travels as text of 15 significant digits and comes back as a number.
double comoTexto(double numero) {
    char tampao[40];
    const auto fim = std::to_chars(tampao, tampao + sizeof tampao, numero, std::chars_format::scientific, 14);
    double lido = 0;
    std::from_chars(tampao, fim.ptr, lido);
    return lido;
}

[[noreturn]] void recusar(double intervalo, double menor) {
    throw Falha(erros::chamadaInvalida,
                modTraducoes::texto(u"KelvarkAUX"_s, u"HistIntervaloPequeno"_s,
                                    u"O intervalo %1 é demasiado pequeno; o menor que serve é %2."_s)
                    .arg(modDoubleTratamento::NumeroParaTexto(intervalo), modDoubleTratamento::NumeroParaTexto(menor)));
}

struct Bordas {
    double baixo;
    double alto;
};

// The counting loop's bounds: x goes from minimum to maximum by repeated addition, with all its rounding.
std::vector<Bordas> bordasDosBaldes(double minimo, double maximo, double intervalo,
                                    const std::function<void()> &passar) {
    if ((maximo - minimo) / intervalo > double(maximoDeBaldes))
        recusar(intervalo, std::ceil((maximo - minimo) / double(maximoDeBaldes) * 100) / 100);
    std::vector<Bordas> bordas;
    for (double x = minimo; x <= maximo; x += intervalo) {
        const double baixo = comoTexto(x);
        bordas.push_back({bordas.empty() ? baixo : comoTexto(baixo + desvio), comoTexto(x + intervalo)});
        if (passar && bordas.size() % 4096 == 0)
            passar();
        if (x + intervalo == x)
            break;
    }
    return bordas;
}

} // namespace

QString Balde::rotulo() const {
    return modDoubleTratamento::NumeroParaTexto(baixo) + u" <> " + modDoubleTratamento::NumeroParaTexto(alto);
}

double lerIntervalo(const QString &texto) {
    bool ok = false;
    const double lido = std::fabs(QString(texto).replace(u',', u'.').trimmed().toDouble(&ok));
    if (!ok || !(lido > 0) || !std::isfinite(lido))
        throw Falha(erros::tipoIncompativel, modTraducoes::texto(u"KelvarkAUX"_s, u"HistIntervaloInvalido"_s,
                                                                 u"Intervalo do histograma inválido: \"%1\""_s)
                                                 .arg(texto));
    if (lido < menorIntervalo)
        recusar(lido, menorIntervalo);
    return lido;
}

QStringList entradasDoCombo() {
    QStringList entradas{u"0.5"_s};
    for (int n = 1; n <= 50; ++n) {
        entradas.append(QString::number(n) + u".0");
        if (n != 50)
            entradas.append(QString::number(n) + u".5");
    }
    return entradas;
}

std::vector<Balde> contar(std::span<const double> valores, double intervalo, const Limites &limites,
                          const std::function<void()> &passar, const std::optional<Extremos> &extremos) {
    double menor = INFINITY;
    double maior = -INFINITY;
    for (const double v : valores) {
        menor = v < menor ? v : menor; // a NaN compares false and stays out
        maior = v > maior ? v : maior;
    }
    if (!(menor <= maior))
        return {};
    menor = comoTexto(extremos ? extremos->menor : menor);
    maior = comoTexto(extremos ? extremos->maior : maior);
    const std::vector<Bordas> bordas = bordasDosBaldes(menor, maior, intervalo, passar);
    std::vector<qint64> totais(bordas.size());
    const auto ultimo = qint64(bordas.size()) - 1;
    for (size_t i = 0; i < valores.size(); ++i) {
        const double v = valores[i];
        if (std::isnan(v))
            continue;
        // The sums drift by far less than a bucket, so the right one is the computed one or a neighbour.
        const auto perto = std::clamp(qint64((v - menor) / intervalo), qint64(0), ultimo);
        for (qint64 k = std::max<qint64>(0, perto - 1); k <= std::min(ultimo, perto + 1); ++k)
            if (v >= bordas[size_t(k)].baixo && v <= bordas[size_t(k)].alto)
                ++totais[size_t(k)];
        if (passar && i % valoresPorPasse == valoresPorPasse - 1)
            passar();
    }
    std::vector<Balde> baldes;
    for (size_t k = 0; k < bordas.size(); ++k) {
        if (totais[k] == 0)
            continue;
        if (const auto estado = alarme::doBalde(limites, bordas[k].baixo))
            baldes.push_back({bordas[k].baixo, bordas[k].alto, totais[k], *estado});
    }
    return baldes;
}

} // namespace histograma
