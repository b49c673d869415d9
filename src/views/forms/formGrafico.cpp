#include "views/forms/formGrafico.h"

#include "core/datas.h"
#include "core/estado.h"
#include "core/modDoubleTratamento.h"
#include "core/modINI.h"
#include "core/modTraducoes.h"
#include "core/rotina.h"
#include "platform/chart/TChart.h"
#include "platform/forms/registoForms.h"
#include "views/forms/formOpccoesPontos.h"
#include "views/notas.h"

#include <QLabel>
#include <QPushButton>
#include <QStackedLayout>

namespace {

constexpr QSize tamanhoMinimo(10500, 6615); // twips

FormVista::Config configDe(const MembroGrafico &membro) {
    const QString form = membro.form.toString();
    const QString chave = membro.chaveTitulo.isEmpty() ? form + u".Caption" : membro.chaveTitulo.toString();
    return {form,
            chave,
            membro.titulo.toString(),
            {form, {}, tamanhoMinimo.width(), tamanhoMinimo.height()},
            tamanhoMinimo};
}

} // namespace

FormGrafico::FormGrafico(const MembroGrafico &membro, const FabricaPainel &fabrica, QWidget *pai)
    : FormVista(configDe(membro), pai), m_membro(membro), m_painel(fabrica(this)) {
    auto *vista = new QWidget(this);
    m_pilha = new QStackedLayout(vista);
    m_chart = new TChart;
    m_chart->setObjectName(u"TChart"_s);
    m_chart->setAccessibleName(windowTitle());
    m_fundo = new TChart; // empty: covers the other while that is rebuilt
    m_fundo->setObjectName(u"TChartBackGround"_s);
    m_fundo->Bottom().Visible = false;
    m_pilha->addWidget(m_chart);
    m_pilha->addWidget(m_fundo);
    vista->setFocusProxy(m_chart);
    montar(m_painel, vista);
    criarSaidas();

    for (int i = 0; i < seriesFixas; ++i)
        m_chart->AddSeries().Active = false;
    m_chart->Series(serieMaximo).traco = TSerie::Traco::Longo;
    m_chart->Series(serieMinimo).traco = TSerie::Traco::Curto;
    m_chart->Left().Title = texto(u"TChart.Axis.Left.Title.Caption"_s, membro.tituloEixo.toString());
    m_chart->setUnidade(membro.unidade.toString());
    m_chart->setNota([this](int serie, int indice) { return notaDe(serie, indice); });

    connect(m_painel, &PainelVista::carregar, this, &FormGrafico::CarregarDadosDeSeriesSelleccionadas);
    connect(m_painel, &PainelVista::retirada, this, &FormGrafico::retirar);
    connect(m_chart, &TChart::OnClickSeries, this,
            [this](int serie, int indice, Qt::MouseButton botao, Qt::KeyboardModifiers, const QPoint &posicao) {
                TChart_OnClickSeries(serie, indice, botao, posicao);
            });
    connect(m_chart, &TChart::OnZoom, this, [this] { m_sufixoZoom = texto(u"Zoom"_s, u" (zoom)"_s); });
    connect(m_chart, &TChart::OnUndoZoom, this, [this] { m_sufixoZoom.clear(); });

    m_timer1.setObjectName(u"Timer1"_s);
    m_timer1.setInterval(5);
    m_timer1.setSingleShot(true);
    connect(&m_timer1, &QTimer::timeout, this, &FormGrafico::ConfigurarGrafico);
    m_timer2.setObjectName(u"Timer2"_s);
    m_timer2.setInterval(10);
    m_timer2.setSingleShot(true);
    connect(&m_timer2, &QTimer::timeout, this, [this] { m_chart->setZoomEnable(true); });

    m_painel->abrir();
    m_timer1.start();
}

QByteArray FormGrafico::fonte(const char *rotina) const {
    return m_membro.form.toUtf8() + '.' + rotina;
}

void FormGrafico::ConfigurarGrafico() {
    m_timer1.stop();
    TSerie &leituras = m_chart->Series(serieLeituras);
    leituras.Title = u"Teste"_s;
    leituras.Name = u"A1"_s;
    leituras.Active = false;
    leituras.Color = cores::paleta.front();
    TEixo &esquerdo = m_chart->Left();
    esquerdo.Automatic = false;
    esquerdo.Maximum = 40;
    esquerdo.Minimum = 1; // not the 0 of the settings
    if (m_membro.eixo == EixoEsquerdo::Estados)
        ajustarEixoEsquerdo();
    m_chart->Bottom().Automatic = false;
    m_chart->Bottom().Visible = false;
    m_chart->setZoomEnable(true);
    m_chart->actualizar();
}

// All members share the settings of temperatures.
void FormGrafico::ActualizarGrafico() {
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

void FormGrafico::TChart_OnClickSeries(int serie, int indice, Qt::MouseButton botao, const QPoint &posicao) {
    m_chart->setZoomEnable(false);
    // The series is asked for the point under the pointer; the event's own index only stands in for it.
    if (const auto [s, i] = m_chart->pontoMaisProximo(posicao); s == serie && i >= 0)
        indice = i;
    if (botao == Qt::LeftButton && serie >= 0 && indice >= 0)
        abrirPontos(serie, indice);
    else
        m_timer2.start();
}

void FormGrafico::abrirPontos(int serie, int indice) {
    const TSerie &clicada = m_chart->Series(serie);
    m_ponto = {QString::number(indice),
               datas::textoDataHora(datas::instanteDe(clicada.XValue(indice))),
               modDoubleTratamento::NumeroParaTexto(clicada.YValue(indice)),
               Escolha{chaveDaSerie(serie), {}}.textoDaChave(),
               clicada.Title,
               QString::number(serie),
               chaveDaSerie(serie),
               colunaDaData(clicada.YValue(indice))};
    RegistoForms &forms = registoForms();
    auto *pontos = new FormOpccoesPontos(*m_membro.pontos, m_ponto, m_chart, forms.dono ? forms.dono.data() : window());
    pontos->setAttribute(Qt::WA_DeleteOnClose);
    forms.anunciar(pontos);
    connect(pontos, &QDialog::finished, &m_timer2, [this] { m_timer2.start(); });
    pontos->open();
}

// The three that stand from the beginning belong to the only choice; a line of several has its own.
QStringList FormGrafico::chaveDaSerie(int serie) const {
    return m_carregadas.value(std::max(0, serie - seriesFixas)).chave;
}

// Where a row holds two dates, one is that of its point at height 0.
QStringView FormGrafico::colunaDaData(double y) const {
    const QStringView doZero = m_membro.pontos->dataDoZero;
    return y == 0 && !doZero.isEmpty() ? doZero : m_membro.pontos->data;
}

QString FormGrafico::notaDe(int serie, int indice) const {
    const QByteArray nome = fonte("notaDe");
    return Rotina(nome.constData(), [&] {
        const TSerie &s = m_chart->Series(serie);
        const auto flag = notas::ler({m_membro.tabela.nome, colunaDaData(s.YValue(indice)), m_membro.tabela.chave,
                                      chaveDaSerie(serie), datas::instanteDe(s.XValue(indice))});
        return notas::paraMostrar(flag.value_or(QString())).trimmed();
    });
}

// A load that is under way stops at its next row.
void FormGrafico::closeEvent(QCloseEvent *evento) {
    m_parar = true;
    FormVista::closeEvent(evento);
}
