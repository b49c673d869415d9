#include "platform/unit/UdpSetup.h"

#include "core/literais.h"
#include "platform/unit/protocolo.h"

#include <QHash>
#include <QNetworkDatagram>
#include <QNetworkProxy>
#include <QSet>
#include <QTimer>
#include <QUdpSocket>

#include <vector>

bool UdpSetup::seleccionar(int indice) {
    const bool existe = indice >= 0 && indice < m_dispositivos.size();
    m_seleccionado = existe ? m_dispositivos.at(indice) : Dispositivo();
    return existe;
}

namespace {

constexpr int duracaoPorOmissao = 3000;
constexpr int dispositivosMaximos = 256;
constexpr int porRemetente = 32; // units that one sender may tell of
constexpr int datagramasPorVolta = 64;
constexpr int datagramasPorRemetente = 256;
constexpr int remetentesMaximos = 4096;

class UdpSetupRede final : public UdpSetup {
public:
    UdpSetupRede();
    void pesquisar() override;
    void parar() override;
    bool aPesquisar() const override { return m_fim.isActive(); }
    void definirDestinos(const QList<rede::Destino> &destinos) override { m_definidos = destinos; }
    void definirDuracao(int ms) override { m_duracao = ms; }

private:
    struct Remetente {
        int datagramas = 0;
        int unidades = 0;
    };
    void abrir(const rede::Destino &destino);
    void perguntar();
    void receber(QUdpSocket *socket);
    void tratar(const QNetworkDatagram &datagrama);
    void errar(int codigo);

    std::optional<QList<rede::Destino>> m_definidos;
    std::optional<int> m_duracao;
    struct Saida {
        std::unique_ptr<QUdpSocket> socket;
        QList<rede::Destino> destinos;
    };
    std::vector<Saida> m_saidas; // one socket for each local address
    QByteArray m_marca;
    QSet<QString> m_macs;
    QHash<quint32, Remetente> m_remetentes;
    QTimer m_fim;
    QTimer m_repetir;
    int m_repeticoes = 0;
};

UdpSetupRede::UdpSetupRede() {
    m_fim.setSingleShot(true);
    QObject::connect(&m_fim, &QTimer::timeout, this, [this] {
        parar();
        Q_EMIT OnSearch();
    });
    m_repetir.setSingleShot(true);
    QObject::connect(&m_repetir, &QTimer::timeout, this, [this] { perguntar(); });
}

void UdpSetupRede::parar() {
    m_fim.stop();
    m_repetir.stop();
    for (Saida &saida : m_saidas) { // this may be running in a handler of one of them
        saida.socket->disconnect();
        saida.socket->close();
        saida.socket.release()->deleteLater();
    }
    m_saidas.clear();
}

void UdpSetupRede::errar(int codigo) {
    parar();
    QMetaObject::invokeMethod(
        this, [this, codigo] { Q_EMIT OnError(codigo); }, Qt::QueuedConnection);
}

void UdpSetupRede::pesquisar() {
    parar();
    m_dispositivos.clear();
    m_macs.clear();
    m_remetentes.clear();
    m_marca = protocolo::kfind::novaMarca();
    const QList<rede::Destino> destinos =
        m_definidos ? *m_definidos : rede::destinos(rede::listaDasDefinicoes(), rede::interfaces());
    if (destinos.isEmpty())
        return errar(semDestinos);
    for (const rede::Destino &destino : destinos)
        abrir(destino);
    if (m_saidas.empty())
        return errar(semRede);
    const int duracao = m_duracao.value_or(rede::definicao(u"PesquisaDuracao"_s, duracaoPorOmissao, 100, 13000));
    m_repeticoes = 0;
    m_repetir.setInterval(duracao / 4);
    m_fim.start(duracao);
    perguntar();
}

void UdpSetupRede::abrir(const rede::Destino &destino) {
    const QHostAddress local = destino.origem.isNull() ? QHostAddress(QHostAddress::AnyIPv4) : destino.origem;
    for (Saida &saida : m_saidas) {
        if (saida.socket->localAddress() == local) {
            saida.destinos.append(destino);
            return;
        }
    }
    auto socket = std::make_unique<QUdpSocket>();
    socket->setProxy(QNetworkProxy::NoProxy);
    if (!socket->bind(local, 0))
        return; // an interface that has just gone down; the others go on
    QUdpSocket *s = socket.get();
    QObject::connect(s, &QUdpSocket::readyRead, this, [this, s] { receber(s); });
    m_saidas.push_back({std::move(socket), {destino}});
}

// Three times in all: a datagram may be lost, the answers are told apart by their hardware address.
void UdpSetupRede::perguntar() {
    const QByteArray pedido = protocolo::kfind::pedido(m_marca);
    bool enviado = false;
    for (const Saida &saida : m_saidas) {
        for (const rede::Destino &destino : saida.destinos)
            enviado |= saida.socket->writeDatagram(pedido, destino.endereco, destino.porta) == pedido.size();
    }
    if (!enviado && m_repeticoes == 0)
        return errar(semRede);
    if (++m_repeticoes < 3)
        m_repetir.start();
}

void UdpSetupRede::receber(QUdpSocket *socket) {
    for (int i = 0; i < datagramasPorVolta && socket->hasPendingDatagrams(); ++i) {
        const QNetworkDatagram datagrama = socket->receiveDatagram(protocolo::kfind::datagramaMaximo + 1);
        if (datagrama.isValid())
            tratar(datagrama);
    }
    // The rest of a flood waits for the next turn of the loop, which asks again.
}

void UdpSetupRede::tratar(const QNetworkDatagram &datagrama) {
    const QHostAddress origem = datagrama.senderAddress();
    const quint32 numero = origem.toIPv4Address();
    if (!m_remetentes.contains(numero) && m_remetentes.size() >= remetentesMaximos)
        return;
    Remetente &remetente = m_remetentes[numero];
    if (++remetente.datagramas > datagramasPorRemetente || remetente.unidades >= porRemetente ||
        m_dispositivos.size() >= dispositivosMaximos)
        return;
    auto unidade = protocolo::kfind::lerResposta(datagrama.data(), m_marca);
    if (!unidade || m_macs.contains(unidade->mac))
        return;
    // The address is that of the sender and nothing it says: nobody can point the program at a third party.
    unidade->endereco = QHostAddress(numero).toString();
    if (unidade->nome.isEmpty())
        unidade->nome = unidade->endereco;
    ++remetente.unidades;
    m_macs.insert(unidade->mac);
    m_dispositivos.append(*unidade);
}

} // namespace

std::unique_ptr<UdpSetup> novoUdpSetup() {
    return std::make_unique<UdpSetupRede>();
}
