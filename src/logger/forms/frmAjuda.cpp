#include "logger/forms/frmAjuda.h"

#include "core/estado.h"
#include "core/eventos.h"
#include "core/modINI.h"
#include "core/modTraducoes.h"
#include "core/rotina.h"
#include "logger/modPesquisa1Wire.h"
#include "platform/forms/icones.h"
#include "platform/forms/registoForms.h"
#include "platform/onewire/barramento.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>

namespace {

QString texto(const QString &chave, const QString &omissao) {
    return modTraducoes::texto(u"frmAjuda"_s, chave, omissao);
}

QString definicao(const QString &chave) {
    return modINI::GetSetting(u"Kelvark"_s, u"LIAGACAOHARDWARE"_s, chave);
}

void avisarNaoEncontrado(const onewire::Motivo &motivo) {
    const QString porque = onewire::frase(motivo);
    estado().ambiente.dialogos->mensagem(
        porque.isEmpty()
            ? texto(u"NaoEncontrado"_s,
                    u"Não foi encontrado nenhum adaptador 1-Wire. Ligue-o ao computador e pesquise outra vez."_s)
            : porque);
}

// The hourglass and the closed windows of a search, for its length and not longer.
class Ocupacao {
public:
    explicit Ocupacao(QWidget *form) : m_form(form), m_principal(registoForms().dono) {
        if (auto *apresentador = estado().ambiente.apresentador)
            apresentador->ampulheta(true);
        activar(false);
    }
    ~Ocupacao() {
        activar(true);
        if (auto *apresentador = estado().ambiente.apresentador)
            apresentador->ampulheta(false);
    }
    Ocupacao(const Ocupacao &) = delete;
    Ocupacao &operator=(const Ocupacao &) = delete;

private:
    void activar(bool sim) {
        for (const QPointer<QWidget> &janela : {m_form, m_principal})
            if (janela)
                janela->setEnabled(sim);
    }
    QPointer<QWidget> m_form, m_principal;
};

} // namespace

frmAjuda::frmAjuda() {
    setObjectName(u"frmAjuda"_s);
    setWindowTitle(texto(u"frmAjuda.Caption"_s, u"Adaptador 1-Wire"_s));
    setWindowIcon(icones::icone(u"procurar"_s));
    Rotina("frmAjuda.Form_Load", [this] {
        criarControlos();
        mostrarDefinicoes();
        CarregarListaSensores();
    });
}

void frmAjuda::criarControlos() {
    auto *grelha = new QGridLayout(this);
    const auto linha = [&](int n, QWidget *campo, const QString &nome, const QString &chave, const QString &omissao) {
        auto *legenda = new QLabel(texto(chave, omissao));
        legenda->setObjectName(chave.section(u'.', 0, 0));
        legenda->setBuddy(campo);
        campo->setObjectName(nome);
        campo->setAccessibleName(legenda->text());
        grelha->addWidget(legenda, n, 0);
        grelha->addWidget(campo, n, 1);
    };
    for (QLineEdit **caixa : {&m_tipo, &m_numero, &m_adaptador}) {
        *caixa = new QLineEdit;
        (*caixa)->setReadOnly(true);
    }
    m_dispositivos = new QComboBox;
    m_dispositivos->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    m_dispositivos->setMinimumContentsLength(20); // a whole number
    linha(0, m_tipo, u"txtTipoPorta"_s, u"lblTipoDispositivo.Caption"_s, u"Tipo de Dispositivo:"_s);
    linha(1, m_numero, u"txtNPorta"_s, u"lblNumeroDaPorta.Caption"_s, u"Número da porta:"_s);
    linha(2, m_adaptador, u"txtAdaptador"_s, u"lblAdaptador.Caption"_s, u"Adaptador:"_s);
    linha(3, m_dispositivos, u"cboDispositivos"_s, u"lblDispositivo.Caption"_s, u"Identificação:"_s);

    auto *titulo = new QLabel(texto(u"lblRegList1Wire.Caption"_s, u"Dispositivos na rede 1-Wire:"_s));
    titulo->setObjectName(u"lblRegList1Wire"_s);
    m_lista = new QListWidget;
    m_lista->setObjectName(u"RegList1Wire"_s);
    m_lista->setAccessibleName(titulo->text());
    m_lista->setEnabled(false);
    m_lista->setMinimumHeight(6 * fontMetrics().lineSpacing());
    titulo->setBuddy(m_lista);
    grelha->addWidget(titulo, 4, 0, 1, 2);
    grelha->addWidget(m_lista, 5, 0, 1, 2);
    grelha->setRowStretch(5, 1);
    grelha->setColumnStretch(1, 1);

    const auto botao = [](const QString &nome, const QString &legenda) {
        auto *b = new QPushButton(legenda);
        b->setObjectName(nome);
        b->setAccessibleName(legenda);
        return b;
    };
    m_pesquisar = botao(u"cmd1WirePesquisarAuto"_s, texto(u"cmd1WirePesquisarAuto.Caption"_s, u"Pesquisar Auto"_s));
    m_fechar = botao(u"cmd1Wire"_s, texto(u"cmd1Wire.Caption"_s, u"Fechar"_s));
    m_barra = new QProgressBar;
    m_barra->setObjectName(u"ProgressBar1Wire"_s);
    m_barra->setAccessibleName(m_pesquisar->text());
    m_barra->setTextVisible(false);
    m_barra->setFixedHeight(m_pesquisar->sizeHint().height());
    m_barra->hide();
    auto *botoes = new QHBoxLayout;
    botoes->addWidget(m_barra, 1);
    botoes->addStretch();
    botoes->addWidget(m_pesquisar);
    botoes->addWidget(m_fechar);
    grelha->addLayout(botoes, 6, 0, 1, 2);
    setMinimumWidth(24 * fontMetrics().averageCharWidth() * 2);
    connect(m_pesquisar, &QPushButton::clicked, this, &frmAjuda::cmd1WirePesquisarAuto_Click);
    connect(m_fechar, &QPushButton::clicked, this, &QWidget::close);
}

void frmAjuda::mostrarDefinicoes() {
    m_tipo->setText(definicao(u"PortType"_s));
    m_numero->setText(definicao(u"PortNum"_s));
    m_adaptador->setText(definicao(u"Dispositivo"_s));
}

void frmAjuda::CarregarListaSensores() {
    m_dispositivos->clear();
    const QString id = definicao(u"1WireDeviceID"_s);
    if (!id.isEmpty())
        m_dispositivos->addItem(id);
    m_dispositivos->setEnabled(!id.isEmpty());
}

void frmAjuda::cmd1WirePesquisarAuto_Click() {
    const QPointer<frmAjuda> vivo(this);
    Rotina("frmAjuda.cmd1WirePesquisarAuto_Click", [this] { procurar(); });
    if (!vivo)
        return;
    m_barra->hide();
    m_pesquisar->show();
    m_fechar->show();
    m_pesquisar->setFocus();
}

void frmAjuda::procurar() {
    for (QLineEdit *caixa : {m_tipo, m_numero, m_adaptador})
        caixa->clear();
    m_dispositivos->clear();
    m_pesquisar->hide();
    m_fechar->hide();
    m_barra->setRange(0, modPesquisa1Wire::maximoDaBarra);
    m_barra->setValue(0);
    m_barra->show();
    m_lista->clear();
    m_lista->setEnabled(false);
    const Ocupacao ocupacao(this);
    const Vigia vigia(this);
    vigia.forcar();

    const onewire::ComPassagem passagem([&vigia] { vigia.passar(); });
    modPesquisa1Wire::Vista vista;
    vista.barra = [this](int valor) { m_barra->setValue(valor); };
    vista.contem = [this](const QString &id) {
        for (int i = 0; i < m_lista->count(); ++i)
            if (m_lista->item(i)->text().left(16) == id.left(16))
                return true;
        return false;
    };
    vista.adicionar = [this](const QString &id) {
        m_lista->addItem(id);
        m_lista->setEnabled(true);
    };
    modPesquisa1Wire::Resultado resultado;
    const bool certo = Rotina("frmajuda.Pesquisar1WireAuto", [&] {
        modPesquisa1Wire::Pesquisar1WireAuto(vista, resultado);
        return true;
    });
    vigia.passar();
    if (!certo)
        estado().ambiente.dialogos->mensagem(
            modTraducoes::texto(u"frmCapturarSondas"_s, u"DLLError"_s, u"Erro ao Carregar DLL do 1-Wire"_s));
    modPesquisa1Wire::Porta porta;
    if (modPesquisa1Wire::guardarResultado(resultado, porta)) {
        m_tipo->setText(porta.tipo);
        m_numero->setText(porta.numero);
        m_adaptador->setText(porta.adaptador);
    }
    CarregarListaSensores();
    if (certo && resultado.texto == u"0X0X0")
        avisarNaoEncontrado(resultado.motivo);
}
