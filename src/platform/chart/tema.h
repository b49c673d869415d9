#pragma once

#include "core/estadoDoPonto.h"

#include <QColor>
#include <QFont>
#include <QHash>
#include <QPalette>

// Colours and font of one drawing: those of the screen's palette, or black on white paper.
struct Tema {
    static Tema doEcra(const QPalette &paleta, const QFont &fonte);
    static Tema doPapel(const QFont &fonte);

    // What a point looks like, by its state; normal ones have the colour of their series, told by its OLE number.
    enum class Forma { Circulo, Cima, Baixo };
    QColor doPonto(EstadoDoPonto estado, quint32 corDaSerie) const;
    static Forma forma(EstadoDoPonto estado);

    // The colour itself where it can be told from the background, else the nearest lighter or darker one.
    QColor legivel(const QColor &cor) const;

    QColor fundo;
    QColor texto;
    QColor secundario; // labels of the axes
    QColor grelha;
    QColor grelhaFina;
    QColor eixo;
    QColor realce;
    QColor caixa; // of the readout
    QFont fonte;  // its size is in pixels, so that it is the same on every device
    bool papel = false;

private:
    mutable QHash<QRgb, QColor> m_legiveis;
};

QColor misturar(const QColor &a, const QColor &b, double parteDeB);
double contraste(const QColor &a, const QColor &b); // 1 (the same) to 21
