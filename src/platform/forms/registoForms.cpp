#include "platform/forms/registoForms.h"

#include "platform/forms/textosSimples.h"

#include <QApplication>
#include <QDialog>
#include <QEventLoop>
#include <QMdiArea>
#include <QMdiSubWindow>

#include <algorithm>

namespace {

QMdiSubWindow *alojamento(const QWidget *form) {
    return qobject_cast<QMdiSubWindow *>(form->parentWidget());
}

// A form that was closed and only waits for its destruction is not loaded any more: closing has hidden it and taken
// its WA_DeleteOnClose away. A minimised sub-window hides its form, so there the sub-window tells.
bool carregado(const QWidget *form) {
    const QWidget *janela = alojamento(form);
    if (!janela)
        janela = form;
    return !(janela->isHidden() && janela->testAttribute(Qt::WA_WState_ExplicitShowHide) &&
             !janela->testAttribute(Qt::WA_DeleteOnClose));
}

void destacar(QWidget *form) {
    QMdiSubWindow *alojada = alojamento(form);
    QWidget *janela = alojada ? alojada : form->window();
    if (janela->isMinimized())
        janela->showNormal();
    janela->show();
    janela->raise();
    janela->activateWindow();
    if (alojada && alojada->mdiArea())
        alojada->mdiArea()->setActiveSubWindow(alojada);
}

} // namespace

RegistoForms &registoForms() {
    if (!estado().forms) {
        estado().forms = std::make_unique<RegistoForms>();
        textosSimples::instalar(); // before the first window
    }
    return static_cast<RegistoForms &>(*estado().forms);
}

void RegistoForms::registar(const QString &nome, Fabrica fabrica, Modo modo) {
    m_entradas.insert(nome, {std::move(fabrica), modo});
}

bool RegistoForms::construido(const QString &nome) const {
    return m_entradas.contains(nome);
}

QWidget *RegistoForms::abrir(const QString &nome) {
    if (QWidget *aberto = form(nome)) {
        destacar(aberto);
        return aberto;
    }
    const auto entrada = m_entradas.constFind(nome);
    if (entrada == m_entradas.constEnd())
        return nullptr;
    const Modo modo = entrada->modo;
    const QPointer<QWidget> novo = entrada->fabrica(dono); // events may run while it loads
    if (!novo)
        return nullptr;
    novo->setObjectName(nome);
    novo->setAttribute(Qt::WA_DeleteOnClose);
    anunciar(novo);
    if (modo == Modo::Filho) {
        if (alojar)
            alojar(novo);
        else
            novo->show();
        return novo;
    }
    if (auto *dialogo = qobject_cast<QDialog *>(novo.data())) {
        dialogo->exec();
    } else {
        novo->setWindowModality(Qt::ApplicationModal);
        QEventLoop ciclo;
        QObject::connect(novo, &QObject::destroyed, &ciclo, &QEventLoop::quit);
        novo->show();
        if (novo) // it may have ended while it was shown
            ciclo.exec();
    }
    return novo;
}

void RegistoForms::anunciar(QWidget *form) {
    m_abertos.removeIf([](const QPointer<QWidget> &p) { return p.isNull(); });
    m_abertos.append(form);
}

QWidget *RegistoForms::form(const QString &nome) const {
    for (const QPointer<QWidget> &p : m_abertos)
        if (p && p->objectName() == nome && carregado(p))
            return p;
    return nullptr;
}

bool RegistoForms::activo(const QString &nome) const {
    return form(nome) != nullptr;
}

QStringList RegistoForms::activos() const {
    QStringList nomes;
    for (const QPointer<QWidget> &p : m_abertos)
        if (p && carregado(p))
            nomes.append(p->objectName());
    return nomes;
}
