#include "demo/clima.h"

#include "demo/acaso.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace demonstracao {

namespace {

constexpr qint64 segundosPorHora = 3600;
constexpr qint64 segundosPorDia = 86400;

// base epoca dia | lento rapido | ciclo min | porta aberturas | degelo h, °C | avaria | HR ± | limits
constexpr std::array<PerfilLocal, 15> perfis = {{
    {4.3, 0.3, 0.2, 0.35, 0.15, 0.6, 24, 3.2, 0.45, 8, 3.0, 7, 82, 7, 8, 2, 93, 68},      // Refrigerado
    {-20.5, 0.6, 0.3, 0.5, 0.2, 0.9, 31, 5.0, 0.25, 6, 6.5, 12, 70, 8, -15, -25, 90, 45}, // Congelado
    {4.9, 0.2, 0.1, 0.3, 0.1, 0.45, 18, 2.2, 0.30, 0, 0, 6, 55, 6, 8, 2, 62, 44},         // Vacinas
    {-79.0, 0.2, 0.1, 0.5, 0.2, 1.1, 22, 7.0, 0.08, 0, 0, 18, 40, 5, -70, -86, 60, 20},   // Ultrafrio
    {18.5, 4.6, 1.4, 1.2, 0.15, 0, 0, 1.4, 0.35, 0, 0, 3, 62, 13, 25, 12, 73, 45},        // Armazem
    {21.8, 0.7, 0.5, 0.5, 0.15, 0.35, 38, 0.6, 0.25, 0, 0, 3, 48, 9, 24, 19, 56, 40},     // Laboratorio
    {36.9, 0.1, 0.05, 0.12, 0.06, 0.2, 27, 2.1, 0.15, 0, 0, 4, 58, 8, 38, 35.5, 80, 40},  // Estufa
    {24.0, 4.2, 1.8, 1.3, 0.3, 0, 0, 0.7, 0.05, 0, 0, 8, 45, 12, 35, 5, 70, 20},          // Tecnica
    {21.5, 0.6, 0.7, 0.6, 0.3, 0.8, 13, 0.4, 0.05, 0, 0, 9, 44, 6, 27, 17, 60, 30},       // Servidores
    {57.0, 1.0, 1.4, 1.5, 0.6, 1.8, 42, 0, 0, 0, 0, -14, 40, 5, 65, 50, 70, 20},          // Quente
    {3.6, 0.7, 0.8, 0.8, 0.3, 0.8, 21, 5.5, 0.40, 12, 3.5, 9, 78, 9, 8, 0, 95, 50},       // Viatura
    {15.6, 6.4, 4.4, 3.2, 0.3, 0, 0, 0, 0, 0, 0, 0, 70, 17, 38, -2, 88, 55},              // Exterior
    {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0.95, 0.15},                         // Nivel
    {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0.97, 0},                            // Solar
    {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0.88, 0.12},                         // Processo
}};

// Rises to 1 while it lasts and dies away afterwards.
double subidaEQueda(const Evento &e, qint64 t, double subida, double queda) {
    if (e.fim <= e.inicio || t < e.inicio)
        return 0;
    const double durante = 1 - std::exp(-double(std::min(t, e.fim) - e.inicio) / subida);
    const double depois = double(t - e.fim) / queda;
    if (depois > 8)
        return 0;
    return depois <= 0 ? durante : durante * std::exp(-depois);
}

bool horaDeTrabalho(qint64 hora) {
    const qint64 dia = hora / 24;
    const qint64 diaDaSemana = (dia + 3) % 7; // 0: Monday; 1970-01-01 was a Thursday
    const qint64 h = hora % 24;
    return diaDaSemana < 5 ? h >= 7 && h < 20 : diaDaSemana == 5 && h >= 8 && h < 13;
}

// Parts of a place's key.
constexpr quint64 daPorta = 0x11, doDegelo = 0x22, daAvaria = 0x33, daHumidade = 0x44, doSensor = 0x55,
                  daPressao = 0x66, doProcesso = 0x77, doCorte = 0x88;

} // namespace

const PerfilLocal &perfilDe(Local local) {
    return perfis[size_t(local)];
}

quint64 Clima::chaveDe(int lugar) const {
    return misturar(m_semente, 1000 + lugar);
}

Momento Clima::momento(qint64 t) const {
    constexpr double volta = 2 * std::numbers::pi;
    constexpr double segundosPorAno = 365.2425 * segundosPorDia;
    Momento m;
    m.t = t;
    const double ano = std::fmod(double(t), segundosPorAno) / segundosPorAno;
    const double hora = double(t % segundosPorDia) / segundosPorHora;
    m.epoca = std::cos(volta * (ano - 202.0 / 365.2425));
    m.dia = std::cos(volta * (hora - 15.5) / 24);
    const double duracaoDoDia = 12 + 2.6 * m.epoca;
    const double altura = std::cos(std::numbers::pi * (hora - 13.2) / duracaoDoDia);
    m.sol = std::fabs(hora - 13.2) < duracaoDoDia / 2 ? altura : 0;
    for (const qint64 bloco : {t / segundosPorCorte - 1, t / segundosPorCorte}) {
        const Evento corte = corteDeCorrente(bloco);
        m.semCorrente = m.semCorrente || corte.em(t);
        m.aquecimento = std::max(m.aquecimento, subidaEQueda(corte, t, 4 * 3600, 5400));
    }
    return m;
}

Evento Clima::corteDeCorrente(qint64 bloco) const {
    const quint64 k = misturar(m_semente ^ doCorte, bloco);
    const qint64 inicio = bloco * segundosPorCorte + qint64(fraccao(k) * double(segundosPorCorte - segundosPorDia));
    return {inicio, inicio + 1800 + qint64(sorte(k, 1) * 5 * segundosPorHora)};
}

Evento Clima::abertura(Local local, int lugar, qint64 hora) const {
    const PerfilLocal &p = perfilDe(local);
    const double probabilidade = horaDeTrabalho(hora) ? p.aberturas : p.aberturas / 15;
    const quint64 k = misturar(chaveDe(lugar) ^ daPorta, hora);
    if (fraccao(k) >= probabilidade)
        return {};
    const qint64 inicio = hora * segundosPorHora + qint64(sorte(k, 1) * 3500);
    // Mostly short; now and then somebody leaves it open.
    const double demora = sorte(k, 2);
    return {inicio, inicio + 40 + qint64(demora < 0.94 ? demora * 420 : demora * demora * 2400)};
}

Evento Clima::degelo(Local local, int lugar, qint64 t) const {
    const qint64 periodo = perfilDe(local).degeloHoras * segundosPorHora;
    if (periodo == 0)
        return {};
    const qint64 fase = qint64(sorte(chaveDe(lugar), doDegelo) * double(periodo));
    const qint64 inicio = (t + fase) / periodo * periodo - fase;
    return {inicio, inicio + 1500};
}

Evento Clima::sensorDesligado(int lugar, qint64 t) const {
    constexpr qint64 bloco = 33 * segundosPorDia;
    const quint64 k = misturar(chaveDe(lugar) ^ doSensor, t / bloco);
    if (fraccao(k) >= 0.6)
        return {};
    const qint64 inicio = t / bloco * bloco + qint64(sorte(k, 1) * double(bloco - segundosPorDia));
    return {inicio, inicio + segundosPorHora + qint64(sorte(k, 2) * 15 * segundosPorHora)};
}

double Clima::portas(Local local, const PerfilLocal &p, int lugar, const Momento &m) const {
    double soma = 0;
    const qint64 hora = m.t / segundosPorHora;
    for (const qint64 h : {hora - 1, hora})
        soma += subidaEQueda(abertura(local, lugar, h), m.t, 260, 1100);
    return p.porta * std::min(soma, 1.4);
}

double Clima::avarias(const PerfilLocal &p, quint64 chave, qint64 t) const {
    constexpr qint64 bloco = 61 * segundosPorDia;
    const quint64 k = misturar(chave ^ daAvaria, t / bloco);
    if (fraccao(k) >= 0.45)
        return 0;
    const qint64 inicio = t / bloco * bloco + qint64(sorte(k, 1) * double(bloco - 2 * segundosPorDia));
    const Evento avaria{inicio, inicio + 2 * segundosPorHora + qint64(sorte(k, 2) * 7 * segundosPorHora)};
    return p.avaria * subidaEQueda(avaria, t, 9000, 4000);
}

double Clima::temperatura(Local local, int lugar, const Momento &m) const {
    const PerfilLocal &p = perfilDe(local);
    const quint64 chave = chaveDe(lugar);
    double v = p.base + (sorte(chave, 7) - 0.5) * 0.5 + p.epoca * m.epoca + p.dia * m.dia;
    v += p.lento * ondulacao(chave, m.t, 40 * segundosPorHora) + p.rapido * ondulacao(chave ^ 1, m.t, 1700);
    if (local == Local::Exterior) // fronts pass over the whole site
        v += 2.4 * ondulacao(m_semente, m.t, 5 * segundosPorDia);
    if (p.cicloMinutos > 0) {
        const qint64 periodo = p.cicloMinutos * 60 + qint64(chave % 120);
        const double x = double(m.t % periodo) / double(periodo);
        v += p.ciclo * (x < 0.35 ? 1 - x / 0.175 : (x - 0.35) / 0.325 - 1);
    }
    if (p.aberturas > 0)
        v += portas(local, p, lugar, m);
    if (p.degeloHoras > 0)
        v += p.degelo * subidaEQueda(degelo(local, lugar, m.t), m.t, 700, 1300);
    if (p.avaria != 0)
        v += avarias(p, chave, m.t);
    if (m.aquecimento > 0) // a room drifts towards 20 degrees while nothing cools or heats it
        v += m.aquecimento * (20 - p.base) * 0.28;
    return v;
}

double Clima::humidade(Local local, int lugar, const Momento &m) const {
    const PerfilLocal &p = perfilDe(local);
    const quint64 chave = chaveDe(lugar) ^ daHumidade;
    double v = p.humidade +
               p.humidadeVariacao * (0.55 * ondulacao(chave, m.t, 30 * segundosPorHora) - 0.35 * m.dia - 0.2 * m.epoca);
    v += 0.8 * ondulacao(chave ^ 1, m.t, 2400);
    if (p.aberturas > 0)
        v += 2.2 * portas(local, p, lugar, m);
    if (p.degeloHoras > 0)
        v += 5 * subidaEQueda(degelo(local, lugar, m.t), m.t, 700, 1800);
    return std::clamp(v, 4.0, 99.9);
}

double Clima::pressao(int lugar, const Momento &m) const {
    const quint64 chave = chaveDe(lugar) ^ daPressao;
    const double tempo = 101.32 + 0.85 * ondulacao(m_semente ^ daPressao, m.t, 6 * segundosPorDia) +
                         0.28 * ondulacao(m_semente ^ daPressao ^ 1, m.t, 31 * segundosPorHora);
    const double sobrepressao = 0.015 + 0.04 * sorte(chave, 1);
    return tempo + sobrepressao + 0.012 * ondulacao(chave, m.t, 900);
}

double Clima::processo(Local local, int lugar, const Momento &m) const {
    const quint64 chave = chaveDe(lugar) ^ doProcesso;
    if (local == Local::Solar)
        return m.sol * (0.72 + 0.18 * m.epoca + 0.1 * ondulacao(chave, m.t, 5400));
    if (local == Local::Nivel) { // falls with use, filled up again
        const qint64 periodo = 5 * segundosPorDia + qint64(chave % 200000);
        const double x = double(m.t % periodo) / double(periodo);
        return 0.97 - 0.8 * x + 0.03 * ondulacao(chave, m.t, 4 * segundosPorHora) * x;
    }
    const double v = 0.5 + 0.2 * ondulacao(chave, m.t, 9 * segundosPorHora) + 0.12 * m.dia +
                     0.15 * ondulacao(chave ^ 1, m.t, 50 * segundosPorHora) + 0.04 * ondulacao(chave ^ 2, m.t, 800);
    return std::clamp(v, 0.0, 1.0);
}

double pontoDeOrvalho(double temperatura, double humidade) {
    constexpr double b = 17.62;
    constexpr double c = 243.12;
    const double g = std::log(humidade / 100) + b * temperatura / (c + temperatura);
    return c * g / (b - g);
}

} // namespace demonstracao
