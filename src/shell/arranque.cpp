#include "shell/arranque.h"

#include "core/estado.h"
#include "core/eventos.h"
#include "core/modTraducoes.h"
#include "core/rotina.h"
#include "devicestate/forms/registar.h"
#include "logger/forms/registar.h"
#include "logger/forms/registarAjuda.h"
#include "logger/views/forms/registar.h"
#include "manutencao/registar.h"
#include "platform/forms/registoForms.h"
#include "platform/onewire/barramento.h"
#include "platform/onewire/tmex.h"
#include "platform/unit/rede.h"
#include "poseidon/forms/registar.h"
#include "shell/desenhos.h"
#include "shell/frmIconCompactarErepararBD.h"
#include "shell/frmMain.h"
#include "shell/textosDoQt.h"
#include "views/forms/registar.h"

namespace {

// A report of the start came up before there was a window to own it.
void adoptarErro(QWidget *principal) {
    QWidget *erro = registoForms().form(u"frmErro"_s);
    if (!erro || erro->parentWidget())
        return;
    erro->setParent(principal, erro->windowFlags());
    erro->move(principal->frameGeometry().center() - erro->rect().center());
    erro->show();
    erro->raise();
    erro->activateWindow();
}

// Whatever session a failure has left. While the button's form is open the session is its own.
void fecharSessao1Wire() {
    if (!registoForms().activo(u"frmDS1921"_s))
        tmex::TMClose(onewire::barramento().sessao);
}

} // namespace

namespace modMain {

void registarForms(RegistoForms &forms) {
    registarLogger(forms);
    registarAjuda(forms);
    registarVistas(forms);
    registarEstados(forms);
    registarVistasDosRegistadores(forms);
    registarPoseidon(forms);
    registarManutencao(forms);
}

std::unique_ptr<frmMain> Main() {
    return Rotina("modMain.Main", [] {
        estado().Lingua = modTraducoes::linguaDasDefinicoes();
        textosDoQt::aplicar(estado().Lingua);
        forcarEventos();
        juntarDesenhos(); // the splash may have to warn
        registarForms(registoForms());
        rede::instalar();
        frmIconCompactarErepararBD().mostrarAteAcabar();
        forcarEventos();
        auto principal = std::make_unique<frmMain>();
        principal->chamar1Wire = fecharSessao1Wire;
        principal->show();
        adoptarErro(principal.get());
        return principal;
    });
}

} // namespace modMain
