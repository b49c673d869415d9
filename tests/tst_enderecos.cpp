#include "poseidon/listaPoseidons.h"
#include "poseidon/modHwGroup.h"
#include "poseidon/modPoseidons.h"
#include "tests/apoio/instalacao.h"

using namespace modPoseidons;

class tst_enderecos : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void enderecos() {
        const std::tuple<QString, int, QString> casos[] = {{u"http://10.0.0.5:81/"_s, 81, u"10.0.0.5"_s},
                                                           {u"10.0.0.5"_s, 80, u"10.0.0.5"_s},
                                                           {u"http://host"_s, 80, u"host"_s},
                                                           {u"HTTP://host:8080/"_s, 8080, u"host"_s},
                                                           {u"host:abc"_s, 80, u"host"_s},
                                                           {u"host:70000"_s, 80, u"host"_s}};
        for (const auto &[endereco, porta, anfitriao] : casos) {
            QCOMPARE(int(TratarPortaDoEndereco(endereco)), porta);
            QCOMPARE(TratarEndereco(endereco, false), anfitriao);
            QCOMPARE(TratarEnderecoComPorta(endereco, true, 99), u"http://%1:99"_s.arg(anfitriao));
            QCOMPARE(enderecoDoSetup(endereco), u"http://%1/setup.xml"_s.arg(anfitriao));
        }
        QCOMPARE(TratarIP(u"host:81:82"_s), u"host"_s);
        QCOMPARE(TratarEnderecoRemoto(u"host:81"_s, 81), u"host"_s);
        QCOMPARE(TratarEnderecoRemoto(u"host:81"_s, 82), u"host:81"_s);
    }

    void numericos() {
        QVERIFY(EnderecoENumerico(u"192.168.1.249"_s));
        for (const char *t : {"10.0.0.5:80", "10.0.5", "10.0.0.5.6", "a.b.c.d"})
            QVERIFY2(!EnderecoENumerico(QString::fromLatin1(t)), t);
    }

    void zerosDaPorta() {
        const std::pair<QString, QString> casos[] = {
            {u"8"_s, u"00008"_s}, {u"80"_s, u"00080"_s}, {u"65535"_s, u"65535"_s}, {u"123456"_s, {}}, {{}, {}}};
        for (const auto &[porta, texto] : casos)
            QCOMPARE(listaPoseidons::ConfigurarZerosPortaIOcontroller(porta), texto);
    }

    void modelos() {
        QCOMPARE(modHwGroup::BuscaDescricaoDeDispositivoPorCodigo(15), u"Damocles mini"_s);
        QCOMPARE(modHwGroup::BuscaDescricaoDeDispositivoPorCodigo(5), QString());
        QVERIFY(modHwGroup::temLog(4) && modHwGroup::temLog(34) && !modHwGroup::temLog(3));
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
