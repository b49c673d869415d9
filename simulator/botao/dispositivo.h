#pragma once

#include "simulator/botao/chip.h"
#include "simulator/botao/defeitos.h"

namespace simulador {

// What a device does once it is selected, byte by byte.
class Funcoes {
public:
    virtual ~Funcoes() = default;
    virtual void comecar() = 0;            // selected after a reset
    virtual quint8 aEnviar() = 0;          // FF while the device listens
    virtual void naLinha(quint8 byte) = 0; // what the byte's slots showed
    virtual bool emAlarme() const { return false; }
};

// A device on the wire, slot by slot: ROM commands, search, then its functions. Several share the line, so each only
// says whether it lets the line up.
class Dispositivo {
public:
    Dispositivo(const onewire::Rom &rom, Funcoes *funcoes) : m_rom(rom), m_funcoes(funcoes) {}
    const onewire::Rom &rom() const { return m_rom; }
    void reset();
    bool largar();         // during this slot: false pulls the line down
    void slot(bool linha); // what the line was

private:
    enum class Fase { Comando, LerRom, Escolher, Procurar, Funcao, Surdo };
    void comandoRom(quint8 comando);
    bool bitDoRom(int i) const { return m_rom[size_t(i / 8)] >> (i % 8) & 1; }

    onewire::Rom m_rom;
    Funcoes *m_funcoes; // null: nothing but a number
    Fase m_fase = Fase::Surdo;
    int m_bit = 0;
    int m_passo = 0; // of a search: bit, complement, direction
    quint8 m_entrada = 0;
    quint8 m_saida = 0xFF;
};

// The memory commands of the logger over its scratchpad.
class FuncoesDS1921 : public Funcoes {
public:
    FuncoesDS1921(ChipDS1921 &chip, DefeitosBotao &defeitos) : m_chip(chip), m_defeitos(defeitos) {}
    void comecar() override;
    quint8 aEnviar() override;
    void naLinha(quint8 byte) override;
    bool emAlarme() const override { return m_chip.emAlarme(); }

private:
    void argumento(quint8 byte);
    void comandoCompleto();
    void escreverNoRascunho(quint8 byte);
    quint8 lerMemoria();
    quint8 proximoLido();
    void juntarCrc();
    bool falhar(int DefeitosBotao::*campo);

    ChipDS1921 &m_chip;
    DefeitosBotao &m_defeitos;
    quint8 m_comando = 0;
    QByteArray m_recebido;  // command and arguments, as its CRC covers them
    QByteArray m_fila;      // to be sent next
    QByteArray m_coberto;   // sent bytes that the next CRC covers
    bool m_aguarda = true;  // for the command byte
    bool m_escreve = false; // data of a write follow
    bool m_le = false;      // memory is read on and on
    bool m_comCrc = false;
    quint8 m_fim = 0xFF; // when the queue is empty
    int m_endereco = 0;

    std::array<quint8, 32> m_rascunho{};
    quint16 m_alvo = 0;
    quint8 m_es = 0;
};

} // namespace simulador
