#include "manutencao/frmSensoresEdit.h"

#include "core/estado.h"
#include "core/eventos.h"
#include "core/modTraducoes.h"
#include "core/rotina.h"
#include "core/textoMostrado.h"
#include "data/copiaDatada.h"
#include "data/ligacao.h"
#include "data/recordset.h"
#include "platform/forms/grelha.h"
#include "platform/forms/lugar.h"
#include "platform/forms/registoForms.h"

#include <QDir>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QProgressBar>
#include <QPushButton>
#include <QScopeGuard>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>

namespace {

enum Coluna { colunaNome, colunaID, colunaNovoID };
const lugar::Regra regraDoLugar{u"frmSensoresEdit"_s, {}, 0, 0};
constexpr QSize tamanhoInicial(640, 600);
constexpr int atrasoDoResumoMs = 250;

QString texto(const QString &chave, const QString &omissao) {
    return modTraducoes::texto(u"VISTREL_frmSensoresEdit"_s, chave, omissao);
}

QString numero(qint64 n) {
    return estado().ambiente.locale.toString(n);
}

} // namespace

frmSensoresEdit::frmSensoresEdit(QWidget *dono)
    : QDialog(dono), m_grelha(new Grelha(u"grdSensores"_s)), m_txtEdit(new QLineEdit(m_grelha->viewport())),
      m_resumo(new Grelha(u"grdResumo"_s)), m_lblResumo(new QLabel), m_progresso(new QProgressBar),
      m_cmdConfirmar(new QPushButton), m_espera(new QTimer(this)) {
    setObjectName(u"frmSensoresEdit"_s);
    montar();
    Form_Load();
}

frmSensoresEdit::~frmSensoresEdit() = default;

void frmSensoresEdit::montar() {
    setWindowTitle(texto(u"frmSensoresEdit.Caption"_s, u"Sensores"_s));
    setWindowFlag(Qt::WindowMaximizeButtonHint);
    m_grelha->setColunas({texto(u"rkfNome.Caption"_s, u"Nome"_s), texto(u"rkfID.Caption"_s, u"ID"_s),
                          texto(u"rkfIDNovo.Caption"_s, u"Novo ID"_s)});
    m_grelha->setToolTip(texto(u"grdSensores.ToolTipText"_s, u"Click direito para eliminar"_s));
    m_grelha->setAccessibleName(windowTitle());
    m_grelha->setContextMenuPolicy(Qt::CustomContextMenu);
    m_grelha->installEventFilter(this);
    connect(m_grelha, &QWidget::customContextMenuRequested, this, &frmSensoresEdit::menuDaLinha);
    connect(m_grelha, &Grelha::RequestEdit, this, &frmSensoresEdit::editar);
    connect(m_grelha, &QTableView::clicked, this, [this](const QModelIndex &i) {
        if (i.column() == colunaNovoID)
            editar(i.row());
    });
    m_txtEdit->setObjectName(u"txtEdit"_s);
    m_txtEdit->setAccessibleName(texto(u"rkfIDNovo.Caption"_s, u"Novo ID"_s));
    m_txtEdit->installEventFilter(this);
    m_txtEdit->hide();

    m_resumo->setColunas({texto(u"ResumoTabela"_s, u"Tabela"_s), texto(u"ResumoMovidas"_s, u"Linhas movidas"_s),
                          texto(u"ResumoEliminadas"_s, u"Linhas eliminadas"_s)});
    for (Grelha *grelha : {m_grelha, m_resumo})
        grelha->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    m_resumo->alinharADireita(1);
    m_resumo->alinharADireita(2);
    m_resumo->setFocusPolicy(Qt::TabFocus);
    m_resumo->setSelectionMode(QAbstractItemView::NoSelection);
    m_lblResumo->setObjectName(u"lblResumo"_s);
    m_lblResumo->setTextFormat(Qt::PlainText);
    m_lblResumo->setWordWrap(true);
    m_lblResumo->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_resumo->setAccessibleName(texto(u"Resumo"_s, u"O que a confirmação fará"_s));
    m_progresso->setObjectName(u"ProgressBar1"_s);
    m_progresso->hide();
    m_cmdConfirmar->setObjectName(u"cmdConfirmar"_s);
    m_cmdConfirmar->setText(texto(u"cmdConfirmar.Caption"_s, u"Confirmar"_s));
    m_cmdConfirmar->setAccessibleName(m_cmdConfirmar->text());
    m_cmdConfirmar->setAutoDefault(false);
    connect(m_cmdConfirmar, &QPushButton::clicked, this, &frmSensoresEdit::cmdConfirmar_Click);
    m_espera->setSingleShot(true);
    m_espera->setInterval(atrasoDoResumoMs);
    connect(m_espera, &QTimer::timeout, this, &frmSensoresEdit::mostrarResumo);

    auto *fundo = new QHBoxLayout;
    fundo->addWidget(m_progresso, 1);
    fundo->addStretch();
    fundo->addWidget(m_cmdConfirmar);
    auto *disposicao = new QVBoxLayout(this);
    disposicao->addWidget(m_grelha, 3);
    disposicao->addWidget(m_lblResumo);
    disposicao->addWidget(m_resumo, 2);
    disposicao->addLayout(fundo);
    resize(tamanhoInicial);
}

void frmSensoresEdit::Form_Load() {
    Rotina("frmSensoresEdit.Form_Load", [this] {
        lugar::repor(this, regraDoLugar);
        Recordset rs = cnBD().consultar(u"SELECT * FROM Sensores"_s);
        const int nome = rs.coluna(u"Descricao"_s);
        const int id = rs.coluna(u"SensorID"_s);
        while (rs.avancar())
            m_grelha->adicionarLinha({rs.texto(nome), rs.texto(id), QString()});
        m_grelha->riscar();
    });
    m_grelha->setLinhaActual(0);
    mostrarResumo();
}

void frmSensoresEdit::done(int resultado) {
    m_trabalho.reset();
    Rotina("frmSensoresEdit.Form_Unload", [this] { lugar::guardar(this, regraDoLugar); });
    QDialog::done(resultado);
}

void frmSensoresEdit::editar(int linha) {
    if (m_ocupado)
        return;
    terminarEdicao(true);
    m_linhaEditada = linha;
    const QModelIndex celula = m_grelha->model()->index(linha, colunaNovoID);
    m_grelha->scrollTo(celula);
    m_txtEdit->setText(m_grelha->celula(linha, colunaNovoID));
    m_txtEdit->setGeometry(m_grelha->visualRect(celula));
    m_txtEdit->selectAll();
    m_txtEdit->show();
    m_txtEdit->setFocus();
}

void frmSensoresEdit::terminarEdicao(bool guardar) {
    if (m_linhaEditada < 0)
        return;
    const int linha = std::exchange(m_linhaEditada, -1);
    if (guardar && m_grelha->celula(linha, colunaNovoID) != m_txtEdit->text()) {
        m_grelha->setCelula(linha, colunaNovoID, m_txtEdit->text());
        resumirDepois();
    }
    m_txtEdit->hide();
    m_grelha->setFocus();
}

bool frmSensoresEdit::eventFilter(QObject *objecto, QEvent *evento) {
    const int tecla = evento->type() == QEvent::KeyPress ? static_cast<QKeyEvent *>(evento)->key() : 0;
    if (objecto == m_txtEdit) {
        if (tecla == Qt::Key_Return || tecla == Qt::Key_Enter || tecla == Qt::Key_Escape) {
            terminarEdicao(tecla != Qt::Key_Escape);
            return true;
        }
        if (evento->type() == QEvent::FocusOut && static_cast<QFocusEvent *>(evento)->reason() != Qt::PopupFocusReason)
            terminarEdicao(true);
    } else if (objecto == m_grelha && m_grelha->linhaActual() >= 0) {
        if (tecla == Qt::Key_F2) {
            editar(m_grelha->linhaActual());
            return true;
        }
        if (tecla == Qt::Key_Delete) {
            alternarEliminacao(m_grelha->linhaActual());
            return true;
        }
    }
    return QDialog::eventFilter(objecto, evento);
}

void frmSensoresEdit::menuDaLinha(const QPoint &onde) {
    const QModelIndex celula = m_grelha->indexAt(onde);
    const int linha = celula.isValid() ? celula.row() : m_grelha->linhaActual();
    if (linha < 0 || m_ocupado)
        return;
    m_grelha->setLinhaActual(linha);
    QMenu menu(this);
    menu.setObjectName(u"mnuEliminar"_s);
    QAction *accao = menu.addAction(marcada(linha) ? texto(u"msgAnularEliminar"_s, u"Anular Eliminar"_s)
                                                   : texto(u"msgEliminar"_s, u"Eliminar"_s));
    accao->setObjectName(u"msgEliminar"_s);
    if (menu.exec(m_grelha->viewport()->mapToGlobal(onde)) == accao)
        alternarEliminacao(linha);
}

void frmSensoresEdit::alternarEliminacao(int linha) {
    if (m_ocupado)
        return;
    m_grelha->setEstadoDaLinha(linha, marcada(linha) ? EstadoDaLinha::Par : EstadoDaLinha::PorEliminar);
    m_grelha->riscar();
    resumirDepois();
}

bool frmSensoresEdit::marcada(int linha) const {
    return m_grelha->estadoDaLinha(linha) == EstadoDaLinha::PorEliminar;
}

fusaoSensores::AlteracaoSensor frmSensoresEdit::alteracao(int linha) const {
    return {m_grelha->celula(linha, colunaID), m_grelha->celula(linha, colunaNovoID), marcada(linha)};
}

std::vector<fusaoSensores::AlteracaoSensor> frmSensoresEdit::alteracoes() const {
    std::vector<fusaoSensores::AlteracaoSensor> lista;
    for (int linha = 0; linha < m_grelha->linhas(); ++linha)
        if (const fusaoSensores::AlteracaoSensor a = alteracao(linha); fusaoSensores::temEfeito(a))
            lista.push_back(a);
    return lista;
}

void frmSensoresEdit::resumirDepois() {
    m_trabalho.reset();                // what is still being counted counts for nothing any more
    m_cmdConfirmar->setEnabled(false); // nothing is done before it has been shown
    m_lblResumo->setText(texto(u"ResumoAContar"_s, u"A contar as linhas..."_s));
    m_espera->start();
}

void frmSensoresEdit::mostrarResumo() {
    Rotina("frmSensoresEdit.MostrarResumo", [this] {
        const std::vector<fusaoSensores::AlteracaoSensor> lista = alteracoes();
        m_cmdConfirmar->setEnabled(false);
        m_resumo->limpar();
        if (lista.empty()) {
            m_lblResumo->setText(m_copia.isEmpty() ? texto(u"ResumoVazio"_s, u"Sem alterações por confirmar."_s)
                                                   : texto(u"ResumoCopia"_s, u"Cópia anterior: %1"_s).arg(m_copia));
            return;
        }
        m_trabalho = std::make_unique<QObject>();
        const Vigia vigia(m_trabalho.get());
        for (const fusaoSensores::ContagemTabela &c : fusaoSensores::contarAlteracoes(lista, vigia))
            m_resumo->adicionarLinha({c.tabela, numero(c.movidas), numero(c.eliminadas)});
        m_resumo->riscar();
        m_lblResumo->setText(avisos(lista));
        m_cmdConfirmar->setEnabled(true);
        m_trabalho.reset();
    });
}

QString frmSensoresEdit::avisos(const std::vector<fusaoSensores::AlteracaoSensor> &lista) const {
    QStringList linhas{texto(u"ResumoAntes"_s, u"Antes das alterações é feita uma cópia da base de dados. As leituras "
                                               "de pressão e de ponto de orvalho mantêm o identificador antigo."_s)};
    for (const fusaoSensores::AlteracaoSensor &a : lista) {
        const QString novo = a.novo.trimmed();
        if (novo.isEmpty())
            continue;
        Recordset rs = cnBD().consultar(u"SELECT 1 FROM Sensores WHERE SensorID = ?"_s, {novo});
        if (!rs.avancar())
            linhas.append(texto(u"ResumoSemSensor"_s, u"Atenção: nenhum sensor tem o identificador \"%1\"."_s)
                              .arg(textoMostrado::linha(novo)));
    }
    return linhas.join(u'\n');
}

void frmSensoresEdit::ocupar(bool ocupado) {
    m_ocupado = ocupado;
    m_progresso->setVisible(ocupado);
    m_cmdConfirmar->setEnabled(false); // a summary of what is left comes first
}

void frmSensoresEdit::cmdConfirmar_Click() {
    Rotina("frmSensoresEdit.cmdConfirmar_Click", [this] {
        if (m_ocupado)
            return;
        terminarEdicao(true);
        if (!m_cmdConfirmar->isEnabled()) // what was just typed has not been summed up yet
            return;
        m_espera->stop();
        m_trabalho = std::make_unique<QObject>();
        const Vigia vigia(m_trabalho.get());
        {
            ocupar(true);
            const auto livre = qScopeGuard([this] {
                ocupar(false);
                m_grelha->riscar();
                if (m_trabalho) // else the dialog was closed
                    resumirDepois();
            });
            if (!alteracoes().empty()) {
                copiar(vigia);
                executar(vigia);
            }
        }
        m_espera->stop();
        mostrarResumo();
        if (registoForms().alterarEstadosMenus)
            registoForms().alterarEstadosMenus();
        estado().ambiente.dialogos->mensagem(texto(u"msgbox1"_s, u"Alterações concluidas"_s));
    });
}

// Nothing is changed without it: a removal cannot be taken back otherwise.
void frmSensoresEdit::copiar(const Vigia &vigia) {
    m_lblResumo->setText(texto(u"ResumoACopiar"_s, u"A copiar a base de dados..."_s));
    m_progresso->setRange(0, 0);
    m_copia = QDir::toNativeSeparators(copiaDatada(vigia, [this](int feitas, int todas) {
        m_progresso->setRange(0, todas);
        m_progresso->setValue(feitas);
    }));
}

// A row that is done leaves the list, since its sensor is gone; after a failure the rest stands as it was marked.
void frmSensoresEdit::executar(const Vigia &vigia) {
    qint64 todas = 0;
    for (const fusaoSensores::ContagemTabela &c : fusaoSensores::contarAlteracoes(alteracoes(), vigia))
        todas += c.movidas + c.eliminadas;
    m_lblResumo->setText(texto(u"ResumoAAlterar"_s, u"A alterar as tabelas..."_s));
    // In thousands, so that any number of rows fits the bar.
    m_progresso->setRange(0, int(std::min<qint64>(todas / 1000 + 1, std::numeric_limits<int>::max())));
    qint64 anteriores = 0;
    for (int linha = 0; linha < m_grelha->linhas();) {
        const fusaoSensores::AlteracaoSensor a = alteracao(linha);
        if (!fusaoSensores::temEfeito(a)) {
            ++linha;
            continue;
        }
        qint64 desta = 0;
        fusaoSensores::executarAlteracao(a, vigia, [&](qint64 feitas) {
            desta = feitas;
            m_progresso->setValue(int((anteriores + feitas) / 1000));
        });
        anteriores += desta;
        m_grelha->removerLinha(linha);
    }
}
