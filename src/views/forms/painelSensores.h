#pragma once

#include "platform/forms/grelha.h"
#include "views/forms/painelVista.h"
#include "views/sensores.h"

// What the panel needs to know of its view.
struct ConfigPainel {
    QString form;
    const RegraTipo *regra;
    QString formTodos = {}; // whose section names the row of all sensors; empty: the view's
    bool semMac = false;    // a printed page names a unit without its hardware address
};

// The panel of the views over sensors: all sensors of the quantity, narrowed to a group or unit, and the chosen ones.
class PainelSensores : public PainelVista {
    Q_OBJECT
public:
    PainelSensores(const ConfigPainel &config, QWidget *pai);

    void CarregarListaGeral(const QString &tag);
    void CarregaListaGrupos();
    void AdicionarSondaSel();
    void EliminarSondaSel();
    void AdicionarSondaSelAll();
    void EliminarSondaSelAll();

    QList<Escolha> escolhas() const override; // in the order of adding
    QString tagDoFiltro() const { return m_filtro; }

protected:
    QString descricao(const QString &inicio, const QString &fim) const override;
    void fecharSubpaineis() override;
    int larguraPreferida() const override;
    QWidget *primeiroControlo() const override;
    bool eventFilter(QObject *objecto, QEvent *evento) override;

private:
    void criarListas();
    void criarGrupos();
    QToolButton *criarBotao(const QString &nome, const QString &simbolo, const QString &dica,
                            void (PainelSensores::*)());
    void cmdGrupos_Click();
    void grdGrupos_RequestEdit(int linha);
    void fecharGrupos();
    void encher(const QString &tag);
    void mover(Grelha *de, Grelha *para, EstadoDaLinha &estadoDe, EstadoDaLinha &estadoPara, int linha);
    void moverTodas(Grelha *de, Grelha *para, EstadoDaLinha &estadoDe, EstadoDaLinha &estadoPara);

    ConfigPainel m_config;
    QString m_textoTodos;
    Grelha *m_grdSensoresAll;
    Grelha *m_grdSensoresSel;
    Grelha *m_grdGrupos;
    QToolButton *m_cmdGrupos;
    QFrame *m_picGrupos;
    EstadoDaLinha m_estadoAll{}; // stripe of the next row of grdSensoresAll and grdGrupos
    EstadoDaLinha m_estadoSel{}; // and of grdSensoresSel
    QString m_filtro = sensores::tagTodos.toString();
    bool m_aEncher = false;
    QString m_tagPendente;
};

FabricaPainel fabricaSensores(const ConfigPainel &config);
