#include "simulator/botao/chip.h"

#include "core/literais.h"

#include <algorithm>
#include <cmath>

namespace simulador {

namespace {

enum Registo {
    Relogio = 0x200,
    AlarmeRelogio = 0x207,
    LimiteBaixo = 0x20B,
    LimiteAlto = 0x20C,
    Intervalo = 0x20D,
    Controlo = 0x20E,
    Conversao = 0x211,
    AtrasoBaixo = 0x212,
    AtrasoAlto = 0x213,
    Estado = 0x214,
    Carimbo = 0x215,
    AmostrasMissao = 0x21A,
    AmostrasChip = 0x21D,
    AlarmesBaixos = 0x220,
    AlarmesAltos = 0x250,
    Histograma = 0x800,
    Log = 0x1000,
};
enum Bit : quint8 {
    EOSC = 0x80,
    EMCLR = 0x40,
    EM = 0x10,
    RO = 0x08,
    MEMCLR = 0x40,
    MIP = 0x20,
    TLF = 0x04,
    THF = 0x02,
    TAF = 0x01,
    TCB = 0x80,
};
constexpr int ranhuras = 12;
constexpr int registosDoLog = 2048;
// Not told anywhere: whether an alarm's slot names its first sample counting from 0 or from 1.
constexpr int primeiraAmostraDeAlarme = 1;

struct Escala {
    double passo, zero;
    int maximo;
};
Escala escala(Variante v) {
    return v == Variante::H   ? Escala{0.125, 14.5, 0xFF}
           : v == Variante::Z ? Escala{0.125, -5.5, 0xFF}
                              : Escala{0.5, -40.0, 0xFA};
}

} // namespace

Variante varianteDe(const onewire::Rom &rom) {
    const int gama = rom[6] << 4 | rom[5] >> 4;
    return gama == 0x4F2 ? Variante::H : gama == 0x3B2 ? Variante::Z : Variante::G;
}

quint8 codigoDe(Variante variante, double graus) {
    const Escala e = escala(variante);
    return quint8(std::clamp(std::round((graus - e.zero) / e.passo), 0.0, double(e.maximo)));
}

double grausDe(Variante variante, quint8 codigo) {
    const Escala e = escala(variante);
    return e.zero + codigo * e.passo;
}

ChipDS1921::ChipDS1921(const onewire::Rom &rom) : m_rom(rom) {
    m_mem[Estado] = TCB;
}

quint32 ChipDS1921::le24(int e) const {
    return quint32(m_mem[size_t(e)] | m_mem[size_t(e + 1)] << 8 | m_mem[size_t(e + 2)] << 16);
}

void ChipDS1921::escrever24(int e, quint32 valor) {
    for (int i = 0; i < 3; ++i)
        m_mem[size_t(e + i)] = quint8(valor >> (8 * i));
}

quint8 ChipDS1921::ler(int endereco) const {
    if (endereco >= Relogio && endereco < AlarmeRelogio)
        return m_relogio.registos()[size_t(endereco - Relogio)];
    if (endereco < 0 || endereco >= tamanho)
        return 0;
    return m_mem[size_t(endereco)];
}

bool ChipDS1921::desarmarLimpeza() {
    m_mem[Controlo] &= quint8(~EMCLR);
    return std::exchange(m_limpeza, false);
}

bool ChipDS1921::copiar(int endereco, std::span<const quint8> bytes) {
    if (endereco >= AlarmesBaixos)
        return false;
    sujo = true;
    const bool missaoAntes = missao();
    const int fim = endereco + int(bytes.size());
    if (missaoAntes && endereco < Estado && fim > Relogio)
        m_mem[Estado] &= quint8(~MIP);
    auto relogio = m_relogio.registos();
    bool acertado = false;
    for (int e = endereco; e < fim; ++e) {
        const quint8 valor = bytes[size_t(e - endereco)];
        if (e < Relogio) {
            m_mem[size_t(e)] = valor;
        } else if (e < AlarmeRelogio) {
            relogio[size_t(e - Relogio)] = valor;
            acertado = true;
        } else {
            // The clock stands before the rate does, whose write may start a mission.
            if (std::exchange(acertado, false))
                acertarRegistos(relogio);
            escreverRegisto(e, valor, missaoAntes);
        }
    }
    if (acertado)
        acertarRegistos(relogio);
    return true;
}

void ChipDS1921::acertarRegistos(const RelogioChip::Registos &registos) {
    m_relogio.escrever(registos);
    m_ms = 0;
    m_andou = false;
}

void ChipDS1921::escreverRegisto(int endereco, quint8 valor, bool missaoAntes) {
    quint8 &registo = m_mem[size_t(endereco)];
    switch (endereco) {
    case Intervalo:
        if (!missaoAntes) {
            registo = valor;
            tentarIniciar();
        }
        break;
    case Controlo:
        if ((registo & EOSC) && !(valor & EOSC))
            m_andou = false;
        registo = valor & 0xDF;
        m_limpeza = (valor & EMCLR) && !(valor & EOSC);
        break;
    case Estado:
        registo &= quint8(valor | ~(MIP | TLF | THF | TAF));
        break;
    case AlarmeRelogio:
    case AlarmeRelogio + 1:
    case AlarmeRelogio + 2:
    case AlarmeRelogio + 3:
    case LimiteBaixo:
    case LimiteAlto:
    case AtrasoBaixo:
    case AtrasoAlto:
        registo = valor;
        break;
    default: // the rest is read only or has no function
        break;
    }
}

// A refusal says nothing.
void ChipDS1921::tentarIniciar() {
    if (missao() || m_mem[Intervalo] == 0 || !m_andou || (m_mem[Controlo] & (EM | EOSC)) || !(m_mem[Estado] & MEMCLR))
        return;
    m_mem[Estado] = quint8((m_mem[Estado] & ~MEMCLR) | MIP);
    m_comecou = false;
    m_baixo = m_alto = {};
}

// The log's old samples stay, and so do limits, flags and the lifetime counter.
void ChipDS1921::limpar() {
    sujo = true;
    m_mem[Intervalo] = m_mem[AtrasoBaixo] = m_mem[AtrasoAlto] = 0;
    std::fill(&m_mem[Carimbo], &m_mem[AmostrasChip], quint8(0));
    std::fill(&m_mem[AlarmesBaixos], &m_mem[0x280], quint8(0));
    std::fill(&m_mem[Histograma], &m_mem[0x880], quint8(0));
    m_baixo = m_alto = {};
    m_comecou = false;
    m_mem[Estado] = quint8((m_mem[Estado] & ~MIP) | MEMCLR);
}

void ChipDS1921::converter() {
    if (missao())
        return;
    sujo = true;
    m_mem[Conversao] = codigoDe(variante(), temperatura(m_relogio.segundos()));
    escrever24(AmostrasChip, le24(AmostrasChip) + 1);
}

bool ChipDS1921::emAlarme() const {
    return m_mem[Estado] & m_mem[Controlo] & (TLF | THF | TAF);
}

void ChipDS1921::andar(qint64 ms) {
    if (ms <= 0 || (m_mem[Controlo] & EOSC))
        return;
    const qint64 total = m_ms + ms;
    m_ms = int(total % 1000);
    qint64 segundos = total / 1000;
    if (segundos > 0)
        m_andou = true;
    while (segundos > 0) {
        // Nothing happens to a chip that rests with its flag up.
        const bool espera = missao() || !(m_mem[Estado] & TAF);
        const qint64 passo = espera ? std::min<qint64>(segundos, 60 - m_relogio.segundo()) : segundos;
        const qint64 de = m_relogio.segundos();
        m_relogio.andar(passo);
        segundos -= passo;
        if (espera) {
            alarmeDoRelogio(de + 1, de + passo);
            if (m_relogio.segundo() == 0 && missao())
                minuto();
        }
    }
}

void ChipDS1921::alarmeDoRelogio(qint64 de, qint64 ate) {
    const quint8 *a = &m_mem[AlarmeRelogio];
    for (qint64 s = de; s <= ate; ++s) {
        if (!(a[0] & 0x80) && deBcd(a[0] & 0x7F) != s % 60)
            continue;
        const int minutos = int(s / 60 % 60);
        const int horas = int(s / 3600 % 24);
        const int dia = int((s / 86400 + m_relogio.semana()) % 7) + 1;
        if (((a[1] & 0x80) || deBcd(a[1] & 0x7F) == minutos) && ((a[2] & 0x80) || horasDe(a[2] & 0x7F) == horas) &&
            ((a[3] & 0x80) || (a[3] & 7) == dia)) {
            m_mem[Estado] |= TAF;
            return;
        }
    }
}

void ChipDS1921::minuto() {
    const int atraso = m_mem[AtrasoBaixo] | m_mem[AtrasoAlto] << 8;
    if (!m_comecou && atraso > 0) {
        m_mem[AtrasoBaixo] = quint8(atraso - 1);
        m_mem[AtrasoAlto] = quint8((atraso - 1) >> 8);
        return;
    }
    if (!m_comecou) {
        const auto r = m_relogio.registos();
        m_mem[Carimbo] = r[1];
        m_mem[Carimbo + 1] = r[2];
        m_mem[Carimbo + 2] = r[4];
        m_mem[Carimbo + 3] = r[5] & 0x1F;
        m_mem[Carimbo + 4] = r[6];
        m_comecou = true;
        amostrar();
    } else if (--m_faltam <= 0) {
        amostrar();
    }
}

void ChipDS1921::amostrar() {
    m_faltam = m_mem[Intervalo];
    const quint8 codigo = codigoDe(variante(), temperatura(m_relogio.segundos()));
    const quint32 n = contador();
    if (n < registosDoLog || (m_mem[Controlo] & RO))
        m_mem[size_t(Log + int(n % registosDoLog))] = codigo;
    escrever24(AmostrasMissao, n + 1);
    escrever24(AmostrasChip, le24(AmostrasChip) + 1);
    contarNoHistograma(codigo);
    alarme(m_baixo, AlarmesBaixos, codigo <= m_mem[LimiteBaixo], TLF);
    alarme(m_alto, AlarmesAltos, codigo >= m_mem[LimiteAlto], THF);
}

void ChipDS1921::contarNoHistograma(quint8 codigo) {
    const size_t e = size_t(Histograma + 2 * (codigo >> 2));
    const int soma = std::min(m_mem[e] + (m_mem[e + 1] << 8) + 1, 0xFFFF);
    m_mem[e] = quint8(soma);
    m_mem[e + 1] = quint8(soma >> 8);
}

// Twelve runs are kept; one that outlasts its duration byte goes on in a new slot.
void ChipDS1921::alarme(Alarme &estado, int base, bool fora, quint8 bandeira) {
    if (!fora) {
        estado.aberto = false;
        return;
    }
    m_mem[Estado] |= bandeira;
    const auto duracao = [&]() -> quint8 & { return m_mem[size_t(base + 4 * (estado.proxima - 1) + 3)]; };
    if (estado.aberto && duracao() < 255) {
        ++duracao();
        return;
    }
    if (estado.proxima >= ranhuras) {
        estado.aberto = false;
        return;
    }
    escrever24(base + 4 * estado.proxima, contador() - 1 + primeiraAmostraDeAlarme);
    ++estado.proxima;
    estado.aberto = true;
    duracao() = 1;
}

void ChipDS1921::acertar(const QDateTime &instante) {
    const QDate d = instante.date();
    const QTime t = instante.time();
    m_relogio.escrever({paraBcd(t.second()), paraBcd(t.minute()), paraBcd(t.hour()), quint8(d.dayOfWeek()),
                        paraBcd(d.day()), quint8(paraBcd(d.month()) | (d.year() >= 2000 ? 0x80 : 0)),
                        paraBcd(d.year() % 100)});
    m_ms = 0;
    sujo = true;
}

void ChipDS1921::iniciar(int intervalo, int atraso, bool continuo, double baixo, double alto) {
    limpar();
    m_andou = true;
    const quint8 controlo[] = {quint8(continuo ? RO : 0), 0, 0, 0, quint8(atraso), quint8(atraso >> 8), 0};
    copiar(Controlo, controlo);
    const quint8 limites[] = {codigoDe(variante(), baixo), codigoDe(variante(), alto), quint8(intervalo)};
    copiar(LimiteBaixo, limites);
}

QJsonObject ChipDS1921::guardar() const {
    const auto *bytes = reinterpret_cast<const char *>(m_mem.data());
    return {{u"memoria"_s, QString::fromLatin1(qCompress(QByteArray(bytes, tamanho)).toBase64())},
            {u"relogio"_s, double(m_relogio.bruto())},
            {u"semana"_s, m_relogio.semana()},
            {u"doze"_s, m_relogio.doze()},
            {u"ms"_s, m_ms},
            {u"andou"_s, m_andou},
            {u"limpeza"_s, m_limpeza},
            {u"comecou"_s, m_comecou},
            {u"faltam"_s, m_faltam},
            {u"baixos"_s, m_baixo.proxima},
            {u"baixoAberto"_s, m_baixo.aberto},
            {u"altos"_s, m_alto.proxima},
            {u"altoAberto"_s, m_alto.aberto}};
}

bool ChipDS1921::repor(const QJsonObject &estado) {
    const QByteArray bytes = qUncompress(QByteArray::fromBase64(estado.value(u"memoria").toString().toLatin1()));
    if (bytes.size() != tamanho)
        return false;
    std::copy_n(reinterpret_cast<const quint8 *>(bytes.constData()), tamanho, m_mem.begin());
    m_relogio.repor(qint64(estado.value(u"relogio").toDouble()), estado.value(u"semana").toInt(),
                    estado.value(u"doze").toBool());
    m_ms = std::clamp(estado.value(u"ms").toInt(), 0, 999);
    m_andou = estado.value(u"andou").toBool();
    m_limpeza = estado.value(u"limpeza").toBool();
    m_comecou = estado.value(u"comecou").toBool();
    m_faltam = estado.value(u"faltam").toInt();
    m_baixo = {std::clamp(estado.value(u"baixos").toInt(), 0, ranhuras), estado.value(u"baixoAberto").toBool()};
    m_alto = {std::clamp(estado.value(u"altos").toInt(), 0, ranhuras), estado.value(u"altoAberto").toBool()};
    if (m_baixo.proxima == 0)
        m_baixo.aberto = false;
    if (m_alto.proxima == 0)
        m_alto.aberto = false;
    return true;
}

} // namespace simulador
