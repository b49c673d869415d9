#pragma once

#include "views/familiaHistogramas.h"
#include "views/forms/formVista.h"
#include "views/forms/painelVista.h"
#include "views/histograma.h"

class TChart;
class Vigia;
class QComboBox;
class QLabel;
class QStackedLayout;

// A histogram of the family: its row says what it counts.
class FormHistograma : public FormVista {
    Q_OBJECT
public:
    FormHistograma(const MembroHistograma &membro, const FabricaPainel &fabrica, QWidget *pai = nullptr);

    void CarregarCombos();
    void CarregarDadosDeSeriesSelleccionadas();

protected:
    void closeEvent(QCloseEvent *evento) override;

private:
    QByteArray fonte(const char *rotina) const;
    void criarFaixaDoIntervalo();
    void carregar();
    std::vector<double> lerValores(const QList<Escolha> &seleccao, const Vigia &vigia) const;
    Limites limitesDe(const QStringList &chave) const;
    std::optional<histograma::Extremos> extremosDe(const QList<Escolha> &seleccao) const;
    QString listaDe(const QList<Escolha> &seleccao) const;
    void mostrarBaldes(const std::vector<histograma::Balde> &baldes);
    void terminarCarga();
    void cmdImprimir_Click();
    void cmdJPG_Click();

    const MembroHistograma &m_membro;
    PainelVista *m_painel;
    TChart *m_chart;
    TChart *m_fundo;
    QStackedLayout *m_pilha;
    QComboBox *m_cboIntervalo;
    QLabel *m_lblTotal;
    QString m_inicio;
    QString m_fim;
    QString m_textoSensores;
    QString m_sufixoZoom;
    bool m_emCarga = false;
    bool m_parar = false;
};
