#include "platform/unit/protocolo.h"

#include "core/literais.h"

#include <QRandomGenerator>
#include <QRegularExpression>
#include <QStringDecoder>

#include <algorithm>

namespace protocolo {

namespace {

bool eMarca(const QByteArray &texto) {
    return texto.size() == 16 && std::all_of(texto.cbegin(), texto.cend(),
                                             [](char c) { return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f'); });
}

// Digits only: the usual conversion takes signs and blanks too.
std::optional<qint64> lerNumero(const QByteArray &texto, qint64 maximo) {
    if (texto.isEmpty() || texto.size() > 12 ||
        !std::all_of(texto.cbegin(), texto.cend(), [](char c) { return c >= '0' && c <= '9'; }))
        return std::nullopt;
    const qint64 valor = texto.toLongLong();
    return valor <= maximo ? std::optional(valor) : std::nullopt;
}

QString lerMac(const QByteArray &texto) {
    static const QRegularExpression forma(uR"(\A[0-9A-F]{2}([:-][0-9A-F]{2}){5}\z)"_s);
    const QString mac = QString::fromLatin1(texto).toUpper();
    return forma.match(mac).hasMatch() ? QString(mac).replace(u'-', u':') : QString();
}

std::optional<QString> lerTexto(const QByteArray &bytes, int maximo) {
    QStringDecoder leitor(QStringDecoder::Utf8);
    const QString texto = leitor(bytes);
    if (leitor.hasError() || texto.size() > maximo ||
        std::any_of(texto.cbegin(), texto.cend(), [](QChar c) { return c.category() == QChar::Other_Control; }))
        return std::nullopt;
    return texto.trimmed();
}

struct Campo {
    const char *nome;
    bool (*ler)(UdpSetup::Dispositivo &, const QByteArray &);
    QByteArray (*escrever)(const UdpSetup::Dispositivo &);
    bool obrigatorio;
};

constexpr Campo campos[] = {
    {"mac",
     [](UdpSetup::Dispositivo &d, const QByteArray &v) {
         d.mac = lerMac(v);
         return !d.mac.isEmpty();
     },
     [](const UdpSetup::Dispositivo &d) { return d.mac.toLatin1(); }, true},
    {"model",
     [](UdpSetup::Dispositivo &d, const QByteArray &v) {
         const auto n = lerNumero(v, 32767);
         d.modelo = qint16(n.value_or(0));
         return n.has_value();
     },
     [](const UdpSetup::Dispositivo &d) { return QByteArray::number(d.modelo); }, true},
    {"port",
     [](UdpSetup::Dispositivo &d, const QByteArray &v) {
         const auto n = lerNumero(v, 65535);
         d.porta = quint16(n.value_or(0));
         return d.porta > 0;
     },
     [](const UdpSetup::Dispositivo &d) { return QByteArray::number(d.porta); }, true},
    {"name",
     [](UdpSetup::Dispositivo &d, const QByteArray &v) {
         const auto t = lerTexto(v, kfind::nomeMaximo);
         d.nome = t.value_or(QString());
         return t.has_value();
     },
     [](const UdpSetup::Dispositivo &d) { return d.nome.toUtf8(); }, false},
    {"firmware",
     [](UdpSetup::Dispositivo &d, const QByteArray &v) {
         const auto t = lerTexto(v, kfind::firmwareMaximo);
         d.firmware = t.value_or(QString());
         return t.has_value();
     },
     [](const UdpSetup::Dispositivo &d) { return d.firmware.toUtf8(); }, false},
};

} // namespace

namespace kfind {

QByteArray novaMarca() {
    return QByteArray::number(QRandomGenerator::system()->generate64(), 16).rightJustified(16, '0');
}

QByteArray pedido(const QByteArray &marca) {
    return "KFIND SEARCH " + marca + ' ' + QByteArray::number(versao) + '\n';
}

std::optional<Pedido> lerPedido(const QByteArray &datagrama) {
    if (datagrama.size() > datagramaMaximo || !datagrama.endsWith('\n'))
        return std::nullopt;
    const QList<QByteArray> partes = datagrama.trimmed().split(' ');
    if (partes.size() < 4 || partes.at(0) != "KFIND" || partes.at(1) != "SEARCH" || !eMarca(partes.at(2)))
        return std::nullopt;
    Pedido lido{partes.at(2), {}};
    for (qsizetype i = 3; i < partes.size(); ++i) {
        if (const auto n = lerNumero(partes.at(i), 9999))
            lido.versoes.append(int(*n));
    }
    return lido;
}

QByteArray resposta(const UdpSetup::Dispositivo &unidade, const QByteArray &marca) {
    QByteArray texto = "KFIND UNIT " + marca + ' ' + QByteArray::number(versao) + '\n';
    for (const Campo &campo : campos)
        texto += campo.nome + QByteArrayLiteral(": ") + campo.escrever(unidade) + '\n';
    return texto;
}

std::optional<UdpSetup::Dispositivo> lerResposta(const QByteArray &datagrama, const QByteArray &marca) {
    if (datagrama.size() > datagramaMaximo || !datagrama.endsWith('\n'))
        return std::nullopt;
    QList<QByteArray> linhas = datagrama.left(datagrama.size() - 1).split('\n');
    for (QByteArray &linha : linhas) {
        if (linha.endsWith('\r'))
            linha.chop(1);
    }
    if (linhas.takeFirst() != "KFIND UNIT " + marca + ' ' + QByteArray::number(versao))
        return std::nullopt;
    UdpSetup::Dispositivo unidade;
    quint32 vistos = 0;
    for (const QByteArray &linha : std::as_const(linhas)) {
        const qsizetype fim = linha.indexOf(": ");
        for (size_t i = 0; fim > 0 && i < std::size(campos); ++i) {
            if (linha.left(fim) != campos[i].nome)
                continue;
            if ((vistos & (1U << i)) || !campos[i].ler(unidade, linha.mid(fim + 2)))
                return std::nullopt;
            vistos |= 1U << i;
        }
    }
    for (size_t i = 0; i < std::size(campos); ++i) {
        if (campos[i].obrigatorio && !(vistos & (1U << i)))
            return std::nullopt;
    }
    return unidade;
}

} // namespace kfind

namespace klog {

QByteArray nomeDaVersao() {
    return "KLOG/" + QByteArray::number(versao);
}

QByteArray pedidoDeMudanca(const QString &anfitriao, quint16 porta) {
    return "GET /klog HTTP/1.1\r\nHost: " + anfitriao.toLatin1() + ':' + QByteArray::number(porta) +
           "\r\nConnection: Upgrade\r\nUpgrade: " + nomeDaVersao() + "\r\n\r\n";
}

QList<int> lerVersoes(const QByteArray &campo) {
    QList<int> versoes;
    const QList<QByteArray> partes = campo.split(',');
    for (const QByteArray &parte : partes) {
        const QByteArray nome = parte.trimmed();
        if (const auto n = lerNumero(nome.startsWith("KLOG/") ? nome.mid(5) : QByteArray(), 9999))
            versoes.append(int(*n));
    }
    return versoes;
}

Resposta lerLinha(QByteArrayView linha) {
    QList<QByteArray> partes = linha.toByteArray().split(' ');
    const QByteArray palavra = partes.takeFirst();
    return {palavra, partes};
}

std::optional<qint64> numero(const Resposta &resposta, int indice) {
    return indice < resposta.valores.size() ? lerNumero(resposta.valores.at(indice), 999'999'999'999LL) : std::nullopt;
}

} // namespace klog

} // namespace protocolo
