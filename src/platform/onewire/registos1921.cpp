#include "platform/onewire/registos1921.h"

#include <algorithm>
#include <cmath>

namespace onewire {

namespace {

constexpr int base = registo::relogio;

int byteEm(const BytesDaPagina &p, int endereco) {
    return p[size_t(endereco - base)];
}

quint32 le24(const BytesDaPagina &p, int endereco) {
    return quint32(byteEm(p, endereco) | byteEm(p, endereco + 1) << 8 | byteEm(p, endereco + 2) << 16);
}

int deBcd(int byte) {
    return (byte & 15) > 9 || byte >> 4 > 9 ? -1 : (byte >> 4) * 10 + (byte & 15);
}

quint8 paraBcd(int valor) {
    return quint8(valor / 10 << 4 | valor % 10);
}

int horas(int registo) {
    if (!(registo & 0x40))
        return deBcd(registo & 0x3F);
    const int h = deBcd(registo & 0x1F);
    if (h < 1 || h > 12)
        return -1;
    return h % 12 + (registo & 0x20 ? 12 : 0);
}

QDateTime instante(int ano, int mes, int dia, int hora, int minuto, int segundo) {
    const QDate data(ano, mes, dia);
    const QTime tempo(hora, minuto, segundo);
    return data.isValid() && tempo.isValid() ? QDateTime(data, tempo, Qt::UTC) : QDateTime();
}

QDateTime lerRelogio(const BytesDaPagina &p) {
    const int mes = byteEm(p, 0x205);
    const int ano = deBcd(byteEm(p, 0x206));
    if (ano < 0)
        return {};
    return instante((mes & 0x80 ? 2000 : 1900) + ano, deBcd(mes & 0x1F), deBcd(byteEm(p, 0x204) & 0x3F),
                    horas(byteEm(p, 0x202)), deBcd(byteEm(p, 0x201) & 0x7F), deBcd(byteEm(p, 0x200) & 0x7F));
}

// The stamp carries no century: the clock's, or the one before where that would lie in the future.
QDateTime lerCarimbo(const BytesDaPagina &p, const QDateTime &relogio) {
    const int ano = deBcd(byteEm(p, 0x219));
    const int mes = deBcd(byteEm(p, 0x218) & 0x1F);
    if (mes <= 0 || ano < 0)
        return {};
    const int seculo = relogio.isValid() ? relogio.date().year() / 100 * 100 : 2000;
    const auto em = [&](int s) {
        return instante(s + ano, mes, deBcd(byteEm(p, 0x217) & 0x3F), horas(byteEm(p, 0x216)),
                        deBcd(byteEm(p, 0x215) & 0x7F), 0);
    };
    const QDateTime carimbo = em(seculo);
    return relogio.isValid() && carimbo > relogio ? em(seculo - 100) : carimbo;
}

// Not confirmed on hardware, and told both ways: the stamp is the first sample's time (not the start's, with the first
// sample one interval later).
QDateTime dataDaAmostra(const QDateTime &carimbo, int intervalo, qint64 numero) {
    return carimbo.addSecs(numero * intervalo * 60);
}

struct Escala {
    double passo, zero;
};
Escala escala(Variante1921 v) {
    return v == Variante1921::H ? Escala{0.125, 14.5} : v == Variante1921::Z ? Escala{0.125, -5.5} : Escala{0.5, -40.0};
}

} // namespace

Variante1921 variante1921(const Rom &rom) {
    switch (rom[6] << 4 | rom[5] >> 4) {
    case 0x4F2:
        return Variante1921::H;
    case 0x3B2:
        return Variante1921::Z;
    default:
        return Variante1921::G;
    }
}

double graus1921(Variante1921 variante, quint8 codigo) {
    return escala(variante).zero + codigo * escala(variante).passo;
}

quint8 codigo1921(Variante1921 variante, double graus) {
    if (std::isnan(graus))
        return 0;
    const Escala e = escala(variante);
    return quint8(std::clamp(std::round((graus - e.zero) / e.passo), 0.0, 255.0));
}

Registos1921 descodificarRegistos(const BytesDaPagina &p) {
    Registos1921 r;
    r.relogio = lerRelogio(p);
    r.limiteBaixo = quint8(byteEm(p, 0x20B));
    r.limiteAlto = quint8(byteEm(p, 0x20C));
    r.intervalo = byteEm(p, 0x20D);
    r.controlo = quint8(byteEm(p, 0x20E));
    r.atraso = byteEm(p, 0x212) | byteEm(p, 0x213) << 8;
    r.estado = quint8(byteEm(p, 0x214));
    r.carimbo = lerCarimbo(p, r.relogio);
    r.amostras = le24(p, 0x21A);
    r.amostrasDoChip = le24(p, 0x21D);
    return r;
}

std::array<quint8, 7> codificarRelogio(const QDateTime &instante) {
    const QDate d = instante.date();
    const QTime t = instante.time();
    return {paraBcd(t.second()),    paraBcd(t.minute()),
            paraBcd(t.hour()),      quint8(d.dayOfWeek() % 7 + 1),
            paraBcd(d.day()),       quint8(paraBcd(d.month()) | (d.year() >= 2000 ? 0x80 : 0)),
            paraBcd(d.year() % 100)};
}

std::vector<Entrada1921> entradasDoLog(const Registos1921 &r) {
    std::vector<Entrada1921> entradas;
    if (!r.carimbo.isValid())
        return entradas;
    const qint64 n = r.amostras;
    const bool girou = r.continuo() && n > capacidadeDoLog;
    const qint64 primeira = girou ? n - capacidadeDoLog : 0;
    const qint64 ultima = girou ? n : std::min<qint64>(n, capacidadeDoLog);
    entradas.reserve(size_t(ultima - primeira));
    for (qint64 k = primeira; k < ultima; ++k)
        entradas.push_back({int(k % capacidadeDoLog), dataDaAmostra(r.carimbo, r.intervalo, k)});
    return entradas;
}

} // namespace onewire
