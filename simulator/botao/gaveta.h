#pragma once

#include "simulator/botao/chip.h"

#include <QStringList>

namespace simulador {

// Milliseconds of the world outside the button.
using RelogioExterno = std::function<qint64()>;
qint64 milissegundosAgora();

// What the button lies in: a day's swing around a mean, with a little noise that depends on the minute alone.
struct Ambiencia {
    double media = 20.0;
    double amplitude = 4.0;
    int horaMaxima = 15;
    double ruido = 0.3;
    double em(qint64 segundosDoRelogio) const;
};

// One button and its file. A number of another family is a device with nothing but its number.
class Botao {
public:
    Botao(const QString &caminho, const onewire::Rom &rom) : m_caminho(caminho), chip(rom) {}
    static std::unique_ptr<Botao> abrir(const QString &caminho); // null when the file is none
    bool guardar();                                              // atomically
    bool temChip() const { return chip.rom()[0] == 0x21; }
    // Brings the chip to the present; it lies in its own surroundings unless told otherwise.
    void actualizar(qint64 agora, const ChipDS1921::Temperatura &temperatura = {});
    QString nome() const;

private:
    QString m_caminho;

public:
    ChipDS1921 chip;
    Ambiencia ambiencia;
    double aceleracao = 1.0; // the button's seconds in one of ours
    qint64 instante = 0;     // ours, of the chip's present state
};

// A folder of buttons, each a file "<name>.botao", and the file "leitor" with the names of those on the reader, one a
// line. Any program may put another one there while the bus is in use.
class Gaveta {
public:
    explicit Gaveta(const QString &pasta) : m_pasta(pasta) {}
    static bool e(const QString &pasta); // does the folder hold one?
    QString pasta() const { return m_pasta; }
    QStringList nomes() const;
    QStringList noLeitor() const;
    bool por(const QStringList &nomes) const; // empty: nothing on the reader
    // The same, but what belongs to the reader itself (a number without a logger) stays.
    bool trocar(const QStringList &nomes) const;
    std::unique_ptr<Botao> botao(const QString &nome) const;
    // The time of all its buttons goes faster or slower from now on.
    void acelerar(double fator, qint64 agora) const;
    // A new button as it leaves the factory, its clock set; saved.
    std::unique_ptr<Botao> criar(const QString &nome, const onewire::Rom &rom, const QDateTime &relogio,
                                 qint64 agora) const;

private:
    QString m_pasta;
};

// A number with its CRC: family, 36 bits of serial, 12 bits of range.
onewire::Rom fazerRom(quint8 familia, quint64 serie, int gama);
onewire::Rom romDeTexto(const QString &familiaPrimeiro); // zeros when it is none
QString textoDoRom(const onewire::Rom &rom);             // family first

} // namespace simulador
