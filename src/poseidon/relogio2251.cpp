#include "poseidon/relogio2251.h"

#include "core/datas.h"
#include "core/estado.h"
#include "core/literais.h"
#include "core/modTraducoes.h"
#include "poseidon/dataLog.h"
#include "poseidon/documentoSetup.h"

#include <QStringList>

#include <cmath>

namespace {

constexpr int ultimoPasso = 7;

// NaN unless the day has three parts with "." between them and the hour three with ":".
double instanteDoDispositivo(const QString &data, const QString &hora) {
    if (data.count(u'.') != 2 || hora.count(u':') != 2 || data.section(u'.', 0, 0).trimmed().size() > 2)
        return std::nan("");
    return dataLog::segundosDe(data, hora);
}

bool longe(double instante) {
    const double agora = datas::segundosDe(estado().ambiente.agora());
    return !(std::fabs(agora - instante) <= relogio2251::toleranciaMinutos * 60);
}

QString texto(const QString &chave, const QString &omissao) {
    return modTraducoes::texto(u"KelvarkAUX"_s, chave, omissao);
}

} // namespace

namespace relogio2251 {

bool VerificarSeDataEstaDesactualizada(const QString &data, const QString &hora) {
    return longe(instanteDoDispositivo(data, hora));
}

Verificacao VerificarDataDoPoseidon(const QString &xml) {
    const DocumentoSetup documento = DocumentoSetup::ler(xml);
    if (!documento.lido())
        return {semDocumento, {}};
    if (!documento.temTime)
        return {semTime, {}};
    const double instante = instanteDoDispositivo(documento.Date, documento.Time);
    if (std::isnan(instante))
        return {dataInvalida, {}};
    return {longe(instante) ? difere : emTempo, datas::textoDataHora(datas::instanteDe(instante))};
}

QString EstruturarData() {
    return estado().ambiente.agora().toString(u"'c'dd.MM.yyyy/HH:mm:ss"_s);
}

Dialogo::Resposta Dialogo::receber(const QString &recebido) {
    m_buffer += recebido;
    const int passo = m_passo++;
    if (passo >= ultimoPasso) {
        m_confirmado = m_confirmado || m_buffer.contains(u"OK");
        m_buffer = m_buffer.right(1); // an "OK" may come in two pieces
        return {{}, m_confirmado};
    }
    switch (passo) {
    case 3:
        return {u"y"_s, false};
    case 4:
        return {EstruturarData(), false};
    case 6:
        return {u"x"_s, false};
    default:
        return {u"\r"_s, false};
    }
}

Resultado resultadoDoAcerto(bool confirmado, const QString &xml) {
    if (!confirmado)
        return {5, {}};
    if (xml.isEmpty())
        return {4, {}};
    const Verificacao v = VerificarDataDoPoseidon(xml);
    if (v.resultado == difere)
        return {1, v.dataHora};
    return {v.resultado == semDocumento ? 2 : 3, v.dataHora};
}

Mensagem mensagemDoAcerto(const Resultado &resultado) {
    switch (resultado.codigo) {
    case 1:
    case 2:
    case 5:
        return {texto(u"ErrActDH"_s, u"Erro ao actualizar a data\\hora"_s) + u": " + QString::number(resultado.codigo),
                true};
    case 3:
        return {texto(u"DHact"_s, u"Data\\hora actualizada"_s) + u": " + resultado.dataHora, false};
    case 4:
        return {texto(u"ErrDHg"_s, u"Imposivel verificar se a data\\hora foi actualizada com sucesso"_s), true};
    default:
        return {texto(u"ErrDesc"_s, u"Erro desconhecido ao actualizar a data\\hora"_s), true};
    }
}

QString perguntaDoAcerto(const QString &unidade) {
    const auto linha = [](const QString &chave, const QString &omissao) {
        return modTraducoes::texto(u"frmDescarregar2251"_s, chave, omissao);
    };
    return QStringList{linha(u"ErrDH1"_s, u"ATENÇÃO,"_s),
                       linha(u"ErrDH2"_s, u"Se actualizar a data/hora todas as leituras guardadas"_s),
                       linha(u"ErrDH3"_s, u"na memória do dispositivo serão eliminadas."_s),
                       linha(u"ErrDHUnidade"_s, u"Dispositivo: %1"_s).arg(unidade),
                       linha(u"ErrDH4"_s, u"Deseja continuar?"_s)}
        .join(u'\n');
}

} // namespace relogio2251
