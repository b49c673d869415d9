#include "poseidon/regras2251.h"

#include "core/estado.h"
#include "core/falha.h"
#include "core/modDoubleTratamento.h"
#include "core/modTraducoes.h"
#include "poseidon/mensagens2251.h"
#include "poseidon/modHwGroup.h"
#include "poseidon/tipos2251.h"

#include <cmath>

using modDoubleTratamento::NumeroParaTexto;
using modDoubleTratamento::TextoParaDouble;

namespace {

constexpr QStringView semLimite = u"NA";

// The decimal text of a number, point as separator, rounded to two places.
QByteArray duasCasasComPonto(double numero) {
    QByteArray t = modDoubleTratamento::NumeroComPonto(numero);
    if (t.isEmpty())
        throw Falha(erros::tipoIncompativel, mensagens2251::foraDosLimites.texto());
    const bool negativo = t.startsWith('-');
    if (negativo)
        t.remove(0, 1);
    const qsizetype ponto = t.indexOf('.');
    QByteArray digitos = ponto < 0 ? t : t.left(ponto);
    const QByteArray casas = (ponto < 0 ? QByteArray() : t.mid(ponto + 1)) + "000";
    digitos += casas.left(2);
    if (casas[2] >= '5') {
        qsizetype i = digitos.size() - 1;
        while (i >= 0 && digitos[i] == '9')
            digitos[i--] = '0';
        if (i >= 0)
            ++digitos[i];
        else
            digitos.prepend('1');
    }
    const bool zero = digitos.count('0') == digitos.size();
    digitos.insert(digitos.size() - 2, '.');
    return negativo && !zero ? "-" + digitos : digitos;
}

} // namespace

namespace modTratamentoDados2251 {

QString TratarValor(QStringView texto) {
    if (texto.isEmpty())
        return valorND.toString();
    return texto.chopped(1) + u'.' + texto.last(1);
}

int TratarValorRecebidoSpider(QStringView texto) {
    return texto == u"10" ? 1 : 0;
}

QString FormatarDuasCasas(double numero) {
    return QString::fromLatin1(duasCasasComPonto(numero)).replace(u"."_s, modDoubleTratamento::SeparadorDecimal());
}

double DuasCasas(double numero) {
    return duasCasasComPonto(numero).toDouble();
}

double comoTexto(double numero) {
    bool ok = false;
    const double lido = modDoubleTratamento::NumeroComPonto(numero).toDouble(&ok);
    if (!ok)
        throw Falha(erros::tipoIncompativel, mensagens2251::foraDosLimites.texto());
    return lido;
}

Redaccao redaccaoEm(const QString &lingua) {
    const auto traducao = [&](const QString &chave, const QString &omissao) {
        return modTraducoes::CarregarLingua(chave, u"KelvarkAUX"_s, omissao, lingua);
    };
    return {traducao(u"Max"_s, u"Máximo de "_s), traducao(u"Min"_s, u"Mínimo de "_s)};
}

Limites::Limites(const QString &maximo, const QString &minimo)
    : m_temMaximo(maximo != semLimite), m_temMinimo(minimo != semLimite) {
    try {
        m_maximo = m_temMaximo ? TextoParaDouble(maximo) : 0;
        m_minimo = m_temMinimo ? TextoParaDouble(minimo) : 0;
    } catch (const Falha &) {
        return;
    }
    m_existem = m_maximo != 0 || m_minimo != 0;
    if (m_existem)
        m_observacoes = (m_temMaximo ? NumeroParaTexto(m_maximo) : semLimite.toString()) + u"XXX" +
                        (m_temMinimo ? NumeroParaTexto(m_minimo) : semLimite.toString());
}

bool Limites::dentro(double valor) const {
    return !m_existem || !((m_temMaximo && valor > m_maximo) || (m_temMinimo && valor < m_minimo));
}

QString Limites::texto(double valor) const {
    return m_existem && dentro(valor) ? QString() : texto(valor, redaccaoEm(estado().Lingua));
}

QString Limites::texto(double valor, const Redaccao &redaccao) const {
    if (!m_existem)
        return semLimite.toString();
    const auto diferenca = [&](double limite) -> QString {
        return u' ' + NumeroParaTexto(modDoubleTratamento::Arredondar(valor - limite, 2));
    };
    QString texto;
    if (m_temMaximo && valor > m_maximo)
        texto = redaccao.maximo + diferenca(m_maximo);
    if (m_temMinimo && valor < m_minimo)
        texto += redaccao.minimo + diferenca(m_minimo);
    return texto;
}

MaxMin VerificarMaxMinParaBD(const QString &maximo, const QString &minimo, const QString &valor) {
    try {
        const double lido = TextoParaDouble(valor);
        const Limites limites(maximo, minimo);
        return {limites.observacoes(), limites.texto(lido)};
    } catch (const Falha &) {
        return {};
    }
}

QString TratarValorSensUI(double valor, const Gama &escala, const QString &tipo, const Gama &entrada) {
    if (!eSensUI(tipo))
        return u"NONE"_s;
    const bool semEscala = escala.maximo == 0 && escala.minimo == 0;
    const Gama &saida = semEscala ? entrada : escala;
    return FormatarDuasCasas(
        modHwGroup::ConverterEscalas(valor, entrada.maximo, entrada.minimo, saida.maximo, saida.minimo));
}

} // namespace modTratamentoDados2251
