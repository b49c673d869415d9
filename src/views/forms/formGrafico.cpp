#include "views/forms/formGrafico.h"

#include "core/datas.h"
#include "core/modDoubleTratamento.h"
#include "core/modTraducoes.h"
#include "core/rotina.h"
#include "platform/chart/TChart.h"
#include "platform/chart/cores.h"
#include "platform/forms/registoForms.h"
#include "views/forms/formOpccoesPontos.h"
#include "views/notas.h"

FormGrafico::FormGrafico(const MembroGrafico &membro, const FabricaPainel &fabrica, QWidget *pai)
    : FormVistaGrafica(configDe(membro.form, membro.chaveTitulo, membro.titulo, Exportacao::Menu), fabrica, pai),
      m_membro(membro) {
    criarSaidas();

    for (int i = 0; i < seriesFixas; ++i)
        chart().AddSeries().Active = false;
    chart().Series(serieMaximo).traco = TSerie::Traco::Longo;
    chart().Series(serieMinimo).traco = TSerie::Traco::Curto;
    chart().Left().Title = texto(u"TChart.Axis.Left.Title.Caption"_s, membro.tituloEixo.toString());
    chart().setUnidade(membro.unidade.toString());
    chart().setCasas(membro.casas);
    chart().setNota([this](int serie, int indice) { return notaDe(serie, indice); });

    connect(painel(), &PainelVista::retirada, this, &FormGrafico::retirar);
    connect(&chart(), &TChart::OnClickSeries, this,
            [this](int serie, int indice, Qt::MouseButton botao, Qt::KeyboardModifiers, const QPoint &posicao) {
                TChart_OnClickSeries(serie, indice, botao, posicao);
            });

    m_timer1.setObjectName(u"Timer1"_s);
    m_timer1.setInterval(5);
    m_timer1.setSingleShot(true);
    connect(&m_timer1, &QTimer::timeout, this, &FormGrafico::ConfigurarGrafico);
    m_timer2.setObjectName(u"Timer2"_s);
    m_timer2.setInterval(10);
    m_timer2.setSingleShot(true);
    connect(&m_timer2, &QTimer::timeout, this, [this] { chart().setZoomEnable(true); });

    painel()->abrir();
    m_timer1.start();
}

void FormGrafico::ConfigurarGrafico() {
    m_timer1.stop();
    TSerie &leituras = chart().Series(serieLeituras);
    leituras.Title = u"Teste"_s;
    leituras.Name = u"A1"_s;
    leituras.Active = false;
    leituras.Color = cores::paleta.front();
    TEixo &esquerdo = chart().Left();
    esquerdo.Automatic = false;
    esquerdo.Maximum = 40;
    esquerdo.Minimum = 1; // not the 0 of the settings
    if (m_membro.eixo == EixoEsquerdo::Estados)
        ajustarEixoEsquerdo();
    chart().Bottom().Automatic = false;
    chart().Bottom().Visible = false;
    chart().setZoomEnable(true);
    chart().actualizar();
}

void FormGrafico::TChart_OnClickSeries(int serie, int indice, Qt::MouseButton botao, const QPoint &posicao) {
    chart().setZoomEnable(false);
    // The series is asked for the point under the pointer; the event's own index only stands in for it.
    if (const auto [s, i] = chart().pontoMaisProximo(posicao); s == serie && i >= 0)
        indice = i;
    if (botao == Qt::LeftButton && serie >= 0 && indice >= 0)
        abrirPontos(serie, indice);
    else
        m_timer2.start();
}

void FormGrafico::abrirPontos(int serie, int indice) {
    const TSerie &clicada = chart().Series(serie);
    const notas::Lugar lugar = lugarDe(serie, indice);
    const PontoActual ponto{QString::number(indice),
                            datas::textoDataHora(datas::instanteDe(clicada.XValue(indice))),
                            modDoubleTratamento::NumeroParaTexto(clicada.YValue(indice), m_membro.casas),
                            Escolha{chaveDaSerie(serie), {}}.textoDaChave(),
                            clicada.Title,
                            QString::number(serie),
                            chaveDaSerie(serie),
                            lugar.colunaData,
                            lugar.colunaValor,
                            lugar.eDoPonto};
    RegistoForms &forms = registoForms();
    auto *pontos = new FormOpccoesPontos(*m_membro.pontos, ponto, &chart(), forms.dono ? forms.dono.data() : window());
    pontos->setAttribute(Qt::WA_DeleteOnClose);
    forms.anunciar(pontos);
    connect(pontos, &QDialog::finished, &m_timer2, [this] { m_timer2.start(); });
    pontos->open();
}

// The three that stand from the beginning belong to the only choice; a line of several has its own.
QStringList FormGrafico::chaveDaSerie(int serie) const {
    return m_mostrado.escolhas.value(std::max(0, serie - seriesFixas)).chave;
}

// Where a row holds two dates, one is that of its point at height 0.
QStringView FormGrafico::colunaDaData(double y) const {
    const QStringView doZero = m_membro.pontos->dataDoZero;
    return y == 0 && !doZero.isEmpty() ? doZero : m_membro.pontos->data;
}

// A point of a limit line has the height of the limit: its second alone finds the reading.
notas::Lugar FormGrafico::lugarDe(int serie, int indice) const {
    const TSerie &s = chart().Series(serie);
    const double y = s.YValue(indice);
    const TabelaLeituras &t = m_membro.tabela;
    const QStringView data = colunaDaData(y);
    notas::Lugar lugar{t.nome,
                       data,
                       t.chave,
                       chaveDaSerie(serie),
                       datas::instanteDe(s.XValue(indice)),
                       data == t.data ? t.valor : t.data};
    if (m_membro.eDoPonto && serie != serieMaximo && serie != serieMinimo)
        lugar.eDoPonto = [eDoPonto = m_membro.eDoPonto, y](const Recordset &rs, int c) { return eDoPonto(rs, c, y); };
    return lugar;
}

QString FormGrafico::notaDe(int serie, int indice) const {
    return Rotina(objectName(), "notaDe", [&] {
        const auto linha = notas::procurar(lugarDe(serie, indice));
        return linha ? notas::paraMostrar(notas::texto(*linha)).trimmed() : QString();
    });
}
