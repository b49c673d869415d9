#include "tests/apoio/textosDasFontes.h"

#include "core/literais.h"

#include <QRegularExpression>

namespace {

QString semEscapes(QString literal) {
    return literal.replace(u"\\\""_s, u"\""_s).replace(u"\\n"_s, u"\n"_s).replace(u"\\\\"_s, u"\\"_s);
}

// "u"a" "b"_s" -> "ab"
QString juntar(const QString &literais) {
    static const QRegularExpression um(QLatin1String(R"re("((?:[^"\\]|\\.)*)")re"));
    QString junto;
    for (auto m = um.globalMatch(literais); m.hasNext();)
        junto += m.next().captured(1);
    return semEscapes(junto);
}

const QString literal = QLatin1String(R"re((?:u?"(?:[^"\\]|\\.)*"(?:_s)?\s*)+)re");

} // namespace

namespace textosDasFontes {

Fonte analisar(QString codigo) {
    static const QRegularExpression comentario(u"^\\s*//.*$"_s, QRegularExpression::MultilineOption);
    static const QRegularExpression chamada(QLatin1String(R"re(\btexto\(\s*u"([^"]+)"_s,\s*()re") + literal + u")\\)"_s);
    static const QRegularExpression directa(
        QLatin1String(
            R"re(modTraducoes::texto\(\s*(?:u|QStringLiteral\()"([^"]+)"(?:_s|\)),\s*(?:u"([^"]+)"_s,\s*()re") +
        literal + u")\\))?"_s);
    static const QRegularExpression linha(
        QLatin1String(R"re(u"([A-Za-z][\w.()]*)",\s*(u"(?:[^"\\]|\\.)+"(?:\s*"(?:[^"\\]|\\.)*")*)\s*\})re"));
    codigo.remove(comentario);
    Fonte fonte;
    fonte.seccaoCalculada = codigo.contains(u"modTraducoes::seccaoDe("_s);
    for (auto m = directa.globalMatch(codigo); m.hasNext();)
        fonte.seccoes.append(m.next().captured(1));
    for (auto m = chamada.globalMatch(codigo); m.hasNext();) {
        const auto achado = m.next();
        fonte.textos.append({achado.captured(1), juntar(achado.captured(2))});
    }
    if (codigo.contains(u"modTraducoes::texto("_s)) // tables of texts
        for (auto m = linha.globalMatch(codigo); m.hasNext();) {
            const auto achado = m.next();
            fonte.textos.append({achado.captured(1), juntar(achado.captured(2))});
        }
    return fonte;
}

void juntarDirectos(const QString &codigo, Textos &usados) {
    static const QRegularExpression directa(
        QLatin1String(R"re((?:modTraducoes::texto|avisar)\(\s*u"([^"]+)"_s,\s*u"([^"]+)"_s,\s*()re") + literal +
        u")\\)"_s);
    for (auto m = directa.globalMatch(codigo); m.hasNext();) {
        const auto achado = m.next();
        usados[{achado.captured(1), achado.captured(2)}] = juntar(achado.captured(3));
    }
}

} // namespace textosDasFontes
