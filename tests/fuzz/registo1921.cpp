// Fuzz target of the page parsers: build with -DVISTREL_FUZZ=ON and a compiler that brings libFuzzer.
#include "core/literais.h"
#include "logger/numeros1921.h"
#include "logger/registoDS1921.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *dados, std::size_t tamanho) {
    const QString texto = registoDS1921::textoDosBytes({dados, tamanho});
    if (const auto r = registoDS1921::decifrar(texto, u"D63B02000FBC52B021"_s)) {
        const int intervalo = r->intervalo.toInt();
        if (!std::isfinite(r->Calibracao) || r->TextoMissao.isEmpty() || r->descricaoRegistador.isEmpty() ||
            intervalo < 1 || intervalo > numeros1921::maiorIntervalo)
            std::abort();
    }
    if (tamanho >= std::tuple_size_v<tmex::Pagina>) {
        tmex::Pagina pagina{};
        std::copy_n(dados, pagina.size(), pagina.begin());
        if (registoDS1921::LerAmostrasMissao(pagina) > 0xFFFFFF)
            std::abort();
        registoDS1921::RolloverOcorreu(pagina);
    }
    return 0;
}
