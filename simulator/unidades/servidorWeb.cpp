#include "simulator/unidades/servidorWeb.h"

#include "simulator/unidades/sessaoKlog.h"

#include <QTcpSocket>
#include <QTimer>

#include <memory>

namespace simulador {

namespace {

constexpr qsizetype cabecaMaxima = 8192;

QByteArray campo(const QByteArray &cabeca, const QByteArray &nomeMinusculo) {
    const QList<QByteArray> linhas = cabeca.split('\n');
    for (const QByteArray &linha : linhas) {
        const qsizetype doisPontos = linha.indexOf(':');
        if (doisPontos > 0 && linha.left(doisPontos).trimmed().toLower() == nomeMinusculo)
            return linha.mid(doisPontos + 1).trimmed();
    }
    return {};
}

Emissor::Fonte deUmaVez(const QByteArray &bytes) {
    return [bytes, enviado = false]() mutable { return std::exchange(enviado, true) ? QByteArray() : bytes; };
}

QByteArray cabecaDe(const QByteArray &estado, const QByteArray &tipo, const QByteArray &medida) {
    return "HTTP/1.1 " + estado + "\r\nContent-Type: " + tipo + "\r\n" + medida + "Connection: close\r\n\r\n";
}

QByteArray comprimento(qint64 bytes) {
    return "Content-Length: " + QByteArray::number(bytes) + "\r\n";
}

// 50 MB that begin like a document.
Emissor::Fonte lixo(qint64 bytes) {
    return [falta = bytes, primeiro = true]() mutable {
        QByteArray pedaco = std::exchange(primeiro, false) ? "<?xml version=\"1.0\"?>\n<Root>" : QByteArray();
        pedaco += QByteArray(std::min<qint64>(64 * 1024, falta) - pedaco.size(), 'x');
        falta -= pedaco.size();
        return falta > 0 ? pedaco : QByteArray();
    };
}

} // namespace

ServidorWeb::ServidorWeb(const Definicao &definicao, Registo &registo, QObject *pai)
    : QTcpServer(pai), m_definicao(definicao), m_registo(registo) {
    connect(this, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket *socket = nextPendingConnection()) {
            // Pieces that wait for the acknowledgement of the last one take 40 ms each.
            socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
            connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
            connect(socket, &QTcpSocket::readyRead, this, [this, socket] { receber(socket); });
            receber(socket); // what came together with the connection
        }
    });
}

void ServidorWeb::receber(QTcpSocket *socket) {
    const QByteArray lido = socket->peek(cabecaMaxima);
    const qsizetype fim = lido.indexOf("\r\n\r\n");
    if (fim < 0) {
        if (lido.size() >= cabecaMaxima)
            socket->abort();
        return;
    }
    disconnect(socket, &QTcpSocket::readyRead, this, nullptr);
    const QByteArray cabeca = socket->read(fim + 4);
    if (m_definicao.defeitos.tem(Defeito::Silencioso))
        return;
    const int atraso = m_definicao.defeitos.tem(Defeito::Lento) ? m_definicao.atrasoMs : 0;
    QTimer::singleShot(atraso, socket, [this, socket, cabeca] { atender(socket, cabeca); });
}

void ServidorWeb::atender(QTcpSocket *socket, const QByteArray &cabeca) {
    const QList<QByteArray> pedido = cabeca.left(cabeca.indexOf('\r')).split(' ');
    if (pedido.size() != 3 || pedido.at(0) != "GET")
        return enviar(socket, "400 Bad Request", "text/plain", "Only GET is known here.\n");
    if (pedido.at(1) == "/klog" && !m_definicao.defeitos.tem(Defeito::LogNaoFala))
        return SessaoKlog::iniciar(socket, m_definicao, m_registo, campo(cabeca, "upgrade"));
    ++m_pedidos;
    responder(socket, pedido.at(1));
}

void ServidorWeb::responder(QTcpSocket *socket, const QByteArray &caminho) {
    if (caminho == "/")
        return enviar(socket, "200 OK", "text/html; charset=utf-8", pagina(m_definicao, m_registo));
    if (caminho != "/setup.xml")
        return enviar(socket, "404 Not Found", "text/plain", "Nothing here.\n");
    const QByteArray xml = setupXml(m_definicao, m_registo, {serverPort(), m_portaConsola});
    if (!enviarComDefeito(socket, xml))
        enviar(socket, "200 OK", "text/xml", xml);
}

void ServidorWeb::enviar(QTcpSocket *socket, const QByteArray &estado, const QByteArray &tipo,
                         const QByteArray &corpo) {
    new Emissor(socket, deUmaVez(cabecaDe(estado, tipo, comprimento(corpo.size())) + corpo),
                [socket] { socket->disconnectFromHost(); });
}

// True when the unit has a fault for this document and has answered with it.
bool ServidorWeb::enviarComDefeito(QTcpSocket *socket, const QByteArray &corpo) {
    const auto tem = [this](Defeito d) { return m_definicao.defeitos.tem(d); };
    const auto fechar = [socket] { socket->disconnectFromHost(); };
    const auto emitir = [&](Emissor::Fonte fonte, int pausa = 0) {
        new Emissor(socket, std::move(fonte), fechar, pausa);
    };
    const QByteArray bom = cabecaDe("200 OK", "text/xml", comprimento(corpo.size()));
    if (tem(Defeito::WebCorta)) {
        new Emissor(socket, deUmaVez(bom + corpo.left(corpo.size() / 2)), [socket] { cortar(socket); });
    } else if (tem(Defeito::WebGota)) {
        emitir([bytes = QByteArray(bom + corpo), i = qsizetype(0)]() mutable { return bytes.mid(i++, 1); }, 20);
    } else if (tem(Defeito::WebInfinito)) {
        socket->write(cabecaDe("200 OK", "text/xml", {}));
        emitir([] { return QByteArray(64 * 1024, 'x'); });
    } else if (tem(Defeito::WebLixo)) {
        emitir(deUmaVez(QByteArray::fromHex("00ff10c3a97f0d0a") + "not a protocol\r\n\r\n" + corpo.left(300)));
    } else if (tem(Defeito::WebEstado)) {
        enviar(socket, "500 Internal Server Error", "text/plain", "Out of order.\n");
    } else if (tem(Defeito::WebReencaminha)) {
        emitir(deUmaVez("HTTP/1.1 302 Found\r\nLocation: http://127.0.0.1:9/\r\nContent-Length: 0\r\n\r\n"));
    } else if (tem(Defeito::WebPedacos)) {
        socket->write(cabecaDe("200 OK", "text/xml", "Transfer-Encoding: chunked\r\n"));
        emitir([corpo, i = qsizetype(0), fim = false]() mutable {
            if (fim)
                return QByteArray();
            const QByteArray parte = corpo.mid(i, 500);
            i += parte.size();
            fim = parte.isEmpty();
            return QByteArray(QByteArray::number(parte.size(), 16) + ";piece=yes\r\n" + parte + "\r\n");
        });
    } else if (tem(Defeito::WebPedacosMaus)) {
        emitir(deUmaVez(cabecaDe("200 OK", "text/xml", "Transfer-Encoding: chunked\r\n") + "zz\r\n" + corpo +
                        "\r\n0\r\n\r\n"));
    } else if (tem(Defeito::TamanhoMaior)) {
        emitir(deUmaVez(cabecaDe("200 OK", "text/xml", comprimento(corpo.size() + 100)) + corpo));
    } else if (tem(Defeito::TamanhoMenor)) {
        emitir(deUmaVez(cabecaDe("200 OK", "text/xml", comprimento(corpo.size() - 100)) + corpo));
    } else if (tem(Defeito::Xml50Mb)) {
        constexpr qint64 tamanho = 50LL * 1024 * 1024;
        socket->write(cabecaDe("200 OK", "text/xml", {}));
        emitir(lixo(tamanho));
    } else {
        return false;
    }
    return true;
}

} // namespace simulador
