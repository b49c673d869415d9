#pragma once

#include <QObject>

#include <memory>

// HTTP client for a unit's small documents: one plain GET at a time, bounded in time and size.
class KVsocket : public QObject {
    Q_OBJECT
public:
    enum class Causa {
        Nenhuma,
        Ocupado,        // another GET of this object is under way
        Endereco,       // the URL is none, or not of HTTP
        Desconhecido,   // the host's name has no address
        Recusada,       // nobody listens
        Rede,           // any other trouble below HTTP before an answer began
        Tempo,          // no complete answer in time
        SemResposta,    // closed without a byte
        Interrompida,   // reset or closed in the middle of the answer
        Malformada,     // not HTTP
        Grande,         // more than the limit
        Excedente,      // more than the announced length
        Redireccionada, // not followed
        Estado,         // any other status than 200
        Vazia,          // a complete answer without a body
        Codificacao,    // the bytes are no text of the encoding they declare
    };
    static constexpr int tempoPorOmissao = 2000;
    static constexpr qint64 limitePorOmissao = 4 * 1024 * 1024;

    using QObject::QObject;
    // Waits with the event loop running. The body as text, empty when anything failed: causa() and erro() tell.
    // Throws Interrompido when this object was destroyed meanwhile.
    virtual QString GET(const QString &url, int timeout = tempoPorOmissao, quint16 porta = 80) = 0;
    virtual bool ocupado() const = 0;
    virtual void definirLimite(qint64 bytes) = 0;
    virtual QByteArray corpo() const = 0; // the bytes of the last complete body
    virtual Causa causa() const = 0;
    virtual QString erro() const = 0; // a sentence for the user, empty after a success
};

std::unique_ptr<KVsocket> novoKVsocket();
