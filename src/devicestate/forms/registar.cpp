#include "devicestate/forms/registar.h"

#include "devicestate/familiaSensUI.h"
#include "views/forms/painelSensores.h"
#include "views/forms/registar.h"

namespace {

template <typename Membro>
FabricaPainel sensoresDe(const Membro &membro) {
    return fabricaSensores({.form = membro.form.toString(), .regra = membro.regra, .semMac = true});
}

} // namespace

void registarEstados(RegistoForms &forms) {
    registarMembros(forms, familiaSensUI::graficos(), sensoresDe<MembroGrafico>);
    registarMembros(forms, familiaSensUI::histogramas(), sensoresDe<MembroHistograma>);
    registarMembros(forms, familiaSensUI::listagens(), sensoresDe<MembroListagem>);
}
