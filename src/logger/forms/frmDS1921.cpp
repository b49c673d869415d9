#include "logger/forms/frmDS1921.h"

#include "core/datas.h"
#include "core/estado.h"
#include "core/literais.h"
#include "core/modTraducoes.h"
#include "logger/forms/esperaLogger.h"
#include "logger/forms/pecas1921.h"
#include "platform/chart/TChart.h"
#include "platform/forms/grelha.h"
#include "platform/forms/icones.h"
#include "platform/forms/lugar.h"
#include "platform/onewire/barramento.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QShortcut>
#include <QStackedWidget>

namespace {

const QString seccaoDoGrafico = u"frmGraficoHistograma1921"_s;
constexpr int margem = 10;
constexpr int alturaDoProgresso = 4;
constexpr QSize tamanhoInicial(780, 520);

lugar::Regra regraDoLugar() {
    return {u"frmDS1921"_s, u"Kelvark"_s, 0, 0}; // the capture service keeps it in its own file
}

QString texto(const QString &chave, const QString &omissao) {
    return modTraducoes::texto(u"DSfrmDS1921"_s, chave, omissao);
}

} // namespace

frmDS1921::frmDS1921(QWidget *pai) : QWidget(pai) {
    setObjectName(u"frmDS1921"_s);
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(texto(u"frmDS1921.Caption"_s, u"Registador"_s));
    setWindowIcon(icones::icone(u"registador"_s));
    setAccessibleName(windowTitle());
    m_logica->controlo.aoLerPagina = [this, vigia = Vigia(this)](int feitas, int todas) {
        if (vigia.vivo() && m_espera && m_espera->janela())
            m_espera->janela()->setParte(feitas, todas);
    };
    Rotina("frmDS1921.Form_Load", [this] { Form_Load(); });
}

void frmDS1921::Form_Load() {
    auto *disposicao = new QVBoxLayout(this);
    disposicao->setContentsMargins(margem, margem, margem, margem);
    disposicao->addWidget(criarCabecalho());
    disposicao->addWidget(criarAbas());
    m_frames = new QStackedWidget;
    m_framesDasAbas = {criarAssistente(), criarResultados(), criarEstado(), criarGrafico()};
    for (QWidget *frame : m_framesDasAbas)
        m_frames->addWidget(frame);
    disposicao->addWidget(m_frames, 1);
    m_progresso = new QProgressBar;
    m_progresso->setObjectName(u"ProgressBar1"_s);
    m_progresso->setTextVisible(false);
    m_progresso->setFixedHeight(alturaDoProgresso);
    QSizePolicy politica = m_progresso->sizePolicy();
    politica.setRetainSizeWhenHidden(true);
    m_progresso->setSizePolicy(politica);
    m_progresso->hide();
    disposicao->addWidget(m_progresso);

    CarregarCombos();
    mostrarPasso(0);
    ResetEstado();
    for (const Aba aba : {Assistente, Resultados, Grafico})
        permitirAba(aba, false);
    mostrarAba(Estado);
    m_cmdLer->setFocus();
    resize(sizeHint());
    connect(new QShortcut(QKeySequence::NextChild, this), &QShortcut::activated, this, [this] { trocarDeAba(1); });
    connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_PageDown), this), &QShortcut::activated, this,
            [this] { trocarDeAba(1); });
    connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_PageUp), this), &QShortcut::activated, this,
            [this] { trocarDeAba(-1); });
}

// Which logger and which mission, whatever tab is shown.
QWidget *frmDS1921::criarCabecalho() {
    auto *cabecalho = new QWidget;
    m_lblDescricaoRegistador = new pecas1921::EtiquetaCurta(u"lblDescricaoRegistador"_s);
    m_lblMissao = new pecas1921::EtiquetaCurta(u"lblMissao"_s);
    m_lblNumeroMissoes = new pecas1921::EtiquetaClicavel;
    m_lblNumeroMissoes->setObjectName(u"lblNumeroMissoes"_s);
    m_lblNumeroMissoes->setTextFormat(Qt::PlainText);
    QFont forte = font();
    forte.setBold(true);
    for (QLabel *l : {m_lblDescricaoRegistador, m_lblMissao, static_cast<QLabel *>(m_lblNumeroMissoes)})
        l->setFont(forte);
    // Never seen: the maintenance word is typed into it.
    m_txtPass = new QLineEdit;
    m_txtPass->setObjectName(u"txtPass"_s);
    m_txtPass->setEchoMode(QLineEdit::NoEcho);
    m_txtPass->setFrame(false);
    m_txtPass->setFixedSize(1, 1);
    QPalette invisivel = m_txtPass->palette();
    invisivel.setColor(QPalette::Base, Qt::transparent);
    m_txtPass->setPalette(invisivel);
    m_txtPass->setFocusPolicy(Qt::NoFocus);
    connect(m_lblNumeroMissoes, &pecas1921::EtiquetaClicavel::Click, this, &frmDS1921::lblNumeroMissoes_Click);
    connect(m_txtPass, &QLineEdit::textEdited, this, &frmDS1921::txtPass_Change);

    auto *linha = new QHBoxLayout(cabecalho);
    linha->setContentsMargins(0, 0, 0, 0);
    linha->addWidget(pecas1921::etiqueta(u"lblDesc"_s, texto(u"Desc"_s, u"Descrição do Registador"_s) + u':'));
    linha->addWidget(m_lblDescricaoRegistador, 1);
    linha->addSpacing(margem);
    linha->addWidget(pecas1921::etiqueta(u"lblMiss"_s, texto(u"Miss"_s, u"Missão"_s) + u':'));
    linha->addWidget(m_lblNumeroMissoes);
    linha->addWidget(m_lblMissao, 1);
    linha->addWidget(m_txtPass);
    return cabecalho;
}

QWidget *frmDS1921::criarAbas() {
    auto *faixa = new QWidget;
    auto *linha = new QHBoxLayout(faixa);
    linha->setContentsMargins(0, 0, 0, 0);
    linha->setSpacing(0);
    m_separadores = {new pecas1921::Separador(u"lblAssistente"_s, texto(u"lblAssistente.Caption"_s, u"Assistente"_s)),
                     new pecas1921::Separador(u"lblResultados"_s, texto(u"lblResultados.Caption"_s, u"Resultados"_s)),
                     new pecas1921::Separador(u"lblEstado"_s, texto(u"lblEstado.Caption"_s, u"Estado"_s)),
                     new pecas1921::Separador(u"lblGrafico"_s, texto(u"cmdGrafico.Caption"_s, u"Gráfico"_s))};
    for (int i = 0; i < abas; ++i) {
        linha->addWidget(m_separadores[size_t(i)]);
        connect(m_separadores[size_t(i)], &QAbstractButton::clicked, this, [this, i] { mostrarAba(Aba(i)); });
    }
    linha->addStretch();
    return faixa;
}

QWidget *frmDS1921::criarResultados() {
    auto *frame = pecas1921::moldura(u"FrameResultados"_s);
    const auto grelha = [](const QString &nome, const QString &titulo, const QStringList &colunas) {
        auto *g = new Grelha(nome);
        g->setAccessibleName(titulo);
        g->setColunas(colunas);
        return g;
    };
    auto *amostras = pecas1921::grupo(u"ReyFrameHoraDataRes"_s,
                                      texto(u"ReyFrameHoraDataRes.Caption"_s, u"Hora/Data Temperaturas"_s));
    m_grdTemps =
        grelha(u"grdTemps"_s, amostras->title(),
               {texto(u"NUM"_s, u"Nº"_s), texto(u"DATAHORA"_s, u"Data/Hora"_s), texto(u"TEMP"_s, u"Temperatura"_s)});
    auto *alarmes = pecas1921::grupo(u"ReyFrameAlarmesTemp"_s,
                                     texto(u"ReyFrameAlarmesTemp.Caption"_s, u"Alarmes de Temperaturas"_s));
    m_grdAlarmes = grelha(u"grdAlarmes"_s, alarmes->title(), {texto(u"ALARM"_s, u"Início <> Fim"_s)});
    const int data = fontMetrics().horizontalAdvance(datas::textoDataHora(estado().ambiente.agora()));
    m_grdTemps->alinharADireita(0);
    m_grdTemps->alinharADireita(2);
    m_grdTemps->setColumnWidth(0, 7 * fontMetrics().averageCharWidth());
    m_grdTemps->setColumnWidth(1, data + 2 * margem);
    m_grdTemps->setMinimumWidth(data + 26 * fontMetrics().averageCharWidth() + 2 * margem);
    m_grdAlarmes->setMinimumWidth(2 * data + fontMetrics().horizontalAdvance(u" <> "_s) + 3 * margem);
    m_cmdGrafico = pecas1921::botao(u"cmdGrafico"_s, texto(u"cmdGrafico.Caption"_s, u"Gráfico"_s));
    m_cmdGrafico->setEnabled(false);
    connect(m_cmdGrafico, &QPushButton::clicked, this, [this] { mostrarAba(Grafico); });

    m_lblResumo = pecas1921::etiqueta(u"lblResumo"_s, {});
    auto *daEsquerda = new QVBoxLayout(amostras);
    daEsquerda->addWidget(m_grdTemps);
    daEsquerda->addWidget(m_lblResumo);
    (new QVBoxLayout(alarmes))->addWidget(m_grdAlarmes);
    auto *lado = new QVBoxLayout;
    lado->addWidget(alarmes, 1);
    lado->addWidget(m_cmdGrafico, 0, Qt::AlignRight);
    auto *linha = new QHBoxLayout(frame);
    linha->setContentsMargins(0, margem, 0, 0);
    linha->addWidget(amostras, 6);
    linha->addLayout(lado, 5);
    return frame;
}

QWidget *frmDS1921::criarGrafico() {
    auto *frame = pecas1921::moldura(u"FrameGrafico"_s);
    m_chart = new TChart;
    m_chart->setObjectName(u"TChart1"_s);
    m_chart->setAccessibleName(texto(u"cmdGrafico.Caption"_s, u"Gráfico"_s));
    m_chart->setUnidade(u" °C"_s);
    m_chart->Left().Title =
        modTraducoes::texto(seccaoDoGrafico, u"TChart1.Axis.Left.Title.Caption"_s, u"Temperaturas ºC"_s);
    const QString titulos[] = {modTraducoes::texto(seccaoDoGrafico, u"TChart1.Series(0).Title"_s, u"Sensor"_s),
                               modTraducoes::texto(seccaoDoGrafico, u"TChart1.Series(1).Title"_s, u"Max"_s),
                               modTraducoes::texto(seccaoDoGrafico, u"TChart1.Series(2).Title"_s, u"Min"_s)};
    for (const QString &titulo : titulos)
        m_chart->AddSeries().Title = titulo;
    auto *coluna = new QVBoxLayout(frame);
    coluna->setContentsMargins(0, margem, 0, 0);
    coluna->addWidget(m_chart);
    return frame;
}

void frmDS1921::mostrarAba(Aba aba) {
    m_separadores[aba]->setChecked(true);
    m_frames->setCurrentIndex(aba);
}

void frmDS1921::permitirAba(Aba aba, bool permitida) {
    m_separadores[aba]->setEnabled(permitida);
    m_framesDasAbas[aba]->setEnabled(permitida);
    if (aba == Grafico)
        m_cmdGrafico->setEnabled(permitida);
}

void frmDS1921::trocarDeAba(int passo) {
    int aba = m_frames->currentIndex();
    do {
        aba = (aba + passo + abas) % abas;
    } while (!m_separadores[size_t(aba)]->isEnabled());
    mostrarAba(Aba(aba));
    m_separadores[size_t(aba)]->setFocus(Qt::TabFocusReason);
}

void frmDS1921::accao(const char *fonte, Genero genero, const QString &mensagem, const std::function<void()> &corpo) {
    if (m_ocupado)
        return;
    const Vigia vigia(this);
    const auto logica = m_logica; // the bus may still be within it when the window has gone
    const QPointer<QWidget> foco = focusWidget();
    m_ocupado = true;
    m_cancelada = false;
    {
        EsperaLogger espera(this, genero == Genero::Descarga);
        espera.janela()->setMensagem(mensagem);
        connect(espera.janela(), &frmEsperaLogger::cancelar, this, [this] { m_cancelada = true; });
        m_espera = &espera;
        cancelavel(genero != Genero::Escrita);
        const onewire::ComPassagem passagemDoBarramento(passagem(genero));
        onewire::barramento().motivo = {};
        Rotina(fonte, corpo);
        if (vigia.vivo())
            m_espera = nullptr;
    }
    if (!vigia.vivo())
        return;
    m_ocupado = false;
    Ocupado = false;
    m_progresso->hide();
    for (Grelha *grelha : {m_grdTemps, m_grdAlarmes})
        grelha->setUpdatesEnabled(true);
    for (QPushButton *botao : {m_cmdLer, m_cmdLerDados})
        botao->setEnabled(true);
    acertarAbas();
    devolverFoco(foco);
}

// A button that was disabled meanwhile has handed the keyboard on to whatever came next: a tab or a text to read. With
// the whole window disabled nobody has it.
void frmDS1921::devolverFoco(QWidget *foco) {
    const auto porAcaso = [](QWidget *w) {
        const auto *caixa = qobject_cast<QLineEdit *>(w);
        return qobject_cast<pecas1921::Separador *>(w) || (caixa && caixa->isReadOnly());
    };
    if (window()->focusWidget() && (!porAcaso(focusWidget()) || porAcaso(foco)))
        return;
    if (foco && foco->isVisibleTo(this) && foco->isEnabled())
        foco->setFocus();
    else if (m_frames->currentIndex() == Assistente)
        m_cmdAvancar->setFocus();
    else if (m_frames->currentIndex() == Estado)
        m_cmdLer->setFocus();
}

void frmDS1921::verificar(const Vigia &vigia, const frmDS1921 *form) {
    if (!vigia.vivo() || form->m_cancelada)
        throw Interrompido();
}

std::function<void()> frmDS1921::passagem(Genero genero) {
    return [this, genero, vigia = Vigia(this)] {
        vigia.passar();
        // Half a record is worse than an old one: once the session is open, what is begun is finished.
        if (genero != Genero::Escrita)
            verificar(vigia, this);
        else if (onewire::barramento().sessao != 0)
            cancelavel(false);
    };
}

std::function<void()> frmDS1921::passagemPaciente() {
    return [this, vigia = Vigia(this)] {
        cancelavel(true);
        if (m_espera && m_espera->janela())
            m_espera->janela()->setPorque(onewire::frase(onewire::barramento().motivo));
        vigia.passar();
        verificar(vigia, this);
    };
}

// Anything may have happened while the box was open.
void frmDS1921::comDialogo(const std::function<void()> &dialogo) {
    const Vigia vigia(this);
    if (m_espera)
        m_espera->suspender();
    dialogo();
    verificar(vigia, this);
    if (m_espera)
        m_espera->retomar();
}

bool frmDS1921::perguntar(const QString &texto) {
    bool sim = false;
    comDialogo([&] { sim = estado().ambiente.dialogos->pergunta(texto); });
    return sim;
}

// With what the bus has to say of it, once.
void frmDS1921::dizer(const QString &texto, Dialogos::Estilo estilo) {
    const QString tudo = onewire::comMotivo(texto);
    onewire::barramento().motivo = {};
    comDialogo([&] { estado().ambiente.dialogos->mensagem(tudo, estilo); });
}

void frmDS1921::avisar(const QString &texto) {
    dizer(texto, Dialogos::Estilo::Informacao);
}

void frmDS1921::criticar(const QString &texto) {
    dizer(texto, Dialogos::Estilo::Critico);
}

void frmDS1921::cancelavel(bool sim) {
    if (m_espera && m_espera->janela())
        m_espera->janela()->setCancelavel(sim);
}

QSize frmDS1921::sizeHint() const {
    return tamanhoInicial.expandedTo(QWidget::sizeHint());
}

void frmDS1921::showEvent(QShowEvent *evento) {
    QWidget::showEvent(evento);
    if (!std::exchange(m_reposto, true))
        lugar::repor(this, regraDoLugar());
}

void frmDS1921::closeEvent(QCloseEvent *evento) {
    lugar::guardar(this, regraDoLugar());
    QWidget::closeEvent(evento);
}

// Enter goes on in the assistant, from wherever in a step.
void frmDS1921::keyPressEvent(QKeyEvent *evento) {
    const bool entrar = evento->key() == Qt::Key_Return || evento->key() == Qt::Key_Enter;
    if (entrar && m_frames->currentIndex() == Assistente && m_framesDasAbas[Assistente]->isEnabled())
        (m_cmdAvancar->isEnabled() ? m_cmdAvancar : m_cmdConcluir)->click();
    else
        QWidget::keyPressEvent(evento);
}
