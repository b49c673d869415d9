#pragma once

#include "core/estado.h"
#include "platform/onewire/causas.h"
#include "platform/onewire/transporte.h"

#include <functional>
#include <memory>

namespace onewire {

// The process's way to its adapters: how a port becomes a transport, who holds the session, what runs while it waits.
class Barramento : public Servico {
public:
    // Null when there is no such adapter or another process holds it.
    using Fabrica = std::function<std::unique_ptr<Transporte>(qint16 porto, qint16 tipo)>;
    Fabrica abrir; // set to the real back ends; a test puts its own

    // Called within every wait. May throw Interrompido: the operation ends where it stands, the session is closed.
    std::function<void()> passar;

    // The session that is open, 0 without one. Only tmex.cpp and the control change it.
    qint32 sessao = 0;
    std::unique_ptr<Transporte> transporte;
    qint32 sessoes = 0;           // opened so far; a handle is never given twice
    bool emUso = false;           // an operation is on the bus
    Motivo motivo;                // why the last thing failed in the session that is or was open last
    std::optional<Rom> escolhido; // of several buttons the one that the user has chosen

    bool preparado = false; // the adapter's net was set up once by its search

    // Makes the virtual reader of a drawer's folder; empty where there is none.
    std::function<std::unique_ptr<Transporte>(const QString &pasta)> gaveta;
};

Barramento &barramento(); // kept in Estado, made on first use

// Waits of the bus: Barramento::passar runs meanwhile, so windows stay painted and the user can go away.
void passar();
void esperar(int ms);
bool esperarAte(int ms, const std::function<bool()> &condicao); // true as soon as it holds

// For the length of a user's action: what runs within the waits.
class ComPassagem {
public:
    explicit ComPassagem(std::function<void()> passar);
    ~ComPassagem();
    ComPassagem(const ComPassagem &) = delete;
    ComPassagem &operator=(const ComPassagem &) = delete;

private:
    std::function<void()> m_anterior;
};

} // namespace onewire
