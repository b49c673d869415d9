#pragma once

#include "logger/registoDS1921.h"
#include "platform/onewire/tmex.h"

#include <functional>
#include <optional>

// One session on the adapter, ended by itself. No member of the DS1921 control may run meanwhile.
class SessaoTMEX {
public:
    struct Porto {
        qint16 numero = 0;
        qint16 tipo = 0;
    };
    // One try. The handle may be refused: see aberta().
    explicit SessaoTMEX(Porto porto);
    // Waits for as long as another program holds the adapter; <passar> lets events run and ends the wait by throwing.
    SessaoTMEX(Porto porto, const std::function<void()> &passar);
    ~SessaoTMEX();
    SessaoTMEX(const SessaoTMEX &) = delete;
    SessaoTMEX &operator=(const SessaoTMEX &) = delete;

    bool aberta() const { return m_sessao >= 0; }
    bool preparar() const; // the net is ready
    tmex::Sessao numero() const { return m_sessao; }

private:
    tmex::Sessao m_sessao = -1;
};

// What this system itself reads and writes in a button's memory.
class MemoriaDS1921 {
public:
    // None: no button of this family answers.
    std::optional<tmex::NumeroROM> procurar(tmex::Sessao sessao, qint16 familia);

    // None: the page could not be read, which is not the same as a page without a packet.
    std::optional<registoDS1921::PaginaDeTexto> LerPaginaTexto(tmex::Sessao sessao, qint16 pagina);
    bool EscreverPaginaTexto(tmex::Sessao sessao, const QString &texto, qint16 pagina);
    bool EscreverPaginaVazia(tmex::Sessao sessao, const QString &texto, qint16 pagina);

    // False: no button, another one than ROMID, or a page was refused.
    bool EscrevePaginasMemoria(tmex::Sessao sessao, qint16 familia, const QStringList &LinhasMemoria,
                               const QString &ROMID);
    bool EscrevePaginasReset(tmex::Sessao sessao, qint16 familia, const QString &ROMID);

    // Perdido: a page could not be read. Incompleto: a page that the record is chained over holds no part of it.
    // Ilegivel: all was read, and it is no record of any format.
    enum class Achado { Nenhum, Perdido, Incompleto, Ilegivel, Lido };
    struct Leitura {
        Achado achado = Achado::Nenhum;
        QString ROMID; // of the button that was read
        registoDS1921::Registo registo;
        double amostrasTotais = 0;
        double leituras = 0;
        bool rollover = false;
    };
    Leitura FindFirstFamily(tmex::Sessao sessao, qint16 familia);

private:
    std::optional<tmex::NumeroROM> procurar(tmex::Sessao sessao, qint16 familia, const QString &ROMID);

    tmex::BufferEstado m_estado{};
};
