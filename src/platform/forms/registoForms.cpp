#include "platform/forms/registoForms.h"

#include <QApplication>
#include <QDialog>
#include <QEventLoop>

#include <algorithm>

RegistoForms &registoForms() {
    if (!estado().forms)
        estado().forms = std::make_unique<RegistoForms>();
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
        QWidget *janela = aberto->parentWidget() && !aberto->isWindow() ? aberto->parentWidget() : aberto;
        if (janela->isMinimized())
            janela->showNormal();
        janela->show();
        janela->raise();
        janela->activateWindow();
        aberto->setFocus();
        return aberto;
    }
    const auto entrada = m_entradas.constFind(nome);
    if (entrada == m_entradas.constEnd())
        return nullptr;
    const Modo modo = entrada->modo;
    QWidget *novo = entrada->fabrica(dono);
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
    const QPointer<QWidget> vigiado = novo;
    if (auto *dialogo = qobject_cast<QDialog *>(novo)) {
        dialogo->exec();
    } else {
        novo->setWindowModality(Qt::ApplicationModal);
        QEventLoop ciclo;
        QObject::connect(novo, &QObject::destroyed, &ciclo, &QEventLoop::quit);
        novo->show();
        ciclo.exec();
    }
    return vigiado;
}

void RegistoForms::anunciar(QWidget *form) {
    m_abertos.removeIf([](const QPointer<QWidget> &p) { return p.isNull(); });
    m_abertos.append(form);
}

// A form that was closed and only waits for its destruction is not loaded any more.
QWidget *RegistoForms::form(const QString &nome) const {
    for (const QPointer<QWidget> &p : m_abertos)
        if (p && p->objectName() == nome &&
            !(p->isHidden() && p->testAttribute(Qt::WA_WState_ExplicitShowHide) &&
              p->testAttribute(Qt::WA_DeleteOnClose)))
            return p;
    return nullptr;
}

bool RegistoForms::activo(const QString &nome) const {
    return form(nome) != nullptr;
}

QStringList RegistoForms::activos() const {
    QStringList nomes;
    for (const QPointer<QWidget> &p : m_abertos)
        if (p && form(p->objectName()))
            nomes.append(p->objectName());
    return nomes;
}
