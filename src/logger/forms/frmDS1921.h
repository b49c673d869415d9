#pragma once

#include "core/ambiente.h"
#include "core/eventos.h"
#include "core/falha.h"
#include "core/rotina.h"
#include "logger/controloDS1921.h"

#include <QButtonGroup>
#include <QPointer>
#include <QWidget>

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <type_traits>

class EsperaLogger;
class Grelha;
class QCheckBox;
class QComboBox;
class QDateEdit;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QStackedWidget;
class QTimeEdit;
class QTimer;
class TChart;

namespace pecas1921 {
class EtiquetaClicavel;
class Separador;
} // namespace pecas1921

// Reads a button, programs a mission on it, stops it and fetches its samples.
class frmDS1921 : public QWidget {
    Q_OBJECT
public:
    explicit frmDS1921(QWidget *pai = nullptr);

    static constexpr int passos = 6;
    QSize sizeHint() const override;

protected:
    void showEvent(QShowEvent *evento) override;
    void closeEvent(QCloseEvent *evento) override;
    void keyPressEvent(QKeyEvent *evento) override;

private:
    enum Aba { Assistente, Resultados, Estado, Grafico, abas };

    // frmDS1921.cpp
    void Form_Load();
    QWidget *criarCabecalho();
    QWidget *criarAbas();
    QWidget *criarResultados();
    QWidget *criarGrafico();
    void mostrarAba(Aba aba);
    void permitirAba(Aba aba, bool permitida);
    void trocarDeAba(int passo);

    // frmDS1921_assistente.cpp
    QWidget *criarAssistente();
    QWidget *criarPasso0();
    QWidget *criarPasso1();
    QWidget *criarPasso2();
    QWidget *criarPasso3();
    QWidget *criarPasso4();
    QWidget *criarPasso5();
    void mostrarPasso(int passo);
    void cmdAvancar_Click();
    void cmdRetroceder_Click();
    void cmdConcluir_Click();
    void mostrarAtraso();
    void InicioMissao();
    bool recusar(int passo, QWidget *controlo, const QString &mensagem);
    bool verificarPrograma();
    bool ActualizarIbutton();
    void CarregarCombos();
    QDateTime inicioEscolhido() const;

    bool aceitarAlarmes();
    void prepararAssistente();
    struct Digitado;
    Digitado digitado() const;
    void repor(const Digitado &d);

    // frmDS1921_escolha.cpp
    bool escolherBotao();

    // frmDS1921_estado.cpp
    QWidget *criarEstado();
    QWidget *criarEstadoDaMissao();
    QWidget *criarTemperaturasERelogio();
    QWidget *criarBotoesDoEstado();
    QLineEdit *caixaDoEstado(const QString &nome, QString CaixasDS1921::*campo, int caracteres);
    void mostrarCaixas();
    void LimparTexts();
    void ResetEstado();
    void lblNumeroMissoes_Click();
    void txtPass_Change(const QString &palavra);
    void TimerNumeroLeiturasErro_Timer();

    // frmDS1921_leitura.cpp
    void cmdLer_Click();
    void cmdLerDados_Click();
    bool lerRegistador(bool comDados, bool falhaDita = false);
    void mostrarRegisto();
    void BuscarDadosPeloObjecto();
    void acabarLeitura(bool comDados);
    void lerAmostras();
    bool DownloadLog();
    void mostrarAmostras(const std::vector<ControloDS1921::Linha> &linhas);
    void AdicionarLinha(int numero, const ControloDS1921::Linha &linha);
    void AdicionarLinhaAlarmes(const SequenciasAlarme::Sequencia &sequencia);
    void limparGrelhas();
    void CarregarDados();
    void LimparGrafico();
    void MudarEstadoTabGrafico(bool mostrar);
    void avisarAlterouMenus();
    void esquecerRegistador();
    void acertarAbas();

    // frmDS1921_fim.cpp
    bool conferirRegistador(const QString &senao = {});
    bool confirmarPrograma();
    QString comCausa(const QString &mensagem) const;
    QString eliminadas() const;
    void cmdPararMissao_Click();
    void TerminarMissao(bool confirmado);
    void VerificarPassword();
    void acabarMissao(const std::function<void()> &aoTerminar);
    bool PerguntarResetRegistadorAntigo(const QString &pergunta);
    void FormatarDS1921();

    // One thing the user asked for: nothing else starts meanwhile, the window may go at any pass. What only reads can
    // be cancelled throughout, what writes only while another program holds the adapter.
    enum class Genero { Leitura, Descarga, Escrita };
    void accao(const char *fonte, Genero genero, const QString &mensagem, const std::function<void()> &corpo);
    // A routine within it. What goes wrong is reported and ends the routine alone; a stop ends the whole.
    template <typename Corpo>
    std::invoke_result_t<Corpo> passo(const char *fonte, Corpo &&corpo) {
        const Vigia vigia(this);
        if constexpr (std::is_void_v<std::invoke_result_t<Corpo>>) {
            Rotina(fonte, corpo);
            verificar(vigia, this);
        } else {
            auto resultado = Rotina(fonte, corpo);
            verificar(vigia, this);
            return resultado;
        }
    }
    // Static: the form may have gone, and nothing of it is touched then.
    static void verificar(const Vigia &vigia, const frmDS1921 *form);
    std::function<void()> passagem(Genero genero);
    std::function<void()> passagemPaciente();
    void comDialogo(const std::function<void()> &dialogo);
    bool perguntar(const QString &texto);
    void dizer(const QString &texto, Dialogos::Estilo estilo);
    void avisar(const QString &texto);
    void criticar(const QString &texto);
    void cancelavel(bool sim);
    void devolverFoco(QWidget *foco);

    // What was typed in the assistant, and for which button. Kept when it could not be written.
    struct Digitado {
        QString ROMID, registador, missao, intervalo, calibracao, minimo, maximo;
        QDateTime inicio;
        bool cicloContinuo = false;
    };
    std::optional<Digitado> m_porEscrever;

    std::shared_ptr<ControloDS1921> m_logica = std::make_shared<ControloDS1921>();
    ChaveMissao m_clausulaMissao; // of the deletion in progress
    int m_aceites = 0;            // samples that are not stored, and that the user has agreed to lose
    bool m_mostradas = false;     // grids and chart hold all samples of this reading
    int PassoAssistente = 0;
    bool m_ocupado = false;
    bool Ocupado = false; // a download shows its rows
    bool m_cancelada = false;
    bool m_reposto = false;
    EsperaLogger *m_espera = nullptr;
    std::vector<ControloDS1921::Linha> LeiturasGrafico;

    QStackedWidget *m_frames = nullptr;
    std::array<pecas1921::Separador *, abas> m_separadores{};
    std::array<QWidget *, abas> m_framesDasAbas{};
    QLabel *m_lblDescricaoRegistador = nullptr;
    QLabel *m_lblMissao = nullptr;
    pecas1921::EtiquetaClicavel *m_lblNumeroMissoes = nullptr;
    QLineEdit *m_txtPass = nullptr;
    QProgressBar *m_progresso = nullptr;

    QStackedWidget *m_assistente = nullptr;
    QLabel *m_lblPasso = nullptr;
    QPushButton *m_cmdRetroceder = nullptr;
    QPushButton *m_cmdAvancar = nullptr;
    QPushButton *m_cmdConcluir = nullptr;
    QLabel *m_lblDataHoraLogger = nullptr;
    QLabel *m_lblDataHoraPC = nullptr;
    QLineEdit *m_txtDescricaoRegistador = nullptr;
    QLineEdit *m_txtDescricaoMissao = nullptr;
    QDateEdit *m_dataInicio = nullptr;
    QTimeEdit *m_horaInicio = nullptr;
    QLabel *m_lblLabelMin = nullptr;
    QComboBox *m_cboIntervalo = nullptr;
    QComboBox *m_cboCalibracao = nullptr;
    QComboBox *m_cboLimMin = nullptr;
    QComboBox *m_cboLimMax = nullptr;
    QCheckBox *m_chkCicloContinuo = nullptr;
    QLabel *m_lblDataAproximada = nullptr;

    std::vector<std::pair<QLineEdit *, QString CaixasDS1921::*>> m_caixas;
    QLabel *m_lblNleituras = nullptr;
    QTimer *m_timerLeituras = nullptr;
    int m_piscadelas = 0;
    QPushButton *m_cmdLer = nullptr;
    QPushButton *m_cmdLerDados = nullptr;
    QPushButton *m_cmdPararMissao = nullptr;

    Grelha *m_grdTemps = nullptr;
    Grelha *m_grdAlarmes = nullptr;
    QLabel *m_lblResumo = nullptr;
    QPushButton *m_cmdGrafico = nullptr;
    TChart *m_chart = nullptr;
};
