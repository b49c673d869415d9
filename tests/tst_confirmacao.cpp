#include "core/falha.h"
#include "core/literais.h"
#include "data/comando.h"
#include "data/ligacao.h"
#include "data/recordset.h"
#include "tests/apoio/instalacao.h"

#include <QElapsedTimer>
#include <QTest>

#include <stdexcept>

namespace {

// Large enough that the commit is still under way when events run for the first time.
constexpr int linhas = 60'000;

qint64 guardadas() {
    Recordset rs = cnBD().consultar(u"SELECT count(*) FROM Medias"_s);
    rs.avancar();
    return rs.inteiro(0);
}

void encher() {
    cnBD().executar(u"WITH n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < ?) "
                    "INSERT INTO Medias (Data, Sensor, Temperatura) SELECT '2024-01-01 00:00:00', 'S' || i, 4 FROM n"_s,
                    {linhas});
}

} // namespace

class tst_confirmacao : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void meioDoCaminho_data();
    void meioDoCaminho();
    void interrompida();
    void recusada();
};

void tst_confirmacao::meioDoCaminho_data() {
    QTest::addColumn<QString>("quem");
    for (const QString &quem :
         {u"query"_s, u"open cursor"_s, u"cursor closed"_s, u"change"_s, u"batch"_s, u"closing"_s})
        QTest::newRow(qPrintable(quem)) << quem;
}

// Whatever a window does with the connection while a batch is confirmed, it finds the batch done.
void tst_confirmacao::meioDoCaminho() {
    QFETCH(const QString, quem);
    Instalacao inst(Instalacao::Base::Vazia);
    cnBD().executar(u"INSERT INTO Grupos (codGrupo) VALUES (1), (2)"_s);
    auto cursor = std::make_unique<Recordset>(cnBD().consultar(u"SELECT codGrupo FROM Grupos"_s));
    cursor->avancar();
    int vezes = 0;
    {
        Transaccao transaccao(cnBD());
        encher();
        transaccao.confirmar([&] {
            if (++vezes > 1)
                return;
            if (quem == u"query")
                QCOMPARE(guardadas(), linhas);
            else if (quem == u"open cursor")
                QVERIFY(cursor->avancar());
            else if (quem == u"cursor closed")
                cursor.reset();
            else if (quem == u"change")
                cnBD().executar(u"DELETE FROM Medias WHERE Sensor = 'S7'"_s);
            else if (quem == u"closing")
                ligacaoPartilhada().fechar();
            else {
                Transaccao outra(cnBD());
                cnBD().executar(u"DELETE FROM Medias WHERE Sensor = 'S7'"_s);
                outra.confirmar();
            }
        });
    }
    QVERIFY(vezes > 0);
    cursor.reset();
    if (!ligacaoPartilhada().aberta())
        ligacaoPartilhada().abrir(inst.caminhoBD());
    QCOMPARE(guardadas(), quem == u"change" || quem == u"batch" ? linhas - 1 : linhas);
}

// The window that waited has gone: the batch stands all the same, and the next one can begin.
void tst_confirmacao::interrompida() {
    const Instalacao inst(Instalacao::Base::Vazia);
    try {
        Transaccao transaccao(cnBD());
        encher();
        transaccao.confirmar([] { throw Interrompido(); });
        QFAIL("nothing was interrupted");
    } catch (const Interrompido &) {
    }
    QCOMPARE(guardadas(), linhas);
    Transaccao outra(cnBD());
    cnBD().executar(u"DELETE FROM Medias"_s);
    outra.confirmar();
    QCOMPARE(guardadas(), 0);
}

void tst_confirmacao::recusada() {
    const Instalacao inst(Instalacao::Base::Vazia);
    cnBD().executarGuiao(u"PRAGMA foreign_keys = ON; CREATE TABLE Pais (n INTEGER PRIMARY KEY); "
                         "CREATE TABLE Filhos (n INTEGER REFERENCES Pais (n) DEFERRABLE INITIALLY DEFERRED)"_s);
    try {
        Transaccao transaccao(cnBD());
        encher();
        cnBD().executar(u"INSERT INTO Filhos VALUES (7)"_s);
        transaccao.confirmar([] {});
        QFAIL("the engine took a row without its parent");
    } catch (const Falha &f) {
        QVERIFY2(f.descricao().contains(u"FOREIGN KEY"), qPrintable(f.descricao()));
    }
    QCOMPARE(guardadas(), 0);
}

QTEST_MAIN(tst_confirmacao)
#include "tst_confirmacao.moc"
