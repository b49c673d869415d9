#include "views/forms/formVistaGrafica.h"

#include "core/estado.h"
#include "core/eventos.h"
#include "core/falha.h"
#include "core/literais.h"
#include "core/modDoubleTratamento.h"
#include "core/modINI.h"
#include "core/modTraducoes.h"
#include "core/rotina.h"
#include "platform/chart/TChart.h"
#include "views/forms/frmEsperaPraCriarGrafico.h"

#include <QPushButton>
#include <QStackedLayout>

namespace {

constexpr QSize medidasMinimas(10500, 6615); // twips

} // namespace

FormVista::Config FormVistaGrafica::configDe(QStringView form, QStringView chaveTitulo, QStringView titulo,
                                             Exportacao exportacao) {
    const QString nome = form.toString();
    return {nome,
            chaveTitulo.isEmpty() ? nome + u".Caption" : chaveTitulo.toString(),
            titulo.toString(),
            {nome, {}, medidasMinimas.width(), medidasMinimas.height()},
            medidasMinimas,
            exportacao};
}

FormVistaGrafica::FormVistaGrafica(const Config &config, const FabricaPainel &fabrica, QWidget *pai)
    : FormVista(config, pai), m_painel(fabrica(this)), m_chart(new TChart), m_fundo(new TChart) {
    auto *vista = new QWidget(this);
    m_pilha = new QStackedLayout(vista);
    m_chart->setObjectName(u"TChart"_s);
    m_chart->setAccessibleName(windowTitle());
    m_fundo->setObjectName(u"TChartBackGround"_s);
    m_fundo->Bottom().Visible = false;
    m_pilha->addWidget(m_chart);
    m_pilha->addWidget(m_fundo);
    vista->setFocusProxy(m_chart);
    montar(m_painel, vista);
    connect(m_painel, &PainelVista::carregar, this, &FormVistaGrafica::CarregarDadosDeSeriesSelleccionadas);
    connect(m_chart, &TChart::OnZoom, this, [this] { m_sufixoZoom = texto(u"Zoom"_s, u" (zoom)"_s); });
    connect(m_chart, &TChart::OnUndoZoom, this, [this] { m_sufixoZoom.clear(); });
}

// All members share the settings of temperatures.
void FormVistaGrafica::ActualizarGrafico() {
    Rotina(objectName(), "ActualizarGrafico", [this] {
        const auto ler = [](const QString &chave, const QString &omissao) {
            const QString lido = modINI::GetSetting(estado().NomePrograma, u"GRAFICOPRINCIPAL"_s,
                                                    u"LimitesTemperaturas" + chave, omissao);
            return modDoubleTratamento::TextoParaDouble(lido);
        };
        TEixo &esquerdo = m_chart->Left();
        esquerdo.Minimum = ler(u"Min"_s, u"0"_s);
        esquerdo.Maximum = ler(u"Max"_s, u"40"_s);
        esquerdo.Increment = ler(u"Inc"_s, u"1"_s);
        m_chart->actualizar();
    });
}

// Left by an Interrompido when the form is destroyed or the user stops; the wait window and the main window are put
// right on every way out.
void FormVistaGrafica::CarregarDadosDeSeriesSelleccionadas() {
    if (m_emCarga)
        return;
    m_emCarga = true;
    m_parar = false;
    m_ilegiveis = {};
    const Vigia vigia(this);
    bool comecada = false;
    Rotina(objectName(), "CarregarDadosDeSeriesSelleccionadas", [&] {
        preparar();
        Confirmado pedido = m_painel->confirmado();
        comecada = true;
        const CargaEmCurso carga(this);
        connect(carga.espera(), &frmEsperaPraCriarGrafico::cancelar, this, [this] { m_parar = true; });
        vigia.forcar();
        m_painel->fechar(false);
        m_pilha->setCurrentWidget(m_fundo);
        esvaziar();
        m_mostrado = std::move(pedido);
        m_lida = carregar(vigia);
    });
    if (!vigia.vivo())
        return;
    m_emCarga = false;
    if (comecada)
        terminarCarga();
    if (!m_parar)
        m_ilegiveis.relatar(fonteDeErros(objectName(), "CarregarDadosDeSeriesSelleccionadas").constData());
}

// What a stopped load has read is a part that nobody asked for: it goes, and the choice is offered again.
void FormVistaGrafica::terminarCarga() {
    if (m_parar)
        esvaziar();
    mostrarCarga();
    if (m_parar)
        m_painel->abrir();
    else
        m_chart->setFocus();
}

void FormVistaGrafica::esvaziar() {
    m_chart->anularZoom();
    m_sufixoZoom.clear();
    m_mostrado = {};
    m_lida = false;
}

void FormVistaGrafica::mostrarCarga() {
    m_chart->setAviso(m_mostrado.vazio() || m_chart->temDados() ? QString() : semDesenho());
    m_chart->actualizar();
    m_pilha->setCurrentWidget(m_chart);
    cmdImprimir()->setEnabled(comConteudo());
    cmdExport()->setEnabled(comConteudo());
}

bool FormVistaGrafica::comConteudo() const {
    for (int i = 0; i < m_chart->SeriesCount(); ++i)
        if (m_chart->Series(i).Active && m_chart->Series(i).Count() > 0)
            return true;
    return false;
}

QString FormVistaGrafica::semDesenho() const {
    if (!m_lida)
        return modTraducoes::texto(u"VISTREL_frmMain"_s, u"CargaFalhou"_s, u"A carga falhou; nada foi desenhado."_s);
    if (comConteudo())
        return modTraducoes::texto(u"VISTREL_frmMain"_s, u"LeiturasSemValor"_s,
                                   u"As leituras deste intervalo não têm valor."_s);
    return modTraducoes::texto(u"VISTREL_frmMain"_s, u"SemLeituras"_s, u"Não há leituras neste intervalo."_s);
}

void FormVistaGrafica::pararSePedido() const {
    if (m_parar)
        throw Interrompido();
}

// A load that is under way stops at its next row.
void FormVistaGrafica::closeEvent(QCloseEvent *evento) {
    m_parar = true;
    FormVista::closeEvent(evento);
}
