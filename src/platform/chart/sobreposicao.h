#pragma once

#include "platform/chart/plotSerie.h"
#include "platform/chart/tema.h"

#include <QWidget>

// What the user's hand adds to the picture: the frame of the focus, the band of a zoom, the point that is read.
class Sobreposicao : public QWidget {
    Q_OBJECT
public:
    struct Leitura {
        QPointF ponto;
        QColor cor;
        QString titulo;
        QString instante; // empty lines are left out
        QString valor;
        QString nota;
    };

    explicit Sobreposicao(QWidget *pai);
    void vestir(const Tema &tema) { m_tema = tema; }
    void definirArea(const QRect &area) { m_area = area; }

    void mostrarLeitura(const Leitura &leitura);
    void esconderLeitura();
    void mostrarFaixa(const QRect &faixa, bool anula);
    void esconderFaixa();
    void mostrarFoco(bool visivel);
    bool comLeitura() const { return m_comLeitura; }
    QRect caixa() const; // where the readout stands

protected:
    void paintEvent(QPaintEvent *evento) override;

private:
    void desenharLeitura(QPainter &pintor) const;
    void desenharCaixa(QPainter &pintor) const;
    Tema m_tema;
    QRect m_area;
    Leitura m_leitura;
    QRect m_faixa;
    bool m_faixaAnula = false;
    bool m_comLeitura = false;
    bool m_foco = false;
};
