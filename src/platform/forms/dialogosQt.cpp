#include "platform/forms/dialogosQt.h"

#include "core/textoMostrado.h"
#include "platform/forms/icones.h"
#include "platform/forms/registoForms.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QDir>
#include <QFileDialog>
#include <QFileIconProvider>
#include <QFileInfo>
#include <QHeaderView>
#include <QLabel>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QStyle>
#include <QTreeView>
#include <QUrl>
#include <QVBoxLayout>

namespace {

constexpr QSize tamanhoDoSelector(760, 480);
constexpr int maisUmBotao = -1;
constexpr int larguraALivre = 40; // beside the entries of a list

// Own drawings and plain buttons: where the desktop brings no icons, the library's fall-backs are coarse bitmaps.
int mostrar(QWidget *dono, QMessageBox::Icon icone, const QString &texto, QMessageBox::StandardButtons botoes,
            QMessageBox::StandardButton omissao, const QString &outro = {}) {
    QMessageBox caixa(icone, estado().NomePrograma, textoMostrado::paragrafos(texto), botoes, dono);
    caixa.setDefaultButton(omissao);
    caixa.setEscapeButton(omissao);
    constexpr QStringView desenhos[] = {u"", u"informacao", u"aviso", u"erro", u"pergunta"};
    if (const QIcon desenho = icones::icone(desenhos[icone].toString()); !desenho.isNull()) {
        const int lado = caixa.style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, &caixa);
        caixa.setIconPixmap(desenho.pixmap(QSize(lado, lado), caixa.devicePixelRatioF()));
    }
    const QAbstractButton *doOutro = outro.isEmpty() ? nullptr : caixa.addButton(outro, QMessageBox::ActionRole);
    for (QAbstractButton *botao : caixa.buttons())
        botao->setIcon({});
    if (doOutro) { // else no key would close it
        caixa.setDefaultButton(QMessageBox::Ok);
        caixa.setEscapeButton(QMessageBox::Ok);
    }
    const int resposta = caixa.exec();
    return doOutro && caixa.clickedButton() == doOutro ? maisUmBotao : resposta;
}

// "csv (*.csv)|*.csv|all|*.*" -> "csv (*.csv);;all (*.*)"
QString filtroQt(const QString &filtro) {
    const QStringList partes = filtro.split(u'|');
    QStringList filtros;
    for (qsizetype i = 0; i + 1 < partes.size(); i += 2)
        filtros.append(partes[i].contains(u'(') ? partes[i] : partes[i] + u" (" + partes[i + 1] + u')');
    return filtros.join(u";;"_s);
}

// Tells files by their names alone. To look into one means to open and close it, and that takes away the locks which
// this process holds on it: another program that opens the same database would then believe itself alone with it.
class IconesPeloNome : public QFileIconProvider {
public:
    QIcon icon(const QFileInfo &info) const override { return QFileIconProvider::icon(info.isDir() ? Folder : File); }
    QIcon icon(IconType tipo) const override { return QFileIconProvider::icon(tipo); }
    QString type(const QFileInfo &info) const override { return info.isFile() ? info.suffix().toUpper() : QString(); }
};

// A folder that could not be made, such as today's of the exports, gives way to the one above it.
QString existente(QString pasta) {
    while (!pasta.isEmpty() && !QFileInfo(pasta).isDir() && QFileInfo(pasta).path() != pasta)
        pasta = QFileInfo(pasta).path();
    return pasta;
}

// Qt's own dialog on every desktop, since others look into files, too.
class Selector {
public:
    Selector(QWidget *dono, QFileDialog::AcceptMode aceitar, QFileDialog::FileMode modo, const QString &inicio)
        : m_dialogo(dono, {}, QDir::rootPath()) { // somewhere without a database until it has its icons
        m_dialogo.setOption(QFileDialog::DontUseNativeDialog);
        m_dialogo.resize(tamanhoDoSelector);
        if (const auto *lista = m_dialogo.findChild<QTreeView *>(u"treeView"_s)) {
            lista->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
            lista->header()->setSectionResizeMode(0, QHeaderView::Stretch);
        }
        m_dialogo.setIconProvider(&m_icones);
        m_dialogo.setAcceptMode(aceitar);
        m_dialogo.setFileMode(modo);
        m_dialogo.setOption(QFileDialog::ShowDirsOnly, modo == QFileDialog::Directory);
        const QFileInfo info(inicio);
        const bool pasta = inicio.isEmpty() || info.isDir();
        m_dialogo.setDirectory(QDir(existente(pasta ? inicio : info.path())));
        if (!pasta)
            m_dialogo.selectFile(info.fileName());
    }
    void filtrar(const QString &filtro) {
        m_dialogo.setNameFilters(filtroQt(filtro).split(u";;"_s));
        // A name typed without its ending gets the one of the filter.
        m_dialogo.setDefaultSuffix(filtro.section(u'|', 1, 1).mid(2));
    }
    QString escolhido() {
        return m_dialogo.exec() == QDialog::Accepted ? m_dialogo.selectedFiles().value(0) : QString();
    }

private:
    IconesPeloNome m_icones;
    QFileDialog m_dialogo;
};

// The list's own way would frame the first row as soon as it has the keyboard, as if that were chosen, and the first
// arrow key would pass it by.
class Opcoes : public QListWidget {
protected:
    void focusInEvent(QFocusEvent *evento) override {
        const int antes = currentRow();
        QListWidget::focusInEvent(evento);
        if (antes < 0)
            setCurrentRow(antes, QItemSelectionModel::NoUpdate);
    }
};

} // namespace

DialogosQt::DialogosQt() {
    QObject::connect(qApp, &QApplication::focusChanged, &m_contexto, [this](QWidget *, QWidget *agora) {
        if (agora && agora->window()->windowType() == Qt::Window)
            m_ultima = agora->window();
    });
}

QWidget *DialogosQt::dono() const {
    if (QWidget *modal = QApplication::activeModalWidget())
        return modal;
    return m_ultima && m_ultima->isVisible() ? m_ultima.data() : registoForms().dono.data();
}

void DialogosQt::mensagem(const QString &texto, Estilo estilo) {
    constexpr QMessageBox::Icon porEstilo[] = {QMessageBox::Information, QMessageBox::Warning, QMessageBox::Critical};
    mostrar(dono(), porEstilo[size_t(estilo)], texto, QMessageBox::Ok, QMessageBox::Ok);
}

bool DialogosQt::pergunta(const QString &texto) {
    return mostrar(dono(), QMessageBox::Question, texto, QMessageBox::Yes | QMessageBox::No, QMessageBox::No) ==
           QMessageBox::Yes;
}

int DialogosQt::escolher(const QString &texto, const QStringList &opcoes, int actual) {
    QDialog dialogo(dono());
    dialogo.setObjectName(u"frmEscolher"_s);
    dialogo.setWindowTitle(estado().NomePrograma);
    auto *pedido = new QLabel(textoMostrado::paragrafos(texto));
    pedido->setTextFormat(Qt::PlainText);
    auto *lista = new Opcoes;
    lista->setObjectName(u"lstOpcoes"_s);
    lista->setAccessibleName(texto);
    for (const QString &opcao : opcoes)
        lista->addItem(textoMostrado::linha(opcao));
    lista->setMinimumWidth(std::min(lista->sizeHintForColumn(0) + larguraALivre, tamanhoDoSelector.width()));
    lista->setSizeAdjustPolicy(QAbstractScrollArea::AdjustToContents);
    pedido->setBuddy(lista);
    auto *botoes = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    QPushButton *confirmar = botoes->button(QDialogButtonBox::Ok);
    for (QAbstractButton *botao : botoes->buttons())
        botao->setIcon({});
    const auto escolhida = [lista] { return lista->selectedItems().isEmpty() ? -1 : lista->currentRow(); };
    QObject::connect(lista, &QListWidget::itemSelectionChanged, confirmar,
                     [=] { confirmar->setEnabled(escolhida() >= 0); });
    QObject::connect(lista, &QListWidget::itemDoubleClicked, &dialogo, &QDialog::accept);
    QObject::connect(botoes, &QDialogButtonBox::accepted, &dialogo, &QDialog::accept);
    QObject::connect(botoes, &QDialogButtonBox::rejected, &dialogo, &QDialog::reject);
    confirmar->setEnabled(false);
    if (actual >= 0)
        lista->setCurrentRow(actual);
    auto *coluna = new QVBoxLayout(&dialogo);
    coluna->addWidget(pedido);
    coluna->addWidget(lista);
    coluna->addWidget(botoes);
    lista->setFocus();
    return dialogo.exec() == QDialog::Accepted ? escolhida() : -1;
}

QString DialogosQt::abrirFicheiro(const QString &filtro, const QString &pasta) {
    Selector selector(dono(), QFileDialog::AcceptOpen, QFileDialog::ExistingFile, pasta);
    selector.filtrar(filtro);
    return selector.escolhido();
}

QString DialogosQt::gravarFicheiro(const QString &nomeProposto, const QString &pasta, const QString &filtro) {
    const QString inicio = QFileInfo(nomeProposto).isAbsolute() || pasta.isEmpty()
                               ? nomeProposto
                               : QDir(pasta).filePath(QFileInfo(nomeProposto).fileName());
    Selector selector(dono(), QFileDialog::AcceptSave, QFileDialog::AnyFile, inicio);
    selector.filtrar(filtro);
    return selector.escolhido();
}

QString DialogosQt::escolherPasta(const QString &inicio) {
    return Selector(dono(), QFileDialog::AcceptOpen, QFileDialog::Directory, inicio).escolhido();
}

bool DialogosQt::mensagemComBotao(const QString &texto, const QString &botao) {
    return mostrar(dono(), QMessageBox::Information, texto, QMessageBox::Ok, QMessageBox::Ok, botao) == maisUmBotao;
}

bool DialogosQt::abrirPasta(const QString &pasta) {
    return QDesktopServices::openUrl(QUrl::fromLocalFile(pasta));
}
