#include "logger/memoriaDS1921.h"

#include "core/literais.h"
#include "platform/onewire/barramento.h"

#include <QThread>

#include <algorithm>
#include <vector>

namespace {

constexpr qint16 paginasDeTexto = 16; // 0 to 15 are the user's
constexpr qint16 mascaraDaFamilia = 0x21;
constexpr unsigned long pausaMs = 15; // between two tries for a held adapter

} // namespace

SessaoTMEX::SessaoTMEX(Porto porto) : m_sessao(tmex::TMExtendedStartSession(porto.numero, porto.tipo)) {}

SessaoTMEX::SessaoTMEX(Porto porto, const std::function<void()> &passar) {
    while ((m_sessao = tmex::TMExtendedStartSession(porto.numero, porto.tipo)) <= 0) {
        passar();
        QThread::msleep(pausaMs);
    }
}

SessaoTMEX::~SessaoTMEX() {
    try {
        tmex::TMEndSession(m_sessao);
    } catch (...) { // the adapter is gone, or the wait was ended: there is nothing left to end
    }
}

bool SessaoTMEX::preparar() const {
    return tmex::TMSetup(m_sessao) == 1;
}

std::optional<tmex::NumeroROM> MemoriaDS1921::procurar(tmex::Sessao sessao, qint16 familia) {
    if (tmex::TMFamilySearchSetup(sessao, m_estado, familia) != 1)
        return std::nullopt;
    const auto &escolhido = onewire::barramento().escolhido;
    tmex::NumeroROM numero;
    do {
        if (tmex::TMNext(sessao, m_estado) != 1) {
            if (escolhido && onewire::barramento().motivo.causa == onewire::Causa::Nenhuma) // others are there
                onewire::anotar(onewire::Causa::ContactoPerdido);
            return std::nullopt;
        }
        numero = {}; // element 0 at zero asks for the number
        tmex::TMRom(sessao, m_estado, numero);
    } while (escolhido && !std::equal(numero.begin(), numero.end(), escolhido->begin()));
    // Two bits tell enough: the search has already kept to the family.
    if (((numero[0] ^ familia) & mascaraDaFamilia) != 0)
        return std::nullopt;
    return numero;
}

// Another button than this one is none.
std::optional<tmex::NumeroROM> MemoriaDS1921::procurar(tmex::Sessao sessao, qint16 familia, const QString &ROMID) {
    const auto numero = procurar(sessao, familia);
    return numero && registoDS1921::ROMIDde(*numero) == ROMID ? numero : std::nullopt;
}

std::optional<registoDS1921::PaginaDeTexto> MemoriaDS1921::LerPaginaTexto(tmex::Sessao sessao, qint16 pagina) {
    tmex::Pacote pacote{};
    static_assert(std::tuple_size_v<tmex::Pacote> == registoDS1921::caracteresLidos);
    const qint16 tamanho = tmex::TMReadPacket(sessao, m_estado, pagina, pacote, registoDS1921::bytesPorPacote);
    if (tamanho < 0 && tamanho != tmex::SemPacote)
        return std::nullopt;
    return registoDS1921::PaginaDeTexto{tamanho, tamanho > 0 ? registoDS1921::textoDosBytes(pacote) : QString()};
}

bool MemoriaDS1921::EscreverPaginaTexto(tmex::Sessao sessao, const QString &texto, qint16 pagina) {
    if (pagina == 0)
        return tmex::TMWritePacket(sessao, m_estado, pagina, registoDS1921::directorio) > 0;
    return EscreverPaginaVazia(sessao, texto, pagina);
}

bool MemoriaDS1921::EscreverPaginaVazia(tmex::Sessao sessao, const QString &texto, qint16 pagina) {
    const QByteArray bytes = registoDS1921::bytesDoTexto(texto);
    const std::span dados(reinterpret_cast<const quint8 *>(bytes.constData()), size_t(bytes.size()));
    return tmex::TMWritePacket(sessao, m_estado, pagina, dados) > 0;
}

// The first page that is refused ends it: what comes after it would never be read.
bool MemoriaDS1921::EscrevePaginasMemoria(tmex::Sessao sessao, qint16 familia, const QStringList &LinhasMemoria,
                                          const QString &ROMID) {
    if (!procurar(sessao, familia, ROMID))
        return false;
    for (qint16 i = 0; i < LinhasMemoria.size(); ++i)
        if (!EscreverPaginaTexto(sessao, LinhasMemoria[i], i))
            return false;
    return true;
}

bool MemoriaDS1921::EscrevePaginasReset(tmex::Sessao sessao, qint16 familia, const QString &ROMID) {
    if (!procurar(sessao, familia, ROMID))
        return false;
    bool todas = true;
    for (qint16 pagina = 0; pagina < paginasDeTexto; ++pagina)
        todas = EscreverPaginaVazia(sessao, {}, pagina) && todas;
    return todas;
}

MemoriaDS1921::Leitura MemoriaDS1921::FindFirstFamily(tmex::Sessao sessao, qint16 familia) {
    Leitura leitura;
    const auto numero = procurar(sessao, familia);
    if (!numero)
        return leitura;
    leitura.achado = Achado::Perdido;
    leitura.ROMID = registoDS1921::ROMIDde(*numero);
    std::vector<registoDS1921::PaginaDeTexto> paginas;
    QString texto;
    for (qint16 i = 1; i <= registoDS1921::paginasLidas; ++i) {
        const auto pagina = LerPaginaTexto(sessao, i);
        if (!pagina)
            return leitura;
        paginas.push_back(*pagina);
        texto += pagina->texto;
    }
    tmex::Pagina registos{};
    if (tmex::TMExtendedReadPage(sessao, m_estado, registoDS1921::paginaDeRegistos, registos) <= 0)
        return leitura;
    leitura.amostrasTotais = registoDS1921::LerAmostrasDispositivo(registos);
    leitura.leituras = registoDS1921::LerAmostrasMissao(registos);
    leitura.rollover = registoDS1921::RolloverOcorreu(registos);
    const auto registo = registoDS1921::decifrar(texto, registoDS1921::textoROM(*numero));
    leitura.achado = !registoDS1921::registoInteiro(paginas) ? Achado::Incompleto
                     : registo                               ? Achado::Lido
                                                             : Achado::Ilegivel;
    leitura.registo = registo.value_or(registoDS1921::Registo());
    return leitura;
}
