#include "core/modDoubleTratamento.h"

#include "core/estado.h"
#include "core/falha.h"
#include "core/literais.h"
#include "core/modTraducoes.h"

#include <array>
#include <charconv>
#include <cmath>

namespace {

QString comSeparador(const QString &texto, const QString &separador) {
    QString outros;
    for (const QChar c : texto)
        if (!(c >= u'0' && c <= u'9') && c != u'-')
            outros += c;
    return outros.isEmpty() || outros == separador ? texto : QString(texto).replace(outros, separador);
}

// Digits and exponent of a finite number at 15 significant digits: value = 0.d1d2d3... * 10^expoente.
struct Decimal {
    bool negativo = false;
    QByteArray digitos; // no trailing zeros; empty for zero
    int expoente = 0;
};

Decimal decimalDe(double numero) {
    Decimal d;
    char tampao[40];
    const auto fim =
        std::to_chars(tampao, tampao + sizeof tampao, std::fabs(numero), std::chars_format::scientific, 14);
    const QByteArray texto(tampao, fim.ptr - tampao);
    const qsizetype e = texto.indexOf('e');
    d.digitos = texto.left(1) + texto.mid(2, e - 2);
    d.expoente = texto.mid(e + 1).toInt() + 1;
    while (d.digitos.endsWith('0'))
        d.digitos.chop(1);
    if (d.digitos.isEmpty())
        d.expoente = 0;
    d.negativo = std::signbit(numero) && !d.digitos.isEmpty();
    return d;
}

QByteArray textoDe(const Decimal &d) {
    if (d.digitos.isEmpty())
        return "0";
    QByteArray t = d.negativo ? "-" : "";
    if (d.expoente <= 0)
        t += "0." + QByteArray(-d.expoente, '0') + d.digitos;
    else if (d.expoente >= d.digitos.size())
        t += d.digitos + QByteArray(d.expoente - d.digitos.size(), '0');
    else
        t += d.digitos.left(d.expoente) + '.' + d.digitos.mid(d.expoente);
    return t;
}

// The shortest text that gives the same number back is also the one of 15 digits, as long as it has no more of them.
// That is so for nearly every reading, and it is many times faster. Empty when it is not so.
QByteArray textoCurto(double numero) {
    constexpr double maximo = 1e15;
    constexpr double minimo = 1e-4;
    const double absoluto = std::fabs(numero);
    if (absoluto == 0)
        return "0";
    if (absoluto < minimo || absoluto >= maximo)
        return {};
    char tampao[40];
    const auto fim = std::to_chars(tampao, tampao + sizeof tampao, numero, std::chars_format::fixed);
    constexpr qsizetype maisCurto = 15; // signs, points and leading zeros counted as digits
    return fim.ptr - tampao <= maisCurto ? QByteArray(tampao, fim.ptr - tampao) : QByteArray();
}

// Digits with a separator between them, which is what nearly every text of a reading is; no locale has to be asked.
std::optional<double> lerSimples(const QString &texto, const QString &separador) {
    std::array<char, 24> tampao;
    if (texto.isEmpty() || texto.size() > qsizetype(tampao.size()) || separador.size() != 1)
        return {};
    char *fim = tampao.data();
    bool digito = false; // before this one
    for (const QChar c : texto) {
        const bool agora = c >= u'0' && c <= u'9';
        if (!agora && !(c == u'-' && fim == tampao.data()) && !(c == separador.front() && digito))
            return {};
        *fim++ = c == separador.front() ? '.' : char(c.unicode());
        digito = agora;
    }
    double valor = 0;
    const auto lido = std::from_chars(tampao.data(), fim, valor);
    return digito && lido.ec == std::errc() && lido.ptr == fim ? std::optional(valor) : std::nullopt;
}

qsizetype decimais(const QByteArray &comPonto) {
    const qsizetype ponto = comPonto.indexOf('.');
    return ponto < 0 ? 0 : comPonto.size() - ponto - 1;
}

QString comSeparadorDecimal(const QByteArray &comPonto) {
    QString t = QString::fromLatin1(comPonto);
    if (const qsizetype ponto = t.indexOf(u'.'); ponto > 0)
        t[ponto] = modDoubleTratamento::SeparadorDecimal().front();
    return t;
}

} // namespace

namespace modDoubleTratamento {

QString SeparadorDecimal() {
    const QLocale &locale = estado().ambiente.locale;
    const QString separador = locale.decimalPoint();
    return separador.size() == 1 && locale.zeroDigit().size() == 1 ? separador : u","_s;
}

std::optional<double> LerDouble(const QString &texto) {
    // Blanks around the number are no part of its separator.
    const QString separador = SeparadorDecimal();
    const QString local = comSeparador(texto.trimmed(), separador);
    if (const std::optional<double> simples = lerSimples(local, separador))
        return simples;
    bool ok = false;
    double valor = estado().ambiente.locale.toDouble(local, &ok);
    if (!ok) // "-5" is a number in every locale, also where the locale's own minus sign is another character
        valor = QLocale::c().toDouble(QString(local).replace(separador, u"."_s), &ok);
    return ok && std::isfinite(valor) ? std::optional(valor) : std::nullopt;
}

double TextoParaDouble(const QString &texto) {
    if (const std::optional<double> valor = LerDouble(texto))
        return *valor;
    throw Falha(erros::tipoIncompativel,
                modTraducoes::texto(u"KelvarkAUX"_s, u"ValorNaoNumerico"_s, u"Valor não numérico: \"%1\""_s)
                    .arg(texto.left(60)));
}

QString TextoComPonto(const QString &texto) {
    return comSeparador(texto, u"."_s);
}

bool eND(const QString &texto) {
    return QStringView(texto).trimmed().compare(u"ND", Qt::CaseInsensitive) == 0;
}

QByteArray NumeroComPonto(double numero) {
    if (!std::isfinite(numero))
        return {};
    const QByteArray curto = textoCurto(numero);
    return curto.isEmpty() ? textoDe(decimalDe(numero)) : curto;
}

QString NumeroParaTexto(double numero) {
    return comSeparadorDecimal(NumeroComPonto(numero));
}

QString NumeroParaTexto(double numero, int casas) {
    if (casas < 0)
        return NumeroParaTexto(numero);
    QByteArray t = NumeroComPonto(numero);
    if (decimais(t) > casas)
        t = NumeroComPonto(Arredondar(numero, casas));
    if (const qsizetype faltam = casas - decimais(t); faltam > 0 && !t.isEmpty())
        t += (faltam == casas ? "." : "") + QByteArray(faltam, '0');
    return comSeparadorDecimal(t);
}

double Arredondar(double numero, int casas) {
    if (!std::isfinite(numero))
        return numero;
    Decimal d = decimalDe(numero);
    const qsizetype ficam = d.expoente + casas;
    if (ficam >= d.digitos.size())
        return d.digitos.isEmpty() ? 0 : numero;
    if (ficam < 0)
        return 0;
    const QByteArray resto = d.digitos.mid(ficam);
    d.digitos.truncate(ficam);
    const bool impar = !d.digitos.isEmpty() && (d.digitos.back() - '0') % 2 == 1;
    if (resto > "5" || (resto == "5" && impar)) {
        qsizetype i = ficam - 1;
        while (i >= 0 && d.digitos[i] == '9')
            d.digitos[i--] = '0';
        if (i >= 0) {
            ++d.digitos[i];
        } else {
            d.digitos.prepend('1');
            ++d.expoente;
        }
    }
    return textoDe(d).toDouble();
}

} // namespace modDoubleTratamento
