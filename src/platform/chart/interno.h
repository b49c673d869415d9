#pragma once

#include "platform/chart/TChart.h"
#include "platform/chart/quadro.h"
#include "platform/chart/sobreposicao.h"
#include "platform/chart/tema.h"

#include <QTimer>

#include <optional>

// What the control is made of. The parts that listen to the user stand in gestos.cpp and teclado.cpp.
struct TChart::Interno {
    explicit Interno(TChart *chart);

    struct Alvo { // a point of a series
        int serie = -1;
        qsizetype indice = -1;
        bool operator==(const Alvo &) const = default;
    };

    // The model taken over, and the part of it that is seen (vista.cpp).
    void vestir();
    void calcularLimites();
    bool temBarras() const;
    bool temDados() const;
    void definirVista(QCPRange x, QCPRange y);
    void ampliar(const QPointF &centro, double factorX, double factorY);
    void ampliarPara(const QRect &faixa);
    QRect area() const { return quadro->axisRect()->rect(); }
    Graduacao graduarBaixo(double minimo, double maximo, double comprimento) const;
    Graduacao graduarEsquerdo(double minimo, double maximo, double comprimento) const;
    void desenhar(QCPPainter *pintor, QSize tamanho);

    // The point that is read (leitura.cpp).
    bool valido(const Alvo &a) const;
    Alvo procurar(const QPointF &posicao, double raio) const;
    void apontar(const Alvo &a);
    void mostrarLeitura();
    void pedirNota();
    void contar(); // to screen readers, what the picture says as long as no point is read
    QString instanteDe(const Alvo &a) const;
    void serieRetirada(int indice);

    // Keys (teclado.cpp).
    bool mover(int tecla, Qt::KeyboardModifiers modos);
    bool mudarDeSerie(int passo);
    void irPara(const Alvo &a);
    Alvo partida() const;
    bool deslocarPorTecla(int tecla);

    TChart *q;
    Tema tema;
    Quadro *quadro;
    Sobreposicao *sobre;
    std::vector<std::unique_ptr<TSerie>> series;
    std::vector<PlotSerie *> plots; // of each series; owned by quadro
    TEixo esquerdo;
    TEixo baixo;
    QString unidade;
    int casas = -1;
    QString aviso;
    QString rodape;
    std::function<QString(int, int)> nota;
    bool comLegenda = true;
    int nomesAPartirDe = 2;
    bool zoomPermitido = true;
    bool comZoom = false;
    QCPRange todoX, todoY;     // the whole picture
    QCPRange limiteX, limiteY; // as far as panning goes

    struct Gesto {
        Qt::MouseButton botao = Qt::NoButton;
        QPoint inicio;
        bool arrasto = false;
        QCPRange x, y; // of the axes at its beginning
    } gesto;

    Alvo alvo;
    QString notaDoAlvo;
    bool notaPedida = false;
    QTimer repouso; // the pointer rests on a point
};
