#include "core/estado.h"
#include "platform/forms/dialogosQt.h"
#include "shell/apresentadorQt.h"
#include "shell/arranque.h"
#include "shell/frmMain.h"
#include "simulator/botao/transporteVirtual.h"

#include <QApplication>

int main(int argc, char *argv[]) {
    QApplication aplicacao(argc, argv);
    QApplication::setApplicationName(estado().NomePrograma);
    QApplication::setApplicationVersion(QStringLiteral(VISTREL_VERSAO));

    DialogosQt dialogos;
    ApresentadorQt apresentador;
    estado().PastaPrograma = QApplication::applicationDirPath();
    estado().ambiente.dialogos = &dialogos;
    estado().ambiente.apresentador = &apresentador;
    simulador::oferecerGavetas();
    int codigo = 1;
    {
        const std::unique_ptr<frmMain> principal = modMain::Main();
        if (principal)
            codigo = QApplication::exec();
    }
    renovarEstado(); // closes the database while the application still stands
    return codigo;
}
