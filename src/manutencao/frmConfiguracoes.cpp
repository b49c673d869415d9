#include "manutencao/frmConfiguracoes.h"

#include "core/estado.h"
#include "core/eventos.h"
#include "core/falha.h"
#include "core/modINI.h"
#include "core/modPassWord.h"
#include "core/modTraducoes.h"
#include "core/rotina.h"
#include "data/modMain.h"
#include "manutencao/linguas.h"
#include "platform/forms/lugar.h"
#include "platform/forms/pastas.h"
#include "platform/forms/registoForms.h"

#include <QComboBox>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

#include <array>

namespace {

const lugar::Regra regraDoLugar{u"frmConfiguracoes"_s, {}, 0, 0};
constexpr int colunasDoCaminho = 46; // characters
constexpr int atrasoDoExameMs = 250;

QString texto(const QString &chave, const QString &omissao) {
    return modTraducoes::texto(u"VISTREL_frmConfiguracoes"_s, chave, omissao);
}

void avisar(const QString &aviso, Dialogos::Estilo estilo = Dialogos::Estilo::Informacao) {
    estado().ambiente.dialogos->mensagem(aviso, estilo);
}

QLabel *criarEtiqueta(const QString &nome, const QString &legenda, QWidget *parceiro) {
    auto *etiqueta = new QLabel(legenda);
    etiqueta->setObjectName(nome);
    etiqueta->setBuddy(parceiro);
    parceiro->setAccessibleName(legenda);
    return etiqueta;
}

QPushButton *criarBotao(const QString &nome, const QString &omissao) {
    auto *botao = new QPushButton(texto(nome + u".Caption", omissao));
    botao->setObjectName(nome);
    botao->setAccessibleName(botao->text());
    botao->setAutoDefault(false);
    return botao;
}

QWidget *criarPagina(const QString &nome, QLayout *conteudo, QPushButton *botao) {
    auto *pagina = new QWidget;
    pagina->setObjectName(nome);
    auto *disposicao = new QVBoxLayout(pagina);
    disposicao->addLayout(conteudo);
    disposicao->addStretch();
    disposicao->addWidget(botao, 0, Qt::AlignRight);
    return pagina;
}

// A sign beside the word, since colours alone are not seen by all.
QString comSinal(const estadoCaminhos::EstadoCaminho &e) {
    constexpr std::array<QStringView, 3> sinais = {u"✓ ", u"⚠ ", u"✗ "};
    return sinais[size_t(e.grau)] + e.texto;
}

QColor corDe(estadoCaminhos::Grau grau, const QPalette &paleta) {
    const bool escuro = paleta.color(QPalette::Base).lightness() < 128;
    constexpr std::array<QRgb, 3> claras = {qRgb(25, 110, 60), qRgb(140, 85, 0), qRgb(176, 32, 32)};
    constexpr std::array<QRgb, 3> escuras = {qRgb(120, 215, 150), qRgb(240, 190, 90), qRgb(255, 140, 130)};
    return (escuro ? escuras : claras)[size_t(grau)];
}

} // namespace

frmConfiguracoes::frmConfiguracoes(QWidget *dono) : QDialog(dono), m_tiras(new QTabWidget), m_exame(new QTimer(this)) {
    setObjectName(u"frmConfiguracoes"_s);
    m_exame->setSingleShot(true);
    m_exame->setInterval(atrasoDoExameMs);
    connect(m_exame, &QTimer::timeout, this, &frmConfiguracoes::mostrarEstados);
    m_tiras->setObjectName(u"Tiras"_s);
    auto *disposicao = new QVBoxLayout(this);
    disposicao->addWidget(m_tiras);
    Form_Load();
}

void frmConfiguracoes::Form_Load() {
    Rotina("frmConfiguracoes.Form_Load", [this] {
        setWindowTitle(texto(u"frmConfiguracoes.Caption"_s, u"Configurações"_s));
        m_tiras->addTab(criarDados(), texto(u"lblDados.Caption"_s, u"Dados"_s));
        m_tiras->addTab(criarPassword(), texto(u"lblPassWord.Caption"_s, u"Password"_s));
        m_tiras->addTab(criarIdioma(), texto(u"lblIdiomaEscolha.Caption"_s, u"Idioma"_s));
        lugar::repor(this, regraDoLugar);
        const QString &ficheiro = estado().NomePrograma;
        const QString pastaINI = modINI::GetINIPATH();
        m_caminhos[0].campo->setText(modINI::GetSetting(ficheiro, u"BD"_s, u"MAIN"_s));
        m_caminhos[1].campo->setText(modINI::GetSetting(ficheiro, u"JPG"_s, u"MAIN"_s));
        m_caminhos[2].campo->setText(pastaINI.isEmpty() ? estado().PastaPrograma : pastaINI);
        mostrarEstados();
        carregarLinguas();
    });
}

void frmConfiguracoes::done(int resultado) {
    Rotina("frmConfiguracoes.Form_Unload", [this] { lugar::guardar(this, regraDoLugar); });
    for (QLineEdit *palavra : m_palavras)
        palavra->clear();
    QDialog::done(resultado);
}

void frmConfiguracoes::juntarCaminho(QGridLayout *grelha, const QString &nome, const QString &legenda,
                                     const std::function<QString()> &escolher, Exame exame) {
    const int linha = grelha->rowCount();
    auto *campo = new QLineEdit;
    campo->setObjectName(u"txt" + nome);
    campo->setMinimumWidth(colunasDoCaminho * fontMetrics().averageCharWidth());
    auto *botao = new QToolButton;
    botao->setObjectName(u"cmd" + nome);
    botao->setText(u"…"_s);
    botao->setToolTip(texto(u"cmdProcurar.ToolTipText"_s, u"Procurar"_s));
    botao->setAccessibleName(legenda + u' ' + botao->toolTip());
    auto *etiquetaEstado = new QLabel;
    etiquetaEstado->setObjectName(u"lblEstado" + nome);
    etiquetaEstado->setTextFormat(Qt::PlainText);
    etiquetaEstado->setWordWrap(true);
    grelha->addWidget(criarEtiqueta(u"lbl" + nome, legenda, campo), linha, 0);
    grelha->addWidget(campo, linha, 1);
    grelha->addWidget(botao, linha, 2);
    grelha->addWidget(etiquetaEstado, linha + 1, 1, 1, 2);
    m_caminhos.append({campo, etiquetaEstado, exame});
    connect(campo, &QLineEdit::textChanged, m_exame, qOverload<>(&QTimer::start));
    const QByteArray fonte = ("frmConfiguracoes.cmd" + nome + "_Click").toUtf8();
    connect(botao, &QToolButton::clicked, this, [fonte, campo, escolher] {
        Rotina(fonte.constData(), [&] {
            const QString escolhido = escolher();
            if (!escolhido.isEmpty())
                campo->setText(escolhido);
        });
    });
}

QWidget *frmConfiguracoes::criarDados() {
    auto *grelha = new QGridLayout;
    const auto ficheiro = [this] {
        return estado().ambiente.dialogos->abrirFicheiro(u"Kelvark BD (*.mdb)|*.mdb|Kelvark BD (*.mde)|*.mde"_s,
                                                         QFileInfo(m_caminhos[0].campo->text()).absolutePath());
    };
    juntarCaminho(grelha, u"CaminhoBD"_s, texto(u"lblCaminhoBDDados.Caption"_s, u"Caminho BD:"_s), ficheiro,
                  &estadoCaminhos::daBD);
    juntarCaminho(grelha, u"CaminhoImagens"_s, texto(u"lblCaminhoImagens.Caption"_s, u"Caminho Exportação:"_s),
                  &PedeCaminhoParaPasta, &estadoCaminhos::daExportacao);
    juntarCaminho(grelha, u"INI_Path"_s, texto(u"lblINI_Path.Caption"_s, u"Caminho INIs:"_s), &PedeCaminhoParaPasta,
                  &estadoCaminhos::dosINIs);
    grelha->setColumnStretch(1, 1);
    QPushButton *concluir = criarBotao(u"cmdConcluirDados"_s, u"Concluir"_s);
    connect(concluir, &QPushButton::clicked, this, &frmConfiguracoes::cmdConcluirDados_Click);
    return criarPagina(u"FrameDados"_s, grelha, concluir);
}

void frmConfiguracoes::mostrarEstados() {
    Rotina("frmConfiguracoes.MostrarEstados", [this] {
        for (const Caminho &c : std::as_const(m_caminhos)) {
            const estadoCaminhos::EstadoCaminho e = c.exame(c.campo->text());
            c.estado->setText(comSinal(e));
            QPalette paleta = palette();
            paleta.setColor(QPalette::WindowText, corDe(e.grau, paleta));
            c.estado->setPalette(paleta);
        }
    });
}

void frmConfiguracoes::cmdConcluirDados_Click() {
    Rotina("frmConfiguracoes.cmdConcluirDados_Click", [this] {
        const auto caminho = [this](int i) { return m_caminhos[i].campo->text(); };
        if (caminho(0).isEmpty() || caminho(1).isEmpty() || caminho(2).isEmpty()) {
            avisar(modTraducoes::texto(u"frmConfiguracoes"_s, u"Erro"_s, u"Dados Incorrectos"_s),
                   Dialogos::Estilo::Exclamacao);
            return;
        }
        const QString &ficheiro = estado().NomePrograma;
        modINI::Guardar(ficheiro, {{u"BD"_s, u"MAIN"_s, caminho(0)}, {u"JPG"_s, u"MAIN"_s, caminho(1)}});
        modINI::GuardarINIPATH(u"INI"_s, u"Path"_s, caminho(2));
        estado().CaminhoBD = modINI::GetSetting(ficheiro, u"BD"_s, u"MAIN"_s);
        modMain::carregaGlobaisBD();
        if (registoForms().alterarEstadosMenus)
            registoForms().alterarEstadosMenus();
        mostrarEstados();
        avisar(modTraducoes::texto(u"frmConfiguracoes"_s, u"Sucesso"_s, u"Dados Alterados Com Sucesso"_s));
    });
}

QWidget *frmConfiguracoes::criarPassword() {
    struct Campo {
        QString nome, chave, omissao;
    };
    const Campo campos[] = {{u"txtPassWord"_s, u"lblPassActual"_s, u"PWD Actual"_s},
                            {u"txtNewPassWord"_s, u"lblPassNova"_s, u"Nova PWD"_s},
                            {u"txtConfPassWord"_s, u"lblPassConf"_s, u"Confirmação PWD"_s}};
    auto *grelha = new QGridLayout;
    int linha = 0;
    for (const Campo &c : campos) {
        auto *campo = new QLineEdit;
        campo->setObjectName(c.nome);
        campo->setEchoMode(QLineEdit::Password);
        campo->setMaxLength(modPassWord::maximoDeCaracteres);
        campo->setInputMethodHints(Qt::ImhHiddenText | Qt::ImhSensitiveData | Qt::ImhNoPredictiveText);
        grelha->addWidget(criarEtiqueta(c.chave, texto(c.chave + u".Caption", c.omissao), campo), linha, 0);
        grelha->addWidget(campo, linha++, 1);
        m_palavras.append(campo);
    }
    grelha->setColumnStretch(1, 1);
    QPushButton *confirmar = criarBotao(u"cmdConfirmarPassword"_s, u"Confirmar"_s);
    connect(confirmar, &QPushButton::clicked, this, &frmConfiguracoes::cmdConfirmarPassword_Click);
    return criarPagina(u"framePassword"_s, grelha, confirmar);
}

void frmConfiguracoes::cmdConfirmarPassword_Click() {
    Rotina("frmConfiguracoes.cmdConfirmarPassword_Click", [this] {
        using modPassWord::Alteracao;
        switch (modPassWord::AlterarPassWord(m_palavras[0]->text(), m_palavras[1]->text(), m_palavras[2]->text())) {
        case Alteracao::Incompleta:
            break;
        case Alteracao::PassWordInvalida:
            avisar(texto(u"Message1"_s, u"PassWord Inválida"_s));
            break;
        case Alteracao::ConfirmacaoIncorrecta:
            avisar(texto(u"Message2"_s, u"A confirmação da nova PassWord está incorrecta"_s));
            break;
        case Alteracao::Alterada:
            avisar(texto(u"Message3"_s, u"PassWord alterada com Sucesso"_s));
            for (QLineEdit *palavra : std::as_const(m_palavras))
                palavra->clear();
            break;
        }
    });
}

QWidget *frmConfiguracoes::criarIdioma() {
    m_cboLingua = new QComboBox;
    m_cboLingua->setObjectName(u"cboLingua"_s);
    m_lblAvisoLingua = new QLabel(texto(
        u"msgAvisoLingua"_s, u"Atenção! Esta língua usa uma página de código diferente da predefenida do sistema. Para "
                             "uma correcta utilização da linguagem é necessário proceder á alteração da língua no "
                             "Painel de Controlo (Opções Regionais - Avançadas)"_s));
    m_lblAvisoLingua->setObjectName(u"lblAvisoLingua"_s);
    m_lblAvisoLingua->setWordWrap(true);
    m_lblAvisoLingua->hide();
    auto *grelha = new QGridLayout;
    grelha->addWidget(
        criarEtiqueta(u"lblIdiomaEscolha"_s, texto(u"lblIdiomaEscolha.Caption"_s, u"Idioma"_s), m_cboLingua), 0, 0);
    grelha->addWidget(m_cboLingua, 0, 1);
    grelha->addWidget(m_lblAvisoLingua, 1, 0, 1, 2);
    grelha->setColumnStretch(1, 1);
    QPushButton *concluir = criarBotao(u"cmdConluirIdioma"_s, u"Concluir"_s);
    connect(concluir, &QPushButton::clicked, this, &frmConfiguracoes::cmdConluirIdioma_Click);
    connect(m_cboLingua, &QComboBox::currentIndexChanged, this, &frmConfiguracoes::cboLingua_Click);
    return criarPagina(u"FrameIdioma"_s, grelha, concluir);
}

void frmConfiguracoes::carregarLinguas() {
    const QList<linguas::Lingua> lista = linguas::listadas();
    for (const linguas::Lingua &l : lista)
        m_cboLingua->addItem(l.entrada());
    if (lista.isEmpty()) {
        m_cboLingua->addItem(u"Português - PT"_s);
        estado().Lingua.clear();
        return;
    }
    const QString activa = linguas::activa();
    const int posicao = activa.toInt() - 1;
    if (posicao < 0 || posicao >= m_cboLingua->count()) {
        m_cboLingua->setCurrentIndex(-1);
        throw Falha(erros::chamadaInvalida,
                    texto(u"LinguaForaDaLista"_s, u"A língua activa (ACT = %1) não está na lista."_s).arg(activa));
    }
    m_cboLingua->setCurrentIndex(posicao);
    estado().Lingua = linguas::codigo(activa);
}

// Text is wide throughout, so that the warning only comes where an installation has set the character set.
void frmConfiguracoes::cboLingua_Click() {
    m_lblAvisoLingua->setVisible(linguas::pedeOutraPagina(m_cboLingua->currentText().right(2), estado().CharsetForms));
}

void frmConfiguracoes::cmdConluirIdioma_Click() {
    Rotina("frmConfiguracoes.cmdConluirIdioma_Click", [this] {
        const QString escolhida = m_cboLingua->currentText();
        for (const linguas::Lingua &l : linguas::listadas()) {
            if (l.entrada() != escolhida)
                continue;
            modINI::Guardar(estado().NomePrograma, {{u"Lingua"_s, u"ACT"_s, QString::number(l.numero)}});
            if (registoForms().alterarLingua)
                registoForms().alterarLingua();
        }
        forcarEventos();
        close();
    });
}
