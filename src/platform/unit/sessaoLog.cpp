#include "platform/unit/sessaoLog.h"

#include "platform/unit/protocolo.h"

#include <QNetworkProxy>

SessaoLog::SessaoLog(QObject *pai) : QObject(pai) {
    m_socket.setProxy(QNetworkProxy::NoProxy);
    m_socket.setReadBufferSize(256 * 1024); // bounds the memory and the work of one turn of the loop
    m_silencio.setSingleShot(true);
    m_total.setSingleShot(true);
    connect(&m_silencio, &QTimer::timeout, this, [this] { falhar(motivos::silencio); });
    connect(&m_total, &QTimer::timeout, this, [this] { falhar(motivos::demora); });
    connect(&m_socket, &QTcpSocket::readyRead, this, [this] { receber(); });
    connect(&m_socket, &QTcpSocket::errorOccurred, this, [this](auto erro) { socketFalhou(erro); });
    connect(&m_socket, &QTcpSocket::connected, this, [this] {
        m_socket.setSocketOption(QAbstractSocket::LowDelayOption, 1);
        m_ponto = Ponto::AMudar;
        m_socket.write(protocolo::klog::pedidoDeMudanca(m_anfitriao, m_socket.peerPort()));
    });
}

void SessaoLog::ligar(const QString &anfitriao, quint16 porta) {
    cortar();
    m_leitor = LeitorHttp(0);
    m_enviado = false;
    m_anfitriao = anfitriao;
    m_ponto = Ponto::ALigar;
    m_socket.connectToHost(anfitriao, porta);
}

void SessaoLog::cortar() {
    m_ponto = Ponto::Fechada;
    descansar();
    m_entrada.clear();
    m_porEnviar.clear();
    const QSignalBlocker calado(m_socket);
    m_socket.abort();
}

void SessaoLog::pedir(const QByteArray &linha) {
    m_porEnviar += linha + '\n';
    if (m_ponto == Ponto::Pronta)
        enviar();
}

void SessaoLog::enviar() {
    m_enviado = m_enviado || !m_porEnviar.isEmpty();
    m_socket.write(std::exchange(m_porEnviar, {}));
}

void SessaoLog::vigiar(int silencioMs, int totalMs) {
    m_silencio.start(silencioMs);
    m_total.start(totalMs);
}

void SessaoLog::descansar() {
    m_silencio.stop();
    m_total.stop();
}

void SessaoLog::falhar(const Motivo &motivo, const QString &pormenor) {
    if (m_ponto == Ponto::Fechada)
        return;
    cortar();
    aoFalhar(motivo, pormenor);
}

void SessaoLog::socketFalhou(QAbstractSocket::SocketError erro) {
    receber(); // what came before the end may be all that was wanted
    switch (erro) {
    case QAbstractSocket::HostNotFoundError:
        return falhar(motivos::nome);
    case QAbstractSocket::ConnectionRefusedError:
        return falhar(motivos::recusada);
    default:
        return falhar(m_ponto == Ponto::ALigar ? motivos::rede : motivos::perdida);
    }
}

void SessaoLog::receber() {
    if (m_silencio.isActive() && m_socket.bytesAvailable() > 0)
        m_silencio.start();
    // At the end of a connection more may wait than one buffer holds.
    while (m_ponto != Ponto::Fechada && m_socket.bytesAvailable() > 0) {
        if (m_ponto == Ponto::AMudar) {
            mudarDeProtocolo();
        } else {
            m_entrada += m_socket.readAll();
            tratarLinhas();
        }
    }
}

void SessaoLog::mudarDeProtocolo() {
    m_leitor.alimentar(m_socket.readAll());
    if (m_leitor.ponto() == LeitorHttp::Ponto::Cabeca)
        return;
    const QByteArray campo = m_leitor.campo("upgrade");
    const QList<int> versoes = protocolo::klog::lerVersoes(campo);
    if (m_leitor.ponto() == LeitorHttp::Ponto::Malformada || versoes.isEmpty())
        return falhar(motivos::naoFala);
    if (m_leitor.estado() != 101 || campo != protocolo::klog::nomeDaVersao())
        return falhar(m_leitor.estado() == 101 || m_leitor.estado() == 426 ? motivos::versao : motivos::naoFala,
                      QString::fromLatin1(campo.left(40)));
    m_ponto = Ponto::Pronta;
    m_entrada = m_leitor.resto();
    enviar();
    tratarLinhas();
}

void SessaoLog::tratarLinhas() {
    qsizetype inicio = 0;
    while (m_ponto == Ponto::Pronta) {
        const qsizetype fim = m_entrada.indexOf('\n', inicio);
        const qsizetype tamanho = (fim < 0 ? m_entrada.size() : fim) - inicio;
        if (tamanho > protocolo::klog::linhaMaxima + 2) // the mark and a carriage return
            return falhar(motivos::longa);
        if (fim < 0)
            break;
        const bool cr = tamanho > 0 && m_entrada.at(fim - 1) == '\r';
        aoChegarLinha(QByteArrayView(m_entrada).sliced(inicio, tamanho - (cr ? 1 : 0)));
        inicio = fim + 1;
    }
    m_entrada.remove(0, inicio);
}
