#pragma once

#include <QByteArray>

#include <utility>

// One stored value exactly as the engine holds it, for rows that have to come back as they were.
struct Celula {
    enum class Tipo : quint8 { Nulo, Inteiro, Real, Texto, Bloco };
    Tipo tipo = Tipo::Nulo;
    qint64 inteiro = 0;
    double real = 0;
    QByteArray bytes;

    static Celula deTexto(QByteArray texto) { return {Tipo::Texto, 0, 0, std::move(texto)}; }
    bool numero() const { return tipo == Tipo::Inteiro || tipo == Tipo::Real; }
    double comoReal() const { return tipo == Tipo::Inteiro ? double(inteiro) : real; }
    bool emBranco() const { return !numero() && bytes.trimmed().isEmpty(); }
    bool operator==(const Celula &) const = default;
};
