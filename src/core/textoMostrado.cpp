#include "core/textoMostrado.h"

#include "core/literais.h"

#include <algorithm>

namespace {

constexpr QChar marca = QChar::ReplacementCharacter;
constexpr QChar fimDeLinha = u'↵';
constexpr qsizetype maximoDaPalavra = 120;

bool eFimDeLinha(QChar c) {
    return c == u'\n' || c == u'\r' || c == QChar::LineSeparator || c == QChar::ParagraphSeparator || c == QChar(0x85);
}

// A control of the text, or one that turns the direction of what follows: "exe.txt" could read "txt.exe".
bool eOrdem(QChar c) {
    const ushort u = c.unicode();
    return u < 0x20 || (u >= 0x7f && u < 0xa0) || u == 0x061c || u == 0x200e || u == 0x200f ||
           (u >= 0x202a && u <= 0x202e) || (u >= 0x2066 && u <= 0x206f) || u == 0xfeff || (u >= 0xfff9 && u <= 0xfffb);
}

bool eMetade(const QString &texto, qsizetype i) {
    if (texto[i].isHighSurrogate())
        return i + 1 >= texto.size() || !texto[i + 1].isLowSurrogate();
    return texto[i].isLowSurrogate() && (i == 0 || !texto[i - 1].isHighSurrogate());
}

QString encurtar(QString texto, qsizetype maximo) {
    if (maximo < 0 || texto.size() <= maximo)
        return texto;
    texto.truncate(maximo > 1 && texto[maximo - 2].isHighSurrogate() ? maximo - 2 : maximo - 1);
    return texto + u'…';
}

// `separador` stands for a line end.
QString limpar(const QString &texto, QChar separador) {
    if (std::none_of(texto.begin(), texto.end(),
                     [](QChar c) { return eOrdem(c) || eFimDeLinha(c) || c.isSurrogate(); }))
        return texto;
    QString limpo;
    limpo.reserve(texto.size());
    for (qsizetype i = 0; i < texto.size(); ++i) {
        const QChar c = texto[i];
        if (eFimDeLinha(c)) {
            limpo += separador;
            if (c == u'\r' && i + 1 < texto.size() && texto[i + 1] == u'\n')
                ++i;
        } else if (c == u'\t') {
            limpo += u' ';
        } else {
            limpo += eOrdem(c) || eMetade(texto, i) ? marca : c;
        }
    }
    return limpo;
}

// Only what can be shown is looked at, and enough to tell that there is more.
QString inicio(const QString &texto, qsizetype maximo) {
    return maximo < 0 ? texto : texto.left(2 * maximo + 2);
}

// No window breaks a line inside a word, so that one word decides how wide a message gets.
QString comPalavrasCurtas(const QString &texto) {
    qsizetype palavra = 0;
    QString quebrado;
    for (qsizetype i = 0; i < texto.size(); ++i) {
        palavra = texto[i].isSpace() ? 0 : palavra + 1;
        if (palavra > maximoDaPalavra && !texto[i].isLowSurrogate()) {
            quebrado += u'\n';
            palavra = 1;
        }
        quebrado += texto[i];
    }
    return quebrado;
}

} // namespace

namespace textoMostrado {

QString linha(const QString &texto, qsizetype maximo) {
    return encurtar(limpar(inicio(texto, maximo), fimDeLinha), maximo);
}

QString paragrafos(const QString &texto, qsizetype maximo, qsizetype maximoDeLinhas) {
    QString limpo = limpar(inicio(texto, maximo), u'\n');
    if (maximo < 0)
        return limpo;
    limpo = comPalavrasCurtas(encurtar(limpo, maximo));
    qsizetype fim = -1;
    for (qsizetype n = 0; n < maximoDeLinhas; ++n)
        if (fim = limpo.indexOf(u'\n', fim + 1); fim < 0)
            return limpo;
    limpo.truncate(fim + 1);
    return limpo + u'…';
}

} // namespace textoMostrado
