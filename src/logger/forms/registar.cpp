#include "logger/forms/registar.h"

#include "core/literais.h"
#include "logger/forms/frmDS1921.h"
#include "platform/forms/registoForms.h"

void registarLogger(RegistoForms &forms) {
    forms.registar(u"frmDS1921"_s, [](QWidget *) { return new frmDS1921; });
}
