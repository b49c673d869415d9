// Makes languages/Kelvark-PT.ini from the texts of the program, and tells what the other languages lack. Shows the
// differences; writes only when told: vistrel-textos [--escrever].
#include "core/ficheiroInteiro.h"
#include "core/literais.h"
#include "core/perfil.h"
#include "tests/apoio/textosDoPrograma.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTextStream>

#include <algorithm>

namespace {

using textosDasFontes::Textos;

QByteArray ler(const QString &caminho) {
    QFile f(caminho);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

// Outer blanks and quotes are kept by quotes around the text.
QString linha(const QString &chave, const QString &texto) {
    const bool entreAspas = texto != texto.trimmed() || (texto.startsWith(u'"') && texto.endsWith(u'"'));
    return chave + u'=' + (entreAspas ? QString(u'"' + texto + u'"') : texto) + u'\n';
}

// Sections and keys in the order of the alphabet, without case, as the files have them.
QString ficheiroDe(const Textos &textos) {
    QList<QPair<QString, QString>> ordem = textos.keys();
    std::ranges::sort(ordem, [](const auto &a, const auto &b) {
        const int seccoes = a.first.compare(b.first, Qt::CaseInsensitive);
        return seccoes != 0 ? seccoes < 0 : a.second.compare(b.second, Qt::CaseInsensitive) < 0;
    });
    QString ficheiro, seccao;
    for (const auto &nome : std::as_const(ordem)) {
        if (nome.first != seccao)
            ficheiro += (ficheiro.isEmpty() ? u""_s : u"\n"_s) + u'[' + nome.first + u"]\n";
        seccao = nome.first;
        ficheiro += linha(nome.second, textos[nome]);
    }
    return ficheiro;
}

// "- " stands in the file alone, "+ " in the program alone.
int compararCom(const Perfil &antes, const Perfil &depois, QTextStream &saida) {
    int diferencas = 0;
    const auto dizer = [&](QChar sinal, const QString &seccao, const QString &chave, const QString &texto) {
        saida << sinal << u" ["_s << seccao << u"] "_s << linha(chave, texto);
        ++diferencas;
    };
    const auto soEm = [&](const Perfil &um, const Perfil &outro, QChar sinal) {
        for (const QString &seccao : um.seccoes())
            for (const QString &chave : um.chaves(seccao))
                if (um.valor(seccao, chave) != outro.valor(seccao, chave))
                    dizer(sinal, seccao, chave, um.valor(seccao, chave).value_or(QString()));
    };
    soEm(antes, depois, u'-');
    soEm(depois, antes, u'+');
    return diferencas;
}

} // namespace

int main(int argc, char *argv[]) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication aplicacao(argc, argv);
    QTextStream saida(stdout);
    const QString pastaDasFontes = QStringLiteral(VISTREL_FONTES);
    const QDir linguas(pastaDasFontes + u"/../languages");
    const Textos textos = textosDasFontes::textosDoPrograma(pastaDasFontes);
    const QByteArray novo = ficheiroDe(textos).toUtf8();
    const QString caminho = linguas.filePath(u"Kelvark-PT.ini"_s);
    const int diferencas = compararCom(Perfil(ler(caminho)), Perfil(novo), saida);
    for (const QString &codigo : {u"EN"_s, u"CZ"_s}) {
        const Perfil outra(ler(linguas.filePath(u"Kelvark-%1.ini"_s.arg(codigo))));
        for (auto t = textos.cbegin(); t != textos.cend(); ++t)
            if (!outra.valor(t.key().first, t.key().second))
                saida << codigo << u" ["_s << t.key().first << u"] "_s << linha(t.key().second, t.value());
    }
    saida << textos.size() << u" texts, "_s << diferencas << u" differences\n"_s;
    if (!QApplication::arguments().contains(u"--escrever"_s))
        return diferencas == 0 ? 0 : 1;
    FicheiroInteiro ficheiro(caminho);
    if (ficheiro.abrir() && ficheiro.write(novo) == novo.size() && ficheiro.concluir())
        return 0;
    saida << caminho << u": cannot be written\n"_s;
    return 2;
}
