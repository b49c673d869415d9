#pragma once

#include <QFont>
#include <QQueue>
#include <QString>

// Breaks a text into lines of one width, one after the other from any beginning of a line on. A long paragraph is laid
// out piece by piece: the time goes with the length of the text, and nothing is done beyond what is asked for.
class LinhasDeTexto {
public:
    struct Linha {
        qsizetype inicio = 0;
        qsizetype tamanho = 0;
        double altura = 0;
    };
    LinhasDeTexto(const QString &texto, const QFont &fonte, double largura, qsizetype inicio = 0);

    bool seguinte(Linha &linha); // false after the last

private:
    void disporPedaco();
    const QString m_texto;
    const QFont m_fonte;
    const double m_largura;
    qsizetype m_lido; // where the next piece begins
    QQueue<Linha> m_prontas;
};
