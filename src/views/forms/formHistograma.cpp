#include "views/forms/formHistograma.h"

#include "core/datas.h"
#include "core/estado.h"
#include "core/eventos.h"
#include "core/falha.h"
#include "core/literais.h"
#include "core/modDoubleTratamento.h"
#include "core/modINI.h"
#include "core/modTraducoes.h"
#include "core/rotina.h"
#include "core/textoMostrado.h"
#include "data/dialecto.h"
#include "data/ligacao.h"
#include "data/recordset.h"
#include "platform/chart/TChart.h"
#include "platform/chart/cores.h"
#include "views/forms/saidaGrafico.h"
#include "views/impressao.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>

#include <cmath>

namespace {

constexpr double folgaNoTopo = 0.1;
const QString chaveHist = u"Hist"_s;
const QString intervaloPorOmissao = u"0.5"_s;

// A text that cannot be understood says nothing.
bool outros(CacheLimites &cache, const char *bytes, int tamanho, const Limites &usados) {
    const auto igual = [](double a, double b) { return a == b || (std::isnan(a) && std::isnan(b)); };
    const Limites &l = cache.de(bytes, tamanho);
    return !l.ilegivel && (!igual(l.maximo, usados.maximo) || !igual(l.minimo, usados.minimo));
}

} // namespace

FormHistograma::FormHistograma(const MembroHistograma &membro, const FabricaPainel &fabrica, QWidget *pai)
    : FormVistaGrafica(configDe(membro.form, {}, membro.titulo, Exportacao::Imagem), fabrica, pai), m_membro(membro) {
    chart().AddSeries(TSerie::Estilo::Barra).Active = false;
    chart().Bottom().Visible = false;
    if (!membro.tituloEixo.isEmpty())
        chart().Left().Title = texto(u"TChart.Axis.Left.Title.Caption"_s, membro.tituloEixo.toString());
    criarFaixaDoIntervalo();
    connect(cmdImprimir(), &QPushButton::clicked, this, &FormHistograma::cmdImprimir_Click);
    connect(cmdExport(), &QPushButton::clicked, this, &FormHistograma::cmdJPG_Click);
    CarregarCombos();
    painel()->abrir();
}

void FormHistograma::criarFaixaDoIntervalo() {
    m_cboIntervalo = new QComboBox;
    m_cboIntervalo->setObjectName(u"cboIntervaloHistograma"_s);
    m_cboIntervalo->setEditable(true);
    m_cboIntervalo->setInsertPolicy(QComboBox::NoInsert);
    auto *etiqueta = new QLabel(texto(u"lblIntervaloHistograma.Caption"_s, u"Intervalo do Histograma:"_s));
    etiqueta->setObjectName(u"lblIntervaloHistograma"_s);
    etiqueta->setBuddy(m_cboIntervalo);
    m_cboIntervalo->setAccessibleName(etiqueta->text());
    painel()->juntarOpcao({etiqueta, m_cboIntervalo});
    m_lblTotal = lblMedia();
    m_lblTotal->setObjectName(u"lblTotal"_s);
}

void FormHistograma::CarregarCombos() {
    Rotina(objectName(), "CarregarCombos", [this] {
        m_cboIntervalo->clear();
        m_cboIntervalo->addItems(histograma::entradasDoCombo());
        m_cboIntervalo->setCurrentText(
            modINI::GetSetting(estado().NomePrograma, m_membro.form.toString(), chaveHist, intervaloPorOmissao));
    });
}

void FormHistograma::esvaziar() {
    FormVistaGrafica::esvaziar();
    chart().Series(0).Clear();
    chart().Bottom().Visible = false;
    m_lblTotal->clear();
    chart().setRodape({});
    m_lidos = 0;
    m_regra = {};
}

// A width that does not work leaves the picture and the width of the settings as they are.
void FormHistograma::preparar() {
    m_intervalo = histograma::lerIntervalo(m_cboIntervalo->currentText());
    modINI::SaveSetting(estado().NomePrograma, m_membro.form.toString(), chaveHist, m_cboIntervalo->currentText());
}

bool FormHistograma::carregar(const Vigia &vigia) {
    const QList<Escolha> &seleccao = m_mostrado.escolhas;
    m_textoSensores = listaDe(seleccao);
    m_regra = regraDe(seleccao.last().chave);
    const std::vector<double> valores = lerValores(vigia);
    m_lidos = valores.size();
    const auto passar = [&] {
        vigia.passar();
        pararSePedido();
    };
    mostrarBaldes(histograma::contar(valores, m_intervalo, m_regra.limites, passar, extremosDe(seleccao)));
    return true;
}

std::vector<double> FormHistograma::lerValores(const Vigia &vigia) {
    std::vector<double> valores;
    const QList<Escolha> escolhas = m_mostrado.escolhas;
    for (qsizetype i = 0; i < escolhas.size(); ++i)
        lerLinhas(escolhas[i], i + 1 == escolhas.size(), vigia, valores);
    return valores;
}

// With the limits of each where the colours follow them: they may have changed.
void FormHistograma::lerLinhas(const Escolha &escolha, bool comLimites, const Vigia &vigia,
                               std::vector<double> &valores) {
    const TabelaLeituras &t = m_membro.tabela;
    const Intervalo intervalo = m_mostrado.intervalo();
    const QString limitesOuNada = comLimites ? u", " + t.limites.toString() : QString();
    Recordset rs = cnBD().consultar(u"SELECT "_s + t.valor + u", " + t.data + limitesOuNada + u" FROM " + t.nome +
                                        u" WHERE " + t.data + u" BETWEEN ? AND ? AND " + escolhas::condicao(t.chave),
                                    QVariantList{intervalo.inicio, intervalo.fim} + escolhas::valores(escolha.chave));
    CacheLimites cache;
    while (rs.avancar()) {
        if (const std::optional<double> valor = valorDe(rs, 0))
            valores.push_back(*valor);
        else
            m_ilegiveis.juntar(t.nome, escolha.textoDaChave(), rs.texto(1), rs.texto(0));
        if (comLimites && !m_regra.mudaram) {
            int tamanho = 0;
            const char *bytes = rs.utf8(2, tamanho);
            m_regra.mudaram = outros(cache, bytes, tamanho, m_regra.limites);
        }
        vigia.passar();
        pararSePedido();
    }
}

// From the first record stored, whatever its date.
FormHistograma::Regra FormHistograma::regraDe(const QStringList &chave) {
    const TabelaLeituras &t = m_membro.tabela;
    Recordset rs = cnBD().consultar(u"SELECT "_s + t.limites + u", " + t.data + u" FROM " + t.nome + u" WHERE " +
                                        escolhas::condicao(t.chave) + u" ORDER BY " + dialecto::ordem + u" LIMIT 1",
                                    escolhas::valores(chave));
    if (!rs.avancar())
        return {};
    const double segundos = rs.segundos(1);
    const Limites limites = lerLimites(rs.texto(0));
    if (limites.ilegivel)
        m_ilegiveis.juntar(t.nome, Escolha{chave, {}}.textoDaChave(), rs.texto(1), rs.texto(0));
    return {limites, std::isnan(segundos) ? rs.texto(1) : datas::textoDataHora(datas::instanteDe(segundos))};
}

QString FormHistograma::fraseDosLimites() const {
    constexpr qsizetype maximoDoNome = 60;
    if (m_regra.desde.isEmpty())
        return {};
    const auto limite = [](double l) { return std::isnan(l) ? u"NA"_s : modDoubleTratamento::NumeroParaTexto(l); };
    const QString nome = textoMostrado::linha(m_mostrado.escolhas.last().nome, maximoDoNome);
    QString frase = modTraducoes::texto(u"KelvarkAUX"_s, u"HistLimites"_s,
                                        u"Cores pelos limites de %1: máximo %2, mínimo %3, desde %4."_s)
                        .arg(nome, limite(m_regra.limites.maximo), limite(m_regra.limites.minimo), m_regra.desde);
    if (m_regra.mudaram)
        frase += u' ' + modTraducoes::texto(u"KelvarkAUX"_s, u"HistLimitesMudaram"_s,
                                            u"Os limites mudaram dentro do intervalo escolhido."_s);
    return frase;
}

QString FormHistograma::semDesenho() const {
    if (m_lidos == 0 || !m_lida)
        return FormVistaGrafica::semDesenho();
    return modTraducoes::texto(u"KelvarkAUX"_s, u"HistSemBarras"_s,
                               u"Nenhuma das leituras deste intervalo (%1) cabe numa barra."_s)
        .arg(m_lidos);
}

std::optional<histograma::Extremos> FormHistograma::extremosDe(const QList<Escolha> &seleccao) const {
    if (!m_membro.extremosSemDatas)
        return std::nullopt;
    const TabelaLeituras &t = m_membro.tabela;
    histograma::Extremos extremos{INFINITY, -INFINITY};
    for (const Escolha &escolha : seleccao) {
        // Not by the engine, to which any text is greater than a number.
        Recordset rs =
            cnBD().consultar(u"SELECT "_s + t.valor + u" FROM " + t.nome + u" WHERE " + escolhas::condicao(t.chave),
                             escolhas::valores(escolha.chave));
        while (rs.avancar()) {
            const double valor = valorDe(rs, 0).value_or(std::numeric_limits<double>::quiet_NaN());
            extremos.menor = std::fmin(extremos.menor, valor);
            extremos.maior = std::fmax(extremos.maior, valor);
        }
    }
    return extremos.menor <= extremos.maior ? std::optional(extremos) : std::nullopt;
}

QString FormHistograma::listaDe(const QList<Escolha> &seleccao) const {
    const Intervalo intervalo = m_mostrado.intervalo();
    QList<impressao::Nomeado> nomes;
    for (const Escolha &escolha : seleccao)
        nomes.append({escolha.nome, m_membro.parenteses ? m_membro.parenteses(m_membro.tabela, escolha, intervalo)
                                                        : escolha.textoDaChave()});
    return impressao::listaDeSensores(texto(u"PRINT1"_s, u"Sensores: "_s), nomes);
}

void FormHistograma::mostrarBaldes(const std::vector<histograma::Balde> &baldes) {
    TSerie &barras = chart().Series(0);
    double total = 0;
    double maior = 0;
    for (const histograma::Balde &balde : baldes) {
        barras.Add(double(balde.total), balde.rotulo(), balde.estado);
        total += double(balde.total);
        maior = std::max(maior, double(balde.total));
    }
    barras.Active = true;
    barras.Color = cores::leituras;
    TEixo &esquerdo = chart().Left();
    esquerdo.Automatic = false;
    esquerdo.Minimum = 0;
    esquerdo.SoInteiros = true; // counts
    esquerdo.Maximum = maior > 0 ? maior * folgaNoTopo + maior : 1;
    chart().Bottom().Visible = !baldes.empty();
    chart().setRodape(baldes.empty() ? QString() : fraseDosLimites());
    if (total > 0)
        m_lblTotal->setText(texto(u"NL"_s, u"N° de Leituras = "_s) + QString::number(qint64(total)));
}

void FormHistograma::cmdImprimir_Click() {
    Rotina(objectName(), "cmdImprimir_Click", [this] {
        saidaGrafico::Pagina pagina;
        pagina.relatorio = u"DataReportHistogramaPrincipal"_s;
        pagina.titulo = texto(u"PrintTitle"_s, m_membro.tituloImpressao.toString()) + sufixoZoom();
        pagina.descricao = m_mostrado.descricao;
        pagina.media = m_lblTotal->text();
        pagina.sensores = m_textoSensores;
        saidaGrafico::imprimir(chart(), pagina, window());
    });
}

void FormHistograma::cmdJPG_Click() {
    Rotina(objectName(), "cmdJPG_Click", [this] { saidaGrafico::exportarJPG(chart(), m_membro.baseJPG.toString()); });
}
