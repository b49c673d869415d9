#pragma once

#include "views/familiaGraficos.h"
#include "views/forms/formVistaGrafica.h"
#include "views/notas.h"

#include <QTimer>

// A line chart of the family: its row says what it shows.
class FormGrafico : public FormVistaGrafica {
    Q_OBJECT
public:
    FormGrafico(const MembroGrafico &membro, const FabricaPainel &fabrica, QWidget *pai = nullptr);

    void ConfigurarGrafico();

private:
    // The three that stand from the beginning.
    enum SerieFixa { serieLeituras, serieMaximo, serieMinimo, seriesFixas };

    bool carregar(const Vigia &vigia) override;
    void esvaziar() override;
    void mostrarCarga() override;
    bool carregarSeleccao(const Vigia &vigia);
    double AdicionarValorAoGrafico(const Escolha &escolha);
    double ConfigurarGraficoComSeries(const Escolha &escolha);
    QStringList chaveDaSerie(int serie) const;
    QStringView colunaDaData(double y) const;
    notas::Lugar lugarDe(int serie, int indice) const;
    void ConfigurarBottomAxis();
    void ajustarEixoEsquerdo();
    void mostrarMedia(std::optional<double> media);
    void retirar(const QStringList &chave);
    void TChart_OnClickSeries(int serie, int indice, Qt::MouseButton botao, const QPoint &posicao);
    void criarSaidas();
    void cmdImprimir_Click();
    void mnuExportCSV_Click();
    void mnuExportJPG_Click();
    std::optional<qint64> ExportarCSV(const QString &caminho);
    void abrirPontos(int serie, int indice);
    QString notaDe(int serie, int indice) const;

    const MembroGrafico &m_membro;
    QTimer m_timer1;
    QTimer m_timer2;
    int m_lidas = 0; // choices that were read to their end
    size_t m_indiceCor = 0;
};
