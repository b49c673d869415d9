#include "shell/apresentadorQt.h"

#include "platform/forms/registoForms.h"
#include "shell/frmErro.h"

#include <QApplication>

bool ApresentadorQt::FormEstaActivo(const QString &nome) {
    return registoForms().activo(nome);
}

// Owned by a modal window while one is open: anything else could not be clicked.
void ApresentadorQt::carregarErro(const QString &frase, const QString &mensagem) {
    QWidget *modal = QApplication::activeModalWidget();
    m_erro = new frmErro(modal ? modal : registoForms().dono.data());
    m_erro->definirFrase(frase);
    m_erro->definirDetalhe(mensagem);
    registoForms().anunciar(m_erro);
}

bool ApresentadorQt::mostrarErro() {
    if (!m_erro)
        return false;
    m_erro->show();
    return m_erro->isVisible();
}

void ApresentadorQt::destacarErro(const QString &mensagem) {
    if (!m_erro)
        return;
    m_erro->definirDetalhe(mensagem);
    m_erro->raise();
    m_erro->activateWindow();
}

void ApresentadorQt::ampulheta(bool ligada) {
    if (ligada)
        QApplication::setOverrideCursor(Qt::WaitCursor);
    else if (QApplication::overrideCursor())
        QApplication::restoreOverrideCursor();
}
