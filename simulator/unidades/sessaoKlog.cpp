#include "simulator/unidades/sessaoKlog.h"

#include "platform/unit/protocolo.h"
#include "simulator/unidades/emissor.h"

#include <QCryptographicHash>
#include <QTcpSocket>
#include <QTimer>

#include <memory>

namespace simulador {

namespace {

namespace klog = protocolo::klog;

// One transfer under way: makes the records, their checksum and, when told to, the faults.
struct Transferencia {
    Transferencia(const Definicao &d, Registo &r)
        : definicao(d), registo(r), primeiro(r.primeiro()), quantos(r.quantos()) {}
    const Definicao &definicao;
    Registo &registo;
    qint64 primeiro;
    qint64 quantos;
    qint64 feitos = 0;
    bool acabada = false;
    QCryptographicHash soma{QCryptographicHash::Sha256};

    bool tem(Defeito d) const { return definicao.defeitos.tem(d); }
    QByteArray pedaco();
    void juntar(QByteArray &destino, const QByteArray &texto);
    QByteArray fim();
};

void Transferencia::juntar(QByteArray &destino, const QByteArray &texto) {
    soma.addData(texto);
    soma.addData(QByteArrayView("\n", 1));
    destino += ':' + texto + '\n';
}

QByteArray Transferencia::pedaco() {
    if (acabada)
        return {};
    const qint64 meio = quantos / 2;
    const qint64 ultimo = tem(Defeito::LogContaMenos) ? quantos - 1 : quantos;
    QByteArray bytes;
    while (feitos < ultimo && bytes.size() < 16 * 1024) {
        if (feitos == meio && (tem(Defeito::LogCorta) || tem(Defeito::LogPara))) {
            acabada = true;
            return bytes;
        }
        if (feitos == meio && tem(Defeito::LogLinhaLonga))
            return QByteArray(32 * 1024, '9'); // again and again: it never ends
        QByteArray texto = registo.linha(primeiro + feitos);
        if (tem(Defeito::LogLixo) && feitos % 5 == 2)
            texto = feitos % 10 == 2 ? QByteArray("\xFF\xFE;;;~~\x01 lixo \xC3") : QByteArray(" ");
        if (tem(Defeito::LogBinario) && feitos == meio)
            texto.append(QByteArray(3, '\0'));
        juntar(bytes, texto);
        ++feitos;
    }
    if (feitos >= ultimo) {
        acabada = true;
        bytes += fim();
    }
    return bytes;
}

QByteArray Transferencia::fim() {
    QByteArray bytes;
    if (tem(Defeito::LogContaMais))
        juntar(bytes, registo.linha(primeiro + quantos - 1));
    QByteArray valor = soma.result().toHex();
    if (tem(Defeito::LogSoma))
        valor[0] = valor.at(0) == '0' ? '1' : '0';
    return bytes + "END " + QByteArray::number(quantos) + ' ' + valor + '\n';
}

} // namespace

void SessaoKlog::iniciar(QTcpSocket *socket, const Definicao &definicao, Registo &registo,
                         const QByteArray &oferecidas) {
    const bool outra = definicao.defeitos.tem(Defeito::LogVersao);
    if (outra || !klog::lerVersoes(oferecidas).contains(klog::versao)) {
        socket->write(
            "HTTP/1.1 426 Upgrade Required\r\nUpgrade: " + (outra ? QByteArray("KLOG/7") : klog::nomeDaVersao()) +
            "\r\nContent-Length: 0\r\nConnection: close\r\n\r\n");
        socket->disconnectFromHost();
        return;
    }
    socket->write("HTTP/1.1 101 Switching Protocols\r\nConnection: Upgrade\r\nUpgrade: " + klog::nomeDaVersao() +
                  "\r\n\r\n");
    (new SessaoKlog(socket, definicao, registo))->receber();
}

SessaoKlog::SessaoKlog(QTcpSocket *socket, const Definicao &definicao, Registo &registo)
    : QObject(socket), m_socket(socket), m_definicao(definicao), m_registo(registo) {
    connect(socket, &QTcpSocket::readyRead, this, [this] { receber(); });
}

void SessaoKlog::receber() {
    while (!m_aEnviar && m_socket->canReadLine())
        tratar(m_socket->readLine(klog::linhaMaxima).trimmed());
    if (!m_aEnviar && m_socket->bytesAvailable() > klog::linhaMaxima)
        m_socket->abort();
}

void SessaoKlog::responder(const QByteArray &linha) {
    m_socket->write(linha + '\n');
}

void SessaoKlog::tratar(const QByteArray &linha) {
    const klog::Resposta pedido = klog::lerLinha(linha);
    if (pedido.palavra == "LOG")
        enviarLog();
    else if (pedido.palavra == "ERASE")
        apagar(pedido.valores);
    else if (pedido.palavra == "SET")
        responder(pedido.valores.size() == 2 && pedido.valores.at(1) == "0" ? "OK" : "ERR 2 option not known");
    else if (pedido.palavra == "QUIT")
        m_socket->disconnectFromHost();
    else
        responder("ERR 1 request not known");
}

void SessaoKlog::enviarLog() {
    if (m_definicao.defeitos.tem(Defeito::LogRecusa))
        return responder("ERR 3 busy");
    m_aEnviar = true;
    const auto t = std::make_shared<Transferencia>(m_definicao, m_registo);
    responder("OK " + QByteArray::number(t->quantos));
    new Emissor(
        m_socket, [t] { return t->pedaco(); },
        [this, t] {
            m_aEnviar = false;
            if (t->tem(Defeito::LogCorta))
                return cortar(m_socket);
            if (t->tem(Defeito::LogPara))
                return;
            m_registo.recordar(t->primeiro, t->feitos, t->soma.result().toHex());
            receber();
        });
}

void SessaoKlog::apagar(const QList<QByteArray> &argumentos) {
    const auto tem = [this](Defeito d) { return m_definicao.defeitos.tem(d); };
    if (tem(Defeito::ApagarRecusa))
        return responder("ERR 5 memory is locked");
    if (tem(Defeito::ApagarMudo))
        return;
    if (argumentos.size() == 1 && argumentos.at(0) == "ALL") {
        if (!tem(Defeito::ApagarSobra))
            m_registo.apagar(m_registo.quantos());
    } else if (argumentos.size() == 2) {
        const qint64 quantos = argumentos.at(0).toLongLong();
        if (!m_registo.apagarTransferidos(quantos, argumentos.at(1), tem(Defeito::ApagarSobra) ? quantos / 2 : 0))
            return responder("ERR 6 not the last transfer");
    } else {
        return responder("ERR 2 argument not understood");
    }
    responder("OK " + QByteArray::number(m_registo.quantos()));
}

} // namespace simulador
