#include "platform/unit/KVsocket.h"

#include "core/espera.h"
#include "core/falha.h"
#include "core/literais.h"
#include "core/modTraducoes.h"
#include "platform/unit/leitorHttp.h"
#include "platform/unit/texto.h"

#include <QNetworkProxy>
#include <QPointer>
#include <QTcpSocket>
#include <QUrl>

namespace {

using Causa = KVsocket::Causa;

struct Texto {
    Causa causa;
    QStringView chave;
    QStringView omissao;
};

constexpr Texto textos[] = {
    {Causa::Ocupado, u"Ocupado", u"Está em curso outro pedido"},
    {Causa::Endereco, u"Endereco", u"O endereço não é válido"},
    {Causa::Desconhecido, u"Desconhecido", u"O nome do dispositivo não existe na rede"},
    {Causa::Recusada, u"Recusada", u"O dispositivo recusou a ligação"},
    {Causa::Rede, u"Rede", u"Não foi possível chegar ao dispositivo"},
    {Causa::Tempo, u"Tempo", u"O dispositivo não respondeu a tempo"},
    {Causa::SemResposta, u"SemResposta", u"O dispositivo fechou a ligação sem responder"},
    {Causa::Interrompida, u"Interrompida", u"A ligação foi interrompida a meio da resposta"},
    {Causa::Malformada, u"Malformada", u"A resposta do dispositivo não é HTTP"},
    {Causa::Grande, u"Grande", u"A resposta do dispositivo é demasiado grande"},
    {Causa::Excedente, u"Excedente", u"A resposta é maior do que o tamanho anunciado"},
    {Causa::Redireccionada, u"Redireccionada", u"O dispositivo reencaminha para outro endereço, que não é seguido"},
    {Causa::Estado, u"Estado", u"O dispositivo respondeu com o estado HTTP"},
    {Causa::Vazia, u"Vazia", u"A resposta do dispositivo está vazia"},
    {Causa::Codificacao, u"Codificacao", u"O documento não está na codificação que declara"},
};

Causa causaDoErro(QAbstractSocket::SocketError erro, LeitorHttp &leitor) {
    switch (erro) {
    case QAbstractSocket::HostNotFoundError:
        return Causa::Desconhecido;
    case QAbstractSocket::ConnectionRefusedError:
        return Causa::Recusada;
    case QAbstractSocket::RemoteHostClosedError:
        return leitor.vazio() ? Causa::SemResposta
                              : (leitor.fechado() == LeitorHttp::Ponto::Cortada ? Causa::Interrompida : Causa::Nenhuma);
    default:
        return leitor.vazio() ? Causa::Rede : Causa::Interrompida;
    }
}

Causa causaDaResposta(const LeitorHttp &leitor) {
    switch (leitor.ponto()) {
    case LeitorHttp::Ponto::Malformada:
        return Causa::Malformada;
    case LeitorHttp::Ponto::Grande:
        return Causa::Grande;
    case LeitorHttp::Ponto::Excedente:
        return Causa::Excedente;
    default:
        break;
    }
    if (leitor.estado() >= 300 && leitor.estado() < 400)
        return Causa::Redireccionada;
    if (leitor.estado() != 200)
        return Causa::Estado;
    return leitor.corpo().isEmpty() ? Causa::Vazia : Causa::Nenhuma;
}

// On sockets rather than on the access manager: that one asks anew, up to three times, when the answer is no HTTP,
// takes a damaged chunked body for an empty one and does not notice bytes behind the announced length.
class KVsocketRede final : public KVsocket {
public:
    QString GET(const QString &url, int timeout, quint16 porta) override;
    bool ocupado() const override { return m_ocupado; }
    void definirLimite(qint64 bytes) override { m_limite = bytes; }
    QByteArray corpo() const override { return m_corpo; }
    Causa causa() const override { return m_causa; }
    QString erro() const override;

private:
    Causa trocar(const QUrl &endereco, int timeout, LeitorHttp &leitor);

    bool m_ocupado = false;
    qint64 m_limite = limitePorOmissao;
    QByteArray m_corpo;
    Causa m_causa = Causa::Nenhuma;
    int m_estado = 0;
};

QString KVsocketRede::erro() const {
    for (const Texto &t : textos) {
        if (t.causa != m_causa)
            continue;
        const QString texto = modTraducoes::texto(u"KVsocket"_s, t.chave.toString(), t.omissao.toString());
        return m_causa == Causa::Estado ? QString(texto + u' ' + QString::number(m_estado)) : texto;
    }
    return {};
}

QString KVsocketRede::GET(const QString &url, int timeout, quint16 porta) {
    if (m_ocupado) {
        m_causa = Causa::Ocupado;
        return {};
    }
    m_corpo.clear();
    m_estado = 0;
    QUrl endereco(url.trimmed(), QUrl::StrictMode);
    if (!endereco.isValid() || endereco.scheme() != u"http" || endereco.host().isEmpty() || porta == 0) {
        m_causa = Causa::Endereco;
        return {};
    }
    endereco.setPort(porta);

    m_ocupado = true;
    LeitorHttp leitor(m_limite);
    m_causa = trocar(endereco, timeout, leitor); // leaves by exception when this object has gone
    m_ocupado = false;
    m_estado = leitor.estado();
    if (m_causa == Causa::Nenhuma)
        m_causa = causaDaResposta(leitor);
    if (m_causa != Causa::Nenhuma)
        return {};
    const auto texto = descodificarDocumento(leitor.corpo(), leitor.campo("content-type"));
    if (!texto) {
        m_causa = Causa::Codificacao;
        return {};
    }
    m_corpo = leitor.corpo();
    return *texto;
}

Causa KVsocketRede::trocar(const QUrl &endereco, int timeout, LeitorHttp &leitor) {
    const QPointer<QTcpSocket> socket = new QTcpSocket(this);
    socket->setProxy(QNetworkProxy::NoProxy);
    socket->setReadBufferSize(64 * 1024); // an endless body waits in the network, not in memory
    Causa causa = Causa::Nenhuma;
    bool acabado = false;
    QObject::connect(socket, &QTcpSocket::connected, socket, [&] {
        QByteArray caminho = endereco.toEncoded(QUrl::RemoveScheme | QUrl::RemoveAuthority | QUrl::RemoveFragment);
        if (!caminho.startsWith('/'))
            caminho.prepend('/');
        socket->write("GET " + caminho + " HTTP/1.1\r\nHost: " + endereco.host(QUrl::FullyEncoded).toLatin1() + ':' +
                      QByteArray::number(endereco.port()) +
                      "\r\nAccept-Encoding: identity\r\nConnection: close\r\n\r\n");
    });
    QObject::connect(socket, &QTcpSocket::readyRead, socket, [&] {
        leitor.alimentar(socket->readAll());
        acabado = acabado || leitor.terminado();
        // What follows a head of failure is of no interest.
        if (leitor.ponto() == LeitorHttp::Ponto::Corpo && leitor.estado() != 200)
            acabado = true;
    });
    QObject::connect(socket, &QTcpSocket::errorOccurred, socket, [&](QAbstractSocket::SocketError erro) {
        if (acabado)
            return;
        leitor.alimentar(socket->readAll());
        if (!leitor.terminado())
            causa = causaDoErro(erro, leitor);
        acabado = true;
    });
    socket->connectToHost(endereco.host(), quint16(endereco.port()));
    const bool aTempo = espera::ate(this, timeout, [&] { return acabado; });
    socket->disconnect();
    socket->abort();
    socket->deleteLater();
    return aTempo ? causa : Causa::Tempo;
}

} // namespace

std::unique_ptr<KVsocket> novoKVsocket() {
    return std::make_unique<KVsocketRede>();
}
