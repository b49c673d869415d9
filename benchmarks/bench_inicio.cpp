// From the start of the process to the shown main window, against an empty Qt main window's process with the same
// style; on a small and on a large database. Each run is a process of its own, which ends itself once it has painted.
// The database is held open meanwhile, as the capture service holds it: the first to open it makes the shared index.
#include "benchmarks/medidas.h"
#include "core/estado.h"
#include "core/literais.h"
#include "core/modINI.h"
#include "data/ligacao.h"
#include "data/recordset.h"
#include "platform/forms/dialogosQt.h"
#include "platform/forms/registoForms.h"
#include "shell/apresentadorQt.h"
#include "shell/arranque.h"
#include "shell/frmMain.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QMainWindow>
#include <QProcess>
#include <QTimer>

#include <cstdlib>
#include <cstring>

namespace {

constexpr int voltas = 31;
constexpr double limite = 2.0;

// The turn after the first paint: the window is shown.
void terminarDepoisDePintar(QWidget &janela) {
    janela.repaint();
    QTimer::singleShot(0, &janela, [] { std::_Exit(0); });
}

int vazia(int argc, char **argv) {
    QApplication app(argc, argv);
    QMainWindow janela;
    janela.resize(frmMain::tamanhoInicial(janela));
    janela.show();
    terminarDepoisDePintar(janela);
    return QApplication::exec();
}

int programa(int argc, char **argv, const QString &pasta) {
    QApplication app(argc, argv);
    DialogosQt dialogos;
    ApresentadorQt apresentador;
    estado().PastaPrograma = pasta;
    estado().ambiente.dialogos = &dialogos;
    estado().ambiente.apresentador = &apresentador;
    const std::unique_ptr<frmMain> principal = modMain::Main();
    terminarDepoisDePintar(*principal);
    return QApplication::exec();
}

double correr(const QStringList &argumentos) {
    return medidas::segundosDe([&] {
        QProcess p;
        p.setProcessChannelMode(QProcess::MergedChannels);
        p.start(QCoreApplication::applicationFilePath(), argumentos);
        if (!p.waitForFinished(60000) || p.exitCode() != 0)
            std::abort();
    });
}

} // namespace

// Arguments of the measuring process: folders of installations, small and large; none: only an empty one is made.
int main(int argc, char **argv) {
    if (argc == 2 && std::strcmp(argv[1], "--vazia") == 0)
        return vazia(argc, argv);
    if (argc == 3 && std::strcmp(argv[1], "--programa") == 0)
        return programa(argc, argv, QString::fromLocal8Bit(argv[2]));
    QCoreApplication app(argc, argv);
    bool bem = true;
    for (int i = 1; i < argc; ++i) {
        const QString pasta = QDir(QString::fromLocal8Bit(argv[i])).absolutePath();
        const QString base = pasta + u"/BD/Kelvark.mdb";
        Ligacao captura;
        captura.abrir(base);
        captura.consultar(u"SELECT COUNT(*) FROM sqlite_master"_s);
        const auto par = medidas::comparar(
            voltas,
            [&] {
                return correr({u"--programa"_s, pasta});
            },
            [] { return correr({u"--vazia"_s}); });
        bem &= medidas::dizer(qPrintable(u"início com "_s + QString::number(QFileInfo(base).size() / 1'000'000) +
                                         u" MB / janela Qt vazia"),
                              par, limite);
    }
    return bem ? 0 : 1;
}
