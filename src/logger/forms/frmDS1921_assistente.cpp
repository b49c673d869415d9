#include "core/datas.h"
#include "core/estado.h"
#include "core/literais.h"
#include "core/modDoubleTratamento.h"
#include "core/modTraducoes.h"
#include "logger/forms/frmDS1921.h"
#include "logger/forms/pecas1921.h"
#include "logger/numeros1921.h"
#include "logger/prazos1921.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QStackedWidget>

namespace {

constexpr int margem = 12;

// A step: its title, what it is about, then its controls.
struct Passo {
    explicit Passo(int numero) : frame(pecas1921::moldura(u"FrameAssis(%1)"_s.arg(numero))) {
        coluna = new QVBoxLayout(frame);
        coluna->setContentsMargins(margem, margem, margem, margem);
        coluna->setSpacing(margem);
    }
    QFormLayout *campos() const {
        auto *forma = new QFormLayout;
        forma->setFieldGrowthPolicy(QFormLayout::FieldsStayAtSizeHint);
        forma->setLabelAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        forma->setHorizontalSpacing(margem);
        coluna->addLayout(forma);
        return forma;
    }
    QWidget *acabar() const {
        coluna->addStretch();
        return frame;
    }

    QFrame *frame;
    QVBoxLayout *coluna;
};

QHBoxLayout *lado(const QList<QWidget *> &controlos) {
    auto *linha = new QHBoxLayout;
    for (QWidget *controlo : controlos)
        linha->addWidget(controlo);
    linha->addStretch();
    return linha;
}

QString texto(const QString &chave, const QString &omissao) {
    return modTraducoes::texto(u"DSfrmDS1921"_s, chave, omissao);
}

} // namespace

QWidget *frmDS1921::criarAssistente() {
    auto *frame = pecas1921::moldura(u"frameAssistente"_s);
    m_assistente = new QStackedWidget;
    for (QWidget *passo : {criarPasso0(), criarPasso1(), criarPasso2(), criarPasso3(), criarPasso4(), criarPasso5()})
        m_assistente->addWidget(passo);
    m_lblPasso = pecas1921::etiqueta(u"lblPasso"_s, {});
    m_cmdRetroceder = pecas1921::botao(u"cmdRetroceder"_s, texto(u"cmdRetroceder.Caption"_s, u"Retroceder"_s));
    m_cmdAvancar = pecas1921::botao(u"cmdAvancar"_s, texto(u"cmdAvancar.Caption"_s, u"Avançar"_s));
    m_cmdConcluir = pecas1921::botao(u"cmdConcluir"_s, texto(u"cmdConcluir.Caption"_s, u"Concluir"_s));
    connect(m_cmdRetroceder, &QPushButton::clicked, this, &frmDS1921::cmdRetroceder_Click);
    connect(m_cmdAvancar, &QPushButton::clicked, this, &frmDS1921::cmdAvancar_Click);
    connect(m_cmdConcluir, &QPushButton::clicked, this, &frmDS1921::cmdConcluir_Click);
    auto *traco = new QFrame;
    traco->setFrameStyle(QFrame::HLine | QFrame::Plain);
    traco->setForegroundRole(QPalette::Mid);
    auto *botoes = new QHBoxLayout;
    botoes->addWidget(m_lblPasso);
    botoes->addStretch();
    botoes->addWidget(m_cmdRetroceder);
    botoes->addWidget(m_cmdAvancar);
    botoes->addSpacing(margem);
    botoes->addWidget(m_cmdConcluir);
    auto *coluna = new QVBoxLayout(frame);
    coluna->setContentsMargins(0, 0, 0, 0);
    coluna->addWidget(m_assistente, 1);
    coluna->addWidget(traco);
    coluna->addLayout(botoes);
    return frame;
}

QWidget *frmDS1921::criarPasso0() {
    const Passo p(0);
    p.coluna->addWidget(pecas1921::titulo(u"lblIntroducao"_s, texto(u"lblIntroducao.Caption"_s, u"Introdução"_s)));
    p.coluna->addWidget(pecas1921::paragrafo(
        u"txtRegistP1"_s, texto(u"txtRegistP1.Text"_s, u"Bem vindo ao assistente de programação do Registador !"_s)));
    p.coluna->addWidget(pecas1921::paragrafo(
        u"txtRegistP2"_s,
        texto(
            u"txtRegistP2.Text"_s,
            u"Este assistente, vai ajudá-lo nas configurações necessárias para iniciar uma missão de gravação de Temperaturas."_s)));
    p.coluna->addWidget(pecas1921::paragrafo(
        u"txtRegistP3"_s,
        texto(
            u"txtRegistP3.Text"_s,
            u"Seleccione 'Avançar >' para passar à fase seguinte. A qualquer momento pode seleccionar o botão '< Voltar' para examinar as opções das fases anteriores."_s)));
    return p.acabar();
}

QWidget *frmDS1921::criarPasso1() {
    const Passo p(1);
    p.coluna->addWidget(pecas1921::titulo(u"lblRegHora"_s, texto(u"lblRegHora.Caption"_s, u"Regulação da hora:"_s)));
    p.coluna->addWidget(pecas1921::paragrafo(
        u"txtRegistP4"_s,
        texto(u"txtRegistP4.Text"_s,
              u"A escolha desta opção vai sincronizar a hora do Registador com a hora do Computador."_s)));
    m_lblDataHoraLogger = pecas1921::etiqueta(u"lblDataHoraLogger"_s, {});
    m_lblDataHoraPC = pecas1921::etiqueta(u"lblDataHoraPC"_s, {});
    m_txtDescricaoRegistador = new QLineEdit;
    m_txtDescricaoRegistador->setObjectName(u"txtDescricaoRegistador"_s);
    pecas1921::FiltroDeRegisto::por(m_txtDescricaoRegistador, u"'"_s);
    m_txtDescricaoMissao = new QLineEdit;
    m_txtDescricaoMissao->setObjectName(u"txtDescricaoMissao"_s);
    pecas1921::FiltroDeRegisto::por(m_txtDescricaoMissao, {});
    for (QLineEdit *descricao : {m_txtDescricaoRegistador, m_txtDescricaoMissao}) {
        descricao->setMaxLength(registoDS1921::maximoDeDescricao);
        descricao->setMinimumWidth(36 * fontMetrics().averageCharWidth());
    }
    QFormLayout *campos = p.campos();
    campos->addRow(
        pecas1921::etiqueta(u"lblDataHora"_s, texto(u"lblDataHora.Caption"_s, u"Data/Hora actual do Registador :"_s)),
        m_lblDataHoraLogger);
    campos->addRow(
        pecas1921::etiqueta(u"lblDataHora2"_s, texto(u"lblDataHora2.Caption"_s, u"Data/Hora actual do PC :"_s)),
        m_lblDataHoraPC);
    campos->addRow(new QWidget);
    campos->addRow(pecas1921::etiqueta(u"lblDesR"_s, texto(u"lblDesR.Caption"_s, u"Descrição do Registador :"_s),
                                       m_txtDescricaoRegistador),
                   m_txtDescricaoRegistador);
    campos->addRow(pecas1921::etiqueta(u"lblDescM"_s, texto(u"lblDescM.Caption"_s, u"Descrição da missão:"_s),
                                       m_txtDescricaoMissao),
                   m_txtDescricaoMissao);
    return p.acabar();
}

QWidget *frmDS1921::criarPasso2() {
    const Passo p(2);
    p.coluna->addWidget(
        pecas1921::titulo(u"lblAtrasoM"_s, texto(u"lblAtrasoM.Caption"_s, u"Atraso do Início da Missão"_s)));
    p.coluna->addWidget(pecas1921::paragrafo(
        u"txtRegistP5"_s,
        texto(
            u"txtRegistP5.Text"_s,
            u"O atraso do início da missão, indica o intervalo de tempo que vai decorrer antes de começar a leitura das temperaturas."_s)));
    p.coluna->addWidget(pecas1921::paragrafo(
        u"txtRegistP6"_s,
        texto(
            u"txtRegistP6.Text"_s,
            u"Seleccione o nº de Dias, Horas ou  Minutos para defenir o atraso do início da missão. O nº total em minutos é mostrado à sua direita."_s)));
    const QString inicio = texto(u"lblInicMissao.Caption"_s, u"Início da Missão:"_s);
    m_dataInicio = pecas1921::data(u"DTPdataInicio"_s, inicio);
    m_horaInicio = pecas1921::hora(u"DTPhoraInicio"_s, inicio);
    m_lblLabelMin = pecas1921::etiqueta(u"lblLabelMin"_s, {});
    connect(m_dataInicio, &QDateEdit::dateChanged, this, &frmDS1921::mostrarAtraso);
    connect(m_horaInicio, &QTimeEdit::timeChanged, this, &frmDS1921::mostrarAtraso);
    p.campos()->addRow(pecas1921::etiqueta(u"lblInicMissao"_s, inicio, m_dataInicio),
                       lado({m_dataInicio, m_horaInicio, m_lblLabelMin}));
    return p.acabar();
}

QWidget *frmDS1921::criarPasso3() {
    const Passo p(3);
    const QString intervalo = texto(u"lblIntLeitura.Caption"_s, u"Intervalo de Leitura"_s);
    p.coluna->addWidget(pecas1921::titulo(u"lblIntLeitura"_s, intervalo));
    p.coluna->addWidget(pecas1921::paragrafo(
        u"txtRegistP7"_s,
        texto(u"txtRegistP7.Text"_s,
              u"O Intervalo de Leitura, define o tempo que decorre entre duas leituras após o início da missão."_s)));
    m_cboIntervalo = pecas1921::lista(u"cboIntervaloLeitura"_s, intervalo);
    for (int minutos = 1; minutos <= numeros1921::maiorIntervalo; ++minutos)
        m_cboIntervalo->addItem(QString::number(minutos));
    p.coluna->addLayout(
        lado({m_cboIntervalo, pecas1921::etiqueta(u"ReyLabelMin"_s, texto(u"ReyLabelMin.Caption"_s, u"minutos"_s))}));
    const QString calibracao = texto(u"lblCalibracaoIbutton.Caption"_s, u"Calibração do Registador"_s);
    m_cboCalibracao = pecas1921::lista(u"cboCalibracao"_s, calibracao);
    p.coluna->addSpacing(margem);
    p.coluna->addWidget(pecas1921::titulo(u"lblCalibracaoIbutton"_s, calibracao));
    p.coluna->addLayout(
        lado({m_cboCalibracao, pecas1921::etiqueta(u"lblTempCalib"_s, texto(u"lblTempCalib.Caption"_s, u"ºC"_s))}));
    return p.acabar();
}

QWidget *frmDS1921::criarPasso4() {
    const Passo p(4);
    p.coluna->addWidget(pecas1921::titulo(u"lblAlarmesL"_s, texto(u"lblAlarmesL.Caption"_s, u"ALARME - Limites"_s)));
    p.coluna->addWidget(pecas1921::paragrafo(
        u"txtRegistP8"_s,
        texto(
            u"txtRegistP8.Text"_s,
            u"Os Alarmes de Temperatura são destinado a missões longas e têm como objectivo gerar um histograma das temperaturas."_s)));
    p.coluna->addWidget(pecas1921::paragrafo(
        u"txtRegistP9"_s,
        texto(
            u"txtRegistP9.Text"_s,
            u"Os Limites de Temperatura indicam a gama de tolerância e uma vez excedidos, gravam a duração do tempo excedido."_s)));
    const QString minimo = texto(u"lblLimMin.Caption"_s, u"Limite Minímo"_s);
    const QString maximo = texto(u"lblLimMax.Caption"_s, u"Limite Máximo"_s);
    m_cboLimMin = pecas1921::lista(u"cboLimMin"_s, minimo);
    m_cboLimMax = pecas1921::lista(u"cboLimMax"_s, maximo);
    QFormLayout *campos = p.campos();
    const QString graus = texto(u"lblTempCalib.Caption"_s, u"ºC"_s);
    campos->addRow(pecas1921::etiqueta(u"lblLimMin"_s, minimo, m_cboLimMin), lado({m_cboLimMin, new QLabel(graus)}));
    campos->addRow(pecas1921::etiqueta(u"lblLimMax"_s, maximo, m_cboLimMax), lado({m_cboLimMax, new QLabel(graus)}));
    return p.acabar();
}

QWidget *frmDS1921::criarPasso5() {
    const Passo p(5);
    p.coluna->addWidget(
        pecas1921::titulo(u"lblCicloContinuo"_s, texto(u"lblCicloContinuo.Caption"_s, u"Ciclo Continuo"_s)));
    p.coluna->addWidget(pecas1921::paragrafo(
        u"txtRegistP10"_s,
        texto(
            u"txtRegistP10.Text"_s,
            u"O Registador tem capacidade para 2048 leituras. Para além dos 2048 registos, estes serão gravadas no histograma das temperaturas."_s)));
    p.coluna->addWidget(pecas1921::paragrafo(
        u"txtRegistP11"_s,
        texto(
            u"txtRegistP11.Text"_s,
            u"Com o intervalo de tempo, atrás seleccionado, as 2048 leituras de temperatura, serão concluidas aproximadamente a:"_s)));
    m_lblDataAproximada = pecas1921::etiqueta(u"lblDataAproximada"_s, {});
    QFont forte = m_lblDataAproximada->font();
    forte.setBold(true);
    m_lblDataAproximada->setFont(forte);
    m_lblDataAproximada->setIndent(margem);
    p.coluna->addWidget(m_lblDataAproximada);
    m_chkCicloContinuo = new QCheckBox(texto(u"chkCicloContinuo.Caption"_s, u"Activar Ciclo Continuo"_s));
    m_chkCicloContinuo->setObjectName(u"chkCicloContinuo"_s);
    m_chkCicloContinuo->setAccessibleName(m_chkCicloContinuo->text());
    p.coluna->addWidget(m_chkCicloContinuo);
    p.coluna->addWidget(pecas1921::paragrafo(
        u"txtRegistP12"_s,
        texto(
            u"txtRegistP12.Text"_s,
            u"O sistema entra em modo de vigilância. Ao terminar o ciclo de 2048 leituras, o sistema só vai registar as temperaturas que estejam fora da gama."_s)));
    return p.acabar();
}

void frmDS1921::mostrarPasso(int passo) {
    PassoAssistente = passo;
    m_assistente->setCurrentIndex(passo);
    m_cmdRetroceder->setEnabled(passo > 0);
    m_cmdAvancar->setEnabled(passo < passos - 1);
    m_lblPasso->setText(texto(u"lblPasso.Caption"_s, u"Passo %1 de %2"_s).arg(passo + 1).arg(passos));
    if (passo == 2)
        mostrarAtraso();
}

void frmDS1921::cmdAvancar_Click() {
    if (PassoAssistente >= passos - 1)
        return;
    if (PassoAssistente == passos - 2) {
        InicioMissao();
        m_cmdConcluir->setEnabled(true);
    }
    mostrarPasso(PassoAssistente + 1);
    // A disabled button would take the keyboard along.
    if (!m_cmdAvancar->isEnabled())
        m_cmdConcluir->setFocus();
}

void frmDS1921::cmdRetroceder_Click() {
    if (PassoAssistente == 0)
        return;
    mostrarPasso(PassoAssistente - 1);
    if (!m_cmdRetroceder->isEnabled())
        m_cmdAvancar->setFocus();
}

QDateTime frmDS1921::inicioEscolhido() const {
    return {m_dataInicio->date(), m_horaInicio->time(), Qt::UTC};
}

void frmDS1921::mostrarAtraso() {
    m_lblLabelMin->setText(QString::number(prazos1921::minutosAte(estado().ambiente.agora(), inicioEscolhido())) +
                           u' ' + texto(u"ReyLabelMin.Caption"_s, u"minutos"_s));
}

void frmDS1921::InicioMissao() {
    Rotina("frmDS1921.InicioMissao", [this] {
        const QDateTime agora = estado().ambiente.agora();
        const QDateTime aoMinuto(agora.date(), QTime(agora.time().hour(), agora.time().minute()), Qt::UTC);
        const QDateTime inicio = aoMinuto.addSecs(60LL * prazos1921::minutosAte(agora, inicioEscolhido()));
        const QDateTime fim = datas::lerDataHora(
            prazos1921::DataFimPrevista(datas::textoDataHora(inicio), m_cboIntervalo->currentText()));
        m_lblDataAproximada->setText(modTraducoes::localeDosNomes().toString(fim.date(), QLocale::LongFormat) + u' ' +
                                     datas::textoHora(fim.time()));
    });
}

bool frmDS1921::recusar(int passo, QWidget *controlo, const QString &mensagem) {
    mostrarPasso(passo);
    m_cmdAvancar->setEnabled(true);
    controlo->setEnabled(true);
    controlo->setFocus();
    criticar(mensagem);
    return false;
}

bool frmDS1921::verificarPrograma() {
    if (m_txtDescricaoRegistador->text().trimmed().isEmpty())
        return recusar(1, m_txtDescricaoRegistador,
                       texto(u"MessageNR"_s, u"O nome do registador não pode ser nulo !"_s));
    if (m_txtDescricaoMissao->text().trimmed().isEmpty())
        return recusar(1, m_txtDescricaoMissao, texto(u"MessageNM"_s, u"O nome da missão não pode ser nulo !"_s));
    if (modDoubleTratamento::TextoParaDouble(m_cboLimMin->currentText()) >
        modDoubleTratamento::TextoParaDouble(m_cboLimMax->currentText()))
        return recusar(4, m_cboLimMin,
                       texto(u"Message1"_s, u"A temperatura minima não pode ser superior á máxima !"_s));
    return true;
}

// Limits that leave no reading between them: a new button comes with such, both at one edge of what it measures.
bool frmDS1921::aceitarAlarmes() {
    const QString minimo = m_cboLimMin->currentText();
    const QString maximo = m_cboLimMax->currentText();
    if (!numeros1921::tudoEmAlarme(numeros1921::gamaDe(m_logica->controlo.TipoRegistador),
                                   modDoubleTratamento::TextoParaDouble(minimo),
                                   modDoubleTratamento::TextoParaDouble(maximo)) ||
        perguntar(
            texto(u"TudoEmAlarme"_s, u"Com o limite mínimo %1 °C e o máximo %2 °C, todas as leituras serão alarmes."_s)
                .arg(minimo, maximo) +
            u'\n' + texto(u"DataErr3"_s, u"Deseja Continuar?"_s)))
        return true;
    mostrarPasso(4);
    m_cboLimMin->setFocus();
    return false;
}

void frmDS1921::cmdConcluir_Click() {
    accao("frmDS1921.cmdConcluir_Click", Genero::Escrita, texto(u"EsperaProgramar"_s, u"A programar o registador..."_s),
          [this] {
              if (!verificarPrograma() || !aceitarAlarmes() || !confirmarPrograma())
                  return;
              m_porEscrever = digitado();
              const bool escrito = passo("frmDS1921.ActualizarIbutton", [this] { return ActualizarIbutton(); });
              if (escrito)
                  m_porEscrever.reset();
              lerRegistador(false, !escrito);
          });
}

bool frmDS1921::ActualizarIbutton() {
    const ControloDS1921::Programa programa{m_txtDescricaoRegistador->text().trimmed(),
                                            m_txtDescricaoMissao->text().trimmed(),
                                            m_cboCalibracao->currentText(),
                                            m_cboIntervalo->currentText().toInt(),
                                            m_chkCicloContinuo->isChecked(),
                                            inicioEscolhido(),
                                            m_cboLimMin->currentText(),
                                            m_cboLimMax->currentText()};
    if (m_logica->ActualizarIbutton(programa, passagemPaciente())) {
        mostrarAba(Estado);
        return true;
    }
    criticar(comCausa(texto(u"Message2"_s, u"Ocorreu 1 erro ao tentar escrever no Registador"_s)));
    return false;
}

frmDS1921::Digitado frmDS1921::digitado() const {
    return {m_logica->romidLido,
            m_txtDescricaoRegistador->text(),
            m_txtDescricaoMissao->text(),
            m_cboIntervalo->currentText(),
            m_cboCalibracao->currentText(),
            m_cboLimMin->currentText(),
            m_cboLimMax->currentText(),
            inicioEscolhido(),
            m_chkCicloContinuo->isChecked()};
}

void frmDS1921::repor(const Digitado &d) {
    m_txtDescricaoRegistador->setText(d.registador);
    m_txtDescricaoMissao->setText(d.missao);
    for (const auto &[lista, valor] : {std::pair(m_cboIntervalo, d.intervalo),
                                       {m_cboCalibracao, d.calibracao},
                                       {m_cboLimMin, d.minimo},
                                       {m_cboLimMax, d.maximo}})
        pecas1921::mostrarNaLista(lista, valor);
    m_chkCicloContinuo->setChecked(d.cicloContinuo);
}

// A button that can be programmed begins at the present moment, or where its last try was left.
void frmDS1921::prepararAssistente() {
    const bool deste = m_porEscrever && m_porEscrever->ROMID == m_logica->romidLido;
    if (m_logica->estadoDaMissao() != EstadoMissao::SemMissao) {
        if (deste) // it was programmed after all
            m_porEscrever.reset();
        return;
    }
    QDateTime inicio = estado().ambiente.agora();
    if (deste) {
        repor(*m_porEscrever);
        inicio = std::max(inicio, m_porEscrever->inicio);
        mostrarPasso(passos - 1);
    }
    m_dataInicio->setDate(inicio.date());
    m_horaInicio->setTime(inicio.time());
    InicioMissao();
}

void frmDS1921::CarregarCombos() {
    Rotina("frmDS1921.CarregarCombos", [this] {
        const numeros1921::Gama &gama = numeros1921::gamaDe(m_logica->controlo.TipoRegistador);
        const QStringList limites = numeros1921::limitesDe(gama);
        for (QComboBox *lista : {m_cboLimMin, m_cboLimMax}) {
            lista->clear();
            lista->addItems(limites);
        }
        m_cboCalibracao->clear();
        m_cboCalibracao->addItems(numeros1921::calibracoesDe(gama));
        pecas1921::mostrarNaLista(m_cboCalibracao, numeros1921::formatar(0, gama.casasCalibracao));
    });
}
