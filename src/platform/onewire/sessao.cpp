#include "platform/onewire/sessao.h"

#include "core/falha.h"
#include "platform/onewire/barramento.h"
#include "platform/onewire/portos.h"

namespace onewire {

namespace {

constexpr qint32 recusada = -201;
// A caller may try again at once and for ever.
constexpr int pausaDaRecusa = 5;

} // namespace

EmUso::EmUso() : m_meu(!barramento().emUso) {
    if (m_meu)
        barramento().emUso = true;
}

EmUso::~EmUso() {
    if (m_meu)
        barramento().emUso = false;
}

qint32 abrirSessao(qint16 porto, qint16 tipo) {
    fecharSessao();
    Barramento &b = barramento();
    if (!b.abrir)
        return recusada;
    b.motivo = {Causa::Nenhuma, caminhoDoPorto(porto, tipo)};
    std::unique_ptr<Transporte> transporte;
    try {
        transporte = b.abrir(porto, tipo);
    } catch (const Falha &) {
        // An adapter that goes away while it is opened is none.
    }
    if (!transporte) {
        if (b.motivo.causa == Causa::Nenhuma)
            b.motivo.causa = Causa::AdaptadorFora;
        esperar(pausaDaRecusa);
        return recusada;
    }
    b.transporte = std::move(transporte);
    return b.sessao = ++b.sessoes;
}

void fecharSessao() {
    Barramento &b = barramento();
    b.transporte.reset();
    b.sessao = 0;
}

} // namespace onewire
