#pragma once

#include "core/literais.h"
#include "platform/onewire/sessao.h"
#include "simulator/botao/transporteVirtual.h"

#include <QTemporaryDir>

// A virtual reader for tests: a drawer in a temporary folder, its buttons, a clock that only this moves (each look at
// the bus takes `passoMs` of the buttons' time, so that waits end), the faults. After `ligar` every port is this
// reader. Make it after the Instalacao, whose renewal of the process state would take it off again.
//
//     BotaoDeTeste leitor;
//     leitor.fazer(u"A"_s, simulador::Variante::H);     // new button, put on the reader
//     leitor.chip().iniciar(10, 0, false, 20.0, 40.0);  // as a host would start it
//     leitor.andar(90);                                 // minutes
class BotaoDeTeste {
public:
    explicit BotaoDeTeste(const QString &relogio = u"2026-03-02 09:00:30"_s) {
        m_inicio = QDateTime::fromString(relogio, u"yyyy-MM-dd hh:mm:ss"_s);
        m_inicio.setTimeSpec(Qt::UTC);
        m_agora = m_inicio.toMSecsSinceEpoch();
        linha = std::make_shared<simulador::Linha>(gaveta(), [this] { return m_agora += passoMs; });
        ligar();
    }
    ~BotaoDeTeste() {
        onewire::fecharSessao();
        onewire::barramento().abrir = nullptr;
    }
    BotaoDeTeste(const BotaoDeTeste &) = delete;
    BotaoDeTeste &operator=(const BotaoDeTeste &) = delete;

    void ligar() {
        onewire::barramento().abrir = [this](qint16, qint16) -> std::unique_ptr<onewire::Transporte> {
            return semAdaptador ? nullptr : std::make_unique<simulador::TransporteVirtual>(linha);
        };
    }
    simulador::Gaveta gaveta() const { return simulador::Gaveta(m_pasta.path()); }

    static onewire::Rom rom(simulador::Variante variante, quint64 serie = 0x123456) {
        const int gama = variante == simulador::Variante::H ? 0x4F2 : variante == simulador::Variante::Z ? 0x3B2 : 0;
        return simulador::fazerRom(0x21, serie, gama);
    }
    // A new button with its clock at the reader's time, put on the reader alone.
    void fazer(const QString &nome, simulador::Variante variante = simulador::Variante::G, quint64 serie = 0x123456) {
        fazer(nome, rom(variante, serie));
    }
    void fazer(const QString &nome, const onewire::Rom &numero) {
        gaveta().criar(nome, numero, agora(), m_agora);
        por({nome});
    }
    void por(const QStringList &nomes) { gaveta().por(nomes); }
    void tirar() { por({}); }

    // The chip on the reader (the first one), brought to the present.
    simulador::ChipDS1921 &chip() { return linha->botoes().at(0)->chip; }
    QDateTime agora() const { return QDateTime::fromMSecsSinceEpoch(m_agora, Qt::UTC); }
    void andar(int minutos) { m_agora += qint64(minutos) * 60'000; }
    simulador::DefeitosBotao &defeitos() { return linha->defeitos; }

    int passoMs = 100;
    bool semAdaptador = false;
    std::shared_ptr<simulador::Linha> linha;

private:
    QTemporaryDir m_pasta;
    QDateTime m_inicio;
    qint64 m_agora = 0;
};
