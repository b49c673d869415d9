#pragma once

#include "core/literais.h"
#include "platform/chart/TChart.h"
#include "platform/forms/grelha.h"
#include "platform/forms/registoForms.h"
#include "tests/apoio/espera.h"
#include "tests/apoio/instalacao.h"
#include "tests/apoio/widgets.h"
#include "views/familiaGraficos.h"
#include "views/forms/formGrafico.h"
#include "views/forms/registar.h"

#include <QAbstractButton>
#include <QLabel>
#include <QPointer>
#include <QTest>

using utilizador::clicar;
using utilizador::controlo;

inline const QString graficoTemp = u"frmGraficoPrincipalTemp"_s;
inline const QString dia = u"2024-03-15 "_s;

inline QString id(int n) {
    return u"28A00000000000%1"_s.arg(n, 2, 10, QChar(u'0'));
}

// A chart as the menu opens it, beside a main window that owns dialogs.
struct Grafico {
    explicit Grafico(const QString &nome = graficoTemp) {
        registoForms().dono = &principal;
        principal.show();
        registarVistas(registoForms());
        form = qobject_cast<FormGrafico *>(registoForms().abrir(nome));
        utilizador::mostrar(form);
        deixarPassar(20); // the chart is set up a moment after the form
    }
    ~Grafico() { delete form; }

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
    TChart &chart() const { return *controlo<TChart>(form, u"TChart"_s); }
    QString media() const { return controlo<QLabel>(form, u"lblMedia"_s)->text(); }
    // As the chart says it; the place is one where no point is, so that the index counts.
    void clicarPonto(int serie, int indice, Qt::MouseButton botao = Qt::LeftButton) const {
        Q_EMIT chart().OnClickSeries(serie, indice, botao, Qt::NoModifier, QPoint(-1000, -1000));
    }
    QDialog *pontos() const { return qobject_cast<QDialog *>(registoForms().form(u"frmOpccoesTempPontos"_s)); }

    QWidget principal;
    QPointer<FormGrafico> form;
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
