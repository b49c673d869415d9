#pragma once

#include "core/ambiente.h"

#include <QPointer>
#include <QWidget>

// Message boxes and pickers on the screen. Boxes bear the application's title, and belong to the window that is worked
// with: that of another would come before it.
class DialogosQt : public Dialogos {
public:
    DialogosQt();
    void mensagem(const QString &texto, Estilo estilo) override;
    // Whatever is asked destroys something, which the text names: No is the default, also for Escape.
    bool pergunta(const QString &texto) override;
    int escolher(const QString &texto, const QStringList &opcoes, int actual) override;
    QString abrirFicheiro(const QString &filtro, const QString &pasta) override;
    QString gravarFicheiro(const QString &nomeProposto, const QString &pasta, const QString &filtro) override;
    QString escolherPasta(const QString &inicio) override;
    bool mensagemComBotao(const QString &texto, const QString &botao) override;
    bool abrirPasta(const QString &pasta) override;

private:
    QWidget *dono() const;
    QObject m_contexto;         // of the connection
    QPointer<QWidget> m_ultima; // the last window that had the keyboard
};
