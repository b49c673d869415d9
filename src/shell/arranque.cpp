#include "shell/arranque.h"

#include "core/estado.h"
#include "core/eventos.h"
#include "core/modTraducoes.h"
#include "core/rotina.h"
#include "platform/forms/registoForms.h"
#include "platform/unit/rede.h"
#include "poseidon/forms/registar.h"
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

} // namespace

namespace modMain {

std::unique_ptr<frmMain> Main() {
    return Rotina("modMain.Main", [] {
        estado().Lingua = modTraducoes::linguaDasDefinicoes();
        textosDoQt::aplicar(estado().Lingua);
        forcarEventos();
        registarVistas(registoForms());
        registarPoseidon(registoForms());
        rede::instalar();
        frmIconCompactarErepararBD().exec();
        forcarEventos();
        auto principal = std::make_unique<frmMain>();
        principal->show();
        adoptarErro(principal.get());
        return principal;
    });
}

} // namespace modMain
