#pragma once

#include "platform/forms/grelha.h"

// A list whose rows are ticked: by a click on the mark, a double click on the row, Enter or the space bar.
class ListaMarcada : public Grelha {
    Q_OBJECT
public:
    // The first column holds the marks.
    ListaMarcada(const QString &nome, const QStringList &titulos);

    int juntar(const QStringList &celulas); // unmarked
    bool marcada(int linha) const;
    void marcar(int linha, bool sim);
    // Without the mark: 0 is the first column given.
    QString texto(int linha, int coluna) const { return celula(linha, coluna + 1); }

Q_SIGNALS:
    void mudou(int linha);

protected:
    void keyPressEvent(QKeyEvent *evento) override;
    void mouseDoubleClickEvent(QMouseEvent *evento) override;

private:
    void trocar(int linha);
};
