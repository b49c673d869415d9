#include "shell/arranque.h"

#include "core/estado.h"
#include "core/eventos.h"
#include "core/modTraducoes.h"
#include "core/rotina.h"
#include "platform/forms/registoForms.h"
#include "shell/frmIconCompactarErepararBD.h"
#include "shell/frmMain.h"
#include "views/forms/registar.h"

namespace modMain {

std::unique_ptr<frmMain> Main() {
    return Rotina("modMain.Main", [] {
        estado().Lingua = modTraducoes::linguaDasDefinicoes();
        forcarEventos();
        registarVistas(registoForms());
        frmIconCompactarErepararBD().exec();
        forcarEventos();
        auto principal = std::make_unique<frmMain>();
        principal->show();
        return principal;
    });
}

} // namespace modMain
