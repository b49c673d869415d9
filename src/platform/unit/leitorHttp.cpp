#include "platform/unit/leitorHttp.h"

#include <algorithm>

namespace {

constexpr qsizetype linhaDePedacoMaxima = 256;

// Where a line ends: its length and that of its end; nothing while it is not complete.
struct Linha {
    qsizetype tamanho;
    qsizetype comFim;
};
std::optional<Linha> procurarLinha(const QByteArray &bytes) {
    const qsizetype fim = bytes.indexOf('\n');
    if (fim < 0)
        return std::nullopt;
    return Linha{fim > 0 && bytes.at(fim - 1) == '\r' ? fim - 1 : fim, fim + 1};
}

bool eNomeDeCampo(QByteArrayView nome) {
    return !nome.isEmpty() && std::all_of(nome.cbegin(), nome.cend(), [](char c) {
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
               QByteArrayView("!#$%&'*+-.^_`|~").contains(c);
    });
}

} // namespace

LeitorHttp::Ponto LeitorHttp::alimentar(QByteArrayView bytes) {
    m_algum = m_algum || !bytes.isEmpty();
    if (m_ponto == Ponto::Fim && m_estado != 101 && !bytes.isEmpty())
        m_ponto = Ponto::Excedente;
    m_entrada.append(bytes);
    while (m_ponto == Ponto::Cabeca && lerCabeca()) {
    }
    if (m_ponto == Ponto::Corpo)
        lerCorpo();
    return m_ponto;
}

LeitorHttp::Ponto LeitorHttp::fechado() {
    if (m_ponto == Ponto::Corpo && m_medida == Medida::Ate)
        acabar();
    else if (!terminado())
        m_ponto = Ponto::Cortada;
    return m_ponto;
}

QByteArray LeitorHttp::campo(const QByteArray &nomeMinusculo) const {
    QByteArray valor;
    for (const auto &[nome, texto] : m_campos) {
        if (nome == nomeMinusculo)
            valor += valor.isEmpty() ? texto : QByteArray(", " + texto);
    }
    return valor;
}

// One line of the head; false when more bytes are needed or the head has ended.
bool LeitorHttp::lerCabeca() {
    const auto linha = procurarLinha(m_entrada);
    if (!linha) {
        // Something that is not HTTP shows in its first bytes; there is no need to wait for a line of it.
        const qsizetype n = std::min<qsizetype>(m_entrada.size(), 5);
        if (m_entrada.size() > cabecaMaxima || (m_estado == 0 && m_entrada.left(n) != QByteArray("HTTP/").left(n)))
            m_ponto = Ponto::Malformada;
        return false;
    }
    const QByteArray texto = m_entrada.left(linha->tamanho);
    m_entrada.remove(0, linha->comFim);
    if (m_estado == 0) {
        if (!lerLinhaDeEstado(texto))
            m_ponto = Ponto::Malformada;
    } else if (!texto.isEmpty()) {
        if (!lerCampo(texto))
            m_ponto = Ponto::Malformada;
    } else if (m_estado >= 100 && m_estado < 200 && m_estado != 101) {
        m_estado = 0; // an interim answer; the real one follows
        m_campos.clear();
    } else {
        medirCorpo();
    }
    return m_ponto == Ponto::Cabeca;
}

// "HTTP/1.1 200 OK"
bool LeitorHttp::lerLinhaDeEstado(QByteArrayView linha) {
    if (!linha.startsWith("HTTP/1.") || linha.size() < 12 || linha[8] != ' ' || (linha.size() > 12 && linha[12] != ' '))
        return false;
    int estado = 0;
    for (qsizetype i = 9; i < 12; ++i) {
        if (linha[i] < '0' || linha[i] > '9')
            return false;
        estado = estado * 10 + (linha[i] - '0');
    }
    m_estado = estado;
    return estado >= 100;
}

bool LeitorHttp::lerCampo(QByteArrayView linha) {
    const qsizetype doisPontos = linha.indexOf(':');
    if (doisPontos < 0 || !eNomeDeCampo(linha.first(doisPontos)))
        return false;
    qsizetype gasto = linha.size();
    for (const auto &[nome, texto] : std::as_const(m_campos))
        gasto += nome.size() + texto.size();
    if (gasto > cabecaMaxima || m_campos.size() >= 100)
        return false;
    m_campos.append(
        {linha.first(doisPontos).toByteArray().toLower(), linha.sliced(doisPontos + 1).toByteArray().trimmed()});
    return true;
}

void LeitorHttp::medirCorpo() {
    m_ponto = Ponto::Corpo;
    if (m_estado == 101 || m_estado == 204 || m_estado == 304) {
        m_ponto = Ponto::Fim;
        return;
    }
    const QByteArray transferencia = campo("transfer-encoding");
    const QByteArray comprimento = campo("content-length");
    if (!transferencia.isEmpty()) {
        if (transferencia.toLower() != "chunked" || !comprimento.isEmpty())
            m_ponto = Ponto::Malformada;
        m_medida = Medida::Pedacos;
    } else if (!comprimento.isEmpty()) {
        m_medida = Medida::Comprimento;
        const bool digitos = comprimento.size() <= 15 && std::all_of(comprimento.cbegin(), comprimento.cend(),
                                                                     [](char c) { return c >= '0' && c <= '9'; });
        m_falta = comprimento.toLongLong();
        if (!digitos)
            m_ponto = Ponto::Malformada;
        else if (m_falta > m_limite)
            m_ponto = Ponto::Grande;
    }
}

void LeitorHttp::juntar(qsizetype quantos) {
    if (m_corpo.size() + quantos > m_limite) {
        m_ponto = Ponto::Grande;
        return;
    }
    m_corpo.append(m_entrada.constData(), quantos);
    m_entrada.remove(0, quantos);
}

void LeitorHttp::lerCorpo() {
    if (m_medida == Medida::Pedacos)
        return lerPedacos();
    if (m_medida == Medida::Ate)
        return juntar(m_entrada.size());
    const qsizetype quantos = std::min<qint64>(m_falta, m_entrada.size());
    juntar(quantos);
    m_falta -= quantos;
    if (m_falta == 0)
        acabar();
}

void LeitorHttp::lerPedacos() {
    while (m_ponto == Ponto::Corpo) {
        if (!m_noPedaco) {
            if (!lerTamanhoDoPedaco())
                return;
            continue;
        }
        const qsizetype quantos = std::min<qint64>(m_falta, m_entrada.size());
        juntar(quantos);
        m_falta -= quantos;
        if (m_falta > 0 || m_ponto != Ponto::Corpo)
            return;
        const auto linha = procurarLinha(m_entrada); // the end of the chunk's data
        if (linha && linha->tamanho == 0) {
            m_entrada.remove(0, linha->comFim);
            m_noPedaco = false;
        } else if (linha || m_entrada.size() > 1) {
            m_ponto = Ponto::Malformada;
        } else {
            return;
        }
    }
}

// Also the trailing fields behind the last chunk, which are passed over.
bool LeitorHttp::lerTamanhoDoPedaco() {
    const auto linha = procurarLinha(m_entrada);
    if (!linha || linha->tamanho > linhaDePedacoMaxima) {
        if (linha || m_entrada.size() > linhaDePedacoMaxima)
            m_ponto = Ponto::Malformada;
        return false;
    }
    const QByteArray texto = m_entrada.left(linha->tamanho);
    m_entrada.remove(0, linha->comFim);
    if (m_ultimoPedaco) {
        if (texto.isEmpty())
            acabar();
        return true;
    }
    const QByteArray tamanho = texto.split(';').first().trimmed();
    bool lido = !tamanho.isEmpty() && tamanho.size() <= 8 && tamanho.at(0) != '+' && tamanho.at(0) != '-';
    m_falta = lido ? tamanho.toLongLong(&lido, 16) : 0;
    if (!lido)
        m_ponto = Ponto::Malformada;
    else if (m_corpo.size() + m_falta > m_limite)
        m_ponto = Ponto::Grande;
    m_ultimoPedaco = m_falta == 0;
    m_noPedaco = !m_ultimoPedaco;
    return m_ponto == Ponto::Corpo;
}

void LeitorHttp::acabar() {
    m_ponto = m_entrada.isEmpty() ? Ponto::Fim : Ponto::Excedente;
}
