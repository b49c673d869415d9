#pragma once

#include "simulator/botao/pty.h"

#include <atomic>
#include <mutex>
#include <thread>

// A serial adapter on a pseudo terminal, served by a thread of its own. The wire behind it is only touched under the
// lock.
class LeitorSerie {
public:
    explicit LeitorSerie(std::shared_ptr<simulador::Linha> linha) : m_linha(std::move(linha)), adaptador(*m_linha) {
        m_pty.abrir();
        m_fio = std::thread([this] {
            while (!m_parar) {
                {
                    const std::lock_guard tranca(m_tranca);
                    m_pty.servir(0);
                }
                std::this_thread::sleep_for(std::chrono::microseconds(100)); // lets others at the lock
            }
        });
    }
    ~LeitorSerie() {
        m_parar = true;
        m_fio.join();
    }
    LeitorSerie(const LeitorSerie &) = delete;
    LeitorSerie &operator=(const LeitorSerie &) = delete;

    QString caminho() const { return m_pty.caminho(); }
    template <typename Corpo>
    auto comALinha(Corpo &&corpo) {
        const std::lock_guard tranca(m_tranca);
        return corpo();
    }
    void desligar() {
        comALinha([this] { m_pty.desligar(); });
    }

private:
    std::shared_ptr<simulador::Linha> m_linha;

public:
    simulador::Adaptador2480 adaptador;

private:
    simulador::Pty m_pty{adaptador};
    std::mutex m_tranca;
    std::atomic<bool> m_parar = false;
    std::thread m_fio;
};
