#include "simulator/unidades/registo.h"

#include "core/ficheiroInteiro.h"
#include "core/literais.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace simulador {

namespace {

// The same number for the same record and channel, spread over 32 bits.
quint32 acaso(qint64 registo, quint32 canal) {
    quint64 x = quint64(registo) * 0x9E3779B97F4A7C15ULL + canal * 0xD1B54A32D192ED03ULL;
    x = (x ^ (x >> 30)) * 0xBF58476D1CE4E5B9ULL;
    x = (x ^ (x >> 27)) * 0x94D049BB133111EBULL;
    return quint32(x >> 32);
}

void doisDigitos(QByteArray &texto, int n) {
    texto += char('0' + n / 10);
    texto += char('0' + n % 10);
}

} // namespace

Registo::Registo(const Definicao &definicao) : m_definicao(definicao) {
    m_acerto = definicao.acertoMinutos * 60;
    m_apagadoAte = (ultimo() - definicao.registos) * definicao.intervalo;
    lerEstado();
}

QDateTime Registo::relogio() const {
    return m_definicao.agora().addSecs(m_acerto);
}

void Registo::acertar(const QDateTime &hora) {
    m_acerto = m_definicao.agora().secsTo(hora);
    gravarEstado();
}

qint64 Registo::ultimo() const {
    return m_definicao.agora().toSecsSinceEpoch() / m_definicao.intervalo;
}

qint64 Registo::primeiro() const {
    const qint64 aposApagar = m_apagadoAte / m_definicao.intervalo + 1;
    return std::max(aposApagar, ultimo() - m_definicao.registos + 1); // a full memory drops its oldest
}

qint64 Registo::quantos() const {
    if (m_definicao.defeitos.tem(Defeito::LogVazio))
        return 0;
    return std::max<qint64>(0, ultimo() - primeiro() + 1);
}

void Registo::apagar(qint64 quantosMaisAntigos) {
    m_apagadoAte = (primeiro() + quantosMaisAntigos - 1) * m_definicao.intervalo;
    gravarEstado();
}

void Registo::recordar(qint64 primeiro, qint64 quantos, const QByteArray &soma) {
    m_transferido = {primeiro, quantos, soma};
}

bool Registo::apagarTransferidos(qint64 quantos, const QByteArray &soma, qint64 sobram) {
    if (quantos != m_transferido.quantos || soma != m_transferido.soma)
        return false;
    apagar(std::max<qint64>(0, m_transferido.primeiro + quantos - sobram - primeiro()));
    return true;
}

std::optional<double> Registo::valor(const Canal &canal, qint64 numero) const {
    if (!canal.ligado)
        return std::nullopt;
    if (m_definicao.leitura)
        return m_definicao.leitura(m_definicao.endereco, canal.id, numero * m_definicao.intervalo);
    const quint32 semente = quint32(canal.id.toULongLong());
    const double dia = double(numero % 100'000'000) * m_definicao.intervalo / 86400.0;
    const double onda = std::sin(2 * std::numbers::pi * (dia + semente % 97 / 97.0));
    const double ruido = acaso(numero, semente) / 4294967296.0 - 0.5;
    // Every fourth day or so a door stays open for a while.
    const double desvio = acaso(numero * m_definicao.intervalo / 7200, semente) % 48 == 0 ? 1.6 : 0.0;
    return canal.centro + canal.amplitude * (0.7 * onda + 0.3 * ruido + desvio);
}

bool Registo::ligado(const Canal &canal, qint64 numero) const {
    return m_definicao.leitura ? valor(canal, numero).value_or(0) != 0 : entrada(canal.id.toInt(), numero);
}

bool Registo::entrada(int numero, qint64 registo) const {
    return acaso(registo * m_definicao.intervalo / 3600, quint32(numero)) % 3 == 0;
}

bool Registo::saida(int numero, qint64 registo) const {
    return acaso(registo * m_definicao.intervalo / 5400, 100U + quint32(numero)) % 4 == 0;
}

QString Registo::valorActual(const Canal &canal) const {
    if (canal.unidade == u"s")
        return ligado(canal, ultimo()) ? u"1"_s : u"0"_s;
    const std::optional<double> lido = valor(canal, ultimo());
    return lido ? QString::number(*lido, 'f', 1) : u"-999.9"_s;
}

// "2011-03-01;10:00:00;17;1;2;101;235;102;-9999"
QByteArray Registo::linha(qint64 numero) const {
    const QDateTime hora = QDateTime::fromSecsSinceEpoch(numero * m_definicao.intervalo, Qt::UTC);
    const QByteArray ano = QByteArray::number(hora.date().year());
    QByteArray texto;
    texto.reserve(160);
    const bool pontos = m_definicao.defeitos.tem(Defeito::LogData);
    if (!pontos)
        texto += ano + '-';
    doisDigitos(texto, pontos ? hora.date().day() : hora.date().month());
    texto += pontos ? '.' : '-';
    doisDigitos(texto, pontos ? hora.date().month() : hora.date().day());
    if (pontos)
        texto += '.' + ano;
    texto += ';';
    doisDigitos(texto, hora.time().hour());
    texto += ':';
    doisDigitos(texto, hora.time().minute());
    texto += ':';
    doisDigitos(texto, hora.time().second());
    texto += ';' + QByteArray::number(numero % 65536);
    const bool soSensores = bool(m_definicao.leitura);
    if (!soSensores && numero % 24 == 7) {
        texto += ";3;3";
        for (int i = 1; i <= 3; ++i)
            texto += ';' + QByteArray::number(i) + (entrada(i, numero) ? ";1" : ";0");
        return texto;
    }
    if (!soSensores && numero % 24 == 19) {
        texto += ";4;2";
        for (int i = 1; i <= 2; ++i)
            texto += ';' + QByteArray::number(150 + i) + (saida(i, numero) ? ";1" : ";0");
        return texto;
    }
    texto += ";1;" + QByteArray::number(m_definicao.canais.size());
    for (const Canal &canal : m_definicao.canais) {
        texto += ';' + canal.id.toLatin1() + ';';
        if (canal.unidade == u"s") {
            texto += ligado(canal, numero) ? "10" : "0";
            continue;
        }
        const std::optional<double> lido = valor(canal, numero);
        const bool lacuna = !soSensores && acaso(numero, 7 + quint32(canal.id.size())) % 1009 == 0;
        texto += lido && !lacuna ? QByteArray::number(std::llround(*lido * 10)) : QByteArray("-9999");
    }
    return texto;
}

void Registo::lerEstado() {
    QFile ficheiro(m_definicao.ficheiroEstado);
    if (m_definicao.ficheiroEstado.isEmpty() || !ficheiro.open(QIODevice::ReadOnly))
        return;
    const QJsonObject guardado = QJsonDocument::fromJson(ficheiro.readAll()).object();
    m_apagadoAte = std::max(m_apagadoAte, qint64(guardado[u"apagadoAte"_s].toDouble()));
    m_acerto = qint64(guardado[u"acerto"_s].toDouble(double(m_acerto)));
}

void Registo::gravarEstado() const {
    if (m_definicao.ficheiroEstado.isEmpty())
        return;
    QDir().mkpath(QFileInfo(m_definicao.ficheiroEstado).absolutePath());
    FicheiroInteiro ficheiro(m_definicao.ficheiroEstado);
    const QJsonObject estado{{u"apagadoAte"_s, double(m_apagadoAte)}, {u"acerto"_s, double(m_acerto)}};
    const QByteArray bytes = QJsonDocument(estado).toJson();
    if (!ficheiro.abrir() || ficheiro.write(bytes) != bytes.size() || !ficheiro.concluir())
        qWarning("%s: %s", qUtf8Printable(m_definicao.ficheiroEstado), qUtf8Printable(ficheiro.errorString()));
}

} // namespace simulador
