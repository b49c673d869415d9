#include "platform/onewire/DS1921.h"

#include "core/estado.h"
#include "core/falha.h"
#include "core/literais.h"
#include "platform/onewire/barramento.h"
#include "platform/onewire/registos1921.h"
#include "platform/onewire/sessao.h"

#include <algorithm>

using namespace onewire;

namespace {

constexpr quint8 familia1921 = 0x21;
constexpr quint8 limparMemoria = 0x3C;
constexpr quint8 tudoMenosEmCurso = quint8(~registo::emCurso); // leaves the alarm flags as they are

constexpr int esperaDoAdaptador = 2000; // another program may hold it for the length of a read
constexpr int esperaDaAmostra = 1000;
constexpr int esperaDoRelogio = 2500; // the clock goes on within a second
constexpr int voltas = 5;             // reads of a log whose counters move meanwhile

QString romId(const Rom &rom) {
    QString texto;
    for (auto byte = rom.rbegin(); byte != rom.rend(); ++byte)
        texto += QString::number(*byte, 16).rightJustified(2, u'0').toUpper();
    return texto;
}

// The session of one member, and the button it found.
class Visita {
public:
    Visita(qint16 porto, qint16 tipo) {
        if (!m_uso)
            return;
        // Throws leave no session behind: no destructor would run for this object.
        try {
            procurar(porto, tipo);
        } catch (...) {
            fecharSessao();
            throw;
        }
    }
    ~Visita() {
        if (m_uso)
            fecharSessao();
    }
    Visita(const Visita &) = delete;
    Visita &operator=(const Visita &) = delete;

    explicit operator bool() const { return m_memoria.has_value(); }
    const Rom &rom() const { return m_rom; }
    Memoria1921 &memoria() { return *m_memoria; }

    // Sampling goes before the bus: what is read or written while it lasts is not to be trusted.
    std::optional<Registos1921> registos() {
        std::optional<Registos1921> lidos;
        esperarAte(esperaDaAmostra, [&] {
            const auto pagina = m_memoria->lerPagina(registo::pagina);
            lidos = pagina ? std::optional(descodificarRegistos(*pagina)) : std::nullopt;
            return !lidos || !(lidos->estado & registo::amostraEmCurso);
        });
        return lidos && !(lidos->estado & registo::amostraEmCurso) ? lidos : std::nullopt;
    }

private:
    // Of several the chosen one, and never another in its stead.
    static std::optional<Rom> procurarBotao(Transporte &t) {
        const auto &escolhido = barramento().escolhido;
        auto rom = t.procurar(familia1921, true);
        while (rom && escolhido && *rom != *escolhido)
            rom = t.procurar(familia1921, false);
        return rom;
    }

    void procurar(qint16 porto, qint16 tipo) {
        const auto aberta = [&] { return abrirSessao(porto, tipo) > 0; };
        if (!aberta() && !(barramento().motivo.causa == Causa::Ocupado && esperarAte(esperaDoAdaptador, aberta)))
            return;
        Transporte &t = *barramento().transporte;
        try {
            if (const auto rom = insistir(t, familia1921, [&t] { return procurarBotao(t); })) {
                m_rom = *rom;
                m_memoria.emplace(t, m_rom);
            }
        } catch (const Falha &) {
            anotar(Causa::AdaptadorFora);
        }
    }

    EmUso m_uso;
    Rom m_rom{};
    std::optional<Memoria1921> m_memoria;
};

bool escrever(Visita &visita, int endereco, std::initializer_list<quint8> bytes) {
    return visita.memoria().escrever(endereco, {bytes.begin(), bytes.size()});
}

bool terminar(Visita &visita) {
    const auto antes = visita.registos();
    if (!antes)
        return false;
    if (!antes->missao())
        return true;
    if (!escrever(visita, registo::estado, {tudoMenosEmCurso}))
        return false;
    const auto depois = visita.registos();
    return depois && !depois->missao();
}

// The write that arms it holds for the very next command only.
bool limpar(Visita &visita, quint8 controlo) {
    const quint8 armado = quint8((controlo & 0x1F) | registo::armarLimpeza);
    if (!escrever(visita, registo::controlo, {armado}) || !visita.memoria().comandar(limparMemoria))
        return false;
    esperar(1);
    const auto registos = visita.registos();
    return registos && (registos->estado & registo::limpa) && !registos->missao();
}

// A start is refused while the clock has not been seen to go on.
bool acertarRelogio(Visita &visita, quint8 controlo) {
    if ((controlo & registo::osciladorParado) && !escrever(visita, registo::controlo, {quint8(controlo & 0x1F)}))
        return false;
    const auto bytes = codificarRelogio(estado().ambiente.agora());
    if (!visita.memoria().escrever(registo::relogio, bytes))
        return false;
    const auto primeiro = visita.registos();
    if (!primeiro)
        return false;
    std::optional<Registos1921> r;
    const bool andou = esperarAte(esperaDoRelogio, [&] {
        r = visita.registos();
        return !r || (r->relogio.isValid() && r->relogio != primeiro->relogio);
    });
    return andou && r;
}

bool mesmos(const Registos1921 &a, const Registos1921 &b) {
    return a.amostras == b.amostras && a.amostrasDoChip == b.amostrasDoChip && a.carimbo == b.carimbo &&
           a.missao() == b.missao();
}

} // namespace

qint16 DS1921::ActualizarEstado() {
    Visita visita(PortaNumero, PortaTipo);
    const auto r = visita ? visita.registos() : std::nullopt;
    if (!r)
        return 0;
    const Variante1921 variante = variante1921(visita.rom());
    TipoRegistador = variante == Variante1921::H ? u"H"_s : variante == Variante1921::Z ? u"Z"_s : u"G"_s;
    ROMID = romId(visita.rom());
    MissaoEmCurso = r->missao();
    InicioAmostragem = r->carimbo.isValid() ? r->carimbo : QDateTime(QDate(1900, 1, 1), QTime(0, 0), Qt::UTC);
    LimiteAlto = float(graus1921(variante, r->limiteAlto));
    LimiteBaixo = float(graus1921(variante, r->limiteBaixo));
    MinutosAtraso = r->atraso;
    IntervaloAmostra = qint16(r->intervalo);
    CicloContinuo = r->continuo();
    RelogioTempoReal = r->relogio;
    AmostrasNaMemoria = qint32(std::min<quint32>(r->amostras, capacidadeDoLog));
    const auto entradas = entradasDoLog(*r);
    PrimeiraAmostra = entradas.empty() ? QDateTime() : entradas.front().data;
    UltimaAmostra = entradas.empty() ? QDateTime() : entradas.back().data;
    return 1;
}

// The rate is written last: until then a button that is taken off has no mission, never half of one.
qint16 DS1921::ProgramarMissao() {
    Visita visita(PortaNumero, PortaTipo);
    if (!visita || (!ROMID.isEmpty() && ROMID != romId(visita.rom())))
        return 0;
    const Variante1921 variante = variante1921(visita.rom());
    const quint16 atraso = quint16(std::clamp(MinutosAtraso, 0, 0xFFFF));
    const quint8 intervalo = quint8(std::clamp<int>(IntervaloAmostra, 0, 0xFF));
    const quint8 continuo = CicloContinuo ? registo::continuo : quint8(0);

    const auto antes = terminar(visita) ? visita.registos() : std::nullopt;
    if (!antes || !acertarRelogio(visita, antes->controlo) || !limpar(visita, continuo))
        return 0;
    const quint8 baixo = codigo1921(variante, double(LimiteBaixo));
    const quint8 alto = codigo1921(variante, double(LimiteAlto));
    if (!escrever(visita, registo::controlo, {continuo, 0, 0, 0, quint8(atraso), quint8(atraso >> 8), 0}) ||
        !escrever(visita, registo::limiteBaixo, {baixo, alto, intervalo}))
        return 0;
    const auto r = visita.registos();
    return r && r->missao() && !(r->estado & registo::limpa) && r->intervalo == intervalo;
}

qint16 DS1921::TerminarAmostragem() {
    Visita visita(PortaNumero, PortaTipo);
    if (!visita || (!ROMID.isEmpty() && ROMID != romId(visita.rom())))
        return 0;
    return terminar(visita);
}

qint16 DS1921::LimparMemoria() {
    Visita visita(PortaNumero, PortaTipo);
    if (!visita || (!ROMID.isEmpty() && ROMID != romId(visita.rom())))
        return 0;
    const auto r = visita.registos();
    return r && limpar(visita, r->controlo);
}

void DS1921::LerAmostras(std::vector<Amostra> &amostras) {
    amostras.clear();
}

qint16 DS1921::ContarAmostras(std::vector<Amostra> &amostras) {
    amostras.clear();
    Visita visita(PortaNumero, PortaTipo);
    if (!visita || (!ROMID.isEmpty() && ROMID != romId(visita.rom())))
        return 0;
    auto registos = visita.registos();
    const Variante1921 variante = variante1921(visita.rom());
    for (int volta = 0; registos && volta < voltas; ++volta) {
        const auto entradas = entradasDoLog(*registos);
        std::array<quint8, capacidadeDoLog> log{};
        const int paginas = (int(entradas.size()) + bytesDaPagina - 1) / bytesDaPagina;
        for (int p = 0; p < paginas; ++p) {
            const auto pagina = visita.memoria().lerPagina(registo::paginaDoLog + p);
            if (!pagina)
                return 0;
            std::copy(pagina->begin(), pagina->end(), &log[size_t(p * bytesDaPagina)]);
            if (aoLerPagina)
                aoLerPagina(p + 1, paginas);
        }
        const auto depois = visita.registos();
        if (depois && mesmos(*registos, *depois)) {
            for (const Entrada1921 &e : entradas)
                amostras.push_back({e.data, graus1921(variante, log[size_t(e.indice)])});
            return qint16(amostras.size());
        }
        registos = depois;
    }
    return 0;
}
