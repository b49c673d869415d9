#include "core/literais.h"
#include "platform/unit/linhas.h"
#include "platform/unit/motivos.h"

#include <QFile>

#include <new>
#include <optional>

namespace {

// The lines of a file, read piece by piece so that the interface stays alive, with the same limits and events.
class PosLogFicheiro final : public PosLog {
public:
    explicit PosLogFicheiro(const QString &caminho) : m_ficheiro(caminho) {}
    void definirEndereco(const QString &) override {}
    void definirPorta(qint32) override {}
    void definirOpcao(int, qint32) override {}
    void definirSilencio(int) override {}
    void definirTotal(int) override {}
    bool abrir() override { return m_ficheiro.isOpen() || m_ficheiro.open(QIODevice::ReadOnly); }
    void fechar() override;
    int estado() const override { return m_ficheiro.isOpen() ? ligado : fechado; }
    void descarregar() override;
    bool apagar() override;
    qint64 registosRestantes() const override { return -1; }
    qint32 numeroDeRegistos() const override { return m_numero; }
    QString proximaLinha() override;
    bool gravarLinhas(QIODevice &destino) const override { return m_numero >= 0 && m_linhas.gravar(destino); }

private:
    void lerPedaco();
    std::optional<Motivo> juntar(QByteArrayView linha);
    std::optional<Motivo> separar(bool ultimo);
    void terminar(const std::optional<Motivo> &motivo);
    void depois(void (PosLogFicheiro::*passo)());

    QFile m_ficheiro;
    QByteArray m_entrada;
    Linhas m_linhas;
    qint32 m_numero = -1;
    int m_vez = 0;
};

void PosLogFicheiro::depois(void (PosLogFicheiro::*passo)()) {
    QMetaObject::invokeMethod(
        this,
        [this, passo, vez = m_vez] {
            if (vez == m_vez)
                (this->*passo)();
        },
        Qt::QueuedConnection);
}

void PosLogFicheiro::fechar() {
    ++m_vez;
    m_ficheiro.close();
}

void PosLogFicheiro::descarregar() {
    ++m_vez;
    m_linhas.limpar();
    m_entrada.clear();
    m_numero = -1;
    depois(&PosLogFicheiro::lerPedaco);
}

void PosLogFicheiro::lerPedaco() {
    if (!abrir() || (m_entrada.isEmpty() && m_linhas.quantas() == 0 && !m_ficheiro.seek(0)))
        return terminar(motivos::ficheiro);
    try {
        const QByteArray pedaco = m_ficheiro.read(256 * 1024);
        const bool ultimo = pedaco.isEmpty();
        if (ultimo && m_ficheiro.error() != QFileDevice::NoError)
            return terminar(motivos::ficheiro);
        m_entrada += pedaco;
        if (m_linhas.quantas() == 0 && m_entrada.startsWith("\xEF\xBB\xBF"))
            m_entrada.remove(0, 3);
        const auto motivo = separar(ultimo);
        if (motivo || ultimo)
            return terminar(motivo);
    } catch (const std::bad_alloc &) {
        return terminar(motivos::espaco);
    }
    depois(&PosLogFicheiro::lerPedaco);
}

std::optional<Motivo> PosLogFicheiro::separar(bool ultimo) {
    if (ultimo && !m_entrada.isEmpty() && !m_entrada.endsWith('\n'))
        m_entrada += '\n';
    qsizetype inicio = 0;
    for (qsizetype fim = 0; (fim = m_entrada.indexOf('\n', inicio)) >= 0; inicio = fim + 1) {
        if (const auto motivo = juntar(QByteArrayView(m_entrada).sliced(inicio, fim - inicio)))
            return motivo;
    }
    m_entrada.remove(0, inicio);
    return m_entrada.size() > linhaMaxima ? std::optional(motivos::longa) : std::nullopt;
}

std::optional<Motivo> PosLogFicheiro::juntar(QByteArrayView linha) {
    if (linha.endsWith('\r'))
        linha.chop(1);
    if (linha.size() > linhaMaxima)
        return motivos::longa;
    if (linha.contains('\0'))
        return motivos::conversao;
    if (m_linhas.quantas() >= maximoDeRegistos || m_linhas.bytes() + linha.size() >= maximoDeBytes)
        return motivos::espaco;
    m_linhas.juntar(linha);
    return std::nullopt;
}

void PosLogFicheiro::terminar(const std::optional<Motivo> &motivo) {
    m_ficheiro.close();
    m_entrada.clear();
    if (motivo) {
        m_linhas.limpar();
        Q_EMIT OnError(motivo->codigo, motivo->texto());
    } else {
        m_numero = m_linhas.quantas();
        Q_EMIT OnDownload(true);
    }
}

bool PosLogFicheiro::apagar() {
    QMetaObject::invokeMethod(
        this, [this] { Q_EMIT OnError(motivos::ficheiroNaoApaga.codigo, motivos::ficheiroNaoApaga.texto()); },
        Qt::QueuedConnection);
    return false;
}

QString PosLogFicheiro::proximaLinha() {
    QByteArrayView linha;
    return m_numero >= 0 && m_linhas.proxima(linha) ? QString::fromUtf8(linha) : QString();
}

} // namespace

std::unique_ptr<PosLog> novoPosLogDeFicheiro(const QString &caminho) {
    return std::make_unique<PosLogFicheiro>(caminho);
}
