// The load of a line chart.
#include "views/forms/formGrafico.h"

#include "core/datas.h"
#include "core/eventos.h"
#include "core/literais.h"
#include "core/modDoubleTratamento.h"
#include "core/modTraducoes.h"
#include "core/rotina.h"
#include "platform/chart/TChart.h"
#include "platform/chart/cores.h"
#include "views/alarme.h"

#include <QLabel>

#include <algorithm>

namespace {

const QString semRotulo;
const QString semMarca = u" "_s;
const QString marca = u"!"_s;
constexpr double folga = 4; // above and below what is drawn
constexpr double folgaDosEstados = 0.5;
constexpr double umMinuto = 60; // seconds

} // namespace

bool FormGrafico::carregar(const Vigia &vigia) {
    if (m_timer1.isActive())
        ConfigurarGrafico();
    const bool lida = carregarSeleccao(vigia);
    if (chart().temDados()) {
        ConfigurarBottomAxis();
        ajustarEixoEsquerdo();
    } else { // nothing there: the axis shows where it was looked for
        const Intervalo intervalo = m_mostrado.intervalo();
        chart().Bottom().Minimum = datas::segundosDe(intervalo.inicio);
        chart().Bottom().Maximum = datas::segundosDe(intervalo.fim);
    }
    return lida;
}

void FormGrafico::esvaziar() {
    FormVistaGrafica::esvaziar();
    m_indiceCor = 0;
    m_lidas = 0;
    while (chart().SeriesCount() > seriesFixas)
        chart().RemoveSeries(chart().SeriesCount() - 1);
    for (int i = 0; i < seriesFixas; ++i) {
        chart().Series(i).Clear();
        chart().Series(i).Active = false;
    }
    chart().Bottom().Visible = false;
    mostrarMedia(std::nullopt);
}

// Each sensor's routine reports its own failure and ends with 0; the others go on.
bool FormGrafico::carregarSeleccao(const Vigia &vigia) {
    const QList<Escolha> seleccao = m_mostrado.escolhas;
    const bool comLimites = seleccao.size() == 1 && m_membro.linhaUnica == LinhaUnica::ComLimites;
    double soma = 0;
    int comMedia = 0;
    for (const Escolha &escolha : seleccao) {
        const double media = comLimites ? AdicionarValorAoGrafico(escolha) : ConfigurarGraficoComSeries(escolha);
        vigia.passar();
        pararSePedido();
        if (media != 0) {
            soma += media;
            ++comMedia;
        }
    }
    // That of one alone is not shown when it is 0.
    mostrarMedia(comMedia > 0 ? std::optional(soma / comMedia) : std::nullopt);
    return m_lidas == seleccao.size();
}

double FormGrafico::AdicionarValorAoGrafico(const Escolha &escolha) {
    return Rotina(objectName(), "AdicionarValorAoGrafico", [&] {
        chart().Bottom().Visible = true;
        TSerie &leituras = chart().Series(serieLeituras);
        TSerie &maximo = chart().Series(serieMaximo);
        TSerie &minimo = chart().Series(serieMinimo);
        const QStringView formLimites = m_membro.formLimites.isEmpty() ? m_membro.form : m_membro.formLimites;
        const QString seccao = modTraducoes::seccaoDe(formLimites.toString());
        maximo.Title = modTraducoes::texto(seccao, u"Max"_s, u"Max"_s);
        maximo.Color = cores::maximo;
        minimo.Title = modTraducoes::texto(seccao, u"Min"_s, u"Min"_s);
        minimo.Color = cores::minimo;
        leituras.Title = escolha.nome;
        leituras.Color = cores::leituras;
        // The limit lines bear the sensor too: a click on one leads to the sensor's reading.
        for (TSerie *serie : {&leituras, &maximo, &minimo}) {
            serie->Name = u'A' + escolha.textoDaChave();
            serie->Active = true;
        }
        const Vigia vigia(this);
        const PedidoLeituras pedido{m_membro.tabela, escolha.chave, m_mostrado.intervalo(), true, &m_ilegiveis};
        const double media = m_membro.ler(pedido, [&](const Leitura &l) {
            leituras.AddXY(l.data, l.valor, l.comNota ? marca : semMarca, alarme::daLeitura(l.limites, l.valor));
            if (!std::isnan(l.valor)) {
                if (l.limites.temMaximo())
                    maximo.AddXY(l.data, l.limites.maximo, semRotulo);
                if (l.limites.temMinimo())
                    minimo.AddXY(l.data, l.limites.minimo, semRotulo);
            }
            vigia.passarLinha();
            pararSePedido();
        });
        ++m_lidas;
        return media;
    });
}

double FormGrafico::ConfigurarGraficoComSeries(const Escolha &escolha) {
    return Rotina(objectName(), "ConfigurarGraficoComSeries", [&] {
        chart().Bottom().Visible = true;
        chart().Series(serieLeituras).Name = u"A1"_s;
        for (int i = 0; i < seriesFixas; ++i)
            chart().Series(i).Clear();
        // A sensor without readings uses its colour up too.
        const quint32 cor = cores::paleta[m_indiceCor];
        m_indiceCor = (m_indiceCor + 1) % cores::paleta.size();
        const bool estados = m_membro.eixo == EixoEsquerdo::Estados;
        TSerie &serie = chart().AddSeries(estados ? TSerie::Estilo::Degrau : TSerie::Estilo::Linha);
        serie.Title = escolha.nome;
        serie.Name = u'A' + escolha.textoDaChave();
        serie.Active = true;
        serie.Color = cor;
        const Vigia vigia(this);
        const PedidoLeituras pedido{m_membro.tabela, escolha.chave, m_mostrado.intervalo(), false, &m_ilegiveis};
        const double media = m_membro.ler(pedido, [&](const Leitura &l) {
            serie.AddXY(l.data, l.valor, l.comNota ? marca : semMarca);
            vigia.passarLinha();
            pararSePedido();
        });
        ++m_lidas;
        return media;
    });
}

void FormGrafico::ConfigurarBottomAxis() {
    TEixo &baixo = chart().Bottom();
    baixo.Automatic = false;
    baixo.Minimum = chart().MinXValue();
    baixo.Maximum = chart().MaxXValue();
    baixo.Increment = umMinuto;
}

void FormGrafico::ajustarEixoEsquerdo() {
    TEixo &esquerdo = chart().Left();
    esquerdo.Automatic = false;
    switch (m_membro.eixo) {
    case EixoEsquerdo::Folga:
        esquerdo.Minimum = chart().MinYValue() - folga;
        esquerdo.Maximum = chart().MaxYValue() + folga;
        break;
    case EixoEsquerdo::Percentagem:
        esquerdo.Minimum = 0;
        esquerdo.Maximum = 100;
        break;
    case EixoEsquerdo::Estados:
        esquerdo.Minimum = -folgaDosEstados;
        esquerdo.Maximum = 1 + folgaDosEstados;
        esquerdo.Increment = 1;
        esquerdo.SoInteiros = true;
        break;
    }
}

void FormGrafico::mostrarMedia(std::optional<double> media) {
    QString legenda;
    if (media)
        legenda =
            modTraducoes::texto(modTraducoes::seccaoDe(m_membro.formMedia.toString()), u"Media"_s, u"Média = "_s) +
            modDoubleTratamento::NumeroParaTexto(modDoubleTratamento::Arredondar(*media, m_membro.decimais)) +
            m_membro.unidade;
    lblMedia()->setText(legenda);
}

void FormGrafico::mostrarCarga() {
    // Also says what a single line is.
    chart().setLegenda(!m_mostrado.vazio(), m_membro.linhaUnica == LinhaUnica::ComoVarias ? 1 : 2);
    FormVistaGrafica::mostrarCarga();
}

// Nothing is drawn, printed or noted of rows that are gone.
void FormGrafico::retirar(const QStringList &chave) {
    if (std::ranges::none_of(m_mostrado.escolhas, [&](const Escolha &escolha) { return escolha.chave == chave; }))
        return;
    esvaziar();
    mostrarCarga();
}
