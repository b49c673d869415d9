#include "poseidon/descarga/clienteXml.h"

#include "platform/unit/KVsocket.h"
#include "poseidon/modPoseidons.h"

ClienteXml::ClienteXml() = default;
ClienteXml::~ClienteXml() = default;

QString ClienteXml::DescarregarXML(const QString &endereco, const QString &porta) {
    if (!m_socket)
        m_socket = novoKVsocket();
    bool numero = false;
    const quint16 n = porta.trimmed().toUShort(&numero);
    return m_socket->GET(modPoseidons::enderecoDoSetup(endereco), KVsocket::tempoPorOmissao,
                         numero && n > 0 ? n : modPoseidons::portaPorOmissao);
}

bool ClienteXml::ocupado() const {
    return m_socket && m_socket->ocupado();
}

QString ClienteXml::erro() const {
    return m_socket ? m_socket->erro() : QString();
}
