#include "data/ligacao.h"
#include "poseidon/documentoSetup.h"
#include "poseidon/importacao.h"
#include "poseidon/listaPoseidons.h"
#include "tests/apoio/tabela.h"
#include "tests/log2251.h"

#include <QTest>

using namespace importacao;
using log2251::conteudo;
using Base = log2251::BaseRapida;

namespace {

const QString ip = u"10.0.0.5"_s;
const QString hostil = u"a'; DROP TABLE Sensores; --"_s;

QString canal(const QString &id, const QString &unidade, const QString &nome, const QString &valor = u"21.5"_s,
              const QString &minimo = u"10.0"_s, const QString &maximo = u"30.5"_s) {
    return u"<Entry><ID>%1</ID><Name>%2</Name><Units>%3</Units><Value>%4</Value><Min>%5</Min><Max>%6</Max></Entry>"_s
        .arg(id, nome.toHtmlEscaped(), unidade, valor, minimo, maximo);
}

QString documento(const QString &canais, const QString &mac = u"00:0A:59:00:12:34"_s) {
    return u"<?xml version=\"1.0\" encoding=\"windows-1252\"?>\n<Root xmlns=\"x\"><Agent><Model>4</Model><MAC>%2</MAC>"
           "<DeviceName> Câmara de conservação </DeviceName></Agent><Network><TelnetPort>2323</TelnetPort></Network>"
           "<Time><Date>07.03.2011</Date><Time>09:05:00</Time></Time><SenSet>%1</SenSet></Root>"_s.arg(canais, mac);
}

Resultado importar(const QString &xml, const QString &endereco = ip) {
    return LerSetupXML(xml, endereco, endereco, modoDaqui);
}

QStringList descricoes() {
    return conteudo(u"SELECT Descricao FROM Sensores ORDER BY rowid"_s);
}

// Everything that an import may touch.
QStringList base() {
    QStringList linhas;
    for (const QString &t : {u"Sensores"_s, u"Calibracoes"_s, u"PoseidonInputs"_s, u"PoseidonOutputs"_s,
                             u"PoseidonInputsSpider"_s, u"Poseidons"_s})
        linhas += log2251::tabela(t);
    return linhas;
}

} // namespace

class tst_importacao : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void identificadores_data() {
        const Tabela<QString, QString, QString, QString> caso("id", "endereco", "mac", "sensorID");
        const QString mac = u"00:0A:59:00:12:34"_s;
        caso("dotted", u"101"_s, ip, mac, u"0050000000000101"_s);
        caso("dotted, long ID", u"12345678901234567"_s, u"10.0.0.255"_s, mac, u"2555678901234567"_s);
        caso("remote, one digit", u"7"_s, u"host"_s, mac, u"000A590012340007"_s);
        caso("remote, two digits", u"17"_s, u"host:81"_s, mac, u"000A590012340017"_s);
        caso("remote, long ID", u"1234567"_s, u"host"_s, mac, u"000A590011234567"_s);
        caso("remote, ID beyond all", u"12345678901234567"_s, u"host"_s, mac, u"2345678901234567"_s);
        caso("dotted with a port is remote", u"101"_s, u"10.0.0.5:80"_s, u"AB"_s, u"AB00000000000101"_s);
    }
    void identificadores() {
        QFETCH(QString, id);
        QFETCH(QString, endereco);
        QFETCH(QString, mac);
        QTEST(criarSensorID(id, endereco, mac), "sensorID");
    }

    void tudoDeUmaUnidade() {
        Base inst;
        listaPoseidons::AdicionarBDPoseidons({ip, 4, u"00:0A"_s, u"Câmara"_s, 81, u"R"_s, true, false, 3});
        QCOMPARE(log2251::tabela(u"Poseidons"_s), QStringList(u"10.0.0.5|Câmara|0|4.0|00:0A|81|MAN|2000|1|1|0|3"_s));
        const Resultado r = importar(documento(canal(u"101"_s, u"C"_s, u"Sala"_s) + canal(u"102"_s, u"%RH"_s, hostil) +
                                               canal(u"103"_s, u"V"_s, u"V"_s) + canal(u"104"_s, u"mA"_s, u"mA"_s) +
                                               canal(u"201"_s, u"s"_s, u"Porta"_s) + canal(u"105"_s, u"W"_s, u"W"_s)));
        QVERIFY2(r.importado && r.motivo.isEmpty(), qPrintable(r.motivo));
        QCOMPARE(r.portaTelnet.value_or(0), 2323);
        QCOMPARE(QString(r.data + u' ' + r.hora), u"07.03.2011 09:05:00"_s);
        QCOMPARE(log2251::tabela(u"Sensores"_s),
                 QStringList({u"0050000000000101|101|1|P 1250C|Sala|SIM|0|POSEIDON|210.0.0.5|-999.9|20|4"_s,
                              u"0050000000000102|102|2|P 1250%|%1|SIM|0|POSEIDON|210.0.0.5|-999.9|20|4"_s.arg(hostil),
                              u"0050000000000103|103|3|P 1250V|V|SIM|0|POSEIDON|210.0.0.5|-999.9|15|0"_s,
                              u"0050000000000104|104|4|P 1250A|mA|SIM|0|POSEIDON|210.0.0.5|-999.9|25|0"_s}));
        QCOMPARE(log2251::tabela(u"Calibracoes"_s), QStringList({u"0050000000000101|30.5|10|NA|NA|TMP|NA|NA|0"_s,
                                                                 u"0050000000000102|NA|NA|30.5|10|HUMTMP|NA|NA|0"_s,
                                                                 u"0050000000000103|30.5|10|NA|NA|SENSUI|NA|NA|0"_s,
                                                                 u"0050000000000104|30.5|10|NA|NA|SENSUI|NA|NA|0"_s}));
        QCOMPARE(log2251::tabela(u"PoseidonInputs"_s),
                 QStringList({u"10.0.0.5|1|1|0|0|0|0|Câmara P1"_s, u"10.0.0.5|2|2|0|0|0|0|Câmara P2"_s,
                              u"10.0.0.5|3|3|0|0|0|0|Câmara P3"_s}));
        QCOMPARE(log2251::tabela(u"PoseidonOutputs"_s),
                 QStringList({u"10.0.0.5|1|151|0|2024-03-15 10:20:30|00:00:00|0|0|Câmara O1"_s,
                              u"10.0.0.5|2|152|0|2024-03-15 10:20:30|00:00:00|0|0|Câmara O2"_s}));
        QCOMPARE(log2251::tabela(u"PoseidonInputsSpider"_s), QStringList(u"10.0.0.5|201|1|SIM| | |0|0|0|Porta"_s));
    }

    void canais_data() {
        // depois: descriptions after the first and after every later import
        const Tabela<QString, QStringList> caso("canais", "depois");
        const QString dois = canal(u"1"_s, u"C"_s, u"Sala"_s) + canal(u"2"_s, u"C"_s, u"Sala"_s);
        caso("same name twice", dois, {u"Sala"_s, u"Sala 1"_s});
        caso("same name in other letters", canal(u"1"_s, u"C"_s, u"Sala"_s) + canal(u"2"_s, u"C"_s, u"SALA"_s),
             {u"Sala"_s, u"SALA 1"_s});
        caso("no names", canal(u"1"_s, u"C"_s, {}) + canal(u"2"_s, u"C"_s, u" "_s), {u"Sensor"_s, u"Sensor 1"_s});
        caso("nothing connected", canal(u"1"_s, u"C"_s, u"Sala"_s, u"-999.9"_s), {u"Sala"_s});
        caso("a name that an alarm rule has", canal(u"1"_s, u"C"_s, u"Regra"_s), {u"Regra 1"_s});
        caso("no channels", {}, {});
        caso("a name in a section", canal(u"1"_s, u"C"_s, u"@"_s).replace(u"@"_s, u"<![CDATA[a<b]]> &amp; c"_s),
             {u"a<b & c"_s});
    }
    void canais() {
        QFETCH(QString, canais);
        QFETCH(QStringList, depois);
        Base inst;
        cnBD().executar(u"INSERT INTO REGRAS_Emails (Descricao) VALUES ('regra')"_s);
        QVERIFY(importar(documento(canais)).importado);
        QCOMPARE(descricoes(), depois);
        const QStringList primeira = base();
        for (int vez = 0; vez < 2; ++vez) {
            QVERIFY(importar(documento(canais)).importado);
            QCOMPARE(base(), primeira);
        }
    }

    void documentosRecusados_data() {
        const Tabela<QString, QString> caso("xml", "motivo");
        const QString bom = canal(u"9"_s, u"C"_s, u"Novo"_s);
        const QString estrutura = u"Estrutura do XML inválida"_s;
        const QString malFormado = u"incompleto ou malformado"_s;
        const QString inteiro = documento(bom);
        caso("nothing", u" \n"_s, u"não enviou"_s);
        caso("half", inteiro.left(inteiro.size() / 2), malFormado);
        caso("all but the end", inteiro.chopped(1), malFormado);
        caso("only the declaration", inteiro.left(46), malFormado);
        caso("junk of 50 MB", QString(50'000'000, u'<'), u"demasiado grande"_s);
        caso("junk", QString(3'000'000, u'x'), malFormado);
        caso("deep beyond reason", QString(u"<a>"_s.repeated(500'000) + u"</a>"_s.repeated(500'000)), estrutura);
        caso("bytes of another encoding", QString::fromUtf8(QString(inteiro).toLatin1()), u"codificação"_s);
        caso("NUL inside", QString(inteiro).replace(u"Novo"_s, u"No\0o"_s), u"codificação"_s);
        caso(
            "entities",
            QString(inteiro).replace(u"<Root"_s, u"<!DOCTYPE Root [<!ENTITY e SYSTEM \"file:///etc/passwd\">]><Root"_s),
            u"tipo de documento"_s);
        caso("a web page", u"<html><body>404</body></html>"_s, estrutura + u": Agent"_s);
        caso("no SenSet", u"<Root><Agent><MAC>00:01</MAC></Agent></Root>"_s, estrutura + u": SenSet"_s);
        for (const QString &e : {u"ID"_s, u"Name"_s, u"Units"_s, u"Value"_s, u"Min"_s, u"Max"_s})
            QTest::addRow("no %s", qPrintable(e))
                << documento(bom +
                             QString(bom).replace(u"<%1>"_s.arg(e), u"<x>"_s).replace(u"</%1>"_s.arg(e), u"</x>"_s))
                << estrutura + u": SenSet[2]/"_s + e;
        caso("limit of words", documento(canal(u"9"_s, u"C"_s, u"N"_s, u"1"_s, u"low"_s)), estrutura);
        caso("Spider number of words", documento(canal(u"x"_s, u"s"_s, u"N"_s)), estrutura);
        caso("channels without end", documento(bom.repeated(1001)), estrutura);
    }
    void documentosRecusados() {
        QFETCH(QString, xml);
        QFETCH(QString, motivo);
        Base inst;
        QVERIFY(importar(documento(canal(u"1"_s, u"C"_s, u"Sala"_s))).importado);
        const QStringList antes = base();
        const Resultado r = importar(xml);
        QVERIFY(!r.importado);
        QVERIFY2(r.motivo.contains(motivo), qPrintable(r.motivo));
        QCOMPARE(base(), antes);
    }

    void falhaDaBaseNadaMuda() {
        Base inst;
        cnBD().executar(
            u"CREATE TRIGGER cheio BEFORE INSERT ON PoseidonOutputs BEGIN SELECT RAISE(ABORT, 'cheio'); END"_s);
        const Resultado r = importar(documento(canal(u"1"_s, u"C"_s, u"Sala"_s)));
        QVERIFY(!r.importado && r.motivo.contains(u"cheio"));
        QCOMPARE(base(), QStringList());
    }

    void nomes_data() {
        const Tabela<QString, QString, QString, QString, QString> caso("unidade", "antes", "nome", "valor", "depois");
        const QString v = u"1"_s;
        caso("changed", u"C"_s, u"Sala"_s, u"Cave"_s, v, u"Cave"_s);
        caso("only letters", u"C"_s, u"Sala"_s, u"SALA"_s, v, u"SALA"_s);
        caso("taken elsewhere", u"C"_s, u"Sala"_s, u"Outro"_s, v, u"Outro 1"_s);
        caso("nothing connected keeps it", u"C"_s, u"Sala"_s, u"Cave"_s, u"-999.9"_s, u"Sala"_s);
        caso("Spider", u"s"_s, u"Porta"_s, u"Janela"_s, v, u"Janela"_s);
        caso("Spider, taken", u"s"_s, u"Porta"_s, u"Outro"_s, v, u"Outro (1)"_s);
        caso("Spider, long", u"s"_s, u"Porta"_s, u"Porta das traseiras da cave"_s, v, u"Porta das traseiras "_s);
    }
    void nomes() {
        QFETCH(QString, unidade);
        QFETCH(QString, antes);
        QFETCH(QString, nome);
        QFETCH(QString, valor);
        QFETCH(QString, depois);
        Base inst;
        inst.sensor({u"X"_s, u"Outro"_s});
        QVERIFY(importar(documento(canal(u"1"_s, unidade, antes))).importado);
        for (int vez = 0; vez < 2; ++vez) {
            QVERIFY(importar(documento(canal(u"1"_s, unidade, nome, valor))).importado);
            QCOMPARE(conteudo(unidade == u"s" ? u"SELECT Descricao FROM PoseidonInputsSpider"_s
                                              : u"SELECT Descricao FROM Sensores WHERE SensorID <> 'X'"_s),
                     QStringList(depois));
        }
    }

    void limitesSaoOsDaUnidade() {
        Base inst;
        QVERIFY(importar(documento(canal(u"1"_s, u"C"_s, u"Sala"_s))).importado);
        cnBD().executar(u"UPDATE Calibracoes SET Maximo = 99, Calibracao = '1,5'"_s);
        inst.locale(u"en_US"_s);
        QVERIFY(importar(documento(canal(u"1"_s, u"C"_s, u"Sala"_s, u"-999.9"_s, u"-5"_s, u"25,5"_s))).importado);
        QCOMPARE(conteudo(u"SELECT Maximo, Minimo, Calibracao FROM Calibracoes"_s), QStringList(u"25.5|-5|0"_s));
    }

    void identificadorDeOutraUnidade_data() {
        // dono: PoseidonIP of the sensor's row
        const Tabela<QString, bool, bool> caso("dono", "naLista", "toma");
        caso("still in the list", u"210.0.1.5"_s, true, false);
        caso("its address was changed", u"210.0.1.5"_s, false, true);
        caso("of the capture service", u"110.0.1.5"_s, false, false);
    }
    void identificadorDeOutraUnidade() {
        QFETCH(QString, dono);
        QFETCH(bool, naLista);
        QFETCH(bool, toma);
        Base inst;
        QVERIFY(importar(documento(canal(u"1"_s, u"C"_s, u"Velho"_s))).importado);
        cnBD().executar(u"UPDATE Sensores SET PoseidonIP = ?"_s, {dono});
        if (naLista)
            listaPoseidons::AdicionarBDPoseidons({u"10.0.1.5"_s, 4, {}, u"Outra"_s});
        const Resultado r = importar(documento(canal(u"1"_s, u"C"_s, u"Sala"_s)));
        QVERIFY(r.importado);
        QCOMPARE(r.motivo.contains(u"Sala"), !toma);
        QCOMPARE(conteudo(u"SELECT Descricao, PoseidonIP FROM Sensores"_s),
                 QStringList(toma ? u"Sala|210.0.0.5"_s : u"Velho|"_s + dono));
    }

    void dispositivo_data() {
        // linha: m, VistrelS, ApagarLog, NLeiturasM
        const Tabela<QString, QString, QString, QString> caso("udp", "apagar", "nLeituras", "linha");
        caso("by hand", u"R"_s, u"1"_s, u"5"_s, u"MAN|1|0|5"_s);
        caso("found", {}, u"SIM"_s, u"x"_s, u"AUT|1|1|1"_s);
        caso("no average of nothing", {}, u"0"_s, u"0"_s, u"AUT|1|0|1"_s);
    }
    void dispositivo() {
        QFETCH(QString, udp);
        QFETCH(QString, apagar);
        QFETCH(QString, nLeituras);
        QFETCH(QString, linha);
        Base inst;
        const auto carregar = [&](const QString &nome, const QString &xml) {
            return CarregarPoseidonParaBD(ip, u"4"_s, udp, u"00:0A"_s, nome, u"81"_s, u"SIM"_s, apagar, nLeituras,
                                          [&](const QString &endereco, const QString &porta) {
                                              return endereco == ip && porta == u"81" ? xml : QString();
                                          });
        };
        QVERIFY(!carregar(u"Câmara"_s, {}).importado); // the row stands all the same
        QCOMPARE(conteudo(u"SELECT m, VistrelS, ApagarLog, NLeiturasM FROM Poseidons"_s), QStringList(linha));
        QCOMPARE(descricoes(), QStringList());
        cnBD().executar(u"UPDATE Poseidons SET Porta = 82"_s);
        QVERIFY(carregar(u"Cave"_s, documento(canal(u"1"_s, u"C"_s, u"Sala"_s))).importado);
        QCOMPARE(conteudo(u"SELECT Nome, Porta FROM Poseidons"_s), QStringList(u"Cave|82"_s));
        QCOMPARE(descricoes(), QStringList(u"Sala"_s));
    }

    void lista() {
        using namespace listaPoseidons;
        Instalacao inst(Instalacao::Base::Nenhuma);
        Lista l;
        const QString nome = u"ABCDEFGHIJKLMNOPQRS"_s;
        QCOMPARE(l.CarregarDispositivoRemoto(documento({}), u"http://host:8080/"_s), Achado::Novo);
        QCOMPARE(l.linha(1).IP, u"host:8080"_s);
        QCOMPARE(l.linha(1).PORTA, u"8080"_s);
        QCOMPARE(l.linha(1).DESCRICAO, u"Câmara de conservação"_s.right(15));
        QCOMPARE(QString(l.linha(1).UDP + l.linha(1).MODO + l.linha(1).SELECT + l.linha(1).TIPO),
                 u"RMANNAOPoseidon 2251"_s);
        QCOMPARE(l.CarregarDispositivoRemoto(documento({}), u"host2"_s), Achado::Conhecido);
        QCOMPARE(l.CarregarDispositivoRemoto(u"<Root/>"_s, u"host2"_s), Achado::Ignorado);
        // A search: the unit that was added by hand, one of another make, two new ones.
        QCOMPARE(l.juntar({nome, u" 00:0a:59:00:12:34"_s, 4, 80, u"10.0.0.9"_s}), Achado::Conhecido);
        QCOMPARE(l.linha(1).UDP, QString());
        QCOMPARE(l.linha(1).DESCRICAO, nome.left(15));
        QCOMPARE(l.linha(1).IP, u"host:8080"_s);
        QCOMPARE(l.juntar({nome, u"00:01"_s, 3, 80, u"10.0.0.7"_s}), Achado::Ignorado);
        QCOMPARE(l.juntar({QString(), u"00:02"_s, 34, 81, u"10.0.0.8"_s}), Achado::Novo);
        QCOMPARE(QString(l.linha(2).DESCRICAO + l.linha(2).TIPO + l.linha(2).PORTA), u"10.0.0.8Poseidon 225081"_s);
        QCOMPARE(l.total(), 2);
        QVERIFY(l.VerificarSeIPJaExiste(u" 10.0.0.8 "_s, 1) && !l.VerificarSeIPJaExiste(u"10.0.0.8"_s, 2));
        QVERIFY(!l.algumaSeleccionada());
        l.linha(2).SELECT = u"SIM"_s;
        QVERIFY(l.algumaSeleccionada());
        const QList<Dispositivo> achados{{nome, u"00:02"_s, 34, 81, u"10.0.0.8"_s}};
        QVERIFY(!VerificarSeTemDeSeFazerAlteracoes(achados, u"10.0.0.8"_s, u"81"_s, u"00:02"_s, nome.left(15)));
        QVERIFY(VerificarSeTemDeSeFazerAlteracoes(achados, u"10.0.0.8"_s, u"82"_s, u"00:02"_s, nome.left(15)));
        QVERIFY(!VerificarSeTemDeSeFazerAlteracoes(achados, u"10.0.0.8"_s, u"82"_s, u"00:03"_s, nome));
    }

    void listaDaBase() {
        Base inst;
        cnBD().executar(
            u"INSERT INTO Poseidons (PoseidonIP, Nome, Modelo, Mac, Porta, m, VistrelS, ApagarLog, NLeiturasM) "
            "VALUES ('10.0.0.1','Um',4,'00:01',80,'MAN',1,1,7), ('10.0.0.2',NULL,34,NULL,NULL,'AUT',0,0,NULL), "
            "('10.0.0.3','Três',3,'00:03',80,'AUT',1,0,1), ('10.0.0.4','Q',4,NULL,81,'AUT',0,0,-2)"_s);
        listaPoseidons::Lista l;
        for (int vez = 0; vez < 2; ++vez) { // what is in the list by its MAC stays alone
            l.CarregarListaDeDispositivosJaExistentes();
            cnBD().executar(u"DELETE FROM Poseidons WHERE Mac IS NULL"_s);
        }
        QStringList linhas;
        for (int n = 1; n <= l.total(); ++n) {
            const auto &c = l.linha(n);
            linhas += QStringList{c.SELECT, c.UDP, c.IP, c.PORTA, c.DESCRICAO, c.NLEITURAS, c.BLNERASELOG}.join(u'|');
        }
        QCOMPARE(linhas, QStringList({u"SIM|R|10.0.0.1|80|Um|7|1"_s, u"NAO||10.0.0.2|80|10.0.0.2|1|0"_s,
                                      u"NAO||10.0.0.4|81|Q|1|0"_s}));
    }

    void alteracoes() {
        using namespace listaPoseidons;
        Base inst;
        AdicionarBDPoseidons({ip, 4, {}, u"Um"_s});
        AdicionarBDPoseidons({u"10.0.0.6"_s, 4, {}, u"Dois"_s});
        QVERIFY(MudarNomeBDPoseidons(ip, hostil));
        QVERIFY(SalvarMediasParaBD(ip, 9) && SalvarchkApagarParaBD(ip, true));
        QVERIFY(MudarIPPORTABDPoseidons(ip, u"10.0.0.7"_s, 8080));
        QCOMPARE(conteudo(u"SELECT PoseidonIP, Nome, Porta, ApagarLog, NLeiturasM FROM Poseidons ORDER BY rowid"_s),
                 QStringList({u"10.0.0.7|%1|8080|1|9"_s.arg(hostil), u"10.0.0.6|Dois|80|0|1"_s}));
        inst.erros.esperar(u"MudarIPPORTABDPoseidons"_s);
        QVERIFY(!MudarIPPORTABDPoseidons(u"10.0.0.7"_s, u"10.0.0.6"_s, 80));
    }
};

QTEST_GUILESS_MAIN(tst_importacao)
#include "tst_importacao.moc"
