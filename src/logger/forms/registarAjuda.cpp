#include "logger/forms/registarAjuda.h"

#include "core/literais.h"
#include "logger/forms/frmAjuda.h"
#include "platform/forms/registoForms.h"

void registarAjuda(RegistoForms &forms) {
    forms.registar(u"frmAjuda"_s, [](QWidget *) { return new frmAjuda; });
}
