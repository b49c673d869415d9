#include "core/modDoubleTratamento.h"
#include "tests/apoio/tabela.h"
#include "tests/log2251.h"

#include <QTest>

using namespace log2251;
using namespace modTratamentoDados2251;

namespace {

const QStringList locais{u"pt_PT"_s, u"en_US"_s};

// "," stands for the local separator.
QString local(const QString &texto) {
    return QString(texto).replace(u","_s, modDoubleTratamento::SeparadorDecimal());
}

QStringList lista(const QString &texto) {
    return texto.isEmpty() ? QStringList() : texto.split(u'/');
}

} // namespace

class tst_log2251 : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void duasCasas_data() {
        const Tabela<double, QString> caso("numero", "texto");
        caso("zero", 0.0, u"0,00"_s);
        caso("pads", 12.0, u"12,00"_s);
        caso("half goes away from zero", 0.125, u"0,13"_s);
        caso("below zero too", -0.125, u"-0,13"_s);
        caso("the decimal text decides, not the bits", 1.005, u"1,01"_s);
        caso("carries through nines", 999.995, u"1000,00"_s);
        caso("no minus before zero", -0.004, u"0,00"_s);
    }
    void duasCasas() {
        QFETCH(double, numero);
        QFETCH(QString, texto);
        Instalacao inst(Instalacao::Base::Nenhuma);
        for (const QString &nome : locais) {
            inst.locale(nome);
            QCOMPARE(FormatarDuasCasas(numero), local(texto));
            QCOMPARE(modDoubleTratamento::TextoParaDouble(local(texto)), DuasCasas(numero));
        }
    }

    void leituras_data() {
        // entrada: last of Tipo, Calibracao, Maximo, Minimo, text in the log; "~" for Null; linha: value, Observacoes,
        // flag; empty: no row
        const Tabela<QString, QString> caso("entrada", "linha");
        caso("plain", u"C 0 30 10 235"_s, u"23.5|30XXX10|~"_s);
        caso("one digit", u"C 0 30 0 5"_s, u"0.5|30XXX0|~"_s);
        caso("negative digit", u"C 0 30 -5 -5"_s, u"-0.5|30XXX-5|~"_s);
        caso("calibrated", u"C 0.25 30 10 235"_s, u"23.75|30XXX10|~"_s);
        caso("calibration with a comma", u"C -0,25 30 10 235"_s, u"23.25|30XXX10|~"_s);
        caso("no binary dust", u"C 0.2 NA -5 1"_s, u"0.3|NAXXX-5|~"_s);
        caso("calibration absent", u"C ~ NA -5 1"_s, u"0.1|NAXXX-5|~"_s);
        caso("above", u"C 0.06 30 10 312"_s, u"31.26|30XXX10|Máximo de  1,26"_s);
        caso("below", u"C 0 30 10.5 -12"_s, u"-1.2|30XXX10,5|Mínimo de  -11,7"_s);
        caso("both, limits crossed", u"C 0 10 30 200"_s, u"20|10XXX30|Máximo de  10Mínimo de  -10"_s);
        caso("on the maximum", u"C 0 30 10 300"_s, u"30|30XXX10|~"_s);
        caso("on the minimum", u"C 0 30 10 100"_s, u"10|30XXX10|~"_s);
        caso("half to even, down", u"C 0.005 30 NA 312"_s, u"31.205|30XXXNA|Máximo de  1,2"_s);
        caso("half to even, up", u"C 0.015 30 NA 312"_s, u"31.215|30XXXNA|Máximo de  1,22"_s);
        caso("only a maximum", u"C 0 30 NA -900"_s, u"-90|30XXXNA|~"_s);
        caso("limits both zero", u"C 0 0 0 999"_s, u"99.9| | "_s);
        caso("limits both absent", u"C 0 NA NA 235"_s, u"23.5| | "_s);
        caso("absent and zero", u"C 0 NA 0 -10"_s, u"-1| | "_s);
        caso("limit Null", u"C 0 ~ 5 10"_s, u"1|NAXXX5|Mínimo de  -4"_s);
        caso("limit unreadable", u"C 0 abc 5 10"_s, u"1| | "_s);
        caso("limit with a comma", u"C 0 30,5 NA 306"_s, u"30.6|30,5XXXNA|Máximo de  0,1"_s);
        caso("humidity has limits of its own", u"% 0 60 20 655"_s, u"65.5|60XXX20|Máximo de  5,5"_s);
        caso("empty value", u"C 0 30 10 "_s, u"ND|~|~"_s);
        caso("no reading", u"C 0 30 10 -9999"_s, {});
        caso("no number", u"C 0 30 10 abc"_s, {});
        caso("a sign alone", u"C 0 30 10 -"_s, {});
        caso("calibration unreadable", u"C x 30 10 1"_s, {});
        caso("kind unknown", u"K 0 30 10 1"_s, {});
        caso("more digits than a number keeps", u"C 0 NA NA 12345678901234567"_s, u"1234567890123460| | "_s);
    }
    void leituras() {
        QFETCH(QString, entrada);
        QFETCH(QString, linha);
        const QStringList e = entrada.split(u' ');
        const auto valor = [](const QString &t) { return t == u"~" ? QVariant() : QVariant(t); };
        const QString nome = e[0] == u"%" ? u"Humidade"_s : u"Temperaturas"_s;
        for (const QString &l : locais) {
            BaseRapida inst;
            inst.locale(l);
            canal({u"S1"_s, u"101"_s, QString(u"P 1250"_s + e[0]), e[1] == u"~" ? QString() : e[1], valor(e[2]),
                   valor(e[3])});
            QVERIFY(descarregar({log2251::linha(600, u"101;"_s + e[4])}));
            const QStringList esperado = linha.isEmpty() ? QStringList() : QStringList(local(linha));
            QCOMPARE(conteudo(u"SELECT %1, Observacoes, flag FROM %2"_s.arg(Instalacao::colunaDoValor(nome), nome)),
                     esperado);
            if (!esperado.isEmpty())
                QCOMPARE(conteudo(u"SELECT Data, Sensor, NomeSensor FROM "_s + nome),
                         QStringList(u"2011-03-01 10:00:00|S1|Sala 101"_s));
        }
    }

    void traducaoDoAlarme() {
        BaseRapida inst;
        inst.ficheiroLingua(u"EN"_s, {{u"KelvarkAUX"_s, u"Max"_s, u"Over by"_s}});
        inst.usarLingua(u"EN"_s);
        canal({u"S1"_s, u"101"_s, u"P 1250C"_s, u"0"_s, 30, 10});
        QVERIFY(descarregar({linha(1, u"101;312"_s)}));
        QCOMPARE(conteudo(u"SELECT flag FROM Temperaturas"_s), QStringList(u"Over by 1,2"_s));
    }

    void escalas_data() {
        // entrada: last of Tipo, scale max min, input max min, text in the log; "~": none; linha: value, Observacoes,
        // Escala, flag
        const Tabela<QString, QString> caso("entrada", "linha");
        caso("scaled", u"A 100 0 20 4 120"_s, u"50|40XXX10|bar|Máximo de  10"_s);
        caso("input range absent: 20 to 4", u"A 100 0 ~ ~ 120"_s, u"50|40XXX10|bar|Máximo de  10"_s);
        caso("no scale", u"A ~ ~ 20 4 120"_s, u"12|40XXX10|mA| "_s);
        caso("no scale, volts", u"V ~ ~ 15 0 120"_s, u"12|40XXX10|V| "_s);
        caso("scale of zeros", u"V 0 0 15 0 120"_s, u"12|40XXX10|bar| "_s);
        caso("rounded", u"A 10 0 25 0 123"_s, u"4.92|40XXX10|bar|Mínimo de  -5,08"_s);
        caso("negative scale", u"V 10 -10 10 0 25"_s, u"-5|40XXX10|bar|Mínimo de  -15"_s);
        caso("empty value", u"A 100 0 20 4 "_s, u"ND||bar| "_s);
        caso("empty value, no scale", u"V ~ ~ 15 0 "_s, u"ND||V| "_s);
        caso("input range without width", u"A 100 0 4 4 120"_s, u"ND||bar| "_s);
    }
    void escalas() {
        QFETCH(QString, entrada);
        QFETCH(QString, linha);
        const QStringList e = entrada.split(u' ');
        const auto numero = [](const QString &t) { return t == u"~" ? QVariant() : QVariant(t.toDouble()); };
        for (const QString &l : locais) {
            BaseRapida inst;
            inst.locale(l);
            canal({u"S1"_s, u"101"_s, QString(u"P 1250"_s + e[0]), u"0"_s, 40, 10});
            canal({u"S2"_s, u"102"_s, u"P 1250A"_s});
            escala(u"S2"_s, 1, 0, u"outra"_s);
            cnBD().executar(u"UPDATE Sensores SET SensUIMax = ?, SensUIMin = ? WHERE SensorID = 'S1'"_s,
                            {numero(e[3]), numero(e[4])});
            if (e[1] != u"~")
                escala(u"S1"_s, e[1].toDouble(), e[2].toDouble());
            QVERIFY(descarregar({log2251::linha(1, u"101;"_s + e[5])}));
            QCOMPARE(conteudo(u"SELECT Leitura, Observacoes, Escala, flag FROM SensUI_Leituras"_s),
                     QStringList(local(linha)));
        }
    }

    void datas_data() {
        // data: fields 0 and 1; lida: empty: no row
        const Tabela<QString, QString> caso("data", "lida");
        const QString esperada = u"2011-03-07 09:05:01"_s;
        caso("iso", u"2011-03-07;09:05:01"_s, esperada);
        caso("year first, slashes", u"2011/03/07;09:05:01"_s, esperada);
        caso("points", u"07.03.2011;09:05:01"_s, esperada);
        caso("slashes", u"07/03/2011;09:05:01"_s, esperada);
        caso("hyphens, single digits", u"7-3-2011;9:5:1"_s, esperada);
        caso("two digits of the year", u"07.03.11;09:05:01"_s, esperada);
        caso("the last century", u"07.03.99;09:05:01"_s, u"1999-03-07 09:05:01"_s);
        caso("blanks around", u" 2011-03-07 ; 09:05:01 "_s, esperada);
        caso("fraction", u"2011-03-07;09:05:01.75"_s, esperada);
        caso("no seconds", u"2011-03-07;09:05"_s, u"2011-03-07 09:05:00"_s);
        caso("no time", u"2011-03-07;"_s, u"2011-03-07 00:00:00"_s);
        caso("leap day", u"29.02.2012;23:59:59"_s, u"2012-02-29 23:59:59"_s);
        caso("an hour that summer time skips", u"2024-03-31;01:30:00"_s, u"2024-03-31 01:30:00"_s);
        caso("before the epoch", u"31.12.1969;23:59:58"_s, u"1969-12-31 23:59:58"_s);
        const QStringList mas{u"29.02.2011;10:00:00"_s,
                              u"2011-13-01;10:00:00"_s,
                              u"2011-03-07;24:00:00"_s,
                              u"07.03/2011;10:00:00"_s,
                              u"03.2011;10:00:00"_s,
                              u"yesterday;10:00:00"_s,
                              u"2011-03-07;noon"_s,
                              u";"_s,
                              u"2011-03-000000000007;10:00:00"_s};
        for (const QString &m : mas)
            caso(qPrintable(m), m, {});
    }
    void datas() {
        QFETCH(QString, data);
        QFETCH(QString, lida);
        BaseRapida inst;
        canal({u"S1"_s, u"101"_s});
        QVERIFY(descarregar({data + u";x;1;2;101;235"_s, linha(1, u"101;240"_s)}));
        QStringList esperado{u"2011-03-01 00:01:00"_s};
        if (!lida.isEmpty())
            esperado.prepend(lida);
        QCOMPARE(conteudo(u"SELECT Data FROM Temperaturas ORDER BY rowid"_s), esperado);
    }

    void linhas_data() {
        // leituras: sensor|value
        const Tabela<QString, QString> caso("linha", "leituras");
        const QString inicio = u"2011-03-01;10:00:00;x;1;2"_s;
        caso("one kept, one without reading", inicio + u";101;235;102;-9999"_s, u"S1|23.5"_s);
        caso("trailing semicolon", inicio + u";101;235;102;240;"_s, u"S1|23.5/S2|24"_s);
        caso("identifier without value", inicio + u";101;235;102"_s, u"S1|23.5"_s);
        caso("five fields", inicio, {});
        caso("nothing", {}, {});
        caso("semicolons", QString(50, u';'), {});
        caso("a bad value loses the rest", inicio + u";101;235;102;??;101;250"_s, u"S1|23.5"_s);
        caso("an identifier twice", inicio + u";101;235;101;240"_s, u"S1|23.5/S1|24"_s);
        caso("identifiers compare as text", inicio + u";0101;235; 101;235"_s, {});
        caso("kind in words", u"2011-03-01;10:00:00;x;kind;2;101;235"_s, u"S1|23.5"_s);
        caso("noise in front", QString(u"\xFFFD;\x1;"_s + inicio + u";101;235"_s), {});
        caso("very long", inicio + QString(u";9;1"_s).repeated(20000) + u";101;235"_s, u"S1|23.5"_s);
        caso("an ID that two sensors have", inicio + u";103;10"_s, u"S3|1/S4|1"_s);
        caso("a sensor of the capture service", inicio + u";105;10"_s, u"S5|1"_s);
    }
    void linhas() {
        QFETCH(QString, linha);
        QFETCH(QString, leituras);
        BaseRapida inst;
        for (const Canal &c : {Canal{u"S1"_s, u"101"_s}, Canal{u"S2"_s, u"102"_s}, Canal{u"S3"_s, u"103"_s},
                               Canal{u"S4"_s, u"103"_s}, Canal{u"S5"_s, u"105"_s}, Canal{u"alheio"_s, u"101"_s}})
            canal(c);
        cnBD().executar(u"UPDATE Sensores SET PoseidonIP = '1127.0.0.2' WHERE SensorID = 'S5'"_s);
        cnBD().executar(u"UPDATE Sensores SET PoseidonIP = '2127.0.0.21' WHERE SensorID = 'alheio'"_s);
        QVERIFY(descarregar({linha}));
        QCOMPARE(conteudo(u"SELECT Sensor, Temperatura FROM Temperaturas ORDER BY rowid"_s), lista(leituras));
    }

    void medias_data() {
        // medias: minute|value|Observacoes|flag
        const Tabela<int, QString, QString> caso("n", "brutos", "medias");
        const QString duas = u"02|11.03|30XXX10|~/05|31|30XXX10|Máximo de  1"_s;
        caso("six by three", 3, u"100/110/121/300/310/320"_s, duas);
        caso("seven by three", 3, u"100/110/121/300/310/320/330"_s, duas);
        caso("neither absent nor unread ones count", 3, u"100/-9999/110//120"_s, u"04|11|30XXX10|~"_s);
        caso("two", 2, u"100/111/200/200"_s, u"01|10.55|30XXX10|~/03|20|30XXX10|~"_s);
        caso("more than there are", 32767, u"100/110/120"_s, {});
        for (const int n : {0, 1, -1})
            QTest::addRow("each by itself: %d", n)
                << n << u"100/311"_s << u"00|10|30XXX10|~/01|31.1|30XXX10|Máximo de  1,1"_s;
    }
    void medias() {
        QFETCH(int, n);
        QFETCH(QString, brutos);
        QFETCH(QString, medias);
        for (const QString &l : locais) {
            BaseRapida inst;
            inst.locale(l);
            canal({u"S1"_s, u"101"_s, u"P 1250C"_s, u"0"_s, 30, 10});
            canal({u"S2"_s, u"102"_s, u"P 1250%"_s});
            QStringList log;
            for (const QString &bruto : lista(brutos))
                log += linha(int(log.size()), u"101;%1;102;500"_s.arg(bruto));
            QVERIFY(descarregar(log, n));
            QCOMPARE(
                conteudo(u"SELECT substr(Data, 15, 2), Temperatura, Observacoes, flag FROM Medias ORDER BY rowid"_s),
                lista(local(medias)));
        }
    }

    void registos_data() {
        // pares: of each line; linhas: minute|number|state
        const Tabela<int, QString, QString> caso("tipo", "pares", "linhas");
        caso("inputs", 3, u"1;1;2;0"_s, u"00|1|True/00|2|False"_s);
        caso("words and numbers", 3, u"1;2/2;False/1;0,0"_s, u"00|1|True/01|2|False/02|1|False"_s);
        caso("zero, negative and words are no inputs", 3, u"0;1;-3;1;x;1;2;1"_s, u"00|2|True"_s);
        caso("beyond the count: the rest is lost", 3, u"1;1;3;1;2;1/2;0"_s, u"00|1|True/00|3|True/01|2|False"_s);
        caso("unreadable state", 3, u"1;maybe;2;1/2;1"_s, u"01|2|True"_s);
        caso("number beyond 16 bits", 3, u"40000;1;1;1"_s, {});
        caso("outputs", 4, u"150;1;151;1;152;0"_s, u"00|1|True/00|2|False"_s);
    }
    void registos() {
        QFETCH(int, tipo);
        QFETCH(QString, pares);
        QFETCH(QString, linhas);
        BaseRapida inst;
        canal({u"S1"_s, u"1"_s}); // the same number as an input's means nothing here
        QStringList log;
        for (const QString &p : lista(pares))
            log += linha(int(log.size()), p, tipo);
        const QString origem =
            tipo == 3 ? u"InputNum, Estado FROM REGISTO_Inputs"_s : u"OutputNum, Estado FROM REGISTO_Outputs"_s;
        for (int vez = 0; vez < 2; ++vez) { // what lies beyond the count stands once too
            QVERIFY(descarregar(log));
            QCOMPARE(
                conteudo(
                    u"SELECT substr(Data, 15, 2), %1 WHERE DispositivoIP = '%2' AND flag = ' ' ORDER BY rowid"_s.arg(
                        origem, unidade)),
                lista(linhas));
        }
    }

    void spiderSoQuandoNenhumSensorOQuer() {
        BaseRapida inst;
        canal({u"S1"_s, u"201"_s, u"P 1250K"_s}); // of no known kind, and takes the pair all the same
        canal({u"S2"_s, u"202"_s});
        for (const int id : {201, 202, 203, 204})
            spider(id);
        QVERIFY(descarregar({linha(1, u"201;10;202;-9999;203;10;204;5;0203;10"_s), linha(2, u"203;0;204;10"_s)}));
        QCOMPARE(conteudo(u"SELECT DispositivoIP, InputNum, Data, Estado, flag FROM REGISTO_Inputs ORDER BY rowid"_s),
                 lista(u"127.0.0.2|203|2011-03-01 00:01:00|True| /127.0.0.2|203|2011-03-01 00:02:00|False| /"
                       "127.0.0.2|204|2011-03-01 00:02:00|True| "_s));
        QCOMPARE(tabela(u"Temperaturas"_s), QStringList());
    }
};

QTEST_GUILESS_MAIN(tst_log2251)
#include "tst_log2251.moc"
