#pragma once

#include "core/estado.h"

#include <QHash>
#include <QPointer>
#include <QStringList>
#include <QWidget>

#include <functional>

// Every form of the system by name. The menu names a form; nothing else needs to know it. A form's factory makes the
// widget; its objectName becomes the form's name. A form without a factory is not built yet and is not offered.
class RegistoForms : public Servico {
public:
    enum class Modo { Filho, Modal };
    using Fabrica = std::function<QWidget *(QWidget *dono)>;

    void registar(const QString &nome, Fabrica fabrica, Modo modo = Modo::Filho);
    bool construido(const QString &nome) const;
    QStringList nomes() const { return m_entradas.keys(); }

    // Shows the form; one that is loaded already comes to the front. A modal one returns after it has closed.
    // Null when the name has no factory.
    QWidget *abrir(const QString &nome);

    // Loaded forms, whoever made them: every top-level or hosted widget that was announced.
    void anunciar(QWidget *form);
    bool activo(const QString &nome) const;
    QWidget *form(const QString &nome) const;
    QStringList activos() const;

    // How a child form gets its window (the main shell puts it into its work area), and who owns dialogs.
    std::function<void(QWidget *form)> alojar;
    // Whoever wrote new data calls this; the main shell looks again at what its menu may offer.
    std::function<void()> alterarEstadosMenus;
    // The main shell takes the language of the settings.
    std::function<void()> alterarLingua;
    QPointer<QWidget> dono;

private:
    struct Entrada {
        Fabrica fabrica;
        Modo modo;
    };
    QHash<QString, Entrada> m_entradas;
    QList<QPointer<QWidget>> m_abertos;
};

RegistoForms &registoForms();
