#pragma once

#include <qcustomplot.h>

// Ticks of a time axis at round moments of the calendar, from seconds to years, as close as their labels allow
// without touching. Values are wall-clock seconds. The date stands under the time, where it changes.
class EixoTempo : public QCPAxisTicker {
public:
    explicit EixoTempo(const QCPAxis *eixo) : m_eixo(eixo) {}
    double passoMinimo = 0; // seconds; given up when the whole axis spans less than two minutes

    void generate(const QCPRange &intervalo, const QLocale &locale, QChar, int, QVector<double> &ticks,
                  QVector<double> *subTicks, QVector<QString> *rotulos) override;

private:
    const QCPAxis *m_eixo;
};

// Plain numbers at round steps, written in the locale's form.
class EixoNumeros : public QCPAxisTicker {
public:
    double passoMinimo = 0;

protected:
    double getTickStep(const QCPRange &intervalo) override;
    QString getTickLabel(double tick, const QLocale &locale, QChar, int) override;

private:
    double m_passo = 1;
};

// One label a bar; as many as fit.
class EixoBarras : public QCPAxisTicker {
public:
    explicit EixoBarras(const QCPAxis *eixo) : m_eixo(eixo) {}
    QStringList rotulos;

    void generate(const QCPRange &intervalo, const QLocale &, QChar, int, QVector<double> &ticks,
                  QVector<double> *subTicks, QVector<QString> *textos) override;

private:
    const QCPAxis *m_eixo;
};
