#pragma once

#include <QObject>
#include <QString>

#include <memory>

class QIODevice;

// Transfer of a unit's log. Nothing of a log can be read before the whole of it has arrived and been proved; events
// are never raised from inside a call, so an object may be destroyed in a handler.
class PosLog : public QObject {
    Q_OBJECT
public:
    enum Estado { fechado = 0, ligado = 1, aLigar = 2 };
    enum Codigo {
        naoFala = 0,       // it answers, but does not speak the log protocol
        dispositivo = 1,   // it is busy, or cannot read its memory
        versao = 2,        // it speaks other versions only
        transferencia = 3, // damaged: count, checksum, framing
        escrita = 4,       // the log cannot be kept here
        apagamento = 5,    // it refuses to erase
        limpeza = 6,       // erasing was not confirmed
        ligacao = 7,       // no connection, lost before the end, or silent
        conversao = 8,     // a record is no text
    };
    static constexpr int silencioPorOmissao = 30000;
    static constexpr int totalPorOmissao = 30 * 60 * 1000;
    static constexpr qint32 maximoDeRegistos = 5'000'000;
    static constexpr qint64 maximoDeBytes = 512LL * 1024 * 1024;
    static constexpr int linhaMaxima = 4096; // bytes of one record

    using QObject::QObject;
    virtual void definirEndereco(const QString &endereco) = 0;
    virtual void definirPorta(qint32 porta) = 0;
    virtual void definirOpcao(int numero, qint32 valor) = 0; // numbers 2 to 6; only values other than 0 are sent
    virtual void definirSilencio(int ms) = 0;                // no byte for so long ends a download
    virtual void definirTotal(int ms) = 0;                   // no download lasts longer

    virtual bool abrir() = 0; // true: under way; how it ends shows in estado() and in what is asked next
    virtual void fechar() = 0;
    virtual int estado() const = 0;

    virtual void descarregar() = 0; // ends in exactly one OnDownload or OnError
    // Erases the memory: after a download only the records that it brought, and only if they are still the oldest;
    // otherwise everything. Waits with the event loop running; false after OnError. Throws Interrompido when this
    // object was destroyed meanwhile.
    virtual bool apagar() = 0;

    virtual qint64 registosRestantes() const = 0;            // in the unit, as it says after an erasure; -1 before
    virtual qint32 numeroDeRegistos() const = 0;             // -1 before a download has succeeded
    virtual QString proximaLinha() = 0;                      // empty: there is no further line
    virtual bool gravarLinhas(QIODevice &destino) const = 0; // all lines as received, each with its end

Q_SIGNALS:
    void OnDownload(bool ok);
    void OnError(int codigo, const QString &texto);
};

std::unique_ptr<PosLog> novoPosLog();
// The same log from a file of log lines; address, port and options mean nothing to it, and it refuses to erase.
std::unique_ptr<PosLog> novoPosLogDeFicheiro(const QString &caminho);
