#pragma once

#include <QDialog>

class QLabel;
class QPushButton;
class QScrollArea;

// The error dialog: never modal, one at a time, its details below the fold.
class frmErro : public QDialog {
    Q_OBJECT
public:
    explicit frmErro(QWidget *dono);

    void definirFrase(const QString &frase);
    void definirDetalhe(const QString &mensagem);

protected:
    bool event(QEvent *evento) override;
    void keyPressEvent(QKeyEvent *evento) override;
    bool eventFilter(QObject *alvo, QEvent *evento) override;

private:
    void seguirModal();
    void mudarDono(QWidget *dono);
    void cmdDetalhe_Click();
    void aplicarAltura();

    QLabel *m_lblFrase;
    QLabel *m_lblDetalhe;
    QScrollArea *m_rolo;
    QPushButton *m_cmdDetalhe;
    bool m_aberto = false;
};
