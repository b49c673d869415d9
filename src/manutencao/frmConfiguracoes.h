#pragma once

#include "manutencao/estadoCaminhos.h"

#include <QDialog>

#include <functional>

class QComboBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QTabWidget;
class QTimer;

// Paths, password and language of the installation.
class frmConfiguracoes : public QDialog {
    Q_OBJECT
public:
    explicit frmConfiguracoes(QWidget *dono);

    void done(int resultado) override;

protected:
    void resizeEvent(QResizeEvent *evento) override;

private:
    using Exame = estadoCaminhos::EstadoCaminho (*)(const QString &);
    struct Caminho {
        QLineEdit *campo;
        QLabel *estado;
        Exame exame;
    };

    void Form_Load();
    QWidget *criarDados();
    QWidget *criarPassword();
    QWidget *criarIdioma();
    void juntarCaminho(QGridLayout *grelha, const QString &nome, const QString &legenda,
                       const std::function<QString()> &escolher, Exame exame);
    void carregarLinguas();
    void cboLingua_Click();
    void mostrarEstados();
    void caber();
    QStringList guardarCaminhos();
    void cmdConcluirDados_Click();
    void cmdConfirmarPassword_Click();
    void cmdConluirIdioma_Click();

    QTabWidget *m_tiras;
    QList<Caminho> m_caminhos; // database, export, settings
    QTimer *m_exame;
    QList<QLineEdit *> m_palavras; // present, new, confirmation
    QComboBox *m_cboLingua = nullptr;
    QLabel *m_lblAvisoLingua = nullptr;
};
