#include "estatistica/excursoes.h"

#include <optional>

namespace {

using estatistica::Amostra;
using estatistica::Excursao;

bool maisLonge(const Amostra &a, const Excursao &e) {
    return e.lado == EstadoDoPonto::Acima ? a.valor > e.pico : a.valor < e.pico;
}

} // namespace

namespace estatistica {

std::vector<Excursao> excursoes(std::span<const Amostra> amostras, double espacamento) {
    std::vector<Excursao> achadas;
    std::optional<Excursao> esta;
    const auto acabar = [&](bool aberta, double fim) {
        if (!esta)
            return;
        esta->aberta = aberta;
        esta->fim = fim;
        achadas.push_back(*esta);
        esta.reset();
    };
    for (size_t i = 0; i < amostras.size(); ++i) {
        const Amostra &a = amostras[i];
        if (i > 0 && eLacuna(a.instante - amostras[i - 1].instante, espacamento))
            acabar(true, amostras[i - 1].instante);
        if (esta && a.estado != esta->lado)
            acabar(false, a.instante);
        if (esta && maisLonge(a, *esta)) {
            esta->pico = a.valor;
            esta->instanteDoPico = a.instante;
        } else if (!esta && a.estado != EstadoDoPonto::Normal) {
            esta = Excursao{a.estado, a.instante, a.instante, a.valor, a.instante, false};
        }
    }
    if (esta)
        acabar(true, amostras.back().instante);
    return achadas;
}

Permanencia permanencia(std::span<const Excursao> excursoes, EstadoDoPonto lado) {
    Permanencia p;
    for (const Excursao &e : excursoes)
        if (e.lado == lado) {
            p.segundos += e.duracao();
            ++p.vezes;
        }
    return p;
}

} // namespace estatistica
