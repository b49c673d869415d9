#include "core/literais.h"
#include "core/modTraducoes.h"
#include "logger/forms/frmDS1921.h"
#include "logger/forms/pecas1921.h"

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QTimer>

namespace {

constexpr int margem = 10;
constexpr int deUmaData = 18; // characters
constexpr int deUmNumero = 8;
constexpr int piscadelas = 40;
constexpr int intervaloPiscar = 200;
const QString palavraDeFormatar = u"QUINTAL"_s;

struct Linha {
    QString nome, texto;
    QLineEdit *caixa;
};

// Caption and box, in two columns side by side.
QLabel *juntar(QGridLayout *grelha, int linha, int coluna, const Linha &l) {
    QLabel *e = pecas1921::etiqueta(l.nome, l.texto, l.caixa);
    grelha->addWidget(e, linha, 2 * coluna);
    grelha->addWidget(l.caixa, linha, 2 * coluna + 1);
    return e;
}

QGridLayout *duasColunas(QGroupBox *grupo) {
    auto *grelha = new QGridLayout(grupo);
    grelha->setHorizontalSpacing(margem);
    grelha->setColumnStretch(1, 1);
    grelha->setColumnStretch(3, 1);
    return grelha;
}

QString texto(const QString &chave, const QString &omissao) {
    return modTraducoes::texto(u"DSfrmDS1921"_s, chave, omissao);
}

} // namespace

QWidget *frmDS1921::criarEstado() {
    auto *frame = pecas1921::moldura(u"FrameEstado"_s);
    auto *coluna = new QVBoxLayout(frame);
    coluna->setContentsMargins(0, margem, 0, 0);
    coluna->addWidget(criarEstadoDaMissao());
    coluna->addWidget(criarTemperaturasERelogio());
    coluna->addStretch();
    coluna->addWidget(criarBotoesDoEstado());
    m_timerLeituras = new QTimer(this);
    m_timerLeituras->setObjectName(u"TimerNumeroLeiturasErro"_s);
    m_timerLeituras->setInterval(intervaloPiscar);
    connect(m_timerLeituras, &QTimer::timeout, this, &frmDS1921::TimerNumeroLeiturasErro_Timer);
    return frame;
}

QLineEdit *frmDS1921::caixaDoEstado(const QString &nome, QString CaixasDS1921::*campo, int caracteres) {
    QLineEdit *caixa = pecas1921::caixa(nome, caracteres);
    m_caixas.emplace_back(caixa, campo);
    return caixa;
}

QWidget *frmDS1921::criarEstadoDaMissao() {
    using C = CaixasDS1921;
    auto *grupo = pecas1921::grupo(u"ReyFrameEM"_s, texto(u"ReyFrameEM.Caption"_s, u"Estado da Missão"_s));
    QGridLayout *g = duasColunas(grupo);
    const auto caixa = [this](const QString &nome, QString C::*campo) { return caixaDoEstado(nome, campo, deUmaData); };
    juntar(g, 0, 0,
           {u"lblEstMissao"_s, texto(u"lblEstMissao.Caption"_s, u"Estado da missão:"_s),
            caixa(u"txtEstadoMissao"_s, &C::txtEstadoMissao)});
    juntar(g, 1, 0,
           {u"lblInicM"_s, texto(u"lblInicM.Caption"_s, u"Inicio da missão:"_s),
            caixa(u"txtInicioMissao"_s, &C::txtInicioMissao)});
    juntar(g, 2, 0,
           {u"lblIntervalo"_s, texto(u"lblIntervalo.Caption"_s, u"Intervalo (min):"_s),
            caixa(u"txtIntervalo"_s, &C::txtIntervalo)});
    juntar(g, 3, 0,
           {u"lblAtraso"_s, texto(u"lblAtraso.Caption"_s, u"Atraso (minutos):"_s),
            caixa(u"txtAtrasoMinutos"_s, &C::txtAtrasoMinutos)});
    juntar(g, 0, 1,
           {u"lblCcontinuo"_s, texto(u"lblCcontinuo.Caption"_s, u"Ciclo continuo ligado:"_s),
            caixa(u"txtCicloContinuoLigado"_s, &C::txtCicloContinuoLigado)});
    juntar(g, 1, 1,
           {u"lblCconOc"_s, texto(u"lblCconOc.Caption"_s, u"Ciclo continuo Ocorreu:"_s),
            caixa(u"txtRollOverExecuted"_s, &C::txtRollOverExecuted)});
    m_lblNleituras = juntar(g, 2, 1,
                            {u"lblNleituras"_s, texto(u"lblNleituras.Caption"_s, u"Nº de leituras:"_s),
                             caixa(u"txtNleituras"_s, &C::txtNleituras)});
    juntar(g, 3, 1,
           {u"lblAmostrasTotais"_s, texto(u"lblAmostrasTotais.Caption"_s, u"Amostras Totais:"_s),
            caixa(u"txtAmostrasTotais"_s, &C::txtAmostrasTotais)});
    QLineEdit *fim = caixa(u"txtDataPrevistaParaAcabar"_s, &C::txtDataPrevistaParaAcabar);
    g->addWidget(pecas1921::etiqueta(u"lblDatPrevFMissao"_s,
                                     texto(u"lblDatPrevFMissao.Caption"_s, u"Data prevista para o final da missão :"_s),
                                     fim),
                 4, 0, 1, 3, Qt::AlignRight | Qt::AlignVCenter);
    g->addWidget(fim, 4, 3);
    return grupo;
}

QWidget *frmDS1921::criarTemperaturasERelogio() {
    using C = CaixasDS1921;
    auto *par = new QWidget;
    auto *temperaturas = pecas1921::grupo(u"ReyFrameTemp"_s, texto(u"ReyFrameTemp.Caption"_s, u"Temperaturas"_s));
    auto *t = new QGridLayout(temperaturas);
    t->setHorizontalSpacing(margem);
    juntar(t, 0, 0,
           {u"lblLimMaxES"_s, texto(u"lblLimMaxES.Caption"_s, u"Limite Máximo (°C):"_s),
            caixaDoEstado(u"txtLimiteMaximo"_s, &C::txtLimiteMaximo, deUmNumero)});
    juntar(t, 1, 0,
           {u"lblLimMinES"_s, texto(u"lblLimMinES.Caption"_s, u"Limite Mínimo (°C):"_s),
            caixaDoEstado(u"txtLimiteMinimo"_s, &C::txtLimiteMinimo, deUmNumero)});
    juntar(t, 2, 0,
           {u"lblAcertoTemp"_s, texto(u"lblAcertoTemp.Caption"_s, u"Calibração (°C):"_s),
            caixaDoEstado(u"txtAcertoTemp"_s, &C::txtAcertoTemp, deUmNumero)});
    auto *relogio = pecas1921::grupo(u"ReyFrameRelTR"_s, texto(u"ReyFrameRelTR.Caption"_s, u"Relógio Tempo-Real"_s));
    auto *r = new QGridLayout(relogio);
    r->setHorizontalSpacing(margem);
    juntar(r, 0, 0,
           {u"lblDatHora"_s, texto(u"lblDatHora.Caption"_s, u"Data/Hora :"_s),
            caixaDoEstado(u"txtDataHoraTempoReal"_s, &C::txtDataHoraTempoReal, deUmaData)});
    r->setRowStretch(1, 1);
    auto *linha = new QHBoxLayout(par);
    linha->setContentsMargins(0, 0, 0, 0);
    linha->addWidget(temperaturas, 1);
    linha->addWidget(relogio, 1);
    return par;
}

QWidget *frmDS1921::criarBotoesDoEstado() {
    auto *faixa = new QWidget;
    m_cmdLer = pecas1921::botao(u"cmdLer"_s, texto(u"cmdLer.Caption"_s, u"Ler"_s));
    m_cmdLer->setShortcut(QKeySequence(Qt::Key_F5));
    m_cmdLer->setToolTip(u"F5"_s);
    m_cmdLerDados = pecas1921::botao(u"cmdLerDados"_s, texto(u"cmdLerDados.Caption"_s, u"Ler Dados"_s));
    m_cmdLerDados->setShortcut(QKeySequence(Qt::Key_F6));
    m_cmdLerDados->setToolTip(u"F6"_s);
    m_cmdPararMissao = pecas1921::botao(u"cmdPararMissao"_s, texto(u"cmdPararMissao.Caption"_s, u"Terminar Missão"_s));
    m_cmdPararMissao->setEnabled(false);
    connect(m_cmdLer, &QPushButton::clicked, this, &frmDS1921::cmdLer_Click);
    connect(m_cmdLerDados, &QPushButton::clicked, this, &frmDS1921::cmdLerDados_Click);
    connect(m_cmdPararMissao, &QPushButton::clicked, this, [this] {
        accao("frmDS1921.cmdPararMissao_Click", Genero::Escrita,
              texto(u"EsperaTerminar"_s, u"A terminar a missão..."_s), [this] { cmdPararMissao_Click(); });
    });
    auto *linha = new QHBoxLayout(faixa);
    linha->setContentsMargins(0, 0, 0, 0);
    linha->addWidget(m_cmdLer);
    linha->addWidget(m_cmdLerDados);
    linha->addStretch();
    linha->addWidget(m_cmdPararMissao);
    return faixa;
}

void frmDS1921::mostrarCaixas() {
    const CaixasDS1921 &c = m_logica->caixas;
    for (const auto &[caixa, campo] : m_caixas) {
        caixa->setText(c.*campo);
        caixa->setCursorPosition(0);
    }
    m_lblDescricaoRegistador->setText(c.lblDescricaoRegistador);
    m_lblDescricaoRegistador->setToolTip(c.lblDescricaoRegistador);
    m_lblMissao->setText(c.lblMissao);
    m_lblMissao->setToolTip(c.lblMissao);
    m_lblNumeroMissoes->setText(c.lblNumeroMissoes);
    m_lblNumeroMissoes->setVisible(c.numeroVisivel);
}

void frmDS1921::LimparTexts() {
    m_logica->LimparTexts();
    mostrarCaixas();
}

void frmDS1921::ResetEstado() {
    setWindowTitle(texto(u"frmDS1921.Caption"_s, u"Registador"_s));
    m_logica->esquecer();
    mostrarCaixas();
    m_cmdLer->setEnabled(true);
    m_cmdLerDados->setEnabled(true);
    m_cmdConcluir->setEnabled(false);
}

void frmDS1921::lblNumeroMissoes_Click() {
    m_txtPass->clear();
    m_txtPass->setFocus();
}

void frmDS1921::txtPass_Change(const QString &palavra) {
    if (palavra.toUpper() != palavraDeFormatar)
        return;
    accao("frmDS1921.txtPass_Change", Genero::Escrita, texto(u"EsperaFormatar"_s, u"A formatar o registador..."_s),
          [this] {
              if (!PerguntarResetRegistadorAntigo(texto(u"ResetDataLogger"_s, u"Formatar Registador?"_s)))
                  m_cmdLer->setFocus();
          });
}

void frmDS1921::TimerNumeroLeiturasErro_Timer() {
    ++m_piscadelas;
    QPalette cores = m_lblNleituras->palette();
    const bool vermelho = m_piscadelas % 2 == 1 && m_piscadelas < piscadelas;
    cores.setColor(QPalette::WindowText, vermelho ? QColor(255, 0, 0) : palette().color(QPalette::WindowText));
    m_lblNleituras->setPalette(vermelho ? cores : QPalette());
    if (m_piscadelas >= piscadelas)
        m_timerLeituras->stop();
}
