#include "core/eventos.h"
#include "data/comando.h"
#include "tests/apoio/instalacao.h"
#include "tests/falhaDe.h"

#include <QTimer>

#include <atomic>

namespace {

constexpr int linhas = 2000;

void encher() {
    cnBD().executar(u"WITH n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < ?) "
                    "INSERT INTO Medias (Data, Sensor, Temperatura) SELECT '2024-01-01 00:00:00', 'S' || i, 4 FROM n"_s,
                    {linhas});
}

int guardadas() {
    return contar(cnBD(), u"Medias"_s);
}

void apagar(const QString &onde) {
    Transaccao transaccao(cnBD());
    cnBD().executar(u"DELETE FROM Medias WHERE "_s + onde);
    transaccao.confirmar();
}

} // namespace

class tst_confirmacao : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void meioDoCaminho_data() {
        const Tabela<int> caso("ficam");
        caso("query", linhas);
        caso("open cursor", linhas);
        caso("cursor closed", linhas);
        caso("batch", linhas - 1);
        caso("closing", linhas);
    }
    // Whatever a window does with the connection while a batch is confirmed, it finds the batch done.
    void meioDoCaminho() {
        const QByteArray quem = QTest::currentDataTag();
        const Instalacao inst;
        cnBD().executar(u"INSERT INTO Grupos (codGrupo) VALUES (1), (2)"_s);
        auto cursor = std::make_unique<Recordset>(cnBD().consultar(u"SELECT codGrupo FROM Grupos"_s));
        cursor->avancar();
        std::atomic<int> vezes = 0;
        // Not before events have run for the first time.
        estado().ambiente.aoConfirmar = [&vezes] { vezes.wait(0); };
        {
            Transaccao transaccao(cnBD());
            encher();
            transaccao.confirmar([&] {
                if (++vezes > 1)
                    return;
                vezes.notify_all();
                if (quem == "query")
                    QCOMPARE(guardadas(), linhas);
                else if (quem == "open cursor")
                    QVERIFY(cursor->avancar());
                else if (quem == "cursor closed")
                    cursor.reset();
                else if (quem == "closing")
                    ligacaoPartilhada().fechar();
                else
                    apagar(u"Sensor = 'S7'"_s);
            });
        }
        QVERIFY(vezes > 0);
        cursor.reset();
        if (!ligacaoPartilhada().aberta())
            ligacaoPartilhada().abrir(inst.caminhoBD());
        QTEST(guardadas(), "ficam");
    }

    // The window that waited has gone: the batch stands all the same, and the next one can begin.
    void interrompida() {
        const Instalacao inst;
        const auto interromper = [] {
            Transaccao transaccao(cnBD());
            encher();
            transaccao.confirmar([] { throw Interrompido(); });
        };
        QVERIFY_THROWS_EXCEPTION(Interrompido, interromper());
        QCOMPARE(guardadas(), linhas);
        apagar(u"1 = 1"_s);
        QCOMPARE(guardadas(), 0);
    }

    void deOutraJanela_data() {
        const Tabela<QString> caso("como");
        for (const QString &como : {u"statement"_s, u"command"_s, u"batch"_s, u"script"_s})
            caso(qPrintable(como), como);
    }
    // What a user does while events run within a batch is neither part of it nor lost with it: it is refused.
    void deOutraJanela() {
        QFETCH(QString, como);
        const Instalacao inst;
        const QString alteracao = u"DELETE FROM Medias WHERE Sensor = 'S7'"_s;
        Comando comando(cnBD(), alteracao);
        const auto alterar = [&] {
            if (como == u"statement")
                cnBD().executar(alteracao);
            else if (como == u"command")
                comando.executar();
            else if (como == u"script")
                cnBD().executarGuiao(alteracao);
            else
                apagar(u"Sensor = 'S7'"_s);
        };
        Resultado recusa;
        {
            Transaccao transaccao(cnBD());
            encher();
            QTimer::singleShot(0, [&] { recusa = falhaDe(alterar); });
            forcarEventos();
            QCOMPARE(guardadas(), linhas);
            transaccao.confirmar();
        }
        QVERIFY2(recusa.descricao.contains(u"não foi gravada"), qPrintable(recusa.descricao));
        QCOMPARE(guardadas(), linhas);
        QTimer::singleShot(0, [&] { alterar(); });
        forcarEventos();
        QCOMPARE(guardadas(), linhas - 1);
    }

    void recusada() {
        const Instalacao inst;
        cnBD().executarGuiao(u"PRAGMA foreign_keys = ON; CREATE TABLE Pais (n INTEGER PRIMARY KEY); "
                             "CREATE TABLE Filhos (n INTEGER REFERENCES Pais (n) DEFERRABLE INITIALLY DEFERRED)"_s);
        const QString motivo = falhaDe([] {
                                   Transaccao transaccao(cnBD());
                                   encher();
                                   cnBD().executar(u"INSERT INTO Filhos VALUES (7)"_s);
                                   transaccao.confirmar([] {});
                               }).descricao;
        QVERIFY2(motivo.contains(u"FOREIGN KEY"), qPrintable(motivo));
        QCOMPARE(guardadas(), 0);
    }
};

QTEST_MAIN(tst_confirmacao)
#include "tst_confirmacao.moc"
