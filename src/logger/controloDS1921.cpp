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
#include "platform/onewire/causas.h"

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
    m_lido = false;
    m_romDaMemoria.clear();
    m_registo = {};
    const SessaoTMEX sessao(m_porto);
    if (!sessao.aberta())
        return Memoria::SemSessao;
    if (!sessao.preparar())
        return Memoria::SemRede;
    const MemoriaDS1921::Leitura leitura = m_memoria.FindFirstFamily(sessao.numero(), FamiliaDS1921);
    using Achado = MemoriaDS1921::Achado;
    if (leitura.achado == Achado::Nenhum || leitura.achado == Achado::Perdido)
        return leitura.achado == Achado::Nenhum ? Memoria::Nenhum : Memoria::Perdida;
    m_romDaMemoria = leitura.ROMID;
    mostrarRegisto(leitura);
    return leitura.achado == Achado::Lido         ? Memoria::Lida
           : leitura.achado == Achado::Incompleto ? Memoria::Incompleta
                                                  : Memoria::Ilegivel;
}

void ControloDS1921::mostrarRegisto(const MemoriaDS1921::Leitura &leitura) {
    // What is not wholly a record names nobody.
    const bool lido = leitura.achado == MemoriaDS1921::Achado::Lido;
    m_registo = lido ? leitura.registo : registoDS1921::Registo();
    Calibracao = lido ? m_registo.Calibracao : CalibracaoNenhuma;
    caixas.lblDescricaoRegistador = m_registo.descricaoRegistador;
    caixas.lblMissao = m_registo.TextoMissao;
    caixas.lblNumeroMissoes = lido ? m_registo.numeroMissao : registoDS1921::numeroDeMissao(0);
    caixas.numeroVisivel = true;
    caixas.txtAmostrasTotais = modDoubleTratamento::NumeroParaTexto(leitura.amostrasTotais);
    caixas.txtNleituras = modDoubleTratamento::NumeroParaTexto(leitura.leituras);
    caixas.txtRollOverExecuted = simOuNao(leitura.rollover);
}

EstadoMissao ControloDS1921::BuscarDadosPeloObjecto() {
    if (controlo.ActualizarEstado() < 1 || controlo.ROMID != m_romDaMemoria) {
        esquecer();
        return m_estado;
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
    m_inicioLido = controlo.InicioAmostragem;
    m_amostrasLidas = controlo.AmostrasNaMemoria;
    m_presenca = Presenca::Mesmo;
    m_lido = true;
    return m_estado;
}

void ControloDS1921::esquecer() {
    esvaziar();
    m_registo = {};
    m_romDaMemoria.clear();
    romidLido.clear();
    Calibracao = CalibracaoNenhuma;
    m_estado = EstadoMissao::SemRegistador;
    m_lido = false;
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

bool ControloDS1921::mesmoBotao() {
    return controlo.ActualizarEstado() == 1 && controlo.ROMID == romidLido;
}

// A mission that was started or stopped by another program since is not the one that the form shows.
ControloDS1921::Presenca ControloDS1921::conferir() {
    if (!m_lido || controlo.ActualizarEstado() != 1)
        return m_presenca = Presenca::Nenhum;
    if (controlo.ROMID != romidLido)
        return m_presenca = Presenca::Outro;
    const bool parada = m_estado == EstadoMissao::SemMissao;
    const bool mudou = controlo.MissaoEmCurso == parada ||
                       (m_estado != EstadoMissao::Atraso && controlo.InicioAmostragem != m_inicioLido) ||
                       (parada && controlo.AmostrasNaMemoria != m_amostrasLidas);
    return m_presenca = mudou ? Presenca::Mudou : Presenca::Mesmo;
}

QString ControloDS1921::causa() const {
    switch (m_presenca) {
    case Presenca::Mesmo:
        return {};
    case Presenca::Nenhum:
        return texto(u"RegistadorCalado"_s, u"O registador que foi lido não responde. Nada foi alterado: leia-o de "
                                            "novo."_s);
    case Presenca::Outro:
        return texto(u"OutroRegistador"_s, u"No leitor está o registador %1, e o que foi lido é o %2. Nada foi "
                                           "alterado: leia primeiro o que está no leitor."_s)
            .arg(controlo.ROMID, romidLido);
    case Presenca::Mudou:
        break;
    }
    return texto(u"RegistadorMudou"_s,
                 u"O registador %1 mudou depois de ser lido. Nada foi alterado: leia-o de novo."_s)
        .arg(romidLido);
}

int ControloDS1921::porGuardar() const {
    const int amostras = controlo.AmostrasNaMemoria;
    if (amostras == 0 || !controlo.PrimeiraAmostra.isValid())
        return amostras;
    ChaveMissao onde = chave();
    onde.LoggerID = controlo.ROMID;
    return std::max(0, amostras - missoes::minutosGuardados(onde, controlo.PrimeiraAmostra, controlo.UltimaAmostra));
}

QString ControloDS1921::oQueSePerde() const {
    const int falta = porGuardar();
    const ChaveMissao c = chave();
    QStringList linhas{texto(u"PerdeRegistador"_s, u"Registador: %1 %2"_s).arg(romidLido, c.Nomelogger).trimmed()};
    if (c.completa())
        linhas.append(texto(u"PerdeMissao"_s, u"Missão: %1 %2"_s).arg(c.Nmissao, c.DescricaoMissao));
    linhas.append(controlo.AmostrasNaMemoria == 0
                      ? texto(u"PerdeSemAmostras"_s, u"O registador não tem amostras."_s)
                      : texto(u"PerdeAmostras"_s, u"Amostras no registador: %1, ainda não guardadas: %2"_s)
                            .arg(QString::number(controlo.AmostrasNaMemoria), QString::number(falta)));
    return linhas.join(u'\n');
}

QStringList ControloDS1921::linhasDoPrograma(const Programa &p, const QString &ROMID) const {
    const int maior = missoes::UltimoNumeroMissaoDoRegistador(romidLido, p.descricaoRegistador, p.descricaoMissao);
    const QString numero = registoDS1921::numeroDeMissao(registoDS1921::numeroSeguinte(maior));
    return registoDS1921::CriarEstruturaDasLinhas(numero + p.descricaoMissao, p.descricaoRegistador,
                                                  ROMID + QString::number(p.intervalo), p.calibracao);
}

bool ControloDS1921::ActualizarIbutton(const Programa &p, const std::function<void()> &passar) {
    {
        const SessaoTMEX espera(m_porto, passar);
        if (!espera.preparar())
            return false;
    }
    // Samples that are left would bear the new mission's name, if it stopped half-way.
    if (conferir() != Presenca::Mesmo || (controlo.AmostrasNaMemoria > 0 && controlo.LimparMemoria() != 1))
        return false;
    const QStringList LinhasMemoria = linhasDoPrograma(p, romidLido);
    bool escrito = false;
    {
        const SessaoTMEX sessao(m_porto, passar);
        escrito = sessao.preparar() &&
                  m_memoria.EscrevePaginasMemoria(sessao.numero(), FamiliaDS1921, LinhasMemoria, romidLido);
    }
    if (escrito)
        Calibracao = registoDS1921::valorDeCalibracao(p.calibracao);
    if (escrito && mesmoBotao()) {
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
    const onewire::ManterMotivo motivoDaEscrita;
    controlo.ActualizarEstado();
    return false;
}

ControloDS1921::Fim ControloDS1921::terminarNoRegistador(int aceites, const std::function<void()> &aoTerminar) {
    if (conferir() != Presenca::Mesmo || controlo.TerminarAmostragem() != 1)
        return Fim::Nenhum;
    aoTerminar();
    // No sample is taken any more: what came while the user was asked shows now.
    return mesmoBotao() && porGuardar() <= aceites && controlo.LimparMemoria() == 1 ? Fim::Limpa : Fim::Terminada;
}

bool ControloDS1921::FormatarDS1921(int aceites, const std::function<void()> &passar) {
    if (conferir() == Presenca::Nenhum)
        conferir();
    if (m_presenca != Presenca::Mesmo || controlo.TerminarAmostragem() != 1 || !mesmoBotao() || porGuardar() > aceites)
        return false;
    LimparTexts();
    controlo.LimiteAlto = 0;
    controlo.LimiteBaixo = 0;
    controlo.ProgramarMissao();
    controlo.TerminarAmostragem();
    controlo.LimparMemoria();
    if (!mesmoBotao())
        return false;
    const SessaoTMEX sessao(m_porto, passar);
    return sessao.preparar() && m_memoria.EscrevePaginasReset(sessao.numero(), FamiliaDS1921, romidLido);
}

std::vector<ControloDS1921::Linha> ControloDS1921::DownloadLog(const QString &calibracoes) {
    amostrasGuardadas = 0;
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
    if (estado().GravarNaBD)
        guardarAmostras(paraGuardar, calibracoes);
    return linhas;
}

void ControloDS1921::guardarAmostras(const std::vector<missoes::Amostra> &amostras, const QString &calibracoes) {
    const ChaveMissao destino = chave();
    // Without a header no view would find them. One that is there knows better when the mission ended.
    if (m_estado == EstadoMissao::SemMissao && !missoes::temCabeca(destino))
        missoes::guardarCabeca(
            {destino, controlo.InicioAmostragem, amostras.back().Data, LimiteMaxGlobal, LimiteMinGlobal, calibracoes},
            passarEventos);
    const QDateTime ultima = missoes::VerificaDataMaximaPraSensor(destino, controlo.InicioAmostragem);
    amostrasGuardadas =
        missoes::juntarAmostras(destino, amostras, LimiteMaxGlobal, LimiteMinGlobal, ultima, passarEventos);
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
    if (!m_lido || !cabecaCompleta() || caixas.txtInicioMissao == caixas.txtDataPrevistaParaAcabar)
        return;
    missoes::guardarCabeca({chave(), datas::lerDataHora(caixas.txtInicioMissao),
                            datas::lerDataHora(caixas.txtDataPrevistaParaAcabar),
                            modDoubleTratamento::TextoParaDouble(caixas.txtLimiteMaximo),
                            modDoubleTratamento::TextoParaDouble(caixas.txtLimiteMinimo), calibracoes},
                           passarEventos);
}

ChaveMissao ControloDS1921::chave() const {
    return {romidLido, caixas.lblDescricaoRegistador, m_registo.TextoMissao, caixas.lblNumeroMissoes};
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
