#include "platform/forms/dialogosQt.h"

#include "platform/forms/registoForms.h"

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>

namespace {

QWidget *donoActual() {
    QWidget *activa = QApplication::activeModalWidget();
    return activa ? activa : registoForms().dono.data();
}

int mostrar(QMessageBox::Icon icone, const QString &texto, QMessageBox::StandardButtons botoes) {
    QMessageBox caixa(icone, estado().NomePrograma, texto, botoes, donoActual());
    caixa.setTextFormat(Qt::PlainText);
    return caixa.exec();
}

// "csv (*.csv)|*.csv|all|*.*" -> "csv (*.csv);;all (*.*)"
QString filtroQt(const QString &filtro) {
    const QStringList partes = filtro.split(u'|');
    QStringList filtros;
    for (qsizetype i = 0; i + 1 < partes.size(); i += 2)
        filtros.append(partes[i].contains(u'(') ? partes[i] : partes[i] + u" (" + partes[i + 1] + u')');
    return filtros.join(u";;"_s);
}

} // namespace

void DialogosQt::mensagem(const QString &texto, Estilo estilo) {
    constexpr QMessageBox::Icon icones[] = {QMessageBox::Information, QMessageBox::Warning, QMessageBox::Critical};
    mostrar(icones[size_t(estilo)], texto, QMessageBox::Ok);
}

bool DialogosQt::pergunta(const QString &texto) {
    return mostrar(QMessageBox::Question, texto, QMessageBox::Yes | QMessageBox::No) == QMessageBox::Yes;
}

QString DialogosQt::abrirFicheiro(const QString &filtro, const QString &pasta) {
    return QFileDialog::getOpenFileName(donoActual(), {}, pasta, filtroQt(filtro));
}

QString DialogosQt::gravarFicheiro(const QString &nomeProposto, const QString &pasta, const QString &filtro) {
    const QString inicio = QFileInfo(nomeProposto).isAbsolute() || pasta.isEmpty()
                               ? nomeProposto
                               : QDir(pasta).filePath(QFileInfo(nomeProposto).fileName());
    QString escolhido = QFileDialog::getSaveFileName(donoActual(), {}, inicio, filtroQt(filtro));
    // A name typed without its ending gets the one of the filter.
    const QString fim = filtro.section(u'|', 1, 1).mid(1);
    if (!escolhido.isEmpty() && QFileInfo(escolhido).suffix().isEmpty())
        escolhido += fim;
    return escolhido;
}

QString DialogosQt::escolherPasta(const QString &inicio) {
    return QFileDialog::getExistingDirectory(donoActual(), {}, inicio);
}
