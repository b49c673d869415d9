#include "logger/controloDS1921.h"

#include "core/datas.h"
#include "core/estado.h"
#include "core/eventos.h"
#include "core/literais.h"
#include "core/modDoubleTratamento.h"
#include "core/modINI.h"
#include "core/modTraducoes.h"
#include "logger/numeros1921.h"
#include "logger/prazos1921.h"

#include <algorithm>

namespace {

constexpr int anoSemAmostras = 1900; // or earlier: the first sample is still to come
constexpr double limiteDeFabrica = 87.5;
constexpr double minimoDeFabrica = -40;
constexpr int casasDaTemperatura = 3;

QString texto(const QString &chave, const QString &omissao) {
    return modTraducoes::texto(u"DSfrmDS1921"_s, chave, omissao);
}

qint16 definicao(const QString &chave) {
    return modINI::GetSetting(u"Kelvark"_s, u"LIAGACAOHARDWARE"_s, chave, u"0"_s).toShort();
}

QString simOuNao(bool sim) {
    return sim ? texto(u"Conf"_s, u"Sim"_s) : texto(u"NConf"_s, u"Não"_s);
}

float valorDaLista(const QString &texto) {
    return float(modDoubleTratamento::TextoParaDouble(texto));
}

} // namespace

ControloDS1921::ControloDS1921() : m_porto{definicao(u"PortNum"_s), definicao(u"PortType"_s)} {
    controlo.PortaNumero = m_porto.numero;
    controlo.PortaTipo = m_porto.tipo;
}

ControloDS1921::Memoria ControloDS1921::lerMemoria() {
    const SessaoTMEX sessao(m_porto);
    if (!sessao.aberta())
        return Memoria::SemSessao;
    if (!sessao.preparar())
        return Memoria::SemRede;
    const MemoriaDS1921::Leitura leitura = m_memoria.FindFirstFamily(sessao.numero(), FamiliaDS1921);
    switch (leitura.achado) {
    case MemoriaDS1921::Achado::Nenhum:
        caixas.lblDescricaoRegistador.clear();
        caixas.lblMissao.clear();
        return Memoria::Nenhum;
    case MemoriaDS1921::Achado::Ilegivel:
        return Memoria::Ilegivel;
    case MemoriaDS1921::Achado::Lido:
        break;
    }
    mostrarRegisto(leitura);
    return Memoria::Lida;
}

void ControloDS1921::mostrarRegisto(const MemoriaDS1921::Leitura &leitura) {
    m_registo = leitura.registo;
    Calibracao = m_registo.Calibracao;
    caixas.lblDescricaoRegistador = m_registo.descricaoRegistador;
    caixas.lblMissao = m_registo.TextoMissao;
    caixas.lblNumeroMissoes = m_registo.numeroMissao;
    caixas.numeroVisivel = true;
    caixas.txtAmostrasTotais = modDoubleTratamento::NumeroParaTexto(leitura.amostrasTotais);
    caixas.txtNleituras = modDoubleTratamento::NumeroParaTexto(leitura.leituras);
    caixas.txtRollOverExecuted = simOuNao(leitura.rollover);
}

EstadoMissao ControloDS1921::BuscarDadosPeloObjecto() {
    if (controlo.ActualizarEstado() < 1) {
        esvaziar();
        Calibracao = CalibracaoNenhuma;
        return m_estado = EstadoMissao::SemRegistador;
    }
    // The start shown for a delay belongs to one button's mission.
    if (controlo.ROMID != romidLido)
        caixas.txtInicioMissao.clear();
    if (!controlo.MissaoEmCurso) {
        m_estado = EstadoMissao::SemMissao;
        caixas.txtEstadoMissao = texto(u"Message3"_s, u"Sem Missão"_s);
        caixas.lblMissao = texto(u"Message4"_s, u"> Sem Missão Activa ..."_s);
        caixas.txtInicioMissao.clear();
    } else if (controlo.InicioAmostragem.date().year() > anoSemAmostras) {
        m_estado = EstadoMissao::Activa;
        caixas.txtEstadoMissao = texto(u"Message10"_s, u"Activa"_s);
        caixas.txtInicioMissao = datas::textoDataHora(controlo.InicioAmostragem);
    } else {
        m_estado = EstadoMissao::Atraso;
        caixas.txtEstadoMissao = texto(u"Message12"_s, u"Atraso Activo"_s);
        if (caixas.txtInicioMissao.isEmpty())
            caixas.txtInicioMissao = datas::textoDataHora(prazos1921::MinutosParaData(controlo.MinutosAtraso));
    }
    caixas.txtIntervalo = QString::number(controlo.IntervaloAmostra);
    caixas.txtDataPrevistaParaAcabar = prazos1921::DataFimPrevista(caixas.txtInicioMissao, caixas.txtIntervalo);
    caixas.txtCicloContinuoLigado = simOuNao(controlo.CicloContinuo);
    mostrarLimites();
    caixas.txtDataHoraTempoReal = datas::textoDataHora(controlo.RelogioTempoReal);
    caixas.txtAtrasoMinutos = QString::number(controlo.MinutosAtraso);
    romidLido = controlo.ROMID;
    return m_estado;
}

// A button that never had a limit answers with the highest code in both.
void ControloDS1921::mostrarLimites() {
    double baixo = double(controlo.LimiteBaixo);
    const double alto = double(controlo.LimiteAlto);
    if (baixo == limiteDeFabrica && alto == limiteDeFabrica)
        baixo = minimoDeFabrica;
    caixas.txtLimiteMinimo = modDoubleTratamento::NumeroParaTexto(baixo);
    caixas.txtLimiteMaximo = modDoubleTratamento::NumeroParaTexto(alto);
    LimiteMinGlobal = modDoubleTratamento::TextoParaDouble(caixas.txtLimiteMinimo);
    LimiteMaxGlobal = modDoubleTratamento::TextoParaDouble(caixas.txtLimiteMaximo);
}

QString ControloDS1921::titulo() const {
    if (m_estado == EstadoMissao::SemRegistador)
        return texto(u"frmDS1921.Caption"_s, u"Registador"_s);
    QString titulo =
        texto(u"Message7"_s, u"Registador - "_s) + u' ' + controlo.ROMID + u" ( DS1921" + controlo.TipoRegistador;
    if (m_registo.VersaoAntiga)
        titulo += u" - " + texto(u"Oldversion"_s, u"Versão antiga"_s);
    return titulo + u" )";
}

bool ControloDS1921::VerificarROMID() {
    return controlo.ActualizarEstado() == 1 && controlo.ROMID == romidLido;
}

QStringList ControloDS1921::linhasDoPrograma(const Programa &p, const QString &ROMID) const {
    const int maior = missoes::UltimoNumeroMissaoDoRegistador(romidLido, p.descricaoRegistador, p.descricaoMissao);
    const QString numero = registoDS1921::numeroDeMissao(registoDS1921::numeroSeguinte(maior));
    return registoDS1921::CriarEstruturaDasLinhas(numero + p.descricaoMissao, p.descricaoRegistador,
                                                  ROMID + QString::number(p.intervalo), p.calibracao);
}

bool ControloDS1921::ActualizarIbutton(const Programa &p, const std::function<void()> &passar) {
    const QString ROMID = controlo.ROMID;
    const QStringList LinhasMemoria = linhasDoPrograma(p, ROMID);
    bool escrito = false;
    {
        const SessaoTMEX sessao(m_porto, passar);
        escrito =
            sessao.preparar() && m_memoria.EscrevePaginasMemoria(sessao.numero(), FamiliaDS1921, LinhasMemoria, ROMID);
    }
    if (escrito)
        Calibracao = registoDS1921::valorDeCalibracao(p.calibracao);
    const bool presente = controlo.ActualizarEstado() == 1;
    // A button that was changed meanwhile would get another one's mission.
    if (escrito && presente && controlo.ROMID == ROMID) {
        controlo.IntervaloAmostra = qint16(p.intervalo);
        controlo.CicloContinuo = p.cicloContinuo;
        controlo.MinutosAtraso = prazos1921::minutosAte(estado().ambiente.agora(), p.inicio);
        controlo.LimiteBaixo = valorDaLista(p.limiteMinimo);
        controlo.LimiteAlto = valorDaLista(p.limiteMaximo);
        if (controlo.ProgramarMissao() == 1) {
            caixas.txtInicioMissao.clear();
            return true;
        }
    }
    controlo.ActualizarEstado();
    return false;
}

void ControloDS1921::terminarNoRegistador() {
    if (controlo.ActualizarEstado() == 1) {
        controlo.TerminarAmostragem();
        controlo.LimparMemoria();
    }
    controlo.ActualizarEstado();
}

bool ControloDS1921::FormatarDS1921(const std::function<void()> &passar) {
    LimparTexts();
    if (controlo.ActualizarEstado() != 1 && controlo.ActualizarEstado() != 1)
        return false;
    controlo.TerminarAmostragem();
    controlo.LimiteAlto = 0;
    controlo.LimiteBaixo = 0;
    controlo.ProgramarMissao();
    controlo.TerminarAmostragem();
    controlo.LimparMemoria();
    if (controlo.ActualizarEstado() != 1)
        return false;
    const SessaoTMEX sessao(m_porto, passar);
    return sessao.preparar() && m_memoria.EscrevePaginasReset(sessao.numero(), FamiliaDS1921);
}

std::vector<ControloDS1921::Linha> ControloDS1921::DownloadLog() {
    std::vector<DS1921::Amostra> amostras;
    controlo.LerAmostras(amostras);
    if (controlo.ContarAmostras(amostras) < 1)
        return {};
    std::vector<Linha> linhas;
    std::vector<missoes::Amostra> paraGuardar;
    for (const DS1921::Amostra &a : amostras) {
        const double medida = numeros1921::arredondar(a.Temperatura, casasDaTemperatura);
        const double t = numeros1921::arredondar(medida + Calibracao, casasDaTemperatura);
        linhas.push_back({a.Data, a.Temperatura, t});
        paraGuardar.push_back({a.Data, t});
    }
    // Before anything is shown, and to its end: what was read is not lost when the window is closed.
    if (estado().GravarNaBD) {
        ChaveMissao destino = chave();
        destino.LoggerID = controlo.ROMID;
        destino.DescricaoMissao = m_registo.TextoMissao;
        const QDateTime ultima =
            missoes::VerificaDataMaximaPraSensor(destino, datas::lerDataHora(caixas.txtInicioMissao));
        missoes::juntarAmostras(destino, paraGuardar, LimiteMaxGlobal, LimiteMinGlobal, ultima, passarEventos);
    }
    return linhas;
}

bool ControloDS1921::cabecaCompleta() const {
    const CaixasDS1921 &c = caixas;
    const QString *campos[] = {&c.lblMissao,         &c.lblDescricaoRegistador, &c.txtEstadoMissao,
                               &c.txtIntervalo,      &c.txtCicloContinuoLigado, &c.txtRollOverExecuted,
                               &c.txtInicioMissao,   &c.txtAtrasoMinutos,       &c.txtNleituras,
                               &c.txtAmostrasTotais, &c.txtDataHoraTempoReal,   &c.txtDataPrevistaParaAcabar,
                               &c.txtLimiteMaximo,   &c.txtLimiteMinimo,        &c.txtAcertoTemp};
    return std::none_of(std::begin(campos), std::end(campos), [](const QString *t) { return t->isEmpty(); });
}

void ControloDS1921::GuardarHeadersParaConsulta(const QString &calibracoes) {
    if (!cabecaCompleta() || caixas.txtInicioMissao == caixas.txtDataPrevistaParaAcabar)
        return;
    missoes::guardarCabeca({chave(), datas::lerDataHora(caixas.txtInicioMissao),
                            datas::lerDataHora(caixas.txtDataPrevistaParaAcabar),
                            modDoubleTratamento::TextoParaDouble(caixas.txtLimiteMaximo),
                            modDoubleTratamento::TextoParaDouble(caixas.txtLimiteMinimo), calibracoes},
                           passarEventos);
}

ChaveMissao ControloDS1921::chave() const {
    return {romidLido, caixas.lblDescricaoRegistador, caixas.lblMissao, caixas.lblNumeroMissoes};
}

void ControloDS1921::LimparTexts() {
    CaixasDS1921 vazias;
    vazias.lblDescricaoRegistador = caixas.lblDescricaoRegistador;
    vazias.lblMissao = caixas.lblMissao;
    vazias.lblNumeroMissoes = caixas.lblNumeroMissoes;
    caixas = vazias;
}

void ControloDS1921::esvaziar() {
    caixas = {};
}

bool ControloDS1921::missaoTerminou() const {
    const QDateTime relogio = datas::lerDataHora(caixas.txtDataHoraTempoReal);
    const QDateTime fim = datas::lerDataHora(caixas.txtDataPrevistaParaAcabar);
    return relogio.isValid() && fim.isValid() && relogio > fim;
}
