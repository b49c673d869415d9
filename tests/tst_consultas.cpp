#include "tests/apoio/instalacao.h"
#include "tests/falhaDe.h"

#include <QFileInfo>
#include <QTest>

#include <cmath>

// Statements, their values and transactions on a database that is as it should be.
class tst_consultas : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void valores_data();
    void valores();
    void colunas();
    void cursorNoFim();
    void instrucoesMalFeitas_data();
    void instrucoesMalFeitas();
    void linhasAlteradas();
    void aspasSaoDados();
    void transaccoes();
    void transaccaoPerdida();
    void textosSemDistinguirMaiusculas();
};

void tst_consultas::valores_data() {
    QTest::addColumn<QVariant>("valor");
    QTest::addColumn<QString>("texto");
    QTest::addColumn<double>("numero"); // NaN: "ND"; infinite: a failure
    const double nd = std::nan("");
    const double falha = HUGE_VAL;
    QTest::newRow("real") << QVariant(21.5) << u"21,5"_s << 21.5;
    QTest::newRow("whole") << QVariant(21) << u"21"_s << 21.0;
    QTest::newRow("real, text with a point is stored as a number") << QVariant(u"21.5"_s) << u"21,5"_s << 21.5;
    QTest::newRow("text with a comma") << QVariant(u"21,5"_s) << u"21,5"_s << 21.5;
    QTest::newRow("ND") << QVariant(u"ND"_s) << u"ND"_s << nd;
    QTest::newRow("minus zero") << QVariant(-0.0) << u"0"_s << 0.0;
    QTest::newRow("0.1 + 0.2") << QVariant(0.1 + 0.2) << u"0,3"_s << 0.1 + 0.2;
    QTest::newRow("empty") << QVariant(u""_s) << u""_s << falha;
    QTest::newRow("null") << QVariant() << u""_s << falha;
    QTest::newRow("word") << QVariant(u"x"_s) << u"x"_s << falha;
    QTest::newRow("no number") << QVariant(nd) << u""_s << falha;
    QTest::newRow("true") << QVariant(true) << u"1"_s << 1.0;
    QTest::newRow("large") << QVariant(Q_INT64_C(9007199254740993)) << u"9007199254740993"_s << 9007199254740992.0;
    QTest::newRow("date") << QVariant(QDateTime(QDate(2024, 3, 31), QTime(1, 30), Qt::UTC)) << u"2024-03-31 01:30:00"_s
                          << falha;
    QTest::newRow("no date") << QVariant(QDateTime()) << u""_s << falha;
}

void tst_consultas::valores() {
    QFETCH(QVariant, valor);
    QFETCH(double, numero);
    Instalacao inst;
    cnBD().executar(u"INSERT INTO Medias (Data, Temperatura) VALUES (?, ?)"_s, {u"2024-03-31 01:30:00"_s, valor});
    Recordset rs = cnBD().consultar(u"SELECT Data, Temperatura FROM Medias"_s);
    QVERIFY(rs.avancar());
    QTEST(rs.texto(u"temperatura"_s), "texto");
    double lido = HUGE_VAL;
    const Resultado r = falhaDe([&] { lido = rs.numero(1); });
    QCOMPARE(r.numero, std::isinf(numero) ? erros::tipoIncompativel : 0);
    QVERIFY(lido == numero || (std::isnan(lido) && std::isnan(numero)));
    QCOMPARE(rs.dataHora(0), QDateTime(QDate(2024, 3, 31), QTime(1, 30), Qt::UTC));
    QVERIFY(std::isnan(rs.segundos(1)) || valor.typeId() == QMetaType::QDateTime);
}

void tst_consultas::colunas() {
    Instalacao inst;
    Recordset rs = cnBD().consultar(u"SELECT 1 AS Um, 2 AS Dois, 3 AS dois, 4 AS \"Número\""_s);
    QVERIFY(rs.avancar());
    QCOMPARE(rs.colunas(), 4);
    QCOMPARE(rs.nome(1), u"Dois"_s);
    QCOMPARE(rs.inteiro(u"DOIS"_s), 2); // the first of two
    QCOMPARE(rs.coluna(u"número"_s), 3);
    QCOMPARE(falhaDe([&] { rs.coluna(u"Umm"_s); }).numero, erros::chamadaInvalida);
    QVERIFY(rs.texto(-1).isEmpty() && rs.texto(4).isEmpty());
    rs.fechar();
    QVERIFY(rs.texto(0).isEmpty() && rs.nome(0).isEmpty());
    QCOMPARE(falhaDe([&] { rs.avancar(); }).numero, erros::objectoFechado);
}

void tst_consultas::cursorNoFim() {
    Instalacao inst;
    inst.leituras(u"Medias"_s, u"S1"_s, u"2024-01-01 00:00:00"_s, 60, {1, 2});
    Recordset rs = cnBD().consultar(u"SELECT Temperatura FROM Medias"_s);
    int n = 0;
    for (int i = 0; i < 10; ++i)
        n += rs.avancar() ? 1 : 0;
    QCOMPARE(n, 2); // the query does not begin again
    // A cursor at its end holds nothing: the other side can fold its log back.
    inst.executar(u"PRAGMA wal_checkpoint(TRUNCATE)"_s);
    QCOMPARE(QFileInfo(inst.caminhoBD() + u"-wal"_s).size(), 0);
}

void tst_consultas::instrucoesMalFeitas_data() {
    QTest::addColumn<QString>("sql");
    QTest::addColumn<QVariantList>("valores");
    QTest::addColumn<QString>("descricao");
    QTest::newRow("missing table") << u"SELECT * FROM NaoHa"_s << QVariantList() << u"NaoHa"_s;
    QTest::newRow("syntax") << u"SELEC 1"_s << QVariantList() << u"SELEC"_s;
    QTest::newRow("empty") << u" "_s << QVariantList() << u"uma só instrução"_s;
    QTest::newRow("two statements") << u"SELECT 1; DELETE FROM Medias"_s << QVariantList() << u"uma só instrução"_s;
    QTest::newRow("too few values") << u"SELECT ?, ?"_s << QVariantList{1} << u"1 valores"_s;
    QTest::newRow("too many values") << u"SELECT ?"_s << QVariantList{1, 2} << u"2 valores"_s;
    QTest::newRow("key twice") << u"INSERT INTO Grupos VALUES (1, 'a'), (1, 'b')"_s << QVariantList()
                               << u"não respeita as regras"_s;
}

void tst_consultas::instrucoesMalFeitas() {
    QFETCH(QString, sql);
    QFETCH(QVariantList, valores);
    QFETCH(QString, descricao);
    Instalacao inst;
    const Resultado r = falhaDe([&] { cnBD().executar(sql, valores); });
    QVERIFY2(r.descricao.contains(descricao), qUtf8Printable(r.descricao));
    // The engine's small codes must not pass for the numbers that the system tells apart.
    QVERIFY(r.numero == erros::chamadaInvalida || r.numero < erros::motorBD + 10000);
    QCOMPARE(contar(cnBD(), u"Grupos"_s), 0);
}

void tst_consultas::linhasAlteradas() {
    Instalacao inst;
    inst.leituras(u"Medias"_s, u"S1"_s, u"2024-01-01 00:00:00"_s, 60, {1, 2, 3});
    QCOMPARE(cnBD().executar(u"UPDATE Medias SET flag = ? WHERE Temperatura > ?"_s, {u"x"_s, 1}), 2);
    QCOMPARE(cnBD().executar(u"SELECT * FROM Medias"_s), 0);
    QCOMPARE(cnBD().executar(u"UPDATE Medias SET flag = 'y' WHERE 1 = 2"_s), 0);
    QCOMPARE(cnBD().executar(u"DELETE FROM Medias;"_s), 3);
}

void tst_consultas::aspasSaoDados() {
    Instalacao inst;
    for (const QString &texto : {u"O'Brien"_s, u"'; DROP TABLE Sensores; --"_s, u"\"x\" ? %1 \\"_s, u"çã€日"_s}) {
        cnBD().executar(u"INSERT INTO Sensores (SensorID, Descricao) VALUES (?, ?)"_s, {texto, texto});
        Recordset rs = cnBD().consultar(u"SELECT Descricao FROM Sensores WHERE SensorID = ?"_s, {texto});
        QVERIFY(rs.avancar());
        QCOMPARE(rs.texto(0), texto);
    }
}

void tst_consultas::transaccoes() {
    Instalacao inst;
    Ligacao &bd = cnBD();
    const auto acrescentar = [&](int n) { bd.executar(u"INSERT INTO Grupos (codGrupo) VALUES (?)"_s, {n}); };
    {
        Transaccao fora(bd);
        acrescentar(1);
        {
            const Transaccao dentro(bd);
            acrescentar(2);
        } // undone alone
        {
            Transaccao dentro(bd);
            acrescentar(3);
            dentro.confirmar();
        }
        QCOMPARE(inst.linha(u"SELECT COUNT(*) FROM Grupos"_s), QVariantList{u"0"_s}); // others see nothing yet
        fora.confirmar();
    }
    {
        const Transaccao fora(bd);
        acrescentar(4);
        Transaccao dentro(bd);
        acrescentar(5);
        dentro.confirmar();
    } // the outer one takes the inner one with it
    QCOMPARE(inst.linha(u"SELECT group_concat(codGrupo) FROM Grupos"_s), QVariantList{u"1,3"_s});
    QVERIFY(falhaDe([&] {
                const Transaccao t(bd);
                bd.executar(u"DELETE FROM Grupos"_s);
                acrescentar(1);
                acrescentar(1);
            }).numero != 0);
    QCOMPARE(inst.linha(u"SELECT group_concat(codGrupo) FROM Grupos"_s), QVariantList{u"1,3"_s});
    acrescentar(6); // and the connection works on outside of any
    QCOMPARE(inst.linha(u"SELECT COUNT(*) FROM Grupos"_s), QVariantList{u"3"_s});
}

void tst_consultas::transaccaoPerdida() {
    Instalacao inst;
    Ligacao &bd = cnBD();
    {
        Transaccao t(bd);
        bd.executar(u"INSERT INTO Grupos (codGrupo) VALUES (1)"_s);
        Recordset aberto = bd.consultar(u"SELECT * FROM Grupos"_s);
        QVERIFY(aberto.avancar());
        bd.fechar();
        bd.abrir(inst.caminhoBD());
        inst.executar(u"INSERT INTO Grupos (codGrupo) VALUES (7)"_s); // the write lock is free at once
        QCOMPARE(falhaDe([&] { t.confirmar(); }).numero, erros::objectoFechado);
    }
    {
        // The engine itself undoes everything: what follows must not be stored without the rest.
        Transaccao t(bd);
        bd.executar(u"INSERT INTO Grupos (codGrupo) VALUES (2)"_s);
        QVERIFY(falhaDe([&] { bd.executar(u"INSERT OR ROLLBACK INTO Grupos (codGrupo) VALUES (7)"_s); }).numero != 0);
        QVERIFY(falhaDe([&] { bd.executar(u"INSERT INTO Grupos (codGrupo) VALUES (3)"_s); }).numero != 0);
        QVERIFY(falhaDe([&] { t.confirmar(); }).numero != 0);
    }
    Transaccao t(bd);
    bd.executar(u"INSERT INTO Grupos (codGrupo) VALUES (8)"_s);
    t.confirmar();
    QCOMPARE(inst.linha(u"SELECT group_concat(codGrupo) FROM Grupos"_s), QVariantList{u"7,8"_s});
}

void tst_consultas::textosSemDistinguirMaiusculas() {
    Instalacao inst;
    inst.sensor({u"AbC"_s, u"Câmara"_s});
    Recordset rs =
        cnBD().consultar(u"SELECT 1 FROM Sensores WHERE SensorID = ? AND Seleccionado = ?"_s, {u"aBc"_s, u"sim"_s});
    QVERIFY(rs.avancar());
}

QTEST_GUILESS_MAIN(tst_consultas)
#include "tst_consultas.moc"
