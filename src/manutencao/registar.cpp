#include "manutencao/registar.h"

#include "manutencao/frmConfiguracoes.h"
#include "manutencao/frmPassWord.h"
#include "manutencao/frmSensoresEdit.h"
#include "platform/forms/registoForms.h"

namespace {

template <typename Form>
void registar(RegistoForms &forms, const QString &nome) {
    forms.registar(
        nome, [](QWidget *dono) -> QWidget * { return new Form(dono); }, RegistoForms::Modo::Modal);
}

} // namespace

void registarManutencao(RegistoForms &forms) {
    registar<frmPassWord>(forms, u"frmPassWord"_s);
    registar<frmConfiguracoes>(forms, u"frmConfiguracoes"_s);
    registar<frmSensoresEdit>(forms, u"frmSensoresEdit"_s);
}
