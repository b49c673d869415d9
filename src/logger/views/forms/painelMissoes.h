#pragma once

#include "logger/missoes.h"
#include "views/forms/painelVista.h"

class Grelha;

// What the panel needs to know of its view.
struct ConfigMissoes {
    QString form;
    bool elimina = false; // missions can be deleted here
};

// The panel of the views over missions: the loggers, and the missions of the chosen one.
class PainelMissoes : public PainelVista {
    Q_OBJECT
public:
    PainelMissoes(const ConfigMissoes &config, QWidget *pai);

    void CarregarListaGeral();
    void seleccionar(const ChaveMissao &chave);
    ChaveMissao missao() const;
    QList<Escolha> escolhas() const override;

    void cmdEliminar_Click();
    void EliminarMissaoDef(const ChaveMissao &chave);
    void desmarcar();

protected:
    QWidget *primeiroControlo() const override;
    int larguraPreferida() const override;

private:
    void criarListas();
    void criarSemDados();
    void criarEliminar();
    void grdSensoresAll_SelectionChange();
    void grdSensoresMissao_SelectionChange();
    void avisarSemDados(bool avisar);
    void TimerDadosErro_Timer();

    ConfigMissoes m_config;
    Grelha *m_grdSensoresAll;
    Grelha *m_grdSensoresMissao;
    QLabel *m_imgSemDados;
    QLabel *m_lblSemDados;
    QTimer *m_timerDadosErro;
    int m_piscadelas = 0;
};

FabricaPainel fabricaMissoes(const ConfigMissoes &config);
