#pragma once

#include "platform/chart/TSerie.h"

#include <QPointF>
#include <QRectF>

#include <array>
#include <cmath>
#include <vector>

// The strokes of the points of one state, in pixels.
struct Tracos {
    std::vector<QPointF> pontos;   // of all polylines, one after the other
    std::vector<size_t> inicios;   // where each begins
    std::vector<QPointF> sozinhos; // points that no line reaches
    qint64 peso = 0;               // points in this state

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
// kept, for each state.
class Redutor {
public:
    Redutor(const TSerie &serie, const Escala &escala, double lacuna);
    void reduzir(qsizetype inicio, qsizetype fim); // places in the order of x
    std::vector<Tracos> &tracos() { return m_tracos; }

    // Places in the order of x.
    double x(qsizetype k) const { return m_x[indice(k)]; }
    double y(qsizetype k) const { return m_y[indice(k)]; }
    EstadoDoPonto estado(qsizetype k) const { return m_estados ? m_estados[indice(k)] : m_base; }
    qsizetype indice(qsizetype k) const { return m_ordem ? qsizetype((*m_ordem)[k]) : k; }
    EstadoDoPonto base() const { return m_base; } // the usual state; all others show above it

private:
    void ponto(qsizetype k);
    void coluna(qsizetype i, qsizetype j, double xc);
    void cobrir(qsizetype i, qsizetype j);
    void cobrirUmPorUm(qsizetype k, qsizetype fim);
    void cobrirBloco(qsizetype k);
    void estender(EstadoDoPonto estado, double y, qsizetype pontos);
    qsizetype fimDaColuna(qsizetype i, qsizetype fim, double limite) const;
    bool lacunaAntes(qsizetype k) const;
    void comecar(QPointF p, EstadoDoPonto estado);
    void ligar(QPointF p, EstadoDoPonto estado);
    void quebrar();

    const TSerie &m_serie;
    const Escala &m_escala;
    double m_lacuna;
    const QList<quint32> *m_ordem;
    const double *m_x;
    const double *m_y;
    const EstadoDoPonto *m_estados;
    EstadoDoPonto m_base;
    qsizetype m_total;
    std::vector<Tracos> m_tracos;

    bool m_tem = false; // there is a point to go on from
    bool m_so = false;  // and no stroke has reached it
    QPointF m_anterior;
    EstadoDoPonto m_anteriorEra = EstadoDoPonto::Normal;

    struct Extensao {
        double menor = std::numeric_limits<double>::infinity();
        double maior = -std::numeric_limits<double>::infinity();
        qint64 pontos = 0;
        bool usada = false;
    };
    Tracos &tracosDe(EstadoDoPonto estado) { return m_tracos[size_t(estado)]; }
    Extensao &extensao(EstadoDoPonto estado) {
        Extensao &e = m_extensoes[size_t(estado)];
        if (!e.usada)
            m_usadas.push_back(estado);
        e.usada = true;
        return e;
    }
    std::array<Extensao, estadosDoPonto.size()> m_extensoes;
    std::vector<EstadoDoPonto> m_usadas;
};
