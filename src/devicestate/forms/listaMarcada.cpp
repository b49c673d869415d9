#include "devicestate/forms/listaMarcada.h"

#include "core/literais.h"

#include <QHeaderView>
#include <QKeyEvent>

namespace {

const QString visto = u"✓"_s;

} // namespace

ListaMarcada::ListaMarcada(const QString &nome, const QStringList &titulos) : Grelha(nome) {
    setColunas(QStringList{visto} + titulos);
    horizontalHeader()->setMinimumSectionSize(2 * fontMetrics().height());
    setColumnWidth(0, 2 * fontMetrics().height());
    connect(this, &Grelha::RequestEdit, this, &ListaMarcada::trocar);
    connect(this, &QTableView::clicked, this, [this](const QModelIndex &i) {
        if (i.column() == 0)
            trocar(i.row());
    });
}

int ListaMarcada::juntar(const QStringList &celulas) {
    const int linha = adicionarLinha(QStringList{QString()} + celulas);
    setEstadoDaLinha(linha, EstadoDaLinha::Impar);
    return linha;
}

bool ListaMarcada::marcada(int linha) const {
    return estadoDaLinha(linha) == EstadoDaLinha::Marcada;
}

void ListaMarcada::marcar(int linha, bool sim) {
    if (marcada(linha) == sim)
        return;
    setCelula(linha, 0, sim ? visto : QString());
    setEstadoDaLinha(linha, sim ? EstadoDaLinha::Marcada : EstadoDaLinha::Impar);
    Q_EMIT mudou(linha);
}

void ListaMarcada::trocar(int linha) {
    marcar(linha, !marcada(linha));
}

void ListaMarcada::keyPressEvent(QKeyEvent *evento) {
    if (evento->key() == Qt::Key_Space && linhaActual() >= 0)
        trocar(linhaActual());
    else
        Grelha::keyPressEvent(evento);
}

// On the mark a quick second click is a click.
void ListaMarcada::mouseDoubleClickEvent(QMouseEvent *evento) {
    if (columnAt(int(evento->position().x())) == 0)
        mousePressEvent(evento);
    else
        Grelha::mouseDoubleClickEvent(evento);
}
