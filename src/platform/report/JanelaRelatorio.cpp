#include "platform/report/JanelaRelatorio.h"

#include "core/estado.h"
#include "core/eventos.h"
#include "core/exportado.h"
#include "core/falha.h"
#include "core/ficheiroInteiro.h"
#include "core/literais.h"
#include "core/modTraducoes.h"
#include "core/rotina.h"

#include <QAction>
#include <QCloseEvent>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QPdfWriter>
#include <QPointer>
#include <QPrintDialog>
#include <QPrinter>
#include <QProgressBar>
#include <QScrollArea>
#include <QShortcut>
#include <QSpinBox>
#include <QStyle>
#include <QToolBar>
#include <QVBoxLayout>

namespace {

QString texto(const QString &chave, const QString &omissao) {
    return modTraducoes::texto(u"VISTREL_DataReport"_s, chave, omissao);
}

constexpr double ajustarPagina = 0;
constexpr double ajustarLargura = -1;
constexpr int margemDaFolha = 12;
constexpr int resolucaoPDF = 1200;

} // namespace

// One page on its paper, painted by the report itself at the present size.
class FolhaDeRelatorio : public QWidget {
public:
    explicit FolhaDeRelatorio(const DataReport &relatorio) : m_relatorio(relatorio) { setObjectName(u"folha"_s); }
    int pagina = 0;
    bool pronta = false; // until the lines are there the paper stays blank

protected:
    void paintEvent(QPaintEvent *) override {
        QPainter pintor(this);
        const QRectF papel =
            QRectF(rect()).marginsRemoved(QMarginsF(margemDaFolha, margemDaFolha, margemDaFolha, margemDaFolha));
        pintor.fillRect(papel.translated(3, 3), palette().color(QPalette::Shadow));
        pintor.fillRect(papel, Qt::white);
        pintor.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
        if (pronta)
            m_relatorio.pintarPagina(pintor, pagina, papel);
    }

private:
    const DataReport &m_relatorio;
};

JanelaRelatorio::JanelaRelatorio(std::unique_ptr<DataReport> relatorio, const QString &titulo, QWidget *dono)
    : QWidget(dono, Qt::Window), m_relatorio(std::move(relatorio)) {
    setObjectName(m_relatorio->Name());
    setWindowTitle(titulo);
    setAttribute(Qt::WA_DeleteOnClose);
    m_folha = new FolhaDeRelatorio(*m_relatorio);
    m_rolo = new QScrollArea(this);
    m_rolo->setBackgroundRole(QPalette::Mid);
    m_rolo->setAlignment(Qt::AlignCenter);
    m_rolo->setWidget(m_folha);
    m_rolo->installEventFilter(this);
    connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_F4), this), &QShortcut::activated, this,
            &JanelaRelatorio::close);
    auto *coluna = new QVBoxLayout(this);
    coluna->setContentsMargins(0, 0, 0, 0);
    coluna->setSpacing(0);
    construirBarra();
    coluna->addWidget(m_rolo, 1);
    resize(980, 760);
}

JanelaRelatorio::~JanelaRelatorio() = default;

void JanelaRelatorio::construirBarra() {
    auto *barra = new QToolBar(this);
    barra->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    const auto accao = [&](const QString &nome, const QString &titulo, const QIcon &icone, const QKeySequence &tecla,
                           void (JanelaRelatorio::*feito)()) {
        QAction *a = barra->addAction(icone, titulo, this, feito);
        a->setObjectName(nome);
        a->setShortcut(tecla);
        a->setToolTip(titulo + u" (" + tecla.toString(QKeySequence::NativeText) + u')');
        return a;
    };
    m_imprimir = accao(u"cmdImprimir"_s, texto(u"cmdImprimir"_s, u"Imprimir..."_s),
                       QIcon::fromTheme(u"document-print"_s), QKeySequence::Print, &JanelaRelatorio::imprimir);
    m_pdf = accao(u"cmdPDF"_s, texto(u"cmdPDF"_s, u"Guardar PDF..."_s), QIcon::fromTheme(u"document-save-as"_s),
                  QKeySequence::Save, &JanelaRelatorio::pedirPDF);
    barra->addSeparator();
    m_anterior = barra->addAction(style()->standardIcon(QStyle::SP_ArrowLeft), QString(), this,
                                  [this] { irPara(m_folha->pagina - 1); });
    m_anterior->setToolTip(texto(u"Anterior"_s, u"Página anterior"_s));
    m_pagina = new QSpinBox;
    m_pagina->setObjectName(u"pagina"_s);
    m_pagina->setAccessibleName(texto(u"Pagina"_s, u"Página"_s));
    m_pagina->setKeyboardTracking(false);
    connect(m_pagina, &QSpinBox::valueChanged, this, [this](int n) { irPara(n - 1); });
    barra->addWidget(m_pagina);
    m_total = new QLabel;
    m_total->setMargin(4);
    barra->addWidget(m_total);
    m_seguinte = barra->addAction(style()->standardIcon(QStyle::SP_ArrowRight), QString(), this,
                                  [this] { irPara(m_folha->pagina + 1); });
    m_seguinte->setToolTip(texto(u"Seguinte"_s, u"Página seguinte"_s));
    barra->addSeparator();
    m_zoom = new QComboBox;
    m_zoom->setObjectName(u"zoom"_s);
    m_zoom->setAccessibleName(texto(u"Ampliacao"_s, u"Ampliação"_s));
    m_zoom->addItem(texto(u"PaginaInteira"_s, u"Página inteira"_s), ajustarPagina);
    m_zoom->addItem(texto(u"Largura"_s, u"Largura"_s), ajustarLargura);
    for (const int percento : {75, 100, 150, 200})
        m_zoom->addItem(u"%1 %"_s.arg(percento), percento / 100.0);
    connect(m_zoom, &QComboBox::currentIndexChanged, this, &JanelaRelatorio::ajustarFolha);
    barra->addWidget(m_zoom);
    barra->addSeparator();
    m_progresso = new QProgressBar;
    m_progresso->setObjectName(u"progresso"_s);
    m_progresso->setMaximumWidth(260);
    m_accaoProgresso = barra->addWidget(m_progresso);
    m_parar = accao(u"cmdParar"_s, texto(u"cmdParar"_s, u"Parar"_s), style()->standardIcon(QStyle::SP_BrowserStop),
                    QKeySequence(Qt::Key_Escape), &JanelaRelatorio::parar);

    layout()->addWidget(barra);
    ocupado(false);
}

void JanelaRelatorio::ocupado(bool sim, const QString &formato) {
    m_ocupado = sim;
    m_parado = false;
    m_parar->setVisible(sim);
    m_parar->setEnabled(sim);
    for (QAction *a : {m_imprimir, m_pdf, m_anterior, m_seguinte})
        a->setEnabled(!sim);
    m_pagina->setEnabled(!sim);
    m_progresso->setFormat(formato);
    m_progresso->setValue(0);
    m_accaoProgresso->setVisible(sim);
}

bool JanelaRelatorio::progredir(qint64 feitas, qint64 total) {
    if (feitas % 64 == 0) {
        m_progresso->setMaximum(int(std::max<qint64>(total, 1)));
        m_progresso->setValue(int(std::min(feitas, total)));
    }
    Vigia(this).passar();
    return !m_parado;
}

// A report that could not be made shows no window.
bool JanelaRelatorio::preparar() {
    const QPointer<JanelaRelatorio> viva(this);
    try {
        return m_relatorio->preparar([this](qint64 f, qint64 t) { return progredir(f, t); });
    } catch (...) {
        if (viva)
            close();
        throw;
    }
}

bool JanelaRelatorio::mostrar() {
    return Rotina("DataReport.Show", [&] {
        show();
        raise();
        activateWindow();
        ocupado(true, texto(u"APreparar"_s, u"A preparar... %p %"_s));
        const bool completo = preparar();
        ocupado(false);
        if (!completo) {
            close();
            return false;
        }
        m_folha->pronta = true;
        m_pagina->setRange(1, m_relatorio->paginas());
        m_total->setText(u"/ %1"_s.arg(m_relatorio->paginas()));
        irPara(0);
        ajustarFolha();
        m_rolo->setFocus();
        return true;
    });
}

void JanelaRelatorio::irPara(int pagina) {
    m_folha->pagina = std::clamp(pagina, 0, std::max(0, m_relatorio->paginas() - 1));
    const QSignalBlocker calado(m_pagina);
    m_pagina->setValue(m_folha->pagina + 1);
    m_anterior->setEnabled(m_folha->pagina > 0);
    m_seguinte->setEnabled(m_folha->pagina + 1 < m_relatorio->paginas());
    m_folha->update();
}

void JanelaRelatorio::ajustarFolha() {
    const QSizeF papel = m_relatorio->disposicao().fullRectPoints().size() * (logicalDpiX() / 72.0);
    const double pedido = m_zoom->currentData().toDouble();
    const QSizeF vista = QSizeF(m_rolo->maximumViewportSize()) - QSizeF(2 * margemDaFolha, 2 * margemDaFolha);
    double escala = pedido;
    if (pedido == ajustarLargura)
        escala = (vista.width() - style()->pixelMetric(QStyle::PM_ScrollBarExtent)) / papel.width();
    else if (pedido == ajustarPagina)
        escala = std::min(vista.width() / papel.width(), vista.height() / papel.height());
    m_folha->resize((papel * std::max(escala, 0.1)).toSize() + QSize(2 * margemDaFolha, 2 * margemDaFolha));
}

bool JanelaRelatorio::pintarPaginas(QPagedPaintDevice &papel, QPainter &pintor, int primeira, int ultima) {
    ocupado(true, texto(u"AImprimir"_s, u"A imprimir... %p %"_s));
    bool completo = true;
    // On other paper than its own a page is made larger or smaller, and stays whole.
    const QSizeF area(papel.width(), papel.height());
    const QSizeF propria = m_relatorio->disposicao().fullRectPoints().size();
    QRectF folha(QPointF(), propria.scaled(area, Qt::KeepAspectRatio));
    folha.moveCenter(QRectF(QPointF(), area).center());
    for (int p = primeira; p <= ultima && completo; ++p) {
        if (p > primeira)
            papel.newPage();
        m_relatorio->pintarPagina(pintor, p, folha);
        completo = progredir(qint64(p - primeira + 1) * 64, qint64(ultima - primeira + 1) * 64);
    }
    ocupado(false);
    irPara(m_folha->pagina);
    return completo;
}

// What stood there is replaced by a whole file only: not by a stopped one, nor by what a full disk took of it.
bool JanelaRelatorio::gravarPDF(const QString &caminho, int primeira, int ultima, const QPageLayout &papel) {
    FicheiroInteiro ficheiro(caminho);
    const auto falhar = [&] {
        throw Falha(erros::falhaDoFicheiro,
                    texto(u"ErroFicheiro"_s, u"Não é possível escrever \"%1\"."_s).arg(caminho) + u' ' +
                        ficheiro.errorString());
    };
    if (!ficheiro.abrir())
        falhar();
    QPdfWriter escritor(&ficheiro);
    escritor.setPageLayout(papel.isValid() ? QPageLayout(papel.pageSize(), papel.orientation(), QMarginsF())
                                           : m_relatorio->disposicao());
    escritor.setResolution(resolucaoPDF);
    escritor.setTitle(windowTitle());
    QPainter pintor(&escritor);
    const bool completo = pintarPaginas(escritor, pintor, primeira, ultima < 0 ? m_relatorio->paginas() - 1 : ultima);
    pintor.end();
    if (completo && !ficheiro.concluir())
        falhar();
    return completo;
}

void JanelaRelatorio::imprimir() {
    Rotina("DataReport.PrintReport", [&] {
        QPrinter impressora(QPrinter::HighResolution);
        impressora.setDocName(windowTitle());
        impressora.setPageLayout(m_relatorio->disposicao()); // what the dialog begins with
        impressora.setFullPage(true);
        QPrintDialog dialogo(&impressora, this);
        dialogo.setMinMax(1, m_relatorio->paginas());
        dialogo.setFromTo(1, m_relatorio->paginas());
        if (dialogo.exec() != QDialog::Accepted)
            return;
        const bool intervalo = impressora.printRange() == QPrinter::PageRange && impressora.fromPage() > 0;
        const int primeira = intervalo ? impressora.fromPage() - 1 : 0;
        const int ultima = intervalo ? impressora.toPage() - 1 : m_relatorio->paginas() - 1;
        if (!impressora.outputFileName().isEmpty()) { // the dialog offers a file as one of the printers
            if (gravarPDF(impressora.outputFileName(), primeira, ultima, impressora.pageLayout()))
                anunciarExportado(impressora.outputFileName());
            return;
        }
        impressora.setFullPage(true);
        QPainter pintor;
        if (!pintor.begin(&impressora))
            throw Falha(erros::falhaDoFicheiro, texto(u"ErroImpressora"_s, u"A impressora não aceita o trabalho."_s));
        if (!pintarPaginas(impressora, pintor, primeira, ultima)) {
            pintor.end();
            impressora.abort();
        }
    });
}

void JanelaRelatorio::pedirPDF() {
    Rotina("DataReport.ExportReport", [&] {
        Dialogos *dialogos = estado().ambiente.dialogos;
        const QString pasta = m_pasta ? m_pasta() : QString();
        const QString nome = windowTitle().replace(u'/', u'-') + u".pdf";
        const QString proposto = pasta.isEmpty() ? nome : pasta + u'/' + nome;
        const QString caminho =
            dialogos ? dialogos->gravarFicheiro(proposto, pasta, u"pdf (*.pdf)|*.pdf"_s) : QString();
        if (!caminho.isEmpty() && gravarPDF(caminho))
            anunciarExportado(caminho);
    });
}

bool JanelaRelatorio::folhear(int tecla) {
    switch (tecla) {
    case Qt::Key_PageUp:
        irPara(m_folha->pagina - 1);
        break;
    case Qt::Key_PageDown:
        irPara(m_folha->pagina + 1);
        break;
    case Qt::Key_Home:
        irPara(0);
        break;
    case Qt::Key_End:
        irPara(m_relatorio->paginas() - 1);
        break;
    default:
        return false;
    }
    return true;
}

void JanelaRelatorio::keyPressEvent(QKeyEvent *evento) {
    if (folhear(evento->key()))
        return;
    if (evento->key() == Qt::Key_Escape)
        close();
    else
        QWidget::keyPressEvent(evento);
}

// The scroll area would take these keys for itself; within a large page it has the arrows and the wheel.
bool JanelaRelatorio::eventFilter(QObject *objecto, QEvent *evento) {
    if (objecto == m_rolo && evento->type() == QEvent::KeyPress)
        return folhear(static_cast<QKeyEvent *>(evento)->key());
    return QWidget::eventFilter(objecto, evento);
}

void JanelaRelatorio::resizeEvent(QResizeEvent *evento) {
    QWidget::resizeEvent(evento);
    ajustarFolha();
}

void JanelaRelatorio::closeEvent(QCloseEvent *evento) {
    m_parado = true;
    QWidget::closeEvent(evento);
}
