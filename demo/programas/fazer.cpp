#include "core/datas.h"
#include "core/falha.h"
#include "core/literais.h"
#include "demo/gerador.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTextStream>

namespace {

int recusar(QTextStream &erro, const QString &texto) {
    erro << texto << Qt::endl;
    return 2;
}

} // namespace

int main(int argc, char **argv) {
    QCoreApplication app(argc, argv);
    QTextStream saida(stdout), erro(stderr);
    QCommandLineParser argumentos;
    argumentos.setApplicationDescription(u"Faz uma instalação de demonstração numa pasta."_s);
    argumentos.addHelpOption();
    argumentos.addPositionalArgument(u"pasta"_s, u"onde fica a instalação"_s);
    argumentos.addOptions(
        {{u"linhas"_s, u"linhas ao todo, aproximadamente (por omissão, treze meses de história)"_s, u"N"_s},
         {u"semente"_s, u"do acaso; a mesma semente dá os mesmos dados (1)"_s, u"S"_s, u"1"_s},
         {u"fim"_s, u"último instante da história, \"AAAA-MM-DD HH:MM:SS\" (agora)"_s, u"INSTANTE"_s}});
    argumentos.process(app);
    if (argumentos.positionalArguments().size() != 1)
        return recusar(erro, u"Falta a pasta da instalação. Ver --help."_s);

    demonstracao::Pedido pedido;
    bool linhasBem = true, sementeBem = false;
    constexpr qint64 maximoDeLinhas = 200'000'000;
    if (argumentos.isSet(u"linhas"_s))
        pedido.linhas = argumentos.value(u"linhas"_s).toLongLong(&linhasBem);
    pedido.semente = argumentos.value(u"semente"_s).toULongLong(&sementeBem);
    if (!linhasBem || pedido.linhas < 0 || pedido.linhas > maximoDeLinhas || !sementeBem)
        return recusar(erro, u"--linhas e --semente são números inteiros, até %1 linhas."_s.arg(maximoDeLinhas));
    if (argumentos.isSet(u"fim"_s)) {
        pedido.fim = datas::instanteDe(datas::segundosDe(argumentos.value(u"fim"_s)));
        if (!pedido.fim.isValid())
            return recusar(erro, u"--fim não é um instante: %1"_s.arg(argumentos.value(u"fim"_s)));
    }
    pedido.aoAvancar = [&saida](const QString &oque) { saida << u"  "_s << oque << Qt::endl; };
    try {
        const QString pasta = argumentos.positionalArguments().constFirst();
        const demonstracao::Resultado r = demonstracao::fazerInstalacao(pasta, pedido);
        saida << u"%1 linhas, %2 MB, %3 s (%4 linhas/s)"_s.arg(r.linhas)
                     .arg(r.bytes / 1'000'000)
                     .arg(r.segundos, 0, 'f', 1)
                     .arg(double(r.linhas) / r.segundos, 0, 'f', 0)
              << Qt::endl;
    } catch (const Falha &f) {
        erro << f.descricao() << Qt::endl;
        return 1;
    }
    return 0;
}
