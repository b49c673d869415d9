#include "poseidon/forms/registar.h"

#include "core/literais.h"
#include "platform/forms/registoForms.h"
#include "poseidon/forms/frmDescarregar2251.h"
#include "poseidon/forms/frmTelnet.h"

// The drawings lie in a static library, whose resources the linker drops unless they are asked for.
static void juntarDesenhosDasUnidades() {
    Q_INIT_RESOURCE(unidades);
}

void registarPoseidon(RegistoForms &forms) {
    juntarDesenhosDasUnidades();
    forms.registar(u"frmDescarregar2251"_s, [](QWidget *) { return new frmDescarregar2251; });
    forms.registar(u"frmTelnet"_s, [](QWidget *) { return new frmTelnet; });
}
