#include "poseidon/modHwGroup.h"

#include "core/literais.h"

namespace {

struct Modelo {
    int codigo;
    QStringView nome;
};
constexpr Modelo modelos[] = {
    {2, u"Damocles"},       {modHwGroup::modelo2251, u"Poseidon 2251"},
    {3, u"Poseidon 1140"},  {10, u"Poseidon 1250"},
    {11, u"Poseidon 3262"}, {12, u"Poseidon 3265"},
    {13, u"Poseidon 3266"}, {14, u"Poseidon 3268"},
    {15, u"Damocles mini"}, {modHwGroup::modelo2250, u"Poseidon 2250"},
};

} // namespace

namespace modHwGroup {

QString BuscaDescricaoDeDispositivoPorCodigo(int codigo) {
    for (const Modelo &m : modelos)
        if (m.codigo == codigo)
            return m.nome.toString();
    return {};
}

bool temLog(int codigo) {
    return codigo == modelo2251 || codigo == modelo2250;
}

double ConverterEscalas(double valor, double maximoEntrada, double minimoEntrada, double maximoSaida,
                        double minimoSaida) {
    return ((maximoSaida - minimoSaida) / (maximoEntrada - minimoEntrada)) * (valor - minimoEntrada) + minimoSaida;
}

} // namespace modHwGroup
