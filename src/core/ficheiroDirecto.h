#pragma once

#include <QIODevice>

// A QFile or QSaveFile for what is written in large pieces, to be opened without a buffer. A disk that is nearly full
// takes a part of a piece and says why only when it is asked again: asked here, so that error() and errorString() tell
// of every byte that was not taken.
template <typename Ficheiro>
class FicheiroDirecto : public Ficheiro {
public:
    using Ficheiro::Ficheiro;
    bool abrir() { return this->open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered); }

protected:
    qint64 writeData(const char *bytes, qint64 tamanho) override {
        qint64 escritos = 0;
        while (escritos < tamanho) {
            const qint64 agora = Ficheiro::writeData(bytes + escritos, tamanho - escritos);
            if (agora <= 0)
                return escritos > 0 ? escritos : agora;
            escritos += agora;
        }
        return escritos;
    }
};
