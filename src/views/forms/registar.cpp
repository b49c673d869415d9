#include "views/forms/registar.h"

#include "platform/forms/registoForms.h"
#include "views/familiaGraficos.h"
#include "views/forms/formGrafico.h"

void registarVistas(RegistoForms &forms) {
    for (const MembroGrafico &membro : familiaGraficos())
        forms.registar(membro.form.toString(), [&membro](QWidget *) { return new FormGrafico(membro); });
}
