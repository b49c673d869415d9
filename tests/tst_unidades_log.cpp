#include "core/falha.h"
#include "platform/unit/PosLog.h"
#include "platform/unit/espera.h"
#include "tests/apoio/instalacao.h"
#include "tests/apoio/tabela.h"
#include "tests/unidadesDeTeste.h"

#include <QBuffer>
#include <QElapsedTimer>
#include <QFile>
#include <QPointer>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>

using simulador::Defeito;
using simulador::Defeitos;

namespace {

// A log object bound to a unit, with what its events told.
struct Descarga {
    std::unique_ptr<PosLog> log;
    std::unique_ptr<QSignalSpy> bem;
    std::unique_ptr<QSignalSpy> mal;

    explicit Descarga(std::unique_ptr<PosLog> objecto)
        : log(std::move(objecto)), bem(std::make_unique<QSignalSpy>(log.get(), &PosLog::OnDownload)),
          mal(std::make_unique<QSignalSpy>(log.get(), &PosLog::OnError)) {}
    explicit Descarga(const simulador::Unidade &unidade) : Descarga(novoPosLog()) {
        log->definirEndereco(unidade.endereco());
        log->definirPorta(unidade.portaWeb());
        log->definirSilencio(250);
    }
    // Number of the error, -1 for success, -2 when nothing came.
    int correr(int ms = 3000) {
        bem->clear();
        mal->clear();
        log->abrir();
        log->descarregar();
        // Not qWaitFor(): that one sleeps between the turns of the loop.
        if (!espera::ate(log.get(), ms, [&] { return bem->count() + mal->count() > 0; }))
            return -2;
        QTest::qWait(10); // nothing may follow
        if (bem->count() + mal->count() != 1)
            return -3;
        return mal->count() ? mal->at(0).at(0).toInt() : -1;
    }
    int erroDepois() {
        return QTest::qWaitFor([&] { return mal->count() > 0; }, 500) && mal->count() == 1 ? mal->at(0).at(0).toInt()
                                                                                           : -1;
    }
    QStringList linhas() const {
        QStringList todas;
        for (QString linha; !(linha = log->proximaLinha()).isEmpty();)
            todas.append(linha);
        return todas;
    }
};

QStringList memoria(const simulador::Registo &r) {
    QStringList todas;
    for (qint64 i = 0; i < r.quantos(); ++i)
        todas.append(QString::fromLatin1(r.linha(r.primeiro() + i)));
    return todas;
}

qint64 memoriaDoProcesso() { // bytes in physical memory
    QFile f(u"/proc/self/statm"_s);
    return f.open(QIODevice::ReadOnly) ? f.readAll().split(' ').value(1).toLongLong() * 4096 : 0;
}

} // namespace

class tst_unidades_log : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void init() { m_instalacao = std::make_unique<Instalacao>(Instalacao::Base::Nenhuma); }
    void cleanup() { m_instalacao.reset(); }

    void logInteiro() {
        const auto unidade = ligarUnidade(u"127.0.0.2"_s, {});
        Descarga d(*unidade);
        QCOMPARE(d.log->numeroDeRegistos(), -1);
        QVERIFY(d.log->proximaLinha().isEmpty());
        for (int vez = 0; vez < 2; ++vez) { // the same object again gives the same log
            QCOMPARE(d.correr(), -1);
            QVERIFY(d.bem->at(0).at(0).toBool());
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
        QVERIFY(d.bem->wait(2000));
    }

    void logComDefeito_data() {
        // codigo: -1: the log comes
        const Tabela<Defeitos, int, int> caso("defeitos", "codigo", "linhas");
        caso("empty", {Defeito::LogVazio}, -1, 0);
        caso("slow", {Defeito::Lento}, -1, 200);
        caso("garbage between the lines, blank ones left out", {Defeito::LogLixo}, -1, 180);
        caso("reset", {Defeito::LogCorta}, int(PosLog::ligacao), 0);
        caso("falls silent", {Defeito::LogPara}, int(PosLog::ligacao), 0);
        caso("never answers", {Defeito::Silencioso}, int(PosLog::ligacao), 0);
        caso("fewer than announced", {Defeito::LogContaMenos}, int(PosLog::transferencia), 0);
        caso("more than announced", {Defeito::LogContaMais}, int(PosLog::transferencia), 0);
        caso("wrong checksum", {Defeito::LogSoma}, int(PosLog::transferencia), 0);
        caso("endless line", {Defeito::LogLinhaLonga}, int(PosLog::transferencia), 0);
        caso("zero bytes", {Defeito::LogBinario}, int(PosLog::conversao), 0);
        caso("other version", {Defeito::LogVersao}, int(PosLog::versao), 0);
        caso("does not speak it", {Defeito::LogNaoFala}, int(PosLog::naoFala), 0);
        caso("busy", {Defeito::LogRecusa}, int(PosLog::dispositivo), 0);
    }
    void logComDefeito() {
        QFETCH(Defeitos, defeitos);
        QFETCH(int, codigo);
        const auto unidade = ligarUnidade(u"127.0.0.2"_s, defeitos);
        Descarga d(*unidade);
        QElapsedTimer relogio;
        relogio.start();
        QCOMPARE(d.correr(), codigo);
        QVERIFY2(relogio.elapsed() < 15000, qPrintable(QString::number(relogio.elapsed())));
        QCOMPARE(d.log->numeroDeRegistos() >= 0, codigo < 0);
        QTEST(int(d.linhas().size()), "linhas");
        if (codigo < 0)
            return;
        QVERIFY(!d.mal->at(0).at(1).toString().isEmpty());
        QBuffer nada;
        QVERIFY(!d.log->gravarLinhas(nada));
        QCOMPARE(d.log->estado(), int(PosLog::fechado));
        unidade->definirDefeitos({}); // the next try is not spoilt by this one
        QCOMPARE(d.correr(), -1);
        QCOMPARE(d.linhas().size(), 200);
    }

    void ligacaoImpossivel() {
        const quint16 livre = portaLivre();
        const struct {
            QString endereco;
            int porta;
        } casos[] = {{u"127.0.0.7"_s, livre},
                     {u"127.0.0.7"_s, 0},
                     {u"127.0.0.7"_s, 70000},
                     {QString(), 80},
                     {u"127.0.0.7\r\nX: y"_s, livre}};
        for (const auto &caso : casos) {
            Descarga d(novoPosLog());
            d.log->definirEndereco(caso.endereco);
            d.log->definirPorta(caso.porta);
            QCOMPARE(d.correr(1000), int(PosLog::ligacao));
            d.mal->clear();
            QVERIFY(!d.log->apagar());
            QCOMPARE(d.erroDepois(), int(PosLog::ligacao)); // certainly nothing was erased
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
        Descarga d(novoPosLog());
        d.log->definirEndereco(u"127.0.0.7"_s);
        d.log->definirPorta(servidor.serverPort());
        d.log->definirSilencio(200);
        d.log->definirTotal(500);
        QCOMPARE(d.correr(1500), int(PosLog::ligacao));
    }

    void opcoesQueAUnidadeNaoConhece() {
        const auto unidade = ligarUnidade(u"127.0.0.2"_s, {});
        Descarga d(*unidade);
        for (const int numero : {3, 4, 2, 6, 5})
            d.log->definirOpcao(numero, 0);
        QCOMPARE(d.correr(), -1);
        d.log->definirOpcao(4, 9);
        QCOMPARE(d.correr(), int(PosLog::dispositivo));
    }

    void logDeUmMilhao() {
        simulador::Definicao definicao;
        definicao.defeitos = {Defeito::LogMilhao};
        definicao.canais = {{u"101"_s, u"Ar"_s, u"C"_s, 4, 2, 0, 8}, {u"102"_s, u"Hum."_s, u"%RH"_s, 70, 9, 50, 90}};
        const auto unidade = ligarUnidade(definicao);
        Descarga d(*unidade);
        const qint64 antes = memoriaDoProcesso();
        MedidorDeParagens paragens;
        QCOMPARE(d.correr(60000), -1);
        const double maior = paragens.maior();
        const qint64 gasto = memoriaDoProcesso() - antes;
        QCOMPARE(d.log->numeroDeRegistos(), 1'000'000);
        qint64 bytes = 0;
        qint32 linhas = 0;
        for (QString linha; !(linha = d.log->proximaLinha()).isEmpty(); ++linhas)
            bytes += linha.size() + 1;
        QCOMPARE(linhas, 1'000'000);
        qInfo("%lld bytes of lines, %lld of memory, longest stall %.1f ms", bytes, gasto, maior);
        QVERIFY2(!medidasContam || gasto < 2 * bytes, qPrintable(QString::number(gasto)));
        QVERIFY2(maior < paragemMaxima, qPrintable(QString::number(maior)));
    }

    // Records that came after the download stay in the unit.
    void apagarDepoisDeDescarregar() {
        m_instalacao->relogio(u"2026-03-01 10:00:00"_s);
        const auto unidade = ligarUnidade(u"127.0.0.2"_s, {});
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
        QVERIFY(!outro.log->apagar());
        QCOMPARE(outro.erroDepois(), int(PosLog::apagamento));
        QVERIFY(unidade->registo().quantos() > 2);
    }

    void apagarTudo() {
        const auto unidade = ligarUnidade(u"127.0.0.2"_s, {});
        Descarga d(*unidade);
        QVERIFY(d.log->apagar());
        QCOMPARE(unidade->registo().quantos(), qint64(0));
        QVERIFY(d.log->apagar()); // an empty memory is no failure
        QCOMPARE(d.correr(), -1);
        QCOMPARE(d.log->numeroDeRegistos(), 0);
        QCOMPARE(d.mal->count(), 0);
    }

    void apagarRecusado_data() {
        const Tabela<Defeitos, int> caso("defeitos", "codigo");
        caso("refused", {Defeito::ApagarRecusa}, int(PosLog::apagamento));
        caso("not confirmed", {Defeito::ApagarMudo}, int(PosLog::limpeza));
        caso("something is left", {Defeito::ApagarSobra}, int(PosLog::limpeza));
        caso("silent", {Defeito::Silencioso}, int(PosLog::ligacao));
        caso("does not speak it", {Defeito::LogNaoFala}, int(PosLog::naoFala));
    }
    void apagarRecusado() {
        QFETCH(Defeitos, defeitos);
        const auto unidade = ligarUnidade(u"127.0.0.2"_s, defeitos);
        Descarga d(*unidade);
        QVERIFY(!d.log->apagar());
        QCOMPARE(d.mal->count(), 0); // never from inside the call
        QTEST(d.erroDepois(), "codigo");
        QCOMPARE(unidade->registo().quantos(), qint64(200));
    }

    void apagadoFicaApagado() {
        m_instalacao->relogio(u"2026-03-01 10:00:00"_s);
        simulador::Definicao definicao;
        definicao.ficheiroEstado = m_instalacao->ficheiro(u"unidades/a.json"_s);
        definicao.acertoMinutos = -21;
        auto unidade = ligarUnidade(definicao);
        QVERIFY(Descarga(*unidade).log->apagar());
        unidade->registo().acertar(QDateTime(QDate(2026, 3, 1), QTime(10, 5), Qt::UTC));
        m_instalacao->relogio(u"2026-03-01 10:05:30"_s);
        unidade.reset();
        unidade = ligarUnidade(definicao);
        QCOMPARE(unidade->registo().quantos(), qint64(1));
        QCOMPARE(unidade->registo().relogio(), QDateTime(QDate(2026, 3, 1), QTime(10, 10, 30), Qt::UTC));
    }

    void destruidoNoMeio_data() {
        QTest::addColumn<QString>("quando");
        for (const char *quando : {"handler", "error handler", "middle", "erasing"})
            QTest::newRow(quando) << QString::fromLatin1(quando);
    }
    void destruidoNoMeio() {
        QFETCH(QString, quando);
        const bool erro = quando == u"error handler";
        const bool apagar = quando == u"erasing";
        const auto unidade =
            ligarUnidade(u"127.0.0.2"_s, apagar ? Defeitos{Defeito::ApagarMudo}
                                                : (erro ? Defeitos{Defeito::LogCorta} : Defeitos{Defeito::LogPara}));
        if (quando == u"handler")
            unidade->definirDefeitos({});
        auto log = novoPosLog();
        const QPointer<PosLog> vivo(log.get());
        log->definirEndereco(unidade->endereco());
        log->definirPorta(unidade->portaWeb());
        connect(log.get(), &PosLog::OnDownload, this, [&] { log.reset(); });
        connect(log.get(), &PosLog::OnError, this, [&] { log.reset(); });
        if (quando == u"middle" || apagar)
            QTimer::singleShot(60, this, [&] { log.reset(); });
        if (apagar) {
            QVERIFY_THROWS_EXCEPTION(Interrompido, log->apagar());
        } else {
            log->abrir();
            log->descarregar();
        }
        QTRY_VERIFY_WITH_TIMEOUT(vivo.isNull(), 1000);
        QTest::qWait(50);
    }

    void logDeFicheiro_data() {
        // bytes: null: no such file
        const Tabela<QByteArray, int, QStringList> caso("bytes", "codigo", "linhas");
        caso("line ends, mark, blank lines",
             QByteArray("\xEF\xBB\xBF"
                        "a;1\r\n\r\n  \nb;2\nc;ç"),
             -1, {u"a;1"_s, u"b;2"_s, u"c;ç"_s});
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
        QVERIFY(!d.log->apagar());
        QTRY_VERIFY(d.mal->count() > 0);
        QCOMPARE(QFile::exists(caminho), !bytes.isNull());
    }

private:
    std::unique_ptr<Instalacao> m_instalacao;
};

QTEST_GUILESS_MAIN(tst_unidades_log)
#include "tst_unidades_log.moc"
