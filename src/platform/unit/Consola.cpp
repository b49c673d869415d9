#include "platform/unit/Consola.h"

#include "core/literais.h"
#include "core/modTraducoes.h"
#include "platform/unit/telnet.h"

#include <QNetworkProxy>
#include <QTcpSocket>
#include <QTimer>

#include <algorithm>
#include <functional>

namespace {

constexpr qsizetype porTomarMaximo = 256 * 1024; // text nobody has taken yet

struct TextoDoErro {
    int numero;
    QStringView chave;
    QStringView omissao;
};
constexpr TextoDoErro textos[] = {
    {Consola::erroNome, u"Nome", u"Nome desconhecido na rede"},
    {Consola::erroRecusada, u"Recusada", u"Ligação recusada"},
    {Consola::erroTempo, u"Tempo", u"O dispositivo não respondeu a tempo"},
    {Consola::erroInterrompida, u"Interrompida", u"A ligação foi interrompida"},
    {Consola::erroDesconhecido, u"Rede", u"Não foi possível chegar ao dispositivo"},
};

class ConsolaTcp final : public Consola {
public:
    ConsolaTcp();
    void Connect(const QString &RemoteHost, quint16 RemotePort) override;
    int State() const override { return m_estado; }
    QString GetData() override;
    bool SendData(const QString &texto) override;
    void Close() override;
    void definirTempo(int ms) override { m_tempo.setInterval(ms); }

private:
    void receber();
    void socketFalhou(QAbstractSocket::SocketError erro);
    void falhar(int numero);
    void anunciar();
    void depois(const std::function<void()> &passo);

    QTcpSocket m_socket;
    QTimer m_tempo;
    Telnet m_telnet;
    QByteArray m_porTomar;
    int m_estado = fechada;
    bool m_anunciado = false;
    bool m_fechouLa = false;
    int m_vez = 0;
};

ConsolaTcp::ConsolaTcp() {
    m_socket.setProxy(QNetworkProxy::NoProxy);
    m_socket.setReadBufferSize(64 * 1024);
    m_tempo.setSingleShot(true);
    m_tempo.setInterval(tempoPorOmissao);
    connect(&m_tempo, &QTimer::timeout, this, [this] { falhar(erroTempo); });
    connect(&m_socket, &QTcpSocket::connected, this, [this] {
        m_tempo.stop();
        m_estado = ligada;
    });
    connect(&m_socket, &QTcpSocket::bytesWritten, this, [this] {
        if (m_socket.bytesToWrite() == 0)
            m_tempo.stop();
    });
    connect(&m_socket, &QTcpSocket::readyRead, this, [this] { receber(); });
    connect(&m_socket, &QTcpSocket::errorOccurred, this, [this](auto erro) { socketFalhou(erro); });
}

void ConsolaTcp::Connect(const QString &RemoteHost, quint16 RemotePort) {
    Close();
    m_estado = aLigar;
    m_tempo.start();
    m_socket.connectToHost(RemoteHost.trimmed(), RemotePort);
}

void ConsolaTcp::Close() {
    ++m_vez;
    m_tempo.stop();
    m_estado = fechada;
    m_porTomar.clear();
    m_anunciado = false;
    m_fechouLa = false;
    m_telnet = Telnet();
    const QSignalBlocker calada(m_socket);
    if (m_socket.state() == QAbstractSocket::ConnectedState && m_socket.bytesToWrite() > 0)
        m_socket.flush();
    m_socket.abort();
}

bool ConsolaTcp::SendData(const QString &texto) {
    if (m_estado != ligada || m_fechouLa || texto.isEmpty())
        return false;
    m_tempo.start();
    return m_socket.write(Telnet::paraEnviar(texto.toLatin1())) > 0;
}

QString ConsolaTcp::GetData() {
    const QString texto = QString::fromLatin1(std::exchange(m_porTomar, {}));
    m_anunciado = false;
    if (!m_fechouLa)
        receber(); // what had to wait for room
    else
        depois([this] { m_estado = fechada; }); // the handler of the last text still finds a live connection
    return texto;
}

void ConsolaTcp::receber() {
    if (m_porTomar.size() < porTomarMaximo)
        m_porTomar += m_telnet.limpar(m_socket.readAll());
    anunciar();
}

void ConsolaTcp::anunciar() {
    if (m_anunciado || m_porTomar.isEmpty())
        return;
    m_anunciado = true;
    depois([this] {
        if (!m_porTomar.isEmpty())
            Q_EMIT DataArrival(m_porTomar.size());
    });
}

void ConsolaTcp::socketFalhou(QAbstractSocket::SocketError erro) {
    switch (erro) {
    case QAbstractSocket::HostNotFoundError:
        return falhar(erroNome);
    case QAbstractSocket::ConnectionRefusedError:
        return falhar(erroRecusada);
    case QAbstractSocket::RemoteHostClosedError:
        // No failure: the unit has said all it had to say. The end shows once its text has been taken.
        m_tempo.stop();
        m_porTomar += m_telnet.limpar(m_socket.readAll());
        m_fechouLa = true;
        if (m_porTomar.isEmpty())
            m_estado = fechada;
        return anunciar();
    default:
        return falhar(m_estado == ligada ? erroInterrompida : erroDesconhecido);
    }
}

void ConsolaTcp::falhar(int numero) {
    Close();
    const auto texto = std::find_if(std::begin(textos), std::end(textos),
                                    [numero](const TextoDoErro &t) { return t.numero == numero; });
    const QString descricao = modTraducoes::texto(u"Consola"_s, texto->chave.toString(), texto->omissao.toString());
    depois([this, numero, descricao] { Q_EMIT Error(numero, descricao); });
}

// Handlers may close or destroy this object, so they never run inside an event of the socket.
void ConsolaTcp::depois(const std::function<void()> &passo) {
    QMetaObject::invokeMethod(
        this,
        [this, passo, vez = m_vez] {
            if (vez == m_vez)
                passo();
        },
        Qt::QueuedConnection);
}

} // namespace

std::unique_ptr<Consola> novaConsola() {
    return std::make_unique<ConsolaTcp>();
}
