#include "core/literais.h"
#include "logger/numeros1921.h"
#include "logger/registoDS1921.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>

// Random bytes through the parsers of a button's pages. Under the sanitizers any slip ends the program; the same start
// gives the same run. Argument: rounds.
namespace {

const QString romid = u"D63B2000FBC52B21"_s;

void exigir(bool certo, const char *oque, int ronda) {
    if (certo)
        return;
    std::fprintf(stderr, "round %d: %s\n", ronda, oque);
    std::exit(1);
}

// What a read of the six pages gives back.
QByteArray paginas(const QStringList &linhas) {
    QByteArray bytes;
    for (qsizetype i = 1; i < linhas.size() && i <= registoDS1921::paginasLidas; ++i)
        bytes += registoDS1921::bytesDoTexto(linhas[i]).leftJustified(registoDS1921::caracteresLidos, '\0');
    return bytes;
}

} // namespace

int main(int argc, char **argv) {
    const int rondas = argc > 1 ? std::atoi(argv[1]) : 200'000;
    std::mt19937 acaso(1921);
    const QByteArray certos[] = {
        paginas(registoDS1921::CriarEstruturaDasLinhas(u"0001abc"_s, u"nome"_s, romid + u"15", u"-0,5"_s)),
        QByteArray("0012Lota").leftJustified(30) + QByteArray("Pescado").leftJustified(30) + QByteArray(30, ' ') +
            QByteArray("0,5").leftJustified(30)};
    int aceites[] = {0, 0};
    for (int ronda = 0; ronda < rondas; ++ronda) {
        // Near a real record, so that every field is reached.
        QByteArray bytes = certos[ronda % 2];
        for (unsigned mudados = acaso() % 6; mudados > 0; --mudados)
            bytes[qsizetype(acaso() % size_t(bytes.size()))] = char(acaso());
        if (ronda % 3 == 0)
            bytes.truncate(qsizetype(acaso() % size_t(bytes.size() + 1)));
        const auto r = registoDS1921::decifrar(QString::fromLatin1(bytes), romid);
        if (r) {
            ++aceites[r->VersaoAntiga];
            const int intervalo = r->intervalo.toInt();
            exigir(!r->TextoMissao.isEmpty() && !r->descricaoRegistador.isEmpty(), "a name is empty", ronda);
            exigir(intervalo >= 1 && intervalo <= numeros1921::maiorIntervalo, "interval", ronda);
            exigir(std::isfinite(r->Calibracao), "calibration", ronda);
        }
        tmex::Pagina pagina{};
        for (quint8 &b : pagina)
            b = quint8(acaso());
        exigir(registoDS1921::LerAmostrasMissao(pagina) <= 0xFFFFFF, "samples", ronda);
        exigir(registoDS1921::RolloverOcorreu(pagina) <= (pagina[14] != 0), "rollover", ronda);
    }
    exigir(rondas < 1000 || (aceites[0] > 0 && aceites[1] > 0), "no record was accepted", rondas);
    std::printf("%d rounds, %d new and %d old records accepted\n", rondas, aceites[0], aceites[1]);
    return 0;
}
