#include "core/literais.h"
#include "simulator/unidades/programa/argumentos.h"
#include "simulator/unidades/unidade.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QTextStream>

#include <memory>
#include <vector>

// Runs until it is stopped from outside. What was erased or set is on disk at once, so stopping loses nothing.
int main(int argc, char **argv) {
    QCoreApplication app(argc, argv);
    QTextStream saida(stdout);
    QTextStream erros(stderr);
    const QString programa = QFileInfo(app.applicationFilePath()).fileName();

    const Argumentos lidos = lerArgumentos(app.arguments());
    if (lidos.ajuda || lidos.defeitos) {
        saida << (lidos.ajuda ? textoDeAjuda(programa) : textoDosDefeitos());
        return 0;
    }
    if (!lidos.erro.isEmpty()) {
        erros << lidos.erro << u"\n"_s << programa << u" --help diz o que há.\n"_s;
        return 2;
    }
    std::vector<std::unique_ptr<simulador::Unidade>> unidades;
    QStringList pesquisa;
    for (const simulador::Definicao &d : lidos.unidades) {
        auto unidade = std::make_unique<simulador::Unidade>(d);
        if (!unidade->iniciar()) {
            erros << unidade->erro() << u'\n';
            return 1;
        }
        saida << unidade->definicao().nome << u": http://"_s << unidade->endereco() << u':' << unidade->portaWeb()
              << u"/  consola "_s << unidade->portaConsola() << u"  pesquisa "_s << unidade->portaPesquisa()
              << u"  registos "_s << unidade->registo().quantos() << u'\n';
        pesquisa.append(unidade->endereco() + u':' + QString::number(unidade->portaPesquisa()));
        unidades.push_back(std::move(unidade));
    }
    saida << u"\nPara as encontrar, no ficheiro de definições:\n[D2251]\nPesquisa="_s << pesquisa.join(u',')
          << u"\nPortaConsola="_s << unidades.front()->portaConsola() << u"\n"_s;
    saida.flush();
    return app.exec();
}
