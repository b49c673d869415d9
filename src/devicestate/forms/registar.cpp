#include "devicestate/forms/registar.h"

#include "devicestate/familiaSensUI.h"
#include "devicestate/forms/paineisEstados.h"
#include "platform/forms/registoForms.h"
#include "views/forms/formGrafico.h"
#include "views/forms/painelSensores.h"
#include "views/forms/registar.h"

namespace {

template <typename Membro>
FabricaPainel sensoresDe(const Membro &membro) {
    return fabricaSensores({.form = membro.form.toString(), .regra = membro.regra, .semMac = true});
}

// Charts of states, each kind with its panel.
template <typename Painel, typename Especie>
void registarEspecies(RegistoForms &forms, std::span<const Especie> especies) {
    for (const Especie &especie : especies)
        forms.registar(especie.grafico.form.toString(), [&especie](QWidget *) {
            return new FormGrafico(especie.grafico, [&especie](QWidget *vista) { return new Painel(especie, vista); });
        });
}

} // namespace

void registarEstados(RegistoForms &forms) {
    registarMembros(forms, familiaSensUI::graficos(), sensoresDe<MembroGrafico>);
    registarMembros(forms, familiaSensUI::histogramas(), sensoresDe<MembroHistograma>);
    registarMembros(forms, familiaSensUI::listagens(), sensoresDe<MembroListagem>);
    registarEspecies<PainelCanais>(forms, entradas::especies());
    registarEspecies<PainelCondicoes>(forms, condicoes::especies());
}
