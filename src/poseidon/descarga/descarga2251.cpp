#include "poseidon/descarga/descarga2251.h"

#include "core/estado.h"
#include "core/eventos.h"
#include "core/falha.h"
#include "core/literais.h"
#include "platform/unit/PosLog.h"
#include "platform/unit/rede.h"
#include "poseidon/descarga/logBruto.h"
#include "poseidon/descarga/resumo2251.h"
#include "poseidon/importacao.h"
#include "poseidon/modPoseidons.h"
#include "poseidon/modTratamentoDados2251.h"
#include "poseidon/relogio2251.h"

#include <exception>

namespace {

constexpr int esperaEntreLinhas = 200; // ms: the event of a log object ends before the object is replaced
constexpr int opcoesDoLog[] = {3, 4, 2, 6, 5};

using mensagens2251::Mensagem;
constexpr Mensagem semLinhas{u"SemLinhas", u"O log não tem linhas"};
constexpr Mensagem naoApagado{u"NaoApagado", u"Nenhuma linha deu leituras: a memória do dispositivo não foi apagada"};
constexpr Mensagem configuracaoPorImportar{
    u"ConfiguracaoPorImportar",
    u"Leituras guardadas; nem toda a configuração do dispositivo foi importada, e a memória "
    u"não foi apagada"};

QString emFrases(const QStringList &partes) {
    QStringList ditas = partes;
    ditas.removeAll(QString());
    return ditas.join(u". "_s);
}

// What an exception of a routine says; an interruption goes on.
QString descricaoDe(const std::exception_ptr &excepcao) {
    try {
        std::rethrow_exception(excepcao);
    } catch (const Interrompido &) {
        throw;
    } catch (const Falha &f) {
        return f.descricao();
    } catch (const std::exception &e) {
        return QString::fromUtf8(e.what());
    } catch (...) {
        return {};
    }
}

} // namespace

QString DescargaLog::info() const {
    QStringList linhas = Resumo;
    if (!Pormenor.isEmpty())
        linhas += Pormenor;
    return (linhas + Reservas).join(u'\n');
}

void prepararPosLog(PosLog &log, const QString &endereco, qint32 porta) {
    log.definirEndereco(endereco);
    log.definirPorta(porta);
    for (const int numero : opcoesDoLog)
        log.definirOpcao(numero, 0);
}

Descarga2251::Descarga2251(listaPoseidons::Lista &lista, QObject *pai) : QObject(pai), m_lista(lista) {
    m_TimerDNextLog.setSingleShot(true);
    m_TimerDNextLog.setInterval(esperaEntreLinhas);
    connect(&m_TimerDNextLog, &QTimer::timeout, this, [this] {
        ++LinhaActual;
        DescarregarProximoLog();
    });
}

Descarga2251::~Descarga2251() = default;

void Descarga2251::descarregar() {
    if (m_activa)
        return;
    m_ficheiro.clear();
    LinhaActual = 1;
    CarregariDescargasLog2251();
    DescarregarProximoLog();
}

void Descarga2251::importarFicheiro(int linha, const QString &caminho) {
    if (m_activa || linha < 1 || linha > m_lista.total())
        return;
    m_ficheiro = caminho;
    LinhaActual = linha;
    CarregariDescargasLog2251();
    DescarregarProximoLog();
}

const DescargaLog *Descarga2251::resultado(int linha) const {
    return linha >= 1 && size_t(linha) <= DescargasLog.size() ? &DescargasLog[size_t(linha) - 1] : nullptr;
}

void Descarga2251::CarregariDescargasLog2251() {
    // A file concerns its own row; the others keep what they say.
    const std::vector<DescargaLog> antes = std::exchange(DescargasLog, {});
    for (int n = 1; n <= m_lista.total(); ++n) {
        if (!m_ficheiro.isEmpty() && n != LinhaActual && size_t(n) <= antes.size()) {
            DescargasLog.push_back(antes[size_t(n) - 1]);
            continue;
        }
        const listaPoseidons::Linha &l = m_lista.linha(n);
        DescargaLog d;
        d.Linha = n;
        d.IP = l.IP;
        d.Porta = l.PORTA.toInt();
        d.PortaTelnet = d.Porta;
        bool numero = false;
        d.NLeituras = l.NLEITURAS.toInt(&numero);
        if (!numero)
            d.NLeituras = 1;
        d.ApagarLog = l.BLNERASELOG == u"1";
        DescargasLog.push_back(d);
    }
}

void Descarga2251::DescarregarProximoLog() {
    const Vigia vigia(this);
    try {
        try {
            if (LinhaActual == 0)
                LinhaActual = 1;
            const int linha = m_ficheiro.isEmpty() ? proximaLinha() : LinhaActual * int(!m_activa);
            if (linha == 0)
                return TerminarLeiturasLog2251();
            LinhaActual = linha;
            if (!std::exchange(m_activa, true))
                Q_EMIT comecou();
            AlterarEstadoDescargaLOG(linha, mensagens2251::emCurso);
            servir(vigia);
        } catch (...) {
            const QString porque = descricaoDe(std::current_exception());
            falhar(mensagens2251::principal.texto(), porque);
            seguir();
        }
    } catch (const Interrompido &) {
    }
}

// The next ticked row, 0 when there is none. Ticked rows wait, the others rest.
int Descarga2251::proximaLinha() {
    int primeira = 0;
    for (int n = LinhaActual; n <= m_lista.total(); ++n) {
        const bool escolhida = m_lista.linha(n).SELECT == u"SIM" && size_t(n) <= DescargasLog.size();
        AlterarEstadoDescargaLOG(n, escolhida ? mensagens2251::aEspera : mensagens2251::parada);
        if (escolhida && primeira == 0)
            primeira = n;
    }
    return primeira;
}

void Descarga2251::servir(const Vigia &vigia) {
    const listaPoseidons::Linha l = m_lista.linha(LinhaActual);
    const QString xml = m_xml.DescarregarXML(l.IP, l.PORTA);
    const QString erroDoXml = m_xml.erro();
    const relogio2251::Verificacao relogio = relogio2251::VerificarDataDoPoseidon(xml);
    const importacao::Resultado importado = importacao::CarregarPoseidonParaBD(
        l.IP, l.TIPON, l.UDP, l.MAC, l.DESCRICAO, l.PORTA, l.SELECT, l.BLNERASELOG, l.NLEITURAS,
        [this](const QString &ip, const QString &porta) { return m_xml.DescarregarXML(ip, porta); },
        [&vigia] { vigia.passar(); });
    vigia.forcar();
    if (importado.portaTelnet)
        actual().PortaTelnet = *importado.portaTelnet;
    const QString motivo = xml.isEmpty() ? erroDoXml : importado.motivo;
    actual().Pormenor = motivo;
    // What the configuration could not follow would be lost with the unit's memory. A file needs no unit.
    if (!importado.motivo.isEmpty() && (m_ficheiro.isEmpty() || !xml.isEmpty()))
        actual().Reservas += importado.motivo;
    if (relogio.resultado != relogio2251::emTempo && m_ficheiro.isEmpty()) {
        const mensagens2251::Relogio r = mensagens2251::relogio(relogio.resultado);
        const bool difere = relogio.resultado == relogio2251::difere;
        falhar(r.mensagem.texto(), difere ? mensagens2251::horaDoDispositivo.texto(relogio.dataHora) : motivo,
               r.estado);
        return seguir();
    }
    DescarregarLog2251(actual().IP, actual().Porta, vigia);
}

void Descarga2251::DescarregarLog2251(const QString &ip, qint32 porta, const Vigia &vigia) {
    try {
        if (m_PosLog && m_PosLog->estado() == PosLog::ligado)
            m_PosLog->fechar();
        m_PosLog = m_ficheiro.isEmpty() ? novoPosLog() : novoPosLogDeFicheiro(m_ficheiro);
        connect(m_PosLog.get(), &PosLog::OnDownload, this,
                [this](bool ok) { receber(ok, actual().NLeituras, {}, mensagens2251::recepcao); });
        connect(m_PosLog.get(), &PosLog::OnError, this, [this](int codigo, const QString &texto) {
            receber(false, 0, mensagens2251::erroDoLog(codigo, texto), mensagens2251::conversao);
        });
        const QString endereco = m_ficheiro.isEmpty() ? rede::resolver(modPoseidons::TratarIP(ip), this) : QString(ip);
        prepararPosLog(*m_PosLog, endereco, porta);
        m_PosLog->abrir();
        m_PosLog->descarregar();
    } catch (...) {
        const QString porque = descricaoDe(std::current_exception());
        if (!vigia.vivo())
            throw Interrompido();
        falhar(mensagens2251::inicio.texto(), porque);
        seguir();
    }
}

// The end of a transfer. Nothing may leave an event by an exception.
void Descarga2251::receber(bool ok, int nLeituras, const QString &erro, const Mensagem &seFalhar) {
    const Vigia vigia(this);
    try {
        SaveDataToDatabase(ok, nLeituras, erro, vigia);
    } catch (const Interrompido &) {
    } catch (...) {
        falhar(seFalhar.texto());
        seguir();
    }
}

void Descarga2251::SaveDataToDatabase(bool ok, int nLeituras, const QString &erro, const Vigia &vigia) {
    if (!erro.isEmpty()) {
        falhar(erro, actual().Pormenor);
        return seguir();
    }
    if (!ok && m_PosLog->numeroDeRegistos() < 0)
        falhar(mensagens2251::semRegistos.texto(), actual().Pormenor);
    try {
        guardarLinhas(nLeituras, vigia);
    } catch (...) {
        const QString porque = descricaoDe(std::current_exception());
        falhar(mensagens2251::conversao.texto(), porque);
    }
    seguir();
}

void Descarga2251::guardarLinhas(int nLeituras, const Vigia &vigia) {
    const std::shared_ptr<PosLog> log = m_PosLog; // outlives this object, should it go meanwhile
    const std::function<void()> passar = [&vigia] { vigia.passar(); };
    const QString ip = actual().IP;
    TratamentoDados2251 tratamento(passar);
    if (log->numeroDeRegistos() > 0) {
        try {
            tratamento.definirGuarda(guardarBruto(*log, passar));
        } catch (const Falha &f) {
            return falhar(mensagens2251::erroDoLog(PosLog::escrita, f.descricao()), actual().Pormenor);
        }
    }
    qint64 linhas = 0;
    for (QString linha = log->proximaLinha(); !linha.isEmpty(); linha = log->proximaLinha()) {
        tratamento.TratarDadosRecebidos(ip, linha, nLeituras, linhas == 0);
        ++linhas;
        vigia.passar();
    }
    if (linhas == 0) {
        if (actual().Estado == 0)
            actual().Pormenor = emFrases({semLinhas.texto(), actual().Pormenor});
        Q_EMIT linhaMudou(LinhaActual);
        return;
    }
    const bool guardado = tratamento.GuardarDados(ip);
    vigia.forcar();
    const modTratamentoDados2251::Balanco &balanco = tratamento.balanco();
    DescargaLog &d = actual();
    d.Resumo = resumo2251::dizer(balanco);
    if (balanco.naoLidas > 0)
        d.Reservas += resumo2251::ilegiveis(balanco);
    if (!guardado) {
        if (m_ficheiro.isEmpty())
            d.Resumo += resumo2251::memoriaIntacta(log->numeroDeRegistos());
        return falhar(tratamento.falhouFicheiro() ? mensagens2251::erroDoLog(PosLog::escrita, tratamento.motivo())
                                                  : mensagens2251::baseDeDados.texto(),
                      tratamento.falhouFicheiro() ? QString() : tratamento.motivo());
    }
    concluir(balanco.naoLidas, tratamento.linhasReunidas() > 0, vigia);
}

// The lines as they came; a log that lies among the kept ones is not kept once more.
QString Descarga2251::guardarBruto(const PosLog &log, const std::function<void()> &passar) const {
    if (!m_ficheiro.isEmpty() && logBruto::guardado(m_ficheiro))
        return m_ficheiro;
    const DescargaLog &d = DescargasLog[size_t(LinhaActual) - 1];
    return logBruto::gravar(log, d.IP, d.Porta, passar);
}

// Everything that was read is stored. Only a log without reservations is a success and lets the memory go.
void Descarga2251::concluir(qint64 naoLidas, bool deuLeituras, const Vigia &vigia) {
    DescargaLog &d = actual();
    const bool apagar = d.ApagarLog && m_ficheiro.isEmpty() && d.Reservas.isEmpty() && deuLeituras;
    if (!apagar && m_ficheiro.isEmpty())
        d.Resumo += resumo2251::memoriaIntacta(m_PosLog->numeroDeRegistos());
    if (!d.Reservas.isEmpty())
        return falhar(naoLidas > 0 ? mensagens2251::naoLidas.texto().arg(estado().ambiente.locale.toString(naoLidas))
                                   : configuracaoPorImportar.texto(),
                      d.Pormenor);
    d.Estado = 1;
    d.Mensagem = mensagens2251::sucesso.texto();
    // What gave nothing may be worth reading another day.
    if (d.ApagarLog && m_ficheiro.isEmpty() && !deuLeituras)
        d.Pormenor = emFrases({d.Pormenor, naoApagado.texto()});
    AlterarEstadoDescargaLOG(LinhaActual, mensagens2251::comSucesso);
    if (apagar)
        ApagarLog(vigia);
}

// A refusal comes as an event of the log object, behind this.
void Descarga2251::ApagarLog(const Vigia &vigia) {
    const std::shared_ptr<PosLog> log = m_PosLog;
    const bool apagado = log->apagar();
    if (!vigia.vivo())
        throw Interrompido();
    if (!apagado) {
        actual().Pormenor = emFrases({mensagens2251::sucesso.texto(), actual().Pormenor});
        return;
    }
    actual().Resumo += resumo2251::memoriaApagada(log->numeroDeRegistos(), log->registosRestantes());
    Q_EMIT linhaMudou(LinhaActual);
}

void Descarga2251::AlterarEstadoDescargaLOG(int linha, int estado) {
    const int icone = mensagens2251::iconeDoEstado(estado);
    m_lista.linha(linha).DSTAT = icone;
    Q_EMIT linhaMudou(linha);
}

void Descarga2251::falhar(const QString &mensagem, const QString &pormenor, int estado) {
    DescargaLog &d = actual();
    d.Estado = -1;
    d.Mensagem = mensagem;
    d.Pormenor = pormenor;
    AlterarEstadoDescargaLOG(LinhaActual, estado);
}

void Descarga2251::seguir() {
    m_TimerDNextLog.start();
}

void Descarga2251::TerminarLeiturasLog2251() {
    m_activa = false;
    Q_EMIT terminou();
}
