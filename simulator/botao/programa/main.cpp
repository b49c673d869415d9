#include "core/literais.h"
#include "platform/onewire/trinco.h"
#include "simulator/botao/pty.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QTextStream>

#include <atomic>
#include <csignal>

using namespace simulador;

namespace {

std::atomic<bool> parar = false;

struct Opcoes {
    QCommandLineOption gaveta{u"gaveta"_s, u"pasta dos botões"_s, u"PASTA"_s};
    QCommandLineOption por{u"por"_s, u"põe no leitor este botão em vez do que lá está; vários com vírgulas"_s,
                           u"NOME"_s};
    QCommandLineOption tirar{u"tirar"_s, u"deixa o leitor sem botão"_s};
    QCommandLineOption lista{u"lista"_s, u"diz o que há na gaveta"_s};
    QCommandLineOption criar{u"criar"_s, u"faz um botão novo"_s, u"NOME"_s};
    QCommandLineOption tipo{u"tipo"_s, u"do botão novo: G, H ou Z"_s, u"TIPO"_s, u"G"_s};
    QCommandLineOption aceleracao{u"aceleracao"_s, u"tempo dos botões da gaveta em relação ao nosso (1)"_s, u"N"_s};
    QCommandLineOption defeito{u"defeito"_s, u"um mau comportamento, como crc=3; pode repetir-se"_s, u"NOME=N"_s};
    QCommandLineOption ligacao{u"ligacao"_s, u"nome fixo para a porta série virtual"_s, u"CAMINHO"_s};
};

QString ajuda() {
    QString texto = u"Adaptador 1-Wire virtual numa porta série virtual, com os botões de uma gaveta.\n\nDefeitos:\n"_s;
    for (const auto &d : tabelaDeDefeitosBotao)
        texto += u"  "_s + d.nome.toString().leftJustified(14) + d.descricao + u'\n';
    return texto;
}

bool lerDefeito(const QString &texto, DefeitosBotao &defeitos) {
    const qsizetype igual = texto.indexOf(u'=');
    bool lido = false;
    const int n = texto.mid(igual + 1).toInt(&lido);
    for (const auto &d : tabelaDeDefeitosBotao)
        if (igual > 0 && lido && texto.left(igual) == d.nome) {
            defeitos.*d.campo = n;
            return true;
        }
    return false;
}

bool criar(const Gaveta &gaveta, const QString &nome, const QString &tipo) {
    const int gama = tipo == u"H"_s ? 0x4F2 : tipo == u"Z"_s ? 0x3B2 : 0;
    if (gaveta.botao(nome) || nome.contains(u'/') || (gama == 0 && tipo != u"G"_s))
        return false;
    const auto rom = fazerRom(0x21, QRandomGenerator::global()->generate64(), gama);
    QDateTime relogio = QDateTime::currentDateTime();
    relogio.setTimeSpec(Qt::UTC);
    return gaveta.criar(nome, rom, relogio, milissegundosAgora()) != nullptr;
}

void listar(const Gaveta &gaveta, QTextStream &saida) {
    const QStringList noLeitor = gaveta.noLeitor();
    for (const QString &nome : gaveta.nomes()) {
        const auto botao = gaveta.botao(nome);
        if (!botao) {
            saida << nome << u"  ilegível\n"_s;
            continue;
        }
        botao->actualizar(milissegundosAgora());
        constexpr QStringView tipos[] = {u"G", u"H", u"Z"};
        saida << (noLeitor.contains(nome) ? u"* "_s : u"  "_s) << nome << u"  "_s << textoDoRom(botao->chip.rom());
        if (botao->temChip())
            saida << u"  DS1921"_s << tipos[size_t(botao->chip.variante())] << u"  amostras "_s
                  << botao->chip.contador() << (botao->chip.missao() ? u"  em missão"_s : u""_s);
        saida << u'\n';
    }
}

int servir(const Gaveta &gaveta, const DefeitosBotao &defeitos, const QString &ligacao, QTextStream &saida) {
    // The buttons' files have one writer: this program, or another that reads the drawer by itself.
    const onewire::Trinco trinco(gaveta.pasta());
    if (!trinco.preso())
        return 3;
    Linha linha(gaveta);
    linha.defeitos = defeitos;
    Adaptador2480 adaptador(linha);
    Pty pty(adaptador);
    if (!pty.abrir())
        return 1;
    if (!ligacao.isEmpty()) {
        if (QFileInfo(ligacao).isSymLink())
            QFile::remove(ligacao);
        if (!QFile::link(pty.caminho(), ligacao))
            return 1;
    }
    saida << pty.caminho() << u'\n';
    saida.flush();
    while (!parar)
        pty.servir(200);
    if (!ligacao.isEmpty())
        QFile::remove(ligacao);
    return 0;
}

} // namespace

int main(int argc, char **argv) {
    QCoreApplication app(argc, argv);
    QTextStream saida(stdout);
    QTextStream erros(stderr);
    const Opcoes o;
    QCommandLineParser linha;
    linha.setApplicationDescription(ajuda());
    linha.addHelpOption();
    linha.addOptions({o.gaveta, o.por, o.tirar, o.lista, o.criar, o.tipo, o.aceleracao, o.defeito, o.ligacao});
    linha.process(app);
    const auto falhar = [&](const QString &texto) {
        erros << texto << u'\n';
        return 2;
    };
    if (!linha.isSet(o.gaveta) || !linha.positionalArguments().isEmpty())
        return falhar(u"Falta --gaveta, ou há um argumento a mais."_s);
    const Gaveta gaveta(linha.value(o.gaveta));

    bool feito = false;
    if (linha.isSet(o.criar)) {
        if (!criar(gaveta, linha.value(o.criar), linha.value(o.tipo)))
            return falhar(u"Não é possível criar o botão \"%1\"."_s.arg(linha.value(o.criar)));
        feito = true;
    }
    if (linha.isSet(o.aceleracao)) {
        bool lido = false;
        const double n = linha.value(o.aceleracao).toDouble(&lido);
        if (!lido || !(n >= 0) || n > 1e6)
            return falhar(u"\"%1\" não serve para --aceleracao."_s.arg(linha.value(o.aceleracao)));
        const onewire::Trinco trinco(gaveta.pasta());
        if (!trinco.preso())
            return falhar(u"A gaveta está a ser usada por outro programa."_s);
        gaveta.acelerar(n, milissegundosAgora());
    }
    if (linha.isSet(o.por) || linha.isSet(o.tirar)) {
        const QStringList nomes = linha.isSet(o.por) ? linha.value(o.por).split(u',') : QStringList();
        for (const QString &nome : nomes)
            if (!gaveta.botao(nome))
                return falhar(u"Não há o botão \"%1\"."_s.arg(nome));
        if (!gaveta.trocar(nomes))
            return falhar(u"Não é possível escrever na gaveta."_s);
        feito = true;
    }
    if (linha.isSet(o.lista)) {
        listar(gaveta, saida);
        feito = true;
    }
    if (feito)
        return 0;
    DefeitosBotao defeitos;
    for (const QString &texto : linha.values(o.defeito))
        if (!lerDefeito(texto, defeitos))
            return falhar(u"\"%1\" não é um defeito."_s.arg(texto));
    for (int sinal : {SIGINT, SIGTERM})
        std::signal(sinal, [](int) { parar = true; });
    const int codigo = servir(gaveta, defeitos, linha.value(o.ligacao), saida);
    if (codigo == 3)
        return falhar(u"A gaveta está a ser usada por outro programa."_s);
    return codigo;
}
