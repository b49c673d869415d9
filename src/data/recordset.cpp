#include "data/recordset.h"

#include "core/datas.h"
#include "core/falha.h"
#include "core/literais.h"
#include "core/modDoubleTratamento.h"
#include "core/modTraducoes.h"

#include <cstring>
#include <limits>
#include <utility>

Recordset::Recordset(std::shared_ptr<Motor> motor, std::unique_ptr<Instrucao> instrucao)
    : m_motor(std::move(motor)), m_instrucao(std::move(instrucao)) {}

Recordset::Recordset(Recordset &&outro) noexcept = default;

Recordset &Recordset::operator=(Recordset &&outro) noexcept {
    std::swap(m_motor, outro.m_motor);
    std::swap(m_instrucao, outro.m_instrucao);
    std::swap(m_fim, outro.m_fim);
    return *this;
}

Recordset::~Recordset() {
    fechar();
}

void Recordset::fechar() {
    if (m_motor)
        m_motor->esperar();
    m_instrucao.reset();
    m_motor.reset();
}

bool Recordset::avancar() {
    if (!m_instrucao)
        throw Falha(erros::objectoFechado, u"A consulta está fechada."_s);
    if (m_fim) // one more step would run the query again
        return false;
    m_motor->esperar();
    m_fim = true; // also when the step fails
    m_fim = !m_instrucao->avancar();
    return !m_fim;
}

bool Recordset::escreve() const {
    const Instrucao *linha = actual();
    return linha && linha->escreve();
}

int Recordset::colunas() const {
    const Instrucao *linha = actual();
    return linha ? linha->colunas() : 0;
}

QString Recordset::nome(int coluna) const {
    const Instrucao *linha = actual();
    return linha ? QString::fromUtf8(linha->nome(coluna)) : QString();
}

int Recordset::coluna(const QString &procurado) const {
    for (int i = 0; i < colunas(); ++i)
        if (QAnyStringView::compare(QUtf8StringView(actual()->nome(i)), procurado, Qt::CaseInsensitive) == 0)
            return i;
    throw Falha(erros::chamadaInvalida,
                modTraducoes::texto(u"KelvarkAUX"_s, u"BDSemColuna"_s, u"A consulta não tem a coluna \"%1\"."_s)
                    .arg(procurado));
}

bool Recordset::eNumero(int coluna) const {
    const Celula::Tipo t = tipo(coluna);
    return t == Celula::Tipo::Real || t == Celula::Tipo::Inteiro;
}

Celula Recordset::celula(int coluna) const {
    Celula c;
    c.tipo = tipo(coluna);
    switch (c.tipo) {
    case Celula::Tipo::Nulo:
        break;
    case Celula::Tipo::Inteiro:
        c.inteiro = inteiro(coluna);
        break;
    case Celula::Tipo::Real:
        c.real = real(coluna);
        break;
    case Celula::Tipo::Texto: {
        int tamanho = 0;
        const char *bytes = utf8(coluna, tamanho);
        c.bytes = QByteArray(bytes, tamanho);
        break;
    }
    case Celula::Tipo::Bloco:
        c.bytes = actual()->bloco(coluna).toByteArray();
        break;
    }
    return c;
}

QVariant Recordset::guardado(int coluna) const {
    const Celula c = celula(coluna);
    switch (c.tipo) {
    case Celula::Tipo::Inteiro:
        return c.inteiro;
    case Celula::Tipo::Real:
        return c.real;
    case Celula::Tipo::Bloco:
        return QVariant::fromValue(Cru{c.bytes, true});
    case Celula::Tipo::Texto: {
        const QString lido = QString::fromUtf8(c.bytes);
        return lido.toUtf8() == c.bytes ? QVariant(lido) : QVariant::fromValue(Cru{c.bytes, false});
    }
    default:
        return {};
    }
}

QString Recordset::texto(int coluna) const {
    if (tipo(coluna) == Celula::Tipo::Real)
        return modDoubleTratamento::NumeroParaTexto(real(coluna));
    int tamanho = 0;
    const char *bytes = utf8(coluna, tamanho);
    return QString::fromUtf8(bytes, tamanho);
}

double Recordset::numero(int coluna) const {
    double valor = 0;
    if (const Instrucao *linha = actual(); linha && linha->numero(coluna, valor))
        return valor;
    const QString t = texto(coluna);
    if (modDoubleTratamento::eND(t))
        return std::numeric_limits<double>::quiet_NaN();
    return modDoubleTratamento::TextoParaDouble(t);
}

double Recordset::segundos(int coluna) const {
    constexpr size_t comprimento = 20; // what follows the seconds does not count
    const char *bytes = utf8(coluna);
    return datas::segundosDe(bytes, int(strnlen(bytes, comprimento)));
}

QDateTime Recordset::dataHora(int coluna) const {
    return datas::instanteDe(segundos(coluna));
}
