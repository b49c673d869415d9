#include "core/datas.h"

#include "core/estado.h"
#include "core/literais.h"

#include <cmath>
#include <limits>

namespace {

// Two or four digits at p, or -1.
int digitos(const char *p, int quantos) {
    int n = 0;
    for (int i = 0; i < quantos; ++i) {
        const unsigned d = static_cast<unsigned char>(p[i]) - unsigned('0');
        if (d > 9)
            return -1;
        n = n * 10 + static_cast<int>(d);
    }
    return n;
}

// Days since 1970-01-01 in the proleptic Gregorian calendar (years counted from March).
qint64 diasCivis(int ano, int mes, int dia) {
    ano -= mes <= 2 ? 1 : 0;
    const int era = ano / 400;
    const int anoDaEra = ano - era * 400;
    const int diaDoAno = (153 * (mes + (mes > 2 ? -3 : 9)) + 2) / 5 + dia - 1;
    const int diaDaEra = anoDaEra * 365 + anoDaEra / 4 - anoDaEra / 100 + diaDoAno;
    return qint64(era) * 146097 + diaDaEra - 719468;
}

using Formatos = Estado::FormatosDeData;

QString escrever(const Formatos &f, const QDate &data) {
    return f.usado.toString(data, f.data);
}

QString escrever(const Formatos &f, const QTime &hora) {
    return f.usado.toString(hora, f.hora);
}

// Reads what the formats write. The library's own reader makes a local time of it, which shifts in an hour that
// summer time skips, and stumbles over the digits and the words for the halves of the day of some languages.
class Leitor {
public:
    Leitor(const Formatos &formatos, const QString &texto) : m_locale(formatos.usado), m_texto(texto.trimmed()) {}

    QDateTime ler(const QString &formato) {
        for (qsizetype i = 0; i < formato.size();) {
            qsizetype n = 1;
            while (i + n < formato.size() && formato[i + n] == formato[i])
                ++n;
            const QChar letra = formato[i];
            if (letra == u'\'') { // 'text', with '' for one apostrophe
                const qsizetype fim = formato.indexOf(u'\'', i + 1);
                if (fim < 0 || !literal(fim == i + 1 ? u"'"_s : formato.mid(i + 1, fim - i - 1)))
                    return {};
                i = fim + 1;
                continue;
            }
            if (letra.toLower() == u'a') {
                if (!metadeDoDia())
                    return {};
                i += n;
                if (i < formato.size() && formato[i].toLower() == u'p')
                    ++i;
                continue;
            }
            if (!(campo(letra) ? numero(*campo(letra), int(n)) : literal(formato.mid(i, n))))
                return {};
            i += n;
        }
        if (m_posicao != m_texto.size())
            return {};
        if (m_metade >= 0) {
            if (m_hora < 1 || m_hora > 12)
                return {};
            m_hora = m_hora % 12 + 12 * m_metade;
        }
        const QDate data(m_ano, m_mes, m_dia);
        const QTime hora(m_hora, m_minuto, m_segundo);
        return data.isValid() && hora.isValid() ? QDateTime(data, hora, Qt::UTC) : QDateTime();
    }

private:
    int *campo(QChar letra) {
        switch (letra.unicode()) {
        case u'y':
            return &m_ano;
        case u'M':
            return &m_mes;
        case u'd':
            return &m_dia;
        case u'h':
        case u'H':
            return &m_hora;
        case u'm':
            return &m_minuto;
        case u's':
            return &m_segundo;
        default:
            return nullptr;
        }
    }

    // One or two digits, four for a year; in any script. Names of days and months are not read.
    bool numero(int &valor, int letras) {
        if (letras == 3 || (letras == 4 && &valor != &m_ano))
            return false;
        const int maximo = letras == 4 ? 4 : 2;
        int quantos = 0;
        for (valor = 0; quantos < maximo && m_posicao < m_texto.size(); ++quantos) {
            const bool par = m_texto[m_posicao].isHighSurrogate() && m_posicao + 1 < m_texto.size();
            const int digito =
                QChar::digitValue(par ? QChar::surrogateToUcs4(m_texto[m_posicao], m_texto[m_posicao + 1])
                                      : m_texto[m_posicao].unicode());
            if (digito < 0)
                break;
            valor = valor * 10 + digito;
            m_posicao += par ? 2 : 1;
        }
        return quantos > 0 && (letras < 4 || quantos == 4);
    }

    bool literal(const QString &esperado) {
        for (const QChar c : esperado) {
            if (m_posicao >= m_texto.size())
                return false;
            const QChar ha = m_texto[m_posicao++];
            if (ha != c && !(ha.isSpace() && c.isSpace()))
                return false;
        }
        return true;
    }

    bool metadeDoDia() {
        const QString nomes[] = {m_locale.amText(), m_locale.pmText()};
        for (int i = 0; i < 2; ++i) {
            if (nomes[i].isEmpty() || !QStringView(m_texto).mid(m_posicao).startsWith(nomes[i], Qt::CaseInsensitive))
                continue;
            m_metade = i;
            m_posicao += nomes[i].size();
            return true;
        }
        return false;
    }

    const QLocale &m_locale;
    QString m_texto;
    qsizetype m_posicao = 0;
    int m_ano = 0, m_mes = 0, m_dia = 0, m_hora = 0, m_minuto = 0, m_segundo = 0;
    int m_metade = -1; // 1: after noon
};

QDateTime ler(const Formatos &f, const QString &texto) {
    return Leitor(f, texto).ler(f.data + u' ' + f.hora);
}

Formatos formatosDe(const QLocale &locale) {
    Formatos f{locale, locale, locale.dateFormat(QLocale::ShortFormat), locale.timeFormat(QLocale::ShortFormat)};
    if (!f.data.contains(u"yyyy"))
        f.data.replace(u"yy"_s, u"yyyy"_s);
    // Long formats end in the zone's name; the short one has no seconds.
    if (!f.hora.contains(u's')) {
        const QChar separador = f.hora.contains(u'.') && !f.hora.contains(u':') ? u'.' : u':';
        f.hora.insert(f.hora.lastIndexOf(u'm') + 1, separador + u"ss"_s);
    }
    // A language whose own form cannot be read back gets the ISO form.
    for (const QTime &hora : {QTime(0, 7, 9), QTime(13, 45, 58)}) {
        const QDateTime instante(QDate(2024, 11, 25), hora, Qt::UTC);
        if (ler(f, escrever(f, instante.date()) + u' ' + escrever(f, hora)) != instante)
            return {locale, QLocale::c(), u"yyyy-MM-dd"_s, u"HH:mm:ss"_s};
    }
    return f;
}

const Formatos &formatos() {
    Formatos &f = estado().formatosDeData;
    if (f.data.isEmpty() || f.pedido != estado().ambiente.locale)
        f = formatosDe(estado().ambiente.locale);
    return f;
}

constexpr double semData = std::numeric_limits<double>::quiet_NaN();

} // namespace

namespace datas {

double segundosDe(const char *t, int tamanho) {
    if (!t || tamanho < 10 || t[4] != '-' || t[7] != '-')
        return semData;
    const int ano = digitos(t, 4);
    const int mes = digitos(t + 5, 2);
    const int dia = digitos(t + 8, 2);
    if (ano < 1 || mes < 1 || mes > 12 || dia < 1 || dia > 31)
        return semData;
    if (dia > 28 && !QDate::isValid(ano, mes, dia))
        return semData;
    int segundos = 0;
    if (tamanho > 10) {
        const bool comSegundos = tamanho >= 19 && t[16] == ':' && (tamanho == 19 || t[19] == '.');
        if ((tamanho != 16 && !comSegundos) || (t[10] != ' ' && t[10] != 'T') || t[13] != ':')
            return semData;
        const int h = digitos(t + 11, 2);
        const int m = digitos(t + 14, 2);
        const int s = comSegundos ? digitos(t + 17, 2) : 0;
        if (h < 0 || h > 23 || m < 0 || m > 59 || s < 0 || s > 59)
            return semData;
        segundos = h * 3600 + m * 60 + s;
    }
    return double(diasCivis(ano, mes, dia) * 86400 + segundos);
}

double segundosDe(const QString &texto) {
    const QByteArray b = texto.toLatin1();
    return segundosDe(b.constData(), int(b.size()));
}

double segundosDe(const QDateTime &instante) {
    return instante.isValid() ? double(QDateTime(instante.date(), instante.time(), Qt::UTC).toSecsSinceEpoch())
                              : semData;
}

QDateTime instanteDe(double segundos) {
    constexpr double demasiado = 1e12; // beyond any year of four digits
    if (!(std::fabs(segundos) < demasiado))
        return {};
    return QDateTime::fromSecsSinceEpoch(std::llround(segundos), Qt::UTC);
}

QString textoBD(const QDateTime &instante) {
    return instante.toString(u"yyyy-MM-dd HH:mm:ss"_s);
}

QString textoBD(double segundos) {
    return textoBD(instanteDe(segundos));
}

QString formatoData() {
    return formatos().data;
}

QString formatoHora() {
    return formatos().hora;
}

QString textoData(const QDate &data) {
    return escrever(formatos(), data);
}

QString textoHora(const QTime &hora) {
    return escrever(formatos(), hora);
}

QString textoDataHora(const QDateTime &instante) {
    return textoData(instante.date()) + u' ' + textoHora(instante.time());
}

QDateTime lerDataHora(const QString &texto) {
    return ler(formatos(), texto);
}

} // namespace datas
