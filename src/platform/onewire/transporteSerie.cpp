#include "platform/onewire/transporteSerie.h"

#include "core/falha.h"
#include "core/literais.h"
#include "core/modTraducoes.h"
#include "platform/onewire/barramento.h"
#include "platform/onewire/causas.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QSerialPort>
#include <QThread>

namespace onewire {

namespace {

enum Comando : quint8 {
    ModoDados = 0xE1,
    ModoComandos = 0xE3,
    Reset = 0xC5,
    PrimeiroReset = 0xC1, // unanswered: the driver measures the speed with it
    AceleradorLigado = 0xB5,
    AceleradorDesligado = 0xA5,
    LerVelocidade = 0x0F,
};
constexpr quint8 procurarRom = 0xF0;

// Settings of the slot times, then the question for the speed; none of them reaches a device.
struct Pergunta {
    quint8 envia, espera;
};
constexpr Pergunta deteccao[] = {{0x45, 0x44}, {0x5B, 0x5A}, {LerVelocidade, 0x00}};

constexpr int esperaDoReset = 30;
constexpr int esperaDaDeteccao = 400; // a converter may keep bytes back, and a virtual adapter wait for its turn
constexpr int esperaDaResposta = 3000;
constexpr int esperaDaEscrita = 500;
constexpr qsizetype pedaco = 64; // data bytes on the way at once

} // namespace

TransporteSerie::TransporteSerie() : m_porta(std::make_unique<QSerialPort>()) {}
TransporteSerie::~TransporteSerie() {
    // Left as it is found by whoever opens the port next, who may not send a break.
    try {
        if (m_porta->isOpen())
            modo(false);
    } catch (const Falha &) {
    }
}

std::unique_ptr<TransporteSerie> TransporteSerie::abrir(const QString &caminho) {
    const QString canonico = QFileInfo(caminho).canonicalFilePath();
    if (canonico.isEmpty())
        return nullptr;
    std::unique_ptr<TransporteSerie> t(new TransporteSerie);
    t->m_porta->setPortName(canonico);
    if (!t->m_porta->open(QIODevice::ReadWrite)) {
        // Rights were looked at before: what is refused now is held by somebody else.
        if (t->m_porta->error() == QSerialPort::PermissionError)
            anotar(Causa::Ocupado);
        return nullptr;
    }
    try {
        return t->detectar() ? std::move(t) : nullptr;
    } catch (const Falha &) {
        return nullptr;
    }
}

bool TransporteSerie::detectar() {
    // A new port stands at 9600 baud, 8 bits, no parity, one stop bit.
    m_porta->setDataTerminalReady(true); // many readers draw their power from these two
    m_porta->setRequestToSend(true);
    m_porta->setBreakEnabled(true);
    QThread::msleep(3);
    m_porta->setBreakEnabled(false);
    QThread::msleep(3);
    m_porta->clearError(); // a port without these lines is no worse for it
    escrever(QByteArray(1, char(PrimeiroReset)));
    ler(1, esperaDoReset);
    m_porta->clear(QSerialPort::Input);
    for (const Pergunta &p : deteccao) {
        escrever(QByteArray(1, char(p.envia)));
        QByteArray resposta = ler(1, esperaDaDeteccao);
        // A driver that had its speed already took the first byte for a reset, and its answer may come late.
        if (resposta.size() == 1 && (resposta.at(0) & 0xC0) == 0xC0)
            resposta = ler(1, esperaDaDeteccao);
        if (resposta.size() != 1 || quint8(resposta.at(0)) != p.espera)
            return false;
    }
    return true;
}

void TransporteSerie::escrever(const QByteArray &bytes) {
    if (m_porta->write(bytes) != bytes.size())
        throw Falha(erros::falhaDoFicheiro, m_porta->errorString());
    while (m_porta->bytesToWrite() > 0)
        if (!m_porta->waitForBytesWritten(esperaDaEscrita))
            throw Falha(erros::falhaDoFicheiro, m_porta->errorString());
}

QByteArray TransporteSerie::ler(int quantos, int ms) {
    QElapsedTimer relogio;
    relogio.start();
    QByteArray lidos;
    for (;;) {
        lidos += m_porta->read(quantos - lidos.size());
        const int resta = int(ms - relogio.elapsed());
        if (lidos.size() >= quantos || resta <= 0)
            return lidos;
        passar();
        if (!m_porta->bytesAvailable())
            m_porta->waitForReadyRead(std::min(resta, 10));
        const auto erro = m_porta->error();
        if (erro != QSerialPort::NoError && erro != QSerialPort::TimeoutError)
            throw Falha(erros::falhaDoFicheiro, m_porta->errorString());
        m_porta->clearError();
    }
}

QByteArray TransporteSerie::exigir(int quantos) {
    QByteArray lidos = ler(quantos, esperaDaResposta);
    if (lidos.size() != quantos)
        throw Falha(erros::falhaDoFicheiro, modTraducoes::texto(u"KelvarkAUX"_s, u"AdaptadorMudo"_s,
                                                                u"O adaptador 1-Wire deixou de responder."_s));
    return lidos;
}

void TransporteSerie::modo(bool dados) {
    if (std::exchange(m_dados, dados) != dados)
        escrever(QByteArray(1, char(dados ? ModoDados : ModoComandos)));
}

bool TransporteSerie::valido() {
    modo(false);
    escrever(QByteArray(1, char(LerVelocidade)));
    return ler(1, esperaDaResposta) == QByteArray(1, '\0');
}

bool TransporteSerie::reset() {
    modo(false);
    m_porta->clear(QSerialPort::Input);
    escrever(QByteArray(1, char(Reset)));
    const quint8 resposta = quint8(exigir(1).at(0));
    if ((resposta & 0xC0) != 0xC0)
        throw Falha(erros::falhaDoFicheiro, modTraducoes::texto(u"KelvarkAUX"_s, u"AdaptadorRespondeuMal"_s,
                                                                u"O adaptador 1-Wire respondeu mal."_s));
    const int presenca = resposta & 3; // 1 somebody, 2 somebody in alarm, 3 nobody, 0 the line is shorted
    return presenca == 1 || presenca == 2;
}

QByteArray TransporteSerie::trocar(const QByteArray &dados) {
    QByteArray enviar;
    for (char c : dados) {
        enviar.append(c);
        if (quint8(c) == ModoComandos)
            enviar.append(c);
    }
    escrever(enviar);
    return exigir(int(dados.size()));
}

QByteArray TransporteSerie::bloco(const QByteArray &enviar) {
    modo(true);
    QByteArray visto;
    for (qsizetype i = 0; i < enviar.size(); i += pedaco)
        visto += trocar(enviar.mid(i, pedaco));
    return visto;
}

std::optional<Rom> TransporteSerie::procurar(quint8 familia, bool primeira) {
    if (primeira)
        m_pesquisa.comecar(familia);
    if (m_pesquisa.acabou())
        return std::nullopt;
    if (!reset()) {
        m_pesquisa.falhar();
        return std::nullopt;
    }
    // Two bits for each of the number: the second is the way to go, and comes back as the way gone; the first comes
    // back set where devices disagreed.
    const auto caminho = m_pesquisa.caminho();
    QByteArray percurso(16, '\0');
    for (int i = 0; i < 64; ++i)
        if (caminho[size_t(i)])
            percurso[i / 4] = char(percurso.at(i / 4) | 2 << (i % 4 * 2));
    modo(true);
    trocar(QByteArray(1, char(procurarRom)));
    modo(false);
    escrever(QByteArray(1, char(AceleradorLigado)));
    modo(true);
    const QByteArray resposta = trocar(percurso);
    modo(false);
    escrever(QByteArray(1, char(AceleradorDesligado)));
    PesquisaRom::Bits idos, divergencias;
    for (int i = 0; i < 64; ++i) {
        const int par = quint8(resposta.at(i / 4)) >> (i % 4 * 2);
        divergencias[size_t(i)] = par & 1;
        idos[size_t(i)] = par & 2;
    }
    return m_pesquisa.aceitar(idos, divergencias);
}

} // namespace onewire
