#pragma once

#include <QHostAddress>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

class QObject;

// What the workstation knows of its networks, and where the settings allow a search to go.
namespace rede {

struct Interface {
    QString nome;
    bool activa = false; // up and running
    bool loopback = false;
    bool difusao = false;          // can broadcast
    QList<QHostAddress> enderecos; // IPv4
};
QList<Interface> interfaces();

struct Destino {
    QHostAddress endereco;
    quint16 porta = 0;
    QHostAddress origem; // the local address to send from; null: any
    bool operator==(const Destino &) const = default;
};

// Key Pesquisa of section D2251: addresses, each with an optional ":port", parted by commas, semicolons or blanks.
struct ListaDePesquisa {
    bool definida = false; // an empty list is a list: nothing is asked
    QList<Destino> destinos;
    QStringList invalidos;
};
ListaDePesquisa lerLista(const QString &texto);
ListaDePesquisa listaDasDefinicoes();

// Where a search goes: the list or, without one, the limited broadcast from every interface that is up.
QList<Destino> destinos(const ListaDePesquisa &lista, const QList<Interface> &interfaces);

// Is there a network? Loopback counts only when the list names nothing else.
bool redeLigada(const ListaDePesquisa &lista, const QList<Interface> &interfaces);
bool redeLigada();
void instalar(); // from now on core's question is answered here

// A number of section D2251 of the settings, when it lies within the bounds.
int definicao(const QString &chave, int omissao, int minimo, int maximo);
quint16 portaDaConsola(); // key PortaConsola, 99

// The dotted address of a name, empty when there is none. Waits with the event loop running; throws Interrompido
// when the owner was destroyed meanwhile.
QString resolver(const QString &nome, QObject *dono, int ms = 5000);

} // namespace rede
