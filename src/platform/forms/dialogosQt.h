#pragma once

#include "core/ambiente.h"

class QWidget;

// Message boxes and pickers on the screen. Boxes bear the application's title.
class DialogosQt : public Dialogos {
public:
    void mensagem(const QString &texto, Estilo estilo) override;
    // Whatever is asked destroys something, which the text names: No is the default, also for Escape.
    bool pergunta(const QString &texto) override;
    int escolher(const QString &texto, const QStringList &opcoes, int actual) override;
    QString abrirFicheiro(const QString &filtro, const QString &pasta) override;
    QString gravarFicheiro(const QString &nomeProposto, const QString &pasta, const QString &filtro) override;
    QString escolherPasta(const QString &inicio) override;
};
