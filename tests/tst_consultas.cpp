#include "tests/apoio/instalacao.h"
#include "tests/falhaDe.h"

#include <cmath>

// Statements, their values and transactions on a database that is as it should be.
class tst_consultas : public QObject {
    Q_OBJECT
    std::optional<Instalacao> m_inst;

    static void acrescentar(int n) { cnBD().executar(u"INSERT INTO Grupos (codGrupo) VALUES (?)"_s, {n}); }
    QVariantList grupos() const { return m_inst->linha(u"SELECT group_concat(codGrupo) FROM Grupos"_s); }

private Q_SLOTS:
    void init() { m_inst.emplace(); }
    void cleanup() { m_inst.reset(); }

    void valores_data() {
        const Tabela<QVariant, QString, double> caso("valor", "texto", "numero"); // NaN: "ND"; infinite: a failure
        const double falha = HUGE_VAL;
        caso("real", 21.5, u"21,5"_s, 21.5);
        caso("text with a point is stored as a number", u"21.5"_s, u"21,5"_s, 21.5);
        caso("text with a comma", u"21,5"_s, u"21,5"_s, 21.5);
        caso("ND", u"ND"_s, u"ND"_s, std::nan(""));
        caso("empty", u""_s, u""_s, falha);
        caso("null", {}, u""_s, falha);
        caso("no number", std::nan(""), u""_s, falha);
        caso("true", true, u"1"_s, 1);
        caso("large", Q_INT64_C(9007199254740993), u"9007199254740993"_s, 9007199254740992.0);
        caso("date", QDateTime(QDate(2024, 3, 31), QTime(1, 30), Qt::UTC), u"2024-03-31 01:30:00"_s, falha);
        caso("no date", QDateTime(), u""_s, falha);
    }
    void valores() {
        QFETCH(QVariant, valor);
        QFETCH(double, numero);
        cnBD().executar(u"INSERT INTO Medias (Data, Temperatura) VALUES (?, ?)"_s, {u"2024-03-31 01:30:00"_s, valor});
        Recordset rs = cnBD().consultar(u"SELECT Data, Temperatura FROM Medias"_s);
        QVERIFY(rs.avancar());
        QTEST(rs.texto(u"temperatura"_s), "texto");
        double lido = HUGE_VAL;
        const Resultado r = falhaDe([&] { lido = rs.numero(1); });
        QCOMPARE(r.numero, std::isinf(numero) ? erros::tipoIncompativel : 0);
        QCOMPARE(lido, numero);
        QCOMPARE(rs.dataHora(0), QDateTime(QDate(2024, 3, 31), QTime(1, 30), Qt::UTC));
        QVERIFY(std::isnan(rs.segundos(1)) || valor.typeId() == QMetaType::QDateTime);
    }

    void colunas() {
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

    void cursorNoFim() {
        m_inst->leituras(u"Medias"_s, u"S1"_s, u"2024-01-01 00:00:00"_s, 60, {1, 2});
        Recordset rs = cnBD().consultar(u"SELECT Temperatura FROM Medias"_s);
        QVERIFY(rs.avancar() && rs.avancar());
        for (int i = 0; i < 3; ++i)
            QVERIFY(!rs.avancar()); // the query does not begin again
        // A cursor at its end holds nothing: the other side can fold its log back.
        m_inst->executar(u"PRAGMA wal_checkpoint(TRUNCATE)"_s);
        QCOMPARE(QFileInfo(m_inst->caminhoBD() + u"-wal"_s).size(), 0);
    }

    void instrucoesMalFeitas_data() {
        const Tabela<QString, QVariantList, QString> caso("sql", "valores", "descricao");
        caso("missing table", u"SELECT * FROM NaoHa"_s, {}, u"NaoHa"_s);
        caso("empty", u" "_s, {}, u"uma só instrução"_s);
        caso("two statements", u"SELECT 1; DELETE FROM Medias"_s, {}, u"uma só instrução"_s);
        caso("too few values", u"SELECT ?, ?"_s, {1}, u"1 valores"_s);
        caso("too many values", u"SELECT ?"_s, {1, 2}, u"2 valores"_s);
        caso("key twice", u"INSERT INTO Grupos VALUES (1, 'a'), (1, 'b')"_s, {}, u"não respeita as regras"_s);
    }
    void instrucoesMalFeitas() {
        QFETCH(QString, sql);
        QFETCH(QVariantList, valores);
        QFETCH(QString, descricao);
        const Resultado r = falhaDe([&] { cnBD().executar(sql, valores); });
        QVERIFY2(r.descricao.contains(descricao), qUtf8Printable(r.descricao));
        // The engine's small codes must not pass for the numbers that the system tells apart.
        QVERIFY(r.numero == erros::chamadaInvalida || r.numero < erros::motorBD + 10000);
        QCOMPARE(contar(cnBD(), u"Grupos"_s), 0);
    }

    void textosSaoDados() {
        for (const QString &texto : {u"'; DROP TABLE Sensores; --"_s, u"\"x\" ? %1 \\"_s, u"çã€日"_s}) {
            cnBD().executar(u"INSERT INTO Sensores (SensorID, Descricao) VALUES (?, ?)"_s, {texto, texto});
            // No column tells capitals from small letters.
            Recordset rs = cnBD().consultar(u"SELECT Descricao FROM Sensores WHERE SensorID = ?"_s, {texto.toLower()});
            QVERIFY(rs.avancar());
            QCOMPARE(rs.texto(0), texto);
        }
    }

    void transaccoes() {
        Ligacao &bd = cnBD();
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
            QCOMPARE(grupos(), QVariantList{QVariant()}); // others see nothing yet
            fora.confirmar();
        }
        {
            const Transaccao fora(bd);
            acrescentar(4);
            Transaccao dentro(bd);
            acrescentar(5);
            dentro.confirmar();
        } // the outer one takes the inner one with it
        QCOMPARE(grupos(), QVariantList{u"1,3"_s});
        QVERIFY(falhaDe([&] {
                    const Transaccao t(bd);
                    bd.executar(u"DELETE FROM Grupos"_s);
                    acrescentar(1);
                    acrescentar(1);
                }).numero != 0);
        acrescentar(6); // and the connection works on outside of any
        QCOMPARE(grupos(), QVariantList{u"1,3,6"_s});
    }

    void transaccaoPerdida() {
        Ligacao &bd = cnBD();
        {
            Transaccao t(bd);
            acrescentar(1);
            Recordset aberto = bd.consultar(u"SELECT * FROM Grupos"_s);
            QVERIFY(aberto.avancar());
            bd.fechar();
            bd.abrir(m_inst->caminhoBD());
            m_inst->executar(u"INSERT INTO Grupos (codGrupo) VALUES (7)"_s); // the write lock is free at once
            QCOMPARE(falhaDe([&] { t.confirmar(); }).numero, erros::objectoFechado);
        }
        {
            // The engine itself undoes everything: what follows must not be stored without the rest.
            Transaccao t(bd);
            acrescentar(2);
            QVERIFY(falhaDe([&] { bd.executar(u"INSERT OR ROLLBACK INTO Grupos (codGrupo) VALUES (7)"_s); }).numero);
            QVERIFY(falhaDe([&] { acrescentar(3); }).numero != 0);
            QVERIFY(falhaDe([&] { t.confirmar(); }).numero != 0);
        }
        Transaccao t(bd);
        acrescentar(8);
        t.confirmar();
        QCOMPARE(grupos(), QVariantList{u"7,8"_s});
    }
};

QTEST_GUILESS_MAIN(tst_consultas)
#include "tst_consultas.moc"
