#pragma once

#include <QDialog>
#include <QTimer>

// The splash: a shaped window whose timer connects to the database, once, and then closes it.
class frmIconCompactarErepararBD : public QDialog {
    Q_OBJECT
public:
    frmIconCompactarErepararBD();
    void mostrarAteAcabar();

protected:
    void paintEvent(QPaintEvent *evento) override;
    void reject() override {} // cannot be stopped; it is gone at once anyway

private:
    void TimerEspera_Timer();
    QTimer m_timerEspera;
    bool m_pintado = false;
};
