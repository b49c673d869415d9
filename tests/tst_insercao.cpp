#include "data/criarBD.h"
#include "data/dialecto.h"
#include "data/insercao.h"
#include "tests/apoio/instalacao.h"
#include "tests/falhaDe.h"

class TstInsercao : public QObject {
    Q_OBJECT
private Q_SLOTS:
    void guardaCadaTipoComoE() {
        const Instalacao inst;
        Insercao i(cnBD(), u"Temperaturas"_s, {u"Data"_s, u"Sensor"_s, u"Temperatura"_s, u"Observacoes"_s, u"flag"_s});
        i.texto(0, u"2025-01-02 03:04:05"_s);
        i.utf8(1, "S'1", 3);
        i.real(2, 21.5);
        i.nulo(3);
        i.texto(4, u"Nota d'água"_s);
        i.gravar();
        i.utf8(2, "ND", 2); // the others stay as they were set
        i.gravar();
        i.inteiro(2, 7);
        i.gravar();
        QCOMPARE(
            inst.linha(
                u"SELECT Data, Sensor, group_concat(Temperatura), group_concat(typeof(Temperatura)), "
                "count(Observacoes), count(DISTINCT flag), flag FROM (SELECT * FROM Temperaturas ORDER BY %1)"_s.arg(
                    dialecto::ordem)),
            (QVariantList{u"2025-01-02 03:04:05"_s, u"S'1"_s, u"21.5,ND,7"_s, u"real,text,integer"_s, u"0"_s, u"1"_s,
                          u"Nota d'água"_s}));
    }

    void falhasNaoParamOResto() {
        const Instalacao inst;
        QVERIFY_THROWS_EXCEPTION(Falha, Insercao(cnBD(), u"NaoHa"_s, {u"Data"_s}));
        Insercao i(cnBD(), u"Grupos"_s, {u"codGrupo"_s});
        {
            const Transaccao desfeita(cnBD());
            i.inteiro(0, 9);
            i.gravar();
        }
        i.inteiro(0, 1);
        i.gravar();
        QVERIFY_THROWS_EXCEPTION(Falha, i.gravar()); // the key again
        i.inteiro(0, 2);
        i.gravar();
        QCOMPARE(inst.linha(u"SELECT group_concat(codGrupo) FROM Grupos"_s), QVariantList{u"1,2"_s});
    }

    void criarBDNaoToca() {
        const Instalacao inst(Instalacao::Base::Nenhuma);
        const QString caminho = inst.ficheiro(u"outra.mdb"_s);
        criarBD(caminho);
        const QByteArray antes = Instalacao::lerFicheiro(caminho);
        QVERIFY_THROWS_EXCEPTION(Falha, criarBD(caminho));
        QVERIFY_THROWS_EXCEPTION(Falha, criarBD(inst.ficheiro(u"nada/outra.mdb"_s)));
        QCOMPARE(Instalacao::lerFicheiro(caminho), antes);
        Ligacao bd;
        bd.abrir(caminho);
        QCOMPARE(contar(bd, u"MaskListaAlarmes"_s), 0);
    }
};

QTEST_GUILESS_MAIN(TstInsercao)
#include "tst_insercao.moc"
