#pragma once

#include "platform/chart/TSerie.h"

#include <QPointF>
#include <QRectF>

#include <array>
#include <cmath>
#include <vector>

// The strokes of one colour, in pixels.
struct Tracos {
    std::vector<QPointF> pontos;   // of all polylines, one after the other
    std::vector<size_t> inicios;   // where each begins
    std::vector<QPointF> sozinhos; // points that no line reaches
    qint64 peso = 0;               // points in this colour

    void segmento(QPointF a, QPointF b, const QRectF &limite);
};

// From values to pixels.
struct Escala {
    double ax, bx, ay, by; // pixel = a * value + b
    double coluna;         // width of a column: one pixel of the device
    QRectF limite;         // strokes far outside are cut off here
    double px(double x) const { return ax * x + bx; }
    double py(double y) const { return ay * y + by; }
};

// Turns the points of a series into strokes. Where several points share a column of pixels, only what they cover is
// kept, for each colour.
class Redutor {
public:
    Redutor(const TSerie &serie, const Escala &escala, double lacuna);
    void reduzir(qsizetype inicio, qsizetype fim); // places in the order of x
    std::vector<Tracos> &tracos() { return m_tracos; }

    // Places in the order of x.
    double x(qsizetype k) const { return m_x[indice(k)]; }
    double y(qsizetype k) const { return m_y[indice(k)]; }
    quint8 cor(qsizetype k) const { return m_cores ? m_cores[indice(k)] : m_base; }
    qsizetype indice(qsizetype k) const { return m_ordem ? qsizetype((*m_ordem)[k]) : k; }
    quint8 base() const { return m_base; } // the usual colour; all others show above it

private:
    void ponto(qsizetype k);
    void coluna(qsizetype i, qsizetype j, double xc);
    void cobrir(qsizetype i, qsizetype j);
    void cobrirUm(qsizetype k);
    void cobrirBlocos(qsizetype &k, qsizetype fim);
    void estender(quint8 cor, double y, qsizetype peso);
    qsizetype fimDaColuna(qsizetype i, qsizetype fim, double limite) const;
    bool lacunaAntes(qsizetype k) const;
    void comecar(QPointF p, quint8 cor);
    void ligar(QPointF p, quint8 cor);
    void quebrar();

    const TSerie &m_serie;
    const Escala &m_escala;
    double m_lacuna;
    const QList<quint32> *m_ordem;
    const double *m_x;
    const double *m_y;
    const quint8 *m_cores;
    quint8 m_base = 0;
    qsizetype m_total;
    std::vector<Tracos> m_tracos;

    bool m_tem = false; // there is a point to go on from
    bool m_so = false;  // and no stroke has reached it
    QPointF m_anterior;
    quint8 m_corAnterior = 0;

    struct Extensao {
        double menor, maior;
        bool usada;
    };
    std::array<Extensao, 256> m_extensoes{};
    std::vector<quint8> m_usadas;
};
