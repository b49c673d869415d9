#include "core/estado.h"
#include "core/falha.h"
#include "core/literais.h"
#include "demo/captura.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTextStream>

#include <chrono>
#include <csignal>
#include <ctime>

namespace {

using Relogio = std::chrono::steady_clock;

// Sleeps until then; true when asked to end.
bool esperarAte(Relogio::time_point quando, const sigset_t &sinais) {
    const auto falta = std::chrono::duration_cast<std::chrono::nanoseconds>(quando - Relogio::now()).count();
    const qint64 ns = std::max<qint64>(falta, 0);
    const timespec prazo{time_t(ns / 1'000'000'000), long(ns % 1'000'000'000)};
    return sigtimedwait(&sinais, nullptr, &prazo) > 0;
}

} // namespace

int main(int argc, char **argv) {
    QCoreApplication app(argc, argv);
    QTextStream saida(stdout), erro(stderr);
    QCommandLineParser argumentos;
    argumentos.setApplicationDescription(u"Acrescenta leituras a uma base de dados, como o serviço de captura."_s);
    argumentos.addHelpOption();
    argumentos.addPositionalArgument(u"base"_s, u"base de dados da instalação"_s);
    argumentos.addOptions({{u"segundos"_s, u"acaba ao fim deste tempo (por omissão, só quando mandado)"_s, u"N"_s},
                           {u"intervalo"_s, u"milissegundos entre leituras (1000)"_s, u"MS"_s, u"1000"_s},
                           {u"semente"_s, u"a da instalação (1)"_s, u"S"_s, u"1"_s}});
    argumentos.process(app);
    const int intervalo = argumentos.value(u"intervalo"_s).toInt();
    const qint64 segundos = argumentos.value(u"segundos"_s).toLongLong();
    if (argumentos.positionalArguments().size() != 1 || intervalo < 1 || segundos < 0) {
        erro << u"Falta a base de dados, ou um número não serve. Ver --help."_s << Qt::endl;
        return 2;
    }

    // Taken one at a time between readings, so that a reading is never cut short.
    sigset_t sinais;
    sigemptyset(&sinais);
    for (const int s : {SIGTERM, SIGINT, SIGHUP})
        sigaddset(&sinais, s);
    sigprocmask(SIG_BLOCK, &sinais, nullptr);

    qint64 falhas = 0;
    try {
        demonstracao::Captura captura(argumentos.positionalArguments().constFirst(),
                                      argumentos.value(u"semente"_s).toULongLong());
        const auto inicio = Relogio::now();
        for (auto quando = inicio; !esperarAte(quando, sinais); quando += std::chrono::milliseconds(intervalo)) {
            if (segundos > 0 && quando - inicio >= std::chrono::seconds(segundos))
                break;
            try {
                captura.passo(estado().ambiente.agora());
            } catch (const Falha &f) {
                ++falhas;
                erro << f.descricao() << Qt::endl;
            }
        }
        saida << u"%1 leituras de %2 sensores, %3 alarmes, %4 falhas"_s.arg(captura.leituras())
                     .arg(captura.sensores())
                     .arg(captura.alarmes())
                     .arg(falhas)
              << Qt::endl;
    } catch (const Falha &f) {
        erro << f.descricao() << Qt::endl;
        return 1;
    }
    return falhas > 0 ? 1 : 0;
}
