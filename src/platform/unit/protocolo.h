#pragma once

#include "platform/unit/UdpSetup.h"

#include <QByteArray>
#include <QByteArrayView>

#include <optional>

// The texts of the two open protocols between this system and a unit or the gateway in front of it.
// docs/platform.md is their description.
namespace protocolo {

// Search of units, over UDP.
namespace kfind {

constexpr quint16 portaPorOmissao = 22510;
constexpr int versao = 1;
constexpr int datagramaMaximo = 1024;
constexpr int nomeMaximo = 64; // characters
constexpr int firmwareMaximo = 32;

struct Pedido {
    QByteArray marca; // 16 hexadecimal digits, returned in the answer
    QList<int> versoes;
};

QByteArray novaMarca();
QByteArray pedido(const QByteArray &marca);
std::optional<Pedido> lerPedido(const QByteArray &datagrama);
QByteArray resposta(const UdpSetup::Dispositivo &unidade, const QByteArray &marca);
// The unit told by an answer to this very search; the sender's address is not part of the text.
std::optional<UdpSetup::Dispositivo> lerResposta(const QByteArray &datagrama, const QByteArray &marca);

} // namespace kfind

// Transfer of the log, over a connection of the unit's HTTP port that changes its protocol.
namespace klog {

constexpr int versao = 1;
constexpr int linhaMaxima = 4096; // bytes of one record, without its mark and its end

QByteArray pedidoDeMudanca(const QString &anfitriao, quint16 porta);
QByteArray nomeDaVersao(); // "KLOG/1"
// The versions in an Upgrade field; other protocols' names are passed over.
QList<int> lerVersoes(const QByteArray &campo);

// "OK 12", "END 12 <sha256>", "ERR 3 busy": the word and what follows it.
struct Resposta {
    QByteArray palavra;
    QList<QByteArray> valores;
};
Resposta lerLinha(QByteArrayView linha);
std::optional<qint64> numero(const Resposta &resposta, int indice);

} // namespace klog

} // namespace protocolo
