#pragma once

#include "poseidon/descarga/acerto2251.h"
#include "poseidon/descarga/descarga2251.h"
#include "poseidon/descarga/pesquisa2251.h"
#include "poseidon/forms/grelhaDispositivos.h"

#include <QPointer>
#include <QTimer>
#include <QWidget>

class QBoxLayout;
class QCheckBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class Vigia;

// The one screen of all work with network units: it shows the list, and what is under way. The work itself lies in
// Pesquisa2251, Descarga2251 and Acerto2251.
class frmDescarregar2251 : public QWidget {
    Q_OBJECT
public:
    explicit frmDescarregar2251(QWidget *pai = nullptr);

    QSize sizeHint() const override { return QWidget::sizeHint().expandedTo(QSize(1060, 480)); }
    const listaPoseidons::Lista &lista() const { return m_lista; }
    void definirTempos(const Acerto2251::Tempos &tempos) { m_acerto->definirTempos(tempos); }

protected:
    void showEvent(QShowEvent *evento) override;
    void closeEvent(QCloseEvent *evento) override;
    bool eventFilter(QObject *objecto, QEvent *evento) override;

private:
    // Layout
    QPushButton *criarBotao(const QString &nome, const QString &omissao, void (frmDescarregar2251::*accao)());
    QLabel *criarEtiqueta(const QString &nome, const QString &texto, QWidget *parceiro = nullptr);
    QBoxLayout *montarTopo();
    QBoxLayout *montarOpcoes();
    QLayout *montarInfo();
    void ligarLogica();

    // Search and remote units
    void PesquisarRede();
    void cmdPesquisar_Click() { PesquisarRede(); }
    void mostrarLuz(QLabel *imagem, bool verde);
    void fimDaPesquisa(bool comResposta);
    void cmdConectar_Click();
    void ConnectarA_URL(const QString &endereco);
    void TimerFim_Timer();

    // Download, clock, file
    void cmdDescarregar_Click();
    void cmdActualizar_Click();
    void importarLog(int linha);
    void mnuReporLeituras_Click(int linha);
    void reporLeituras(const QString &caminho, const Vigia &vigia);
    void terminarDescarga();
    void LigarDesligarBarraDeslizante(bool ligar);

    // Rows
    void marcar(int linha);
    bool guardarCelula(int linha, Coluna coluna, const QString &texto);
    ModeloDispositivos::Dito dizer(int linha) const;
    void mostrarLinha(int linha);
    void mostrarResultado(int linha);
    void mostrarInfo(const QString &texto, const QString &pormenor, bool falha);
    void esconderInfo();
    void ActDesactMediasEApagarLog(bool activar);
    void txtNMedias_LostFocus();
    void chkClearMemory_Click();
    void abrirMenu(int linha, const QPoint &onde);
    void mnuTelnet_Click(int linha);
    void mnuInternetExplorer_Click(int linha);
    void ActivarDesactivarBotaoDescarregar();

    void bloquear(bool bloqueado);

    listaPoseidons::Lista m_lista;
    Pesquisa2251 *m_pesquisa;
    Descarga2251 *m_descarga;
    Acerto2251 *m_acerto;
    ClienteXml m_xml;

    ModeloDispositivos *m_modelo;
    GrelhaDispositivos *m_grelha;
    QPushButton *m_cmdPesquisar = nullptr, *m_cmdConectar = nullptr;
    QPushButton *m_cmdDescarregar = nullptr, *m_cmdActualizar = nullptr;
    QLineEdit *m_txtTexto = nullptr, *m_txtNMedias = nullptr;
    int m_linhaDasMedias = 0; // whose number stands in m_txtNMedias; 0: none
    QLabel *m_imgPesquisa = nullptr, *m_imgConnect = nullptr;
    QLabel *m_lblNLeituras = nullptr, *m_lblMedias = nullptr, *m_lblClearMemory = nullptr;
    QLabel *m_lblInfo = nullptr, *m_lblInfoDesc = nullptr, *m_lblPormenor = nullptr;
    QCheckBox *m_chkClearMemory = nullptr;
    QProgressBar *m_ProgressBar = nullptr;
    QTimer m_TimerProgressBar, m_TimerFim;
    QPointer<QWidget> m_focoAntes;
    bool m_reposto = false;
};
