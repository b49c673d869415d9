#pragma once

#include "tests/apoio/cenaVista.h"
#include "views/familiaGraficos.h"
#include "views/forms/formGrafico.h"
#include "views/forms/registar.h"

inline const QString graficoTemp = u"frmGraficoPrincipalTemp"_s;

inline QString id(int n) {
    return u"28A00000000000%1"_s.arg(n, 2, 10, QChar(u'0'));
}

struct Grafico : Vista {
    explicit Grafico(const QString &nome = graficoTemp) : Vista(registarVistas) { abrir(nome); }

    void carregar(const QList<int> &quais) const {
        auto *todos = controlo<Grelha>(form, u"grdSensoresAll"_s);
        if (!todos->isVisible())
            clicar(form, u"cmdOpccoes"_s);
        clicar(form, u"cmdRemoverAll"_s);
        for (const int n : quais)
            for (int linha = 0; linha < todos->linhas(); ++linha)
                if (todos->celula(linha, 0) == id(n)) {
                    todos->setLinhaActual(linha);
                    clicar(form, u"cmdAdicionar"_s);
                    break;
                }
        clicar(form, u"cmdConfirmar"_s);
    }
    QString media() const { return legenda(u"lblMedia"_s); }
    QDialog *pontos() const { return qobject_cast<QDialog *>(registoForms().form(u"frmOpccoesTempPontos"_s)); }
};

struct Instalada : Instalacao {
    explicit Instalada(int quantos = 3, const QString &tipo = u"P 1250C"_s) {
        for (int n = 1; n <= quantos; ++n)
            sensor({id(n), u"Sensor %1"_s.arg(n), tipo});
    }
};

inline QStringList rotulosDe(const TSerie &serie) {
    QStringList lista;
    for (qsizetype i = 0; i < serie.Count(); ++i)
        lista.append(serie.PointLabel(i));
    return lista;
}
