#pragma once

#include "poseidon/listaPoseidons.h"

#include <QObject>
#include <QTimer>

#include <memory>

class UdpSetup;

// The search of the network, with the clock that gives it up when no end comes.
class Pesquisa2251 : public QObject {
    Q_OBJECT
public:
    static constexpr int intervalo = 250; // ms
    static constexpr int maximoDeTiques = 55;

    explicit Pesquisa2251(listaPoseidons::Lista &lista, QObject *pai = nullptr);
    ~Pesquisa2251() override;

    // False when there is no network: nothing was begun.
    bool PesquisarRede();
    bool activa() const { return m_TimerPesquisa.isActive(); }
    QList<listaPoseidons::Dispositivo> encontrados() const;

Q_SIGNALS:
    void tique(int numero);
    void antesDeJuntar();
    void terminou(bool comResposta); // the list holds what was found

private:
    void UdpSetupAR_OnSearch();
    void TimerPesquisa_Timer();
    void terminar(bool comResposta);

    listaPoseidons::Lista &m_lista;
    std::unique_ptr<UdpSetup> m_UdpSetupAR;
    QTimer m_TimerPesquisa;
    int m_tiques = 0;
};
