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
    void preparar() override;
    bool carregar(const Vigia &vigia) override;
    void esvaziar() override;
    // The limits that the colours follow: those of the first record stored of the last choice.
    struct Regra {
        Limites limites;
        QString desde;        // when that record was stored; empty: there is none
        bool mudaram = false; // a reading of the same in the range has others
    };
    std::vector<double> lerValores(const Vigia &vigia);
    void lerLinhas(const Escolha &escolha, bool comLimites, const Vigia &vigia, std::vector<double> &valores);
    Regra regraDe(const QStringList &chave);
    QString fraseDosLimites() const;
    QString semDesenho() const override;
    std::optional<histograma::Extremos> extremosDe(const QList<Escolha> &seleccao) const;
    QString listaDe(const QList<Escolha> &seleccao) const;
    void mostrarBaldes(const std::vector<histograma::Balde> &baldes);
    void cmdImprimir_Click();
    void cmdJPG_Click();

    const MembroHistograma &m_membro;
    QComboBox *m_cboIntervalo;
    QLabel *m_lblTotal;
    QString m_textoSensores;
    double m_intervalo = 0;
    size_t m_lidos = 0;
    Regra m_regra;
};
