#pragma once

#include <QDialog>
#include <QPointer>

class QLabel;
class QProgressBar;
class QPushButton;
class QTimer;

// Shown while the button is worked with for longer than a moment.
class frmEsperaLogger : public QDialog {
    Q_OBJECT
public:
    explicit frmEsperaLogger(QWidget *dono);
    void setMensagem(const QString &texto);
    void setPorque(const QString &texto); // it takes so long; empty: nothing to say
    void setParte(int feito, int tudo);   // as a percentage
    void setCancelavel(bool sim);
    void reject() override;

Q_SIGNALS:
    void cancelar();

private:
    QLabel *m_mensagem;
    QLabel *m_porque;
    QProgressBar *m_barra;
    QPushButton *m_cancelar;
};

// For the length of one piece of work; on request nothing else of the program can be used meanwhile.
class EsperaLogger {
public:
    EsperaLogger(QWidget *form, bool desactivarPrincipal);
    ~EsperaLogger();
    EsperaLogger(const EsperaLogger &) = delete;
    EsperaLogger &operator=(const EsperaLogger &) = delete;

    frmEsperaLogger *janela() const { return m_janela; }
    // A dialog asks the user something: neither this window nor a disabled owner may stand in its way.
    void suspender();
    void retomar();

private:
    QPointer<frmEsperaLogger> m_janela;
    QPointer<QWidget> m_desactivado;
    QTimer *m_atraso;
};
