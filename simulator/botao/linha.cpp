#include "simulator/botao/linha.h"

namespace simulador {

namespace {
constexpr int bitDoRuido = 3;
}

Linha::Linha(const Gaveta &gaveta, RelogioExterno r) : relogio(std::move(r)), m_gaveta(gaveta) {}

Linha::~Linha() {
    guardar();
}

void Linha::guardar() {
    for (const Posto &posto : m_postos)
        if (posto.botao->chip.sujo)
            posto.botao->guardar();
}

// Buttons are put down and taken off between two transactions.
void Linha::verLeitor() {
    guardar();
    const QStringList nomes = m_gaveta.noLeitor();
    // Those that stay keep their state in memory: nobody else writes a button that lies on this reader.
    std::vector<Posto> postos;
    for (const QString &nome : nomes) {
        Posto posto;
        if (const qsizetype antes = m_nomes.indexOf(nome); antes >= 0) {
            posto = std::move(m_postos[size_t(antes)]);
        } else if ((posto.botao = m_gaveta.botao(nome))) {
            if (posto.botao->temChip())
                posto.funcoes = std::make_unique<FuncoesDS1921>(posto.botao->chip, defeitos);
            posto.dispositivo = std::make_unique<Dispositivo>(posto.botao->chip.rom(), posto.funcoes.get());
        }
        if (posto.botao)
            postos.push_back(std::move(posto));
    }
    m_postos = std::move(postos);
    m_nomes.clear();
    for (const Posto &posto : m_postos)
        m_nomes.append(posto.botao->nome());
    const qint64 agora = relogio();
    for (const Posto &posto : m_postos)
        posto.botao->actualizar(agora, temperatura);
}

std::vector<Botao *> Linha::botoes() {
    verLeitor();
    std::vector<Botao *> lista;
    for (const Posto &posto : m_postos)
        lista.push_back(posto.botao.get());
    return lista;
}

bool Linha::reset() {
    verLeitor();
    m_bits = 0;
    if (defeitos.semPresenca > 0) {
        --defeitos.semPresenca;
        return false;
    }
    for (const Posto &posto : m_postos)
        posto.dispositivo->reset();
    return !m_postos.empty();
}

bool Linha::emAlarme() const {
    return std::any_of(m_postos.begin(), m_postos.end(),
                       [](const Posto &p) { return p.funcoes && p.funcoes->emAlarme(); });
}

bool Linha::slot(bool mestre) {
    const bool trocado = m_bits % 8 == bitDoRuido && defeitos.ruido > 0;
    if (m_bits++ % 8 == 0 && defeitos.retirar > 0 && --defeitos.retirar == 0) {
        m_gaveta.por({});
        verLeitor();
    }
    bool linha = mestre;
    for (const Posto &posto : m_postos)
        linha = posto.dispositivo->largar() && linha;
    for (const Posto &posto : m_postos)
        posto.dispositivo->slot(linha);
    defeitos.ruido -= trocado;
    return linha != trocado; // as the master sees it
}

quint8 Linha::byte(quint8 mestre) {
    quint8 lido = 0;
    for (int i = 0; i < 8; ++i)
        lido = quint8(lido | (slot(mestre >> i & 1) ? 1 << i : 0));
    return lido;
}

} // namespace simulador
