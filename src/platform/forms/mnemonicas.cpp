#include "platform/forms/mnemonicas.h"

#include <QSet>

namespace {

// In this order: every keyboard has the plain letters, and a word is known by its first.
enum class Procura { Inicios, Simples, Quaisquer };

bool serve(const QString &legenda, qsizetype i, Procura procura) {
    const QChar c = legenda[i];
    const bool inicio = i == 0 || !legenda[i - 1].isLetterOrNumber();
    const bool simples = c.unicode() < 0x80;
    return c.isLetterOrNumber() && (i + 1 == legenda.size() || !legenda[i + 1].isMark()) &&
           (simples || procura == Procura::Quaisquer) && (inicio || procura != Procura::Inicios);
}

qsizetype lugarLivre(const QString &legenda, const QSet<QChar> &tomadas, Procura procura) {
    for (qsizetype i = 0; i < legenda.size(); ++i)
        if (serve(legenda, i, procura) && !tomadas.contains(legenda[i].toLower()))
            return i;
    return -1;
}

} // namespace

namespace mnemonicas {

QChar letraDe(const QString &legenda) {
    for (qsizetype i = 0; i + 1 < legenda.size(); ++i)
        if (legenda[i] == u'&' && legenda[++i] != u'&')
            return legenda[i].toLower();
    return {};
}

QStringList distribuir(const QStringList &legendas) {
    QStringList marcadas = legendas;
    QSet<QChar> tomadas;
    for (const QString &legenda : legendas)
        tomadas.insert(letraDe(legenda));
    tomadas.remove(QChar());
    for (const Procura procura : {Procura::Inicios, Procura::Simples, Procura::Quaisquer})
        for (QString &legenda : marcadas) {
            if (!letraDe(legenda).isNull())
                continue;
            const qsizetype i = lugarLivre(legenda, tomadas, procura);
            if (i < 0)
                continue;
            tomadas.insert(legenda[i].toLower());
            legenda.insert(i, u'&');
        }
    return marcadas;
}

} // namespace mnemonicas
