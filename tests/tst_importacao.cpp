#include "poseidon/documentoSetup.h"
#include "poseidon/importacao.h"
#include "poseidon/listaPoseidons.h"
#include "tests/log2251.h"

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
    return conteudo(u"SELECT Descricao FROM Sensores ORDER BY %1"_s.arg(dialecto::ordem));
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
    void identificadores() {
        const QString casos[][3] = {{u"12345678901234567"_s, u"10.0.0.255"_s, u"2555678901234567"_s},
                                    {u"7"_s, u"host"_s, u"000A590012340007"_s},
                                    {u"17"_s, u"host:81"_s, u"000A590012340017"_s},
                                    {u"1234567"_s, u"host"_s, u"000A590011234567"_s},
                                    {u"12345678901234567"_s, u"host"_s, u"2345678901234567"_s},
                                    {u"101"_s, u"10.0.0.5:80"_s, u"000A590012340101"_s}}; // with a port: remote
        for (const auto &[id, endereco, sensorID] : casos)
            QCOMPARE(criarSensorID(id, endereco, u"00:0A:59:00:12:34"_s), sensorID);
    }

    void tudoDeUmaUnidade() {
        Base inst;
        listaPoseidons::AdicionarBDPoseidons({ip, 4, u"00:0A"_s, u"Câmara"_s, 81, u"R"_s, true, false, 3});
        const Resultado r = importar(documento(canal(u"101"_s, u"C"_s, u"Sala"_s) + canal(u"102"_s, u"%RH"_s, hostil) +
                                               canal(u"103"_s, u"V"_s, u"V"_s) + canal(u"104"_s, u"mA"_s, u"mA"_s) +
                                               canal(u"201"_s, u"s"_s, u"Porta"_s) + canal(u"105"_s, u"W"_s, u"W"_s)));
        QVERIFY2(r.importado && r.motivo.isEmpty(), qPrintable(r.motivo));
        QCOMPARE(r.portaTelnet.value_or(0), 2323);
        QCOMPARE(QString(r.data + u' ' + r.hora), u"07.03.2011 09:05:00"_s);
        const QStringList esperada{
            u"0050000000000101|101|1|P 1250C|Sala|SIM|0|POSEIDON|210.0.0.5|-999.9|20|4"_s,
            u"0050000000000102|102|2|P 1250%|%1|SIM|0|POSEIDON|210.0.0.5|-999.9|20|4"_s.arg(hostil),
            u"0050000000000103|103|3|P 1250V|V|SIM|0|POSEIDON|210.0.0.5|-999.9|15|0"_s,
            u"0050000000000104|104|4|P 1250A|mA|SIM|0|POSEIDON|210.0.0.5|-999.9|25|0"_s,
            u"0050000000000101|30.5|10|NA|NA|TMP|NA|NA|0"_s,
            u"0050000000000102|NA|NA|30.5|10|HUMTMP|NA|NA|0"_s,
            u"0050000000000103|30.5|10|NA|NA|SENSUI|NA|NA|0"_s,
            u"0050000000000104|30.5|10|NA|NA|SENSUI|NA|NA|0"_s,
            u"10.0.0.5|1|1|0|0|0|0|Câmara P1"_s,
            u"10.0.0.5|2|2|0|0|0|0|Câmara P2"_s,
            u"10.0.0.5|3|3|0|0|0|0|Câmara P3"_s,
            u"10.0.0.5|1|151|0|2024-03-15 10:20:30|00:00:00|0|0|Câmara O1"_s,
            u"10.0.0.5|2|152|0|2024-03-15 10:20:30|00:00:00|0|0|Câmara O2"_s,
            u"10.0.0.5|201|1|SIM| | |0|0|0|Porta"_s,
            u"10.0.0.5|Câmara|0|4.0|00:0A|81|MAN|2000|1|1|0|3"_s};
        QCOMPARE(base(), esperada);
    }

    void nomes_data() {
        // canais: of a document that comes twice, after one with a single channel "Sala"; depois: descriptions
        const Tabela<QString, QStringList> caso("canais", "depois");
        const auto um = [](const QString &nome, const QString &valor = u"1"_s) {
            return canal(u"1"_s, u"C"_s, nome, valor);
        };
        caso("changed", um(u"Cave"_s), {u"Cave"_s});
        caso("only letters", um(u"SALA"_s), {u"SALA"_s});
        caso("taken elsewhere", um(u"Regra"_s), {u"Regra 1"_s});
        caso("nothing connected keeps it", um(u"Cave"_s, u"-999.9"_s), {u"Sala"_s});
        caso("nothing connected to a new one", canal(u"2"_s, u"C"_s, u"Cave"_s, u"-999.9"_s), {u"Sala"_s, u"Cave"_s});
        caso("same name in other letters", um(u"Cave"_s) + canal(u"2"_s, u"C"_s, u"CAVE"_s), {u"Cave"_s, u"CAVE 1"_s});
        caso("no names", um({}) + canal(u"2"_s, u"C"_s, u" "_s), {u"Sensor"_s, u"Sensor 1"_s});
        caso("a name in a section", um(u"@"_s).replace(u"@"_s, u"<![CDATA[a<b]]> &amp; c"_s), {u"a<b & c"_s});
    }
    void nomes() {
        QFETCH(QString, canais);
        Base inst;
        cnBD().executar(u"INSERT INTO REGRAS_Emails (Descricao) VALUES ('regra')"_s);
        QVERIFY(importar(documento(canal(u"1"_s, u"C"_s, u"Sala"_s))).importado);
        QVERIFY(importar(documento(canais)).importado);
        QTEST(descricoes(), "depois");
        const QStringList primeira = base();
        QVERIFY(importar(documento(canais)).importado);
        QCOMPARE(base(), primeira);
    }

    void nomesDoSpider() {
        Base inst;
        inst.sensor({u"X"_s, u"Outro"_s});
        for (const auto &[nome, depois] : {std::pair{u"Porta"_s, u"Porta"_s},
                                           {u"Outro"_s, u"Outro (1)"_s},
                                           {u"Porta das traseiras da cave"_s, u"Porta das traseiras "_s}})
            for (int vez = 0; vez < 2; ++vez) {
                QVERIFY(importar(documento(canal(u"1"_s, u"s"_s, nome))).importado);
                QCOMPARE(conteudo(u"SELECT Descricao FROM PoseidonInputsSpider"_s), QStringList(depois));
            }
    }

    void documentosRecusados_data() {
        const Tabela<QString, QString> caso("xml", "motivo");
        const QString bom = canal(u"9"_s, u"C"_s, u"Novo"_s);
        const QString estrutura = u"Estrutura do XML inválida"_s;
        const QString inteiro = documento(bom);
        caso("nothing", u" \n"_s, u"não enviou"_s);
        caso("half", inteiro.left(inteiro.size() / 2), u"incompleto ou malformado"_s);
        caso("junk of 50 MB", QString(50'000'000, u'<'), u"demasiado grande"_s);
        caso("deep beyond reason", QString(u"<a>"_s.repeated(500'000) + u"</a>"_s.repeated(500'000)), estrutura);
        caso("bytes of another encoding", QString::fromUtf8(QString(inteiro).toLatin1()), u"codificação"_s);
        caso("NUL inside", QString(inteiro).replace(u"Novo"_s, u"No\0o"_s), u"codificação"_s);
        caso("entities", QString(inteiro).replace(u"<Root"_s, u"<!DOCTYPE Root [<!ENTITY e \"x\">]><Root"_s),
             u"tipo de documento"_s);
        caso("a web page", u"<html><body>404</body></html>"_s, estrutura + u": Agent"_s);
        caso("no SenSet", u"<Root><Agent><MAC>00:01</MAC></Agent></Root>"_s, estrutura + u": SenSet"_s);
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

    void canalDeForaPorSi_data() {
        // mau: a channel between two good ones; dito: of it, in the reason
        const Tabela<QString, QString> caso("mau", "dito");
        const QString bom = canal(u"9"_s, u"C"_s, u"Sala <b>"_s);
        for (const QString &e : {u"ID"_s, u"Units"_s, u"Value"_s, u"Min"_s, u"Max"_s})
            caso(qPrintable(u"no "_s + e), QString(bom).replace(e + u'>', u"x>"_s),
                 u"Sala <b> SenSet[2] (falta %1)"_s.arg(e));
        caso("no name", QString(bom).replace(u"Name>"_s, u"x>"_s), u"9 SenSet[2] (falta Name)"_s);
        caso("nothing at all", u"<Entry/>"_s, u": SenSet[2] (falta Units)"_s);
        caso("empty limits", canal(u"9"_s, u"V"_s, u"Sala"_s, {}, {}, {}), u"Sala SenSet[2] (Min ilegível: \"\")"_s);
        caso("limit of words", canal(u"9"_s, u"%RH"_s, u"%2 %1"_s, u"1"_s, u"1"_s, u"a\nb"_s.repeated(9000)),
             u"%2 %1 SenSet[2] (Max ilegível: \"a ba ba"_s);
        caso("number of an input", canal(u"x"_s, u"s"_s, u"Porta"_s), u"Porta SenSet[2] (ID ilegível: \"x\")"_s);
    }
    void canalDeForaPorSi() {
        QFETCH(QString, mau);
        QFETCH(QString, dito);
        Base inst;
        const QString um = canal(u"1"_s, u"C"_s, u"Um"_s);
        const QString dois = canal(u"2"_s, u"%RH"_s, u"Dois"_s);
        QVERIFY(importar(documento(um + dois)).motivo.isEmpty());
        const QStringList antes = base();
        const Resultado r = importar(documento(um + mau + dois));
        QVERIFY(r.importado);
        QVERIFY2(r.motivo.startsWith(u"Canais de %1 que não foram importados: "_s.arg(ip)), qPrintable(r.motivo));
        QVERIFY2(r.motivo.contains(dito) && r.motivo.size() < 200, qPrintable(r.motivo));
        QCOMPARE(base(), antes);
        const Resultado muitos = importar(documento(mau.repeated(7) + um + dois));
        QVERIFY2(muitos.motivo.endsWith(u"; e mais 2"), qPrintable(muitos.motivo));
    }

    void identificadorVazio() {
        Base inst;
        QCOMPARE(importar(documento(canal({}, u"C"_s, u"Sala"_s))).motivo, QString());
        QCOMPARE(conteudo(u"SELECT SensorID, ID FROM Sensores"_s), QStringList(u"0050000000000000| "_s));
    }

    // Told apart one by one they would take minutes, and nobody could write meanwhile.
    void milDoMesmoNome_data() {
        const Tabela<QString, QString, QString> caso("unidade", "nome", "ultimo");
        caso("sensors", u"C"_s, u"Sala"_s, u"Sala 999"_s);
        caso("long names", u"V"_s, u"N"_s.repeated(3000), QString(u"N"_s.repeated(255) + u" 999"));
        caso("inputs", u"s"_s, u"Porta das traseiras da cave"_s, u"Porta das tras (999)"_s);
        caso("half characters", u"s"_s, u"Porta das tr😀😀😀😀"_s, u"Porta das tr😀 (999)"_s);
    }
    void milDoMesmoNome() {
        QFETCH(QString, unidade);
        QFETCH(QString, nome);
        Base inst;
        QString canais;
        for (int n = 1; n <= 1000; ++n)
            canais += canal(QString::number(n), unidade, nome);
        const QString consulta =
            unidade == u"s" ? u"SELECT Descricao FROM PoseidonInputsSpider"_s : u"SELECT Descricao FROM Sensores"_s;
        for (int vez = 0; vez < 3; ++vez) {
            const Resultado r = importar(documento(canais));
            QVERIFY2(r.importado && r.motivo.isEmpty(), qPrintable(r.motivo));
            const QStringList nomes = conteudo(consulta + u" ORDER BY %1"_s.arg(dialecto::ordem));
            QCOMPARE(QSet<QString>(nomes.begin(), nomes.end()).size(), 1000);
            QTEST(nomes.last(), "ultimo");
        }
    }

    void falhaDaBaseNadaMuda() {
        Base inst;
        cnBD().executar(
            u"CREATE TRIGGER cheio BEFORE INSERT ON PoseidonOutputs BEGIN SELECT RAISE(ABORT, 'cheio'); END"_s);
        const Resultado r = importar(documento(canal(u"1"_s, u"C"_s, u"Sala"_s)));
        QVERIFY(!r.importado && r.motivo.contains(u"cheio"));
        QCOMPARE(base(), QStringList());
    }

    void limitesSaoOsDaUnidade() {
        Base inst;
        QVERIFY(importar(documento(canal(u"1"_s, u"C"_s, u"Sala"_s))).importado);
        cnBD().executar(u"UPDATE Calibracoes SET Maximo = 99, Calibracao = '1,5'"_s);
        inst.locale(u"en_US"_s);
        QVERIFY(importar(documento(canal(u"1"_s, u"C"_s, u"Sala"_s, u"-999.9"_s, u"-5"_s, u"25,5"_s))).importado);
        QCOMPARE(conteudo(u"SELECT Maximo, Minimo, Calibracao FROM Calibracoes"_s), QStringList(u"25.5|-5|0"_s));
    }

    void identificadorDeOutraUnidade() {
        const struct {
            QString dono; // PoseidonIP of the sensor's row
            bool naLista, toma;
        } casos[] = {{u"210.0.1.5"_s, true, false},
                     {u"210.0.1.5"_s, false, true},   // its address was changed
                     {u"110.0.1.5"_s, false, false}}; // of the capture service
        for (const auto &[dono, naLista, toma] : casos) {
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
    }

    void dispositivo() {
        Base inst;
        const auto carregar = [](const QString &nome, const QString &xml) {
            return CarregarPoseidonParaBD(ip, u"4"_s, {}, u"00:0A"_s, nome, u"81"_s, u"SIM"_s, u"SIM"_s, u"x"_s,
                                          [&](const QString &endereco, const QString &porta) {
                                              return endereco == ip && porta == u"81" ? xml : QString();
                                          });
        };
        QVERIFY(!carregar(u"Câmara"_s, {}).importado); // the row stands all the same
        QCOMPARE(conteudo(u"SELECT m, VistrelS, ApagarLog, NLeiturasM FROM Poseidons"_s), QStringList(u"AUT|1|1|1"_s));
        QCOMPARE(descricoes(), QStringList());
        cnBD().executar(u"UPDATE Poseidons SET Porta = 82"_s);
        QVERIFY(carregar(u"Cave"_s, documento(canal(u"1"_s, u"C"_s, u"Sala"_s))).importado);
        QCOMPARE(conteudo(u"SELECT Nome, Porta FROM Poseidons"_s), QStringList(u"Cave|82"_s));
        QCOMPARE(descricoes(), QStringList(u"Sala"_s));
        // The list shows 15 characters of a name; what it cut does not replace the whole.
        const QString inteiro = u"Frigoríficos do Laboratório"_s;
        cnBD().executar(u"UPDATE Poseidons SET Nome = ?"_s, {inteiro});
        for (const QString &nome : {inteiro.left(15), inteiro.right(15)})
            carregar(nome, documento({}));
        QCOMPARE(conteudo(u"SELECT Nome FROM Poseidons"_s), QStringList(inteiro));
    }

    void lista() {
        using namespace listaPoseidons;
        Instalacao inst(Instalacao::Base::Nenhuma);
        Lista l;
        const QString nome = u"ABCDEFGHIJKLMNOPQRS"_s;
        QCOMPARE(l.CarregarDispositivoRemoto(documento({}), u"http://host:8080/"_s), Achado::Novo);
        Linha &remota = l.linha(1);
        QCOMPARE(
            QStringList({remota.IP, remota.PORTA, remota.DESCRICAO, remota.UDP, remota.MODO, remota.SELECT}),
            QStringList({u"host:8080"_s, u"8080"_s, u"Câmara de conservação"_s.right(15), u"R"_s, u"MAN"_s, u"NAO"_s}));
        QCOMPARE(l.CarregarDispositivoRemoto(documento({}), u"host2"_s), Achado::Conhecido);
        // A search: the unit that was added by hand, one of another make, a new one.
        QCOMPARE(l.juntar({nome, u" 00:0a:59:00:12:34"_s, 4, 80, u"10.0.0.9"_s}), Achado::Conhecido);
        QCOMPARE(QStringList({remota.UDP, remota.DESCRICAO, remota.IP}),
                 QStringList({QString(), nome.left(15), u"host:8080"_s}));
        QCOMPARE(l.juntar({nome, u"00:01"_s, 3, 80, u"10.0.0.7"_s}), Achado::Ignorado);
        QCOMPARE(l.juntar({QString(), u"00:02"_s, 34, 81, u"10.0.0.8"_s}), Achado::Novo);
        QCOMPARE(QStringList({l.linha(2).DESCRICAO, l.linha(2).TIPO, l.linha(2).PORTA}),
                 QStringList({u"10.0.0.8"_s, u"Poseidon 2250"_s, u"81"_s}));
        QVERIFY(l.VerificarSeIPJaExiste(u" 10.0.0.8 "_s, 1) && !l.VerificarSeIPJaExiste(u"10.0.0.8"_s, 2));
        const QList<Dispositivo> achados{{nome, u"00:02"_s, 34, 81, u"10.0.0.8"_s}};
        const auto difere = [&](const QString &porta, const QString &mac) {
            const Alteracoes a = VerificarSeTemDeSeFazerAlteracoes(achados, u"10.0.0.8"_s, porta, mac, nome.left(15));
            return a.porta && !a.endereco && !a.nome;
        };
        QVERIFY(!difere(u"81"_s, u"00:02"_s) && difere(u"82"_s, u"00:02"_s) && !difere(u"82"_s, u"00:03"_s));
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
            const listaPoseidons::Linha &c = l.linha(n);
            linhas += QStringList{c.SELECT, c.UDP, c.IP, c.PORTA, c.DESCRICAO, c.NLEITURAS, c.BLNERASELOG}.join(u'|');
        }
        inst.erros.esperar(u"MudarIPPORTABDPoseidons"_s);
        QVERIFY(!listaPoseidons::MudarIPPORTABDPoseidons(u"10.0.0.1"_s, u"10.0.0.3"_s, 80));
        QCOMPARE(linhas, QStringList({u"SIM|R|10.0.0.1|80|Um|7|1"_s, u"NAO||10.0.0.2|80|10.0.0.2|1|0"_s,
                                      u"NAO||10.0.0.4|81|Q|1|0"_s}));
    }
};

QTEST_GUILESS_MAIN(tst_importacao)
#include "tst_importacao.moc"
