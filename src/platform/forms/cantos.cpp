#include "platform/forms/cantos.h"

#include <QPainterPath>
#include <QRegion>
#include <QWidget>

void cantos::arredondar(QWidget *janela) {
    QPainterPath contorno;
    contorno.addRoundedRect(QRectF(janela->rect()), raio, raio);
    janela->setMask(QRegion(contorno.toFillPolygon().toPolygon()));
}
