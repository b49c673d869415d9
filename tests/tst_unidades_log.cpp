#include "core/espera.h"
#include "platform/unit/PosLog.h"
#include "tests/apoio/espera.h"
#include "tests/apoio/instalacao.h"
#include "tests/unidadesDeTeste.h"

#include <QTcpSocket>

using simulador::Defeito;
using simulador::Defeitos;

namespace {

// A log object bound to a unit, with what its events told.
struct Descarga {
    explicit Descarga(std::unique_ptr<PosLog> objecto) : log(std::move(objecto)) {}
    Descarga(const QString &endereco, int porta) : Descarga(novoPosLog()) {
        log->definirEndereco(endereco);
        log->definirPorta(porta);
        log->definirSilencio(250);
    }
    explicit Descarga(const simulador::Unidade &u) : Descarga(u.endereco(), u.portaWeb()) {}
    // Number of the error, -1 for success, -2 when nothing came.
    int correr(int ms = 15000) {
        bem.clear();
        mal.clear();
        log->abrir();
        log->descarregar();
        // Not qWaitFor(): that one sleeps between the turns of the loop.
        if (!espera::ate(log.get(), ms, [&] { return bem.count() + mal.count() > 0; }))
            return -2;
        deixarPassar(10); // nothing may follow
        if (bem.count() + mal.count() != 1)
            return -3;
        return mal.count() ? mal.at(0).at(0).toInt() : -1;
    }
    // Number of the error behind an erasure that fails, -1 otherwise.
    int apagar() {
        mal.clear();
        if (log->apagar() || mal.count() > 0) // never from inside the call
            return -1;
        return mal.wait(500) && mal.count() == 1 ? mal.at(0).at(0).toInt() : -1;
    }
    QStringList linhas() const {
        QStringList todas;
        for (QString linha; !(linha = log->proximaLinha()).isEmpty();)
            todas.append(linha);
        return todas;
    }
    std::unique_ptr<PosLog> log;
    QSignalSpy bem{log.get(), &PosLog::OnDownload};
    QSignalSpy mal{log.get(), &PosLog::OnError};
};

qint64 memoriaDoProcesso() { // bytes in physical memory
    QFile f(u"/proc/self/statm"_s);
    return f.open(QIODevice::ReadOnly) ? f.readAll().split(' ').value(1).toLongLong() * 4096 : 0;
}

// Sanitizers slow the program down and keep freed memory: what is measured under them says little.
#ifdef __SANITIZE_ADDRESS__
constexpr bool medidasContam = false;
#else
constexpr bool medidasContam = true;
#endif
constexpr double paragemMaxima = medidasContam ? 150 : 500; // milliseconds; a million lines in one piece take longer

// The longest work between two turns of the event loop, in milliseconds of this thread's own time, so that a busy
// machine does not count.
class MedidorDeParagens {
public:
    MedidorDeParagens() {
        m_ultima = agora();
        QObject::connect(&m_pulso, &QTimer::timeout, &m_pulso, [this] {
            m_maior = maior();
            m_ultima = agora();
        });
        m_pulso.start(1);
    }
    double maior() const { return std::max(m_maior, agora() - m_ultima); }

private:
    static double agora() {
        timespec t{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
        return double(t.tv_sec) * 1e3 + double(t.tv_nsec) / 1e6;
    }
    QTimer m_pulso;
    double m_ultima = 0;
    double m_maior = 0;
};

} // namespace

class tst_unidades_log : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { m_instalacao = std::make_unique<Instalacao>(Instalacao::Base::Nenhuma); }
    void cleanup() { m_instalacao.reset(); }

    void logInteiro() {
        const auto unidade = ligarUnidade();
        Descarga d(*unidade);
        QCOMPARE(d.log->numeroDeRegistos(), -1);
        QVERIFY(d.log->proximaLinha().isEmpty());
        for (const int numero : {3, 4, 2, 6, 5})
            d.log->definirOpcao(numero, 0);
        for (int vez = 0; vez < 2; ++vez) { // the same object again gives the same log
            QCOMPARE(d.correr(), -1);
            QVERIFY(d.bem.at(0).at(0).toBool());
            QCOMPARE(d.log->estado(), int(PosLog::ligado));
            QCOMPARE(d.log->numeroDeRegistos(), 200);
            const QStringList lidas = d.linhas();
            QCOMPARE(lidas, memoria(unidade->registo()));
            QBuffer bruto;
            bruto.open(QIODevice::WriteOnly);
            QVERIFY(d.log->gravarLinhas(bruto)); // also after the lines have been drawn
            QCOMPARE(QString::fromUtf8(bruto.data()), lidas.join(u'\n') + u'\n');
        }
        d.log->fechar();
        QCOMPARE(d.log->estado(), int(PosLog::fechado));
        d.log->descarregar(); // a closed object opens by itself
        QVERIFY(d.bem.wait(2000));
        d.log->definirOpcao(4, 9); // the unit does not know it
        QCOMPARE(d.correr(), int(PosLog::dispositivo));
    }

    void logComDefeito_data() {
        // codigo: -1: the log comes
        const Tabela<Defeitos, int, int> caso("defeitos", "codigo", "linhas");
        caso("empty", {Defeito::LogVazio}, -1, 0);
        caso("garbage between the lines, blank ones too", {Defeito::LogLixo}, -1, 200);
        caso("reset", {Defeito::LogCorta}, int(PosLog::ligacao), 0);
        caso("never answers", {Defeito::Silencioso}, int(PosLog::ligacao), 0);
        caso("fewer than announced", {Defeito::LogContaMenos}, int(PosLog::transferencia), 0);
        caso("more than announced", {Defeito::LogContaMais}, int(PosLog::transferencia), 0);
        caso("endless line", {Defeito::LogLinhaLonga}, int(PosLog::transferencia), 0);
        caso("other version", {Defeito::LogVersao}, int(PosLog::versao), 0);
        caso("does not speak it", {Defeito::LogNaoFala}, int(PosLog::naoFala), 0);
    }
    void logComDefeito() {
        QFETCH(Defeitos, defeitos);
        QFETCH(int, codigo);
        const auto unidade = ligarUnidade(defeitos);
        Descarga d(*unidade);
        QCOMPARE(d.correr(), codigo);
        QCOMPARE(d.log->numeroDeRegistos() >= 0, codigo < 0);
        QTEST(int(d.linhas().size()), "linhas");
        if (codigo < 0)
            return;
        QVERIFY(!d.mal.at(0).at(1).toString().isEmpty());
        QBuffer nada;
        QVERIFY(!d.log->gravarLinhas(nada));
        QCOMPARE(d.log->estado(), int(PosLog::fechado));
        unidade->definirDefeitos({}); // the next try is not spoilt by this one
        QCOMPARE(d.correr(), -1);
        QCOMPARE(d.linhas().size(), 200);
    }

    void ligacaoImpossivel() {
        const int livre = portaLivre();
        const std::pair<QString, int> casos[] = {{u"127.0.0.7"_s, livre},
                                                 {u"127.0.0.7"_s, 0},
                                                 {u"127.0.0.7"_s, 70000},
                                                 {QString(), 80},
                                                 {u"127.0.0.7\r\nX: y"_s, livre}};
        for (const auto &[endereco, porta] : casos) {
            Descarga d(endereco, porta);
            QCOMPARE(d.correr(1000), int(PosLog::ligacao));
            QCOMPARE(d.apagar(), int(PosLog::ligacao)); // certainly nothing was erased
        }
    }

    // A peer that keeps a connection alive with a byte now and then holds nobody for ever.
    void logSemFimNoTempo() {
        QTcpServer servidor;
        QVERIFY(servidor.listen(QHostAddress(u"127.0.0.7"_s)));
        connect(&servidor, &QTcpServer::newConnection, &servidor, [&] {
            QTcpSocket *s = servidor.nextPendingConnection();
            s->write("HTTP/1.1 101 Switching Protocols\r\nUpgrade: KLOG/1\r\n\r\nOK 100\n");
            auto *gota = new QTimer(s);
            connect(gota, &QTimer::timeout, s, [s] { s->write(":\n"); });
            gota->start(20);
        });
        Descarga d(u"127.0.0.7"_s, servidor.serverPort());
        d.log->definirTotal(500);
        QCOMPARE(d.correr(1500), int(PosLog::ligacao));
    }

    void logDeUmMilhao() {
        simulador::Definicao um = definicao({Defeito::LogMilhao});
        um.canais = {{u"101"_s, u"Ar"_s, u"C"_s, 4, 2, 0, 8}, {u"102"_s, u"Hum."_s, u"%RH"_s, 70, 9, 50, 90}};
        const auto unidade = ligarUnidade(um);
        Descarga d(*unidade);
        const qint64 antes = memoriaDoProcesso();
        MedidorDeParagens paragens;
        QCOMPARE(d.correr(60000), -1);
        const double maior = paragens.maior();
        const qint64 gasto = memoriaDoProcesso() - antes;
        qint64 bytes = 0;
        qint32 linhas = 0;
        for (QString linha; !(linha = d.log->proximaLinha()).isEmpty(); ++linhas)
            bytes += linha.size() + 1;
        QCOMPARE(linhas, 1'000'000);
        QVERIFY2(!medidasContam || gasto < 2 * bytes, qPrintable(u"%1 bytes for %2"_s.arg(gasto).arg(bytes)));
        QVERIFY2(maior < paragemMaxima, qPrintable(QString::number(maior)));
    }

    // Records that came after the download stay in the unit.
    void apagarDepoisDeDescarregar() {
        m_instalacao->relogio(u"2026-03-01 10:00:00"_s);
        const auto unidade = ligarUnidade();
        Descarga d(*unidade);
        QCOMPARE(d.correr(), -1);
        m_instalacao->relogio(u"2026-03-01 10:11:00"_s); // two records later, and the two oldest were dropped
        QVERIFY(d.log->apagar());
        QCOMPARE(unidade->registo().quantos(), qint64(2));
        QCOMPARE(d.linhas().size(), 200); // what was downloaded can still be read
        QCOMPARE(d.correr(), -1);
        QCOMPARE(d.linhas().size(), 2);

        Descarga outro(*unidade);
        QCOMPARE(outro.correr(), -1);
        m_instalacao->relogio(u"2026-03-01 10:30:00"_s);
        QCOMPARE(Descarga(*unidade).correr(), -1); // somebody else has read more meanwhile
        QCOMPARE(outro.apagar(), int(PosLog::apagamento));
        QVERIFY(unidade->registo().quantos() > 2);
    }

    void apagarRecusado() {
        const std::pair<Defeito, int> casos[] = {{Defeito::ApagarSobra, PosLog::limpeza},
                                                 {Defeito::Silencioso, PosLog::ligacao},
                                                 {Defeito::LogNaoFala, PosLog::naoFala}};
        for (const auto &[defeito, codigo] : casos) {
            const auto unidade = ligarUnidade({defeito});
            QCOMPARE(Descarga(*unidade).apagar(), codigo);
            QCOMPARE(unidade->registo().quantos(), qint64(200));
        }
    }

    void destruidoNoTratamento() {
        for (const Defeitos &defeitos : {Defeitos(), Defeitos{Defeito::LogCorta}}) {
            const auto unidade = ligarUnidade(defeitos);
            Descarga d(*unidade);
            connect(d.log.get(), &PosLog::OnDownload, this, [&] { d.log.reset(); });
            connect(d.log.get(), &PosLog::OnError, this, [&] { d.log.reset(); });
            d.log->descarregar();
            QTRY_VERIFY(!d.log);
            deixarPassar(50);
        }
    }

    void logDeFicheiro_data() {
        // bytes: null: no such file
        const Tabela<QByteArray, int, QStringList> caso("bytes", "codigo", "linhas");
        caso("line ends, mark, empty lines",
             QByteArray("\xEF\xBB\xBF"
                        "a;1\r\n\r\n  \nb;2\nc;ç"),
             -1, {u"a;1"_s, u"  "_s, u"b;2"_s, u"c;ç"_s});
        caso("no lines", "", -1, {});
        caso("no such file", {}, int(PosLog::transferencia), {});
        caso("no text", QByteArray("a;1\nb\0c\n", 8), int(PosLog::conversao), {});
        caso("a line without end", QByteArray("a;1\n" + QByteArray(5000, 'x')), int(PosLog::transferencia), {});
        const QByteArray longa(4000, 'y');
        caso("pieces", QByteArray(QByteArray(longa + "\r\n").repeated(300)), -1,
             QStringList(300, QString::fromLatin1(longa)));
    }
    void logDeFicheiro() {
        QFETCH(QByteArray, bytes);
        const QString caminho = m_instalacao->ficheiro(u"log.txt"_s);
        QFile::remove(caminho);
        if (!bytes.isNull())
            Instalacao::escreverFicheiro(caminho, bytes);
        Descarga d(novoPosLogDeFicheiro(caminho));
        QTEST(d.correr(), "codigo");
        QTEST(d.linhas(), "linhas");
        QCOMPARE(d.apagar(), int(PosLog::apagamento));
        QCOMPARE(QFile::exists(caminho), !bytes.isNull());
    }

private:
    std::unique_ptr<Instalacao> m_instalacao;
};

QTEST_GUILESS_MAIN(tst_unidades_log)
#include "tst_unidades_log.moc"
