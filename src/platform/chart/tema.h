#pragma once

#include <QColor>
#include <QPalette>

// The colours of a chart on one kind of paper.
struct TemaGrafico {
    QColor fundo;
    QColor texto;
    QColor eixo;
    QColor grelha;
    QColor destaque;

    static TemaGrafico doEcra(const QPalette &paleta);
    static TemaGrafico doPapel();

    // A series colour, moved just far enough from the background to be seen on it.
    QColor visivel(const QColor &cor) const;
};
