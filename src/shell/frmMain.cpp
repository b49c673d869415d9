#include "shell/frmMain.h"

#include "core/eventos.h"
#include "core/falha.h"
#include "core/modINI.h"
#include "core/modTraducoes.h"
#include "core/rotina.h"
#include "core/textoMostrado.h"
#include "data/ligacao.h"
#include "data/modMain.h"
#include "platform/forms/icones.h"
#include "platform/forms/registoForms.h"
#include "shell/desenhos.h"
#include "shell/estadoMenu.h"
#include "shell/textosDoQt.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFileInfo>
#include <QLabel>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QMenu>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QShortcut>
#include <QStatusBar>
#include <QStyle>

#include <cmath>

namespace {

constexpr QSize tamanhoDesejado(1180, 760);
constexpr qsizetype letrasDaLegenda = 80;
constexpr int entreOlharesMs = 1000; // at the file of the database

} // namespace

QSize frmMain::tamanhoInicial(const QWidget &janela) {
    const QSize moldura(0, janela.style()->pixelMetric(QStyle::PM_TitleBarHeight));
    return tamanhoDesejado.boundedTo(janela.screen()->availableSize() - moldura);
}

frmMain::frmMain() : m_area(new QMdiArea(this)), m_vigiaBD(this) {
    juntarDesenhos();
    setObjectName(u"frmMain"_s);
    setWindowIcon(icones::icone(u"vistrel"_s));
    resize(tamanhoInicial(*this));
    m_area->setObjectName(u"MDIForm"_s);
    m_area->setContextMenuPolicy(Qt::CustomContextMenu);
    m_area->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    m_area->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    connect(m_area, &QMdiArea::customContextMenuRequested, this, &frmMain::menuDaArea);
    setCentralWidget(m_area);
    criarBarra();
    criarAtalhos();
    connect(m_area, &QMdiArea::subWindowActivated, this, &frmMain::mostrarJanelas);
    RegistoForms &forms = registoForms();
    forms.dono = this;
    forms.alojar = [this](QWidget *form) { alojar(form); };
    forms.alterarEstadosMenus = [this] { AlterarEstadosMenus(); };
    forms.alterarLingua = [this] { AlterarLingua(); };
    forms.anunciar(this);
    m_vigiaBD.setObjectName(u"TimerBD"_s);
    m_vigiaBD.setInterval(entreOlharesMs);
    connect(&m_vigiaBD, &QTimer::timeout, this, &modMain::vigiarBD);
    m_vigiaBD.start();
    MDIForm_Load();
}

frmMain::~frmMain() {
    m_area->disconnect(this); // it goes later, and with it what is in it
    if (!estado().forms)
        return;
    registoForms().alojar = nullptr;
    registoForms().alterarEstadosMenus = nullptr;
    registoForms().alterarLingua = nullptr;
}

void frmMain::criarAtalhos() {
    auto *menu = new QShortcut(Qt::Key_F10, this);
    connect(menu, &QShortcut::activated, this, &frmMain::abrirMenu);
    // The same key twice would be taken for neither.
    QList<QKeySequence> teclas = QKeySequence::keyBindings(QKeySequence::Close);
    if (const QKeySequence habitual(Qt::CTRL | Qt::Key_F4); !teclas.contains(habitual))
        teclas << habitual;
    auto *fechar = new QShortcut(this);
    fechar->setKeys(teclas);
    connect(fechar, &QShortcut::activated, this, [this] {
        if (QMdiSubWindow *janela = m_area->activeSubWindow())
            janela->close();
    });
}

void frmMain::MDIForm_Load() {
    Rotina("frmMain.MDIForm_Load", [this] {
        estado().VersaoApp = u"  v"_s + QCoreApplication::applicationVersion();
        definirTitulo();
        setColour();
        mostrarEstadoDaBase();
        pBuildMenus();
    });
}

void frmMain::definirTitulo() {
    setWindowTitle(modTraducoes::texto(u"VISTREL_frmMain"_s, u"frmMain.Caption"_s, u"Vistrel Português"_s) +
                   estado().VersaoApp);
}

void frmMain::criarBarra() {
    QStatusBar *barra = statusBar();
    barra->setObjectName(u"cmdBar"_s);
    m_sair = new QPushButton;
    m_sair->setObjectName(u"STATUS:SairAplicacao"_s);
    m_sair->setFlat(true);
    m_sair->setIcon(icones::icone(u"sair"_s));
    connect(m_sair, &QPushButton::clicked, this, [this] {
        forcarEventos();
        close();
    });
    barra->addWidget(m_sair);
    m_janelas = new QPushButton;
    m_janelas->setObjectName(u"STATUS:Janelas"_s);
    m_janelas->setIcon(icones::icone(u"janelas"_s));
    m_janelas->setFlat(true);
    m_janelas->setMenu(new QMenu(m_janelas));
    m_janelas->hide();
    connect(m_janelas->menu(), &QMenu::aboutToShow, this, [this] {
        m_janelas->menu()->clear();
        encherJanelas(m_janelas->menu());
    });
    barra->addWidget(m_janelas);
    m_estadoBD = new QLabel;
    m_estadoBD->setObjectName(u"lblCaminhoBD"_s);
    m_estadoBD->setContentsMargins(8, 0, 8, 0);
    barra->addPermanentWidget(m_estadoBD);
}

// Quiet, but always there: which database the shown readings come from.
void frmMain::mostrarEstadoDaBase() {
    const auto texto = [](const QString &chave, const QString &omissao) {
        return modTraducoes::texto(u"VISTREL_frmMain"_s, chave, omissao);
    };
    const QString caminho = modINI::GetSetting(estado().NomePrograma, u"BD"_s, u"MAIN"_s);
    QStringList legenda{QFileInfo(caminho).fileName()};
    if (!ligacaoPartilhada().aberta()) // BDLigada outlives an opening that failed
        legenda += texto(u"BDDesligada"_s, u"sem ligação"_s);
    else if (ligacaoPartilhada().soLeitura())
        legenda += texto(u"BDSoLeitura"_s, u"só leitura"_s);
    legenda.removeAll(QString()); // settings that could not be kept name no file
    m_estadoBD->setText(textoMostrado::linha(legenda.join(u" – "_s), letrasDaLegenda));
    m_estadoBD->setToolTip(caminho);
    m_sair->setText(texto(u"Sair"_s, u"Sair"_s));
    m_sair->setAccessibleName(m_sair->text());
    m_janelas->setText(texto(u"Janelas"_s, u"Janelas"_s));
    m_janelas->setAccessibleName(m_janelas->text());
}

// The work area a shade away from the windows on it.
void frmMain::setColour() {
    const QColor janela = palette().color(QPalette::Window);
    m_area->setBackground(janela.lightnessF() > 0.5 ? janela.darker(112) : janela.lighter(125));
}

void frmMain::alojar(QWidget *form) {
    const QPointer<QWidget> vigiado = form;
    const QPointer<QWidget> comeco = form->focusWidget(); // where the form says that work begins; the frame forgets it
    const QPointer<QMdiSubWindow> janela = new QMdiSubWindow;
    janela->setAttribute(Qt::WA_DeleteOnClose);
    janela->setWidget(form);
    for (QAction *accao : janela->systemMenu()->actions())
        accao->setShortcuts(QList<QKeySequence>()); // of several windows' same keys none would be taken
    janela->setWindowIcon(form->windowIcon().isNull() ? windowIcon() : form->windowIcon());
    // The title follows by itself; the icon does not, and a form that closes itself would leave an empty frame.
    connect(form, &QWidget::windowIconChanged, janela, [janela](const QIcon &icone) { janela->setWindowIcon(icone); });
    connect(
        form, &QObject::destroyed, janela, [janela] { janela->close(); }, Qt::QueuedConnection);
    connect(janela, &QObject::destroyed, this, &frmMain::mostrarJanelas, Qt::QueuedConnection);
    m_area->addSubWindow(janela);
    form->show();
    if (janela) // a form may let events run while it comes up, and be closed by them
        janela->show();
    if (vigiado)
        (comeco ? comeco : vigiado)->setFocus();
}

void frmMain::SmartMenuXP_Click(const EntradaMenu &entrada) {
    Rotina("frmMain.SmartMenuXP_Click", [&] {
        if (m_ocupado || entrada.form.isEmpty())
            return;
        const auto avisar = [](const QString &seccao, const QString &chave, const QString &omissao) {
            estado().ambiente.dialogos->mensagem(modTraducoes::texto(seccao, chave, omissao));
        };
        if (entrada.accao == AccaoMenu::Configuracoes && VerificarSeExistemFormsActivos()) {
            avisar(u"VISTREL_frmMain"_s, u"FormsActivos"_s, u"Por favor, feche todas as janelas primeiro!!!"_s);
            return;
        }
        if (entrada.accao == AccaoMenu::Logger && !VerificarDLL1Wire()) {
            avisar(u"frmCapturarSondas"_s, u"DLLError"_s, u"Erro ao Carregar DLL do 1-Wire"_s);
            return;
        }
        if (entrada.accao == AccaoMenu::Sensores)
            estado().ObjectivoPassWord = 2;
        registoForms().abrir(entrada.form.toString());
    });
}

bool frmMain::VerificarDLL1Wire() {
    return Rotina("frmMain.VerificarDLL1Wire", [this] {
        forcarEventos();
        if (!chamar1Wire)
            return false;
        chamar1Wire();
        return true;
    });
}

// The main window counts as one itself.
bool frmMain::VerificarSeExistemFormsActivos() const {
    int quantos = 0;
    for (const QString &nome : registoForms().activos())
        quantos += nome == u"frmErro" ? 0 : 1;
    return quantos > 1;
}

bool frmMain::FormEstaActivo(const QString &nome) const {
    return registoForms().activo(nome);
}

void frmMain::AlterarLingua() {
    Rotina("frmMain.AlterarLingua", [this] {
        estado().Lingua = modTraducoes::linguaDasDefinicoes();
        textosDoQt::aplicar(estado().Lingua);
        definirTitulo();
        forcarEventos();
        pBuildMenus();
        forcarEventos();
        mostrarEstadoDaBase();
    });
}

// How children lie in the work area and which there are, for those who have many open.
void frmMain::encherJanelas(QMenu *menu) {
    const auto texto = [](const QString &chave, const QString &omissao) {
        return modTraducoes::texto(u"VISTREL_frmMain"_s, chave, omissao);
    };
    menu->addAction(texto(u"JanelasCascata"_s, u"Em cascata"_s), m_area, &QMdiArea::cascadeSubWindows);
    menu->addAction(texto(u"JanelasMosaico"_s, u"Em mosaico"_s), this, &frmMain::emMosaico);
    menu->addAction(texto(u"JanelasFechar"_s, u"Fechar todas"_s), m_area, &QMdiArea::closeAllSubWindows);
    const QList<QMdiSubWindow *> janelas = m_area->subWindowList();
    if (!janelas.isEmpty())
        menu->addSeparator();
    for (QMdiSubWindow *janela : janelas) {
        QAction *accao =
            menu->addAction(textoMostrado::linha(janela->windowTitle(), letrasDaLegenda).replace(u"&"_s, u"&&"_s),
                            m_area, [this, janela] { m_area->setActiveSubWindow(janela); });
        accao->setCheckable(true);
        accao->setChecked(janela == m_area->currentSubWindow());
    }
}

// Side by side as far as the windows let themselves be narrowed, the rest below: the area's own way puts those that
// keep a least size over one another.
void frmMain::emMosaico() {
    QList<QMdiSubWindow *> janelas = m_area->subWindowList();
    janelas.removeIf([](const QMdiSubWindow *janela) { return janela->isMinimized(); });
    if (janelas.isEmpty())
        return;
    for (QMdiSubWindow *janela : std::as_const(janelas))
        if (janela->isMaximized())
            janela->showNormal();
    m_area->horizontalScrollBar()->setValue(0);
    m_area->verticalScrollBar()->setValue(0);
    const int quantas = int(janelas.size());
    QSize area = m_area->viewport()->size();
    int colunas = int(std::ceil(std::sqrt(quantas)));
    QSize lugar;
    for (bool rola = false;;) {
        const int linhas = (quantas + colunas - 1) / colunas;
        const int largura = area.width() / colunas;
        lugar = {largura, area.height() / linhas};
        for (QMdiSubWindow *janela : std::as_const(janelas)) {
            janela->resize(lugar);
            lugar = lugar.expandedTo(janela->size());
        }
        if (linhas * lugar.height() > area.height() && !rola) { // room for the bar to scroll with
            rola = true;
            area.rwidth() -= m_area->verticalScrollBar()->sizeHint().width();
        } else if (lugar.width() == largura || colunas == 1) {
            break;
        } else {
            --colunas;
        }
    }
    for (int i = 0; i < quantas; ++i)
        janelas[i]->setGeometry(QRect(QPoint(i % colunas * lugar.width(), i / colunas * lugar.height()), lugar));
}

void frmMain::mostrarJanelas() {
    m_janelas->setVisible(!m_area->subWindowList().isEmpty());
}

// Of the free area alone: a click in a form comes here too when the form has no menu there.
void frmMain::menuDaArea(const QPoint &onde) {
    if (m_area->childAt(onde) != m_area->viewport())
        return;
    QMenu menu;
    encherJanelas(&menu);
    menu.setEnabled(!m_area->subWindowList().isEmpty());
    menu.exec(m_area->mapToGlobal(onde));
}

// Without a question, also in the middle of a load: the load's next pass finds its window gone.
void frmMain::descarregarFormularios() {
    QList<QPointer<QWidget>> janelas;
    for (QMdiSubWindow *janela : m_area->subWindowList())
        janelas.append(janela);
    for (QWidget *janela : QApplication::topLevelWidgets())
        if (janela != this && janela->isVisible())
            janelas.append(janela);
    for (const QPointer<QWidget> &janela : std::as_const(janelas))
        if (janela)
            janela->close();
}

void frmMain::closeEvent(QCloseEvent *evento) {
    Rotina("frmMain.MDIForm_QueryUnload", [this] {
        setEnabled(true);
        descarregarFormularios();
    });
    evento->accept();
    QMainWindow::closeEvent(evento);
}

void frmMain::changeEvent(QEvent *evento) {
    QMainWindow::changeEvent(evento);
    if (evento->type() == QEvent::PaletteChange && m_area)
        setColour();
}
