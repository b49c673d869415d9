#include "views/forms/registar.h"

#include "platform/forms/registoForms.h"
#include "views/forms/fontesListagem.h"
#include "views/forms/formGrafico.h"
#include "views/forms/formHistograma.h"
#include "views/forms/painelSensores.h"

namespace {

template <typename Membro>
FabricaPainel sensoresDe(const Membro &membro) {
    return fabricaSensores({membro.form.toString(), membro.regra});
}

} // namespace

void registarVistas(RegistoForms &forms) {
    registarMembros(forms, familiaGraficos(), sensoresDe<MembroGrafico>);
    registarMembros(forms, familiaHistogramas(), sensoresDe<MembroHistograma>);
    for (const MembroListagem &membro : familiaListagens())
        forms.registar(membro.form.toString(),
                       [&membro](QWidget *) { return new FormListagem(membro, criarFonteListagem(membro)); });
}

void registarMembros(RegistoForms &forms, std::span<const MembroGrafico> membros,
                     const PainelDe<MembroGrafico> &painelDe) {
    for (const MembroGrafico &membro : membros)
        forms.registar(membro.form.toString(),
                       [&membro, fabrica = painelDe(membro)](QWidget *) { return new FormGrafico(membro, fabrica); });
}

void registarMembros(RegistoForms &forms, std::span<const MembroHistograma> membros,
                     const PainelDe<MembroHistograma> &painelDe) {
    for (const MembroHistograma &membro : membros)
        forms.registar(membro.form.toString(), [&membro, fabrica = painelDe(membro)](QWidget *) {
            return new FormHistograma(membro, fabrica);
        });
}

void registarMembros(RegistoForms &forms, std::span<const MembroListagem> membros,
                     const PainelDe<MembroListagem> &painelDe) {
    for (const MembroListagem &membro : membros)
        forms.registar(membro.form.toString(), [&membro, fabrica = painelDe(membro)](QWidget *) {
            return new FormListagem(membro, std::make_unique<FonteLinhas>(membro, fabrica));
        });
}
