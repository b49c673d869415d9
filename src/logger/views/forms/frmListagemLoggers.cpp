#include "logger/views/forms/frmListagemLoggers.h"

#include "core/literais.h"
#include "core/modTraducoes.h"
#include "core/rotina.h"
#include "logger/views/forms/painelMissoes.h"
#include "platform/forms/grelha.h"
#include "platform/forms/lugar.h"
#include "platform/forms/registoForms.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QGroupBox>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace {

const QString nomeDoForm = u"frmListagemLoggers"_s;
const lugar::Regra regraDoLugar{nomeDoForm, {}, 13400, 7785}; // twips

struct Opcao {
    QStringView nome, chave, omissao;
};
// By their number in listaMissoes::Ordem.
constexpr Opcao opcoes[] = {
    {u"optOrdenacao_ID", u"lblOrdenacao_ID.Caption", u"ID"},
    {u"optOrdenacao_Reg", u"lblOrdenacao_Reg.Caption", u"Registador"},
    {u"optOrdenacao_Prog", u"lblOrdenacao_Prog.Caption", u"Programação"},
    {u"optOrdenacao_FimMissao", u"lblOrdenacao_FimMissao.Caption", u"Fim de Missão"},
};

} // namespace

frmListagemLoggers::frmListagemLoggers(QWidget *pai) : QWidget(pai), m_ordens(new QButtonGroup(this)) {
    setObjectName(nomeDoForm);
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(texto(u"frmListagemLoggers.Caption"_s, u"Listagem de Missões"_s));
    setAccessibleName(windowTitle());
    m_cmdImprimir = new QPushButton(texto(u"ReyFrameImprimir.Caption"_s, u" Ver Gráfico"_s).trimmed());
    m_cmdImprimir->setObjectName(u"cmdImprimir"_s);
    m_cmdImprimir->setAccessibleName(m_cmdImprimir->text());
    connect(m_cmdImprimir, &QPushButton::clicked, this, &frmListagemLoggers::cmdImprimir_Click);
    criarGrelha();
    auto *cima = new QHBoxLayout;
    cima->addWidget(criarMissoes());
    cima->addWidget(criarOrdens());
    cima->addStretch();
    cima->addWidget(m_cmdImprimir, 0, Qt::AlignBottom);
    auto *disposicao = new QVBoxLayout(this);
    disposicao->addLayout(cima);
    disposicao->addWidget(m_grelha, 1);
    mudarVista(false);
}

QString frmListagemLoggers::texto(const QString &chave, const QString &omissao) const {
    return modTraducoes::texto(modTraducoes::seccaoDe(nomeDoForm), chave, omissao);
}

QCheckBox *frmListagemLoggers::criarCaixa(const QString &nome, const QString &omissao, bool concluidas) {
    auto *caixa = new QCheckBox(texto(nome + u".Caption", omissao));
    caixa->setObjectName(nome);
    caixa->setAccessibleName(caixa->text());
    connect(caixa, &QCheckBox::clicked, this, [this, concluidas] { mudarVista(concluidas); });
    return caixa;
}

QWidget *frmListagemLoggers::criarMissoes() {
    auto *moldura = new QGroupBox(texto(u"FrameMissoes.Caption"_s, u"Missões"_s));
    moldura->setObjectName(u"FrameMissoes"_s);
    m_chkEmCurso = criarCaixa(u"chkEmCurso"_s, u"Em Curso"_s, false);
    m_chkConcluidas = criarCaixa(u"chkConcluidas"_s, u"Concluidas"_s, true);
    auto *linha = new QHBoxLayout(moldura);
    linha->addWidget(m_chkEmCurso);
    linha->addWidget(m_chkConcluidas);
    return moldura;
}

QWidget *frmListagemLoggers::criarOrdens() {
    auto *moldura = new QGroupBox(texto(u"FrameOrd.Caption"_s, u"Ordenação"_s));
    moldura->setObjectName(u"FrameOrd"_s);
    auto *linha = new QHBoxLayout(moldura);
    for (const Opcao &opcao : opcoes) {
        auto *botao = new QRadioButton(texto(opcao.chave.toString(), opcao.omissao.toString()));
        botao->setObjectName(opcao.nome.toString());
        botao->setAccessibleName(botao->text());
        m_ordens->addButton(botao, int(m_ordens->buttons().size()));
        linha->addWidget(botao);
    }
    m_ordens->button(0)->setChecked(true);
    connect(m_ordens, &QButtonGroup::idClicked, this, [this] { CarregarDadosNaGrelha(m_concluidas); });
    return moldura;
}

void frmListagemLoggers::criarGrelha() {
    m_grelha = new Grelha(u"DataGrid"_s);
    m_grelha->setAccessibleName(windowTitle());
    m_grelha->setColunas({texto(u"ID.Caption"_s, u"ID"_s), texto(u"Reg.Caption"_s, u"Registador"_s),
                          texto(u"NMN.Caption"_s, u"Descrição da Missão"_s), texto(u"DescN.Caption"_s, u"N°"_s),
                          texto(u"ProgF.Caption"_s, u"Programação"_s),
                          texto(u"FimMissaoF.Caption"_s, u"Fim de Missão"_s)});
    const QFontMetrics letra = fontMetrics();
    const int larguras[] = {letra.horizontalAdvance(QString(17, u'0')), 26 * letra.averageCharWidth(),
                            28 * letra.averageCharWidth(), letra.horizontalAdvance(u"00000"_s),
                            letra.horizontalAdvance(u"00/00/0000 00:00:00"_s)};
    for (int i = 0; i < int(std::size(larguras)); ++i)
        m_grelha->setColumnWidth(i, larguras[i] + 16);
    connect(m_grelha, &Grelha::RequestEdit, this, &frmListagemLoggers::cmdImprimir_Click);
}

// The two boxes show which of the lists is seen.
void frmListagemLoggers::mudarVista(bool concluidas) {
    m_chkEmCurso->setChecked(!concluidas);
    m_chkConcluidas->setChecked(concluidas);
    Rotina("frmListagemLoggers.VerificarMissoesConcluidas", [] { listaMissoes::VerificarMissoesConcluidas(); });
    CarregarDadosNaGrelha(concluidas);
}

void frmListagemLoggers::CarregarDadosNaGrelha(bool concluidas) {
    Rotina("frmListagemLoggers.CarregarDadosNaGrelha", [&] {
        m_concluidas = concluidas;
        m_linhas = listaMissoes::listar(concluidas, listaMissoes::Ordem(m_ordens->checkedId()));
        m_grelha->limpar();
        for (const listaMissoes::Linha &l : m_linhas)
            m_grelha->adicionarLinha({l.chave.LoggerID, l.chave.Nomelogger, l.chave.DescricaoMissao, l.chave.Nmissao,
                                      l.DataProg, l.DataFimMissao});
        m_grelha->riscar();
        m_grelha->setLinhaActual(0);
    });
    m_cmdImprimir->setEnabled(m_grelha->linhas() > 0);
}

// The chart opens on the mission; one that is open already turns to it.
void frmListagemLoggers::cmdImprimir_Click() {
    Rotina("frmListagemLoggers.cmdImprimir_Click", [this] {
        const int linha = m_grelha->linhaActual();
        if (linha < 0)
            return;
        const ChaveMissao chave = m_linhas[linha].chave;
        QWidget *grafico = registoForms().abrir(u"frmGraficoLoggers"_s);
        auto *painel = grafico ? grafico->findChild<PainelMissoes *>() : nullptr;
        if (!painel)
            return;
        painel->CarregarListaGeral(); // it may be newer than the chart's list
        painel->seleccionar(chave);
        if (painel->missao() == chave)
            painel->cmdConfirmar_Click();
        else // deleted meanwhile
            CarregarDadosNaGrelha(m_concluidas);
    });
}

void frmListagemLoggers::showEvent(QShowEvent *evento) {
    QWidget::showEvent(evento);
    if (!std::exchange(m_reposto, true))
        lugar::repor(this, regraDoLugar);
}

void frmListagemLoggers::closeEvent(QCloseEvent *evento) {
    lugar::guardar(this, regraDoLugar);
    QWidget::closeEvent(evento);
}
