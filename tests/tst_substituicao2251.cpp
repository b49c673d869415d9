// What a log does to what the tables hold already, and how it is brought back.
#include "poseidon/reposicao2251.h"
#include "poseidon/substituidas2251.h"
#include "tests/apoio/filho.h"
#include "tests/log2251.h"

#include <csignal>
#include <unistd.h>

using namespace log2251;
using modTratamentoDados2251::Balanco;

namespace {

constexpr auto semPassar = [] {};

// "|" parts cells, "/" rows.
QStringList lista(const QString &texto) {
    return texto.isEmpty() ? QStringList() : texto.split(u'/');
}

struct Guardado {
    bool feito = false;
    Balanco balanco;
    QString motivo;
    bool falhouFicheiro = false;
};

Guardado guardar(const Instalacao &inst, const QStringList &log, std::function<void()> passar = semPassar) {
    TratamentoDados2251 t(std::move(passar));
    t.definirGuarda(inst.ficheiro(u"x.log"_s));
    receber(t, log, 5);
    const bool feito = t.GuardarDados(unidade);
    return {feito, t.balanco(), t.motivo(), t.falhouFicheiro()};
}

// All rows with their places.
QMap<QString, QStringList> tudoComLugar() {
    QMap<QString, QStringList> t;
    for (const QString &nome : tabelasDoLog)
        t[nome] = conteudo(u"SELECT %2, * FROM %1 ORDER BY %2"_s.arg(nome, dialecto::ordem));
    return t;
}

bool contem(const QStringList &todas, const QStringList &partes) {
    const QSet<QString> conjunto(todas.begin(), todas.end());
    return std::all_of(partes.begin(), partes.end(), [&](const QString &p) { return conjunto.contains(p); });
}

// Channel, moment and note of every noted row.
QStringList notas() {
    QStringList n;
    for (const QString &nome : tabelasDoLog) {
        const QString canal = nome == u"REGISTO_Inputs"_s    ? u"InputNum"_s
                              : nome == u"REGISTO_Outputs"_s ? u"OutputNum"_s
                                                             : u"Sensor"_s;
        n += conteudo(
            u"SELECT '%1', upper(%2), substr(Data, 1, 19), flag FROM %1 WHERE flag LIKE 'nota%'"_s.arg(nome, canal));
    }
    return n;
}

// What a unit's tables may hold: rows of the log, of its seconds with other values, of other seconds, twice, noted,
// of channels that the log lacks, and of a capture service that writes other texts.
void encher(quint32 semente, int minutos) {
    QRandomGenerator acaso(semente);
    const auto um = [&](int em) { return acaso.bounded(em) == 0; };
    Transaccao t(cnBD());
    for (int n = 0; n < minutos; ++n) {
        for (int vez = 0; vez < (um(9) ? 2 : 1); ++vez) {
            const QString data = u"2011-03-01 %1:%2:%3"_s.arg(n / 60, 2, 10, QChar(u'0'))
                                     .arg(n % 60, 2, 10, QChar(u'0'))
                                     .arg(um(3) ? u"30"_s : u"00"_s);
            const auto flag = [&] { return um(6) ? u"nota %1\t%2\n\\"_s.arg(n).arg(vez) : u" "_s; };
            for (const QString &s : {u"S1"_s, u"OUTRO"_s}) {
                cnBD().executar(u"INSERT INTO Temperaturas VALUES (?,?,'Velha',?,'30XXX10',?)"_s,
                                {data, s, double(200 + (n * 7) % 150) / 10 + (um(2) ? 0.5 : 1), flag()});
                cnBD().executar(u"INSERT INTO Medias VALUES (?,?,NULL,?,' ',?)"_s,
                                {data, s, um(4) ? QVariant(u"ND"_s) : QVariant(21.25), flag()});
            }
            cnBD().executar(u"INSERT INTO Humidade VALUES (?,'s2','Velha',?,'60,5XXXNA',?,?)"_s,
                            {data, double(550 + n % 100) / 10, flag(), um(2) ? QVariant() : QVariant(n)});
            cnBD().executar(u"INSERT INTO SensUI_Leituras VALUES (?,'S3','V',?,' ','bar',?,?)"_s,
                            {data, n, u"X%1"_s.arg(n), flag()});
            for (const int numero : {1, 2, 7, 201})
                cnBD().executar(u"INSERT INTO REGISTO_Inputs VALUES (?,?,?,?,?)"_s,
                                {unidade, numero, data, um(2) ? u"True"_s : u"False"_s, flag()});
            cnBD().executar(u"INSERT INTO REGISTO_Outputs VALUES (?,?,?,'True',?)"_s, {unidade, n % 4, data, flag()});
        }
    }
    t.confirmar();
}

} // namespace

class tst_substituicao2251 : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void lugarDasLeituras_data() {
        // antes and depois: minute|value|flag of S1 (10 to 30); brutos: minute:tenths of the log, "x" unreadable;
        // contas: replaced, notes on readings of the log, noted readings that stayed
        const Tabela<QString, QString, QString, QString> caso("antes", "brutos", "depois", "contas");
        caso("between the first and the last", u"00|1| /02|2| /09|3| "_s, u"01:200 05:210"_s,
             u"00|1| /01|20|~/05|21|~/09|3| "_s, u"1 0 0"_s);
        caso("an equal one is none replaced", u"01|20| /02|21|~"_s, u"01:200 02:210"_s, u"01|20| /02|21|~"_s,
             u"0 0 0"_s);
        caso("a note goes to another value", u"01|19|porta"_s, u"01:200"_s, u"01|20|porta"_s, u"1 1 0"_s);
        caso("a note stays with an equal one", u"01|20|porta"_s, u"01:200"_s, u"01|20|porta"_s, u"0 1 0"_s);
        caso("a note without a reading stays", u"01|1|porta/02|1| "_s, u"00:200 05:200"_s,
             u"00|20|~/01|1|porta/05|20|~"_s, u"1 0 1"_s);
        caso("an alarm is no note", u"01|31|Máximo de  1/02|31|Over by  1/03|9.5|Mínimo de -0.5"_s, u"00:200 04:200"_s,
             u"00|20|~/03|9.5|Mínimo de -0.5/04|20|~"_s, u"2 0 1"_s);
        caso("the alarm of another value is", u"01|32|Máximo de  1"_s, u"01:200"_s, u"01|20|Máximo de  1"_s,
             u"1 1 0"_s);
        caso("two notes, one reading", u"01|19|a/01|18|b"_s, u"01:200"_s, u"01|20|a/01|18|b"_s, u"1 1 1"_s);
        caso("a note goes to an equal one", u"01|20| /01|18|b"_s, u"01:200"_s, u"01|20|b"_s, u"1 1 0"_s);
        caso("the noted one of two equal ones", u"01|20| /01|20|b"_s, u"01:200"_s, u"01|20|b"_s, u"1 1 0"_s);
        caso("more of the log", u"01|18|b"_s, u"01:200 01:201"_s, u"01|20|b/01|20.1|~"_s, u"1 1 0"_s);
        caso("a line that was not read: the same second only", u"01|18|b/02|1| /03|1|c/04|1| "_s,
             u"01:200 02:x 04:210 05:200"_s, u"01|20|b/02|1| /03|1|c/04|21|~/05|20|~"_s, u"2 1 0"_s);
    }
    void lugarDasLeituras() {
        QFETCH(QString, antes);
        QFETCH(QString, brutos);
        QFETCH(QString, depois);
        QFETCH(QString, contas);
        BaseRapida inst;
        inst.ficheiroLingua(u"EN"_s, {{u"KelvarkAUX"_s, u"Max"_s, u"Over by "_s}});
        modINI::SaveSetting(u"Vistrel"_s, u"Lingua"_s, u"L1"_s, u"EN"_s);
        canal({u"S1"_s, u"101"_s, u"P 1250C"_s, u"0"_s, 30, 10});
        const auto instante = [](const QString &minuto) { return u"2011-03-01 00:%1:00"_s.arg(minuto); };
        for (const QString &l : lista(antes)) {
            const QStringList c = l.split(u'|');
            inst.leituras(
                u"Temperaturas"_s, u"S1"_s,
                {{instante(c[0]), c[1].toDouble(), u"30XXX10"_s, c[2] == u"~" ? QVariant() : QVariant(c[2])}});
        }
        const auto agora = [] {
            return conteudo(u"SELECT substr(Data, 15, 2), Temperatura, flag FROM Temperaturas ORDER BY Data, %1"_s.arg(
                dialecto::ordem));
        };
        QStringList log;
        for (const QString &b : brutos.split(u' '))
            log += linha(b.section(u':', 0, 0).toInt(), u"101;"_s + b.section(u':', 1));
        const auto intacto = tudoComLugar();
        const Guardado g = guardar(inst, log);
        QVERIFY2(g.feito, qPrintable(g.motivo));
        QCOMPARE(agora(), lista(depois));
        QCOMPARE(u"%1 %2 %3"_s.arg(g.balanco.substituidas).arg(g.balanco.notas).arg(g.balanco.ficaram), contas);
        QCOMPARE(g.balanco.ficheiro.isEmpty(), g.balanco.substituidas == 0);
        if (!g.balanco.ficheiro.isEmpty()) {
            QCOMPARE(reposicao2251::examinar(g.balanco.ficheiro, semPassar).unidade, unidade);
            reposicao2251::repor(g.balanco.ficheiro, semPassar);
            QVERIFY(contem(tudoComLugar()[u"Temperaturas"_s], intacto[u"Temperaturas"_s]));
        }
        QVERIFY(guardar(inst, log).feito);
        const QStringList outraVez = agora();
        QVERIFY(guardar(inst, log).feito);
        QCOMPARE(agora(), outraVez);
    }

    void outrosCanaisFicam() {
        BaseRapida inst;
        unidadeCompleta();
        encher(1, 60);
        const auto antes = tudo();
        // One reading of S1 and one change of input 2 and output 1, at both ends.
        QVERIFY(guardar(inst, {linha(0, u"101;200"_s), linha(59, u"101;200"_s), linha(0, u"2;1"_s, 3),
                               linha(59, u"2;1"_s, 3), linha(0, u"151;1"_s, 4), linha(59, u"151;1"_s, 4)})
                    .feito);
        const auto depois = tudo();
        const auto alheias = [](const QStringList &linhas, const QString &deste) {
            return linhas.filter(QRegularExpression(u"^(?!%1)"_s.arg(deste)));
        };
        const std::pair<QString, QString> casos[] = {{u"Temperaturas"_s, u"[^|]*\\|S1\\|"_s},
                                                     {u"Medias"_s, u"[^|]*\\|S1\\|"_s},
                                                     {u"Humidade"_s, u"tudo"_s},
                                                     {u"SensUI_Leituras"_s, u"tudo"_s},
                                                     {u"REGISTO_Inputs"_s, u"127.0.0.2\\|2\\|"_s},
                                                     {u"REGISTO_Outputs"_s, u"127.0.0.2\\|1\\|"_s}};
        for (const auto &[tabela, deste] : casos) {
            QVERIFY2(alheias(antes[tabela], deste).size() > 40, qPrintable(tabela));
            QCOMPARE(alheias(depois[tabela], deste), alheias(antes[tabela], deste));
        }
        QVERIFY(depois[u"Temperaturas"_s].size() < antes[u"Temperaturas"_s].size());
    }

    void maisDoQueUmaPagina() {
        BaseRapida inst;
        canal({u"S1"_s, u"101"_s});
        QStringList log;
        for (int n = 0; n < 600; ++n) {
            log += linha(n, u"101;200"_s);
            const QString data = log.last().section(u';', 0, 1).replace(u';', u' ');
            // What comes first in the table is the later one of the second, and equal to the log's.
            inst.leituras(u"Temperaturas"_s, u"S1"_s, {{data + u".5"_s, 20}, {data, 5}});
        }
        const QString cheio = u"2011-03-01 10:00:00"_s;
        inst.leituras(u"Temperaturas"_s, u"S1"_s, QList<Instalacao::Leitura>(1500, {cheio, 7}));
        log += linha(600, u"101;70"_s);
        log += linha(601, u"101;70"_s);
        QCOMPARE(guardar(inst, log).balanco.substituidas, 600 + 1499);
        QCOMPARE(conteudo(u"SELECT COUNT(*), COUNT(DISTINCT substr(Data, 1, 19)), SUM(Data LIKE '%.5') "
                          "FROM Temperaturas"_s),
                 QStringList(u"602|602|600"_s));
    }

    void linhasPorLer_data() {
        const Tabela<QString, QString> caso("linha", "causa");
        const QString inicio = u"2011-03-01;00:05:00;x;1;2"_s;
        caso("read", inicio + u";101;200;999;1;"_s, {});
        caso("no reading", inicio + u";101;-9999"_s, {});
        caso("noise", u"\x01\xFFlixo"_s, u"Linha incompleta: \"?\xFFlixo\""_s);
        caso("blank", u" "_s, u"Linha incompleta: \" \""_s);
        caso("no date", u"2011-13-01;00:05:00;x;1;2;101;200"_s, u"Data ilegível: \"2011-13-01 00:05:00\""_s);
        caso("no value", inicio + u";101;2x0"_s, u"Valor ilegível: \"2x0\""_s);
        caso("half a pair", inicio + u";101;200;102"_s, u"Canal sem valor: \"102\""_s);
        caso("an input's number", u"2011-03-01;00:05:00;x;3;2;a;1;1;1"_s, u"Valor ilegível: \"a\""_s);
        caso("an input's state", u"2011-03-01;00:05:00;x;3;2;1;sim"_s, {}); // its own cause
        caso("beyond the count", u"2011-03-01;00:05:00;x;4;2;153;1"_s, u"Número além da contagem da linha: \"153\""_s);
        caso("a Spider's state", inicio + u";201;5;101;200"_s, u"Valor ilegível: \"5\""_s);
    }
    void linhasPorLer() {
        QFETCH(QString, linha);
        QFETCH(QString, causa);
        BaseRapida inst;
        unidadeCompleta();
        const Guardado g = guardar(inst, {log2251::linha(1, u"101;200"_s), linha});
        const bool lida = causa.isEmpty() && !linha.contains(u"sim");
        QCOMPARE(g.balanco.lidas, lida ? 2 : 1);
        QCOMPARE(g.balanco.naoLidas, lida ? 0 : 1);
        if (!lida)
            QCOMPARE(g.balanco.ilegiveis.at(0).linha, 2);
        if (!causa.isEmpty())
            QCOMPARE(g.balanco.ilegiveis.at(0).causa, causa);
    }

    void semFicheiroNadaSai() {
        BaseRapida inst;
        unidadeCompleta();
        encher(2, 30);
        const auto antes = tudo();
        QVERIFY(QDir().mkpath(inst.ficheiro(u"x.log.substituidas.parte"_s)));
        QVERIFY(QDir().mkpath(inst.ficheiro(u"x.log (2).substituidas"_s)));
        TratamentoDados2251 t(semPassar);
        t.definirGuarda(inst.ficheiro(u"pasta/que/falta/x.log"_s));
        receber(t, logCompleto(30, 1));
        QVERIFY(!t.GuardarDados(unidade));
        QVERIFY(t.falhouFicheiro());
        QVERIFY2(t.motivo().contains(u"x.log.substituidas"), qPrintable(t.motivo()));
        QVERIFY(tudo() == antes);
        // A taken name is never written over.
        QCOMPARE(guardar(inst, logCompleto(30, 1)).balanco.ficheiro, inst.ficheiro(u"x.log (3).substituidas"_s));
    }

    void reporExactamente() {
        for (quint32 semente = 0; semente < 12; ++semente) {
            BaseRapida inst;
            unidadeCompleta();
            encher(semente, 90);
            const auto antes = tudoComLugar();
            const QStringList notasAntes = notas();
            QVERIFY(notasAntes.size() > 50);
            const Guardado g = guardar(inst, logCompleto(90, int(semente % 2)));
            QVERIFY2(g.feito, qPrintable(g.motivo));
            QVERIFY2(contem(notas(), notasAntes), qPrintable(QString::number(semente)));
            const auto comLog = tudoComLugar();
            QVERIFY(comLog != antes);
            const auto r = reposicao2251::repor(g.balanco.ficheiro, semPassar);
            QCOMPARE(r.jaEstavam, 0);
            QVERIFY(r.repostas >= g.balanco.substituidas);
            const auto reposto = tudoComLugar();
            for (const QString &nome : tabelasDoLog) {
                // Rows that were equal to the log's may have got the sensor's name and the wording of their alarm.
                const auto semNome = [&](QStringList l) {
                    return l.replaceInStrings(QRegularExpression(u"\\|(Velha|Sala 10.|V)\\|"_s), u"|Sala|"_s)
                        .replaceInStrings(QRegularExpression(u"\\|(Máximo|Mínimo) de [^|]*(?=$|\\|)"_s), u"| "_s);
                };
                for (const QString &l : semNome(antes[nome]))
                    QVERIFY2(semNome(reposto[nome]).contains(l), qPrintable(u"%1 %2: %3"_s.arg(semente).arg(nome, l)));
            }
            const auto outraVez = reposicao2251::repor(g.balanco.ficheiro, semPassar);
            QCOMPARE(outraVez.repostas + outraVez.retiradas, 0);
            QVERIFY(tudoComLugar() == reposto);
        }
    }

    void notaEscritaDesdeEntao() {
        BaseRapida inst;
        unidadeCompleta();
        inst.leituras(u"Temperaturas"_s, u"S1"_s,
                      {{u"2011-03-01 00:01:00"_s, 1}, {u"2011-03-01 00:02:00"_s, 2, {}, u"velha"_s}});
        const Guardado g = guardar(inst, {linha(1, u"101;200"_s), linha(2, u"101;200"_s)});
        cnBD().executar(u"UPDATE Temperaturas SET flag = 'nova' WHERE Data LIKE '%01:00'"_s);
        QCOMPARE(reposicao2251::repor(g.balanco.ficheiro, semPassar).notas, 1);
        QCOMPARE(conteudo(u"SELECT Temperatura, flag FROM Temperaturas"_s), QStringList({u"1|nova"_s, u"2|velha"_s}));
    }

    void ficheiroEstragado() {
        BaseRapida inst;
        unidadeCompleta();
        encher(3, 20);
        const QString nome = guardar(inst, logCompleto(20, 1)).balanco.ficheiro;
        const auto antes = tudo();
        const QByteArray bom = Instalacao::lerFicheiro(nome);
        const auto recusa = [&](const QByteArray &bytes) {
            Instalacao::escreverFicheiro(nome, bytes);
            try {
                reposicao2251::repor(nome, semPassar);
                return QString();
            } catch (const Falha &f) {
                return f.descricao().section(u':', 0, 0);
            }
        };
        QCOMPARE(recusa(QByteArray(bom).replace("Velha", "Velho")),
                 u"O ficheiro está danificado ou é de outra base; nada foi reposto"_s);
        QCOMPARE(recusa("texto\n"), u"O ficheiro não é de leituras substituídas"_s);
        QVERIFY(tudo() == antes);
        // The step of a torn last section was never confirmed: the others are put back.
        QCOMPARE(recusa(bom + "tabela\tMedias\tData\nG\nA\t1"), QString());
        QVERIFY(tudo() != antes);
    }

    void mortoAoGuardar() { matarVezes(false); }
    void mortoAoRepor() { matarVezes(true); }

private:
    // 100 processes end at seeded points of their work, without any tidying up.
    static void matarVezes(bool aoRepor) {
        BaseRapida inst;
        unidadeCompleta();
        encher(4, 60);
        const QStringList log = logCompleto(60, 1);
        const auto antes = tudoComLugar();
        const QStringList notasAntes = notas();
        const QString modelo = inst.ficheiro(u"modelo.mdb"_s);
        const auto copiar = [&](const QString &de, const QString &para) {
            for (const QString &sufixo : {QString(), u"-wal"_s, u"-shm"_s})
                QFile::remove(para + sufixo);
            QVERIFY(QFile::copy(de, para));
        };
        const auto fechado = [&](const std::function<void()> &accao) {
            ligacaoPartilhada().fechar();
            accao();
            ligacaoPartilhada().abrir(inst.caminhoBD());
        };
        if (!aoRepor)
            fechado([&] { copiar(inst.caminhoBD(), modelo); });
        qint64 passes = 0;
        const auto contar = [&passes] { ++passes; };
        const Guardado g = guardar(inst, log, aoRepor ? std::function<void()>(semPassar) : contar);
        QVERIFY2(g.feito, qPrintable(g.motivo));
        const auto comLog = tudoComLugar();
        const QString ficheiro = inst.ficheiro(u"x.log.substituidas"_s);
        if (aoRepor) {
            fechado([&] { copiar(inst.caminhoBD(), modelo); });
            reposicao2251::repor(ficheiro, contar);
        }
        const auto depois = tudoComLugar();
        // The Spider inputs share a table with the others, and have a step of their own.
        const auto passos = [](QMap<QString, QStringList> t) {
            t[u"spider"_s] = t[u"REGISTO_Inputs"_s].filter(u"|201|"_s);
            t[u"REGISTO_Inputs"_s].removeIf([](const QString &l) { return l.contains(u"|201|"); });
            return t;
        };
        QRandomGenerator acaso(aoRepor ? 815 : 4711);
        int aMeio = 0;
        for (int vez = 0; vez < 100; ++vez) {
            ligacaoPartilhada().fechar(); // a connection does not cross a fork
            copiar(modelo, inst.caminhoBD());
            if (!aoRepor)
                for (const QString &sobra : QDir(inst.ficheiro(QString())).entryList({u"x.log*"_s}))
                    QFile::remove(inst.ficheiro(sobra));
            const qint64 fim = acaso.bounded(passes) + 1;
            Filho filho([&] {
                ligacaoPartilhada().abrir(inst.caminhoBD());
                qint64 n = 0;
                const auto passar = [&] {
                    if (++n == fim)
                        ::kill(::getpid(), SIGKILL);
                };
                if (aoRepor)
                    reposicao2251::repor(ficheiro, passar);
                else
                    guardar(inst, log, passar);
                return QByteArray("1");
            });
            filho.esperar();
            ligacaoPartilhada().abrir(inst.caminhoBD());
            const auto agora = passos(tudoComLugar());
            const auto a = passos(aoRepor ? comLog : antes), d = passos(depois);
            for (auto i = agora.cbegin(); i != agora.cend(); ++i)
                QVERIFY2(*i == a[i.key()] || *i == d[i.key()], qPrintable(u"kill %1, %2"_s.arg(fim).arg(i.key())));
            QVERIFY2(contem(notas(), notasAntes), qPrintable(u"kill %1"_s.arg(fim)));
            aMeio += agora != d ? 1 : 0;
            if (aoRepor)
                QVERIFY(agora == a || agora == d);
            if (QFile::exists(ficheiro))
                reposicao2251::repor(ficheiro, semPassar);
            if (aoRepor)
                QVERIFY(tudoComLugar() == depois);
            else if (agora != a)
                QVERIFY(QFile::exists(ficheiro));
        }
        QVERIFY2(aMeio > 50, "the kills came too late to mean anything");
    }
};

QTEST_GUILESS_MAIN(tst_substituicao2251)
#include "tst_substituicao2251.moc"
