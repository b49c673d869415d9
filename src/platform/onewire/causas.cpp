#include "platform/onewire/causas.h"

#include "core/falha.h"
#include "core/literais.h"
#include "core/modTraducoes.h"
#include "platform/onewire/barramento.h"

namespace onewire {

namespace {

constexpr int tentativas = 3;
constexpr int maximoDeDispositivos = 64; // of a line that answers anything
const QString semGrupoProprio = u"root"_s;

QString texto(const QString &chave, const QString &omissao) {
    return modTraducoes::texto(u"Causas1Wire"_s, chave, omissao);
}

QString semPermissao(const Motivo &m) {
    if (m.grupo.isEmpty() || m.grupo == semGrupoProprio)
        return texto(
                   u"SemRegra"_s,
                   u"Só o administrador pode usar o adaptador 1-Wire (%1). Peça-lhe uma regra do sistema (udev) que o dê ao grupo \"dialout\", e que o junte a si a esse grupo."_s)
            .arg(m.porto);
    return texto(
               u"SemPermissao"_s,
               u"Não tem permissão para usar o adaptador 1-Wire (%1). Peça ao administrador que o junte ao grupo \"%2\", e inicie depois uma sessão nova."_s)
        .arg(m.porto, m.grupo);
}

// What lies on the line: anything at all, something with a whole number, what was looked for.
struct Visto {
    bool presenca = false, algum = false, procurado = false;
};

template <typename Criterio>
Visto ver(Transporte &t, Criterio &&eEste) {
    Visto v;
    v.presenca = t.reset();
    if (!v.presenca)
        return v;
    auto rom = t.procurar(0, true);
    for (int i = 0; rom && i < maximoDeDispositivos; ++i, rom = t.procurar(0, false)) {
        v.algum = true;
        v.procurado = v.procurado || eEste(*rom);
    }
    return v;
}

} // namespace

void anotar(Causa causa) {
    Barramento &b = barramento();
    if (b.motivo.causa != Causa::AdaptadorFora)
        b.motivo.causa = causa;
}

QString frase(const Motivo &m) {
    switch (m.causa) {
    case Causa::Nenhuma:
        return {};
    case Causa::SemPorto:
        return texto(u"SemPorto"_s,
                     u"Ainda não está escolhida a porta do adaptador 1-Wire. Abra Geral, Procurar adaptador."_s);
    case Causa::AdaptadorFora:
        return texto(
                   u"AdaptadorFora"_s,
                   u"O adaptador 1-Wire não está ligado, ou deixou de responder (%1). Ligue-o outra vez; se mudou de porta, abra Geral, Procurar adaptador."_s)
            .arg(m.porto);
    case Causa::SemPermissao:
        return semPermissao(m);
    case Causa::Ocupado:
        return texto(
                   u"Ocupado"_s,
                   u"Outro programa está a usar o adaptador 1-Wire (%1). Espere que acabe, ou feche-o, e tente outra vez."_s)
            .arg(m.porto);
    case Causa::OutroEquipamento:
        return texto(
                   u"OutroEquipamento"_s,
                   u"O que está ligado à porta %1 não responde como um adaptador 1-Wire. Veja o cabo e a porta, ou abra Geral, Procurar adaptador."_s)
            .arg(m.porto);
    case Causa::SemBotao:
        return texto(u"SemBotao"_s,
                     u"Não há nenhum registador no leitor. Encaixe-o bem no leitor e tente outra vez."_s);
    case Causa::ContactoPerdido:
        return texto(
            u"ContactoPerdido"_s,
            u"O contacto com o registador perdeu-se. Encaixe-o outra vez, não lhe toque até acabar, e tente de novo."_s);
    case Causa::LinhaComRuido:
        return texto(
            u"LinhaComRuido"_s,
            u"O registador está no leitor, mas as respostas chegam estragadas. Limpe os contactos, afaste o cabo de outros aparelhos ou use um mais curto, e tente outra vez."_s);
    }
    return {};
}

QString comMotivo(const QString &mensagem) {
    const QString porque = frase(barramento().motivo);
    return porque.isEmpty() ? mensagem : mensagem + u'\n' + porque;
}

ManterMotivo::ManterMotivo() : m_motivo(barramento().motivo) {}

ManterMotivo::~ManterMotivo() {
    if (m_motivo.causa != Causa::Nenhuma)
        barramento().motivo = m_motivo;
}

Causa diagnosticar(Transporte &t, quint8 familia) {
    try {
        const Visto v = ver(t, [familia](const Rom &rom) { return rom[0] == familia; });
        if (v.procurado) // it had no contact a moment ago
            return Causa::ContactoPerdido;
        return v.presenca && !v.algum ? Causa::LinhaComRuido : Causa::SemBotao;
    } catch (const Falha &) {
        return Causa::AdaptadorFora;
    }
}

Causa diagnosticar(Transporte &t, const Rom &rom) {
    try {
        const Visto v = ver(t, [&rom](const Rom &outro) { return outro == rom; });
        return v.procurado || (v.presenca && !v.algum) ? Causa::LinhaComRuido : Causa::ContactoPerdido;
    } catch (const Falha &) {
        return Causa::AdaptadorFora;
    }
}

std::optional<Rom> insistir(Transporte &t, quint8 familia, const std::function<std::optional<Rom>()> &procurar) {
    Causa causa = Causa::Nenhuma;
    for (int i = 0; i < tentativas; ++i) {
        if (const auto rom = procurar())
            return rom;
        causa = diagnosticar(t, familia);
        if (causa == Causa::SemBotao || causa == Causa::AdaptadorFora)
            break;
    }
    anotar(causa);
    return std::nullopt;
}

} // namespace onewire
