#include "data/comando.h"

#include "data/avarias.h"
#include "data/ligacao.h"

Comando::Comando(Ligacao &ligacao, const QString &sql)
    : m_motor((ligacao.motor(), ligacao.m_motor)), m_instrucao(Ligacao::preparar(*m_motor, sql, Motor::Uso::Muitas)),
      m_emTransaccao(m_motor->transaccoes > 0) {}

Comando::~Comando() {
    m_motor->esperar();
}

// Binding takes memory of the engine's, so that it waits for a commit on the other thread, as running does.
Instrucao &Comando::livre() {
    m_motor->esperar();
    return *m_instrucao;
}

void Comando::texto(int posicao, QByteArrayView utf8) {
    livre().ligarTexto(posicao, utf8, Instrucao::Bytes::Emprestados);
}

void Comando::copiar(int posicao, const QString &texto) {
    livre().ligarTexto(posicao, texto.toUtf8(), Instrucao::Bytes::Copiados);
}

void Comando::numero(int posicao, double valor) {
    livre().ligarReal(posicao, valor);
}

void Comando::inteiro(int posicao, qint64 valor) {
    livre().ligarInteiro(posicao, valor);
}

void Comando::nulo(int posicao) {
    livre().ligarNulo(posicao);
}

void Comando::celula(int posicao, const Celula &valor) {
    switch (valor.tipo) {
    case Celula::Tipo::Nulo:
        return nulo(posicao);
    case Celula::Tipo::Inteiro:
        return inteiro(posicao, valor.inteiro);
    case Celula::Tipo::Real:
        return numero(posicao, valor.real);
    case Celula::Tipo::Texto:
        return livre().ligarTexto(posicao, valor.bytes, Instrucao::Bytes::Copiados);
    case Celula::Tipo::Bloco:
        return livre().ligarBloco(posicao, valor.bytes);
    }
}

qint64 Comando::executar() {
    m_motor->esperar();
    const bool sozinho = !m_motor->emTransaccao();
    if (m_emTransaccao && (m_motor->transaccoes == 0 || sozinho))
        avarias::falharAnulada();
    m_motor->exigirSemPasso();
    if (sozinho)
        m_motor->exigirNoLugar();
    const qint64 alteradas = m_instrucao->executar();
    if (sozinho)
        m_motor->exigirNoLugar();
    return alteradas;
}
