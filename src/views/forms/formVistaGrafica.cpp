#include "views/forms/formVistaGrafica.h"

#include "core/estado.h"
#include "core/eventos.h"
#include "core/falha.h"
#include "core/literais.h"
#include "core/modDoubleTratamento.h"
#include "core/modINI.h"
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

QByteArray FormVistaGrafica::fonte(const char *rotina) const {
    return objectName().toUtf8() + '.' + rotina;
}

// All members share the settings of temperatures.
void FormVistaGrafica::ActualizarGrafico() {
    const QByteArray nome = fonte("ActualizarGrafico");
    Rotina(nome.constData(), [this] {
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
    const QByteArray nome = fonte("CarregarDadosDeSeriesSelleccionadas");
    Rotina(nome.constData(), [&] {
        const CargaEmCurso carga(this);
        connect(carga.espera(), &frmEsperaPraCriarGrafico::cancelar, this, [this] { m_parar = true; });
        vigia.forcar();
        m_painel->fechar(false);
        m_pilha->setCurrentWidget(m_fundo);
        esvaziar();
        if (!m_painel->escolhas().isEmpty()) {
            m_inicio = m_painel->textoInicio();
            m_fim = m_painel->textoFim();
        }
        carregar(vigia);
    });
    if (!vigia.vivo())
        return;
    terminarCarga();
    if (!m_parar)
        m_ilegiveis.relatar(nome.constData());
}

// What a stopped load has read is a part that nobody asked for: it goes, and the choice is offered again.
void FormVistaGrafica::terminarCarga() {
    m_emCarga = false;
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
    m_inicio.clear();
    m_fim.clear();
}

void FormVistaGrafica::mostrarCarga() {
    m_chart->actualizar();
    m_pilha->setCurrentWidget(m_chart);
    cmdImprimir()->setEnabled(!m_inicio.isEmpty());
    cmdExport()->setEnabled(!m_inicio.isEmpty());
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
