#include "logger/modPesquisa1Wire.h"

#include "core/literais.h"
#include "core/modINI.h"
#include "platform/onewire/barramento.h"
#include "platform/onewire/tmex.h"

#include <QStringList>

#include <memory>
#include <optional>

using namespace tmex;

namespace modPesquisa1Wire {

namespace {

constexpr qint16 ultimoTipo = 6;
constexpr qint16 tipoSaltado = 2;
constexpr qint16 ultimoNumero = 15;
constexpr int limiteDaBarra = 90;
constexpr int pausa = 5;            // ms before each look at the net
constexpr int sessoesFalhadas = 20; // an adapter that went away meanwhile does not come back by itself

struct PortoAchado {
    qint16 tipo, numero;
    Sessao sessao;
};

// Of the ports that were refused the first that the user can do something about.
void juntarMotivo(onewire::Motivo &motivo) {
    using onewire::Causa;
    const onewire::Motivo &este = onewire::barramento().motivo;
    if (motivo.causa != Causa::SemPermissao &&
        (este.causa == Causa::SemPermissao || (este.causa == Causa::Ocupado && motivo.causa == Causa::Nenhuma)))
        motivo = este;
}

std::optional<PortoAchado> procurarPorto(const Vista &vista, onewire::Motivo &motivo) {
    int barra = 0;
    for (qint16 tipo = 1; tipo <= ultimoTipo; ++tipo) {
        for (qint16 numero = 1; tipo != tipoSaltado && numero <= ultimoNumero; ++numero) {
            const Sessao sessao = TMExtendedStartSession(numero, tipo);
            if (sessao <= 0) {
                juntarMotivo(motivo);
                continue;
            }
            if (TMSetup(sessao) == 1)
                return PortoAchado{tipo, numero, sessao};
            TMValidSession(sessao);
            TMTouchReset(sessao);
            TMClose(sessao);
            vista.barra(++barra);
            if (barra >= limiteDaBarra)
                return std::nullopt;
        }
    }
    return std::nullopt;
}

QString textoDoNumero(const NumeroROM &numero) {
    QString texto;
    for (auto e = numero.rbegin(); e != numero.rend(); ++e)
        texto += (*e <= 15 ? u"0"_s : QString()) + QString::number(*e, 16).toUpper();
    return texto;
}

bool eDeAdaptador(const QString &id) {
    return id.endsWith(u"01") || id.endsWith(u"09") || id.endsWith(u"81");
}

// One look at the net: the next device goes into the list. False: the search is over.
bool lerDispositivo(Sessao sessao, BufferEstado &estado, const Vista &vista, Resultado &resultado) {
    bool continua = TMTouchReset(sessao) > 0;
    qint16 achado = TMNext(sessao, estado);
    if (achado < 0)
        achado = TMNext(sessao, estado);
    if (achado != 1) {
        TMValidSession(sessao);
        TMEndSession(sessao);
        return continua;
    }
    NumeroROM numero{};
    TMRom(sessao, estado, numero);
    const QString id = textoDoNumero(numero);
    if (vista.contem(id)) {
        continua = false;
    } else {
        if (eDeAdaptador(id))
            resultado.adaptadorID = id;
        vista.adicionar(id);
    }
    TMEndSession(sessao);
    return continua;
}

void lerRede(const PortoAchado &porto, const Vista &vista, Resultado &resultado) {
    const auto estado = std::make_unique<BufferEstado>();
    bool &preparado = onewire::barramento().preparado;
    int falhadas = 0;
    for (bool continua = true; continua && falhadas < sessoesFalhadas;) {
        onewire::esperar(pausa);
        const Sessao sessao = TMExtendedStartSession(porto.numero, porto.tipo);
        if (sessao <= 0) {
            ++falhadas;
            continue;
        }
        if (!std::exchange(preparado, true))
            TMSetup(sessao);
        continua = lerDispositivo(sessao, *estado, vista, resultado);
    }
}

} // namespace

QString nomeDoAdaptador(const QString &id) {
    if (id.endsWith(u"01"))
        return u"ECLO"_s;
    if (id.endsWith(u"09"))
        return u"DS9097U"_s;
    return id.endsWith(u"81") ? u"DS9490R"_s : u"NO ID"_s;
}

void Pesquisar1WireAuto(const Vista &vista, Resultado &resultado) {
    const Sessao resto = onewire::barramento().sessao;
    TMClose(resto);
    TMEndSession(resto);
    QString texto = u"0X0X0"_s;
    if (const auto porto = procurarPorto(vista, resultado.motivo)) {
        lerRede(*porto, vista, resultado);
        texto = u"%1X%2X%3"_s.arg(porto->tipo).arg(porto->numero).arg(nomeDoAdaptador(resultado.adaptadorID));
        TMClose(onewire::barramento().sessao);
    }
    resultado.texto = texto;
}

bool guardarResultado(const Resultado &resultado, Porta &porta) {
    const QString seccao = u"LIAGACAOHARDWARE"_s;
    const auto guardar = [&](const QString &tipo, const QString &numero, const QString &nome, const QString &id) {
        modINI::Guardar(u"Kelvark"_s, {{seccao, u"PortType"_s, tipo},
                                       {seccao, u"PortNum"_s, numero},
                                       {seccao, u"Dispositivo"_s, nome},
                                       {seccao, u"1WireDeviceID"_s, id}});
    };
    if (resultado.texto.isEmpty() || resultado.texto == u"0X0X0") {
        porta = {u"0"_s, u"0"_s, u"0"_s};
        guardar({}, {}, {}, {});
        return true;
    }
    const QStringList partes = resultado.texto.split(u'X');
    if (partes.size() != 3)
        return false;
    porta = {partes[0], partes[1], partes[2]};
    guardar(porta.tipo, porta.numero, porta.adaptador, resultado.adaptadorID);
    return true;
}

} // namespace modPesquisa1Wire
