#include "core/datas.h"
#include "core/estado.h"
#include "core/literais.h"
#include "core/modDoubleTratamento.h"
#include "core/modTraducoes.h"
#include "core/textoMostrado.h"
#include "logger/forms/esperaLogger.h"
#include "logger/forms/frmDS1921.h"
#include "logger/forms/pecas1921.h"
#include "logger/numeros1921.h"
#include "logger/prazos1921.h"
#include "platform/chart/TChart.h"
#include "platform/chart/cores.h"
#include "platform/forms/grelha.h"
#include "platform/forms/registoForms.h"
#include "views/alarme.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>

#include <algorithm>

namespace {

constexpr int casasDaTemperatura = 3;
constexpr int casasDoGrafico = 1;
constexpr int inteiro = 100; // the progress bar, counting down

QString texto(const QString &chave, const QString &omissao) {
    return modTraducoes::texto(u"DSfrmDS1921"_s, chave, omissao);
}

QString contactoPerdido() {
    return texto(u"ContactoPerdido"_s,
                 u"A leitura do registador ficou a meio. Nada foi guardado nem alterado: leia-o de novo."_s);
}

} // namespace

void frmDS1921::cmdLer_Click() {
    accao("frmDS1921.cmdLer_Click", Genero::Leitura, texto(u"EsperaLer"_s, u"A ler o registador..."_s), [this] {
        if (escolherBotao())
            lerRegistador(false);
    });
}

void frmDS1921::cmdLerDados_Click() {
    accao("frmDS1921.cmdLerDados_Click", Genero::Descarga,
          texto(u"EsperaLerDados"_s, u"A ler os dados do registador..."_s), [this] {
              if (!escolherBotao())
                  return;
              estado().GravarNaBD = true;
              if (lerRegistador(true))
                  lerAmostras();
          });
}

// A mission is offered to be ended once nothing of it is left that is not stored.
void frmDS1921::lerAmostras() {
    const bool emMissao = m_logica->estadoDaMissao() != EstadoMissao::SemMissao;
    if (m_logica->caixas.txtNleituras.trimmed() == u"0") {
        m_piscadelas = 0;
        m_timerLeituras->start();
    } else if (passo("frmDS1921.VerificarROMID", [this] { return m_logica->VerificarROMID(); })) {
        if (!passo("frmDS1921.DownloadLog", [this] { return DownloadLog(); }))
            return;
        avisarAlterouMenus();
        if (const int falta = m_logica->porGuardar(); falta > 0)
            avisar(texto(u"PorGuardar"_s, u"Há %1 amostras no registador que não foram guardadas."_s).arg(falta));
    } else {
        const QString mensagem = m_logica->causa();
        esquecerRegistador();
        avisar(mensagem);
        return;
    }
    m_cmdPararMissao->setEnabled(emMissao && m_logica->porGuardar() == 0);
    if (m_mostradas && m_cmdPararMissao->isEnabled() && m_logica->missaoTerminou())
        passo("frmDS1921.cmdPararMissao_Click", [this] { cmdPararMissao_Click(); });
}

// False: there is nothing to go on with. Only a record that was wholly read, and the state of the same button, are.
// Where a failure was told already, one message is enough for a button that has gone.
bool frmDS1921::lerRegistador(bool comDados, bool falhaDita) {
    for (QPushButton *botao : {m_cmdPararMissao, m_cmdLer, m_cmdLerDados})
        botao->setEnabled(false);
    limparGrelhas();
    const ControloDS1921::Memoria memoria =
        passo("frmDS1921.FindFirstFamily", [this] { return m_logica->lerMemoria(); });
    using Memoria = ControloDS1921::Memoria;
    if (memoria < Memoria::Incompleta) {
        esquecerRegistador();
        if (!falhaDita)
            avisar(memoria == Memoria::Perdida ? contactoPerdido() : texto(u"NE"_s, u"DS1921 não encontrado"_s));
        return false;
    }
    if (memoria == Memoria::Lida)
        mostrarRegisto();
    BuscarDadosPeloObjecto();
    if (!m_logica->lido()) {
        if (!falhaDita)
            avisar(contactoPerdido());
        return false;
    }
    if (memoria == Memoria::Ilegivel) {
        if (!PerguntarResetRegistadorAntigo(
                texto(u"ResetDataLogger2"_s, u"Versão antiga detectada, Deseja formatar o registador?"_s))) {
            esquecerRegistador();
            m_cmdLer->setFocus();
        }
        return false;
    }
    acabarLeitura(comDados);
    if (memoria == Memoria::Incompleta)
        avisar(texto(u"RegistoIncompleto"_s,
                     u"O registo escrito no registador %1 não está inteiro, e não se sabe de que missão é. Nada foi "
                     "guardado nem alterado. Um registador sem missão pode ser programado de novo."_s)
                   .arg(m_logica->romidLido));
    return memoria == Memoria::Lida;
}

void frmDS1921::mostrarRegisto() {
    const registoDS1921::Registo &r = m_logica->registo();
    for (const auto &[caixa, descricao] :
         {std::pair(m_txtDescricaoRegistador, r.descricaoRegistador), {m_txtDescricaoMissao, r.descricaoMissao}})
        caixa->setText(pecas1921::FiltroDeRegisto::oQueCabe(caixa, descricao));
    pecas1921::mostrarNaLista(m_cboIntervalo, r.intervalo);
    mostrarCaixas();
}

void frmDS1921::BuscarDadosPeloObjecto() {
    passo("frmDS1921.BuscarDadosPeloObjecto", [=, this] {
        const EstadoMissao estadoLido = m_logica->BuscarDadosPeloObjecto();
        if (estadoLido == EstadoMissao::SemRegistador)
            return esquecerRegistador();
        mostrarCaixas();
        setWindowTitle(textoMostrado::linha(m_logica->titulo()));
        const bool semMissao = estadoLido == EstadoMissao::SemMissao;
        permitirAba(Assistente, semMissao);
        permitirAba(Resultados, false);
        if (semMissao) {
            mostrarPasso(0);
            mostrarAba(Assistente);
        }
        m_chkCicloContinuo->setChecked(m_logica->controlo.CicloContinuo);
        CarregarCombos();
        m_lblDataHoraLogger->setText(datas::textoDataHora(m_logica->controlo.RelogioTempoReal));
        m_lblDataHoraPC->setText(datas::textoDataHora(estado().ambiente.agora()));
        LimparGrafico();
    });
}

// The lists follow what was read; the header is stored.
void frmDS1921::acabarLeitura(bool comDados) {
    ControloDS1921 &l = *m_logica;
    m_cmdLer->setEnabled(true);
    m_cmdLerDados->setEnabled(true);
    m_cmdConcluir->setEnabled(true);
    if (comDados && !l.caixas.txtIntervalo.isEmpty())
        pecas1921::mostrarNaLista(m_cboIntervalo, l.caixas.txtIntervalo == u"0" ? u"1"_s : l.caixas.txtIntervalo);
    if (!l.caixas.txtLimiteMaximo.isEmpty()) {
        pecas1921::mostrarNaLista(m_cboLimMax, numeros1921::formatar(l.LimiteMaxGlobal, numeros1921::casasDosLimites));
        pecas1921::mostrarNaLista(m_cboLimMin, numeros1921::formatar(l.LimiteMinGlobal, numeros1921::casasDosLimites));
    }
    const bool calibrado = l.Calibracao != ControloDS1921::CalibracaoNenhuma;
    l.caixas.txtAcertoTemp = calibrado ? modDoubleTratamento::NumeroParaTexto(l.Calibracao) : QString();
    if (calibrado)
        pecas1921::mostrarNaLista(
            m_cboCalibracao,
            numeros1921::formatar(l.Calibracao, numeros1921::gamaDe(l.controlo.TipoRegistador).casasCalibracao));
    mostrarCaixas();
    prepararAssistente();
    if (estado().GravarNaBD)
        passo("frmDS1921.GuardarHeadersParaConsulta",
              [this] { m_logica->GuardarHeadersParaConsulta(m_cboCalibracao->currentText()); });
}

// False: no sample was read. What was not fetched is not to be stopped either.
bool frmDS1921::DownloadLog() {
    Ocupado = true;
    const Vigia vigia(this);
    std::vector<ControloDS1921::Linha> linhas;
    if (m_logica->controlo.PrimeiraAmostra.isValid())
        linhas = m_logica->DownloadLog(m_cboCalibracao->currentText());
    vigia.passar();
    if (linhas.empty()) {
        Ocupado = false;
        avisar(m_logica->controlo.PrimeiraAmostra.isValid()
                   ? texto(u"AmostrasPorLer"_s,
                           u"A leitura das amostras ficou a meio, e nenhuma foi guardada: leia os dados de novo."_s)
                   : texto(u"SemInicio"_s, u"O registador não diz quando a missão começou: as suas amostras não têm "
                                           "data, e nenhuma foi guardada."_s));
        return false;
    }
    mostrarAmostras(linhas);
    vigia.passar();
    LeiturasGrafico = linhas;
    m_mostradas = true;
    permitirAba(Resultados, true);
    MudarEstadoTabGrafico(true);
    Ocupado = false;
    return true;
}

void frmDS1921::mostrarAmostras(const std::vector<ControloDS1921::Linha> &linhas) {
    const Vigia vigia(this);
    bool lido = false;
    const int leituras = std::min(m_logica->caixas.txtNleituras.toInt(&lido), prazos1921::amostras);
    const int porPasso = std::max(1, (lido ? leituras : 0) / inteiro);
    m_progresso->setRange(0, inteiro);
    m_progresso->setValue(inteiro);
    m_progresso->show();
    for (Grelha *grelha : {m_grdTemps, m_grdAlarmes})
        grelha->setUpdatesEnabled(false);
    SequenciasAlarme sequencias(m_logica->LimiteMaxGlobal, m_logica->LimiteMinGlobal,
                                [this](const SequenciasAlarme::Sequencia &s) { AdicionarLinhaAlarmes(s); });
    int numero = 0;
    for (const ControloDS1921::Linha &linha : linhas) {
        AdicionarLinha(++numero, linha);
        sequencias.juntar(linha.data, linha.temperatura);
        if (numero % porPasso == 0)
            m_progresso->setValue(std::max(0, inteiro - numero / porPasso));
        vigia.passar();
    }
    sequencias.fechar();
    m_lblResumo->setText(texto(u"Resumo"_s, u"Amostras lidas: %1; guardadas agora: %2"_s)
                             .arg(linhas.size())
                             .arg(m_logica->amostrasGuardadas));
    for (Grelha *grelha : {m_grdTemps, m_grdAlarmes})
        grelha->setUpdatesEnabled(true);
    m_progresso->hide();
}

void frmDS1921::AdicionarLinha(int numero, const ControloDS1921::Linha &linha) {
    const int i = m_grdTemps->adicionarLinha({QString::number(numero), datas::textoDataHora(linha.data),
                                              numeros1921::formatar(linha.temperatura, casasDaTemperatura) + u"°C"});
    m_grdTemps->setEstadoDaLinha(i, i % 2 == 0 ? EstadoDaLinha::AmostraPar : EstadoDaLinha::AmostraImpar);
}

void frmDS1921::AdicionarLinhaAlarmes(const SequenciasAlarme::Sequencia &s) {
    const int i =
        m_grdAlarmes->adicionarLinha({datas::textoDataHora(s.primeira) + u" <> " + datas::textoDataHora(s.ultima)});
    m_grdAlarmes->setEstadoDaLinha(i, s.alta ? EstadoDaLinha::AlarmeAcima : EstadoDaLinha::AlarmeAbaixo);
}

void frmDS1921::limparGrelhas() {
    m_lblResumo->clear();
    m_grdTemps->limpar();
    m_grdAlarmes->limpar();
    m_mostradas = false;
}

void frmDS1921::CarregarDados() {
    Rotina("frmDS1921.CarregarDados", [this] {
        const ControloDS1921 &l = *m_logica;
        TSerie &sensor = m_chart->Series(0);
        TSerie &maximo = m_chart->Series(1);
        TSerie &minimo = m_chart->Series(2);
        sensor.Color = cores::amostras;
        maximo.Color = cores::maximo;
        minimo.Color = cores::minimo;
        for (TSerie *serie : {&sensor, &maximo, &minimo}) {
            serie->Clear();
            serie->Active = !LeiturasGrafico.empty();
        }
        maximo.traco = TSerie::Traco::Longo;
        minimo.traco = TSerie::Traco::Curto;
        for (const ControloDS1921::Linha &linha : LeiturasGrafico) {
            const double x = datas::segundosDe(linha.data);
            const double y = numeros1921::arredondar(linha.bruta, casasDoGrafico) + l.Calibracao;
            sensor.AddXY(x, y, {}, alarme::daAmostra(l.LimiteMaxGlobal, l.LimiteMinGlobal, y));
            maximo.AddXY(x, l.LimiteMaxGlobal, {});
            minimo.AddXY(x, l.LimiteMinGlobal, {});
        }
        m_chart->anularZoom();
        m_chart->actualizar();
    });
}

void frmDS1921::LimparGrafico() {
    LeiturasGrafico.clear();
    CarregarDados();
    MudarEstadoTabGrafico(false);
}

void frmDS1921::MudarEstadoTabGrafico(bool mostrar) {
    const bool comGrafico = mostrar && m_grdTemps->linhas() > 0;
    if (comGrafico)
        CarregarDados();
    permitirAba(Grafico, comGrafico);
}

// The menu offers the missions as soon as one is stored.
void frmDS1921::avisarAlterouMenus() {
    m_espera->suspender();
    const Vigia vigia(this);
    if (registoForms().alterarEstadosMenus)
        registoForms().alterarEstadosMenus();
    verificar(vigia, this);
}

// Nothing of a button is known any more, and so nothing can be asked of it but to be read.
void frmDS1921::esquecerRegistador() {
    ResetEstado();
    m_cmdPararMissao->setEnabled(false);
    limparGrelhas();
    LimparGrafico();
    permitirAba(Assistente, false);
    permitirAba(Resultados, false);
    mostrarAba(Estado);
}

// However an action ended: no tab that has nothing to show can be chosen.
void frmDS1921::acertarAbas() {
    if (!m_logica->lido())
        return esquecerRegistador();
    if (m_mostradas)
        return;
    limparGrelhas();
    LimparGrafico();
    permitirAba(Resultados, false);
    if (!m_separadores[size_t(m_frames->currentIndex())]->isEnabled())
        mostrarAba(Estado);
}
