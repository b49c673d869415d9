#pragma once

#include "views/forms/formVista.h"
#include "views/forms/painelVista.h"
#include "views/ilegiveis.h"

class TChart;
class Vigia;
class QStackedLayout;

// A view that is a chart: covered while it loads, empty when the load was stopped.
class FormVistaGrafica : public FormVista {
    Q_OBJECT
public:
    void CarregarDadosDeSeriesSelleccionadas();
    void ActualizarGrafico();

protected:
    FormVistaGrafica(const Config &config, const FabricaPainel &fabrica, QWidget *pai);
    static Config configDe(QStringView form, QStringView chaveTitulo, QStringView titulo, Exportacao exportacao);

    // What has to be right before anything of the present drawing goes; may throw.
    virtual void preparar() {}
    // Reads what was confirmed into the emptied chart; may throw. It stops by passar() once the user wants so. False:
    // a part could not be read, which has been told.
    virtual bool carregar(const Vigia &vigia) = 0;
    virtual void esvaziar();
    virtual void mostrarCarga();
    // What can be handed on; readings without a value too, since they stand in a file.
    bool comConteudo() const;
    // Why nothing is drawn, where something was looked for.
    virtual QString semDesenho() const;
    // Throws Interrompido when the user stopped the load or closed the form.
    void pararSePedido() const;
    QString sufixoZoom() const { return m_sufixoZoom; }
    PainelVista *painel() const { return m_painel; }
    TChart &chart() const { return *m_chart; }
    void closeEvent(QCloseEvent *evento) override;

    Confirmado m_mostrado; // what is drawn; empty when nothing is
    bool m_lida = false;   // all of it
    bool m_emCarga = false;
    bool m_parar = false;
    Ilegiveis m_ilegiveis; // of the load under way

private:
    void terminarCarga();

    PainelVista *m_painel;
    TChart *m_chart;
    TChart *m_fundo; // empty: covers the other while that is rebuilt
    QStackedLayout *m_pilha;
    QString m_sufixoZoom;
};
