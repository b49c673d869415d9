#include "data/dialecto.h"
#include "tests/log2251.h"

using namespace log2251;

class tst_gravacao2251 : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void passoDoSpiderApagaODasEntradas() {
        BaseRapida inst;
        spider(2);
        QVERIFY(descarregar({linha(1, u"1;1;2;1"_s, 3), linha(0, u"2;10"_s), linha(5, u"2;0"_s)}));
        QCOMPARE(conteudo(u"SELECT InputNum, substr(Data, 15, 2), Estado FROM REGISTO_Inputs ORDER BY %1"_s.arg(
                     dialecto::ordem)),
                 QStringList({u"1|01|True"_s, u"2|00|True"_s, u"2|05|False"_s}));
    }

    void mesmoLogDuasVezes() {
        BaseRapida inst;
        unidadeCompleta();
        // Of the capture service, and of any other mode.
        cnBD().executar(u"UPDATE Sensores SET PoseidonIP = '1127.0.0.2' WHERE SensorID = 'S2'"_s);
        cnBD().executar(u"UPDATE Sensores SET PoseidonIP = '3127.0.0.2' WHERE SensorID = 'S3'"_s);
        const QStringList log = logCompleto(1200, 0);
        QVERIFY(descarregar(log, 5));
        const auto primeira = tudo();
        for (const QString &nome : tabelasDoLog)
            QVERIFY2(primeira[nome].size() > 200, qPrintable(nome));
        QVERIFY(descarregar(log, 5));
        QVERIFY(tudo() == primeira);
    }

    void soOPeriodoELimpo() {
        BaseRapida inst;
        unidadeCompleta();
        canal({u"alheio"_s, u"9"_s});
        cnBD().executar(u"UPDATE Sensores SET PoseidonIP = '2127.0.0.3' WHERE SensorID = 'alheio'"_s);
        for (const QString &hora : {u"00:00:59"_s, u"00:01:00"_s, u"00:03:00"_s, u"00:03:01"_s})
            for (const QString &sensor : {u"S1"_s, u"alheio"_s})
                inst.leituras(u"Temperaturas"_s, sensor, {{u"2011-03-01 "_s + hora, 1}});
        // What is absent or cannot be read moves no bound, nor does another quantity.
        QVERIFY(descarregar({linha(0, u"101;-9999;102;500"_s), linha(1, u"101;200"_s), linha(3, u"101;210"_s),
                             linha(9, u"102;500;101;x"_s)}));
        QCOMPARE(
            conteudo(u"SELECT substr(Data, 12), Temperatura FROM Temperaturas WHERE Sensor = 'S1' ORDER BY Data"_s),
            QStringList({u"00:00:59|1"_s, u"00:01:00|20.5"_s, u"00:03:00|21.5"_s, u"00:03:01|1"_s}));
        QCOMPARE(conteudo(u"SELECT Temperatura FROM Temperaturas WHERE Sensor = 'alheio'"_s).size(), 4);
    }

    void umLogEsqueceOAnterior() {
        BaseRapida inst;
        unidadeCompleta();
        TratamentoDados2251 t;
        receber(t, logCompleto(7, 0), 5);
        receber(t, {linha(60, u"101;200"_s), linha(61, u"102;500;103;50"_s)}, 5);
        QVERIFY(t.GuardarDados(unidade));
        QCOMPARE(conteudo(u"SELECT substr(Data, 12) FROM Temperaturas"_s), QStringList(u"01:00:00"_s));
        QCOMPARE(tabela(u"Medias"_s) + tabela(u"REGISTO_Inputs"_s) + tabela(u"REGISTO_Outputs"_s), QStringList());
    }

    void falhaAMeio() {
        BaseRapida inst;
        unidadeCompleta();
        QVERIFY(descarregar(logCompleto(50, 0)));
        const auto antes = tudo();
        cnBD().executar(u"CREATE TRIGGER cheio BEFORE UPDATE ON Medias WHEN NEW.Data > '2011-03-01 00:30' "
                        "BEGIN SELECT RAISE(ABORT, 'cheio'); END"_s);
        TratamentoDados2251 t;
        receber(t, logCompleto(50, 1));
        QVERIFY(!t.GuardarDados(unidade));
        QVERIFY2(t.motivo().contains(u"cheio"), qPrintable(t.motivo()));
        const auto meio = tudo();
        for (const QString &nome : {u"Temperaturas"_s, u"Humidade"_s})
            QVERIFY(meio[nome] != antes[nome] && meio[nome].size() == antes[nome].size());
        for (const QString &nome : {u"Medias"_s, u"REGISTO_Inputs"_s, u"REGISTO_Outputs"_s, u"SensUI_Leituras"_s})
            QCOMPARE(meio[nome], antes[nome]);
        cnBD().executar(u"DROP TRIGGER cheio"_s);
        QVERIFY(t.GuardarDados(unidade)); // what was gathered is still there
        QVERIFY(tudo()[u"SensUI_Leituras"_s] != antes[u"SensUI_Leituras"_s]);
    }

    void semSensoresNadaContaComoGuardado() {
        BaseRapida inst;
        unidadeCompleta();
        cnBD().executar(u"ALTER TABLE Calibracoes RENAME TO fora"_s);
        QVERIFY(!descarregar(logCompleto(3, 0)));
    }
};

QTEST_GUILESS_MAIN(tst_gravacao2251)
#include "tst_gravacao2251.moc"
