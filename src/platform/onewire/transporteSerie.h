#pragma once

#include "platform/onewire/pesquisaRom.h"

#include <memory>

class QSerialPort;

namespace onewire {

// A serial adapter with the DS2480B line driver.
class TransporteSerie : public Transporte {
public:
    // Null when the port cannot be opened or does not answer as the driver does. Such a port has then seen a break and
    // no more than the bytes of `deteccao`, each only if the one before was answered rightly.
    static std::unique_ptr<TransporteSerie> abrir(const QString &caminho);
    ~TransporteSerie() override;

    bool reset() override;
    QByteArray bloco(const QByteArray &enviar) override;
    std::optional<Rom> procurar(quint8 familia, bool primeira) override;
    bool valido() override;

private:
    TransporteSerie();
    bool detectar();
    void modo(bool dados);
    void escrever(const QByteArray &bytes);
    QByteArray ler(int quantos, int ms); // fewer when they do not come in time
    QByteArray exigir(int quantos);      // throws when they do not come
    QByteArray trocar(const QByteArray &dados);

    std::unique_ptr<QSerialPort> m_porta;
    bool m_dados = false; // the driver is in data mode
    PesquisaRom m_pesquisa;
};

} // namespace onewire
