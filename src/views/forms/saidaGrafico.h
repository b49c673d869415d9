#pragma once

#include <QString>

class QWidget;
class TChart;

// What charts and histograms hand on: a printed page and a picture, both drawn at the same size whatever the window's.
namespace saidaGrafico {

struct Pagina {
    QString relatorio;
    QString titulo; // zoom suffix included
    QString descricao;
    QString media;    // empty: none
    QString alarmes;  // the legend of the marks
    QString sensores; // histograms only
};

// Shows the preview; throws Falha.
void imprimir(const TChart &grafico, const Pagina &pagina, QWidget *dono);

// Asks for the file and writes the picture; nothing happens when the user cancels. Throws Falha.
void exportarJPG(const TChart &grafico, const QString &base);

} // namespace saidaGrafico
