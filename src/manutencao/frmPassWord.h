#pragma once

#include <QDialog>

class QLineEdit;

// Asks for the installation's password; what follows a right one is told by estado().ObjectivoPassWord: 1 and 3 set
// EliminarConfirmado for the caller, who waits, 2 goes on to the maintenance of sensors.
class frmPassWord : public QDialog {
    Q_OBJECT
public:
    explicit frmPassWord(QWidget *dono);
    ~frmPassWord() override;

protected:
    bool eventFilter(QObject *objecto, QEvent *evento) override;
    void paintEvent(QPaintEvent *evento) override;

private:
    void txtPassWord_KeyUp();
    void acertou();

    QLineEdit *m_txtPassWord;
    bool m_aceite = false;
};
