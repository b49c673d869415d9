#include "platform/forms/grelha.h"

#include "core/literais.h"
#include "core/textoMostrado.h"

#include <QAbstractTableModel>
#include <QApplication>
#include <QElapsedTimer>
#include <QHeaderView>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QSet>
#include <QStyledItemDelegate>
#include <QToolTip>

namespace {

// On a light screen.
constexpr QRgb corClara(EstadoDaLinha estado) {
    switch (estado) {
    case EstadoDaLinha::Par:
        return qRgb(253, 251, 232);
    case EstadoDaLinha::Impar:
        return qRgb(234, 242, 235);
    case EstadoDaLinha::Marcada:
    case EstadoDaLinha::PorEliminar:
    case EstadoDaLinha::Desactivada:
        return qRgb(238, 156, 136);
    case EstadoDaLinha::AmostraPar:
        return qRgb(251, 246, 206);
    case EstadoDaLinha::AmostraImpar:
        return qRgb(225, 237, 226);
    case EstadoDaLinha::AlarmeAcima:
        return qRgb(238, 157, 137);
    case EstadoDaLinha::AlarmeAbaixo:
        return qRgb(125, 138, 175);
    }
    return {};
}

constexpr bool daRisca(EstadoDaLinha estado) {
    return estado == EstadoDaLinha::Par || estado == EstadoDaLinha::Impar;
}

bool escura(const QPalette &paleta) {
    return paleta.color(QPalette::Base).lightness() < 128;
}

// The same hue, dark enough for light text: what stands out on white stands out here too.
QColor escurecer(const QColor &clara) {
    float h = 0;
    float s = 0;
    float l = 0;
    clara.getHslF(&h, &s, &l);
    const float distancia = 1 - l;
    return QColor::fromHslF(std::max(h, 0.0f), s * (0.2f + 1.2f * distancia), 0.14f + 0.75f * distancia);
}

} // namespace

namespace riscas {

QColor cor(EstadoDaLinha estado, const QPalette &paleta) {
    const QColor clara = corClara(estado);
    return escura(paleta) ? escurecer(clara) : clara;
}

QColor corSeleccionada(EstadoDaLinha estado, const QPalette &paleta) {
    constexpr float quaseBranca = 0.85f;
    const QColor clara = corClara(estado);
    float h = 0;
    float s = 0;
    float l = 0;
    clara.getHslF(&h, &s, &l);
    if (l > quaseBranca)
        return {};
    return escura(paleta) ? clara : QColor::fromHslF(std::max(h, 0.0f), 0.75f * s, 0.38f);
}

} // namespace riscas

class ModeloGrelha : public QAbstractTableModel {
public:
    struct Linha {
        QStringList celulas;
        EstadoDaLinha estado = EstadoDaLinha::Par;
    };

    explicit ModeloGrelha(Grelha *vista) : QAbstractTableModel(vista), m_vista(vista) {}

    int rowCount(const QModelIndex &pai = {}) const override { return pai.isValid() ? 0 : int(linhas.size()); }
    int columnCount(const QModelIndex &pai = {}) const override { return pai.isValid() ? 0 : int(titulos.size()); }

    QVariant data(const QModelIndex &i, int papel) const override {
        const Linha &linha = linhas[i.row()];
        switch (papel) {
        case Qt::DisplayRole:
            return textoMostrado::linha(linha.celulas.value(i.column()));
        case Qt::ToolTipRole:
            return linha.celulas.value(i.column());
        case Qt::BackgroundRole:
            return riscas::cor(linha.estado, m_vista->palette());
        case Qt::TextAlignmentRole:
            return alinhamento(i.column());
        default:
            return {};
        }
    }

    QVariant headerData(int seccao, Qt::Orientation orientacao, int papel) const override {
        if (orientacao == Qt::Horizontal && papel == Qt::DisplayRole)
            return titulos.value(seccao);
        if (orientacao == Qt::Horizontal && papel == Qt::TextAlignmentRole)
            return alinhamento(seccao);
        return {};
    }

    void setTitulos(const QStringList &novos) {
        beginResetModel();
        titulos = novos;
        endResetModel();
    }
    void limpar() {
        beginResetModel();
        linhas.clear();
        endResetModel();
    }
    void adicionar(const QStringList &celulas) {
        beginInsertRows({}, rowCount(), rowCount());
        linhas.append({celulas, {}});
        endInsertRows();
    }
    void remover(int linha) {
        beginRemoveRows({}, linha, linha);
        linhas.removeAt(linha);
        endRemoveRows();
    }
    void setCelula(int linha, int coluna, const QString &texto) {
        linhas[linha].celulas[coluna] = texto;
        Q_EMIT dataChanged(index(linha, coluna), index(linha, coluna));
    }
    void setEstado(int linha, EstadoDaLinha estado) {
        if (linhas[linha].estado == estado)
            return;
        linhas[linha].estado = estado;
        Q_EMIT dataChanged(index(linha, 0), index(linha, columnCount() - 1), {Qt::BackgroundRole});
    }

    QStringList titulos;
    QList<Linha> linhas;
    QSet<int> colunasADireita;

private:
    QVariant alinhamento(int coluna) const {
        return QVariant((colunasADireita.contains(coluna) ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    }
    Grelha *m_vista;
};

namespace {

// A selected row still tells whether it is marked. A text that is cut shows itself whole; over any other cell the list
// says what it has to say.
class DelegadoDaGrelha : public QStyledItemDelegate {
public:
    explicit DelegadoDaGrelha(Grelha *vista) : QStyledItemDelegate(vista), m_vista(vista) {}

    bool helpEvent(QHelpEvent *evento, QAbstractItemView *vista, const QStyleOptionViewItem &opcao,
                   const QModelIndex &i) override {
        const bool cortado = sizeHint(opcao, i).width() > vista->visualRect(i).width();
        if (evento->type() != QEvent::ToolTip || cortado)
            return QStyledItemDelegate::helpEvent(evento, vista, opcao, i);
        QToolTip::showText(evento->globalPos(), vista->toolTip(), vista);
        return true;
    }

protected:
    void initStyleOption(QStyleOptionViewItem *opcao, const QModelIndex &i) const override {
        QStyledItemDelegate::initStyleOption(opcao, i);
        const QColor fundo = riscas::corSeleccionada(m_vista->estadoDaLinha(i.row()), m_vista->palette());
        if (!fundo.isValid())
            return;
        opcao->palette.setColor(QPalette::Highlight, fundo);
        opcao->palette.setColor(QPalette::HighlightedText, fundo.lightnessF() < 0.5 ? Qt::white : Qt::black);
    }

private:
    Grelha *m_vista;
};

} // namespace

Grelha::Grelha(const QString &nome, QWidget *pai) : QTableView(pai), m_modelo(new ModeloGrelha(this)) {
    setObjectName(nome);
    setModel(m_modelo);
    setItemDelegate(new DelegadoDaGrelha(this));
    setSelectionBehavior(SelectRows);
    setSelectionMode(SingleSelection);
    setEditTriggers(NoEditTriggers);
    setShowGrid(false);
    setWordWrap(false);
    setTabKeyNavigation(false);
    setHorizontalScrollMode(ScrollPerPixel);
    verticalHeader()->hide();
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    horizontalHeader()->setStretchLastSection(true);
    horizontalHeader()->setHighlightSections(false);
    connect(this, &QTableView::doubleClicked, this, [this](const QModelIndex &i) { Q_EMIT RequestEdit(i.row()); });
}

void Grelha::setColunas(const QStringList &titulos) {
    m_modelo->setTitulos(titulos);
}

int Grelha::linhas() const {
    return m_modelo->rowCount();
}

QString Grelha::celula(int linha, int coluna) const {
    return m_modelo->linhas[linha].celulas.value(coluna);
}

void Grelha::setCelula(int linha, int coluna, const QString &texto) {
    m_modelo->setCelula(linha, coluna, texto);
}

int Grelha::linhaActual() const {
    return selectionModel()->hasSelection() ? currentIndex().row() : -1;
}

void Grelha::setLinhaActual(int linha) {
    if (linhas() == 0)
        return;
    const int coluna = std::max(0, horizontalHeader()->logicalIndexAt(1));
    setCurrentIndex(m_modelo->index(std::clamp(linha, 0, linhas() - 1), coluna));
}

void Grelha::limpar() {
    m_modelo->limpar();
}

int Grelha::adicionarLinha(const QStringList &celulas) {
    m_modelo->adicionar(celulas);
    return linhas() - 1;
}

void Grelha::removerLinha(int linha) {
    m_modelo->remover(linha);
}

void Grelha::alinharADireita(int coluna) {
    m_modelo->colunasADireita.insert(coluna);
}

void Grelha::setEstadoDaLinha(int linha, EstadoDaLinha estado) {
    m_modelo->setEstado(linha, estado);
}

EstadoDaLinha Grelha::estadoDaLinha(int linha) const {
    return m_modelo->linhas[linha].estado;
}

EstadoDaLinha Grelha::riscar() {
    EstadoDaLinha risca = EstadoDaLinha::Par;
    for (int i = 0; i < linhas(); ++i) {
        if (!daRisca(estadoDaLinha(i)))
            continue;
        setEstadoDaLinha(i, risca);
        risca = riscas::trocar(risca);
    }
    return risca;
}

void Grelha::keyboardSearch(const QString &procurado) {
    QElapsedTimer relogio;
    relogio.start();
    const qint64 agora = relogio.msecsSinceReference();
    const bool continua = agora - m_ultimaTecla < 2 * QApplication::keyboardInputInterval();
    m_ultimaTecla = agora;
    m_procurado = continua ? m_procurado + procurado : procurado;
    const int total = linhas();
    const int inicio = std::max(0, currentIndex().row()) + (continua ? 0 : 1);
    for (int passo = 0; passo < total; ++passo) {
        const int linha = (inicio + passo) % total;
        for (const QString &texto : m_modelo->linhas[linha].celulas)
            if (texto.contains(m_procurado, Qt::CaseInsensitive))
                return setLinhaActual(linha);
    }
}

void Grelha::keyPressEvent(QKeyEvent *evento) {
    const bool simples = !(evento->modifiers() & (Qt::ControlModifier | Qt::AltModifier));
    switch (evento->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!simples || linhaActual() < 0)
            break;
        evento->accept();
        Q_EMIT RequestEdit(linhaActual());
        return;
    case Qt::Key_Home: // by row, as in any list
        return setLinhaActual(0);
    case Qt::Key_End:
        return setLinhaActual(linhas() - 1);
    default:
        break;
    }
    QTableView::keyPressEvent(evento);
}

void Grelha::changeEvent(QEvent *evento) {
    QTableView::changeEvent(evento);
    if (evento->type() == QEvent::FontChange)
        verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
}
