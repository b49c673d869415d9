#include "poseidon/forms/frmTelnet.h"

#include "core/estado.h"
#include "core/literais.h"
#include "core/modTraducoes.h"
#include "core/rotina.h"
#include "platform/forms/lugar.h"
#include "platform/unit/rede.h"
#include "poseidon/modPoseidons.h"
#include "poseidon/relogio2251.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QIntValidator>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace {

constexpr qsizetype maximoDoHistorico = 101;
constexpr qsizetype maximoDeEscritos = 6;
constexpr qsizetype maximoDoTexto = 1024 * 1024; // a console that never stops must not fill the memory

QString texto(const QString &chave, const QString &omissao) {
    return modTraducoes::texto(u"frmTelnet"_s, chave, omissao);
}

lugar::Regra regraDoLugar() {
    return {u"frmTelnet"_s, {}, 0, 0};
}

void mensagem(const QString &oque, Dialogos::Estilo estilo) {
    if (Dialogos *dialogos = estado().ambiente.dialogos)
        dialogos->mensagem(oque, estilo);
}

} // namespace

frmTelnet::frmTelnet(QWidget *pai) : QWidget(pai), Winsock1(novaConsola()) {
    setObjectName(u"frmTelnet"_s);
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(texto(u"frmTelnet.Caption"_s, u"Terminal"_s));
    setAccessibleName(windowTitle());
    const QString ip = texto(u"lblIP.Caption"_s, u"Ip"_s);
    const QString porta = texto(u"lblPorta.Caption"_s, u"Porta"_s);
    const QString enviar = texto(u"lblSend.Caption"_s, u"Enviar:"_s);
    m_txtEndereco = criarCaixa(u"txtEndereco"_s, ip);
    m_txtPorta = criarCaixa(u"txtPorta"_s, porta);
    m_txtPorta->setValidator(new QIntValidator(1, 65535, m_txtPorta));
    m_txtPorta->setFixedWidth(fontMetrics().horizontalAdvance(u"000000"_s) + 16);
    m_txtLinha = criarCaixa(u"txtLinha"_s, enviar);
    m_txtLinha->installEventFilter(this);
    m_Text1 = new QPlainTextEdit(this);
    m_Text1->setObjectName(u"Text1"_s);
    m_Text1->setAccessibleName(windowTitle());
    m_Text1->setReadOnly(true);
    m_Text1->setUndoRedoEnabled(false);
    m_Text1->setTabChangesFocus(true);
    m_Text1->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_cmdLigar = criarBotao(u"cmdLigar"_s, texto(u"cmdLigar.Caption"_s, u"Ligar"_s), &frmTelnet::cmdLigar_Click);
    m_cmdDesligar =
        criarBotao(u"cmdDesligar"_s, texto(u"cmdDesligar.Caption"_s, u"Desligar"_s), &frmTelnet::cmdDesligar_Click);
    m_cmdSyncTime = criarBotao(u"cmdSyncTime"_s, texto(u"cmdSyncTime.Caption"_s, u"Sincronizar Hora"_s),
                               &frmTelnet::cmdSyncTime_Click);

    const auto etiqueta = [this](const QString &nome, const QString &legenda, QWidget *parceiro) {
        auto *l = new QLabel(legenda, this);
        l->setObjectName(nome);
        l->setBuddy(parceiro);
        return l;
    };
    auto *topo = new QHBoxLayout;
    topo->addWidget(etiqueta(u"lblIP"_s, ip, m_txtEndereco));
    topo->addWidget(m_txtEndereco, 1);
    topo->addWidget(etiqueta(u"lblPorta"_s, porta, m_txtPorta));
    topo->addWidget(m_txtPorta);
    topo->addWidget(m_cmdLigar);
    topo->addWidget(m_cmdDesligar);
    topo->addWidget(m_cmdSyncTime);
    auto *fundo = new QHBoxLayout;
    fundo->addWidget(etiqueta(u"lblSend"_s, enviar, m_txtLinha));
    fundo->addWidget(m_txtLinha, 1);
    auto *disposicao = new QVBoxLayout(this);
    disposicao->addLayout(topo);
    disposicao->addWidget(m_Text1, 1);
    disposicao->addLayout(fundo);
    resize(sizeHint());

    connect(m_txtLinha, &QLineEdit::returnPressed, this, &frmTelnet::enviarLinha);
    for (QLineEdit *caixa : {m_txtEndereco, m_txtPorta})
        connect(caixa, &QLineEdit::returnPressed, this, &frmTelnet::cmdLigar_Click);
    connect(Winsock1.get(), &Consola::DataArrival, this, &frmTelnet::Winsock1_DataArrival);
    connect(Winsock1.get(), &Consola::Error, this, &frmTelnet::Winsock1_Error);
    auto *relogio = new QTimer(this); // the console tells of text and of failures, not of every change of its state
    connect(relogio, &QTimer::timeout, this, &frmTelnet::mostrarEstado);
    relogio->start(200);
    mostrarEstado();
    CarregarEndereco();
}

QLineEdit *frmTelnet::criarCaixa(const QString &nome, const QString &legenda) {
    auto *caixa = new QLineEdit(this);
    caixa->setObjectName(nome);
    caixa->setAccessibleName(legenda);
    return caixa;
}

QPushButton *frmTelnet::criarBotao(const QString &nome, const QString &legenda, void (frmTelnet::*accao)()) {
    auto *botao = new QPushButton(legenda, this);
    botao->setObjectName(nome);
    botao->setAccessibleName(legenda);
    connect(botao, &QPushButton::clicked, this, accao);
    return botao;
}

void frmTelnet::CarregarEndereco() {
    if (Winsock1->State() != Consola::fechada)
        return;
    const QString &endereco = estado().EnderecoTerminal;
    m_txtEndereco->setText(modPoseidons::EnderecoENumerico(endereco) ? endereco : u"192.168.1."_s);
    bool numero = false;
    const quint16 porta = estado().PortaTerminal.toUShort(&numero);
    m_txtPorta->setText(QString::number(numero ? porta : rede::portaDaConsola()));
}

void frmTelnet::showEvent(QShowEvent *evento) {
    QWidget::showEvent(evento);
    if (!std::exchange(m_reposto, true))
        lugar::repor(this, regraDoLugar());
}

void frmTelnet::closeEvent(QCloseEvent *evento) {
    Winsock1->Close();
    lugar::guardar(this, regraDoLugar());
    QWidget::closeEvent(evento);
}

bool frmTelnet::eventFilter(QObject *objecto, QEvent *evento) {
    if (objecto == m_txtLinha && evento->type() == QEvent::KeyPress) {
        const int tecla = static_cast<QKeyEvent *>(evento)->key();
        if (tecla == Qt::Key_Up || tecla == Qt::Key_Down) {
            tecla == Qt::Key_Up ? recuar() : avancar();
            return true;
        }
    }
    return QWidget::eventFilter(objecto, evento);
}

void frmTelnet::mostrarEstado() {
    const int estadoDaConsola = Winsock1->State();
    m_cmdLigar->setEnabled(estadoDaConsola == Consola::fechada);
    m_cmdDesligar->setEnabled(estadoDaConsola != Consola::fechada);
}

void frmTelnet::cmdLigar_Click() {
    if (Winsock1->State() != Consola::fechada)
        return;
    estado().EnderecoTerminal = m_txtEndereco->text().trimmed();
    estado().PortaTerminal = m_txtPorta->text();
    TextoTerminal.clear();
    mostrar({});
    Winsock1->Connect(estado().EnderecoTerminal, estado().PortaTerminal.toUShort());
    m_txtLinha->setFocus();
    mostrarEstado();
}

void frmTelnet::cmdDesligar_Click() {
    Winsock1->Close();
    mostrarEstado();
    m_txtLinha->setFocus();
}

void frmTelnet::cmdSyncTime_Click() {
    m_txtLinha->setText(relogio2251::EstruturarData());
    m_txtLinha->setFocus();
    m_txtLinha->end(false);
}

void frmTelnet::enviarLinha() {
    Rotina("frmTelnet.txtLinha_KeyPress", [this] {
        const QString linha = m_txtLinha->text();
        guardarNoHistorico(linha);
        acrescentar(u'>' + linha + u'\n');
        Escrito.append(m_Text1->toPlainText());
        if (Escrito.size() > maximoDeEscritos)
            Escrito.removeFirst();
        if (Winsock1->State() != Consola::ligada)
            return mensagem(texto(u"Err1"_s, u"Erro de ligação"_s), Dialogos::Estilo::Critico);
        const QString fim = u"\r\n"_s;
        // The unit's menus want single keys, without a line end.
        Winsock1->SendData(linha.trimmed().isEmpty() ? fim : linha.size() == 1 ? linha : QString(linha + fim));
        m_txtLinha->clear();
        m_txtLinha->setFocus();
    });
}

void frmTelnet::guardarNoHistorico(const QString &linha) {
    if (!linha.isEmpty() && (Historico.isEmpty() || Historico.last() != linha))
        Historico.append(linha);
    if (Historico.size() > maximoDoHistorico)
        Historico.removeFirst();
    m_posicao = Historico.size();
}

void frmTelnet::recuar() {
    if (m_posicao == 0)
        return;
    m_txtLinha->setText(Historico.at(--m_posicao));
}

void frmTelnet::avancar() {
    m_posicao = std::min(m_posicao + 1, Historico.size());
    m_txtLinha->setText(Historico.value(m_posicao));
}

void frmTelnet::Winsock1_DataArrival() {
    TextoTerminal += Winsock1->GetData();
    TextoTerminal = TextoTerminal.right(maximoDoTexto);
    mostrar(TextoTerminal);
    mostrarEstado();
}

void frmTelnet::Winsock1_Error(int numero, const QString &descricao) {
    mensagem(texto(u"Err2"_s, u"Erro n°"_s) + u' ' + QString::number(numero) + u" :\n"_s + descricao,
             Dialogos::Estilo::Critico);
}

void frmTelnet::mostrar(const QString &oque) {
    QString limpo = oque;
    limpo.remove(u'\r').remove(u'\0');
    m_Text1->setPlainText(limpo);
    m_Text1->moveCursor(QTextCursor::End);
    m_Text1->ensureCursorVisible();
}

void frmTelnet::acrescentar(const QString &oque) {
    m_Text1->moveCursor(QTextCursor::End);
    m_Text1->insertPlainText(oque);
    m_Text1->moveCursor(QTextCursor::End);
}
