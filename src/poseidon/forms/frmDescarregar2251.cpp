#include "poseidon/forms/frmDescarregar2251.h"

#include "core/estado.h"
#include "core/eventos.h"
#include "core/falha.h"
#include "core/literais.h"
#include "core/modINI.h"
#include "core/modTraducoes.h"
#include "core/rotina.h"
#include "core/textoMostrado.h"
#include "platform/forms/icones.h"
#include "platform/forms/lugar.h"
#include "platform/forms/registoForms.h"
#include "poseidon/descarga/logBruto.h"
#include "poseidon/forms/frmTelnet.h"
#include "poseidon/modPoseidons.h"
#include "poseidon/reposicao2251.h"
#include "poseidon/substituidas2251.h"

#include <QCheckBox>
#include <QDesktopServices>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QProgressBar>
#include <QPushButton>
#include <QUrl>

namespace {

const QString seccaoD2251 = u"D2251"_s;
const QString pastaDosLogs = u"PastaLogs"_s;

QString texto(const QString &chave, const QString &omissao) {
    return modTraducoes::texto(u"frmDescarregar2251"_s, chave, omissao);
}

lugar::Regra regraDoLugar() {
    return {u"frmDescarregar2251"_s, {}, 0, 0};
}

void mensagem(const QString &oque, Dialogos::Estilo estilo) {
    if (Dialogos *dialogos = estado().ambiente.dialogos)
        dialogos->mensagem(oque, estilo);
}

// What a row's icon means while it has no message of its own.
struct EstadoDito {
    int icone;
    QStringView chave, omissao;
};
constexpr EstadoDito estadosDitos[] = {{10, u"Estado10", u"A descarregar"}, {11, u"Estado11", u"Em espera"}};

} // namespace

void frmDescarregar2251::showEvent(QShowEvent *evento) {
    QWidget::showEvent(evento);
    if (std::exchange(m_reposto, true))
        return;
    lugar::repor(this, regraDoLugar());
    m_lista.CarregarListaDeDispositivosJaExistentes();
    m_modelo->renovar();
    m_grelha->setLinhaActual(1);
    m_grelha->setFocus();
    ActivarDesactivarBotaoDescarregar();
    QTimer::singleShot(0, this, &frmDescarregar2251::PesquisarRede); // it may have something to say
}

void frmDescarregar2251::closeEvent(QCloseEvent *evento) {
    lugar::guardar(this, regraDoLugar());
    modINI::SaveSettings(estado().NomePrograma,
                         {{seccaoD2251, u"Navg"_s, m_txtNMedias->text()},
                          {seccaoD2251, u"Clear"_s, m_chkClearMemory->isChecked() ? u"1"_s : u"0"_s}});
    QWidget::closeEvent(evento);
}

bool frmDescarregar2251::eventFilter(QObject *objecto, QEvent *evento) {
    if (objecto == m_txtNMedias && evento->type() == QEvent::FocusOut)
        txtNMedias_LostFocus();
    return QWidget::eventFilter(objecto, evento);
}

void frmDescarregar2251::bloquear(bool bloqueado) {
    if (bloqueado == !isEnabled())
        return;
    if (bloqueado) {
        m_focoAntes = focusWidget();
        setEnabled(false);
        return;
    }
    setEnabled(true);
    ActivarDesactivarBotaoDescarregar();
    if (isActiveWindow() && m_focoAntes)
        (m_focoAntes->isEnabled() ? m_focoAntes.data() : static_cast<QWidget *>(m_grelha))->setFocus();
}

void frmDescarregar2251::mostrarLuz(QLabel *imagem, bool verde) {
    imagem->setProperty("Tag", verde ? u"1"_s : u"0"_s);
    imagem->setPixmap(icones::icone(verde ? u"unidade-luz1"_s : u"unidade-luz0"_s)
                          .pixmap(imagem->size(), imagem->devicePixelRatioF()));
    imagem->show();
}

void frmDescarregar2251::PesquisarRede() {
    Rotina("frmDescarregar2251.PesquisarRede", [this] {
        if (!isEnabled())
            return;
        m_cmdActualizar->setEnabled(false);
        m_cmdDescarregar->setEnabled(false);
        if (m_pesquisa->PesquisarRede())
            return bloquear(true);
        // The text reads the wrong way round; language files carry it like this.
        const Vigia vigia(this);
        mensagem(modTraducoes::texto(u"frmMain"_s, u"NetWorkInac"_s, u"A rede está acessível"_s),
                 Dialogos::Estilo::Informacao);
        if (vigia.vivo())
            ActivarDesactivarBotaoDescarregar();
    });
}

void frmDescarregar2251::fimDaPesquisa(bool comResposta) {
    m_modelo->esquecerEdicoes();
    if (comResposta) {
        QSet<QString> macs;
        const auto encontrados = m_pesquisa->encontrados();
        for (const listaPoseidons::Dispositivo &d : encontrados)
            macs.insert(d.mac.trimmed().toLower());
        m_modelo->setVistos(macs);
    }
    m_modelo->renovar();
    m_grelha->setUpdatesEnabled(true);
    m_imgPesquisa->hide();
    if (m_grelha->linhaActual() == 0)
        m_grelha->setLinhaActual(1);
    bloquear(false);
    ActivarDesactivarBotaoDescarregar();
}

void frmDescarregar2251::cmdConectar_Click() {
    Rotina("frmDescarregar2251.cmdConectar_Click", [this] {
        esconderInfo();
        if (!modNetworkStatus::NetworkIsAlive())
            return mensagem(modTraducoes::texto(u"frmMain"_s, u"NetWorkInac"_s, u"A rede está inacessível"_s),
                            Dialogos::Estilo::Informacao);
        if (m_txtTexto->text().trimmed().isEmpty())
            return m_txtTexto->setFocus();
        bloquear(true);
        ConnectarA_URL(m_txtTexto->text().trimmed());
    });
}

void frmDescarregar2251::ConnectarA_URL(const QString &endereco) {
    mostrarLuz(m_imgConnect, true);
    const quint16 porta = modPoseidons::TratarPortaDoEndereco(endereco);
    const QString anfitriao = modPoseidons::TratarEnderecoRemoto(modPoseidons::TratarEndereco(endereco, false), porta);
    const Vigia vigia(this);
    const QString xml = m_xml.DescarregarXML(anfitriao, QString::number(porta));
    vigia.forcar();
    const auto achado =
        xml.isEmpty() ? listaPoseidons::Achado::Ignorado : m_lista.CarregarDispositivoRemoto(xml, endereco);
    if (achado == listaPoseidons::Achado::Ignorado) {
        mostrarLuz(m_imgConnect, false);
        mostrarInfo(xml.isEmpty() ? m_xml.erro()
                                  : texto(u"NaoServe"_s, u"O endereço não é de um dispositivo com log"_s),
                    {}, true);
    } else {
        m_txtTexto->clear();
    }
    if (achado == listaPoseidons::Achado::Novo) {
        m_lista.linha(m_lista.total()).SELECT = u"1"_s; // marks the new row
        m_modelo->renovar();
        m_grelha->setLinhaActual(m_lista.total());
    }
    m_TimerFim.start();
}

void frmDescarregar2251::TimerFim_Timer() {
    m_imgConnect->hide();
    bloquear(false);
}

void frmDescarregar2251::cmdDescarregar_Click() {
    Rotina("frmDescarregar2251.cmdDescarregar_Click", [this] {
        esconderInfo();
        m_descarga->descarregar();
    });
}

void frmDescarregar2251::terminarDescarga() {
    LigarDesligarBarraDeslizante(false);
    m_modelo->renovar();
    bloquear(false);
    mostrarResultado(m_grelha->linhaActual());
    if (const auto &avisar = registoForms().alterarEstadosMenus)
        avisar(); // branches of the menu that have data now appear
}

void frmDescarregar2251::importarLog(int linha) {
    Rotina("frmDescarregar2251.importarLog", [&] {
        Dialogos *dialogos = estado().ambiente.dialogos;
        if (!dialogos)
            return;
        const Vigia vigia(this);
        const QString filtro = texto(u"FiltroLog"_s, u"Ficheiros de log"_s) +
                               u" (*.log *.csv *.txt)|*.log *.csv *.txt|"_s +
                               texto(u"FiltroTodos"_s, u"Todos os ficheiros"_s) + u" (*)|*"_s;
        const QString caminho =
            dialogos->abrirFicheiro(filtro, modINI::GetSetting(estado().NomePrograma, seccaoD2251, pastaDosLogs));
        if (!vigia.vivo() || caminho.isEmpty())
            return;
        modINI::SaveSetting(estado().NomePrograma, seccaoD2251, pastaDosLogs, QFileInfo(caminho).path());
        esconderInfo();
        m_descarga->importarFicheiro(linha, caminho);
    });
}

void frmDescarregar2251::mnuReporLeituras_Click(int linha) {
    Rotina("frmDescarregar2251.mnuReporLeituras_Click", [&] {
        Dialogos *dialogos = estado().ambiente.dialogos;
        if (!dialogos)
            return;
        const listaPoseidons::Linha l = m_lista.linha(linha);
        const QString ultimo = logBruto::ultimasSubstituidas(l.IP, l.PORTA.toInt());
        if (ultimo.isEmpty())
            return mensagem(texto(u"SubstNenhuma"_s, u"Nenhum log deste dispositivo substituiu leituras"_s),
                            Dialogos::Estilo::Informacao);
        const Vigia vigia(this);
        const QString caminho = dialogos->abrirFicheiro(texto(u"FiltroSubst"_s, u"Leituras substituídas"_s) +
                                                            u" (*%1)|*%1"_s.arg(substituidas2251::fimDoNome),
                                                        QFileInfo(ultimo).path());
        if (vigia.vivo() && !caminho.isEmpty())
            reporLeituras(caminho, vigia);
    });
}

void frmDescarregar2251::reporLeituras(const QString &caminho, const Vigia &vigia) {
    esconderInfo();
    const auto passar = [&vigia] { vigia.passarLinha(); };
    const auto acabar = [&] {
        LigarDesligarBarraDeslizante(false);
        bloquear(false);
    };
    bloquear(true);
    LigarDesligarBarraDeslizante(true);
    try {
        const reposicao2251::Conteudo c = reposicao2251::examinar(caminho, passar);
        const QLocale &locale = estado().ambiente.locale;
        const bool sim = estado().ambiente.dialogos->pergunta(
            texto(u"ReporPergunta"_s, u"Repor as %1 leituras de %2 que um log substituiu em %3?"_s)
                .arg(locale.toString(c.leituras), c.unidade, c.momento) +
            u"\n\n" +
            texto(u"ReporPerguntaSaem"_s, u"As que vieram com o log no seu lugar saem; continuam no log guardado."_s));
        vigia.forcar();
        if (!sim)
            return acabar();
        const reposicao2251::Resultado r = reposicao2251::repor(caminho, passar);
        vigia.forcar();
        acabar();
        mensagem(texto(u"Reposto"_s,
                       u"%1 leituras repostas; %2 já lá estavam; %3 do log saíram; %4 notas mais recentes "
                       "ficaram."_s)
                     .arg(locale.toString(r.repostas), locale.toString(r.jaEstavam), locale.toString(r.retiradas),
                          locale.toString(r.notas)),
                 Dialogos::Estilo::Informacao);
    } catch (const Falha &f) {
        if (!vigia.vivo())
            throw Interrompido();
        acabar();
        mensagem(f.descricao(), Dialogos::Estilo::Critico);
    }
}

void frmDescarregar2251::cmdActualizar_Click() {
    Rotina("frmDescarregar2251.cmdActualizar_Click", [this] {
        const int linha = m_grelha->linhaActual();
        if (linha == 0 || !estado().ambiente.dialogos)
            return;
        const Vigia vigia(this);
        const listaPoseidons::Linha l = m_lista.linha(linha);
        const QString unidade = u"%1 (%2:%3)"_s.arg(l.DESCRICAO, l.IP, l.PORTA);
        if (!estado().ambiente.dialogos->pergunta(relogio2251::perguntaDoAcerto(unidade)) || !vigia.vivo())
            return;
        esconderInfo();
        bloquear(true);
        LigarDesligarBarraDeslizante(true);
        relogio2251::Resultado resultado;
        const Vigia acertoVivo(m_acerto);
        Rotina("frmDescarregar2251.ActualizarDataHoraDoPoseidon",
               [&] { resultado = m_acerto->ActualizarDataHoraDoPoseidon(l.IP, l.PORTA); });
        if (!vigia.vivo() || !acertoVivo.vivo())
            return;
        const relogio2251::Mensagem dita = relogio2251::mensagemDoAcerto(resultado);
        mensagem(dita.texto, dita.critica ? Dialogos::Estilo::Critico : Dialogos::Estilo::Informacao);
        if (!vigia.vivo())
            return;
        LigarDesligarBarraDeslizante(false);
        bloquear(false);
    });
}

void frmDescarregar2251::LigarDesligarBarraDeslizante(bool ligar) {
    m_ProgressBar->setValue(1);
    m_ProgressBar->setVisible(ligar);
    ligar ? m_TimerProgressBar.start() : m_TimerProgressBar.stop();
}

void frmDescarregar2251::ActivarDesactivarBotaoDescarregar() {
    m_cmdDescarregar->setEnabled(m_lista.algumaSeleccionada());
    m_cmdActualizar->setEnabled(m_grelha->linhaActual() > 0);
}

void frmDescarregar2251::marcar(int linha) {
    QString &SELECT = m_lista.linha(linha).SELECT;
    SELECT = SELECT == u"SIM" ? u"NAO"_s : u"SIM"_s;
    m_modelo->renovar(linha);
    ActivarDesactivarBotaoDescarregar();
}

bool frmDescarregar2251::guardarCelula(int linha, Coluna coluna, const QString &novo) {
    listaPoseidons::Linha &l = m_lista.linha(linha);
    const QString ip = l.IP;
    mostrarResultado(linha); // what an edit before it was refused for
    const auto existe = [&] {
        return Rotina("frmDescarregar2251.VerificarSeIPJaExiste",
                      [&] { return m_lista.VerificarSeIPJaExiste(novo, linha) || listaPoseidons::existeNaBD(novo); });
    };
    if (coluna == Coluna::IP && (!modPoseidons::EnderecoENumerico(novo) || existe())) {
        mostrarInfo(texto(u"EnderecoRecusado"_s, u"O endereço não é válido, ou já está na lista"_s), novo, true);
        return false;
    }
    const int porta = novo.toInt();
    if (coluna == Coluna::PORTA && (porta < 1 || porta > 65535)) {
        mostrarInfo(texto(u"PortaRecusada"_s, u"A porta não é válida"_s), novo, true);
        return false;
    }
    QString &celula = coluna == Coluna::IP ? l.IP : coluna == Coluna::PORTA ? l.PORTA : l.DESCRICAO;
    const QString antes = std::exchange(celula, novo);
    const bool guardada = coluna == Coluna::DESCRICAO
                              ? listaPoseidons::MudarNomeBDPoseidons(ip, l.DESCRICAO)
                              : listaPoseidons::MudarIPPORTABDPoseidons(ip, l.IP, l.PORTA.toInt());
    if (!guardada)
        celula = antes; // the list never shows what is not stored
    const listaPoseidons::Alteracoes a =
        listaPoseidons::VerificarSeTemDeSeFazerAlteracoes(m_pesquisa->encontrados(), l.IP, l.PORTA, l.MAC, l.DESCRICAO);
    m_modelo->setEditada(linha, coluna, antes,
                         coluna == Coluna::IP      ? a.endereco
                         : coluna == Coluna::PORTA ? a.porta
                                                   : a.nome);
    return guardada;
}

ModeloDispositivos::Dito frmDescarregar2251::dizer(int linha) const {
    const DescargaLog *d = m_descarga->resultado(linha);
    if (d && d->Estado != 0)
        return {d->Resumo.isEmpty() ? d->Mensagem : QString(d->Mensagem + u": "_s + d->Resumo.join(u"; "_s)),
                d->Pormenor};
    if (d && !m_descarga->activa())
        return {d->Pormenor, {}};
    for (const EstadoDito &e : estadosDitos)
        if (e.icone == m_lista.linha(linha).DSTAT)
            return {texto(e.chave.toString(), e.omissao.toString()), {}};
    return {};
}

void frmDescarregar2251::mostrarLinha(int linha) {
    txtNMedias_LostFocus();
    ActDesactMediasEApagarLog(linha > 0);
    mostrarResultado(linha);
    if (isEnabled())
        ActivarDesactivarBotaoDescarregar();
}

void frmDescarregar2251::mostrarResultado(int linha) {
    const DescargaLog *d = m_descarga->resultado(linha);
    if (d && d->Estado != 0)
        mostrarInfo(d->Mensagem, d->info(), d->Estado < 0);
    else
        esconderInfo();
}

void frmDescarregar2251::mostrarInfo(const QString &oque, const QString &pormenor, bool falha) {
    QPalette cores = palette();
    const bool escuro = cores.color(QPalette::Window).lightness() < 128;
    if (falha)
        cores.setColor(QPalette::WindowText, escuro ? QColor(255, 128, 118) : QColor(190, 30, 20));
    m_lblInfoDesc->setPalette(cores);
    m_lblInfoDesc->setText(textoMostrado::linha(oque));
    m_lblInfoDesc->setToolTip(oque);
    m_lblPormenor->setText(textoMostrado::paragrafos(pormenor));
    m_lblPormenor->setToolTip(pormenor);
    for (QLabel *l : {m_lblInfo, m_lblInfoDesc, m_lblPormenor})
        l->show();
}

void frmDescarregar2251::esconderInfo() {
    for (QLabel *l : {m_lblInfo, m_lblInfoDesc, m_lblPormenor})
        l->hide();
}

void frmDescarregar2251::ActDesactMediasEApagarLog(bool activar) {
    const int linha = m_grelha->linhaActual();
    const bool mostrar = activar && linha > 0;
    bool numero = false;
    if (mostrar)
        m_lista.linha(linha).NLEITURAS.toInt(&numero);
    m_linhaDasMedias = mostrar ? linha : 0;
    m_txtNMedias->setText(!mostrar ? QString() : numero ? m_lista.linha(linha).NLEITURAS : u"1"_s);
    m_chkClearMemory->setChecked(mostrar && m_lista.linha(linha).BLNERASELOG == u"1");
    for (QWidget *w : {static_cast<QWidget *>(m_lblNLeituras), static_cast<QWidget *>(m_txtNMedias),
                       static_cast<QWidget *>(m_lblMedias), static_cast<QWidget *>(m_chkClearMemory),
                       static_cast<QWidget *>(m_lblClearMemory)})
        w->setVisible(mostrar);
}

void frmDescarregar2251::txtNMedias_LostFocus() {
    const int linha = m_linhaDasMedias;
    if (linha <= 0)
        return;
    const QString lido = QString::number(std::max(m_txtNMedias->text().toInt(), 1));
    m_txtNMedias->setText(lido);
    QString &NLEITURAS = m_lista.linha(linha).NLEITURAS;
    if (NLEITURAS == lido)
        return;
    NLEITURAS = lido;
    m_modelo->renovar(linha);
    listaPoseidons::SalvarMediasParaBD(m_lista.linha(linha).IP, lido.toInt());
}

void frmDescarregar2251::chkClearMemory_Click() {
    const int linha = m_grelha->linhaActual();
    if (linha == 0)
        return;
    const bool apagar = m_chkClearMemory->isChecked();
    m_lista.linha(linha).BLNERASELOG = apagar ? u"1"_s : u"0"_s;
    m_modelo->renovar(linha);
    listaPoseidons::SalvarchkApagarParaBD(m_lista.linha(linha).IP, apagar);
}

void frmDescarregar2251::abrirMenu(int linha, const QPoint &onde) {
    auto *menu = new QMenu(this);
    menu->setObjectName(u"mnuDispositivo"_s);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const auto entrada = [&](const QString &chave, const QString &legenda, void (frmDescarregar2251::*accao)(int)) {
        QAction *a = menu->addAction(legenda);
        a->setObjectName(chave);
        // Queued: the menu goes by the first pass of events, and must not go in the middle of its own click.
        connect(
            a, &QAction::triggered, this, [this, accao, linha] { (this->*accao)(linha); }, Qt::QueuedConnection);
    };
    entrada(u"mnuTelnet"_s, texto(u"mnuTelnet.Caption"_s, u"Abrir terminal"_s), &frmDescarregar2251::mnuTelnet_Click);
    entrada(u"mnuInternetExplorer"_s, texto(u"mnuInternetExplorer.Caption"_s, u"Abrir explorador"_s),
            &frmDescarregar2251::mnuInternetExplorer_Click);
    menu->addSeparator();
    entrada(u"mnuImportarLog"_s, texto(u"mnuImportarLog.Caption"_s, u"Importar log de ficheiro..."_s),
            &frmDescarregar2251::importarLog);
    entrada(u"mnuReporLeituras"_s, texto(u"mnuReporLeituras.Caption"_s, u"Repor leituras substituídas..."_s),
            &frmDescarregar2251::mnuReporLeituras_Click);
    menu->popup(onde);
}

void frmDescarregar2251::mnuTelnet_Click(int linha) {
    Rotina("frmDescarregar2251.mnuTelnet_Click", [&] {
        estado().EnderecoTerminal = m_lista.linha(linha).IP;
        estado().PortaTerminal.clear();
        if (auto *terminal = qobject_cast<frmTelnet *>(registoForms().abrir(u"frmTelnet"_s)))
            terminal->CarregarEndereco();
    });
}

void frmDescarregar2251::mnuInternetExplorer_Click(int linha) {
    Rotina("frmDescarregar2251.mnuInternetExplorer_Click", [&] {
        const listaPoseidons::Linha &l = m_lista.linha(linha);
        QDesktopServices::openUrl(QUrl(modPoseidons::TratarEndereco(l.IP, true) + u':' + l.PORTA));
    });
}
