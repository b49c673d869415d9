// The load of a line chart.
#include "views/forms/formGrafico.h"

#include "core/datas.h"
#include "core/eventos.h"
#include "core/literais.h"
#include "core/modDoubleTratamento.h"
#include "core/modTraducoes.h"
#include "core/rotina.h"
#include "platform/chart/TChart.h"

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

void FormGrafico::carregar(const Vigia &vigia) {
    if (m_timer1.isActive())
        ConfigurarGrafico();
    carregarSeleccao(vigia);
    if (chart().MaxXValue() > 0 && chart().MinXValue() > 0) {
        ConfigurarBottomAxis();
        ajustarEixoEsquerdo();
    } else { // nothing there: the axis shows where it was looked for
        const Intervalo intervalo(painel()->inicio(), painel()->fim());
        chart().Bottom().Minimum = datas::segundosDe(intervalo.inicio);
        chart().Bottom().Maximum = datas::segundosDe(intervalo.fim);
    }
}

void FormGrafico::esvaziar() {
    FormVistaGrafica::esvaziar();
    m_indiceCor = 0;
    m_carregadas.clear();
    while (chart().SeriesCount() > seriesFixas)
        chart().RemoveSeries(chart().SeriesCount() - 1);
    for (int i = 0; i < seriesFixas; ++i) {
        chart().Series(i).Clear();
        chart().Series(i).Active = false;
    }
    chart().Series(serieLeituras).ColorEachPoint = false;
    chart().Bottom().Visible = false;
    mostrarMedia(0);
}

// Each sensor's routine reports its own failure and ends with 0; the others go on.
void FormGrafico::carregarSeleccao(const Vigia &vigia) {
    const QList<Escolha> seleccao = painel()->escolhas();
    const bool comLimites = seleccao.size() == 1 && m_membro.linhaUnica == LinhaUnica::ComLimites;
    const Intervalo intervalo(painel()->inicio(), painel()->fim());
    double soma = 0;
    int comMedia = 0;
    for (const Escolha &escolha : seleccao) {
        const double media =
            comLimites ? AdicionarValorAoGrafico(intervalo, escolha) : ConfigurarGraficoComSeries(intervalo, escolha);
        vigia.passar();
        pararSePedido();
        if (media != 0) {
            soma += media;
            ++comMedia;
        }
    }
    mostrarMedia(comMedia > 0 ? soma / comMedia : 0);
}

double FormGrafico::AdicionarValorAoGrafico(const Intervalo &intervalo, const Escolha &escolha) {
    const QByteArray nome = fonte("AdicionarValorAoGrafico");
    return Rotina(nome.constData(), [&] {
        chart().Bottom().Visible = true;
        TSerie &leituras = chart().Series(serieLeituras);
        TSerie &maximo = chart().Series(serieMaximo);
        TSerie &minimo = chart().Series(serieMinimo);
        const QStringView formLimites = m_membro.formLimites.isEmpty() ? m_membro.form : m_membro.formLimites;
        const QString seccao = modTraducoes::seccaoDe(formLimites.toString());
        maximo.Title = modTraducoes::texto(seccao, u"Max"_s, u"Max"_s);
        maximo.Color = cores::vermelho;
        minimo.Title = modTraducoes::texto(seccao, u"Min"_s, u"Min"_s);
        minimo.Color = cores::azul;
        leituras.Title = escolha.nome;
        m_carregadas.append(escolha);
        leituras.Color = cores::verde;
        leituras.ColorEachPoint = true;
        // The limit lines bear the sensor too: a click on one leads to the sensor's reading.
        for (TSerie *serie : {&leituras, &maximo, &minimo}) {
            serie->Name = u'A' + escolha.textoDaChave();
            serie->Active = true;
        }
        const Vigia vigia(this);
        return m_membro.ler({m_membro.tabela, escolha.chave, intervalo, true}, [&](const Leitura &l) {
            leituras.AddXY(l.data, l.valor, l.comNota ? marca : semMarca, cores::doPonto(l.limites, l.valor));
            if (!std::isnan(l.valor)) {
                if (l.limites.temMaximo())
                    maximo.AddXY(l.data, l.limites.maximo, semRotulo, cores::vermelho);
                if (l.limites.temMinimo())
                    minimo.AddXY(l.data, l.limites.minimo, semRotulo, cores::azul);
            }
            vigia.passarLinha();
            pararSePedido();
        });
    });
}

double FormGrafico::ConfigurarGraficoComSeries(const Intervalo &intervalo, const Escolha &escolha) {
    const QByteArray nome = fonte("ConfigurarGraficoComSeries");
    return Rotina(nome.constData(), [&] {
        chart().Bottom().Visible = true;
        chart().Series(serieLeituras).Name = u"A1"_s;
        for (int i = 0; i < seriesFixas; ++i)
            chart().Series(i).Clear();
        // A sensor without readings uses its colour up too.
        const quint32 cor = cores::paleta[m_indiceCor];
        m_indiceCor = (m_indiceCor + 1) % cores::paleta.size();
        const bool estados = m_membro.eixo == EixoEsquerdo::Estados;
        TSerie &serie = chart().AddSeries(estados ? TSerie::Estilo::Degrau : TSerie::Estilo::Linha);
        m_carregadas.append(escolha);
        serie.Title = escolha.nome;
        serie.Name = u'A' + escolha.textoDaChave();
        serie.Active = true;
        serie.Color = cor;
        const Vigia vigia(this);
        return m_membro.ler({m_membro.tabela, escolha.chave, intervalo, false}, [&](const Leitura &l) {
            serie.AddXY(l.data, l.valor, l.comNota ? marca : semMarca, cor);
            vigia.passarLinha();
            pararSePedido();
        });
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

void FormGrafico::mostrarMedia(double media) {
    QString legenda;
    if (media != 0)
        legenda =
            modTraducoes::texto(modTraducoes::seccaoDe(m_membro.formMedia.toString()), u"Media"_s, u"Média = "_s) +
            modDoubleTratamento::NumeroParaTexto(modDoubleTratamento::Arredondar(media, m_membro.decimais)) + m_membro.unidade;
    lblMedia()->setText(legenda);
}

void FormGrafico::mostrarCarga() {
    // Also says what a single line is.
    chart().setLegenda(!m_inicio.isEmpty(), m_membro.linhaUnica == LinhaUnica::ComoVarias ? 1 : 2);
    FormVistaGrafica::mostrarCarga();
}

// Nothing is drawn, printed or noted of rows that are gone.
void FormGrafico::retirar(const QStringList &chave) {
    if (std::ranges::none_of(m_carregadas, [&](const Escolha &escolha) { return escolha.chave == chave; }))
        return;
    esvaziar();
    mostrarCarga();
}
