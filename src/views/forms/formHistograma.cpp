#include "views/forms/formHistograma.h"

#include "core/estado.h"
#include "core/eventos.h"
#include "core/literais.h"
#include "core/modINI.h"
#include "core/modTraducoes.h"
#include "core/rotina.h"
#include "data/ligacao.h"
#include "data/recordset.h"
#include "platform/chart/TChart.h"
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
    const QByteArray nome = fonte("CarregarCombos");
    Rotina(nome.constData(), [this] {
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
}

void FormHistograma::carregar(const Vigia &vigia) {
    modINI::SaveSetting(estado().NomePrograma, m_membro.form.toString(), chaveHist, m_cboIntervalo->currentText());
    const QList<Escolha> seleccao = painel()->escolhas();
    m_textoSensores = listaDe(seleccao);
    if (seleccao.isEmpty())
        return;
    const double intervalo = histograma::lerIntervalo(m_cboIntervalo->currentText());
    const std::vector<double> valores = lerValores(seleccao, vigia);
    // The limits come from one sensor only, the last one chosen.
    const Limites limites = limitesDe(seleccao.last().chave);
    const auto opcional = [](double l) { return std::isnan(l) ? std::optional<double>() : std::optional(l); };
    const auto passar = [&] {
        vigia.passar();
        pararSePedido();
    };
    mostrarBaldes(histograma::contar(valores, intervalo, opcional(limites.minimo), opcional(limites.maximo), passar,
                                     extremosDe(seleccao)));
}

std::vector<double> FormHistograma::lerValores(const QList<Escolha> &seleccao, const Vigia &vigia) {
    std::vector<double> valores;
    const TabelaLeituras &t = m_membro.tabela;
    const Intervalo intervalo(painel()->inicio(), painel()->fim());
    const QString sql = u"SELECT "_s + t.valor + u", " + t.data + u" FROM " + t.nome + u" WHERE " + t.data +
                        u" BETWEEN ? AND ? AND " + escolhas::condicao(t.chave);
    for (const Escolha &escolha : seleccao) {
        Recordset rs =
            cnBD().consultar(sql, QVariantList{intervalo.inicio, intervalo.fim} + escolhas::valores(escolha.chave));
        while (rs.avancar()) {
            if (const std::optional<double> valor = valorDe(rs, 0))
                valores.push_back(*valor);
            else
                m_ilegiveis.juntar(t.nome, escolha.textoDaChave(), rs.texto(1), rs.texto(0));
            vigia.passar();
            pararSePedido();
        }
    }
    return valores;
}

// From the first record stored, whatever its date.
Limites FormHistograma::limitesDe(const QStringList &chave) {
    const TabelaLeituras &t = m_membro.tabela;
    Recordset rs = cnBD().consultar(u"SELECT "_s + t.limites + u", " + t.data + u" FROM " + t.nome + u" WHERE " +
                                        escolhas::condicao(t.chave) + u" ORDER BY rowid LIMIT 1",
                                    escolhas::valores(chave));
    if (!rs.avancar())
        return {};
    const Limites limites = lerLimites(rs.texto(0));
    if (limites.ilegivel)
        m_ilegiveis.juntar(t.nome, Escolha{chave, {}}.textoDaChave(), rs.texto(1), rs.texto(0));
    return limites;
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
    const Intervalo intervalo(painel()->inicio(), painel()->fim());
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
        barras.Add(double(balde.total), balde.rotulo(), balde.cor);
        total += double(balde.total);
        maior = std::max(maior, double(balde.total));
    }
    barras.Active = true;
    barras.ColorEachPoint = true;
    TEixo &esquerdo = chart().Left();
    esquerdo.Automatic = false;
    esquerdo.Minimum = 0;
    esquerdo.Maximum = maior > 0 ? maior * folgaNoTopo + maior : 1;
    chart().Bottom().Visible = !baldes.empty();
    if (total > 0)
        m_lblTotal->setText(texto(u"NL"_s, u"N° de Leituras = "_s) + QString::number(qint64(total)));
}

void FormHistograma::cmdImprimir_Click() {
    const QByteArray nome = fonte("cmdImprimir_Click");
    Rotina(nome.constData(), [this] {
        saidaGrafico::Pagina pagina;
        pagina.relatorio = u"DataReportHistogramaPrincipal"_s;
        pagina.titulo = texto(u"PrintTitle"_s, m_membro.tituloImpressao.toString()) + sufixoZoom();
        pagina.descricao = painel()->descricao(m_inicio, m_fim);
        pagina.media = m_lblTotal->text();
        pagina.sensores = m_textoSensores;
        saidaGrafico::imprimir(chart(), pagina, window());
    });
}

void FormHistograma::cmdJPG_Click() {
    const QByteArray nome = fonte("cmdJPG_Click");
    Rotina(nome.constData(), [this] { saidaGrafico::exportarJPG(chart(), m_membro.baseJPG.toString()); });
}
