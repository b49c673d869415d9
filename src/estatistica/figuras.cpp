#include "estatistica/figuras.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr double energiaSobreGas = 10000; // kelvin

// A sum whose error does not grow with the number of terms.
class Soma {
public:
    void juntar(double termo) {
        const double nova = m_soma + termo;
        m_resto += std::fabs(m_soma) >= std::fabs(termo) ? (m_soma - nova) + termo : (termo - nova) + m_soma;
        m_soma = nova;
    }
    double total() const { return m_soma + m_resto; }

private:
    double m_soma = 0, m_resto = 0;
};

} // namespace

namespace estatistica {

double temperaturaCineticaMedia(std::span<const Amostra> amostras, std::span<const double> pesos) {
    if (amostras.empty())
        return semFigura;
    const auto expoente = [](const Amostra &a) { return -energiaSobreGas / (a.valor - zeroAbsoluto); };
    // The warmest reading counts as 1: beside absolute zero the powers themselves are too small to be numbers.
    const double maior = expoente(*std::ranges::max_element(amostras, {}, &Amostra::valor));
    if (!std::isfinite(maior)) // all of them at absolute zero
        return zeroAbsoluto;
    Soma soma, peso;
    for (size_t i = 0; i < amostras.size(); ++i) {
        soma.juntar(pesos[i] * std::exp(expoente(amostras[i]) - maior));
        peso.juntar(pesos[i]);
    }
    return energiaSobreGas / -(maior + std::log(soma.total() / peso.total())) + zeroAbsoluto;
}

Figuras figuras(std::span<const Amostra> todas, Genero genero) {
    const std::vector<Amostra> amostras = validas(todas, genero);
    Figuras f;
    f.leituras = qint64(amostras.size());
    if (amostras.empty())
        return f;
    f.primeira = amostras.front().instante;
    f.ultima = amostras.back().instante;
    f.espacamento = espacamentoUsual(amostras);
    for (const Lacuna &lacuna : lacunas(amostras, f.espacamento)) {
        ++f.lacunas;
        f.semLeituras += lacuna.duracao();
    }

    const std::vector<double> peso = pesos(amostras, f.espacamento);
    Soma soma, ponderada, total;
    for (size_t i = 0; i < amostras.size(); ++i) {
        soma.juntar(amostras[i].valor);
        ponderada.juntar(peso[i] * amostras[i].valor);
        total.juntar(peso[i]);
    }
    f.media = soma.total() / double(amostras.size());
    f.mediaNoTempo = ponderada.total() / total.total();
    if (genero == Genero::Temperatura)
        f.cineticaMedia = temperaturaCineticaMedia(amostras, peso);

    const auto [menor, maior] = std::pair(std::ranges::min_element(amostras, {}, &Amostra::valor),
                                          std::ranges::max_element(amostras, {}, &Amostra::valor));
    f.minimo = menor->valor;
    f.instanteDoMinimo = menor->instante;
    f.maximo = maior->valor;
    f.instanteDoMaximo = maior->instante;

    Soma quadrados;
    std::vector<double> valores;
    valores.reserve(amostras.size());
    for (const Amostra &a : amostras) {
        quadrados.juntar((a.valor - f.media) * (a.valor - f.media));
        valores.push_back(a.valor);
    }
    if (amostras.size() > 1)
        f.desvio = std::sqrt(quadrados.total() / double(amostras.size() - 1));
    f.p5 = percentil(valores, 0.05);
    f.mediana = percentil(valores, 0.5);
    f.p95 = percentil(valores, 0.95);
    return f;
}

} // namespace estatistica
