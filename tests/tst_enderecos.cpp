#include "core/estado.h"
#include "data/ligacao.h"
#include "data/recordset.h"
#include "poseidon/listaPoseidons.h"
#include "poseidon/modHwGroup.h"
#include "poseidon/modPoseidons.h"
#include "tests/apoio/instalacao.h"
#include "tests/apoio/tabela.h"

#include <QTest>

using namespace modPoseidons;

class tst_enderecos : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void enderecos_data() {
        const Tabela<int, QString, QString> linha("porta", "anfitriao", "setup");
        const auto caso = [&](const char *endereco, int porta, const QString &anfitriao) {
            linha(endereco, porta, anfitriao, u"http://%1/setup.xml"_s.arg(anfitriao));
        };
        caso("http://10.0.0.5:81/", 81, u"10.0.0.5"_s);
        caso("10.0.0.5", 80, u"10.0.0.5"_s);
        caso("10.0.0.5/", 80, u"10.0.0.5"_s);
        caso("http://host", 80, u"host"_s);
        caso("HTTP://host:8080/", 8080, u"host"_s);
        caso("host:8080", 8080, u"host"_s);
        caso("host:abc", 80, u"host"_s);
        caso("host:", 80, u"host"_s);
        caso("host:70000", 80, u"host"_s);
        caso("host:-1", 80, u"host"_s);
    }
    void enderecos() {
        const QString endereco = QString::fromLatin1(QTest::currentDataTag());
        QFETCH(QString, anfitriao);
        QTEST(int(TratarPortaDoEndereco(endereco)), "porta");
        QCOMPARE(TratarEndereco(endereco, false), anfitriao);
        QCOMPARE(TratarEndereco(endereco, true), u"http://"_s + anfitriao);
        QCOMPARE(TratarEnderecoComPorta(endereco, false, 99), anfitriao + u":99"_s);
        QCOMPARE(TratarEnderecoComPorta(endereco, true, 99), u"http://"_s + anfitriao + u":99"_s);
        QTEST(enderecoDoSetup(endereco), "setup");
        QCOMPARE(TratarIP(anfitriao + u":81:82"_s), anfitriao);
        QCOMPARE(TratarEnderecoRemoto(anfitriao + u":81"_s, 81), anfitriao);
        QCOMPARE(TratarEnderecoRemoto(anfitriao + u":81"_s, 82), anfitriao + u":81"_s);
    }

    void numericos() {
        QVERIFY(EnderecoENumerico(u"10.0.0.5"_s) && EnderecoENumerico(u"192.168.1.249"_s));
        for (const char *t : {"10.0.0.5:80", "10.0.5", "10.0.0.5.6", "a.b.c.d", "http://10.0.0.5", ""})
            QVERIFY2(!EnderecoENumerico(QString::fromLatin1(t)), t);
    }

    void zerosDaPorta() {
        const std::pair<QString, QString> casos[] = {
            {u"8"_s, u"00008"_s}, {u"80"_s, u"00080"_s}, {u"65535"_s, u"65535"_s}, {u"123456"_s, {}}, {{}, {}}};
        for (const auto &[porta, texto] : casos)
            QCOMPARE(listaPoseidons::ConfigurarZerosPortaIOcontroller(porta), texto);
    }

    void modelos() {
        QCOMPARE(modHwGroup::BuscaDescricaoDeDispositivoPorCodigo(34), u"Poseidon 2250"_s);
        QCOMPARE(modHwGroup::BuscaDescricaoDeDispositivoPorCodigo(15), u"Damocles mini"_s);
        QCOMPARE(modHwGroup::BuscaDescricaoDeDispositivoPorCodigo(5), QString());
        QVERIFY(modHwGroup::temLog(4) && modHwGroup::temLog(34) && !modHwGroup::temLog(3));
        QCOMPARE(modHwGroup::ConverterEscalas(12, 20, 4, 100, 0), 50.0);
        QCOMPARE(modHwGroup::ConverterEscalas(0, 20, 4, 100, 0), -25.0);
    }

    void estadoDoSensor() {
        Instalacao inst;
        inst.sensor({u"S'1"_s, u"Um"_s});
        inst.sensor({u"S2"_s, u"Dois"_s});
        AlterarEstadoSensorNaBD(u"S'1"_s, u"NAO"_s);
        QCOMPARE(inst.linha(u"SELECT group_concat(Seleccionado) FROM Sensores"_s), QVariantList{u"NAO,SIM"_s});
    }
};

QTEST_GUILESS_MAIN(tst_enderecos)
#include "tst_enderecos.moc"
