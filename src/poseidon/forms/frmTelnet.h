#pragma once

#include "platform/unit/Consola.h"

#include <QStringList>
#include <QWidget>

#include <memory>

class QLineEdit;
class QPlainTextEdit;
class QPushButton;

// The terminal: what a unit's console says, and lines typed to it.
class frmTelnet : public QWidget {
    Q_OBJECT
public:
    explicit frmTelnet(QWidget *pai = nullptr);

    QSize sizeHint() const override { return QWidget::sizeHint().expandedTo(QSize(640, 420)); }
    // Takes the address and port that were left for the terminal; not while it is connected.
    void CarregarEndereco();

protected:
    void showEvent(QShowEvent *evento) override;
    void closeEvent(QCloseEvent *evento) override;
    bool eventFilter(QObject *objecto, QEvent *evento) override;

private:
    QLineEdit *criarCaixa(const QString &nome, const QString &legenda);
    QPushButton *criarBotao(const QString &nome, const QString &legenda, void (frmTelnet::*accao)());
    void cmdLigar_Click();
    void cmdDesligar_Click();
    void cmdSyncTime_Click();
    void enviarLinha();
    void Winsock1_DataArrival();
    void Winsock1_Error(int numero, const QString &descricao);
    void mostrar(const QString &texto);
    void acrescentar(const QString &texto);
    void guardarNoHistorico(const QString &linha);
    void recuar();
    void avancar();
    void mostrarEstado();

    std::unique_ptr<Consola> Winsock1;
    QLineEdit *m_txtEndereco, *m_txtPorta, *m_txtLinha;
    QPlainTextEdit *m_Text1;
    QPushButton *m_cmdLigar, *m_cmdDesligar, *m_cmdSyncTime;
    QStringList Historico;
    qsizetype m_posicao = 0; // of the entry that the next line takes, or that is shown
    QStringList Escrito;
    QString TextoTerminal;
    bool m_reposto = false;
};
