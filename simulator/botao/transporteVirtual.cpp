#include "simulator/botao/transporteVirtual.h"

#include "core/falha.h"
#include "core/literais.h"
#include "platform/onewire/barramento.h"

namespace simulador {

void TransporteVirtual::gastar() {
    if (m_linha->defeitos.adaptadorFora > 0 && --m_linha->defeitos.adaptadorFora == 0)
        m_fora = true;
    if (m_fora)
        throw Falha(erros::falhaDoFicheiro, u"O adaptador 1-Wire deixou de responder."_s);
    if (const auto &passar = onewire::barramento().passar)
        passar();
}

bool TransporteVirtual::valido() {
    return !m_fora;
}

bool TransporteVirtual::reset() {
    gastar();
    return m_linha->reset();
}

QByteArray TransporteVirtual::bloco(const QByteArray &enviar) {
    gastar();
    QByteArray visto;
    visto.reserve(enviar.size());
    for (char c : enviar)
        visto.append(char(m_linha->byte(quint8(c))));
    return visto;
}

std::optional<onewire::Rom> TransporteVirtual::procurar(quint8 familia, bool primeira) {
    gastar();
    if (primeira)
        m_pesquisa.comecar(familia);
    if (m_pesquisa.acabou())
        return std::nullopt;
    if (!m_linha->reset()) {
        m_pesquisa.falhar();
        return std::nullopt;
    }
    m_linha->byte(0xF0);
    const auto caminho = m_pesquisa.caminho();
    onewire::PesquisaRom::Bits idos, divergencias;
    for (size_t i = 0; i < 64; ++i) {
        const bool bit = m_linha->slot(true);
        const bool complemento = m_linha->slot(true);
        if (bit && complemento) {
            m_pesquisa.falhar();
            return std::nullopt;
        }
        divergencias[i] = !bit && !complemento;
        idos[i] = divergencias[i] ? caminho[i] : bit;
        m_linha->slot(idos[i]);
    }
    return m_pesquisa.aceitar(idos, divergencias);
}

void oferecerGavetas() {
    onewire::barramento().gaveta = [](const QString &pasta) -> std::unique_ptr<onewire::Transporte> {
        if (!Gaveta::e(pasta))
            return nullptr;
        return std::make_unique<TransporteVirtual>(std::make_shared<Linha>(Gaveta(pasta)));
    };
}

} // namespace simulador
