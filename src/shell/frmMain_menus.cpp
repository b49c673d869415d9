// The menu tree of the main window.
#include "shell/frmMain.h"

#include "core/literais.h"
#include "core/modTraducoes.h"
#include "core/rotina.h"
#include "platform/forms/icones.h"
#include "platform/forms/registoForms.h"
#include "shell/estadoMenu.h"

#include <QMenu>
#include <QMenuBar>

namespace {

// A form that is not built yet is not offered, and a branch without entries neither.
bool oferecida(const EntradaMenu &entrada) {
    if (!entrada.form.isEmpty())
        return registoForms().construido(entrada.form.toString());
    for (const EntradaMenu &filha : menuPrincipal())
        if (filha.pai == entrada.chave && oferecida(filha))
            return true;
    return false;
}

bool temFilhas(const EntradaMenu &entrada) {
    for (const EntradaMenu &filha : menuPrincipal())
        if (filha.pai == entrada.chave)
            return true;
    return false;
}

} // namespace

void frmMain::BuscarEstadoMenu() {
    estadoMenu::BuscarEstadoMenu(m_estados);
}

void frmMain::pBuildMenus() {
    Rotina("frmMain.pBuildMenus", [this] {
        BuscarEstadoMenu();
        menuBar()->clear();
        menuBar()->setObjectName(u"SmartMenuXP"_s);
        qDeleteAll(m_menus);
        m_menus.clear();
        m_accoes.clear();
        for (const EntradaMenu &entrada : menuPrincipal())
            construirEntrada(entrada);
        menuBar()->addSeparator();
        aplicarEstados();
    });
}

void frmMain::construirEntrada(const EntradaMenu &entrada) {
    const QString chave = entrada.chave.toString();
    const QString texto =
        modTraducoes::texto(u"VISTREL_frmMain"_s, entrada.chaveLingua.toString(), entrada.omissao.toString());
    const QIcon icone = icones::icone(entrada.icone.toString(), palette());
    QWidget *pai = entrada.pai.isEmpty() ? static_cast<QWidget *>(menuBar()) : m_menus.value(entrada.pai.toString());
    QAction *accao = nullptr;
    if (temFilhas(entrada)) {
        auto *menu = new QMenu(texto, pai);
        m_menus.insert(chave, menu);
        accao = menu->menuAction();
        menu->setObjectName(u"menu"_s + chave);
        pai->addAction(accao);
    } else {
        accao = new QAction(texto, pai);
        pai->addAction(accao);
        connect(accao, &QAction::triggered, this, [this, &entrada] { SmartMenuXP_Click(entrada); });
    }
    accao->setObjectName(chave);
    if (!entrada.pai.isEmpty()) // the bar itself stays plain
        accao->setIcon(icone);
    m_accoes.insert(chave, accao);
}

bool frmMain::mostrada(const EntradaMenu &entrada) const {
    return oferecida(entrada) && (!entrada.comEstado || m_estados.contains(entrada.chave.toString()));
}

void frmMain::aplicarEstados() {
    for (const EntradaMenu &entrada : menuPrincipal())
        if (QAction *accao = m_accoes.value(entrada.chave.toString()))
            accao->setVisible(mostrada(entrada));
}

void frmMain::AlterarEstadosMenus() {
    Rotina("frmMain.AlterarEstadosMenus", [this] {
        BuscarEstadoMenu();
        aplicarEstados();
        mostrarEstadoDaBase();
    });
}
