#pragma once

#include <QFontMetricsF>
#include <QString>
#include <QVector>

// Where the labels of an axis stand and what they say, so that none touches the next.
struct Graduacao {
    QVector<double> marcas;
    QVector<double> finas;
    QVector<QString> rotulos; // lines separated by a line feed
    bool deitados = false;    // labels written upwards
};

// Time: steps that a calendar knows, from a second to a century. The date stands under the time where it changes.
// No step is smaller than `incremento` seconds unless the whole axis shows less than two minutes.
Graduacao graduarTempo(double minimo, double maximo, double largura, const QFontMetricsF &letra, double incremento);

// Numbers: steps of 1, 2 or 5 times a power of ten, not smaller than `incremento` while two labels remain. With
// `soInteiros` nothing stands between whole numbers, however far the axis is zoomed.
Graduacao graduarValores(double minimo, double maximo, double altura, const QFontMetricsF &letra, double incremento,
                         bool soInteiros = false);

// Texts under bars, one at each whole number from 0; upright when they fit, else upwards, else only some of them.
Graduacao graduarBarras(double minimo, double maximo, double largura, const QFontMetricsF &letra,
                        const QVector<QString> &textos);
