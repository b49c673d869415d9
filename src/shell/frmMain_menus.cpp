// The menu tree of the main window.
#include "shell/frmMain.h"

#include "core/literais.h"
#include "core/modTraducoes.h"
#include "core/rotina.h"
#include "platform/forms/icones.h"
#include "platform/forms/mnemonicas.h"
#include "platform/forms/registoForms.h"
#include "shell/estadoMenu.h"

#include <QMenu>
#include <QMenuBar>

#include <algorithm>

namespace {

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

// Built once, named at each call: a change of language may come from within a click on an entry, whose menu must
// then outlive it.
void frmMain::pBuildMenus() {
    Rotina("frmMain.pBuildMenus", [this] {
        BuscarEstadoMenu();
        menuBar()->setObjectName(u"SmartMenuXP"_s);
        if (m_accoes.isEmpty()) {
            for (const EntradaMenu &entrada : menuPrincipal())
                criarEntrada(entrada);
            menuBar()->addSeparator();
        }
        nomearEntradas();
        aplicarEstados();
    });
}

// Entries that are hidden keep their letters, so that none changes when data comes.
void frmMain::nomearEntradas() {
    QHash<QString, QStringList> filhas, legendas; // by parent
    for (const EntradaMenu &entrada : menuPrincipal()) {
        filhas[entrada.pai.toString()] += entrada.chave.toString();
        legendas[entrada.pai.toString()] +=
            modTraducoes::texto(u"VISTREL_frmMain"_s, entrada.chaveLingua.toString(), entrada.omissao.toString());
    }
    for (auto menu = filhas.cbegin(); menu != filhas.cend(); ++menu) {
        const QStringList marcadas = mnemonicas::distribuir(legendas[menu.key()]);
        for (qsizetype i = 0; i < marcadas.size(); ++i)
            m_accoes[menu.value()[i]]->setText(marcadas[i]);
    }
}

// The key that opens the menu bar everywhere, beside Alt and the letters.
void frmMain::abrirMenu() {
    const QList<QAction *> accoes = menuBar()->actions();
    const auto primeira = std::ranges::find_if(
        accoes, [](const QAction *a) { return a->isVisible() && a->isEnabled() && !a->isSeparator(); });
    if (primeira != accoes.end())
        menuBar()->setActiveAction(*primeira);
}

void frmMain::criarEntrada(const EntradaMenu &entrada) {
    const QString chave = entrada.chave.toString();
    QWidget *pai = entrada.pai.isEmpty() ? static_cast<QWidget *>(menuBar()) : m_menus.value(entrada.pai.toString());
    QAction *accao = nullptr;
    if (temFilhas(entrada)) {
        auto *menu = new QMenu(pai);
        menu->setObjectName(u"menu"_s + chave);
        m_menus.insert(chave, menu);
        accao = menu->menuAction();
    } else {
        accao = new QAction(pai);
        connect(accao, &QAction::triggered, this, [this, &entrada] { SmartMenuXP_Click(entrada); });
    }
    pai->addAction(accao);
    accao->setObjectName(chave);
    if (!entrada.pai.isEmpty()) // the bar itself stays plain
        accao->setIcon(icones::icone(entrada.icone.toString(), icones::Uso::Menu));
    m_accoes.insert(chave, accao);
}

// A form that is not built yet is not offered, and a branch without a shown entry neither.
bool frmMain::mostrada(const EntradaMenu &entrada) const {
    if (entrada.comEstado && !m_estados.contains(entrada.chave.toString()))
        return false;
    if (!entrada.form.isEmpty())
        return registoForms().construido(entrada.form.toString());
    return std::ranges::any_of(menuPrincipal(),
                               [&](const EntradaMenu &filha) { return filha.pai == entrada.chave && mostrada(filha); });
}

void frmMain::aplicarEstados() {
    for (const EntradaMenu &entrada : menuPrincipal())
        m_accoes[entrada.chave.toString()]->setVisible(mostrada(entrada));
}

void frmMain::AlterarEstadosMenus() {
    Rotina("frmMain.AlterarEstadosMenus", [this] {
        BuscarEstadoMenu();
        aplicarEstados();
        mostrarEstadoDaBase();
    });
}
