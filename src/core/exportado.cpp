#include "core/exportado.h"

#include "core/estado.h"
#include "core/literais.h"
#include "core/modTraducoes.h"

#include <QDir>
#include <QFileInfo>

void anunciarExportado(const QString &caminho) {
    Dialogos *dialogos = estado().ambiente.dialogos;
    if (!dialogos)
        return;
    const QFileInfo ficheiro(caminho);
    const QString texto =
        modTraducoes::texto(u"VISTREL_frmMain"_s, u"ExportConc"_s, u"Exportação concluida com sucesso"_s) + u"\n\n" +
        QDir::toNativeSeparators(ficheiro.absoluteFilePath());
    const QString pasta = ficheiro.absolutePath();
    if (!dialogos->mensagemComBotao(texto,
                                    modTraducoes::texto(u"VISTREL_frmMain"_s, u"AbrirPasta"_s, u"Abrir pasta"_s)) ||
        dialogos->abrirPasta(pasta))
        return;
    dialogos->mensagem(
        modTraducoes::texto(u"VISTREL_frmMain"_s, u"PastaNaoAberta"_s, u"Não há programa que mostre a pasta \"%1\"."_s)
            .arg(QDir::toNativeSeparators(pasta)),
        Dialogos::Estilo::Exclamacao);
}
