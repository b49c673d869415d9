#include "views/forms/formListagem.h"

#include "core/estado.h"
#include "core/eventos.h"
#include "core/literais.h"
#include "core/rotina.h"
#include "data/modMain.h"
#include "platform/report/JanelaRelatorio.h"
#include "views/forms/desenhosDeRelatorios.h"
#include "views/forms/frmEsperaPraCriarGrafico.h"
#include "views/forms/grelhaListagem.h"
#include "views/forms/painelVista.h"
#include "views/impressao.h"

#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QPointer>
#include <QPushButton>
#include <QTableView>

#include <algorithm>
#include <functional>
#include <optional>
#include <vector>

namespace {

constexpr int alturaPorOmissao = 7785; // twips
constexpr QSize tamanhoMinimo(10500, 6000);
constexpr int linhasSemEspera = 5000; // copied at once

FormVista::Config configDe(const MembroListagem &membro) {
    const QString form = membro.form.toString();
    const QString lugar = membro.formLugar.isEmpty() ? form : membro.formLugar.toString();
    // The width is written on closing and never read back.
    return {form,
            form + u".Caption",
            membro.titulo.toString(),
            {lugar, {}, 0, alturaPorOmissao},
            tamanhoMinimo,
            FormVista::Exportacao::Nenhuma};
}

// A cell that breaks the table goes between quotes, which programs that take tables understand.
QString celulaParaColar(QString texto) {
    if (!texto.contains(u'\t') && !texto.contains(u'\n') && !texto.startsWith(u'"'))
        return texto;
    return u'"' + texto.replace(u'"', u"\"\""_s) + u'"';
}

// Printed lines: the rows of the query that is shown, which stays this report's own when the listing is loaded anew.
class LinhasDaListagem : public FonteDeRelatorio {
public:
    LinhasDaListagem(const ModeloListagem &modelo, const MembroListagem &membro)
        : m_consulta(modelo.consulta()), m_total(modelo.rowCount()), m_membro(membro), m_cursor(m_consulta),
          m_ha(m_cursor.avancar()) {}
    QStringList campos() const override {
        QStringList nomes;
        for (const ColunaListagem &coluna : m_membro.colunas)
            nomes.append(coluna.campo.toString());
        return nomes;
    }
    qint64 total() const override { return m_total; }
    bool seguinte() override {
        m_linha = m_linha + 1 < m_daData.size() ? m_linha + 1 : (lerData(), 0);
        return !m_daData.empty();
    }
    QString texto(int campo) const override { return m_consulta.mostrado(m_daData[m_linha].second[campo], campo); }

private:
    // The rows of the next date, in the order in which the listing has them.
    void lerData() {
        m_daData.clear();
        QString data;
        for (; m_ha; m_ha = m_cursor.avancar()) {
            const Recordset &rs = m_cursor.linha();
            if (m_consulta.aceita && !m_consulta.aceita(rs))
                continue;
            QStringList textos;
            for (int i = 0; i < m_consulta.visiveis; ++i)
                textos.append(rs.texto(i));
            if (!m_daData.empty() && textos[m_consulta.colunaData] != data)
                break;
            data = textos[m_consulta.colunaData];
            m_daData.emplace_back(rs.inteiro(rs.colunas() - 1), textos);
        }
        std::ranges::stable_sort(m_daData, std::greater(), &std::pair<qint64, QStringList>::first);
    }

    const ConsultaListagem m_consulta;
    const qint64 m_total;
    const MembroListagem &m_membro;
    CursorListagem m_cursor;
    bool m_ha;                                            // the cursor stands on a row
    std::vector<std::pair<qint64, QStringList>> m_daData; // places in the order of storing, texts as stored
    size_t m_linha = 0;
};

} // namespace

FormListagem::FormListagem(const MembroListagem &membro, std::unique_ptr<FonteListagem> fonte, QWidget *pai)
    : FormVista(configDe(membro), pai), m_membro(membro), m_fonte(std::move(fonte)),
      m_painel(m_fonte->criarPainel(this)), m_grelha(new GrelhaListagem(this)) {
    criarGrelha();
    montar(m_painel, m_grelha);
    connect(m_painel, &PainelVista::carregar, this, &FormListagem::CarregarDadosNaGrelha);
    connect(cmdImprimir(), &QPushButton::clicked, this, &FormListagem::cmdImprimir_Click);
    connect(&m_modelo, &ModeloListagem::rowsInserted, this, [this](const QModelIndex &, int primeira, int ultima) {
        estenderEscolha(primeira, ultima);
        mostrarTotal();
    });
    connect(&m_modelo, &ModeloListagem::contagemTerminada, this, &FormListagem::mostrarTotal);
    m_painel->abrir();
}

FormListagem::~FormListagem() = default;

void FormListagem::criarGrelha() {
    m_grelha->setObjectName(u"DataGrid"_s);
    m_grelha->setAccessibleName(windowTitle());
    m_grelha->setModel(&m_modelo);
    m_grelha->setAlternatingRowColors(true);
    m_grelha->setWordWrap(false);
    m_grelha->setSelectionMode(QAbstractItemView::ContiguousSelection);
    m_grelha->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                              QAbstractItemView::AnyKeyPressed);
    m_grelha->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    // Users cannot resize columns or rows, so that no sizes need be kept.
    m_grelha->horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_grelha->horizontalHeader()->setSectionsClickable(false);
    m_grelha->horizontalHeader()->setHighlightSections(false);
    m_grelha->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_grelha->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);
    m_grelha->verticalHeader()->hide();
    m_grelha->installEventFilter(this);
}

QString FormListagem::tituloDe(const ColunaListagem &coluna) const {
    return texto(coluna.chave.toString(), coluna.omissao.toString()).trimmed();
}

// The design width holds for usual fonts; a head or a date must never be cut.
int FormListagem::larguraDe(const ColunaListagem &coluna) const {
    if (coluna.largura == 0)
        return 0;
    const QFontMetrics metrica = m_grelha->fontMetrics();
    const int algarismos = coluna.largura > 1500 ? 19 : 8;
    const int conteudo =
        std::max(metrica.horizontalAdvance(QString(algarismos, u'0')), metrica.horizontalAdvance(tituloDe(coluna)));
    return std::max(lugar::pixeis(coluna.largura), conteudo + 24);
}

// All columns side by side.
int FormListagem::larguraDeDesenho() const {
    int largura = style()->pixelMetric(QStyle::PM_ScrollBarExtent) + 2 * m_grelha->frameWidth();
    for (const ColunaListagem &coluna : m_membro.colunas)
        largura += larguraDe(coluna);
    return largura;
}

void FormListagem::aplicarColunas() {
    for (int i = 0; i < int(m_membro.colunas.size()); ++i) {
        const ColunaListagem &coluna = m_membro.colunas[size_t(i)];
        m_grelha->setColumnHidden(i, coluna.largura == 0);
        if (coluna.largura == 0)
            continue;
        m_modelo.setHeaderData(i, Qt::Horizontal, tituloDe(coluna), Qt::DisplayRole);
        m_grelha->setColumnWidth(i, larguraDe(coluna));
    }
    m_grelha->horizontalHeader()->setStretchLastSection(true);
}

void FormListagem::CarregarDadosNaGrelha() {
    const Vigia vigia(this);
    Rotina(objectName(), "CarregarDadosNaGrelha", [this] {
        m_modelo.fechar();
        m_mostrado = m_painel->confirmado();
        m_modelo.abrir(m_fonte->consulta());
        aplicarColunas();
        m_grelha->scrollToTop();
    });
    if (!vigia.vivo())
        return;
    cmdImprimir()->setEnabled(!m_modelo.vazio());
    mostrarTotal();
    m_painel->fechar();
}

void FormListagem::mostrarTotal() {
    cmdImprimir()->setEnabled(!m_modelo.vazio());
    QString legenda;
    if (!m_modelo.vazio())
        legenda = texto(u"Linhas"_s, u"Linhas: "_s) + estado().ambiente.locale.toString(m_modelo.rowCount());
    if (!m_modelo.contado())
        legenda += u" ...";
    lblMedia()->setText(legenda);
}

// While rows are still being counted, a selection of all means those to come as well.
void FormListagem::estenderEscolha(int primeiraNova, int ultimaNova) {
    const QItemSelection escolha = m_grelha->selectionModel()->selection();
    if (primeiraNova == 0 || escolha.size() != 1 || escolha.first().top() > 0 ||
        escolha.first().bottom() != primeiraNova - 1)
        return;
    const QItemSelectionRange &area = escolha.first();
    m_grelha->selectionModel()->select({m_modelo.index(0, area.left()), m_modelo.index(ultimaNova, area.right())},
                                       QItemSelectionModel::Select);
}

QItemSelectionRange FormListagem::areaEscolhida() const {
    const QItemSelection escolha = m_grelha->selectionModel()->selection();
    return escolha.isEmpty() ? QItemSelectionRange() : escolha.first();
}

// The selection as tabbed text, as tables are pasted everywhere, its notes at full length: all of it, or nothing when
// the user stops.
void FormListagem::copiar() {
    Rotina(objectName(), "copiar", [this] {
        QItemSelectionRange area = areaEscolhida();
        if (!area.isValid())
            return;
        const bool porContar = !m_modelo.contado() && area.height() == m_modelo.rowCount();
        const Vigia vigia(this);
        std::optional<CargaEmCurso> carga;
        bool parar = false;
        if (porContar || area.height() > linhasSemEspera) {
            carga.emplace(this, Trabalho::Copia);
            connect(carga->espera(), &frmEsperaPraCriarGrafico::cancelar, carga->espera(), [&parar] { parar = true; });
        }
        while (porContar && !m_modelo.contado() && !parar)
            vigia.forcar();
        area = areaEscolhida();
        QString tabela;
        for (int l = area.top(); l <= area.bottom() && !parar; ++l) {
            QStringList linha;
            for (int c = area.left(); c <= area.right(); ++c)
                if (!m_grelha->isColumnHidden(c))
                    linha.append(celulaParaColar(m_modelo.index(l, c).data(Qt::ToolTipRole).toString()));
            tabela += linha.join(u'\t') + u'\n';
            if (carga)
                vigia.passarLinha();
        }
        if (!parar)
            QApplication::clipboard()->setText(tabela);
    });
}

bool FormListagem::eventFilter(QObject *objecto, QEvent *evento) {
    if (objecto == m_grelha && evento->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent *>(evento)->matches(QKeySequence::Copy)) {
        copiar();
        return true;
    }
    return FormVista::eventFilter(objecto, evento);
}

void FormListagem::cmdImprimir_Click() {
    Rotina(objectName(), "cmdImprimir_Click", [this] {
        if (m_modelo.vazio())
            return;
        std::unique_ptr<DataReport> relatorio = criarRelatorio(m_membro.relatorio.toString());
        const QString titulo = texto(m_membro.chaveImpressao.toString(), m_membro.tituloImpressao.toString());
        relatorio->rotulo(u"Section4"_s, u"lblTitulo"_s, titulo);
        relatorio->rotulo(u"Section4"_s, u"lblDescricao"_s, m_mostrado.descricao);
        for (const auto &[rotulo, cabecalho] : m_fonte->cabecalhos())
            relatorio->rotulo(u"Section4"_s, rotulo, cabecalho);
        relatorio->rotulo(u"Section3"_s, u"lblDataHora"_s, impressao::dataHora());
        for (const ColunaListagem &coluna : m_membro.colunas) {
            if (coluna.rotulo.isEmpty())
                continue;
            relatorio->rotulo(u"Section2"_s, coluna.rotulo.toString(),
                              texto(coluna.chaveRotulo.toString(), coluna.omissaoRotulo.toString()).trimmed());
            if (ControloDeRelatorio *caixa = relatorio->Sections(u"Section1"_s)->controlo(coluna.caixa.toString()))
                caixa->DataField = coluna.campo.toString();
        }
        relatorio->setDataSource(std::make_unique<LinhasDaListagem>(m_modelo, m_membro));
        const QPointer<JanelaRelatorio> janela = new JanelaRelatorio(std::move(relatorio), titulo, window());
        const auto ligada = connect(this, &QObject::destroyed, janela.data(), &QWidget::close);
        // A note is not written under their open cursor: it sees the database as it was when it began.
        const QPointer<QTableView> grelha = m_grelha;
        const QAbstractItemView::EditTriggers edicao = grelha->editTriggers();
        grelha->setEditTriggers(QAbstractItemView::NoEditTriggers);
        janela->setPasta([] { return modMain::CriarCaminhoJPG(); });
        janela->mostrar();
        if (grelha)
            grelha->setEditTriggers(edicao);
        disconnect(ligada);
    });
}
