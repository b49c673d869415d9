#pragma once

#include "shell/menu.h"

#include <QHash>
#include <QMainWindow>
#include <QSet>
#include <QTimer>

#include <functional>

class QLabel;
class QMdiArea;
class QMdiSubWindow;
class QMenu;
class QPushButton;

// The main window: the work area with the child forms, the menu built from what the database holds, the bar below.
class frmMain : public QMainWindow {
    Q_OBJECT
public:
    frmMain();
    ~frmMain() override;

    static QSize tamanhoInicial(const QWidget &janela); // all of it on a small screen too

    void criarAtalhos();
    void pBuildMenus();
    void abrirMenu();
    void BuscarEstadoMenu();
    void AlterarEstadosMenus();
    void AlterarLingua();
    bool VerificarDLL1Wire();
    bool VerificarSeExistemFormsActivos() const;
    bool FormEstaActivo(const QString &nome) const;
    void FecharAplicacao() {} // nothing to do; the process end closes the database
    void setColour();
    void mostrarEstadoDaBase();

    // The call to the 1-Wire library; fails by throwing. None: the library is missing.
    std::function<void()> chamar1Wire;

protected:
    void closeEvent(QCloseEvent *evento) override;
    void changeEvent(QEvent *evento) override;

private:
    void MDIForm_Load();
    void definirTitulo();
    void criarBarra();
    void alojar(QWidget *form);
    void SmartMenuXP_Click(const EntradaMenu &entrada);
    void criarEntrada(const EntradaMenu &entrada);
    void nomearEntradas();
    bool mostrada(const EntradaMenu &entrada) const;
    void aplicarEstados();
    void encherJanelas(QMenu *menu);
    void emMosaico();
    void mostrarJanelas();
    void menuDaArea(const QPoint &onde);
    void descarregarFormularios();

    QMdiArea *m_area;
    QPushButton *m_sair;
    QPushButton *m_janelas; // there while a child is open
    QLabel *m_estadoBD;
    QSet<QString> m_estados;
    QHash<QString, QAction *> m_accoes; // by menu key
    QHash<QString, QMenu *> m_menus;
    QTimer m_vigiaBD; // is the open file still in its place?
    bool m_ocupado = false;
};
