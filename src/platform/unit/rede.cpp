#include "platform/unit/rede.h"

#include "core/espera.h"
#include "core/estado.h"
#include "core/modINI.h"
#include "platform/unit/protocolo.h"

#include <QHostInfo>
#include <QNetworkInterface>
#include <QRegularExpression>

#include <algorithm>
#include <memory>

namespace rede {

namespace {

QString daSeccao(const QString &chave, const QString &omissao) {
    return modINI::GetSetting(estado().NomePrograma, u"D2251"_s, chave, omissao);
}

// Only a plain dotted number: the usual readers also take "127.1" and would send somewhere nobody wrote down.
QHostAddress enderecoPontuado(const QString &texto) {
    static const QRegularExpression forma(uR"(\A\d{1,3}(\.\d{1,3}){3}\z)"_s);
    return forma.match(texto).hasMatch() ? QHostAddress(texto) : QHostAddress();
}

std::optional<Destino> lerDestino(const QString &texto) {
    const qsizetype doisPontos = texto.indexOf(u':');
    Destino destino;
    destino.endereco = enderecoPontuado(texto.left(doisPontos));
    destino.porta = protocolo::kfind::portaPorOmissao;
    bool lida = true;
    if (doisPontos >= 0) {
        destino.porta = texto.mid(doisPontos + 1).toUShort(&lida);
        lida = lida && destino.porta > 0;
    }
    if (!lida || destino.endereco.isNull())
        return std::nullopt;
    return destino;
}

} // namespace

QList<Interface> interfaces() {
    QList<Interface> lista;
    const auto todas = QNetworkInterface::allInterfaces();
    for (const QNetworkInterface &i : todas) {
        const auto marcas = i.flags();
        Interface nova{i.name(),
                       marcas.testFlag(QNetworkInterface::IsUp) && marcas.testFlag(QNetworkInterface::IsRunning),
                       marcas.testFlag(QNetworkInterface::IsLoopBack),
                       marcas.testFlag(QNetworkInterface::CanBroadcast),
                       {}};
        const auto entradas = i.addressEntries();
        for (const QNetworkAddressEntry &entrada : entradas) {
            if (entrada.ip().protocol() == QAbstractSocket::IPv4Protocol)
                nova.enderecos.append(entrada.ip());
        }
        lista.append(nova);
    }
    return lista;
}

ListaDePesquisa lerLista(const QString &texto) {
    static const QRegularExpression separador(uR"([,;\s]+)"_s);
    ListaDePesquisa lista;
    lista.definida = true;
    const QStringList partes = texto.split(separador, Qt::SkipEmptyParts);
    for (const QString &parte : partes) {
        const auto destino = lerDestino(parte);
        if (!destino)
            lista.invalidos.append(parte);
        else if (!lista.destinos.contains(*destino))
            lista.destinos.append(*destino);
    }
    return lista;
}

ListaDePesquisa listaDasDefinicoes() {
    const QString ausente(QChar(0x7f));
    QString texto = daSeccao(u"Pesquisa"_s, ausente);
    if (texto == ausente)
        return {};
    // A value cut by the store could end in the beginning of another address.
    if (texto.size() >= modINI::maximoDeCaracteres) {
        static const QRegularExpression ultimo(uR"([^,;\s]*\z)"_s);
        texto.remove(ultimo);
    }
    return lerLista(texto);
}

QList<Destino> destinos(const ListaDePesquisa &lista, const QList<Interface> &interfaces) {
    if (lista.definida)
        return lista.destinos;
    QList<Destino> todos;
    for (const Interface &i : interfaces) {
        if (!i.activa || i.loopback || !i.difusao)
            continue;
        for (const QHostAddress &local : i.enderecos)
            todos.append({QHostAddress(QHostAddress::Broadcast), protocolo::kfind::portaPorOmissao, local});
    }
    return todos;
}

bool redeLigada(const ListaDePesquisa &lista, const QList<Interface> &interfaces) {
    const bool soLoopback = lista.definida && !lista.destinos.isEmpty() &&
                            std::all_of(lista.destinos.cbegin(), lista.destinos.cend(),
                                        [](const Destino &d) { return d.endereco.isLoopback(); });
    return std::any_of(interfaces.cbegin(), interfaces.cend(), [&](const Interface &i) {
        return i.activa && !i.enderecos.isEmpty() && (soLoopback || !i.loopback);
    });
}

bool redeLigada() {
    return redeLigada(listaDasDefinicoes(), interfaces());
}

void instalar() {
    estado().ambiente.redeLigada = [] { return redeLigada(); };
}

int definicao(const QString &chave, int omissao, int minimo, int maximo) {
    bool lido = false;
    const int valor = daSeccao(chave, {}).trimmed().toInt(&lido);
    return lido && valor >= minimo && valor <= maximo ? valor : omissao;
}

quint16 portaDaConsola() {
    return quint16(definicao(u"PortaConsola"_s, 99, 1, 65535));
}

QString resolver(const QString &nome, QObject *dono, int ms) {
    const QString limpo = nome.trimmed();
    if (limpo.isEmpty())
        return {};
    if (const QHostAddress directo = enderecoPontuado(limpo); !directo.isNull())
        return directo.toString();

    // Shared with the answer, which may come after this routine has given up.
    struct Resposta {
        bool veio = false;
        QString endereco;
    };
    const auto resposta = std::make_shared<Resposta>();
    QObject contexto;
    const int pedido = QHostInfo::lookupHost(limpo, &contexto, [resposta](const QHostInfo &info) {
        resposta->veio = true;
        const auto enderecos = info.addresses();
        for (const QHostAddress &a : enderecos) {
            if (a.protocol() == QAbstractSocket::IPv4Protocol) {
                resposta->endereco = a.toString();
                break;
            }
        }
    });
    if (!espera::ate(dono, ms, [&] { return resposta->veio; }))
        QHostInfo::abortHostLookup(pedido);
    return resposta->endereco;
}

} // namespace rede
