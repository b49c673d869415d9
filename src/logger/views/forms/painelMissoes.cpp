#include "logger/views/forms/painelMissoes.h"

#include "core/estado.h"
#include "core/eventos.h"
#include "core/modINI.h"
#include "core/modPassWord.h"
#include "core/modTraducoes.h"
#include "core/rotina.h"
#include "logger/views/familiaLoggers.h"
#include "platform/forms/grelha.h"
#include "platform/forms/registoForms.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QTimer>

namespace {

constexpr int piscadelas = 10;
constexpr int intervaloPiscar = 400;
constexpr qint16 objectivoEliminarMissao = 1;

// A deletion under way: the main window waits.
class JanelaParada {
public:
    JanelaParada() : m_principal(registoForms().dono) {
        if (m_principal)
            m_principal->setEnabled(false);
    }
    ~JanelaParada() {
        if (m_principal)
            m_principal->setEnabled(true);
    }
    JanelaParada(const JanelaParada &) = delete;
    JanelaParada &operator=(const JanelaParada &) = delete;

private:
    QPointer<QWidget> m_principal;
};

QString perguntaDeEliminar(const ChaveMissao &chave) {
    return QStringList{
        modTraducoes::texto(u"VISTREL_frmGraficoLoggers"_s, u"EliminarMissao"_s, u"Deseja Eliminar a missão?"_s),
        modTraducoes::texto(u"VISTREL_frmGraficoLoggers"_s, u"EliminarRegistador"_s, u"Registador: %1 %2"_s)
            .arg(chave.LoggerID, chave.Nomelogger),
        modTraducoes::texto(u"VISTREL_frmGraficoLoggers"_s, u"EliminarNumero"_s, u"Missão: %1 %2"_s)
            .arg(chave.Nmissao, chave.DescricaoMissao),
        modTraducoes::texto(u"VISTREL_frmGraficoLoggers"_s, u"EliminarAmostras"_s, u"Amostras guardadas: %1"_s)
            .arg(missoes::contarAmostras(chave))}
        .join(u'\n');
}

} // namespace

PainelMissoes::PainelMissoes(const ConfigMissoes &config, QWidget *pai)
    : PainelVista(config.form, pai), m_config(config) {
    criarListas();
    criarSemDados();
    if (config.elimina)
        criarEliminar();
    CarregarListaGeral();
}

void PainelMissoes::criarListas() {
    m_grdSensoresAll = new Grelha(u"grdSensoresAll"_s);
    m_grdSensoresAll->setColunas({texto(u"Grupos.Caption"_s, u"ID"_s), texto(u"NomeS.Caption"_s, u"Nome Sensor"_s)});
    m_grdSensoresAll->setColumnWidth(0, fontMetrics().horizontalAdvance(QString(16, u'0')) + 16);
    m_grdSensoresAll->setAccessibleName(texto(u"NomeS.Caption"_s, u"Nome Sensor"_s));
    const QString descricao = texto(u"DescMiss.Caption"_s, u"Descrição da Missão"_s);
    m_grdSensoresMissao = new Grelha(u"grdSensoresMissao"_s);
    m_grdSensoresMissao->setColunas({descricao, texto(u"DescN.Caption"_s, u"N°"_s)});
    m_grdSensoresMissao->setColumnWidth(0, 30 * fontMetrics().averageCharWidth());
    m_grdSensoresMissao->setAccessibleName(descricao);
    auto *listas = new QHBoxLayout;
    listas->addWidget(m_grdSensoresAll);
    listas->addWidget(m_grdSensoresMissao);
    areaDeEscolha()->addLayout(listas);
    connect(m_grdSensoresAll->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &PainelMissoes::grdSensoresAll_SelectionChange);
    connect(m_grdSensoresMissao->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            &PainelMissoes::grdSensoresMissao_SelectionChange);
    connect(m_grdSensoresMissao, &Grelha::RequestEdit, this, &PainelVista::cmdConfirmar_Click);
}

void PainelMissoes::criarSemDados() {
    const QString aviso = texto(u"lblSemDados.Caption"_s, u"Não existem dados..."_s);
    m_lblSemDados = new QLabel(aviso);
    m_lblSemDados->setObjectName(u"lblSemDados"_s);
    m_imgSemDados = new QLabel;
    m_imgSemDados->setObjectName(u"imgSemDados"_s);
    m_imgSemDados->setAccessibleName(aviso);
    const int lado = fontMetrics().height();
    const QIcon icone = style()->standardIcon(QStyle::SP_MessageBoxInformation);
    m_imgSemDados->setPixmap(icone.pixmap(QSize(lado, lado), devicePixelRatioF()));
    for (QLabel *sinal : {m_imgSemDados, m_lblSemDados}) {
        QSizePolicy politica = sinal->sizePolicy();
        politica.setRetainSizeWhenHidden(true);
        sinal->setSizePolicy(politica);
        sinal->hide();
    }
    juntarOpcao({m_imgSemDados, m_lblSemDados});
    m_timerDadosErro = new QTimer(this);
    m_timerDadosErro->setObjectName(u"TimerDadosErro"_s);
    m_timerDadosErro->setInterval(intervaloPiscar);
    connect(m_timerDadosErro, &QTimer::timeout, this, &PainelMissoes::TimerDadosErro_Timer);
}

void PainelMissoes::criarEliminar() {
    auto *eliminar = new QPushButton(texto(u"cmdEliminar.Caption"_s, u"Eliminar Missão"_s));
    eliminar->setObjectName(u"cmdEliminar"_s);
    eliminar->setAccessibleName(eliminar->text());
    eliminar->setAutoDefault(false);
    connect(eliminar, &QPushButton::clicked, this, &PainelMissoes::cmdEliminar_Click);
    juntarOpcao({eliminar});
}

void PainelMissoes::CarregarListaGeral() {
    Rotina(m_config.form, "CarregarListaGeral", [this] {
        const QList<familiaLoggers::Registador> lista = familiaLoggers::registadores(Vigia(this));
        m_grdSensoresMissao->limpar();
        m_grdSensoresAll->limpar();
        for (const familiaLoggers::Registador &r : lista)
            m_grdSensoresAll->adicionarLinha({r.LoggerID, r.Nomelogger});
        m_grdSensoresAll->riscar();
        m_grdSensoresAll->setLinhaActual(0);
    });
}

void PainelMissoes::grdSensoresAll_SelectionChange() {
    Rotina(m_config.form, "grdSensoresAll_SelectionChange", [this] {
        const int linha = m_grdSensoresAll->currentIndex().row();
        m_grdSensoresMissao->limpar();
        if (linha < 0)
            return;
        const familiaLoggers::Registador registador{m_grdSensoresAll->celula(linha, 0),
                                                    m_grdSensoresAll->celula(linha, 1)};
        const QList<familiaLoggers::Missao> lista = familiaLoggers::missoesDe(registador, Vigia(this));
        // Events have run: another logger may be the chosen one by now.
        if (m_grdSensoresAll->currentIndex().row() != linha)
            return;
        m_grdSensoresMissao->limpar();
        for (const familiaLoggers::Missao &m : lista)
            m_grdSensoresMissao->adicionarLinha({m.DescricaoMissao, m.Nmissao});
        m_grdSensoresMissao->riscar();
        m_grdSensoresMissao->setLinhaActual(0);
    });
}

void PainelMissoes::grdSensoresMissao_SelectionChange() {
    Rotina(m_config.form, "grdSensoresMissao_SelectionChange", [this] {
        if (m_grdSensoresMissao->currentIndex().row() < 0)
            return;
        const auto intervalo = familiaLoggers::intervaloDe(missao());
        // A range has a length, also round a lone sample.
        if (intervalo)
            setIntervalo(intervalo->first, std::max(intervalo->second, intervalo->first.addSecs(1)));
        avisarSemDados(!intervalo);
    });
}

void PainelMissoes::avisarSemDados(bool avisar) {
    m_timerDadosErro->stop();
    m_piscadelas = 0;
    m_imgSemDados->setVisible(avisar);
    m_lblSemDados->setVisible(avisar);
    if (avisar)
        m_timerDadosErro->start();
}

// Blinks, and stays: what it says is still true.
void PainelMissoes::TimerDadosErro_Timer() {
    const bool ultima = ++m_piscadelas >= piscadelas;
    m_imgSemDados->setVisible(ultima || m_imgSemDados->isHidden());
    if (ultima)
        m_timerDadosErro->stop();
}

ChaveMissao PainelMissoes::missao() const {
    const int registador = m_grdSensoresAll->currentIndex().row();
    const int linha = m_grdSensoresMissao->currentIndex().row();
    if (registador < 0 || linha < 0)
        return {};
    return {m_grdSensoresAll->celula(registador, 0), m_grdSensoresAll->celula(registador, 1),
            m_grdSensoresMissao->celula(linha, 0), m_grdSensoresMissao->celula(linha, 1)};
}

void PainelMissoes::seleccionar(const ChaveMissao &chave) {
    for (int i = 0; i < m_grdSensoresAll->linhas(); ++i)
        if (m_grdSensoresAll->celula(i, 0) == chave.LoggerID && m_grdSensoresAll->celula(i, 1) == chave.Nomelogger)
            m_grdSensoresAll->setLinhaActual(i);
    for (int i = 0; i < m_grdSensoresMissao->linhas(); ++i)
        if (m_grdSensoresMissao->celula(i, 0) == chave.DescricaoMissao &&
            m_grdSensoresMissao->celula(i, 1) == chave.Nmissao)
            m_grdSensoresMissao->setLinhaActual(i);
}

QList<Escolha> PainelMissoes::escolhas() const {
    const ChaveMissao chave = missao();
    if (chave.vazia())
        return {};
    const QString registador =
        modTraducoes::texto(u"VISTREL_frmGraficoHumidadeHistograma"_s, u"Logger"_s, u"Registador"_s);
    return {{{chave.LoggerID, chave.Nomelogger, chave.DescricaoMissao, chave.Nmissao},
             registador + u": " + chave.Nomelogger + u", " + chave.DescricaoMissao + u' ' + chave.Nmissao}};
}

void PainelMissoes::cmdEliminar_Click() {
    Rotina(m_config.form, "cmdEliminar_Click", [this] {
        Dialogos *dialogos = estado().ambiente.dialogos;
        const ChaveMissao chave = missao();
        if (!chave.completa() || !dialogos)
            return;
        const Vigia vigia(this);
        if (!dialogos->pergunta(perguntaDeEliminar(chave)))
            return;
        const QString pwd =
            modINI::GetSetting(estado().NomePrograma, u"CONFIGURACOES"_s, u"PWD"_s, modPassWord::pwdPorOmissao());
        estado().EliminarConfirmado = pwd.isEmpty();
        if (!pwd.isEmpty()) {
            estado().ObjectivoPassWord = objectivoEliminarMissao;
            registoForms().abrir(u"frmPassWord"_s);
        }
        if (!vigia.vivo() || !estado().EliminarConfirmado)
            return;
        const JanelaParada parada;
        EliminarMissaoDef(chave);
    });
}

// The one that was named in the question, whatever is chosen by now.
void PainelMissoes::EliminarMissaoDef(const ChaveMissao &chave) {
    Rotina(m_config.form, "EliminarMissaoDef", [&, this] {
        const bool escolhida = missao() == chave;
        missoes::EliminarMissao(chave);
        Q_EMIT retirada({chave.LoggerID, chave.Nomelogger, chave.DescricaoMissao, chave.Nmissao});
        avisarSemDados(false);
        if (!escolhida || m_grdSensoresMissao->linhas() < 2) {
            CarregarListaGeral();
            return desmarcar();
        }
        m_grdSensoresMissao->removerLinha(m_grdSensoresMissao->currentIndex().row());
        m_grdSensoresMissao->riscar();
        m_grdSensoresMissao->setLinhaActual(0);
        grdSensoresMissao_SelectionChange();
    });
}

// Nobody has chosen what comes next in the list.
void PainelMissoes::desmarcar() {
    m_grdSensoresAll->setCurrentIndex({});
    m_grdSensoresAll->clearSelection();
    m_grdSensoresMissao->limpar();
    avisarSemDados(false);
}

QWidget *PainelMissoes::primeiroControlo() const {
    return m_grdSensoresAll;
}

int PainelMissoes::larguraPreferida() const {
    return 90 * fontMetrics().averageCharWidth() + 6 * fontMetrics().height();
}

FabricaPainel fabricaMissoes(const ConfigMissoes &config) {
    return [config](QWidget *vista) { return new PainelMissoes(config, vista); };
}
