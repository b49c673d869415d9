#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <deque>

class QIODevice;

// The lines of a log as bytes, in blocks: a line costs its bytes and one more, whatever their number.
class Linhas {
public:
    void limpar();
    void juntar(QByteArrayView linha); // without its end
    qint32 quantas() const { return m_quantas; }
    qint64 bytes() const { return m_bytes; } // with the ends

    // The next line that is not empty; false when there is none.
    bool proxima(QByteArrayView &linha);
    bool gravar(QIODevice &destino) const;

private:
    std::deque<QByteArray> m_blocos;
    qint32 m_quantas = 0;
    qint64 m_bytes = 0;
    size_t m_bloco = 0;
    qsizetype m_posicao = 0;
};
