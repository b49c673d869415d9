#include "views/forms/painelSensores.h"

#include "core/literais.h"
#include "core/modTraducoes.h"
#include "core/rotina.h"
#include "core/textoMostrado.h"
#include "platform/forms/grelha.h"
#include "platform/forms/lugar.h"
#include "views/impressao.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

constexpr int larguraGrupos = 3885; // twips
constexpr int alturaGrupos = 3165;
constexpr int letrasDoGrupo = 60;
constexpr int larguraColunaId = 110; // pixels

int larguraDoId(const QWidget *w) {
    const int texto = w->fontMetrics().horizontalAdvance(QString(sensores::tamanhoDoId, u'0')) + 14;
    return std::max(larguraColunaId, texto);
}

} // namespace

PainelSensores::PainelSensores(const ConfigPainel &config, QWidget *pai)
    : PainelVista(config.form, pai), m_config(config) {
    const QString formTodos = config.formTodos.isEmpty() ? config.form : config.formTodos;
    m_textoTodos = modTraducoes::texto(modTraducoes::seccaoDe(formTodos), u"Grupos.Caption"_s, u"Todos os Sensores"_s);
    criarListas();
    criarGrupos();
    CarregarListaGeral(sensores::tagTodos.toString());
}

void PainelSensores::criarListas() {
    m_cmdGrupos = new QToolButton;
    m_cmdGrupos->setObjectName(u"cmdGrupos"_s);
    m_cmdGrupos->setText(texto(u"Grupos.Caption"_s, u"Todos os Sensores"_s));
    m_cmdGrupos->setAccessibleName(m_cmdGrupos->text());
    m_cmdGrupos->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_cmdGrupos->setArrowType(Qt::DownArrow);
    m_cmdGrupos->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    m_cmdGrupos->setMinimumWidth(lugar::pixeis(larguraGrupos));
    connect(m_cmdGrupos, &QToolButton::clicked, this, &PainelSensores::cmdGrupos_Click);

    const QStringList colunas{texto(u"colID.Caption"_s, u"ID"_s), texto(u"Nome.Caption"_s, u"Nome"_s)};
    m_grdSensoresAll = new Grelha(u"grdSensoresAll"_s);
    m_grdSensoresSel = new Grelha(u"grdSensoresSel"_s);
    for (Grelha *grelha : {m_grdSensoresAll, m_grdSensoresSel}) {
        grelha->setColunas(colunas);
        grelha->setColumnWidth(0, larguraDoId(this));
        grelha->setMinimumWidth(lugar::pixeis(larguraGrupos));
    }
    auto *sel = new QLabel(texto(u"Sel.Caption"_s, u"Sensores Seleccionados"_s));
    sel->setObjectName(u"Sel"_s);
    sel->setBuddy(m_grdSensoresSel);
    m_grdSensoresAll->setAccessibleName(m_textoTodos);
    m_grdSensoresSel->setAccessibleName(sel->text());
    connect(m_grdSensoresAll, &Grelha::RequestEdit, this, &PainelSensores::AdicionarSondaSel);
    connect(m_grdSensoresSel, &Grelha::RequestEdit, this, &PainelSensores::EliminarSondaSel);

    auto *botoes = new QVBoxLayout;
    botoes->addStretch();
    botoes->addWidget(criarBotao(u"cmdAdicionar"_s, u"›"_s, u"Adicionar"_s, &PainelSensores::AdicionarSondaSel));
    botoes->addWidget(
        criarBotao(u"cmdAdicionarAll"_s, u"»"_s, u"Adicionar todos"_s, &PainelSensores::AdicionarSondaSelAll));
    botoes->addSpacing(fontMetrics().height() / 2);
    botoes->addWidget(criarBotao(u"cmdRemover"_s, u"‹"_s, u"Remover"_s, &PainelSensores::EliminarSondaSel));
    botoes->addWidget(criarBotao(u"cmdRemoverAll"_s, u"«"_s, u"Remover todos"_s, &PainelSensores::EliminarSondaSelAll));
    botoes->addStretch();

    auto *grelha = new QGridLayout;
    grelha->addWidget(m_cmdGrupos, 0, 0);
    grelha->addWidget(sel, 0, 2);
    grelha->addWidget(m_grdSensoresAll, 1, 0);
    grelha->addLayout(botoes, 1, 1);
    grelha->addWidget(m_grdSensoresSel, 1, 2);
    grelha->setColumnStretch(0, 1);
    grelha->setColumnStretch(2, 1);
    areaDeEscolha()->addLayout(grelha);
}

QToolButton *PainelSensores::criarBotao(const QString &nome, const QString &simbolo, const QString &dica,
                                        void (PainelSensores::*accao)()) {
    auto *botao = new QToolButton;
    botao->setObjectName(nome);
    botao->setText(simbolo);
    const QString traduzida = texto(nome + u".ToolTip", dica);
    botao->setToolTip(traduzida);
    botao->setAccessibleName(traduzida);
    QFont fonte = botao->font();
    fonte.setPointSizeF(fonte.pointSizeF() * 1.3);
    botao->setFont(fonte);
    botao->setMinimumWidth(2 * fontMetrics().height());
    connect(botao, &QToolButton::clicked, this, accao);
    return botao;
}

void PainelSensores::criarGrupos() {
    m_picGrupos = new QFrame(this);
    m_picGrupos->setObjectName(u"picGrupos"_s);
    m_picGrupos->setFrameStyle(QFrame::StyledPanel | QFrame::Raised);
    m_picGrupos->setAutoFillBackground(true);
    m_picGrupos->hide();
    m_grdGrupos = new Grelha(u"grdGrupos"_s);
    m_grdGrupos->setColunas({u"ID"_s, u"Nome"_s});
    m_grdGrupos->setColumnHidden(0, true);
    m_grdGrupos->horizontalHeader()->hide();
    m_grdGrupos->setFrameShape(QFrame::NoFrame);
    m_grdGrupos->setAccessibleName(m_textoTodos);
    auto *disposicao = new QVBoxLayout(m_picGrupos);
    disposicao->setContentsMargins(1, 1, 1, 1);
    disposicao->addWidget(m_grdGrupos);
    connect(m_grdGrupos, &Grelha::RequestEdit, this, &PainelSensores::grdGrupos_RequestEdit);
    connect(m_grdGrupos, &Grelha::clicked, this, [this](const QModelIndex &i) { grdGrupos_RequestEdit(i.row()); });
    m_grdGrupos->installEventFilter(this);
}

// Reads first and fills then: a failure leaves the lists as they are. A second wish that comes in while the rows are
// read is served afterwards.
void PainelSensores::CarregarListaGeral(const QString &tag) {
    m_tagPendente = tag;
    if (m_aEncher)
        return;
    m_aEncher = true;
    const Vigia vigia(this);
    while (vigia.vivo() && !m_tagPendente.isNull()) {
        const QString seguinte = std::exchange(m_tagPendente, QString());
        Rotina("PainelSensores.CarregarListaGeral", [&] { encher(seguinte); });
    }
    if (vigia.vivo())
        m_aEncher = false;
}

void PainelSensores::encher(const QString &tag) {
    const QList<Sensor> lista = sensores::listar(*m_config.regra, tag, Vigia(this));
    m_grdSensoresAll->limpar();
    m_grdSensoresSel->limpar();
    for (const Sensor &sensor : lista) {
        const int linha = m_grdSensoresAll->adicionarLinha({sensor.id, sensor.nome});
        if (sensor.desactivado) {
            m_grdSensoresAll->setEstadoDaLinha(linha, EstadoDaLinha::Desactivada);
        } else {
            m_grdSensoresAll->setEstadoDaLinha(linha, m_estadoAll);
            m_estadoAll = riscas::trocar(m_estadoAll);
        }
    }
    m_grdSensoresAll->setLinhaActual(0);
}

void PainelSensores::CarregaListaGrupos() {
    Rotina("PainelSensores.CarregaListaGrupos", [this] {
        const QList<Filtro> filtros = sensores::listarFiltros(m_textoTodos, Vigia(this));
        m_grdGrupos->limpar();
        int actual = 0;
        for (const Filtro &filtro : filtros) {
            const int linha = m_grdGrupos->adicionarLinha({filtro.tag, filtro.texto});
            m_grdGrupos->setEstadoDaLinha(linha, m_estadoAll);
            m_estadoAll = riscas::trocar(m_estadoAll);
            if (filtro.tag == tagDoFiltro())
                actual = linha;
        }
        m_grdGrupos->setLinhaActual(actual);
    });
}

void PainelSensores::cmdGrupos_Click() {
    if (!m_picGrupos->isHidden()) {
        fecharGrupos();
        return;
    }
    const Vigia vigia(this);
    CarregaListaGrupos();
    if (!vigia.vivo())
        return;
    const QPoint canto = m_cmdGrupos->geometry().bottomLeft() + QPoint(0, 1);
    const QSize lista(m_cmdGrupos->width(), m_grdSensoresAll->geometry().bottom() - canto.y() + 1);
    const QSize desenho(lugar::pixeis(larguraGrupos), lugar::pixeis(alturaGrupos));
    m_picGrupos->setGeometry(QRect(canto, desenho.expandedTo(lista)));
    m_picGrupos->raise();
    m_picGrupos->show();
    m_cmdGrupos->setArrowType(Qt::UpArrow);
    m_grdGrupos->setFocus();
}

void PainelSensores::fecharGrupos() {
    if (m_picGrupos->isHidden())
        return;
    m_picGrupos->hide();
    m_cmdGrupos->setArrowType(Qt::DownArrow);
    m_grdSensoresAll->setFocus();
}

int PainelSensores::larguraPreferida() const {
    constexpr int letrasDoNome = 32;
    return 2 * (larguraDoId(this) + letrasDoNome * fontMetrics().averageCharWidth()) + 6 * fontMetrics().height();
}

void PainelSensores::fecharSubpaineis() {
    fecharGrupos();
}

void PainelSensores::grdGrupos_RequestEdit(int linha) {
    if (linha < 0 || m_picGrupos->isHidden())
        return;
    const QString tag = m_grdGrupos->celula(linha, 0);
    m_grdSensoresAll->limpar();
    m_grdSensoresSel->limpar();
    const QString grupo = textoMostrado::linha(m_grdGrupos->celula(linha, 1), letrasDoGrupo);
    m_cmdGrupos->setText(QString(grupo).replace(u"&"_s, u"&&"_s));
    m_cmdGrupos->setAccessibleName(grupo);
    m_filtro = tag;
    const Vigia vigia(this);
    CarregarListaGeral(tag);
    if (vigia.vivo())
        fecharGrupos();
}

bool PainelSensores::eventFilter(QObject *objecto, QEvent *evento) {
    if (objecto == m_grdGrupos && evento->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent *>(evento)->key() == Qt::Key_Escape) {
        fecharGrupos();
        return true;
    }
    return PainelVista::eventFilter(objecto, evento);
}

void PainelSensores::mover(Grelha *de, Grelha *para, EstadoDaLinha &estadoDe, EstadoDaLinha &estadoPara, int linha) {
    const EstadoDaLinha estado = de->estadoDaLinha(linha);
    const int nova = para->adicionarLinha({de->celula(linha, 0), de->celula(linha, 1)});
    para->setEstadoDaLinha(nova, estado == EstadoDaLinha::Desactivada ? estado : estadoPara);
    de->removerLinha(linha);
    estadoDe = de->riscar();
    estadoPara = para->riscar();
    para->setLinhaActual(nova);
}

void PainelSensores::moverTodas(Grelha *de, Grelha *para, EstadoDaLinha &estadoDe, EstadoDaLinha &estadoPara) {
    for (int linha = 0; linha < de->linhas(); ++linha) {
        const int nova = para->adicionarLinha({de->celula(linha, 0), de->celula(linha, 1)});
        if (de->estadoDaLinha(linha) == EstadoDaLinha::Desactivada)
            para->setEstadoDaLinha(nova, EstadoDaLinha::Desactivada);
    }
    de->limpar();
    estadoDe = de->riscar();
    estadoPara = para->riscar();
    para->setLinhaActual(para->linhas() - 1);
}

void PainelSensores::AdicionarSondaSel() {
    if (const int linha = m_grdSensoresAll->linhaActual(); linha >= 0) {
        mover(m_grdSensoresAll, m_grdSensoresSel, m_estadoAll, m_estadoSel, linha);
        m_grdSensoresAll->setLinhaActual(linha);
    }
}

void PainelSensores::EliminarSondaSel() {
    if (const int linha = m_grdSensoresSel->linhaActual(); linha >= 0) {
        mover(m_grdSensoresSel, m_grdSensoresAll, m_estadoSel, m_estadoAll, linha);
        m_grdSensoresSel->setLinhaActual(linha);
    }
}

void PainelSensores::AdicionarSondaSelAll() {
    moverTodas(m_grdSensoresAll, m_grdSensoresSel, m_estadoAll, m_estadoSel);
}

void PainelSensores::EliminarSondaSelAll() {
    moverTodas(m_grdSensoresSel, m_grdSensoresAll, m_estadoSel, m_estadoAll);
}

QList<Escolha> PainelSensores::escolhas() const {
    QList<Escolha> lista;
    for (int i = 0; i < m_grdSensoresSel->linhas(); ++i)
        lista.append({{sensores::idDe(m_grdSensoresSel->celula(i, 0))}, m_grdSensoresSel->celula(i, 1)});
    return lista;
}

QString PainelSensores::descricao(const QString &inicio, const QString &fim) const {
    const int linhas = m_grdSensoresSel->linhas();
    const QString unico = linhas == 1 ? sensores::idDe(m_grdSensoresSel->celula(0, 0)) : QString();
    return impressao::descricao(tagDoFiltro(), unico, inicio, fim, m_config.semMac);
}

QWidget *PainelSensores::primeiroControlo() const {
    return m_grdSensoresAll;
}

FabricaPainel fabricaSensores(const ConfigPainel &config) {
    return [config](QWidget *vista) { return new PainelSensores(config, vista); };
}
