#include "poseidon/descarga/pesquisa2251.h"

#include "core/rotina.h"
#include "platform/unit/UdpSetup.h"
#include "poseidon/modPoseidons.h"

using listaPoseidons::Dispositivo;

Pesquisa2251::Pesquisa2251(listaPoseidons::Lista &lista, QObject *pai)
    : QObject(pai), m_lista(lista), m_UdpSetupAR(novoUdpSetup()) {
    m_TimerPesquisa.setInterval(intervalo);
    connect(&m_TimerPesquisa, &QTimer::timeout, this, &Pesquisa2251::TimerPesquisa_Timer);
    connect(m_UdpSetupAR.get(), &UdpSetup::OnSearch, this, &Pesquisa2251::UdpSetupAR_OnSearch);
    connect(m_UdpSetupAR.get(), &UdpSetup::OnError, this, [this] { terminar(false); });
    connect(m_UdpSetupAR.get(), &UdpSetup::OnSetup, this, &Pesquisa2251::PesquisarRede);
}

Pesquisa2251::~Pesquisa2251() = default;

bool Pesquisa2251::PesquisarRede() {
    if (!modNetworkStatus::NetworkIsAlive())
        return false;
    m_tiques = 1;
    m_TimerPesquisa.start();
    m_UdpSetupAR->pesquisar();
    return true;
}

QList<Dispositivo> Pesquisa2251::encontrados() const {
    QList<Dispositivo> lista;
    for (const UdpSetup::Dispositivo &d : m_UdpSetupAR->dispositivos())
        lista.append({d.nome, d.mac, d.modelo, d.porta, d.endereco});
    return lista;
}

void Pesquisa2251::UdpSetupAR_OnSearch() {
    if (!activa()) // given up already
        return;
    Rotina("frmDescarregar2251.UdpSetupAR_OnSearch", [this] {
        Q_EMIT antesDeJuntar();
        const QList<Dispositivo> todos = encontrados();
        for (const Dispositivo &d : todos)
            m_lista.juntar(d);
    });
    terminar(true);
}

void Pesquisa2251::TimerPesquisa_Timer() {
    if (++m_tiques <= maximoDeTiques) {
        Q_EMIT tique(m_tiques);
        return;
    }
    m_UdpSetupAR->parar();
    terminar(false);
}

void Pesquisa2251::terminar(bool comResposta) {
    m_TimerPesquisa.stop();
    Q_EMIT terminou(comResposta);
}
