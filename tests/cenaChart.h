#pragma once

#include "core/datas.h"
#include "core/estado.h"
#include "platform/chart/TChart.h"
#include "platform/chart/quadro.h"
#include "platform/chart/sobreposicao.h"

#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

#include <cmath>

constexpr quint32 verde = 65280;
constexpr quint32 vermelho = 255;
constexpr quint32 azul = 16711680;
constexpr double semValor = std::numeric_limits<double>::quiet_NaN();
inline const double inicio = datas::segundosDe(u"2024-03-05 08:00:00"_s);

// A chart as a user has it before him.
struct Cena {
    TChart chart;
    QSignalSpy cliques{&chart, &TChart::OnClickSeries};
    QSignalSpy zooms{&chart, &TChart::OnZoom};
    QSignalSpy anulados{&chart, &TChart::OnUndoZoom};

    Cena() { chart.resize(800, 400); }
    TSerie &serie(const QList<double> &valores, double passo = 60, quint32 cor = verde) {
        TSerie &s = chart.AddSeries();
        s.Color = cor;
        for (qsizetype i = 0; i < valores.size(); ++i)
            s.AddXY(inicio + double(i) * passo, valores[i], u" "_s);
        return s;
    }
    void mostrar() {
        chart.actualizar();
        chart.show();
        QVERIFY(QTest::qWaitForWindowExposed(&chart));
    }
    QPoint onde(int serie, qsizetype i) {
        chart.grab();
        const auto *q = chart.findChild<Quadro *>();
        const TSerie &s = chart.Series(serie);
        return QPointF(q->xAxis->coordToPixel(s.XValue(i)), q->yAxis->coordToPixel(s.YValue(i))).toPoint();
    }
    QRect area() {
        chart.grab();
        return chart.findChild<Quadro *>()->axisRect()->rect();
    }
    QCPRange x() const { return chart.findChild<Quadro *>()->xAxis->range(); }
    QCPRange y() const { return chart.findChild<Quadro *>()->yAxis->range(); }
    void rato(QEvent::Type tipo, QPoint p, Qt::MouseButton botao, Qt::MouseButtons premidos) {
        QMouseEvent e(tipo, QPointF(p), chart.mapToGlobal(QPointF(p)), botao, premidos, Qt::NoModifier);
        QCoreApplication::sendEvent(&chart, &e);
    }
    void pairar(QPoint p) { rato(QEvent::MouseMove, p, Qt::NoButton, Qt::NoButton); }
    void arrastar(QPoint de, QPoint ate, Qt::MouseButton botao = Qt::LeftButton) {
        QTest::mousePress(&chart, botao, {}, de);
        rato(QEvent::MouseMove, (de + ate) / 2, Qt::NoButton, botao);
        rato(QEvent::MouseMove, ate, Qt::NoButton, botao);
        QTest::mouseRelease(&chart, botao, {}, ate);
    }
    void roda(QPoint p, int passos, Qt::KeyboardModifiers modos = Qt::NoModifier) {
        QWheelEvent e(p, chart.mapToGlobal(p), {}, {0, 120 * passos}, Qt::NoButton, modos, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&chart, &e);
    }
    void tecla(int t, Qt::KeyboardModifiers modos = Qt::NoModifier) { QTest::keyClick(&chart, Qt::Key(t), modos); }
    Sobreposicao *sobre() const { return chart.findChild<Sobreposicao *>(); }
};

// Pixels of a strong colour of one kind: 'g'reen, 'r'ed, 'b'lue, in the columns from a to b.
inline int pixeis(const QImage &imagem, char tipo, int a = 0, int b = 100000) {
    int n = 0;
    for (int x = std::max(0, a); x < std::min(imagem.width(), b); ++x)
        for (int y = 0; y < imagem.height(); ++y) {
            const QRgb p = imagem.pixel(x, y);
            const int r = qRed(p), g = qGreen(p), bl = qBlue(p);
            const int forte = tipo == 'g'   ? g - std::max(r, bl)
                              : tipo == 'r' ? r - std::max(g, bl)
                                            : bl - std::max(r, g);
            n += forte > 90;
        }
    return n;
}

inline QList<double> onda(int n) {
    QList<double> v;
    for (int i = 0; i < n; ++i)
        v.append(20 + std::sin(i * 0.37) + 2 * std::sin(i * 0.011));
    return v;
}
