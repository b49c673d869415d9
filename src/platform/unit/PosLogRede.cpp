#include "core/espera.h"
#include "core/literais.h"
#include "platform/unit/linhas.h"
#include "platform/unit/protocolo.h"
#include "platform/unit/rede.h"
#include "platform/unit/sessaoLog.h"

#include <QCryptographicHash>

#include <algorithm>
#include <map>
#include <new>
#include <optional>

namespace {

namespace klog = protocolo::klog;

// What a unit says, for a message: printable and short.
QString textoDoDispositivo(const klog::Resposta &resposta) {
    QString texto = QString::fromUtf8(resposta.valores.join(' ')).left(80);
    std::replace_if(
        texto.begin(), texto.end(), [](QChar c) { return !c.isPrint(); }, u'?');
    return texto;
}

class PosLogRede final : public PosLog {
public:
    PosLogRede();
    void definirEndereco(const QString &endereco) override { m_endereco = endereco.trimmed(); }
    void definirPorta(qint32 porta) override { m_porta = porta; }
    void definirOpcao(int numero, qint32 valor) override { m_opcoes[numero] = valor; }
    void definirSilencio(int ms) override { m_silencio = ms; }
    void definirTotal(int ms) override { m_total = ms; }
    bool abrir() override;
    void fechar() override;
    int estado() const override;
    void descarregar() override;
    bool apagar() override;
    qint64 registosRestantes() const override { return m_restam; }
    qint32 numeroDeRegistos() const override { return m_numero; }
    QString proximaLinha() override;
    bool gravarLinhas(QIODevice &destino) const override { return m_numero >= 0 && m_linhas.gravar(destino); }

private:
    enum class Operacao { Nenhuma, Descarga, Apagamento };
    void tratarLinha(QByteArrayView linha);
    void iniciarRegistos(const klog::Resposta &resposta);
    void tratarRegisto(QByteArrayView registo);
    void terminarDescarga(const klog::Resposta &resposta);
    void terminarApagamento(const klog::Resposta &resposta);
    void falhar(const Motivo &motivo, const QString &pormenor = {});
    void avisar(const std::function<void()> &evento);

    QString m_endereco;
    qint32 m_porta = 80;
    std::map<int, qint32> m_opcoes;
    int m_silencio;
    int m_total = totalPorOmissao;

    SessaoLog *m_sessao;
    Operacao m_operacao = Operacao::Nenhuma;
    int m_opcoesPorConfirmar = 0;
    std::optional<qint64> m_anunciados; // while records come
    QCryptographicHash m_soma{QCryptographicHash::Sha256};
    Linhas m_linhas;
    qint32 m_numero = -1;
    QByteArray m_somaRecebida;
    bool m_apagado = false;
    qint64 m_restam = -1;
    int m_vez = 0; // events of an earlier use of the object are dropped
};

PosLogRede::PosLogRede()
    : m_silencio(rede::definicao(u"LogEspera"_s, silencioPorOmissao, 100, 600000)), m_sessao(new SessaoLog(this)) {
    m_sessao->aoChegarLinha = [this](QByteArrayView linha) {
        try {
            tratarLinha(linha);
        } catch (const std::bad_alloc &) {
            falhar(motivos::espaco);
        }
    };
    m_sessao->aoFalhar = [this](const Motivo &motivo, const QString &pormenor) { falhar(motivo, pormenor); };
}

bool PosLogRede::abrir() {
    const bool valido = m_porta > 0 && m_porta < 65536 && !m_endereco.isEmpty() &&
                        std::all_of(m_endereco.cbegin(), m_endereco.cend(), [](QChar c) {
                            return c.isLetterOrNumber() || c == u'.' || c == u'-' || c == u'_';
                        });
    if (valido)
        m_sessao->ligar(m_endereco, quint16(m_porta));
    return valido;
}

void PosLogRede::fechar() {
    ++m_vez;
    m_operacao = Operacao::Nenhuma;
    m_sessao->cortar();
}

int PosLogRede::estado() const {
    switch (m_sessao->ponto()) {
    case SessaoLog::Ponto::Fechada:
        return fechado;
    case SessaoLog::Ponto::Pronta:
        return ligado;
    default:
        return aLigar;
    }
}

void PosLogRede::descarregar() {
    if (m_operacao != Operacao::Nenhuma)
        return;
    ++m_vez;
    m_linhas.limpar();
    m_soma.reset();
    m_anunciados.reset();
    m_numero = -1;
    m_operacao = Operacao::Descarga;
    if (m_sessao->ponto() == SessaoLog::Ponto::Fechada && !abrir())
        return falhar(motivos::endereco);
    m_opcoesPorConfirmar = 0;
    for (const auto &[numero, valor] : m_opcoes) {
        if (valor == 0)
            continue;
        ++m_opcoesPorConfirmar;
        m_sessao->pedir("SET " + QByteArray::number(numero) + ' ' + QByteArray::number(valor));
    }
    m_sessao->pedir("LOG");
    m_sessao->vigiar(m_silencio, m_total);
}

// On a connection of its own: the one of the download may have died while the rows were written.
bool PosLogRede::apagar() {
    if (m_operacao != Operacao::Nenhuma) {
        avisar([this] { Q_EMIT OnError(motivos::ocupado.codigo, motivos::ocupado.texto()); });
        return false;
    }
    m_apagado = false;
    m_restam = -1;
    m_operacao = Operacao::Apagamento;
    if (!abrir()) {
        falhar(motivos::endereco);
        return false;
    }
    const bool descarregado = m_numero >= 0;
    m_sessao->pedir(descarregado ? "ERASE " + QByteArray::number(m_numero) + ' ' + m_somaRecebida
                                 : QByteArrayLiteral("ERASE ALL"));
    m_sessao->vigiar(m_silencio, m_total);
    espera::ate(this, m_total, [this] { return m_operacao != Operacao::Apagamento; });
    return m_apagado;
}

QString PosLogRede::proximaLinha() {
    QByteArrayView linha;
    return m_numero >= 0 && m_linhas.proxima(linha) ? QString::fromUtf8(linha) : QString();
}

void PosLogRede::tratarLinha(QByteArrayView linha) {
    if (m_operacao == Operacao::Nenhuma)
        return;
    if (m_anunciados && linha.startsWith(':'))
        return tratarRegisto(linha.sliced(1));
    const klog::Resposta resposta = klog::lerLinha(linha);
    if (resposta.palavra == "ERR")
        return falhar(m_operacao == Operacao::Apagamento ? motivos::apagamento : motivos::dispositivo,
                      textoDoDispositivo(resposta));
    if (m_operacao == Operacao::Apagamento)
        return terminarApagamento(resposta);
    if (m_anunciados)
        return terminarDescarga(resposta);
    if (resposta.palavra != "OK")
        return falhar(motivos::estrutura);
    if (m_opcoesPorConfirmar > 0)
        --m_opcoesPorConfirmar;
    else
        iniciarRegistos(resposta);
}

void PosLogRede::iniciarRegistos(const klog::Resposta &resposta) {
    m_anunciados = klog::numero(resposta, 0);
    if (!m_anunciados)
        return falhar(motivos::estrutura);
    if (*m_anunciados > maximoDeRegistos)
        return falhar(motivos::espaco, QString::number(*m_anunciados));
}

void PosLogRede::tratarRegisto(QByteArrayView registo) {
    if (m_linhas.quantas() >= *m_anunciados)
        return falhar(motivos::contagem);
    if (m_linhas.bytes() + registo.size() >= maximoDeBytes)
        return falhar(motivos::espaco);
    if (registo.contains('\0'))
        return falhar(motivos::conversao);
    m_soma.addData(registo);
    m_soma.addData(QByteArrayView("\n", 1));
    m_linhas.juntar(registo);
}

void PosLogRede::terminarDescarga(const klog::Resposta &resposta) {
    if (resposta.palavra != "END" || resposta.valores.size() != 2)
        return falhar(motivos::estrutura);
    if (klog::numero(resposta, 0) != m_anunciados || m_linhas.quantas() != *m_anunciados)
        return falhar(motivos::contagem, QString::number(m_linhas.quantas()) + u'/' + QString::number(*m_anunciados));
    m_somaRecebida = m_soma.result().toHex();
    if (resposta.valores.at(1) != m_somaRecebida)
        return falhar(motivos::soma);
    m_sessao->descansar();
    m_anunciados.reset();
    m_operacao = Operacao::Nenhuma;
    m_numero = m_linhas.quantas();
    avisar([this] { Q_EMIT OnDownload(true); });
}

void PosLogRede::terminarApagamento(const klog::Resposta &resposta) {
    const auto restam = klog::numero(resposta, 0);
    const bool tudo = m_numero < 0;
    if (resposta.palavra != "OK" || !restam || (tudo && *restam != 0))
        return falhar(motivos::limpeza, textoDoDispositivo(resposta));
    m_sessao->descansar();
    m_operacao = Operacao::Nenhuma;
    m_apagado = true;
    m_restam = *restam;
}

void PosLogRede::falhar(const Motivo &motivo, const QString &pormenor) {
    const Operacao operacao = std::exchange(m_operacao, Operacao::Nenhuma);
    const bool pedido = m_sessao->pedidoEnviado();
    m_sessao->cortar();
    m_anunciados.reset();
    if (operacao == Operacao::Nenhuma)
        return;
    if (operacao == Operacao::Descarga)
        m_linhas.limpar();
    // Once the unit has been told to erase, a lost connection leaves open whether it did.
    const bool duvida = operacao == Operacao::Apagamento && pedido && motivo.codigo != apagamento;
    const int codigo = duvida ? limpeza : motivo.codigo;
    avisar([this, codigo, texto = motivo.texto(pormenor)] { Q_EMIT OnError(codigo, texto); });
}

// Never from inside a socket's event or a caller's routine: whoever handles it may destroy this object.
void PosLogRede::avisar(const std::function<void()> &evento) {
    QMetaObject::invokeMethod(
        this,
        [this, evento, vez = m_vez] {
            if (vez == m_vez)
                evento();
        },
        Qt::QueuedConnection);
}

} // namespace

std::unique_ptr<PosLog> novoPosLog() {
    return std::make_unique<PosLogRede>();
}
