#pragma once

#include "platform/onewire/pesquisaRom.h"
#include "simulator/botao/linha.h"

namespace simulador {

// The virtual reader in this process.
class TransporteVirtual : public onewire::Transporte {
public:
    explicit TransporteVirtual(std::shared_ptr<Linha> linha) : m_linha(std::move(linha)) {}
    bool reset() override;
    QByteArray bloco(const QByteArray &enviar) override;
    std::optional<onewire::Rom> procurar(quint8 familia, bool primeira) override;
    bool valido() override;

private:
    void gastar(); // one operation of an adapter that may be gone
    std::shared_ptr<Linha> m_linha;
    onewire::PesquisaRom m_pesquisa;
    bool m_fora = false;
};

// From here on a port whose path is a drawer's folder is the virtual reader over it.
void oferecerGavetas();

} // namespace simulador
