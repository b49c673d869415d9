#include "core/modDoubleTratamento.h"
#include "tests/log2251.h"

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
    void duasCasas() {
        // Half goes away from zero, the decimal text decides and not the bits, no minus before zero.
        const std::pair<double, QString> casos[] = {{0, u"0,00"_s},     {12, u"12,00"_s},        {-0.125, u"-0,13"_s},
                                                    {1.005, u"1,01"_s}, {999.995, u"1000,00"_s}, {-0.004, u"0,00"_s}};
        Instalacao inst(Instalacao::Base::Nenhuma);
        for (const QString &nome : locais) {
            inst.locale(nome);
            for (const auto &[numero, texto] : casos) {
                QCOMPARE(FormatarDuasCasas(numero), local(texto));
                QCOMPARE(modDoubleTratamento::TextoParaDouble(local(texto)), DuasCasas(numero));
            }
        }
    }

    void leituras_data() {
        // entrada: last of Tipo, Calibracao, Maximo, Minimo, text in the log; of a Sens-UI channel also scale max min,
        // input max min; "~" for Null or none; linha: value, Observacoes, flag, scale; empty: no row
        const Tabela<QString, QString> caso("entrada", "linha");
        caso("one digit", u"C 0 30 0 5"_s, u"0.5|30XXX0|~"_s);
        caso("negative digit", u"C 0 30 -5 -5"_s, u"-0.5|30XXX-5|~"_s);
        caso("calibration with a comma", u"C -0,25 30 10 235"_s, u"23.25|30XXX10|~"_s);
        caso("no binary dust", u"C 0.2 NA -5 1"_s, u"0.3|NAXXX-5|~"_s);
        caso("calibration absent", u"C ~ NA -5 1"_s, u"0.1|NAXXX-5|~"_s);
        caso("above", u"C 0.06 30 10 312"_s, u"31.26|30XXX10|Máximo de  1,26"_s);
        caso("below", u"C 0 30 10.5 -12"_s, u"-1.2|30XXX10,5|Mínimo de  -11,7"_s);
        caso("both, limits crossed", u"C 0 10 30 200"_s, u"20|10XXX30|Máximo de  10Mínimo de  -10"_s);
        caso("on the maximum", u"C 0 30 10 300"_s, u"30|30XXX10|~"_s);
        caso("on the minimum", u"C 0 30 10 100"_s, u"10|30XXX10|~"_s);
        caso("half to even, down", u"C 0.005 30 NA 312"_s, u"31.205|30XXXNA|Máximo de  1,2"_s);
        caso("only a maximum", u"C 0 30 NA -900"_s, u"-90|30XXXNA|~"_s);
        caso("limits both zero", u"C 0 0 0 999"_s, u"99.9| | "_s);
        caso("absent and zero", u"C 0 NA 0 -10"_s, u"-1| | "_s);
        caso("limit Null", u"C 0 ~ 5 10"_s, u"1|NAXXX5|Mínimo de  -4"_s);
        caso("limit unreadable", u"C 0 abc 5 10"_s, u"1| | "_s);
        caso("limit with a comma", u"C 0 30,5 NA 306"_s, u"30.6|30,5XXXNA|Máximo de  0,1"_s);
        caso("humidity has limits of its own", u"% 0 60 20 655"_s, u"65.5|60XXX20|Máximo de  5,5"_s);
        caso("empty value", u"C 0 30 10 "_s, u"ND|~|~"_s);
        caso("no reading", u"C 0 30 10 -9999"_s, {});
        caso("a sign alone", u"C 0 30 10 -"_s, {});
        caso("calibration unreadable", u"C x 30 10 1"_s, {});
        caso("kind unknown", u"K 0 30 10 1"_s, {});
        caso("more digits than a number keeps", u"C 0 NA NA 12345678901234567"_s, u"1234567890123460| | "_s);
        caso("input range absent: 20 to 4", u"A 0 40 10 120 100 0 ~ ~"_s, u"50|40XXX10|Máximo de  10|bar"_s);
        caso("no scale", u"A 0 40 10 120 ~ ~ 20 4"_s, u"12|40XXX10| |mA"_s);
        caso("no scale, volts", u"V 0 40 10 120 ~ ~ 15 0"_s, u"12|40XXX10| |V"_s);
        caso("scale of zeros", u"V 0 40 10 120 0 0 15 0"_s, u"12|40XXX10| |bar"_s);
        caso("rounded, below zero", u"A 0 40 10 123 10 -10 25 0"_s, u"-0.16|40XXX10|Mínimo de  -10,16|bar"_s);
        caso("empty value on no scale", u"V 0 40 10  ~ ~ 15 0"_s, u"ND|| |V"_s);
        caso("input range without width", u"A 0 40 10 120 100 0 4 4"_s, u"ND|| |bar"_s);
    }
    void leituras() {
        QFETCH(QString, entrada);
        QFETCH(QString, linha);
        const QStringList e = entrada.split(u' ');
        const auto valor = [](const QString &t) { return t == u"~" ? QVariant() : QVariant(t); };
        const bool sensUI = e.size() > 5;
        const QString nome = sensUI ? u"SensUI_Leituras"_s : e[0] == u"%" ? u"Humidade"_s : u"Temperaturas"_s;
        for (const QString &l : locais) {
            BaseRapida inst;
            inst.locale(l);
            canal({u"S1"_s, u"101"_s, QString(u"P 1250"_s + e[0]), e[1] == u"~" ? QString() : e[1], valor(e[2]),
                   valor(e[3])});
            if (sensUI) {
                canal({u"S2"_s, u"102"_s, u"P 1250A"_s});
                escala(u"S2"_s, 1, 0, u"outra"_s);
                if (e[5] != u"~")
                    escala(u"S1"_s, e[5].toDouble(), e[6].toDouble());
                cnBD().executar(u"UPDATE Sensores SET SensUIMax = ?, SensUIMin = ? WHERE SensorID = 'S1'"_s,
                                {valor(e[7]), valor(e[8])});
            }
            QVERIFY(descarregar({log2251::linha(600, u"101;"_s + e[4])}));
            QCOMPARE(conteudo(u"SELECT Data, Sensor, NomeSensor, %1, Observacoes, flag %2 FROM %3"_s.arg(
                         Instalacao::colunaDoValor(nome), sensUI ? u", Escala"_s : QString(), nome)),
                     lista(linha.isEmpty() ? linha : u"2011-03-01 10:00:00|S1|Sala 101|"_s + local(linha)));
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

    void datas() {
        const std::pair<QString, QString> casos[] = {
            {u"2011-03-07;09:05:01"_s, u"2011-03-07 09:05:01"_s},
            {u"2011/03/07;09:05:01"_s, u"2011-03-07 09:05:01"_s},
            {u"07.03.2011;09:05:01"_s, u"2011-03-07 09:05:01"_s},
            {u"7-3-11;9:5:1"_s, u"2011-03-07 09:05:01"_s},
            {u"07/03/99;09:05"_s, u"1999-03-07 09:05:00"_s},
            {u" 2011-03-07 ; 09:05:01.75 "_s, u"2011-03-07 09:05:01"_s},
            {u"2011-03-07;"_s, u"2011-03-07 00:00:00"_s},
            {u"29.02.2012;23:59:59"_s, u"2012-02-29 23:59:59"_s},
            {u"2024-03-31;01:30:00"_s, u"2024-03-31 01:30:00"_s}, // an hour that summer time skips
            {u"31.12.1969;23:59:58"_s, u"1969-12-31 23:59:58"_s},
        };
        const QStringList mas = u"29.02.2011;10:00:00 2011-13-01;10:00:00 2011-03-07;24:00:00 07.03/2011;10:00:00 "
                                "03.2011;10:00:00 yesterday;10:00:00 2011-03-07;noon ; "
                                "2011-03-000000000007;10:00:00"_s.split(u' ');
        const QString resto = u";x;1;2;101;235"_s;
        QStringList log, lidas;
        for (const QString &ma : mas)
            log += ma + resto;
        for (const auto &[texto, lida] : casos) {
            log += texto + resto;
            lidas += lida;
        }
        BaseRapida inst;
        canal({u"S1"_s, u"101"_s});
        QVERIFY(descarregar(log));
        QCOMPARE(conteudo(u"SELECT Data FROM Temperaturas ORDER BY %1"_s.arg(dialecto::ordem)), lidas);
    }

    void linhas_data() {
        // leituras: sensor|value
        const Tabela<QString, QString> caso("linha", "leituras");
        const QString inicio = u"2011-03-01;10:00:00;x;1;2"_s;
        caso("one kept, one without reading", inicio + u";101;235;102;-9999"_s, u"S1|23.5"_s);
        caso("trailing semicolon", inicio + u";101;235;102;240;"_s, u"S1|23.5/S2|24"_s);
        caso("identifier without value", inicio + u";101;235;102"_s, u"S1|23.5"_s);
        caso("five fields", inicio, {});
        caso("semicolons", QString(50, u';'), {});
        caso("a bad value loses the rest", inicio + u";101;235;102;??;101;250"_s, u"S1|23.5"_s);
        caso("an identifier twice", inicio + u";101;235;101;240"_s, u"S1|23.5/S1|24"_s);
        caso("identifiers compare as text", inicio + u";0101;235; 101;235"_s, {});
        caso("noise in front", QString(u"\xFFFD;\x1;"_s + inicio + u";101;235"_s), {});
        caso("very long", inicio + QString(u";9;1"_s).repeated(20000) + u";101;235"_s, u"S1|23.5"_s);
        caso("an ID that two sensors have", inicio + u";103;10"_s, u"S3|1/S4|1"_s);
    }
    void linhas() {
        QFETCH(QString, linha);
        QFETCH(QString, leituras);
        BaseRapida inst;
        for (const auto &[sensor, id] : {std::pair{"S1", 101}, {"S2", 102}, {"S3", 103}, {"S4", 103}, {"alheio", 101}})
            canal({QString::fromLatin1(sensor), QString::number(id)});
        cnBD().executar(u"UPDATE Sensores SET PoseidonIP = '2127.0.0.21' WHERE SensorID = 'alheio'"_s);
        QVERIFY(descarregar({linha}));
        QCOMPARE(conteudo(u"SELECT Sensor, Temperatura FROM Temperaturas ORDER BY %1"_s.arg(dialecto::ordem)),
                 lista(leituras));
    }

    void medias_data() {
        // medias: minute|value|Observacoes|flag
        const Tabela<int, QString, QString> caso("n", "brutos", "medias");
        caso("seven by three", 3, u"100/110/121/300/310/320/330"_s, u"02|11.03|30XXX10|~/05|31|30XXX10|Máximo de  1"_s);
        caso("neither absent nor unread ones count", 3, u"100/-9999/110//120"_s, u"04|11|30XXX10|~"_s);
        caso("two", 2, u"100/111/200/200"_s, u"01|10.55|30XXX10|~/03|20|30XXX10|~"_s);
        const QString cada = u"00|10|30XXX10|~/01|31.1|30XXX10|Máximo de  1,1"_s;
        caso("by one", 1, u"100/311"_s, cada);
        caso("by none", 0, u"100/311"_s, cada);
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
                conteudo(u"SELECT substr(Data, 15, 2), Temperatura, Observacoes, flag FROM Medias ORDER BY %1"_s.arg(
                    dialecto::ordem)),
                lista(local(medias)));
        }
    }

    void registos_data() {
        // pares: of each line; linhas: minute|number|state
        const Tabela<int, QString, QString> caso("tipo", "pares", "linhas");
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
        const QString registo = tipo == 3 ? u"Input"_s : u"Output"_s;
        for (int vez = 0; vez < 2; ++vez) { // what lies beyond the count stands once too
            QVERIFY(descarregar(log));
            QCOMPARE(conteudo(u"SELECT substr(Data, 15, 2), %1Num, Estado FROM REGISTO_%1s "
                              "WHERE DispositivoIP = '%2' AND flag = ' ' ORDER BY %3"_s.arg(registo, unidade,
                                                                                            dialecto::ordem)),
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
        QCOMPARE(conteudo(u"SELECT DispositivoIP, InputNum, Data, Estado, flag FROM REGISTO_Inputs ORDER BY %1"_s.arg(
                     dialecto::ordem)),
                 lista(u"127.0.0.2|203|2011-03-01 00:01:00|True| /127.0.0.2|203|2011-03-01 00:02:00|False| /"
                       "127.0.0.2|204|2011-03-01 00:02:00|True| "_s));
        QCOMPARE(tabela(u"Temperaturas"_s), QStringList());
    }
};

QTEST_GUILESS_MAIN(tst_log2251)
#include "tst_log2251.moc"
