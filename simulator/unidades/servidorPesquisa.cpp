#include "simulator/unidades/servidorPesquisa.h"

#include "core/literais.h"
#include "platform/unit/protocolo.h"

#include <QNetworkDatagram>
#include <QTimer>

namespace simulador {

namespace {

namespace kfind = protocolo::kfind;

// Answers that no reader may take for a unit.
QList<QByteArray> malformadas(const QByteArray &boa, const QByteArray &marca) {
    const auto trocada = [&boa](const char *de, const QByteArray &por) { return QByteArray(boa).replace(de, por); };
    QByteArray outraMarca = marca;
    outraMarca[0] = outraMarca.at(0) == '0' ? '1' : '0';
    return {
        QByteArray(),
        QByteArray("\n"),
        boa.chopped(1),                       // no end
        boa.left(boa.indexOf('\n') + 1),      // no fields
        trocada("mac: ", "mak: "),            // a missing one
        trocada("mac: ", "mac: zz"),          // no address
        trocada("model: ", "model: -"),       // no number
        trocada("port: ", "port: 9999999"),   // too big
        trocada("port: ", "port: 0\nport: "), // twice
        trocada("name: ", "name: \xC3\x28"),  // no UTF-8
        trocada("name: ", "name: a\tb\x07"),  // controls
        trocada("name: ", "name: " + QByteArray(400, 'n')),
        QByteArray(boa).replace(marca, outraMarca), // of another search
        trocada(" 1\n", " 2\n"),                    // of another version
        "HTTP/1.1 200 OK\r\n\r\n",
    };
}

} // namespace

ServidorPesquisa::ServidorPesquisa(const Definicao &definicao, QObject *pai) : QObject(pai), m_definicao(definicao) {
    connect(&m_socket, &QUdpSocket::readyRead, this, [this] { receber(); });
}

void ServidorPesquisa::receber() {
    while (m_socket.hasPendingDatagrams()) {
        const QNetworkDatagram datagrama = m_socket.receiveDatagram(kfind::datagramaMaximo + 1);
        const auto pedido = kfind::lerPedido(datagrama.data());
        if (!pedido || !pedido->versoes.contains(kfind::versao))
            continue;
        ++m_perguntas;
        const auto tem = [this](Defeito d) { return m_definicao.defeitos.tem(d); };
        if (tem(Defeito::Silencioso) || tem(Defeito::BuscaMuda))
            continue;
        const int atraso = tem(Defeito::BuscaTardia) ? m_definicao.atrasoMs : 0;
        QTimer::singleShot(atraso, this,
                           [this, textos = respostas(pedido->marca), para = datagrama.senderAddress(),
                            porta = quint16(datagrama.senderPort())] { enviar(textos, para, porta); });
    }
}

QList<QByteArray> ServidorPesquisa::respostas(const QByteArray &marca) const {
    const auto tem = [this](Defeito d) { return m_definicao.defeitos.tem(d); };
    UdpSetup::Dispositivo eu;
    eu.mac = m_definicao.mac;
    eu.nome = m_definicao.nome;
    eu.firmware = m_definicao.firmware;
    eu.modelo = qint16(m_definicao.modelo);
    eu.porta = m_portaWeb;
    const QByteArray boa = kfind::resposta(eu, marca);
    if (tem(Defeito::BuscaMalformada))
        return malformadas(boa, marca);
    if (tem(Defeito::BuscaGrande))
        return {boa + "note: " + QByteArray(kfind::datagramaMaximo, 'g') + '\n', boa + QByteArray(60000, '\n')};
    if (tem(Defeito::BuscaDupla))
        return {boa, boa, boa};
    if (!tem(Defeito::BuscaInundacao))
        return {boa};
    QList<QByteArray> muitas;
    for (int i = 0; i < 5000; ++i) {
        eu.mac = u"02:FF:00:00:%1:%2"_s.arg(i / 256, 2, 16, QChar(u'0')).arg(i % 256, 2, 16, QChar(u'0')).toUpper();
        muitas.append(kfind::resposta(eu, marca));
    }
    return muitas;
}

// A few at a time, so that the system's buffers do not drop them unseen.
void ServidorPesquisa::enviar(QList<QByteArray> textos, const QHostAddress &para, quint16 porta) {
    for (int i = 0; i < 50 && !textos.isEmpty(); ++i)
        m_socket.writeDatagram(textos.takeFirst(), para, porta);
    if (!textos.isEmpty())
        QTimer::singleShot(1, this, [this, textos, para, porta] { enviar(textos, para, porta); });
}

} // namespace simulador
