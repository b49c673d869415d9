#include "tests/apoio/textosDasFontes.h"

#include "core/literais.h"

#include <QRegularExpression>

namespace {

const QString chave = QLatin1String(R"re(\s*u"([^"]+)"(?:_s)?,\s*)re");
const QString literal = QLatin1String(R"re(((?:u?"(?:[^"\\]|\\.)*"(?:_s)?\s*)+))re");

// Where a call works its section out, or has it in a variable.
const QString calculada = QLatin1String(R"re((?:\s*(?:modTraducoes::seccaoDe\((?:[^()]|\([^()]*\))*\)|\w+),)?)re");

// "u"a" "b"_s" -> "ab"
QString juntar(const QString &literais) {
    static const QRegularExpression um(QLatin1String(R"re("((?:[^"\\]|\\.)*)")re"));
    QString junto;
    for (auto m = um.globalMatch(literais); m.hasNext();)
        junto += m.next().captured(1);
    return junto.replace(u"\\\""_s, u"\""_s).replace(u"\\n"_s, u"\n"_s).replace(u"\\\\"_s, u"\\"_s);
}

QString semComentarios(QString codigo) {
    static const QRegularExpression comentario(u"^\\s*//.*$"_s, QRegularExpression::MultilineOption);
    return codigo.remove(comentario);
}

// With the text of a constant where it names a section.
QString comSeccoes(QString codigo) {
    static const QRegularExpression constante(
        QLatin1String(R"re(\b(?:const|constexpr) (?:QString|QStringView|auto) (\w+)(?: = |\(|\{)(u"[^"]+"(?:_s)?))re"));
    QHash<QString, QString> constantes;
    for (auto m = constante.globalMatch(codigo); m.hasNext();) {
        const auto achada = m.next();
        constantes[achada.captured(1)] = achada.captured(2);
    }
    for (auto c = constantes.cbegin(); c != constantes.cend(); ++c)
        codigo.replace(QRegularExpression(u"\\btexto\\(\\s*"_s + c.key() + u","), u"texto("_s + c.value() + u',');
    return codigo;
}

// Functions of the file that add the section: name -> section.
QHash<QString, QString> proprias(const QString &codigo) {
    static const QRegularExpression funcao(QLatin1String(
        R"re((\w+)(?: = \[[^\]]*\])?\((?:const QString &|QStringView )\w+, (?:const QString &|QStringView )\w+\)[^{};]*\{\s*return modTraducoes::(?:texto\(|CarregarLingua\(\w+, )u"([^"]+)"_s,)re"));
    QHash<QString, QString> funcoes;
    for (auto m = funcao.globalMatch(codigo); m.hasNext();) {
        const auto achada = m.next();
        funcoes[achada.captured(1)] = achada.captured(2);
    }
    return funcoes;
}

void juntarTodos(const QString &codigo, const QRegularExpression &padrao, QList<textosDasFontes::Texto> &textos) {
    for (auto m = padrao.globalMatch(codigo); m.hasNext();) {
        const auto achado = m.next();
        textos.append({achado.captured(1), juntar(achado.captured(2))});
    }
}

} // namespace

namespace textosDasFontes {

Fonte analisar(const QString &comComentarios) {
    static const QRegularExpression chamada(u"\\btexto\\("_s + calculada + chave + literal + u"\\)"_s);
    static const QRegularExpression linha(u"\\{(?:[^{}\"]*,\\s*)?"_s + chave.mid(3) + literal + u"\\}"_s);
    static const QRegularExpression propria(
        QLatin1String(R"re(modTraducoes::texto\(\s*(?:u|QStringLiteral\()"([^"]+)"(?:_s|\)),\s*+(?!u"))re"));
    const QString codigo = semComentarios(comComentarios);
    Fonte fonte;
    // The first one is the file's own; a second one belongs to a routine that names its texts alone.
    const auto achada = propria.match(codigo);
    fonte.seccao = achada.captured(1);
    // A constant that holds another section is no variable with the form's own.
    juntarTodos(comSeccoes(codigo), chamada, fonte.textos);
    if (achada.hasMatch())
        juntarTodos(codigo, linha, fonte.textos);
    return fonte;
}

void juntarDirectos(const QString &comComentarios, Textos &usados) {
    static const QRegularExpression directa(QLatin1String(R"re((?:modTraducoes::texto|avisar)\(\s*u"([^"]+)"_s,)re") +
                                            chave + literal + u"\\)"_s);
    struct Genero {
        QString seccao, inicio, fim;
    };
    QList<Genero> generos = {
        {u"DSfrmDS1921"_s, u"\\btexto1921\\("_s, u"\\)"_s},
        {u"frmDescarregar2251"_s, u"\\bMensagem \\w+\\{"_s, u"\\}"_s},
    };
    static const QRegularExpression lista(u"\\b(Mensagem \\w+)\\[\\] = \\{([^;]*)\\};"_s);
    QString codigo = comSeccoes(semComentarios(comComentarios));
    for (auto m = lista.globalMatch(codigo); m.hasNext();) { // an array of them as so many single ones
        const auto achada = m.next();
        codigo += QString(achada.captured(2)).replace(u"{"_s, achada.captured(1) + u'{');
    }
    for (auto m = directa.globalMatch(codigo); m.hasNext();) {
        const auto achado = m.next();
        usados[{achado.captured(1), achado.captured(2)}] = juntar(achado.captured(3));
    }
    const QHash<QString, QString> funcoes = proprias(codigo);
    for (auto f = funcoes.cbegin(); f != funcoes.cend(); ++f)
        generos.append({f.value(), u"\\b"_s + f.key() + u"\\(", u"\\)"_s});
    for (const Genero &g : std::as_const(generos)) {
        QList<Texto> textos;
        juntarTodos(codigo, QRegularExpression(g.inicio + chave + literal + g.fim), textos);
        for (const Texto &t : std::as_const(textos))
            if (!usados.contains({g.seccao, t.chave}))
                usados[{g.seccao, t.chave}] = t.omissao;
    }
}

} // namespace textosDasFontes
