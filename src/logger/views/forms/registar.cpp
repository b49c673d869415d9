#include "logger/views/forms/registar.h"

#include "core/literais.h"
#include "logger/views/familiaLoggers.h"
#include "logger/views/forms/frmListagemLoggers.h"
#include "logger/views/forms/painelMissoes.h"
#include "platform/forms/registoForms.h"
#include "views/forms/registar.h"

namespace {

// Missions are deleted where they are seen as a whole.
template <bool elimina, typename Membro>
FabricaPainel missoesDe(const Membro &membro) {
    return fabricaMissoes({membro.form.toString(), elimina});
}

} // namespace

void registarVistasDosRegistadores(RegistoForms &forms) {
    registarMembros(forms, familiaLoggers::graficos(), missoesDe<true, MembroGrafico>);
    registarMembros(forms, familiaLoggers::histogramas(), missoesDe<false, MembroHistograma>);
    registarMembros(forms, familiaLoggers::listagens(), missoesDe<false, MembroListagem>);
    forms.registar(u"frmListagemLoggers"_s, [](QWidget *) { return new frmListagemLoggers; });
}
