#pragma once

#include "simulator/unidades/definicao.h"

#include <QStringList>

// The command line of the virtual units.
struct Argumentos {
    QList<simulador::Definicao> unidades;
    QString erro; // the line cannot be followed
    bool ajuda = false;
    bool defeitos = false;
};
Argumentos lerArgumentos(const QStringList &linha);
QString textoDeAjuda(const QString &programa);
QString textoDosDefeitos();
