#pragma once

#include "views/familiaGraficos.h"
#include "views/forms/formVista.h"
#include "views/forms/painelVista.h"
#include "views/pontoActual.h"

#include <QTimer>

class CargaEmCurso;
class TChart;
class TSerie;
class Vigia;
class QStackedLayout;

// A line chart of the family: its row says what it shows.
class FormGrafico : public FormVista {
    Q_OBJECT
public:
    FormGrafico(const MembroGrafico &membro, const FabricaPainel &fabrica, QWidget *pai = nullptr);

    void ConfigurarGrafico();
    void ActualizarGrafico();
    void CarregarDadosDeSeriesSelleccionadas();

    const PontoActual &pontoActual() const { return m_ponto; }
    QString sufixoZoom() const { return m_sufixoZoom; }

protected:
    void closeEvent(QCloseEvent *evento) override;

private:
    // The three that stand from the beginning.
    enum SerieFixa { serieLeituras, serieMaximo, serieMinimo, seriesFixas };

    QByteArray fonte(const char *rotina) const;
    void carregar();
    void limparGrafico();
    void carregarSeleccao(const Vigia &vigia);
    double AdicionarValorAoGrafico(const Intervalo &intervalo, const Escolha &escolha);
    double ConfigurarGraficoComSeries(const Intervalo &intervalo, const Escolha &escolha);
    QStringList chaveDaSerie(int serie) const;
    QStringView colunaDaData(double y) const;
    void ConfigurarBottomAxis();
    void ajustarEixoEsquerdo();
    void mostrarMedia(double media);
    void mostrarGrafico(bool visivel);
    void terminarCarga();
    void esvaziar();
    void mostrarCarga();
    void retirar(const QStringList &chave);
    void TChart_OnClickSeries(int serie, int indice, Qt::MouseButton botao, const QPoint &posicao);
    void criarSaidas();
    void cmdImprimir_Click();
    void mnuExportCSV_Click();
    void mnuExportJPG_Click();
    bool ExportarCSV(const QString &caminho, const QString &inicio, const QString &fim);
    void abrirPontos(int serie, int indice);
    QString notaDe(int serie, int indice) const;

    const MembroGrafico &m_membro;
    PainelVista *m_painel;
    TChart *m_chart;
    TChart *m_fundo;
    QStackedLayout *m_pilha;
    QTimer m_timer1;
    QTimer m_timer2;
    PontoActual m_ponto;
    QList<Escolha> m_carregadas; // in the order of their series
    QString m_inicio;            // range of what is loaded; m_inicio is empty when nothing is
    QString m_fim;
    QString m_sufixoZoom;
    size_t m_indiceCor = 0;
    bool m_emCarga = false;
    bool m_parar = false;
};
