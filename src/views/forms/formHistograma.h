#pragma once

#include "views/familiaHistogramas.h"
#include "views/forms/formVistaGrafica.h"
#include "views/histograma.h"

class QComboBox;
class QLabel;

// A histogram of the family: its row says what it counts.
class FormHistograma : public FormVistaGrafica {
    Q_OBJECT
public:
    FormHistograma(const MembroHistograma &membro, const FabricaPainel &fabrica, QWidget *pai = nullptr);

    void CarregarCombos();

private:
    void criarFaixaDoIntervalo();
    void carregar(const Vigia &vigia) override;
    void esvaziar() override;
    std::vector<double> lerValores(const QList<Escolha> &seleccao, const Vigia &vigia);
    Limites limitesDe(const QStringList &chave);
    std::optional<histograma::Extremos> extremosDe(const QList<Escolha> &seleccao) const;
    QString listaDe(const QList<Escolha> &seleccao) const;
    void mostrarBaldes(const std::vector<histograma::Balde> &baldes);
    void cmdImprimir_Click();
    void cmdJPG_Click();

    const MembroHistograma &m_membro;
    QComboBox *m_cboIntervalo;
    QLabel *m_lblTotal;
    QString m_textoSensores;
};
