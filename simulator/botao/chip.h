#pragma once

#include "platform/onewire/transporte.h"
#include "simulator/botao/relogioChip.h"

#include <QJsonObject>

#include <functional>
#include <span>

namespace simulador {

enum class Variante { G, H, Z };
Variante varianteDe(const onewire::Rom &rom);
quint8 codigoDe(Variante variante, double graus); // as the chip stores it: rounded, held at the ends of its range
double grausDe(Variante variante, quint8 codigo);

// The temperature logger without its wires: memory, clock, mission. Everything that happens to it comes through here.
class ChipDS1921 {
public:
    using Temperatura = std::function<double(qint64 segundosDoRelogio)>;
    static constexpr int paginaRegistos = 16;
    static constexpr int tamanho = 0x1800;

    explicit ChipDS1921(const onewire::Rom &rom);
    const onewire::Rom &rom() const { return m_rom; }
    Variante variante() const { return varianteDe(m_rom); }

    Temperatura temperatura = [](qint64) { return 20.0; };

    void andar(qint64 ms); // time goes by
    quint8 ler(int endereco) const;

    // One memory command begins: an armed clear is lost, and was armed if this says so.
    bool desarmarLimpeza();
    // The copy of a scratchpad; false: the place cannot be written.
    bool copiar(int endereco, std::span<const quint8> bytes);
    void limpar();
    void converter();
    bool emAlarme() const; // answers a conditional search

    // For tests and for whoever prepares a button: the chip's own view, past its commands.
    bool missao() const { return m_mem[0x214] & 0x20; }
    quint32 contador() const { return le24(0x21A); }
    void pararOscilador() { m_mem[0x20E] |= 0x80; }
    void acertar(const QDateTime &instante);
    // A mission as a host starts it, at the present clock.
    void iniciar(int intervalo, int atraso, bool continuo, double baixo, double alto);

    QJsonObject guardar() const;
    bool repor(const QJsonObject &estado);
    bool sujo = false; // something was changed from outside since the last save

private:
    struct Alarme {
        int proxima = 0; // slot to be opened next
        bool aberto = false;
    };
    quint32 le24(int endereco) const;
    void escrever24(int endereco, quint32 valor);
    void escreverRegisto(int endereco, quint8 valor, bool missaoAntes);
    void acertarRegistos(const RelogioChip::Registos &registos);
    void tentarIniciar();
    void minuto();
    void amostrar();
    void contarNoHistograma(quint8 codigo);
    void alarme(Alarme &estado, int base, bool fora, quint8 bandeira);
    void alarmeDoRelogio(qint64 de, qint64 ate);

    onewire::Rom m_rom;
    std::array<quint8, tamanho> m_mem{}; // the clock's bytes are kept in m_relogio
    RelogioChip m_relogio;
    int m_ms = 0;           // of the running second
    bool m_andou = true;    // the clock has gone on since it was set or started
    bool m_limpeza = false; // clear memory is armed
    bool m_comecou = false; // the first sample was taken
    int m_faltam = 0;       // minutes to the next sample
    Alarme m_baixo, m_alto;
};

} // namespace simulador
