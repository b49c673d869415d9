#include "core/estado.h"
#include "core/literais.h"
#include "core/modTraducoes.h"
#include "logger/escolhaDoBotao.h"
#include "logger/forms/frmDS1921.h"

namespace {

QString texto(const QString &chave, const QString &omissao) {
    return modTraducoes::texto(u"DSfrmDS1921"_s, chave, omissao);
}

} // namespace

// Before the user reads: of several buttons never the one that happens to answer first. False: none was chosen, and
// what the form shows stays.
bool frmDS1921::escolherBotao() {
    const auto botoes = passo("frmDS1921.escolherBotao", [this] {
        return escolhaDoBotao::noLeitor({m_logica->controlo.PortaNumero, m_logica->controlo.PortaTipo});
    });
    if (botoes.size() < 2) {
        escolhaDoBotao::escolher(std::nullopt);
        return true;
    }
    QStringList nomes;
    int actual = -1;
    for (const escolhaDoBotao::Botao &b : botoes) {
        if (b.rom == escolhaDoBotao::escolhido())
            actual = int(nomes.size());
        nomes.append(b.ROMID + u"  " + (b.descricao.isEmpty() ? texto(u"SemNome"_s, u"(sem nome)"_s) : b.descricao));
    }
    int escolha = -1;
    comDialogo([&] {
        escolha = estado().ambiente.dialogos->escolher(
            texto(u"VariosBotoes"_s, u"Há vários registadores no leitor. Escolha um:"_s), nomes, actual);
    });
    if (escolha < 0)
        return false;
    escolhaDoBotao::escolher(botoes[size_t(escolha)].rom);
    return true;
}
