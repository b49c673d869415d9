#pragma once

#include <QString>

#include <memory>

class KVsocket;

// Fetches setup.xml. The waiting calls throw Interrompido when the client was destroyed meanwhile.
class ClienteXml {
public:
    ClienteXml();
    ~ClienteXml();

    // Empty when it could not be had; erro() says why.
    QString DescarregarXML(const QString &endereco, const QString &porta);
    bool ocupado() const;
    QString erro() const;

private:
    std::unique_ptr<KVsocket> m_socket; // made at first use
};
