#include "simulator/botao/relogioChip.h"

#include <algorithm>

namespace simulador {

namespace {

constexpr int diasDosMeses[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};

int diasDoMes(int mes, int ano) {
    return diasDosMeses[mes - 1] + (mes == 2 && ano % 4 == 0);
}

int diasAntesDoAno(int ano) {
    return ano * 365 + (ano + 3) / 4;
}

} // namespace

int deBcd(quint8 byte) {
    return (byte >> 4) * 10 + (byte & 15);
}

quint8 paraBcd(int valor) {
    return quint8(valor / 10 << 4 | valor % 10);
}

int horasDe(quint8 registo) {
    if (!(registo & 0x40))
        return std::min(deBcd(registo & 0x3F), 23);
    const int horas = std::clamp(deBcd(registo & 0x1F), 1, 12) % 12;
    return registo & 0x20 ? horas + 12 : horas;
}

quint8 registoDeHoras(int horas, bool doze) {
    if (!doze)
        return paraBcd(horas);
    return quint8(0x40 | (horas >= 12 ? 0x20 : 0) | paraBcd(horas % 12 ? horas % 12 : 12));
}

RelogioChip::Registos RelogioChip::registos() const {
    const int dias = int(m_segundos / 86400);
    const int doDia = int(m_segundos % 86400);
    int ano = dias / 366;
    while (diasAntesDoAno(ano + 1) <= dias)
        ++ano;
    int dia = dias - diasAntesDoAno(ano);
    int mes = 1;
    while (dia >= diasDoMes(mes, ano))
        dia -= diasDoMes(mes++, ano);
    return {paraBcd(doDia % 60),   paraBcd(doDia / 60 % 60), registoDeHoras(doDia / 3600, m_doze),
            quint8(diaDaSemana()), paraBcd(dia + 1),         quint8(paraBcd(mes) | (ano >= 100 ? 0x80 : 0)),
            paraBcd(ano % 100)};
}

void RelogioChip::escrever(const Registos &r) {
    const int ano = std::min(deBcd(r[6]), 99) + (r[5] & 0x80 ? 100 : 0);
    const int mes = std::clamp(deBcd(r[5] & 0x1F), 1, 12);
    const int dia = std::clamp(deBcd(r[4] & 0x3F), 1, diasDoMes(mes, ano));
    int dias = diasAntesDoAno(ano) + dia - 1;
    for (int m = 1; m < mes; ++m)
        dias += diasDoMes(m, ano);
    m_segundos = qint64(dias) * 86400 + horasDe(r[2]) * 3600 + std::min(deBcd(r[1] & 0x7F), 59) * 60 +
                 std::min(deBcd(r[0] & 0x7F), 59);
    m_doze = r[2] & 0x40;
    m_semana = int(((std::max(r[3] & 7, 1) - 1 - dias) % 7 + 7) % 7);
}

void RelogioChip::andar(qint64 segundos) {
    m_segundos += segundos;
    for (; m_segundos >= ciclo; m_segundos -= ciclo)
        m_semana = int((m_semana + ciclo / 86400) % 7); // the weekday knows nothing of the calendar
}

void RelogioChip::repor(qint64 segundos, int semana, bool doze) {
    m_segundos = ((segundos % ciclo) + ciclo) % ciclo;
    m_semana = ((semana % 7) + 7) % 7;
    m_doze = doze;
}

} // namespace simulador
