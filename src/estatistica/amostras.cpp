#include "estatistica/amostras.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>

namespace {

constexpr double vezesOUsual = 3;
constexpr double lacunaMinima = 30 * 60;

} // namespace

namespace estatistica {

std::vector<Amostra> validas(std::span<const Amostra> amostras, Genero genero) {
    std::vector<Amostra> ficam;
    ficam.reserve(amostras.size());
    std::ranges::copy_if(amostras, std::back_inserter(ficam), [genero](const Amostra &a) {
        return std::isfinite(a.valor) && std::isfinite(a.instante) &&
               (genero != Genero::Temperatura || a.valor >= zeroAbsoluto);
    });
    return ficam;
}

double espacamentoUsual(std::span<const Amostra> amostras) {
    if (amostras.size() < 2)
        return 0;
    std::vector<double> intervalos;
    intervalos.reserve(amostras.size() - 1);
    for (size_t i = 1; i < amostras.size(); ++i)
        intervalos.push_back(amostras[i].instante - amostras[i - 1].instante);
    return percentil(intervalos, 0.5);
}

bool eLacuna(double intervalo, double espacamento) {
    return intervalo > vezesOUsual * espacamento && intervalo > lacunaMinima;
}

std::vector<Lacuna> lacunas(std::span<const Amostra> amostras, double espacamento) {
    std::vector<Lacuna> achadas;
    for (size_t i = 1; i < amostras.size(); ++i)
        if (eLacuna(amostras[i].instante - amostras[i - 1].instante, espacamento))
            achadas.push_back({amostras[i - 1].instante, amostras[i].instante});
    return achadas;
}

std::vector<double> pesos(std::span<const Amostra> amostras, double espacamento) {
    std::vector<double> lista(amostras.size(), 0);
    if (lista.empty())
        return lista;
    const double meio = espacamento / 2;
    lista.front() += meio;
    lista.back() += meio;
    for (size_t i = 1; i < amostras.size(); ++i) {
        const double intervalo = amostras[i].instante - amostras[i - 1].instante;
        const double parte = eLacuna(intervalo, espacamento) ? meio : intervalo / 2;
        lista[i - 1] += parte;
        lista[i] += parte;
    }
    if (std::ranges::all_of(lista, [](double peso) { return peso == 0; }))
        std::ranges::fill(lista, 1);
    return lista;
}

double percentil(std::vector<double> &valores, double parte) {
    if (valores.empty())
        return std::numeric_limits<double>::quiet_NaN();
    const double lugar = parte * double(valores.size() - 1);
    const auto abaixo = valores.begin() + std::ptrdiff_t(std::floor(lugar));
    std::nth_element(valores.begin(), abaixo, valores.end());
    const double resto = lugar - std::floor(lugar);
    if (resto == 0)
        return *abaixo;
    const double acima = *std::min_element(abaixo + 1, valores.end());
    return *abaixo + resto * (acima - *abaixo);
}

} // namespace estatistica
