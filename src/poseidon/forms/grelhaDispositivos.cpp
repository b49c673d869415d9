#include "poseidon/forms/grelhaDispositivos.h"

#include "core/literais.h"
#include "core/modTraducoes.h"
#include "core/textoMostrado.h"
#include "platform/forms/grelha.h"
#include "platform/forms/icones.h"

#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QRegularExpressionValidator>

namespace {

struct Titulo {
    Coluna coluna;
    QStringView chave, omissao;
    QStringView exemplo; // as wide as the column should be
    bool escondida = false;
};
constexpr Titulo titulos[] = {
    {Coluna::SELECT, u"", u"", u""},
    {Coluna::UDP, u"", u"", u""},
    {Coluna::IP, u"lblIP.Caption", u"IP", u"192.168.100.200"},
    {Coluna::MAC, u"lblMac.Caption", u"MAC", u"00:0A:59:00:12:34"},
    {Coluna::PORTA, u"lblPorta.Caption", u"Porta", u"65535"},
    {Coluna::TIPO, u"lblTipo.Caption", u"Tipo", u"Poseidon 2251"},
    {Coluna::DESCRICAO, u"lblDescricao.Caption", u"Nome", u"Frigoríficos do Laboratório"},
    {Coluna::TIPON, u"", u"", u"", true},
    {Coluna::MODO, u"", u"", u"", true},
    {Coluna::ACT, u"", u"", u"", true}, // nothing is ever in it
    {Coluna::NLEITURAS, u"colMedias.Caption", u"Médias", u"9999"},
    {Coluna::BLNERASELOG, u"colApagar.Caption", u"Apagar", u""},
    {Coluna::DSTAT, u"colEstado.Caption", u"Estado", u"Em espera"},
};

constexpr QRgb corDeAlterada = qRgb(255, 0, 0);
constexpr QRgb corDeAlteradaNoEscuro = qRgb(255, 128, 118);

QString doForm(QStringView chave, QStringView omissao) {
    return modTraducoes::texto(u"frmDescarregar2251"_s, chave.toString(), omissao.toString());
}

} // namespace

ModeloDispositivos::ModeloDispositivos(listaPoseidons::Lista &lista, QObject *pai)
    : QAbstractTableModel(pai), m_lista(lista), m_mostradas(lista.total()) {}

bool ModeloDispositivos::editavel(int coluna) {
    const auto c = Coluna(coluna + 1);
    return c == Coluna::IP || c == Coluna::PORTA || c == Coluna::DESCRICAO;
}

QString ModeloDispositivos::texto(const listaPoseidons::Linha &l, Coluna coluna, int numero) const {
    switch (coluna) {
    case Coluna::UDP:
        return l.UDP;
    case Coluna::IP:
        return l.IP;
    case Coluna::MAC:
        return l.MAC;
    case Coluna::PORTA:
        return l.PORTA;
    case Coluna::TIPO:
        return l.TIPO;
    case Coluna::DESCRICAO:
        return l.DESCRICAO;
    case Coluna::NLEITURAS:
        return l.NLEITURAS;
    case Coluna::DSTAT:
        return dito ? dito(numero).texto : QString();
    default:
        return {};
    }
}

QVariant ModeloDispositivos::icone(const listaPoseidons::Linha &l, Coluna coluna) const {
    switch (coluna) {
    case Coluna::SELECT:
        return icones::icone(l.SELECT == u"SIM" ? u"unidade-marca0"_s : u"unidade-marca1"_s);
    case Coluna::UDP:
        return m_vistos.contains(l.MAC.trimmed().toLower()) ? QVariant(icones::icone(u"unidade-visto"_s)) : QVariant();
    case Coluna::BLNERASELOG:
        return l.BLNERASELOG == u"1" ? QVariant(icones::icone(u"unidade-apagar"_s)) : QVariant();
    case Coluna::DSTAT:
        return icones::icone(u"unidade-estado"_s + QString::number(l.DSTAT));
    default:
        return {};
    }
}

QVariant ModeloDispositivos::data(const QModelIndex &i, int papel) const {
    const int numero = i.row() + 1;
    if (numero > m_lista.total())
        return {};
    const listaPoseidons::Linha &l = m_lista.linha(numero);
    const auto coluna = Coluna(i.column() + 1);
    switch (papel) {
    case Qt::DisplayRole:
        return textoMostrado::linha(texto(l, coluna, numero));
    case Qt::EditRole:
        return texto(l, coluna, numero);
    case Qt::AccessibleTextRole:
        return coluna == Coluna::SELECT ? l.SELECT : texto(l, coluna, numero);
    case Qt::ToolTipRole: {
        if (coluna != Coluna::DSTAT || !dito)
            return texto(l, coluna, numero);
        const Dito d = dito(numero);
        return d.pormenor.isEmpty() ? d.texto : QString(d.texto + u'\n' + d.pormenor);
    }
    case Qt::DecorationRole:
        return icone(l, coluna);
    case Qt::BackgroundRole:
        return riscas::cor(i.row() % 2 == 0 ? EstadoDaLinha::Par : EstadoDaLinha::Impar, paleta);
    case Qt::ForegroundRole:
        if (const Edicao e = m_editadas.value(celula(numero, coluna)); e.difere && e.antes != texto(l, coluna, numero))
            return QColor(paleta.color(QPalette::Base).lightness() < 128 ? corDeAlteradaNoEscuro : corDeAlterada);
        return {};
    default:
        return {};
    }
}

QVariant ModeloDispositivos::headerData(int seccao, Qt::Orientation orientacao, int papel) const {
    if (orientacao != Qt::Horizontal || seccao < 0 || seccao >= int(Coluna::Total))
        return {};
    const Titulo &t = titulos[seccao];
    if (papel == Qt::DisplayRole)
        return t.chave.isEmpty() ? QString() : doForm(t.chave, t.omissao);
    if (papel == Qt::TextAlignmentRole)
        return QVariant(Qt::AlignLeft | Qt::AlignVCenter);
    return {};
}

Qt::ItemFlags ModeloDispositivos::flags(const QModelIndex &i) const {
    const Qt::ItemFlags base = Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
    return editavel(i.column()) ? base | Qt::ItemIsEditable : base;
}

bool ModeloDispositivos::setData(const QModelIndex &i, const QVariant &valor, int papel) {
    if (papel != Qt::EditRole || !guardar || !editavel(i.column()))
        return false;
    const QString novo = valor.toString().trimmed();
    if (novo.isEmpty() || novo == data(i, Qt::EditRole).toString())
        return false;
    const bool feito = guardar(i.row() + 1, Coluna(i.column() + 1), novo);
    renovar(i.row() + 1);
    return feito;
}

void ModeloDispositivos::setEditada(int linha, Coluna coluna, const QString &antes, bool difere) {
    const auto edicao = m_editadas.find(celula(linha, coluna));
    if (edicao == m_editadas.end())
        m_editadas.insert(celula(linha, coluna), {antes, difere});
    else
        edicao->difere = difere;
}

void ModeloDispositivos::renovar() {
    if (m_lista.total() > m_mostradas) {
        beginInsertRows({}, m_mostradas, m_lista.total() - 1);
        m_mostradas = m_lista.total();
        endInsertRows();
    }
    if (m_mostradas > 0)
        Q_EMIT dataChanged(index(0, 0), index(m_mostradas - 1, columnCount() - 1));
}

void ModeloDispositivos::renovar(int linha) {
    if (linha >= 1 && linha <= m_mostradas)
        Q_EMIT dataChanged(index(linha - 1, 0), index(linha - 1, columnCount() - 1));
}

QWidget *DelegadoDispositivos::createEditor(QWidget *pai, const QStyleOptionViewItem &, const QModelIndex &i) const {
    auto *txtEdit = new QLineEdit(pai);
    txtEdit->setObjectName(u"txtEdit"_s);
    txtEdit->setFrame(false);
    txtEdit->setAccessibleName(i.model()->headerData(i.column(), Qt::Horizontal, Qt::DisplayRole).toString());
    if (Coluna(i.column() + 1) == Coluna::PORTA) {
        static const QRegularExpression algarismos(u"[0-9]{0,5}"_s);
        txtEdit->setValidator(new QRegularExpressionValidator(algarismos, txtEdit));
    } else if (Coluna(i.column() + 1) == Coluna::DESCRICAO) {
        txtEdit->setMaxLength(int(listaPoseidons::maximoDoNome));
    }
    return txtEdit;
}

// While the window works its rows stay readable and keep the colours of their states.
void DelegadoDispositivos::initStyleOption(QStyleOptionViewItem *opcao, const QModelIndex &i) const {
    QStyledItemDelegate::initStyleOption(opcao, i);
    const QIcon icone = i.data(Qt::DecorationRole).value<QIcon>();
    if (!icone.isNull())
        opcao->icon = icone;
    opcao->state |= QStyle::State_Enabled;
    opcao->palette.setCurrentColorGroup(opcao->state & QStyle::State_Active ? QPalette::Active : QPalette::Inactive);
    opcao->state &= ~QStyle::State_HasFocus;
    if (opcao->state & QStyle::State_Selected && opcao->widget && opcao->widget->hasFocus()) {
        const auto *vista = qobject_cast<const QAbstractItemView *>(opcao->widget);
        if (vista && vista->currentIndex() == i)
            opcao->state |= QStyle::State_HasFocus; // which cell F2 edits
    }
    if (opcao->text.isEmpty() && !opcao->icon.isNull())
        opcao->decorationAlignment = Qt::AlignCenter;
}

GrelhaDispositivos::GrelhaDispositivos(ModeloDispositivos *modelo, QWidget *pai) : QTableView(pai) {
    setObjectName(u"grdDispositivos"_s);
    setModel(modelo);
    setItemDelegate(new DelegadoDispositivos(this));
    setSelectionBehavior(SelectRows);
    setSelectionMode(SingleSelection);
    setEditTriggers(DoubleClicked | EditKeyPressed);
    setShowGrid(false);
    setWordWrap(false);
    setTabKeyNavigation(false);
    setHorizontalScrollMode(ScrollPerPixel);
    verticalHeader()->hide();
    horizontalHeader()->setStretchLastSection(true);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setSectionsClickable(false);
    modelo->paleta = palette();
    for (const Titulo &t : titulos)
        setColumnHidden(int(t.coluna) - 1, t.escondida);
    ajustarColunas();
}

void GrelhaDispositivos::ajustarColunas() {
    const QFontMetrics medida(font());
    verticalHeader()->setDefaultSectionSize(medida.height() + 10);
    const int icone = style()->pixelMetric(QStyle::PM_SmallIconSize);
    setIconSize(QSize(icone, icone));
    for (const Titulo &t : titulos) {
        const int coluna = int(t.coluna) - 1;
        const int titulo = t.chave.isEmpty() ? 0 : horizontalHeader()->sectionSizeHint(coluna) + 4;
        setColumnWidth(coluna, std::max({icone + 16, titulo, medida.horizontalAdvance(t.exemplo.toString()) + 20}));
    }
}

int GrelhaDispositivos::linhaActual() const {
    return currentIndex().isValid() ? currentIndex().row() + 1 : 0;
}

void GrelhaDispositivos::setLinhaActual(int linha) {
    if (linha >= 1 && linha <= model()->rowCount())
        setCurrentIndex(model()->index(linha - 1, int(Coluna::IP) - 1));
}

void GrelhaDispositivos::keyPressEvent(QKeyEvent *evento) {
    const int linha = linhaActual();
    switch (evento->key()) {
    case Qt::Key_Space:
        if (linha > 0)
            Q_EMIT marcar(linha);
        return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        // The one that ends an edit comes here as well.
        if (linha > 0 && state() != EditingState && ModeloDispositivos::editavel(currentIndex().column()))
            edit(currentIndex());
        return;
    case Qt::Key_Home:
        return setLinhaActual(1);
    case Qt::Key_End:
        return setLinhaActual(model()->rowCount());
    default:
        QTableView::keyPressEvent(evento);
    }
}

void GrelhaDispositivos::mouseReleaseEvent(QMouseEvent *evento) {
    QTableView::mouseReleaseEvent(evento);
    const QModelIndex onde = indexAt(evento->pos());
    if (evento->button() == Qt::LeftButton && onde.isValid() && onde.column() == int(Coluna::SELECT) - 1)
        Q_EMIT marcar(onde.row() + 1);
}

void GrelhaDispositivos::contextMenuEvent(QContextMenuEvent *evento) {
    const bool rato = evento->reason() == QContextMenuEvent::Mouse;
    const QModelIndex onde = rato ? indexAt(evento->pos()) : currentIndex();
    if (!onde.isValid())
        return;
    setCurrentIndex(onde);
    Q_EMIT pedirMenu(onde.row() + 1,
                     rato ? evento->globalPos() : viewport()->mapToGlobal(visualRect(onde).bottomLeft()));
}

void GrelhaDispositivos::currentChanged(const QModelIndex &actual, const QModelIndex &anterior) {
    QTableView::currentChanged(actual, anterior);
    if (actual.row() != anterior.row())
        Q_EMIT linhaMudou(actual.isValid() ? actual.row() + 1 : 0);
}

void GrelhaDispositivos::changeEvent(QEvent *evento) {
    QTableView::changeEvent(evento);
    if (evento->type() == QEvent::FontChange)
        ajustarColunas();
    if (evento->type() == QEvent::PaletteChange)
        if (auto *modelo = qobject_cast<ModeloDispositivos *>(this->model()))
            modelo->paleta = palette();
}
