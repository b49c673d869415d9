#pragma once

#include "core/literais.h"
#include "platform/onewire/sessao.h"
#include "simulator/botao/transporteVirtual.h"

#include <QTemporaryDir>

// A virtual reader for tests: a drawer in a temporary folder, its buttons, a clock that only this moves (each look at
// the bus takes `passoMs` of the buttons' time, so that waits end), the faults. Every port is this reader. Make it
// after the Instalacao, whose renewal of the process state would take it off again.
//
//     BotaoDeTeste leitor;
//     leitor.fazer(u"A"_s, simulador::Variante::H);     // new button, put on the reader
//     leitor.chip().iniciar(10, 0, false, 20.0, 40.0);  // as a host would start it
//     leitor.andar(90);                                 // minutes
class BotaoDeTeste {
public:
    BotaoDeTeste() {
        linha = std::make_shared<simulador::Linha>(gaveta(), [this] { return m_agora += passoMs; });
        onewire::barramento().abrir = [this](qint16 n, qint16 t) -> std::unique_ptr<onewire::Transporte> {
            if (aoAbrir)
                aoAbrir(n, t);
            return semAdaptador ? nullptr : std::make_unique<simulador::TransporteVirtual>(linha);
        };
    }
    ~BotaoDeTeste() {
        onewire::fecharSessao();
        onewire::barramento().abrir = nullptr;
    }
    BotaoDeTeste(const BotaoDeTeste &) = delete;
    BotaoDeTeste &operator=(const BotaoDeTeste &) = delete;

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
    // Several together, each under its number.
    void fazer(const QList<onewire::Rom> &numeros) {
        QStringList nomes;
        for (const onewire::Rom &numero : numeros)
            fazer(nomes.emplaceBack(simulador::textoDoRom(numero)), numero);
        por(nomes);
    }
    void por(const QStringList &nomes) { gaveta().por(nomes); }
    void tirar() { por({}); }

    // The chip on the reader (the first one), brought to the present.
    simulador::ChipDS1921 &chip() { return linha->botoes().at(0)->chip; }
    simulador::ChipDS1921 &chipDe(const QString &nome) {
        for (simulador::Botao *botao : linha->botoes())
            if (botao->nome() == nome)
                return botao->chip;
        return chip();
    }
    QDateTime agora() const { return QDateTime::fromMSecsSinceEpoch(m_agora, Qt::UTC); }
    void andar(int minutos) { m_agora += qint64(minutos) * 60'000; }
    simulador::DefeitosBotao &defeitos() { return linha->defeitos; }

    int passoMs = 100;
    bool semAdaptador = false;
    std::function<void(qint16 numero, qint16 tipo)> aoAbrir; // each time a port is tried
    std::shared_ptr<simulador::Linha> linha;

private:
    QTemporaryDir m_pasta;
    qint64 m_agora = QDateTime(QDate(2026, 3, 2), QTime(9, 0, 30), Qt::UTC).toMSecsSinceEpoch();
};
