#include "views/forms/registar.h"

#include "platform/forms/registoForms.h"
#include "views/familiaGraficos.h"
#include "views/familiaHistogramas.h"
#include "views/familiaListagens.h"
#include "views/forms/fontesListagem.h"
#include "views/forms/formGrafico.h"
#include "views/forms/formHistograma.h"

void registarVistas(RegistoForms &forms) {
    for (const MembroGrafico &membro : familiaGraficos())
        forms.registar(membro.form.toString(), [&membro](QWidget *) { return new FormGrafico(membro); });
    for (const MembroHistograma &membro : familiaHistogramas())
        forms.registar(membro.form.toString(), [&membro](QWidget *) { return new FormHistograma(membro); });
    for (const MembroListagem &membro : familiaListagens())
        forms.registar(membro.form.toString(),
                       [&membro](QWidget *) { return new FormListagem(membro, criarFonteListagem(membro)); });
}
