#include "simulator/unidades/servidorConsola.h"

#include "core/literais.h"

#include <QRegularExpression>
#include <QTcpSocket>
#include <QTimer>

namespace simulador {

namespace {

constexpr char menu[] = "\r\n  c<DD.MM.YYYY/HH:MM:SS>  set the clock\r\n"
                        "  t  show the clock\r\n"
                        "  l  number of records\r\n"
                        "  e  erase all records\r\n"
                        "  x  save and exit\r\n> ";

std::optional<QDateTime> lerHora(const QByteArray &texto) {
    static const QRegularExpression forma(uR"(\A(\d\d)\.(\d\d)\.(\d{4})/(\d\d):(\d\d):(\d\d)\z)"_s);
    const auto m = forma.match(QString::fromLatin1(texto));
    if (!m.hasMatch())
        return std::nullopt;
    const auto n = [&m](int grupo) { return m.captured(grupo).toInt(); };
    const QDateTime hora(QDate(n(3), n(2), n(1)), QTime(n(4), n(5), n(6)), Qt::UTC);
    return hora.isValid() ? std::optional(hora) : std::nullopt;
}

class SessaoConsola : public QObject {
public:
    SessaoConsola(QTcpSocket *socket, const Definicao &definicao, Registo &registo)
        : QObject(socket), m_socket(socket), m_definicao(definicao), m_registo(registo) {
        connect(socket, &QTcpSocket::readyRead, this, [this] { receber(); });
        enviar("\r\n" + m_definicao.nome.toLatin1() + " console, firmware " + m_definicao.firmware.toLatin1() +
               "\r\nPress Enter.\r\n");
    }

private:
    enum class Passo { Entrada, Aviso, Pergunta, Menu, Apagar };

    void enviar(const QByteArray &texto) {
        const int atraso = m_definicao.defeitos.tem(Defeito::Lento) ? m_definicao.atrasoMs : 0;
        // Options that a client has to leave out, one of them in the middle of the text.
        QByteArray bytes = texto;
        if (m_definicao.defeitos.tem(Defeito::ConsolaOpcoes)) {
            bytes.insert(bytes.size() / 2, QByteArray::fromHex("fffa1801fff0"));
            bytes.prepend(QByteArray::fromHex("fffb01fffd03"));
        }
        QTimer::singleShot(atraso, m_socket, [socket = m_socket, bytes] { socket->write(bytes); });
    }
    void receber();
    QByteArray responder(const QByteArray &texto, bool enter);
    QByteArray responderNoMenu(const QByteArray &texto, bool enter);
    QByteArray acertar();

    QTcpSocket *m_socket;
    const Definicao &m_definicao;
    Registo &m_registo;
    Passo m_passo = Passo::Entrada;
    QByteArray m_hora; // typed, not yet entered
    bool m_erro = false;
};

void SessaoConsola::receber() {
    const QByteArray lido = m_socket->readAll();
    if (m_definicao.defeitos.tem(Defeito::ConsolaMuda) || lido.size() > 4096)
        return;
    const bool enter = lido.contains('\r') || lido.contains('\n');
    enviar(responder(lido.trimmed(), enter));
}

QByteArray SessaoConsola::responder(const QByteArray &texto, bool enter) {
    switch (m_passo) {
    case Passo::Entrada:
        m_passo = enter ? Passo::Aviso : Passo::Entrada;
        return "\r\nSet-up changes what this unit measures. Press Enter to go on.\r\n";
    case Passo::Aviso:
        m_passo = enter ? Passo::Pergunta : Passo::Aviso;
        return "\r\nEnter set-up (y/n)? ";
    case Passo::Pergunta:
        m_passo = texto == "y" ? Passo::Menu : Passo::Entrada;
        return m_passo == Passo::Menu ? QByteArray(texto + menu) : QByteArray("\r\nPress Enter.\r\n");
    case Passo::Apagar:
        m_passo = Passo::Menu;
        if (texto != "y")
            return "\r\nNothing was erased.\r\n> ";
        if (m_definicao.defeitos.tem(Defeito::ApagarRecusa))
            return "\r\nThe memory is locked.\r\n> ";
        m_registo.apagar(m_registo.quantos());
        return "\r\nErased.\r\n> ";
    case Passo::Menu:
        break;
    }
    return responderNoMenu(texto, enter);
}

QByteArray SessaoConsola::responderNoMenu(const QByteArray &texto, bool enter) {
    if (texto.startsWith('c')) {
        m_hora = texto.mid(1);
        return enter ? acertar() : texto; // an echo until Enter comes
    }
    if (!m_hora.isEmpty() && texto.isEmpty())
        return acertar();
    if (texto == "t")
        return "\r\n" + m_registo.relogio().toString(u"dd.MM.yyyy HH:mm:ss"_s).toLatin1() + "\r\n> ";
    if (texto == "l")
        return "\r\n" + QByteArray::number(m_registo.quantos()) + " records\r\n> ";
    if (texto == "e") {
        m_passo = Passo::Apagar;
        return "\r\nErase all records (y/n)? ";
    }
    if (texto == "x") {
        m_passo = Passo::Entrada;
        QTimer::singleShot(300, m_socket, [socket = m_socket] { socket->disconnectFromHost(); });
        const bool bem = !m_erro && !m_definicao.defeitos.tem(Defeito::ConsolaNega);
        return bem ? "\r\nSaved OK\r\n" : "\r\nNot saved.\r\n";
    }
    return menu;
}

QByteArray SessaoConsola::acertar() {
    const auto hora = lerHora(std::exchange(m_hora, {}));
    m_erro = !hora;
    if (!hora)
        return "\r\nThis is no date and time.\r\n> ";
    m_registo.acertar(*hora);
    return "\r\nClock set to " + hora->toString(u"dd.MM.yyyy HH:mm:ss"_s).toLatin1() + "\r\n> ";
}

} // namespace

ServidorConsola::ServidorConsola(const Definicao &definicao, Registo &registo, QObject *pai)
    : QTcpServer(pai), m_definicao(definicao), m_registo(registo) {
    connect(this, &QTcpServer::newConnection, this, [this] {
        while (QTcpSocket *socket = nextPendingConnection()) {
            connect(socket, &QTcpSocket::disconnected, socket, &QObject::deleteLater);
            if (m_definicao.defeitos.tem(Defeito::ConsolaFecha))
                socket->disconnectFromHost();
            else if (!m_definicao.defeitos.tem(Defeito::Silencioso) && !m_definicao.defeitos.tem(Defeito::ConsolaMuda))
                new SessaoConsola(socket, m_definicao, m_registo);
        }
    });
}

} // namespace simulador
