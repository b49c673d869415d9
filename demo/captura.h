#pragma once

#include "data/ligacao.h"
#include "demo/catalogo.h"

#include <QDateTime>

// A small stand-in for the capture service: appends one reading at a time to the shared database, each in a short
// transaction of its own, as a second process would.
namespace demonstracao {

class Captura {
public:
    Captura(const QString &caminho, quint64 semente); // Falha when the database cannot be opened

    // The next active sensor's reading; now and then one beyond its limits, with its alarm. Falha when it could not
    // be stored; the next call tries the next sensor.
    void passo(const QDateTime &agora);

    int sensores() const { return int(m_sensores.size()); }
    qint64 leituras() const { return m_leituras; }
    qint64 alarmes() const { return m_alarmes; }

private:
    struct Canal {
        QString id, nome;
        const Medida *mede;
        std::optional<double> maximo, minimo;
        QString observacoes;
        QChar separador;
        Local local;
        int lugar;
    };
    void carregarSensores(quint64 semente);
    double valorDe(const Canal &c, const QDateTime &agora) const;

    Ligacao m_bd;
    Clima m_clima;
    std::vector<Canal> m_sensores;
    size_t m_proximo = 0;
    qint64 m_leituras = 0;
    qint64 m_alarmes = 0;
};

} // namespace demonstracao
