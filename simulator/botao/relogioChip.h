#pragma once

#include <QDateTime>

#include <array>

namespace simulador {

// The chip's clock: seven BCD registers over a count of seconds. A leap day comes in every year divisible by four, the
// century bit turns with the year 99, so the cycle is 200 years. The weekday only counts, it means nothing.
class RelogioChip {
public:
    using Registos = std::array<quint8, 7>;
    static constexpr qint64 ciclo = qint64(73050) * 86400;

    Registos registos() const;
    void escrever(const Registos &registos); // impossible values are brought into range
    void andar(qint64 segundos);
    qint64 segundos() const { return m_segundos; } // since 1900-01-01 of this calendar
    int segundo() const { return int(m_segundos % 60); }
    int diaDaSemana() const { return int((m_segundos / 86400 + m_semana) % 7) + 1; }

    qint64 bruto() const { return m_segundos; }
    int semana() const { return m_semana; }
    bool doze() const { return m_doze; }
    void repor(qint64 segundos, int semana, bool doze);

private:
    qint64 m_segundos = qint64(36525) * 86400; // 2000-01-01
    int m_semana = 0;
    bool m_doze = false;
};

// Hours of a register with its 12/24 bits, 0 to 23.
int horasDe(quint8 registo);
quint8 registoDeHoras(int horas, bool doze);
int deBcd(quint8 byte);
quint8 paraBcd(int valor);

} // namespace simulador
