#pragma once

#include "platform/unit/rede.h"

#include <QList>
#include <QObject>

#include <memory>
#include <optional>

// Search of units on the network. The found devices stay in the object until the next search.
class UdpSetup : public QObject {
    Q_OBJECT
public:
    struct Dispositivo {
        QString endereco;
        QString mac; // "00:0A:59:00:12:34"
        QString nome;
        QString firmware;
        qint16 modelo = 0;
        quint16 porta = 80; // HTTP
    };
    enum Erro { semDestinos = 1, semRede = 2 };

    using QObject::QObject;
    // Asks the destinations of the settings (or those set by hand) and gathers answers for the search's duration;
    // OnSearch ends it. A search that is under way is begun anew.
    virtual void pesquisar() = 0;
    virtual void parar() = 0; // no event follows
    virtual bool aPesquisar() const = 0;
    virtual void definirDestinos(const QList<rede::Destino> &destinos) = 0; // instead of the settings'
    virtual void definirDuracao(int ms) = 0;                                // instead of the settings'

    int nDispositivos() const { return int(m_dispositivos.size()); }
    const QList<Dispositivo> &dispositivos() const { return m_dispositivos; }
    bool seleccionar(int indice); // from 0; the readers below tell of the selected one
    QString nome() const { return m_seleccionado.nome; }
    QString mac() const { return m_seleccionado.mac; }
    qint16 modelo() const { return m_seleccionado.modelo; }
    quint16 porta() const { return m_seleccionado.porta; }
    QString endereco() const { return m_seleccionado.endereco; }
    QString firmware() const { return m_seleccionado.firmware; }

Q_SIGNALS:
    void OnSearch();
    void OnError(int codigo);
    // A unit's set-up has been changed through this object. This back end changes none, so it never comes.
    void OnSetup();

protected:
    QList<Dispositivo> m_dispositivos;

private:
    Dispositivo m_seleccionado;
};

std::unique_ptr<UdpSetup> novoUdpSetup();
