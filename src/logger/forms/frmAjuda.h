#pragma once

#include <QWidget>

class QComboBox;
class QLineEdit;
class QListWidget;
class QProgressBar;
class QPushButton;

// Set-up of the 1-Wire adapter: finds its port and keeps it in the settings.
class frmAjuda : public QWidget {
    Q_OBJECT
public:
    frmAjuda();

private:
    void criarControlos();
    void cmd1WirePesquisarAuto_Click();
    void procurar();
    void CarregarListaSensores();
    void mostrarDefinicoes();

    QLineEdit *m_tipo, *m_numero, *m_adaptador;
    QComboBox *m_dispositivos;
    QListWidget *m_lista;
    QProgressBar *m_barra;
    QPushButton *m_pesquisar, *m_fechar;
};
